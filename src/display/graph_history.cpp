#include "display/graph_history.h"

#include "model/debug_log.h"
#include "display/averaging.h"
#include "display/scale.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace orm {

namespace {

// The smallest picture the images can be made for, even without the minimum size.
constexpr int FloorWidth = 79;
constexpr int FloorHeight = 64;

}  // namespace

GraphHistory::GraphHistory(std::vector<Graph>& sensors, int index, QString commandLine)
    : sensors_(sensors), index_(index), debugMode_(commandLine.contains(QLatin1String("VDDebugMode")))
{
    debugLog().enter(QStringLiteral("LoadGraph"));
    if (valid()) {
        Graph& g = graph();
        g.LocWidth = std::clamp(g.LocWidth, MinWidth, MaxWidth);
        g.LocHeight = std::clamp(g.LocHeight, MinHeight, MaxHeight);
        sizeFromRecord();
        if (maxValue_ == 0)
            maxValue_ = 100;
        setGeometry(clientWidth_, clientHeight_);
    }
    debugLog().leave(QStringLiteral("LoadGraph"));
}

void GraphHistory::sizeFromRecord()
{
    const Graph& g = graph();
    const int minW = debugMode_ ? FloorWidth : MinWidth;
    const int minH = debugMode_ ? FloorHeight : MinHeight;
    clientWidth_ = std::clamp(g.LocWidth, minW, MaxWidth);
    clientHeight_ = std::clamp(g.LocHeight, minH, MaxHeight);
}

void GraphHistory::status(const QString& text)
{
    if (onStatus)
        onStatus(text);
}

void GraphHistory::setGeometry(int clientWidth, int clientHeight)
{
    geo_ = PlotGeometry::fromClient(clientWidth, clientHeight);
    if (painter_)
        painter_->setGeometry(geo_);
}

void GraphHistory::setPainter(PlotPainter* painter)
{
    painter_ = painter;
    if (!painter_ || !valid())
        return;
    painter_->setGeometry(geo_);
    painter_->blank(graph());
    painter_->setNodePens(graph());
}

void GraphHistory::setOldY(qint32 y)
{
    std::vector<qint32>& oldY = history_.oldYData();
    std::fill(oldY.begin(), oldY.end(), y);
}

double GraphHistory::GetNodeValue(int node, int samplesBack) const
{
    return history_.nodeValue(node, samplesBack);
}

double GraphHistory::GetAvg(int nodeFrom1, int useThisIndex, double useThisValue, bool onlyCurrent, bool round,
                            bool pingTranslation) const
{
    if (!valid())
        return 0.0;
    return orm::GetAvg(graph(), history_, nodeFrom1, useThisIndex, useThisValue, onlyCurrent, round,
                       pingTranslation);
}

void GraphHistory::OpenGraph(int step)
{
    if (!valid())
        return;
    debugLog().enter(QStringLiteral("OpenGraph"));
    status(QStringLiteral("Opening Graph. Please Wait..."));
    Graph& g = graph();
    if (g.Visible) {
        for (int stage = std::max(step, 1); stage <= 6; ++stage) {
            switch (stage) {
            case 1:
                opening_ = true;
                sizeFromRecord();
                break;
            case 2:  // colours are read from the record whenever something is drawn
                break;
            case 3:
                setGeometry(clientWidth_, clientHeight_);
                autoRange_ = g.AutoRange;
                break;
            case 4:
                SetUpNodes(true);
                break;
            case 5:
                InitDraw();
                break;
            case 6:
                SetMax(g.LegendMax, true, 0);
                g.Opened = -1;
                opening_ = false;
                break;
            }
        }
    }
    status(QString());
    debugLog().leave(QStringLiteral("OpenGraph"));
}

void GraphHistory::SetUpNodes(bool clearAllData)
{
    if (!valid())
        return;
    const Graph& g = graph();
    const int nodes = int(g.Nodes.size());
    if (clearAllData) {
        history_.reset(nodes);
    } else {
        history_.fitNodes(nodes);
        history_.oldYData().resize(size_t(nodes), geo_.baseLine());
    }
    if (painter_)
        painter_->setNodePens(g);
    if (onSetUpNodes)
        onSetUpNodes(clearAllData);
}

void GraphHistory::InitDraw()
{
    if (!valid())
        return;
    const Graph& g = graph();
    if (g.GraphType == SystrayIcon || g.GraphType == VistaGadget || !painter_)
        return;
    painter_->InitDraw(g, maxValue_);
}

void GraphHistory::SetMax(double& maxValue, bool autoRanging, double realValue)
{
    if (!valid())
        return;
    Graph& g = graph();
    double oldMax = maxValue_;
    if (oldMax == 0)
        oldMax = maxValue;
    maxValue_ = maxValue;
    if (!g.Visible && !g.Opened)
        return;
    const PlotGeometry& geo = geo_;
    if (geo.pWidth < 0)
        return;
    history_.level(geo.pWidth);
    setOldY(geo.pHeight);

    if (autoRanging && g.AutoRange) {
        const LadderResult ladder = runUnitLadder(g, realValue, oldMax);
        if (ladder.ran) {
            oldMax = ladder.oldMax;
            if (ladder.settled) {
                DecideLegendUnits(g);
                maxValue = orm::GetAvg(g, history_, 1, -1, ladder.raw / ladder.mult, true, true, false);
                oldMax = orm::GetAvg(g, history_, 1, -1, ladder.oldMax, true, true, false);
                if (maxValue < 1)
                    maxValue = 1;
                maxValue_ = maxValue;
            }
        }
    }

    if (painter_)
        painter_->repaintScale(g, maxValue_);
    if (maxValue_ == 0)
        maxValue_ = 0.1;
    if (g.GraphType == LineGraph)
        ResizeGraph(1, oldMax / maxValue_);
}

void GraphHistory::ResizeGraph(double xPercent, double yPercent)
{
    if (!valid())
        return;
    const Graph& g = graph();
    if (g.GraphType == LineGraph && painter_)
        painter_->stretchData(xPercent, yPercent, g);
    // The next segment joins the stretched line. The column read is the one
    // before the newest, as it always was.
    const PlotGeometry& geo = geo_;
    std::vector<qint32>& oldY = history_.oldYData();
    const int nodes = std::min(int(g.Nodes.size()), int(oldY.size()));
    for (int i = 0; i < nodes; ++i) {
        const int count = history_.samples(i + 1).count();
        if (count == 0)
            continue;
        const double v = orm::GetAvg(g, history_, i + 1, count - 1, 0, false, true, true);
        const double y = (geo.pHeight + 35) - v * geo.pHeight / maxValue_;
        oldY[size_t(i)] = std::isnan(y) ? geo.baseLine()
                                        : qint32(std::nearbyint(std::clamp(y, double(INT_MIN), double(INT_MAX))));
    }
}

void GraphHistory::WriteGraph(const std::vector<double>& values, const QString& label, int gridSeconds,
                              int labelEvery)
{
    WriteGraph(values, label, gridSeconds, labelEvery, false, true, 0);
}

void GraphHistory::WriteGraph(const std::vector<double>& values, const QString& label, int gridSeconds,
                              int labelEvery, bool blindDraw, bool saveStackData, int useThisIndex)
{
    if (label == NodeHistory::noLabel() || !valid())
        return;
    Graph& g = graph();
    if (!g.Visible && !g.Opened)
        return;
    painting_ = true;
    const int nodes = std::min({history_.sampleListCount(), int(values.size()), int(g.Nodes.size())});

    if (autoRange_) {
        double realValue = 0;
        double big = autoRangeMaximum(g, history_, values, realValue);
        if (big != maxValue_)
            SetMax(big, true, realValue);
    }

    const int type = g.GraphType;
    if (type != LineGraph && type != BarGraph && type != SystrayIcon) {
        painting_ = false;
        return;
    }

    const PlotGeometry& geo = geo_;
    std::vector<qint32>& oldY = history_.oldYData();
    if (oldY.size() < size_t(nodes))
        oldY.resize(size_t(nodes), geo.baseLine());
    // A Node added without SetUpNodes starts at the moment of this tick.
    if (saveStackData && nodes > 0 && history_.samples(nodes).count() != history_.labels().count())
        history_.fitNodes(std::max(nodes, history_.sampleListCount()));
    // Without a painter the Line Graph keeps its history and its line ends only.
    PlotPainter* draw = type == LineGraph ? painter_ : nullptr;
    if (draw) {
        draw->scroll();
        draw->gridColumn(gridSeconds, labelEvery);
    }
    displayValues_.clear();

    for (int i = 0; i < nodes; ++i) {
        const double value = values[size_t(i)];
        double v;
        if (saveStackData) {
            history_.addSample(i + 1, value, label, geo.pWidth);
            v = orm::GetAvg(g, history_, i + 1, 0, value, false, true, true);
        } else {
            v = orm::GetAvg(g, history_, i + 1, useThisIndex, value, false, true, true);
        }
        qint32 y = lineY(v, geo.pHeight, maxValue_);
        if (type == LineGraph) {
            const Node& node = g.Nodes[size_t(i)];
            if (draw && node.NodeVisible)
                draw->drawSegment(i, oldY[size_t(i)], y, node.GraphLineType);
        } else if (type == SystrayIcon) {
            if (!g.Visible)
                continue;
            if (v > maxValue_)
                y = 0;
        }
        oldY[size_t(i)] = y;
        displayValues_.push_back(v);
    }

    if (draw) {
        draw->advanceLabel(label, gridSeconds, g);
        if (!blindDraw && !deferred_)
            draw->compose(g);
    } else if (type == BarGraph) {
        if (onBarTick && !blindDraw)
            onBarTick(displayValues_);
    } else if (type == SystrayIcon && g.Visible && onTrayTick && !blindDraw) {
        onTrayTick(displayValues_);
    }
    painting_ = false;
}

void GraphHistory::deferPicture(bool deferred)
{
    if (deferred_ && !deferred && painter_ && valid() && graph().GraphType == LineGraph)
        painter_->compose(graph());
    deferred_ = deferred;
}

void GraphHistory::RedrawGraph()
{
    if (!valid())
        return;
    debugLog().enter(QStringLiteral("RedrawGraph"));
    status(QStringLiteral("Redrawing Graph. Please Wait..."));
    const Graph& g = graph();
    const int spacing = g.LogGraph ? 80 : 60;
    if (g.Visible || g.Opened) {
        const LabelList& labels = history_.labels();
        const int last = labels.count();
        const int first = g.GraphType == BarGraph ? last : 1;
        setOldY(geo_.baseLine());
        cancelRedraw_ = false;
        for (int column = std::max(first, 1); column <= last && !cancelRedraw_; ++column) {
            if (labels.at(column) == NodeHistory::noLabel())
                continue;
            const int lists = history_.sampleListCount();
            redrawValues_.assign(size_t(lists), NodeHistory::NoSample);
            for (int k = 1; k <= lists; ++k) {
                const SampleList& list = history_.samples(k);
                if (list.holds(column))
                    redrawValues_[size_t(k) - 1] = list.at(column);
            }
            // Copied, since a scale change inside may level the lists.
            const QString label = labels.at(column);
            WriteGraph(redrawValues_, label, spacing, 5, column != last, false, column);
        }
    }
    status(QString());
    debugLog().leave(QStringLiteral("RedrawGraph"));
}

void GraphHistory::resizeWindow(int width, int height)
{
    if (!valid())
        return;
    const int minW = debugMode_ ? FloorWidth : MinWidth;
    const int minH = debugMode_ ? FloorHeight : MinHeight;
    clientWidth_ = std::clamp(width, minW, MaxWidth);
    clientHeight_ = std::clamp(height, minH, MaxHeight);
    setGeometry(clientWidth_, clientHeight_);
    InitDraw();
    double max = maxValue_;
    SetMax(max, false, 0);
    RedrawGraph();
    Graph& g = graph();
    g.LocWidth = clientWidth_;
    g.LocHeight = clientHeight_;
}

}  // namespace orm
