// What the control panel's edits ask of the rest of the desktop: the Graph's
// window follows a changed field, and the user is told something. The panels
// write the model themselves and save; this is only the follow-up.
#pragma once

#include <QString>

namespace orm {

class DisplayedGraph;

class PanelHost {
public:
    virtual ~PanelHost() = default;
    // The Graph's picture, or null when it has none (yet).
    virtual DisplayedGraph* picture(int graph) = 0;
    // Nodes were added, removed, hidden or retyped: SetUpNodes, InitDraw for a
    // Bar Graph, the shape again when transparent, repaint.
    virtual void nodesChanged(int graph) = 0;
    // The scale or the look changed: SetMax with m_MaxValue, InitDraw, RedrawGraph, repaint.
    virtual void redraw(int graph) = 0;
    // GraphType changed: UnMakeClear, ChangeGraphType; the tray icons follow.
    virtual void graphTypeChanged(int graph) = 0;
    // Visible changed: OpenGraph and show, or hide; a Systray Icon Graph lays out its icons.
    virtual void visibilityChanged(int graph) = 0;
    virtual void topMostChanged(int graph) = 0;
    // Transparent, TransLegend or TransGrid changed: MakeClear or UnMakeClear, PaintRegions.
    virtual void transparencyChanged(int graph) = 0;
    virtual void opacityChanged(int graph) = 0;
    // Name or Description changed: the window's captions.
    virtual void captionsChanged(int graph) = 0;
    // ShowMessage: a message the user acknowledges.
    virtual void showMessage(const QString& text) = 0;
};

}  // namespace orm
