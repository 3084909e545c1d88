#include "shell/log_viewer_panel.h"

#include "display/log_clocks.h"
#include "logging/log_columns.h"
#include "model/catalogue.h"
#include "monitor/monitor.h"
#include "shell/panel_host.h"

#include <QCoreApplication>
#include <QDateEdit>
#include <QDesktopServices>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTimeEdit>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>

namespace orm {

namespace {

template <class W>
W* named(W* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QToolButton* button(const char* name, const QString& text)
{
    auto* b = named(new QToolButton, name);
    b->setText(text);
    b->setToolButtonStyle(Qt::ToolButtonTextOnly);
    return b;
}

}  // namespace

LogViewerPanel::LogViewerPanel(Monitor& monitor, PanelHost& host, QWidget* parent)
    : QGroupBox(QStringLiteral("Log View"), parent), monitor_(monitor), host_(host),
      work_(std::make_unique<LogWork>(monitor, static_cast<LogWorkHost&>(*this)))
{
    setObjectName(QStringLiteral("fraLogViewer"));
    openDocument = [](const QString& path) { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); };

    auto* grid = new QGridLayout(this);
    DTPickerDateStart_ = named(new QDateEdit, "DTPickerDateStart");
    DTPickerStart_ = named(new QTimeEdit, "DTPickerStart");
    DTPickerDateEnd_ = named(new QDateEdit, "DTPickerDateEnd");
    DTPickerEnd_ = named(new QTimeEdit, "DTPickerEnd");
    for (QDateEdit* d : {DTPickerDateStart_, DTPickerDateEnd_}) {
        d->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        d->setCalendarPopup(true);
    }
    for (QTimeEdit* t : {DTPickerStart_, DTPickerEnd_})
        t->setDisplayFormat(QStringLiteral("HH:mm:ss"));
    // A half-typed date is no moment: a picker writes when the editing ends.
    for (QAbstractSpinBox* s : std::initializer_list<QAbstractSpinBox*>{DTPickerDateStart_, DTPickerStart_,
                                                                         DTPickerDateEnd_, DTPickerEnd_})
        s->setKeyboardTracking(false);
    grid->addWidget(new QLabel(QStringLiteral("Start:")), 0, 0);
    grid->addWidget(DTPickerDateStart_, 0, 1);
    grid->addWidget(DTPickerStart_, 0, 2);
    grid->addWidget(new QLabel(QStringLiteral("End:")), 1, 0);
    grid->addWidget(DTPickerDateEnd_, 1, 1);
    grid->addWidget(DTPickerEnd_, 1, 2);
    picClock_ = named(new QLabel, "picClock");
    picClock_->setPixmap(QPixmap::fromImage(drawLogClocks(QTime(), QTime())));
    grid->addWidget(picClock_, 0, 3, 2, 1);

    lstvwLogs_ = named(new QTreeWidget, "lstvwLogs");
    lstvwLogs_->setHeaderLabels({QStringLiteral("Log Field"), QStringLiteral("Description")});
    lstvwLogs_->setRootIsDecorated(false);
    lstvwLogs_->setMinimumHeight(120);
    lstvwLogs_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    grid->addWidget(lstvwLogs_, 2, 0, 1, 4);

    auto* buttons = new QHBoxLayout;
    imgRefreshLogList_ = button("imgRefreshLogList", QStringLiteral("Refresh List"));
    imgRefreshLogGraph_ = button("imgRefreshLogGraph", RefreshLogGraphCaption);
    imgExportLog_ = button("imgExportLog", QStringLiteral("Export"));
    for (QToolButton* b : {imgRefreshLogList_, imgRefreshLogGraph_, imgExportLog_})
        buttons->addWidget(b);
    buttons->addStretch(1);
    grid->addLayout(buttons, 3, 0, 1, 4);

    connect(DTPickerDateStart_, &QDateEdit::dateChanged, this,
            [this] { pickerChanged(&Graph::LogStart, DTPickerDateStart_, nullptr); });
    connect(DTPickerStart_, &QTimeEdit::timeChanged, this,
            [this] { pickerChanged(&Graph::LogStart, nullptr, DTPickerStart_); });
    connect(DTPickerDateEnd_, &QDateEdit::dateChanged, this,
            [this] { pickerChanged(&Graph::LogEnd, DTPickerDateEnd_, nullptr); });
    connect(DTPickerEnd_, &QTimeEdit::timeChanged, this, [this] { pickerChanged(&Graph::LogEnd, nullptr, DTPickerEnd_); });
    connect(lstvwLogs_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { columnPicked(item); });
    connect(lstvwLogs_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { columnPicked(item); });
    connect(imgRefreshLogList_, &QToolButton::clicked, this, [this] { work_->refreshListClicked(graph_); });
    connect(imgRefreshLogGraph_, &QToolButton::clicked, this, [this] { work_->refreshGraphClicked(graph_); });
    connect(imgExportLog_, &QToolButton::clicked, this, [this] { work_->exportClicked(graph_); });
}

LogViewerPanel::~LogViewerPanel() = default;

Graph* LogViewerPanel::current()
{
    if (graph_ < 0 || size_t(graph_) >= monitor_.Sensors.size() || !monitor_.Sensors[size_t(graph_)].LogGraph)
        return nullptr;
    return &monitor_.Sensors[size_t(graph_)];
}

void LogViewerPanel::load(int graph, int node)
{
    graph_ = graph;
    node_ = node;
    const Graph* g = current();
    if (!g)
        return;
    showRange(*g);
    showColumns();
}

void LogViewerPanel::showRange(const Graph& g)
{
    loading_ = true;
    const QDate startDate = momentDate(g.LogStart), endDate = momentDate(g.LogEnd);
    const QTime startTime = momentTime(g.LogStart), endTime = momentTime(g.LogEnd);
    // A moment that reads as no date leaves its picker as it stood.
    if (startDate.isValid())
        DTPickerDateStart_->setDate(startDate);
    if (startTime.isValid())
        DTPickerStart_->setTime(startTime);
    if (endDate.isValid())
        DTPickerDateEnd_->setDate(endDate);
    if (endTime.isValid())
        DTPickerEnd_->setTime(endTime);
    picClock_->setPixmap(QPixmap::fromImage(drawLogClocks(startTime, endTime)));
    loading_ = false;
}

void LogViewerPanel::showColumns()
{
    lstvwLogs_->clear();
    if (work_->columnsGraph() != graph_)
        return;
    for (const LogColumn& c : work_->columns())
        new QTreeWidgetItem(lstvwLogs_, {c.name, c.description});
}

void LogViewerPanel::pickerChanged(double Graph::*moment, const QDateEdit* datePicker, const QTimeEdit* timePicker)
{
    Graph* g = current();
    if (loading_ || !g)
        return;
    double& m = g->*moment;
    m = datePicker ? momentWithDate(m, datePicker->date()) : momentWithTime(m, timePicker->time());
    monitor_.SaveSettings();
    showRange(*g);
}

void LogViewerPanel::columnPicked(QTreeWidgetItem* item)
{
    Graph* g = current();
    // The column goes to the Node selected in the tree; the Graph's own row has none.
    if (!item || !g || node_ < 0 || size_t(node_) >= g->Nodes.size())
        return;
    const int graph = graph_, node = node_;
    chooseLogField(monitor_.Sensors, graph, node, item->text(0));
    monitor_.SaveSettings();
    host_.nodesChanged(graph);
    if (node == 0)  // the first Node gave the Graph its unit
        host_.redraw(graph);
    emit nodeChanged(graph, node);
}

void LogViewerPanel::refreshAllHeaders()
{
    for (size_t i = 0; i < monitor_.Sensors.size() && !monitor_.Closing; ++i)
        if (monitor_.Sensors[i].LogGraph)
            work_->RefreshLogHeaders(int(i));
}

// ---- LogWorkHost ----

void LogViewerPanel::setStatus(const QString& text)
{
    if (showStatus)
        showStatus(text);
}

void LogViewerPanel::showMessage(const QString& text)
{
    host_.showMessage(text);
}

void LogViewerPanel::letEventsThrough()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void LogViewerPanel::graphDrawn(int graph)
{
    if (repaintGraph)
        repaintGraph(graph);
}

void LogViewerPanel::headersRead(int graph)
{
    if (graph == graph_)
        showColumns();
}

void LogViewerPanel::openExport(const QString& path)
{
    if (openDocument)
        openDocument(path);
}

void LogViewerPanel::workChanged()
{
    imgRefreshLogGraph_->setText(work_->RefreshingLogGraph ? StopCaption : RefreshLogGraphCaption);
    if (imgRefreshLogGraph_->isVisible())
        imgRefreshLogGraph_->repaint();
}

}  // namespace orm
