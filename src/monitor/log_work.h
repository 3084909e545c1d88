// The log readers of the control panel: RefreshLogHeaders, RefreshLogGraph and
// ExportLog with their flags, status texts and refusals. They run on the one
// thread and let window events through while they read, so the tick goes on
// and a click can arrive meanwhile; the flags keep them apart.
#pragma once

#include "logging/log_passes.h"

#include <QString>
#include <vector>

namespace orm {

class GraphView;
class Monitor;

inline const QString RefreshWhileExportingText =
    QStringLiteral("Sorry, you cannot Refresh the Graph while exporting. Please wait until done Exporting.");
inline const QString ExportWhileRefreshingGraphText =
    QStringLiteral("Sorry, you cannot Export while the Graph is Refreshing. Please wait until done Refreshing.");
inline const QString ExportWhileRefreshingText =
    QStringLiteral("Sorry, you cannot Export while Refreshing a Log Graph. Please wait until it is done Refreshing.");
inline const QString ExportWhileExportingText = QStringLiteral(
    "Sorry, you cannot Export while Exporting in another Log Graph. Please wait until it is done Exporting.");
inline const QString RefreshingHeadersText = QStringLiteral("Refreshing headers. Please Wait...");
inline const QString RedrawingGraphText = QStringLiteral("Redrawing Graph. Please Wait...");
inline const QString ExportingLogsText = QStringLiteral("Exporting Logs. Please Wait...");
inline const QString ExportFileName = QStringLiteral("LogExport.csv");

// "(n) Records Found"
QString recordsFoundText(double recordCount);

// What the log readers need from the program around them.
class LogWorkHost {
public:
    virtual ~LogWorkHost() = default;
    // lblStatus of the log viewer panel.
    virtual void setStatus(const QString& text) = 0;
    // A message through frmMessage.
    virtual void showMessage(const QString& text) = 0;
    // Runs pending window events (and the tick, when it is due).
    virtual void letEventsThrough() = 0;
    // The Graph's picture has new points: its window repaints.
    virtual void graphDrawn(int graph) { Q_UNUSED(graph); }
    // A header refresh finished: lstvwLogs shows its columns.
    virtual void headersRead(int graph) { Q_UNUSED(graph); }
    // The export was written: it opens in the program the desktop has for it.
    virtual void openExport(const QString& path) { Q_UNUSED(path); }
    // A refresh or export began or ended (the Refresh button's caption follows).
    virtual void workChanged() {}
};

struct LogColumn {
    QString name;
    QString description;
};

class LogWork {
public:
    LogWork(Monitor& monitor, LogWorkHost& host);

    bool RefreshingLogHeaders = false;
    bool RefreshingLogGraph = false;
    bool ExportingLog = false;
    bool StopLogWork = false;
    // How often the reading lets window events through.
    int pumpEveryMs = 30;

    // The header pass: LogRecordCount of the Graph and the columns of its range.
    void RefreshLogHeaders(int graph);
    // The graph pass: the Graph's picture drawn anew from its range.
    void RefreshLogGraph(int graph);
    // Writes LogExport.csv for the Graph's range and opens it. False when it
    // was refused or the file could not be written (error() says why).
    bool ExportLog(int graph);

    // imgRefreshLogList.
    void refreshListClicked(int graph);
    // imgRefreshLogGraph: "Stop" while a graph refresh runs; otherwise the
    // headers are read first when the range changed since they last were.
    void refreshGraphClicked(int graph);
    // imgExportLog: refused while this Graph refreshes, else ExportLog.
    bool exportClicked(int graph);

    // Graphs were added, deleted or moved: what was read for an index no longer holds.
    void graphsChanged();

    bool busy() const { return RefreshingLogHeaders || RefreshingLogGraph || ExportingLog; }
    int graphRefreshing() const { return RefreshingLogGraph ? workGraph_ : -1; }
    // The columns of the last header refresh and the Graph they belong to (-1 for none).
    const std::vector<LogColumn>& columns() const { return columns_; }
    int columnsGraph() const { return columnsGraph_; }
    QString exportPath() const;
    QString error() const { return error_; }
    const LogSkips& skips() const { return skips_; }

private:
    bool validGraph(int graph) const;
    // The guards and the start of a refresh: false when it may not run now.
    bool beginRefresh(int graph, bool& flag, const QString& procedure, const QString& status);
    GraphView* viewOf(int graph) const;
    LogReadRange rangeOf(int graph) const;
    LogPacer pacer(int graph);
    void traceSkips(const QString& procedure);

    Monitor& monitor_;
    LogWorkHost& host_;
    int workGraph_ = -1;
    bool stale_ = false;  // the Graphs changed while reading: the result belongs to no Graph
    int columnsGraph_ = -1;
    double columnsStart_ = 0, columnsEnd_ = 0;
    std::vector<LogColumn> columns_;
    QString error_;
    LogSkips skips_;
};

}  // namespace orm
