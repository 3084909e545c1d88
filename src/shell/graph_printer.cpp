#include "shell/graph_printer.h"

#include "monitor/monitor.h"
#include "shell/default_printer.h"
#include "shell/graph_window.h"
#include "shell/graph_windows.h"

namespace orm {

GraphPrinter::GraphPrinter(Monitor& monitor, PrintStatus status) : monitor_(monitor), status_(std::move(status)) {}

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
    auto* job = new DefaultPrinterJob(&jobs_);
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
