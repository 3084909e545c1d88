// The logic of one graph window without its pictures: the history, the scale
// and the line ends of one Graph, addressed by its index in Sensors. Alerts,
// the cross-hair and the gadget read the history whether or not anything is
// drawn; a PlotPainter, when one is attached, draws each step on images.
#pragma once

#include "model/graph_view.h"
#include "model/model.h"
#include "display/node_history.h"
#include "display/plot_geometry.h"

#include <QString>
#include <functional>
#include <vector>

namespace orm {

// What draws a Line Graph's picture as the history moves (the line painter).
class PlotPainter {
public:
    virtual ~PlotPainter() = default;
    virtual void setGeometry(const PlotGeometry& geometry) = 0;
    virtual void blank(const Graph& graph) = 0;
    virtual void InitDraw(const Graph& graph, double maxValue) = 0;
    virtual void setNodePens(const Graph& graph) = 0;
    virtual void scroll() = 0;
    virtual void gridColumn(int legendSpacing, int smallTicks) = 0;
    virtual void drawSegment(int node, qint32 fromY, qint32 toY, int lineType) = 0;
    virtual void advanceLabel(const QString& label, int legendSpacing, const Graph& graph) = 0;
    virtual void compose(const Graph& graph) = 0;
    virtual void repaintScale(const Graph& graph, double maxValue) = 0;
    virtual void stretchData(double xPercent, double yPercent, const Graph& graph) = 0;
};

class GraphHistory : public GraphView {
public:
    static constexpr int MinWidth = 180;
    static constexpr int MinHeight = 100;
    // The largest window a screen holds (8K); a stored size beyond it is cut
    // down, so that a hand-edited size never asks for gigabytes of picture.
    static constexpr int MaxWidth = 7680;
    static constexpr int MaxHeight = 4320;

    GraphHistory(std::vector<Graph>& sensors, int index, QString commandLine = {});

    void WriteGraph(const std::vector<double>& values, const QString& label, int gridSeconds,
                    int labelEvery) override;
    // The full form: a rebuild draws blind, reads stored columns instead of
    // storing, and names the column it reads.
    void WriteGraph(const std::vector<double>& values, const QString& label, int gridSeconds, int labelEvery,
                    bool blindDraw, bool saveStackData, int useThisIndex);
    double GetNodeValue(int node, int samplesBack) const override;
    void OpenGraph() override { OpenGraph(1); }
    void OpenGraph(int step);
    // The grip let go at this size: the frame follows, the history is levelled
    // to the new width, and the plot is rebuilt from it.
    void resizeWindow(int width, int height);

    const PlotGeometry& geometry() const { return geo_; }
    int windowWidth() const { return clientWidth_; }
    int windowHeight() const { return clientHeight_; }

    double GetAvg(int nodeFrom1, int useThisIndex, double useThisValue, bool onlyCurrent, bool round,
                  bool pingTranslation) const;
    void SetMax(double& maxValue, bool autoRanging, double realValue);
    void SetUpNodes(bool clearAllData) override;
    void InitDraw() override;
    int plotWidth() const override { return geo_.pWidth; }
    void deferPicture(bool deferred) override;
    void RedrawGraph();
    void ResizeGraph(double xPercent, double yPercent);
    // Wipes the picture, keeps the history.
    void Clear() { InitDraw(); }

    double maxValue() const { return maxValue_; }
    int index() const { return index_; }
    // The Graph moved to another place in Sensors (a Graph before it was deleted).
    void setIndex(int index) { index_ = index; }
    // Node `node` (from 0) was deleted: its samples go, later Nodes' move down.
    void removeNode(int node) { history_.removeNode(node); }
    NodeHistory& history() { return history_; }
    const NodeHistory& history() const { return history_; }

    // Bar Graphs and Systray Icons store and auto-range like a Line Graph, then
    // hand over this tick's display values, one per Node; not while a rebuild
    // draws blind.
    std::function<void(const std::vector<double>& displayValues)> onBarTick, onTrayTick;
    // SetUpNodes rebuilt what exists per Node: the bars follow.
    std::function<void(bool clearAllData)> onSetUpNodes;
    // The control panel's status line: what a long opening or redraw is doing,
    // and "" when it is done.
    std::function<void(const QString& text)> onStatus;

protected:
    // Drawing starts and stops with the painter: null draws nothing.
    void setPainter(PlotPainter* painter);
    PlotPainter* painter() const { return painter_; }
    bool valid() const { return index_ >= 0 && size_t(index_) < sensors_.size(); }
    Graph& graph() { return sensors_[size_t(index_)]; }
    const Graph& graph() const { return sensors_[size_t(index_)]; }

private:
    void sizeFromRecord();
    void setGeometry(int clientWidth, int clientHeight);
    void setOldY(qint32 y);
    void status(const QString& text);

    std::vector<Graph>& sensors_;
    int index_;
    bool debugMode_;
    NodeHistory history_;
    PlotGeometry geo_;
    PlotPainter* painter_ = nullptr;
    double maxValue_ = 0;  // m_MaxValue
    bool autoRange_ = false;
    bool opening_ = false;
    bool painting_ = false;
    bool cancelRedraw_ = false;
    bool deferred_ = false;
    int clientWidth_ = 0;
    int clientHeight_ = 0;
    std::vector<double> redrawValues_;
    std::vector<double> displayValues_;
};

// Makes a GraphHistory for each Graph: the views of a monitor that draws nothing.
class GraphHistoryFactory final : public GraphViewFactory {
public:
    explicit GraphHistoryFactory(QString commandLine) : commandLine_(std::move(commandLine)) {}
    // The model whose Graphs the views show; set before the first view is made.
    void bind(std::vector<Graph>& sensors) { sensors_ = &sensors; }
    std::unique_ptr<GraphView> make(int graphIndex) override
    {
        return std::make_unique<GraphHistory>(*sensors_, graphIndex, commandLine_);
    }

private:
    std::vector<Graph>* sensors_ = nullptr;
    QString commandLine_;
};

}  // namespace orm
