#include "display/cross_hair.h"

#include "model/catalogue.h"
#include "model/number_text.h"
#include "display/colors.h"
#include "display/graph_picture.h"

#include <QPainter>
#include <QPen>
#include <cmath>
#include <limits>

namespace orm {

namespace {

constexpr int PlotLeft = 55;
constexpr int PlotTop = 35;

// Where value v sits on the plot, before it is held inside.
double rawLineY(double v, int pHeight, double maxValue)
{
    if (maxValue == 0)  // no scale yet: the base line
        return pHeight + PlotTop;
    return (pHeight + PlotTop) - (pHeight / maxValue) * v;
}

QString withoutNul(QString s)
{
    return s.remove(QChar(0));
}

}  // namespace

int crossHairDecimals(double v)
{
    static const struct {
        double below;
        int decimals;
    } table[] = {{1e-8, 10}, {1e-7, 9}, {1e-6, 8}, {1e-5, 7}, {1e-4, 6}, {0.001, 5}, {0.01, 4}, {0.1, 3}};
    for (const auto& row : table)
        if (v < row.below)
            return row.decimals;
    return 2;
}

double crossHairRound(double v)
{
    if (!std::isfinite(v) || std::fabs(v) >= 1e15)
        return v;
    const double scale = std::pow(10.0, crossHairDecimals(v));
    const double r = std::nearbyint(v * scale) / scale;
    return std::isfinite(r) ? r : v;
}

int crossHairColumn(int x, int count)
{
    if (count <= 0)
        return 0;
    int c = x + 2 - PlotLeft;
    if (c > count)
        c = count;
    if (c < 1)
        c = 1;
    return c;
}

int crossHairLineY(double v, int pHeight, double maxValue)
{
    double y = rawLineY(v, pHeight, maxValue);
    if (std::isnan(y) || y <= PlotTop)
        return PlotTop;
    if (y >= pHeight + 34)
        return pHeight + 34;
    return int(y);
}

bool inSizingCorner(int x, int y, int windowWidth, int windowHeight)
{
    return x > windowWidth - 10 && y > windowHeight - 10;
}

void drawResizeGrip(QPainter& painter, QSize windowSize, const Graph& graph)
{
    QColor colour = fromBgr(graph.GraphGridLabelColor);
    const QColor back = fromBgr(graph.GraphBackColor);
    if (colour == back)
        colour = QColor(255 - back.red(), 255 - back.green(), 255 - back.blue());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(colour, 1));
    const int r = windowSize.width() - 2, b = windowSize.height() - 2;
    for (int k = 2; k <= 8; k += 3)
        painter.drawLine(r - k, b, r, b - k);
    painter.restore();
}

CrossHairPoint crossHairAt(const std::vector<Graph>& sensors, int graph, const GraphPicture& picture, int x,
                           int y)
{
    CrossHairPoint none;
    if (graph < 0 || graph >= int(sensors.size()))
        return none;
    const Graph& g = sensors[size_t(graph)];
    if (g.Nodes.empty() || g.GraphType != LineGraph || g.DisableCrossHair)
        return none;
    const int pWidth = picture.geometry().pWidth;
    const int pHeight = picture.geometry().pHeight;
    if (y < PlotTop || y > pHeight + PlotTop || x < PlotLeft || x > pWidth + 54)
        return none;
    const LabelList& labels = picture.history().labels();
    if (labels.empty())
        return none;
    const int c = crossHairColumn(x, labels.count());
    if (labels.at(c) == QLatin1String("||"))
        return none;

    const double maxValue = picture.maxValue();
    int best = -1;
    double bestValue = 0;
    double bestMeasure = std::numeric_limits<double>::infinity();
    for (size_t k = 0; k < g.Nodes.size(); ++k) {
        if (!g.Nodes[k].NodeVisible)
            continue;
        const double v = picture.GetAvg(int(k) + 1, c, 0, false, true, true);
        if (y >= 37) {
            const double d = std::fabs(rawLineY(v, pHeight, maxValue) - y);
            if (best < 0 || d < bestMeasure) {
                best = int(k);
                bestMeasure = d;
                bestValue = v;
            }
        } else if (best < 0 || v > bestValue) {
            // The top two rows: the highest value, off the scale or not.
            best = int(k);
            bestValue = v;
        }
    }
    if (best < 0)
        return none;

    CrossHairPoint p;
    p.shown = true;
    p.x = x;
    p.column = c;
    p.node = best;
    p.value = crossHairRound(bestValue);
    p.y = crossHairLineY(bestValue, pHeight, maxValue);
    const Node& n = g.Nodes[size_t(best)];
    p.dataText = screenNumberText(p.value) + QLatin1Char(' ') + g.LegendUnits + QStringLiteral(" - ") + labels.at(c) +
                 QStringLiteral("\r\n");
    p.nameText = withoutNul(n.Name) + QStringLiteral(" (") + nodeTypeName(n.NodeType, sensors, graph, best) +
                 QLatin1Char(')');
    p.swatchColor = n.PenColor;
    return p;
}

std::vector<QLine> crossHairStrokes(const CrossHairPoint& point, int pWidth, int pHeight)
{
    std::vector<QLine> lines;
    if (!point.shown)
        return lines;
    lines.emplace_back(PlotLeft, point.y, pWidth + PlotLeft, point.y);
    lines.emplace_back(point.x, PlotTop, point.x, pHeight + PlotTop);
    static const int halfWidths[] = {1, 2, 3, 3, 3, 2, 1};
    for (int row = 0; row < 7; ++row) {
        const int yy = point.y - 3 + row;
        lines.emplace_back(point.x - halfWidths[row], yy, point.x + halfWidths[row], yy);
    }
    return lines;
}

void drawCrossHair(QPainter& painter, const Graph& graph, const CrossHairPoint& point, int pWidth, int pHeight)
{
    QPen pen(fromBgr(graph.GraphCrossHairColor));
    pen.setStyle(Qt::DashDotDotLine);
    pen.setWidth(1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    const std::vector<QLine> lines = crossHairStrokes(point, pWidth, pHeight);
    for (size_t i = 0; i < lines.size(); ++i) {
        // The dot's strokes are too short for dashes; they go solid in the same colour.
        if (i == 2) {
            pen.setStyle(Qt::SolidLine);
            painter.setPen(pen);
        }
        painter.drawLine(lines[i]);
    }
}

}  // namespace orm
