#include "display/bar_graph.h"

#include "model/catalogue.h"
#include "model/number_text.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace orm {

namespace {

QString withoutNul(QString s)
{
    return s.remove(QChar(0));
}

bool validNode(const std::vector<Graph>& sensors, int graph, int node)
{
    return graph >= 0 && graph < int(sensors.size()) && node >= 0
           && node < int(sensors[graph].Nodes.size());
}

QString typeNameOf(const std::vector<Graph>& sensors, int graph, int node)
{
    return nodeTypeName(sensors[graph].Nodes[node].NodeType, sensors, graph, node);
}

// Where a line of value v would end: the base line for a negative value.
qint32 lineY(double v, double maxValue, int pHeight)
{
    if (v < 0)
        return pHeight + 35;
    if (maxValue == 0)
        maxValue = 0.1;
    double y = std::nearbyint((pHeight + 35) - (pHeight / maxValue) * v);
    if (y < -100000000.0)
        y = -100000000.0;
    return qint32(std::min(y, 2147483647.0));
}

}  // namespace

int barPixelWidth(const Node& node)
{
    return node.BarWidth * 8 + 5;
}

std::vector<QRect> barRects(const Graph& graph, int pHeight)
{
    std::vector<QRect> rects;
    int x = BarLeft;
    for (const Node& n : graph.Nodes) {
        if (n.NodeVisible) {
            rects.emplace_back(x, BarTop, barPixelWidth(n), pHeight + 3);
            x += barPixelWidth(n);
        } else {
            rects.emplace_back();
        }
        x += BarGap;
    }
    return rects;
}

int barAt(const Graph& graph, int pHeight, QPoint point)
{
    const std::vector<QRect> rects = barRects(graph, pHeight);
    for (size_t i = 0; i < rects.size(); ++i)
        if (rects[i].contains(point))
            return int(i);
    return -1;
}

int barFrameWidth(const Graph& graph)
{
    int width = 10;
    for (const Node& n : graph.Nodes)
        width += (n.NodeVisible ? barPixelWidth(n) : 0) + BarGap;
    return width;
}

void setUpBars(BarGraphState& state, const Graph& graph, double maxValue, bool clearAllData,
               const std::vector<double>& newestSamples)
{
    const bool fresh = clearAllData || !state.writtenToGraph;
    state.bars.resize(graph.Nodes.size());
    if (clearAllData || state.oldYData.size() != graph.Nodes.size())
        state.oldYData.assign(graph.Nodes.size(), 0);
    for (size_t i = 0; i < graph.Nodes.size(); ++i) {
        BarMeter& bar = state.bars[i];
        bar.ForeColor = graph.Nodes[i].PenColor;
        bar.BackColor = graph.GraphBackColor;
        bar.Max = toInt16(std::trunc(maxValue));
        if (fresh) {
            bar.Value = 100;
        } else if (i < newestSamples.size()) {
            const double v = newestSamples[i];
            if (v >= bar.Min && v <= bar.Max)
                bar.Value = toInt16(v);
        }
    }
}

void setBarsMax(BarGraphState& state, double maxValue)
{
    for (BarMeter& bar : state.bars)
        bar.Max = toInt16(std::trunc(maxValue));
}

void barTick(BarGraphState& state, const std::vector<Graph>& sensors, int graph,
             const std::vector<double>& displayValues, double maxValue, int pHeight)
{
    if (graph < 0 || graph >= int(sensors.size()))
        return;
    const size_t count =
        std::min({sensors[graph].Nodes.size(), displayValues.size(), state.bars.size()});
    if (state.oldYData.size() < count)
        state.oldYData.resize(count, pHeight + 35);
    setBarsMax(state, maxValue);
    for (size_t i = 0; i < count; ++i) {
        const double v = displayValues[i];
        state.oldYData[i] = lineY(v, maxValue, pHeight);
        state.bars[i].Value = toInt16(v);
        state.bars[i].ToolTipText = barValueTip(sensors, graph, int(i), v);
    }
    state.writtenToGraph = true;
}

QString barNoDataTip(const std::vector<Graph>& sensors, int graph, int node)
{
    if (!validNode(sensors, graph, node))
        return {};
    return withoutNul(sensors[graph].Nodes[node].Name) + QStringLiteral(" (") +
           typeNameOf(sensors, graph, node) + QStringLiteral(") - No Data");
}

QStringList barNoDataTips(const std::vector<Graph>& sensors, int graph)
{
    QStringList tips;
    if (graph < 0 || graph >= int(sensors.size()))
        return tips;
    for (int i = 0; i < int(sensors[graph].Nodes.size()); ++i)
        tips << barNoDataTip(sensors, graph, i);
    return tips;
}

QString barValueTip(const std::vector<Graph>& sensors, int graph, int node, double v)
{
    if (!validNode(sensors, graph, node))
        return {};
    const Graph& g = sensors[graph];
    const QString crlf = QStringLiteral("\r\n");
    return withoutNul(g.Name) + QStringLiteral(":") + crlf + crlf +
           QStringLiteral("Node:    ") + QString::number(node + 1) + crlf +
           QStringLiteral("Name:   ") + withoutNul(g.Nodes[node].Name) + crlf +
           QStringLiteral("Type:     ") + typeNameOf(sensors, graph, node) + crlf +
           QStringLiteral("Value:   ") + screenNumberText(v) + QStringLiteral(" ") + g.LegendUnits;
}

QStringList barToolTips(const BarGraphState& state)
{
    QStringList tips;
    for (const BarMeter& bar : state.bars)
        tips << bar.ToolTipText;
    return tips;
}

void drawBars(QImage& image, const BarGraphState& state, const Graph& graph, int pHeight, QPoint origin)
{
    const std::vector<QRect> rects = barRects(graph, pHeight);
    QPainter p(&image);
    p.translate(-origin);
    for (size_t i = 0; i < rects.size() && i < state.bars.size(); ++i)
        if (!rects[i].isEmpty())
            drawBarMeter(p, state.bars[i], rects[i]);
}

QRect barsArea(const BarGraphState& state, const Graph& graph, int pHeight, int width)
{
    const std::vector<QRect> rects = barRects(graph, pHeight);
    QRect area;
    for (size_t i = 0; i < rects.size() && i < state.bars.size(); ++i) {
        if (rects[i].isEmpty())
            continue;
        area |= state.bars[i].BarLabelValue ? QRect(0, rects[i].top(), width, rects[i].height()) : rects[i];
    }
    return area;
}

QRegion barRegion(const BarGraphState& state, const Graph& graph, int pHeight)
{
    const std::vector<QRect> rects = barRects(graph, pHeight);
    QRegion all;
    for (size_t i = 0; i < rects.size() && i < state.bars.size(); ++i)
        if (!rects[i].isEmpty())
            all += barMeterRegion(state.bars[i], rects[i].size()).translated(rects[i].topLeft());
    return all;
}

}  // namespace orm
