// frmMain: the control panel. The tree of Graphs and Nodes on the left; the
// Graph panel or the Node panel on the right; the add and delete buttons, the
// retrieval label and the error label. Closing it with the window's button
// only hides it.
#pragma once

#include "monitor/editing.h"
#include "shell/tree_menu.h"

#include <QMainWindow>
#include <QPointer>
#include <QSystemTrayIcon>
#include <memory>
#include <optional>
#include <utility>

class QLabel;
class QMenu;
class QStackedWidget;
class QToolButton;

namespace orm {

class CustomToolTip;
class GraphPanel;
class GraphWindows;
class LogViewerPanel;
class Monitor;
class NodePanel;
class VistaTree;

// Questions and stop boxes as message boxes.
class MessageBoxPrompts final : public EditPrompts {
public:
    explicit MessageBoxPrompts(QWidget* parent) : parent_(parent) {}
    bool askYesNo(const QString& title, const QString& text) override;
    void stop(const QString& title, const QString& text) override;

private:
    QWidget* parent_;
};

class ControlPanel : public QMainWindow, private TreeMenuActions {
    Q_OBJECT
public:
    ControlPanel(Monitor& monitor, GraphWindows& windows, QWidget* parent = nullptr);
    ~ControlPanel() override;

    // Refills the tree from the model, keeping the selection where it can.
    void rebuildTree();
    // Selects a Graph row (`node` -1) or a Node row and shows its panel.
    void selectRow(int graph, int node);
    // The model changed elsewhere (a graph window's menu): the shown panel reads it again.
    void reloadPanel();
    // After a tick: the retrieval label and its red state.
    void afterTick();
    // The program is ending: the close event goes through.
    void allowClose() { closing_ = true; }
    // Drops and, when DisplayToolTips is on, builds the panel's tool-tips anew.
    void InitToolTips();
    // The questions of the structural edits; tests answer them themselves.
    void setPrompts(EditPrompts* prompts) { prompts_ = prompts; }

    // The four structural edits and the type-free ones of the tree menu.
    // A new Graph, or with imgViewLogs a new Log Graph, its columns read at once.
    void addGraph(bool logGraph = false);
    void addLogGraph() { addGraph(true); }
    void addNode(int graph);
    void deleteNode(int graph, int node);
    void deleteGraph(int graph);
    void toggleVisible(int graph, int node);

    VistaTree* tree() const { return tree_; }
    GraphPanel* graphPanel() const { return graphPanel_; }
    NodePanel* nodePanel() const { return nodePanel_; }
    // The log viewer panel, shown for the rows of a Log Graph.
    LogViewerPanel* logViewer() const { return logViewer_; }
    QLabel* retrievalLabel() const { return lblDataRetrieval_; }
    QLabel* sensorErrorLabel() const { return lblSensorError_; }
    QLabel* statusLabel() const { return lblStatus_; }
    // lblStatus: what a long piece of work is doing, painted at once, since
    // the work keeps the event loop busy; "" clears it.
    void showStatus(const QString& text);
    QMenu* treeMenu() const { return treeMenu_; }
    CustomToolTip& toolTips() const { return *tips_; }

    // Writes the screen rectangle of every named control that shows, of each
    // tree row and of each row of lstvwLogs, one per line: name, x, y, width,
    // height. For automation.
    bool writeWidgetMap(const QString& path) const;
    // The program's icon in the notification area, for the widget map.
    void setTrayIcon(QSystemTrayIcon* icon) { trayIcon_ = icon; }

signals:
    // The user closed the panel: it is hidden, and the tray says the program runs on.
    void hiddenToTray();

protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // TreeMenuActions
    void AddGraph() override { addGraph(); }
    void DeleteGraph(int graph) override { deleteGraph(graph); }
    void AddNode(int graph) override { addNode(graph); }
    void DeleteNode(int graph, int node) override { deleteNode(graph, node); }
    void ToggleVisible(int graph, int node) override { toggleVisible(graph, node); }
    void Rename(int graph, int node) override;
    void AboutOrmivane() override;

    QToolButton* makeButton(const QString& name, const QString& text);
    void showRow(bool isParent, int graph, int node);
    void renamed(bool isParent, int graph, int node, const QString& text);
    void collapsed(const QString& tag, bool collapsed);
    void treeMouse(Qt::MouseButtons buttons, int x, int y, bool overNothing, int graph, int node);
    void selectedGraphAndNode(int& graph, int& node) const;
    void setSensorError(const QString& text);
    // A deleted row leaves the tree; `nextGraph`/`nextNode` is selected after.
    void removeRow(int graph, int node, int nextGraph, int nextNode);
    // A Graph or its Nodes changed shape: a reading under way belongs to nothing any more.
    void graphsReshaped(bool graphsMoved);
    void settle();
    // The widget map, when the environment asks for one (ORMIVANE_WIDGET_MAP).
    void updateWidgetMap() const;

    Monitor& monitor_;
    GraphWindows& windows_;
    MessageBoxPrompts boxes_;
    EditPrompts* prompts_;
    VistaTree* tree_ = nullptr;
    QMenu* treeMenu_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    GraphPanel* graphPanel_ = nullptr;
    NodePanel* nodePanel_ = nullptr;
    LogViewerPanel* logViewer_ = nullptr;
    QLabel* lblDataRetrieval_ = nullptr;
    QLabel* lblSensorError_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    std::unique_ptr<CustomToolTip> tips_;
    QPointer<QSystemTrayIcon> trayIcon_;
    bool closing_ = false;
    std::optional<std::pair<int, int>> afterRemoval_;  // the row to select once a removal settled
};

// The tray message of a panel closed by its window button.
QString systrayIconNoticeTitle();
QString systrayIconNoticeText();

}  // namespace orm
