// The drawing module: the windows, the pictures and the printed page, with Qt
// Gui and Widgets behind them. Its entry makes the Drawing that main() asks.
#include "console_line.h"
#include "desktop.h"
#include "drawing.h"
#include "display/displayed_graph.h"
#include "monitor/monitor.h"
#include "shell/graph_printer.h"
#include "shell/program_alert_host.h"

#include <QApplication>
#include <QGuiApplication>

namespace orm {

namespace {

// Prints as the monitor unloads, after whatever it did there before, while
// every view still stands. A page that could not be written is told on
// standard error and sets `failed`.
void printAtUnload(Monitor& monitor, GraphPrinter& printer, const PrintRequest& request, bool& failed)
{
    auto previous = monitor.onUnload;
    monitor.onUnload = [&printer, &failed, request, previous] {
        if (previous)
            previous();
        const PrintResult result = printer.printGraphToPdf(request.graph - 1, request.file);
        QString error = result.error;
        if (result.outcome == PrintResult::NotPrintable)
            error = QStringLiteral("Graph %1 is not a Line or Bar Graph: only those print").arg(request.graph);
        if (error.isEmpty())
            return;
        errorLine(error);
        failed = true;
    };
}

class ModuleDrawing final : public Drawing {
public:
    QCoreApplication& application(int& argc, char** argv, bool windows) override
    {
        if (windows)
            application_ = std::make_unique<QApplication>(argc, argv);
        else
            application_ = std::make_unique<QGuiApplication>(argc, argv);
        return *application_;
    }

    GraphViewFactory& views(const QString& commandLine, const QString& dataDir, bool whenSeen) override
    {
        views_.emplace(commandLine, dataDir, whenSeen ? Pictures::WhenSeen : Pictures::Always);
        return *views_;
    }
    void bind(std::vector<Graph>& sensors) override { views_->bind(sensors); }

    bool saveSnapshots(Monitor& monitor, const QString& folder) override
    {
        return orm::saveSnapshots(monitor.GraphForms, folder);
    }

    void serveAlerts(Monitor& monitor, ProgramAlertHost& alertHost, const std::optional<PrintRequest>& print,
                     bool& printFailed) override
    {
        alertHost.setUrlOpener(openWithDesktop);
        // Without windows the Alerts print on the default printer and say on standard error when they
        // cannot. A rule prints on every tick it holds: the same failure is told once.
        printer_.emplace(
            monitor,
            [this](const QString& status) {
                if (status == printingGraphText())
                    return;
                if (!status.isEmpty() && status != lastPrintStatus_)
                    errorLine(status);
                lastPrintStatus_ = status;
            },
            printerModuleJobs());
        alertHost.setPrinter([this](int graph) { printer_->printGraph(graph); });
        if (print)
            printAtUnload(monitor, *printer_, *print, printFailed);
    }

    int runDesktop(Monitor& monitor, KeyValueStore& store, long maxTicks, ProgramAlertHost& alertHost,
                   const std::function<void()>& afterStartUp) override
    {
        return orm::runDesktop(monitor, store, *views_, maxTicks, alertHost, afterStartUp);
    }

private:
    std::unique_ptr<QCoreApplication> application_;
    std::optional<DisplayedGraphFactory> views_;
    std::optional<GraphPrinter> printer_;
    QString lastPrintStatus_;
};

}  // namespace

}  // namespace orm

extern "C" Q_DECL_EXPORT orm::Drawing* ormivaneNewDrawing()
{
    return new orm::ModuleDrawing;
}
