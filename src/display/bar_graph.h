// The Bar Graph: one Bargraph meter per Node, side by side in the plot, their
// levels and tool-tips set on each tick.
#pragma once

#include "model/model.h"
#include "display/bar_meter.h"

#include <QImage>
#include <QRect>
#include <QRegion>
#include <QStringList>
#include <vector>

namespace orm {

// Where the first bar stands, and the gap after each bar.
inline constexpr int BarLeft = 60;
inline constexpr int BarTop = 34;
inline constexpr int BarGap = 5;

// How the bar tool-tips look: white back, blue text (0x00BBGGRR), at most 150
// pixels wide, the product name as title with the information icon, shown 15 s.
inline constexpr qint32 BarTipBackColor = 0xFFFFFF;
inline constexpr qint32 BarTipTextColor = 0xFF0000;
inline constexpr int BarTipMaxWidth = 150;
inline constexpr int BarTipIcon = 1;
inline constexpr int BarTipShowMs = 15000;

struct BarGraphState {
    std::vector<BarMeter> bars;     // one per Node, at the Node's index
    std::vector<qint32> oldYData;   // where a line of each Node would have ended
    bool writtenToGraph = false;    // set by the first tick
};

// BarWidth * 8 + 5 pixels.
int barPixelWidth(const Node& node);

// The bars' rectangles in the window picture, at the Nodes' indexes: from x 60,
// y 34, pHeight + 3 high. A hidden Node's bar is an empty rectangle and takes
// no width, only its gap.
std::vector<QRect> barRects(const Graph& graph, int pHeight);
// The Node whose bar lies under a point of the window picture, or -1.
int barAt(const Graph& graph, int pHeight, QPoint point);

// Width of the plot outline of a Bar Graph: the visible bars, a gap of 5 for
// every Node, and 10.
int barFrameWidth(const Graph& graph);

// Builds one meter per Node: colours from the Node and the Graph, Max the whole
// part of the scale maximum. A fresh graph (clearAllData, or nothing written
// yet) starts at 100; otherwise a bar takes its Node's newest sample when it
// lies within Min..Max. `newestSamples` may be shorter than the Node list.
void setUpBars(BarGraphState& state, const Graph& graph, double maxValue, bool clearAllData,
               const std::vector<double>& newestSamples);

// The scale changed: Max of every bar is the whole part of the maximum.
void setBarsMax(BarGraphState& state, double maxValue);

// One tick: each bar's level from its display value (rounded), oldYData by the
// line rule, Max from the scale, and the tool-tip text of each bar. Nodes
// beyond the values or the bars are left alone.
void barTick(BarGraphState& state, const std::vector<Graph>& sensors, int graph,
             const std::vector<double>& displayValues, double maxValue, int pHeight);

// "<Node name> (<type name>) - No Data", names without NUL characters.
QString barNoDataTip(const std::vector<Graph>& sensors, int graph, int node);
QStringList barNoDataTips(const std::vector<Graph>& sensors, int graph);

// The tool-tip of a bar showing the display value v.
QString barValueTip(const std::vector<Graph>& sensors, int graph, int node, double v);

// The tool-tip texts of the bars as they stand.
QStringList barToolTips(const BarGraphState& state);

// Paints the visible bars into the window picture, or into a piece of it
// whose top left corner stands at `origin` in the picture.
void drawBars(QImage& image, const BarGraphState& state, const Graph& graph, int pHeight,
              QPoint origin = QPoint());
// The part of a window picture `width` wide that drawBars paints on: the bars,
// or the whole of their rows when a bar writes its value, which may run wider.
QRect barsArea(const BarGraphState& state, const Graph& graph, int pHeight, int width);

// The union of the visible bars' shapes, in window picture coordinates.
QRegion barRegion(const BarGraphState& state, const Graph& graph, int pHeight);

}  // namespace orm
