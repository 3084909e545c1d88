#include "shell/graph_printer.h"

#include "model/module_library.h"
#include "monitor/monitor.h"
#include "shell/graph_window.h"
#include "shell/graph_windows.h"

#include <optional>

namespace orm {

namespace {

// The printer module's entry: newDefaultPrinterJob.
using NewPrinterJobEntry = PrintTarget*(QObject* jobs);

// Stands for the printer when its module is missing: the page fails with the reason.
class MissingPrinter final : public PrintTarget {
public:
    explicit MissingPrinter(QString error) : error_(std::move(error)) {}
    QPagedPaintDevice* begin(const QString&, QString& error) override
    {
        error = error_;
        return nullptr;
    }
    void finish(std::function<void(const QString&)> done) override { done(error_); }

private:
    QString error_;
};

}  // namespace

NewPrintJob printerModuleJobs()
{
    return [](QObject* jobs) -> PrintTarget* {
        // Loaded once, kept for the rest of the run.
        static std::optional<ModuleLibrary> module;
        static NewPrinterJobEntry* entry = nullptr;
        if (!module) {
            module.emplace("ormivane_printer");
            entry = module->function<NewPrinterJobEntry>("ormivaneNewPrinterJob");
        }
        if (!entry)
            return new MissingPrinter(QStringLiteral("Cannot print: ") + module->error());
        return entry(jobs);
    };
}

GraphPrinter::GraphPrinter(Monitor& monitor, PrintStatus status, NewPrintJob newJob)
    : monitor_(monitor), status_(std::move(status)), newJob_(std::move(newJob))
{
}

PrintResult GraphPrinter::print(int graphIndex, PrintTarget& target, const PrintStatus& status)
{
    // The window of a Graph that prints is repainted from the picture that goes on the page.
    const bool printable = graphIndex >= 0 && size_t(graphIndex) < monitor_.Sensors.size() &&
                           (monitor_.Sensors[size_t(graphIndex)].GraphType == LineGraph ||
                            monitor_.Sensors[size_t(graphIndex)].GraphType == BarGraph);
    if (GraphWindow* w = printable && windows_ ? windows_->window(graphIndex) : nullptr)
        w->refresh();
    return PrintGraph(monitor_.Sensors, monitor_.GraphForms, graphIndex, monitor_.clock().now().date(), target,
                      status);
}

PrintResult GraphPrinter::printGraph(int graphIndex)
{
    PrintTarget* job = newJob_(&jobs_);
    const PrintResult result = print(graphIndex, *job, status_);
    if (result.outcome != PrintResult::Started)
        delete job;  // a job that was started deletes itself once the queue has answered
    return result;
}

PrintResult GraphPrinter::printGraphToPdf(int graphIndex, const QString& file)
{
    PdfFileTarget target(file);
    return print(graphIndex, target, {});
}

}  // namespace orm
