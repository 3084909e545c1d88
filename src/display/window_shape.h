// The shape of a transparent Bar Graph's window: what stays visible of it,
// in window pixels.
#pragma once

#include "display/line_painter.h"
#include "model/model.h"

#include <QImage>
#include <QRegion>

namespace orm {

QRegion barFrameRegion(const Graph& graph, const PlotGeometry& geo);
QRegion barGridRegion(const Graph& graph, const PlotGeometry& geo);
// The scale labels and units: the pixels left of the plot that are not the
// back colour, so the text itself and nothing around it.
QRegion legendRegion(const QImage& picture, const Graph& graph, const PlotGeometry& geo);
// The window's shape: grid and frame with TransGrid, the legend with
// TransLegend, and the bars. Empty when nothing is left.
QRegion barWindowShape(const Graph& graph, const PlotGeometry& geo, const QImage& picture, const QRegion& bars);

}  // namespace orm
