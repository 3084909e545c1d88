// The log viewer panel of the control panel, shown for the rows of a Log Graph:
// the range's start and end as a date and a time picker each, the two clocks
// of picClock, the columns of the range with their descriptions (lstvwLogs),
// and the buttons that read the logs: the list, the graph and the export.
// What the reading does lives in LogWork; this only shows and forwards.
#pragma once

#include "model/model.h"
#include "monitor/log_work.h"

#include <QGroupBox>
#include <functional>
#include <memory>

class QDateEdit;
class QLabel;
class QTimeEdit;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace orm {

class Monitor;
class PanelHost;

inline const QString RefreshLogGraphCaption = QStringLiteral("Refresh Graph");
inline const QString StopCaption = QStringLiteral("Stop");

class LogViewerPanel : public QGroupBox, private LogWorkHost {
    Q_OBJECT
public:
    LogViewerPanel(Monitor& monitor, PanelHost& host, QWidget* parent = nullptr);
    ~LogViewerPanel() override;

    // Shows the range of Sensors[graph]; `node` is the Node selected in the
    // tree (-1 for the Graph's row), the one a column pick goes to. Writes
    // nothing, saves nothing.
    void load(int graph, int node);
    int graph() const { return graph_; }

    // Reads the headers of every Log Graph, as a start-up does.
    void refreshAllHeaders();

    LogWork& work() { return *work_; }

    // lblStatus of the control panel.
    std::function<void(const QString&)> showStatus;
    // The Graph's window repaints from its picture.
    std::function<void(int graph)> repaintGraph;
    // Opens a written export in the program the desktop has for it.
    std::function<void(const QString& path)> openDocument;

signals:
    // A column pick renamed a Node: the tree and the Node panel follow.
    void nodeChanged(int graph, int node);

private:
    // LogWorkHost
    void setStatus(const QString& text) override;
    void showMessage(const QString& text) override;
    void letEventsThrough() override;
    void graphDrawn(int graph) override;
    void headersRead(int graph) override;
    void openExport(const QString& path) override;
    void workChanged() override;

    Graph* current();
    void showRange(const Graph& g);
    void showColumns();
    // A picker of LogStart or LogEnd changed: a date picker rewrites the first
    // 8 digits of the moment, a time picker the last 6.
    void pickerChanged(double Graph::*moment, const QDateEdit* datePicker, const QTimeEdit* timePicker);
    void columnPicked(QTreeWidgetItem* item);

    Monitor& monitor_;
    PanelHost& host_;
    std::unique_ptr<LogWork> work_;
    int graph_ = -1;
    int node_ = -1;
    bool loading_ = false;

    QDateEdit* DTPickerDateStart_ = nullptr;
    QTimeEdit* DTPickerStart_ = nullptr;
    QDateEdit* DTPickerDateEnd_ = nullptr;
    QTimeEdit* DTPickerEnd_ = nullptr;
    QLabel* picClock_ = nullptr;
    QTreeWidget* lstvwLogs_ = nullptr;
    QToolButton* imgRefreshLogList_ = nullptr;
    QToolButton* imgRefreshLogGraph_ = nullptr;
    QToolButton* imgExportLog_ = nullptr;
};

}  // namespace orm
