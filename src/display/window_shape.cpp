#include "display/window_shape.h"

#include "display/bar_graph.h"
#include "display/colors.h"

#include <algorithm>

namespace orm {

QRegion barFrameRegion(const Graph& graph, const PlotGeometry& geo)
{
    const int right = barFrameWidth(graph) + 54;
    const int bottom = geo.pHeight + 35;
    QRegion r;
    r += QRect(QPoint(54, 34), QPoint(right, 34));
    r += QRect(QPoint(54, bottom), QPoint(right, bottom));
    r += QRect(QPoint(54, 34), QPoint(54, bottom));
    r += QRect(QPoint(right, 34), QPoint(right, bottom));
    return r;
}

QRegion barGridRegion(const Graph& graph, const PlotGeometry& geo)
{
    QRegion r;
    if (geo.GridStep <= 0)
        return r;
    const int right = barFrameWidth(graph) + 53;
    for (int y = geo.GridStep + 35; y <= geo.pHeight + 34; y += geo.GridStep)
        r += QRect(QPoint(55, y), QPoint(right, y));
    for (int x = geo.GridStep + 55; x <= right; x += geo.GridStep)
        r += QRect(QPoint(x, 35), QPoint(x, geo.pHeight + 35));
    return r;
}

QRegion legendRegion(const QImage& picture, const Graph& graph, const PlotGeometry& geo)
{
    if (picture.isNull())
        return {};
    const int w = std::min(54, picture.width());
    const int h = std::min(geo.gHeight, picture.height());
    if (w <= 0 || h <= 0)
        return {};
    // Whatever is not back colour left of the plot is label text: gather it
    // run by run along each row.
    const QImage part = picture.copy(0, 0, w, h).convertToFormat(QImage::Format_RGB32);
    const QRgb back = fromBgr(graph.GraphBackColor).rgb() | 0xFF000000u;
    QRegion r;
    for (int y = 0; y < h; ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(part.constScanLine(y));
        for (int x = 0; x < w;) {
            if ((row[x] | 0xFF000000u) == back) {
                ++x;
                continue;
            }
            const int start = x;
            while (x < w && (row[x] | 0xFF000000u) != back)
                ++x;
            r += QRect(start, y, x - start, 1);
        }
    }
    return r;
}

QRegion barWindowShape(const Graph& graph, const PlotGeometry& geo, const QImage& picture, const QRegion& bars)
{
    QRegion r;
    if (graph.TransGrid)
        r += barGridRegion(graph, geo) + barFrameRegion(graph, geo);
    if (graph.TransLegend)
        r += legendRegion(picture, graph, geo);
    r += bars;
    return r;
}

}  // namespace orm
