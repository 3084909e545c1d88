#include "monitor/log_work.h"

#include "model/debug_log.h"
#include "monitor/monitor.h"
#include "model/number_text.h"
#include "logging/log_columns.h"

namespace orm {

QString recordsFoundText(double recordCount)
{
    return QLatin1Char('(') + numberText(recordCount) + QStringLiteral(") Records Found");
}

namespace {

// Draws each point on the Graph's view, found anew each time: events run
// between points, and the Graph may be gone by the next one.
class ViewPoints final : public LogGraphPoints {
public:
    ViewPoints(Monitor& m, int graph, const bool& stale) : monitor_(m), graph_(graph), stale_(stale) {}
    void point(const std::vector<double>& values, Moment, const QString& label) override
    {
        if (stale_ || size_t(graph_) >= monitor_.GraphForms.size() || !monitor_.GraphForms[size_t(graph_)])
            return;
        // Log Graphs space their grid by 80 points with a small tick every 16.
        monitor_.GraphForms[size_t(graph_)]->WriteGraph(values, label, 80, 5);
    }

private:
    Monitor& monitor_;
    int graph_;
    const bool& stale_;
};

}  // namespace

LogWork::LogWork(Monitor& monitor, LogWorkHost& host) : monitor_(monitor), host_(host) {}

QString LogWork::exportPath() const
{
    return monitor_.dataDir() + QLatin1Char('/') + ExportFileName;
}

GraphView* LogWork::viewOf(int graph) const
{
    return graph >= 0 && size_t(graph) < monitor_.GraphForms.size() ? monitor_.GraphForms[size_t(graph)].get()
                                                                      : nullptr;
}

bool LogWork::validGraph(int graph) const
{
    return graph >= 0 && size_t(graph) < monitor_.Sensors.size();
}

LogReadRange LogWork::rangeOf(int graph) const
{
    const Graph& g = monitor_.Sensors[size_t(graph)];
    LogReadRange range;
    range.logsFolder = monitor_.dataDir() + QStringLiteral("/Logs");
    range.todayName = LogWriter::dayFileName(monitor_.clock().now().date());
    range.logStart = g.LogStart;
    range.logEnd = g.LogEnd;
    return range;
}

LogPacer LogWork::pacer(int graph)
{
    stale_ = false;
    return LogPacer(
        [this, graph] {
            // The picture so far is shown while the events run.
            if (RefreshingLogGraph && !stale_) {
                if (GraphView* view = viewOf(graph)) {
                    view->deferPicture(false);
                    view->deferPicture(true);
                }
                host_.graphDrawn(graph);
            }
            host_.letEventsThrough();
        },
        [this] { return monitor_.Closing || StopLogWork || stale_; }, pumpEveryMs);
}

void LogWork::graphsChanged()
{
    columnsGraph_ = -1;
    columns_.clear();
    if (busy())
        stale_ = true;
}

void LogWork::traceSkips(const QString& procedure)
{
    if (skips_.total() > 0)
        trace(procedure + QStringLiteral(" 1.5 skipped ") + skips_.describe());
}

bool LogWork::beginRefresh(int graph, bool& flag, const QString& procedure, const QString& status)
{
    if (ExportingLog) {
        host_.showMessage(RefreshWhileExportingText);
        return false;
    }
    // One reader at a time: a second would read beside the first.
    if (busy() || !validGraph(graph))
        return false;
    debugLog().enter(procedure);
    flag = true;
    workGraph_ = graph;
    host_.workChanged();
    host_.setStatus(status);
    return true;
}

void LogWork::RefreshLogHeaders(int graph)
{
    if (!beginRefresh(graph, RefreshingLogHeaders, QStringLiteral("RefreshLogHeaders"), RefreshingHeadersText))
        return;
    const LogReadRange range = rangeOf(graph);
    monitor_.Sensors[size_t(graph)].LogRecordCount = 0;
    skips_ = {};
    LogPacer p = pacer(graph);
    const LogHeaders headers = readLogHeaders(range, p, skips_);
    traceSkips(QStringLiteral("RefreshLogHeaders"));

    const bool stale = stale_;
    if (!stale) {
        Graph& g = monitor_.Sensors[size_t(graph)];
        g.LogRecordCount = headers.recordCount;
        LogColumnContext context;
        context.bytesPerSecond = g.DisplayAsBytesPerSecond;
        const Adapters* adapters = monitor_.sources().adapters.get();
        context.adapterDescription = [adapters](int slot) {
            return adapters && slot >= 0 && slot < adapters->AdapterCount()
                       ? adapters->AdapterTable[size_t(slot)].Description
                       : QString();
        };
        context.speedTestServer =
            monitor_.store().readValue(SettingsKey, QStringLiteral("SpeedTestServer"), QString());
        columns_.clear();
        for (const QString& name : headers.columns)
            columns_.push_back({name, logColumnDescription(name, context)});
        columnsGraph_ = graph;
        columnsStart_ = range.logStart;
        columnsEnd_ = range.logEnd;
        host_.setStatus(recordsFoundText(headers.recordCount));
    } else {
        host_.setStatus(QString());
    }
    RefreshingLogHeaders = false;
    StopLogWork = false;
    stale_ = false;
    host_.workChanged();
    if (!stale)
        host_.headersRead(graph);
    debugLog().leave(QStringLiteral("RefreshLogHeaders"));
}

void LogWork::RefreshLogGraph(int graph)
{
    if (!beginRefresh(graph, RefreshingLogGraph, QStringLiteral("RefreshLogGraph"), RedrawingGraphText))
        return;
    GraphView* view = viewOf(graph);
    if (view) {
        view->SetUpNodes(true);
        view->InitDraw();
        view->deferPicture(true);
    }
    const Graph& g = monitor_.Sensors[size_t(graph)];
    std::vector<QString> itemViews;
    for (const Node& n : g.Nodes)
        itemViews.push_back(n.LogItemView);
    const LogReadRange range = rangeOf(graph);
    skips_ = {};
    LogPacer p = pacer(graph);
    ViewPoints points(monitor_, graph, stale_);
    readLogGraph(range, itemViews, g.LogRecordCount, view ? view->plotWidth() : 0, points, p, skips_);
    traceSkips(QStringLiteral("RefreshLogGraph"));
    if (!stale_) {
        if (GraphView* drawn = viewOf(graph))
            drawn->deferPicture(false);
        host_.graphDrawn(graph);
    }
    host_.setStatus(QString());
    StopLogWork = false;
    RefreshingLogGraph = false;
    stale_ = false;
    host_.workChanged();
    debugLog().leave(QStringLiteral("RefreshLogGraph"));
}

bool LogWork::ExportLog(int graph)
{
    error_.clear();
    if (RefreshingLogHeaders || RefreshingLogGraph) {
        host_.showMessage(ExportWhileRefreshingText);
        return false;
    }
    if (ExportingLog) {
        host_.showMessage(ExportWhileExportingText);
        return false;
    }
    if (!validGraph(graph))
        return false;
    debugLog().enter(QStringLiteral("ExportLog"));
    ExportingLog = true;
    workGraph_ = graph;
    host_.workChanged();
    host_.setStatus(ExportingLogsText);
    std::vector<QString> itemViews;
    for (const Node& n : monitor_.Sensors[size_t(graph)].Nodes)
        itemViews.push_back(n.LogItemView);
    skips_ = {};
    LogPacer p = pacer(graph);
    const LogExportResult result = exportLogCsv(rangeOf(graph), itemViews, exportPath(), p, skips_);
    traceSkips(QStringLiteral("ExportLog"));
    ExportingLog = false;
    StopLogWork = false;
    stale_ = false;
    host_.setStatus(QString());
    host_.workChanged();
    debugLog().leave(QStringLiteral("ExportLog"));
    if (!result.written) {
        error_ = QStringLiteral("Cannot write ") + ExportFileName + QStringLiteral(": ") + result.error;
        host_.showMessage(error_);
        return false;
    }
    if (!monitor_.Closing)
        host_.openExport(exportPath());
    return true;
}

void LogWork::refreshListClicked(int graph)
{
    RefreshLogHeaders(graph);
}

void LogWork::refreshGraphClicked(int graph)
{
    if (RefreshingLogGraph) {
        StopLogWork = true;
        return;
    }
    if (!validGraph(graph))
        return;
    const Graph& g = monitor_.Sensors[size_t(graph)];
    // The bucket size comes from the count: it must be the count of this range.
    if (!ExportingLog && (columnsGraph_ != graph || columnsStart_ != g.LogStart || columnsEnd_ != g.LogEnd))
        RefreshLogHeaders(graph);
    RefreshLogGraph(graph);
}

bool LogWork::exportClicked(int graph)
{
    if (RefreshingLogGraph && workGraph_ == graph) {
        host_.showMessage(ExportWhileRefreshingGraphText);
        return false;
    }
    return ExportLog(graph);
}

}  // namespace orm
