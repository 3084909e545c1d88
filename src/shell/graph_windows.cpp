#include "shell/graph_windows.h"

#include "monitor/monitor.h"
#include "display/displayed_graph.h"
#include "shell/graph_window.h"
#include "shell/tray_graphs.h"

#include <cstdio>

namespace orm {

GraphWindows::GraphWindows(Monitor& monitor) : monitor_(monitor) {}

GraphWindows::~GraphWindows() = default;

std::unique_ptr<GraphWindow> GraphWindows::make(int graph)
{
    auto* pic = picture(graph);
    if (!pic)
        return nullptr;
    auto w = std::make_unique<GraphWindow>(monitor_, graph, pic);
    w->setWindowTitle(monitor_.Sensors[size_t(graph)].Name);  // what the window list and the task bar show
    w->setSaveCallback([this] { monitor_.SaveSettings(); });
    w->setMenuActions(actions_);
    w->OpenGraph();
    return w;
}

void GraphWindows::openAll()
{
    windows_.clear();
    windows_.resize(monitor_.GraphForms.size());
    for (size_t i = 0; i < windows_.size(); ++i)
        windows_[i] = make(int(i));
}

void GraphWindows::added(int graph)
{
    if (graph < 0 || size_t(graph) >= monitor_.GraphForms.size())
        return;
    if (windows_.size() < monitor_.GraphForms.size())
        windows_.resize(monitor_.GraphForms.size());
    windows_[size_t(graph)] = make(graph);
    updateTray();
}

void GraphWindows::nodeRemoved(int graph, int node)
{
    if (auto* pic = picture(graph))
        pic->removeNode(node);
    nodesChanged(graph);
}

void GraphWindows::nodeRenamed(int graph)
{
    if (auto* w = window(graph))
        w->forgetCrossHair();
    updateTray();
}

void GraphWindows::graphRemoved(int graph)
{
    if (graph < 0 || size_t(graph) >= windows_.size())
        return;
    // Its picture is already gone with the view: the window must not reach it.
    if (windows_[size_t(graph)])
        windows_[size_t(graph)]->detachPicture();
    windows_.erase(windows_.begin() + graph);
    for (size_t i = size_t(graph); i < windows_.size(); ++i)
        if (windows_[i])
            windows_[i]->setGraphIndex(int(i));
    updateTray();
}

void GraphWindows::rebind(GraphView& view, int index)
{
    if (auto* pic = dynamic_cast<DisplayedGraph*>(&view))
        pic->setIndex(index);
}

void GraphWindows::keepClearOf(const QRect& area)
{
    bool moved = false;
    for (size_t i = 0; i < windows_.size() && i < monitor_.Sensors.size(); ++i) {
        GraphWindow* w = windows_[i].get();
        if (!w || !w->isVisible() || !w->frameGeometry().intersects(area))
            continue;
        w->move(area.right() + 1 + 17, w->y());  // a cascade step beside it
        Graph& g = monitor_.Sensors[i];
        g.LocX = w->x();
        g.LocY = w->y();
        moved = true;
    }
    if (moved)
        monitor_.SaveSettings();
}

GraphWindow* GraphWindows::window(int graph) const
{
    return graph >= 0 && size_t(graph) < windows_.size() ? windows_[size_t(graph)].get() : nullptr;
}

void GraphWindows::refreshAll()
{
    for (auto& w : windows_)
        if (w)
            w->refresh();
}

void GraphWindows::clear()
{
    windows_.clear();
}

DisplayedGraph* GraphWindows::picture(int graph)
{
    return graph >= 0 && size_t(graph) < monitor_.GraphForms.size()
               ? dynamic_cast<DisplayedGraph*>(monitor_.GraphForms[size_t(graph)].get())
               : nullptr;
}

void GraphWindows::nodesChanged(int graph)
{
    auto* pic = picture(graph);
    if (!pic)
        return;
    // Redrawing a long history takes a moment: the window shows the hourglass meanwhile.
    auto* w = window(graph);
    if (w) {
        w->setCursor(Qt::WaitCursor);
        w->forgetCrossHair();
    }
    pic->SetUpNodes(false);
    pic->InitDraw();
    pic->RedrawGraph();
    if (w) {
        if (monitor_.Sensors[size_t(graph)].Transparent)
            w->MakeClear();
        w->refresh();
        w->unsetCursor();
    }
    updateTray();
}

void GraphWindows::redraw(int graph)
{
    auto* pic = picture(graph);
    if (!pic)
        return;
    double max = pic->maxValue();
    pic->SetMax(max, false, 0);
    pic->InitDraw();
    pic->RedrawGraph();
    if (auto* w = window(graph)) {
        w->captionsChanged();
        w->refresh();
    }
    updateTray();
}

void GraphWindows::graphTypeChanged(int graph)
{
    if (auto* w = window(graph)) {
        w->UnMakeClear(true);
        if (monitor_.Sensors[size_t(graph)].Visible)
            w->ChangeGraphType();
        else
            w->hide();
    }
    updateTray();
}

void GraphWindows::visibilityChanged(int graph)
{
    if (graph < 0 || size_t(graph) >= monitor_.Sensors.size())
        return;
    const Graph& g = monitor_.Sensors[size_t(graph)];
    auto* w = window(graph);
    if (g.Visible && g.GraphType != SystrayIcon) {
        if (w) {
            w->OpenGraph();
            w->raise();
        }
    } else if (g.Visible) {
        if (auto* pic = picture(graph))
            pic->SetUpNodes(false);
    } else if (w) {
        w->hide();
    }
    updateTray();
}

void GraphWindows::topMostChanged(int graph)
{
    auto* w = window(graph);
    if (!w)
        return;
    const bool shown = w->isVisible();
    w->setWindowFlag(Qt::WindowStaysOnTopHint, monitor_.Sensors[size_t(graph)].TopMost);
    if (shown)
        w->show();  // a changed flag hides the window
}

void GraphWindows::transparencyChanged(int graph)
{
    auto* w = window(graph);
    if (!w)
        return;
    if (monitor_.Sensors[size_t(graph)].Transparent) {
        w->UnMakeClear(true);
        w->MakeClear();
    } else {
        w->UnMakeClear(true);
    }
    w->refresh();
}

void GraphWindows::opacityChanged(int graph)
{
    if (auto* w = window(graph))
        w->opacityChanged();
}

void GraphWindows::captionsChanged(int graph)
{
    if (auto* w = window(graph))
        w->captionsChanged();
}

void GraphWindows::showMessage(const QString& text)
{
    if (messenger_)
        messenger_(text);
    else
        std::printf("%s\n", qPrintable(text));
}

void GraphWindows::updateTray()
{
    if (tray_)
        tray_->update();
}

}  // namespace orm
