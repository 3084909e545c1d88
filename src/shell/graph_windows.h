// The graph windows of all Graphs, one per entry of GraphForms at the same
// index, and what the control panel's edits ask of them.
#pragma once

#include "shell/panel_host.h"

#include <QRect>

#include <functional>
#include <memory>
#include <vector>

namespace orm {

class GraphMenuActions;
class GraphView;
class GraphWindow;
class Monitor;
class TrayGraphs;

class GraphWindows final : public PanelHost {
public:
    explicit GraphWindows(Monitor& monitor);
    ~GraphWindows() override;

    void setMenuActions(GraphMenuActions* actions) { actions_ = actions; }
    void setTrayGraphs(TrayGraphs* tray) { tray_ = tray; }
    // ShowMessage; without one the text goes to standard output.
    void setMessenger(std::function<void(const QString&)> show) { messenger_ = std::move(show); }

    // A window for each Graph whose view is a picture.
    void openAll();
    // The Graph at `graph` was just added (AddSensor): its window opens.
    void added(int graph);
    // Node `node` of the Graph was deleted: its curve goes, the rest stay.
    void nodeRemoved(int graph, int node);
    // A Node of the Graph has a new name: the cross-hair and the tray tips
    // follow; the picture stays as it is.
    void nodeRenamed(int graph);
    // The Graph at `graph` and its view were deleted: its window goes, later
    // windows move down one place with their pictures and curves.
    void graphRemoved(int graph);
    // What DeleteGraph calls for each view that moved down.
    static void rebind(GraphView& view, int index);

    // Moves every shown window that overlaps `area` (screen pixels) to its
    // right, and keeps the new places.
    void keepClearOf(const QRect& area);

    GraphWindow* window(int graph) const;
    int count() const { return int(windows_.size()); }
    // After a tick: every window repaints from its picture.
    void refreshAll();
    void clear();

    // PanelHost
    DisplayedGraph* picture(int graph) override;
    void nodesChanged(int graph) override;
    void redraw(int graph) override;
    void graphTypeChanged(int graph) override;
    void visibilityChanged(int graph) override;
    void topMostChanged(int graph) override;
    void transparencyChanged(int graph) override;
    void opacityChanged(int graph) override;
    void captionsChanged(int graph) override;
    void showMessage(const QString& text) override;

private:
    std::unique_ptr<GraphWindow> make(int graph);
    void updateTray();

    Monitor& monitor_;
    GraphMenuActions* actions_ = nullptr;
    TrayGraphs* tray_ = nullptr;
    std::function<void(const QString&)> messenger_;
    std::vector<std::unique_ptr<GraphWindow>> windows_;
};

}  // namespace orm
