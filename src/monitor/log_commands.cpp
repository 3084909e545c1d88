#include "monitor/log_commands.h"

#include "monitor/log_work.h"
#include "monitor/monitor.h"

namespace orm {

namespace {

void printLine(FILE* to, const QString& text)
{
    std::fputs(text.toLocal8Bit().constData(), to);
    std::fputc('\n', to);
}

// No window, no event loop of its own: messages go to the error stream.
class CommandHost final : public LogWorkHost {
public:
    explicit CommandHost(FILE* err) : err_(err) {}
    void setStatus(const QString&) override {}
    void showMessage(const QString& text) override { printLine(err_, QStringLiteral("ormivane: ") + text); }
    void letEventsThrough() override {}

private:
    FILE* err_;
};

}  // namespace

int runLogCommand(Monitor& monitor, const LogCommand& command, FILE* out, FILE* err)
{
    const int graph = command.graphNumber - 1;
    monitor.loadWithoutStart(command.redraw ? graph : -1);
    if (graph < 0 || size_t(graph) >= monitor.Sensors.size()) {
        printLine(err, QStringLiteral("ormivane: there is no Graph %1 (the settings hold %2)")
                           .arg(command.graphNumber)
                           .arg(monitor.Sensors.size()));
        return 2;
    }
    if (!monitor.Sensors[size_t(graph)].LogGraph) {
        printLine(err, QStringLiteral("ormivane: Graph %1 (%2) is not a Log Graph")
                           .arg(command.graphNumber)
                           .arg(monitor.Sensors[size_t(graph)].Name));
        return 2;
    }
    CommandHost host(err);
    LogWork work(monitor, host);
    int status = 0;
    if (command.kind == LogCommand::Headers || command.redraw)
        work.RefreshLogHeaders(graph);
    if (command.kind == LogCommand::Headers) {
        printLine(out, recordsFoundText(monitor.Sensors[size_t(graph)].LogRecordCount));
        for (const LogColumn& c : work.columns())
            printLine(out, c.name + QLatin1Char('\t') + c.description);
    } else if (!work.ExportLog(graph)) {
        status = 1;
    }
    if (command.redraw)
        work.RefreshLogGraph(graph);
    std::fflush(out);
    std::fflush(err);
    return status;
}

}  // namespace orm
