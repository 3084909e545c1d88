#include "shell/control_panel.h"

#include "shell/about_box.h"

#include "model/catalogue.h"
#include "monitor/monitor.h"
#include "monitor/transfers.h"
#include "model/version.h"
#include "shell/custom_tool_tip.h"
#include "shell/graph_panel.h"
#include "shell/graph_window.h"
#include "shell/graph_windows.h"
#include "shell/log_viewer_panel.h"
#include "shell/node_panel.h"
#include "shell/panel_help_texts.h"
#include "shell/vista_tree.h"
#include "shell/widget_map.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QStackedWidget>
#include <QTextStream>
#include <QTreeWidget>

namespace orm {

QString systrayIconNoticeTitle()
{
    return QLatin1String(ProductName) + QStringLiteral(" Systray Icon");
}

QString systrayIconNoticeText()
{
    const QString p = QLatin1String(ProductName);
    return p + QStringLiteral(" is still running in the background when you see this icon in the Systray. To stop "
                              "running ") +
           p + QStringLiteral(", right-click on this icon and click Exit. To open the Control Panel again just "
                              "double-click on this icon.");
}

bool MessageBoxPrompts::askYesNo(const QString& title, const QString& text)
{
    return QMessageBox::question(parent_, title, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) ==
           QMessageBox::Yes;
}

void MessageBoxPrompts::stop(const QString& title, const QString& text)
{
    QMessageBox::critical(parent_, title, text);
}

ControlPanel::~ControlPanel() = default;

void ControlPanel::selectedGraphAndNode(int& graph, int& node) const
{
    graph = tree_->selectedParent();
    node = tree_->selectedChild();
    if (afterRemoval_) {  // a removed row is still shrinking: the row to come counts
        graph = afterRemoval_->first;
        node = afterRemoval_->second;
    }
    if (graph < 0 || size_t(graph) >= monitor_.Sensors.size()) {
        graph = -1;
        node = -1;
    }
}

void ControlPanel::rebuildTree()
{
    tree_->rebuild(monitor_.Sensors);
}

void ControlPanel::selectRow(int graph, int node)
{
    tree_->SelectItem(graph, node, false, true);
}

void ControlPanel::reloadPanel()
{
    int graph = -1, node = -1;
    selectedGraphAndNode(graph, node);
    if (graph >= 0)
        showRow(node < 0, graph, node);
}

void ControlPanel::showRow(bool isParent, int graph, int node)
{
    if (graph < 0 || size_t(graph) >= monitor_.Sensors.size())
        return;
    QWidget* page = isParent ? static_cast<QWidget*>(graphPanel_) : static_cast<QWidget*>(nodePanel_);
    if (isParent) {
        monitor_.transfers().shownGraph = monitor_.transfers().shownNode = -1;  // no Node's tests to show
        graphPanel_->load(graph);
    } else
        nodePanel_->load(graph, node);
    // Only the page shown asks for room: the scroll bars come when it needs more than there is.
    for (QWidget* w : {static_cast<QWidget*>(graphPanel_), static_cast<QWidget*>(nodePanel_)})
        w->setSizePolicy(w == page ? QSizePolicy::Preferred : QSizePolicy::Ignored,
                         w == page ? QSizePolicy::Preferred : QSizePolicy::Ignored);
    stack_->setCurrentWidget(page);
    const bool logGraph = monitor_.Sensors[size_t(graph)].LogGraph;
    if (logGraph)
        logViewer_->load(graph, isParent ? -1 : node);
    logViewer_->setVisible(logGraph);
}

void ControlPanel::setSensorError(const QString& text)
{
    lblSensorError_->setText(text);
}

// ---- structural edits ----

void ControlPanel::addGraph(bool logGraph)
{
    monitor_.AddSensor(logGraph);
    const int graph = int(monitor_.Sensors.size()) - 1;
    windows_.added(graph);
    rebuildTree();
    selectRow(graph, -1);
    if (logGraph)
        logViewer_->work().RefreshLogHeaders(graph);
}

void ControlPanel::graphsReshaped(bool graphsMoved)
{
    // The list of columns holds for its Graph's index, which a delete moves.
    if (graphsMoved || logViewer_->work().busy())
        logViewer_->work().graphsChanged();
}

void ControlPanel::addNode(int graph)
{
    const int node = orm::AddNode(monitor_, graph);
    if (node < 0)
        return;
    graphsReshaped(false);
    windows_.nodesChanged(graph);
    rebuildTree();
    selectRow(graph, node);
}

void ControlPanel::deleteNode(int graph, int node)
{
    const EditResult r = orm::DeleteNode(monitor_, monitor_.store(), *prompts_, graph, node, &GraphWindows::rebind);
    if (r == EditResult::Done || r == EditResult::GraphDeleted)
        graphsReshaped(r == EditResult::GraphDeleted);
    if (r == EditResult::Done) {
        windows_.nodeRemoved(graph, node);
        removeRow(graph, node, graph, std::min(node, int(monitor_.Sensors[size_t(graph)].Nodes.size()) - 1));
    } else if (r == EditResult::GraphDeleted) {
        windows_.graphRemoved(graph);
        removeRow(graph, -1, std::min(graph, int(monitor_.Sensors.size()) - 1), -1);
    }
}

void ControlPanel::deleteGraph(int graph)
{
    if (orm::DeleteGraph(monitor_, monitor_.store(), *prompts_, graph, &GraphWindows::rebind) != EditResult::Done)
        return;
    graphsReshaped(true);
    windows_.graphRemoved(graph);
    removeRow(graph, -1, std::min(graph, int(monitor_.Sensors.size()) - 1), -1);
}

void ControlPanel::removeRow(int graph, int node, int nextGraph, int nextNode)
{
    // The row shrinks away; then the tree is filled anew and the next row chosen.
    tree_->MarkSelected(graph, node);
    tree_->DeleteSelectedItem();
    afterRemoval_ = {nextGraph, nextNode};
    if (!tree_->animating())
        settle();
}

void ControlPanel::settle()
{
    if (!afterRemoval_)
        return;
    const auto [graph, node] = *afterRemoval_;
    afterRemoval_.reset();
    rebuildTree();
    selectRow(graph, node);
}

void ControlPanel::toggleVisible(int graph, int node)
{
    if (graph < 0 || size_t(graph) >= monitor_.Sensors.size())
        return;
    Graph& g = monitor_.Sensors[size_t(graph)];
    if (node < 0) {
        g.Visible = !g.Visible;
        monitor_.SaveSettings();
        windows_.visibilityChanged(graph);
    } else if (size_t(node) < g.Nodes.size()) {
        g.Nodes[size_t(node)].NodeVisible = !g.Nodes[size_t(node)].NodeVisible;
        monitor_.SaveSettings();
        windows_.nodesChanged(graph);
    }
    showRow(node < 0, graph, node);  // the panel's eye follows
}

void ControlPanel::Rename(int graph, int node)
{
    tree_->ForceTitleEdit(node < 0, graph, node);
}

void ControlPanel::AboutOrmivane()
{
    showAbout(this);
}

// ---- tree events ----

void ControlPanel::renamed(bool isParent, int graph, int node, const QString& text)
{
    if (graph < 0 || size_t(graph) >= monitor_.Sensors.size())
        return;
    Graph& g = monitor_.Sensors[size_t(graph)];
    if (isParent) {
        g.Name = text;
    } else if (node >= 0 && size_t(node) < g.Nodes.size()) {
        g.Nodes[size_t(node)].Name = text;
    } else {
        return;
    }
    monitor_.SaveSettings();
    if (isParent)
        windows_.captionsChanged(graph);
    else
        windows_.nodeRenamed(graph);  // nothing is redrawn: only what shows the name
    rebuildTree();
    showRow(isParent, graph, node);
}

void ControlPanel::collapsed(const QString& tag, bool collapsed)
{
    bool ok = false;
    const int graph = tag.toInt(&ok);
    if (!ok || graph < 0 || size_t(graph) >= monitor_.Sensors.size())
        return;
    monitor_.Sensors[size_t(graph)].Collapsed = collapsed;
    monitor_.SaveSettings();
}

void ControlPanel::treeMouse(Qt::MouseButtons buttons, int x, int y, bool overNothing, int graph, int node)
{
    const bool onRow = !overNothing && graph >= 0 && size_t(graph) < monitor_.Sensors.size();
    if (buttons & Qt::RightButton) {
        if (onRow)
            selectRow(graph, node);
        refreshTreeMenu(*treeMenu_, monitor_.Sensors, onRow ? graph : -1, onRow ? node : -1);
        QAction* chosen = treeMenu_->exec(tree_->mapToGlobal(QPoint(x, y)));
        const int id = chosen ? chosen->data().toInt() : 0;
        actOnTreeMenu(id, monitor_.Sensors, onRow ? graph : -1, onRow ? node : -1, *this);
        return;
    }
    if (onRow && tips_->active()) {
        const TreeTip tip = treeToolTip(monitor_.Sensors[size_t(graph)], node);
        tips_->ShowTip(tree_, tipText(tip.title, tip.text), TreeTipMilliseconds);
    }
}

void ControlPanel::showStatus(const QString& text)
{
    lblStatus_->setText(text);
    if (lblStatus_->isVisible())
        lblStatus_->repaint();
}

// ---- tool-tips and the retrieval label ----

void ControlPanel::InitToolTips()
{
    tips_->InitToolTips(this, monitor_.Settings.DisplayToolTips, QLatin1String(ProductName), panelHelpTexts());
}

void ControlPanel::afterTick()
{
    lblDataRetrieval_->setText(monitor_.retrievalText);
    // A style sheet is re-applied in full when set: only a change of colour sets it, not every tick.
    const QString colour = monitor_.retrievalRed ? QStringLiteral("color: rgb(255, 0, 0);")
                                                 : QStringLiteral("color: rgb(0, 0, 0);");
    if (lblDataRetrieval_->styleSheet() != colour)
        lblDataRetrieval_->setStyleSheet(colour);
    if (tips_->active())
        tips_->SetTip(lblDataRetrieval_, monitor_.retrievalToolTip());
    updateWidgetMap();
}

void ControlPanel::updateWidgetMap() const
{
    static const QString mapPath = qEnvironmentVariable("ORMIVANE_WIDGET_MAP");
    if (!mapPath.isEmpty())
        writeWidgetMap(mapPath);
}

void ControlPanel::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    updateWidgetMap();
}

bool ControlPanel::writeWidgetMap(const QString& path) const
{
    QString text;
    QTextStream out(&text);
    const auto line = [&out](const QString& name, QRect r) {
        out << name << '\t' << r.x() << '\t' << r.y() << '\t' << r.width() << '\t' << r.height() << '\n';
    };
    // The panel and the program's other windows (a message, a dialog); graph windows are listed below.
    for (const QWidget* top : QApplication::topLevelWidgets()) {
        if (!top->isVisible() || qobject_cast<const GraphWindow*>(top))
            continue;
        const auto named = [](const QWidget* w) {
            return !w->objectName().isEmpty() && w->isVisible() && !w->objectName().startsWith(QLatin1String("qt_"));
        };
        if (named(top))
            line(top->objectName(), top->frameGeometry());
        else if (top->objectName().isEmpty())  // Qt's own windows, such as the tray's balloon
            line(QString::fromLatin1(top->metaObject()->className()), top->frameGeometry());
        for (const QWidget* w : top->findChildren<QWidget*>())
            if (named(w)) {
                line(w->objectName(), QRect(w->mapToGlobal(QPoint(0, 0)), w->size()));
                if (const auto* label = qobject_cast<const QLabel*>(w))
                    out << widgetMapText(w->objectName(), label->text()) << '\n';
            }
        // A menu's entries by id, and what a window lists of its own parts.
        if (const auto* menu = qobject_cast<const QMenu*>(top))
            for (QAction* a : menu->actions())
                if (!a->isSeparator() && a->isVisible())
                    line(QStringLiteral("menu(%1)").arg(a->data().toInt()),
                         QRect(menu->mapToGlobal(menu->actionGeometry(a).topLeft()), menu->actionGeometry(a).size()));
        if (const auto* source = dynamic_cast<const WidgetMapSource*>(top))
            for (const QString& extra : source->widgetMapLines())
                out << extra << '\n';
    }
    if (trayIcon_ && trayIcon_->isVisible() && !trayIcon_->geometry().isEmpty())
        line(QStringLiteral("trayIcon"), trayIcon_->geometry());
    if (isVisible()) {
        const auto& rows = tree_->rows();
        for (size_t p = 0; p < rows.size(); ++p) {
            const QPoint origin = tree_->mapToGlobal(QPoint(0, 0));
            const int top = tree_->rowTop(int(p), -1);
            if (top >= 0)
                line(QStringLiteral("row(%1)").arg(p),
                     QRect(origin + QPoint(0, top), QSize(TreeGeometry::RowWidth, TreeGeometry::RowHeight)));
            for (size_t c = 0; c < rows[p].Children.size(); ++c) {
                const int ct = tree_->rowTop(int(p), int(c));
                if (ct >= 0)
                    line(QStringLiteral("row(%1,%2)").arg(p).arg(c),
                         QRect(origin + QPoint(TreeGeometry::ChildX, ct),
                               QSize(TreeGeometry::RowWidth - TreeGeometry::ChildX, TreeGeometry::RowHeight)));
            }
        }
    }
    if (logViewer_->isVisible()) {
        const auto* list = logViewer_->findChild<QTreeWidget*>(QStringLiteral("lstvwLogs"));
        for (int k = 0; list && k < list->topLevelItemCount(); ++k) {
            const QRect r = list->visualItemRect(list->topLevelItem(k));
            if (!r.isEmpty())
                line(QStringLiteral("lstvwLogs(%1)").arg(k),
                     QRect(list->viewport()->mapToGlobal(r.topLeft()), r.size()));
        }
    }
    for (int g = 0; g < windows_.count(); ++g) {
        const GraphWindow* w = windows_.window(g);
        if (w && w->isVisible())
            line(QStringLiteral("graph(%1)").arg(g), w->frameGeometry());
    }
    out.flush();
    // Written whole and renamed, so a reader never sees half a map.
    QFile f(path + QStringLiteral(".part"));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    f.write(text.toUtf8());
    f.close();
    QFile::remove(path);
    return QFile::rename(path + QStringLiteral(".part"), path);
}

bool ControlPanel::eventFilter(QObject* watched, QEvent* event)
{
    // A click on the rate label takes the red back.
    if (watched == lblDataRetrieval_ && event->type() == QEvent::MouseButtonPress) {
        monitor_.clearRetrievalRed();
        afterTick();
    }
    return QMainWindow::eventFilter(watched, event);
}

void ControlPanel::moveEvent(QMoveEvent* event)
{
    // Shut-down writes where the panel stood.
    monitor_.Settings.XLoc = x();
    monitor_.Settings.YLoc = y();
    QMainWindow::moveEvent(event);
    updateWidgetMap();
}

void ControlPanel::closeEvent(QCloseEvent* event)
{
    if (closing_ || monitor_.Closing) {
        event->accept();
        return;
    }
    // The user's close only hides the panel; the program runs on in the tray.
    event->ignore();
    hide();
    emit hiddenToTray();
}

}  // namespace orm
