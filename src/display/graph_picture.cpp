#include "display/graph_picture.h"

namespace orm {

GraphPicture::GraphPicture(std::vector<Graph>& sensors, int index, QString commandLine)
    : GraphHistory(sensors, index, std::move(commandLine))
{
    setPainter(&painter_);
}

void GraphPicture::setDrawing(bool on)
{
    if (on == drawing())
        return;
    setPainter(on ? &painter_ : nullptr);
    if (!on || !valid())
        return;
    const Graph& g = graph();
    if (g.Visible || g.Opened) {
        InitDraw();
        RedrawGraph();
    }
}

}  // namespace orm
