// A graph window's logic with its picture: the history of GraphHistory and
// the line painter's images, which follow it while drawing is on.
#pragma once

#include "display/graph_history.h"
#include "display/line_painter.h"

#include <QImage>

namespace orm {

class GraphPicture : public GraphHistory {
public:
    // Draws from the start, one column a tick.
    GraphPicture(std::vector<Graph>& sensors, int index, QString commandLine = {});

    // Drawing off keeps the history and lets the images be; on again rebuilds
    // the picture from the history (InitDraw, RedrawGraph) and draws each tick.
    void setDrawing(bool on);
    bool drawing() const { return painter() != nullptr; }

    const QImage& picture() const { return painter_.picture(); }
    double ticks() const { return painter_.ticks(); }

private:
    LinePainter painter_;
};

}  // namespace orm
