// A Graph's view: the window (or tray icon, or text feed) that shows one Graph.
// GraphForms holds one per Graph, at the Graph's index.
#pragma once

#include <QString>
#include <QtGlobal>
#include <memory>
#include <vector>

namespace orm {

class GraphView {
public:
    virtual ~GraphView() = default;
    // The one call by which a tick hands a Graph's values to its view.
    virtual void WriteGraph(const std::vector<double>& values, const QString& label, int gridSeconds,
                            int labelEvery) = 0;
    // A raw stored sample, 0 being the newest; 0.0 when the history is too short.
    virtual double GetNodeValue(int node, int samplesBack) const = 0;
    // Called once after the view is made or its Graph's Nodes changed.
    virtual void OpenGraph() {}
    // What a Log Graph's refresh asks of its view: a clean start for the Nodes
    // and the picture, and the width of the plot in pixels (one point each).
    virtual void SetUpNodes(bool clearAllData) { Q_UNUSED(clearAllData); }
    virtual void InitDraw() {}
    virtual int plotWidth() const { return 0; }
    // While deferred, points are drawn without the picture being put together
    // after each; lifting it puts the picture together once.
    virtual void deferPicture(bool deferred) { Q_UNUSED(deferred); }
};

// The view without a window: keeps the raw samples, newest last, up to a width.
class SampleHistoryView : public GraphView {
public:
    explicit SampleHistoryView(int width = 600) : width_(width) {}
    void WriteGraph(const std::vector<double>& values, const QString& label, int gridSeconds,
                    int labelEvery) override;
    double GetNodeValue(int node, int samplesBack) const override;
    void SetUpNodes(bool clearAllData) override;
    int plotWidth() const override { return width_; }
    const std::vector<std::vector<double>>& samples() const { return samples_; }
    const std::vector<QString>& labels() const { return labels_; }

private:
    int width_;
    std::vector<QString> labels_;
    std::vector<std::vector<double>> samples_;
};

class GraphViewFactory {
public:
    virtual ~GraphViewFactory() = default;
    virtual std::unique_ptr<GraphView> make(int graphIndex) = 0;
};

class HistoryViewFactory final : public GraphViewFactory {
public:
    std::unique_ptr<GraphView> make(int) override { return std::make_unique<SampleHistoryView>(); }
};

}  // namespace orm
