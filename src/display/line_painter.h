// The scrolling strip chart of a Line Graph, on off-screen images only. The
// images use the window's own coordinates; the plot starts at 55, 35.
#pragma once

#include "model/model.h"

#include <QFont>
#include <QImage>
#include <QPen>
#include <QString>
#include <vector>

namespace orm {

// InitGSizeVars: the plot geometry from the window's client size in pixels.
struct PlotGeometry {
    static constexpr int PlotLeft = 55;
    static constexpr int PlotTop = 35;
    int pWidth = 0;
    int pHeight = 0;
    int GridStep = 0;
    int HalfGridStep = 0;
    int gWidth = 0;
    int gHeight = 0;
    int baseLine() const { return pHeight + 35; }
    static PlotGeometry fromClient(int clientWidth, int clientHeight);
};

// The Y pixel of display value v on a scale topping out at maxValue.
qint32 lineY(double v, int pHeight, double maxValue);

// "MS Sans Serif", 14 high and 5 wide, as the desktop's sans-serif offers it.
QFont labelFont();

class LinePainter {
public:
    void InitGSizeVars(int clientWidth, int clientHeight);
    const PlotGeometry& geometry() const { return geo_; }
    bool ready() const { return !data_.isNull(); }

    // The window picture before anything is drawn: the back colour alone.
    void blank(const Graph& graph);
    // Images, grid and frame, labels; the plot is empty afterwards.
    void InitDraw(const Graph& graph, double maxValue);
    // One pen a Node (SetUpNodes).
    void setNodePens(const Graph& graph);

    // A frame, in the order WriteGraph needs them.
    void scroll();
    void gridColumn(int legendSpacing, int smallTicks);
    void drawSegment(int node, qint32 fromY, qint32 toY, int lineType);
    void advanceLabel(const QString& label, int legendSpacing, const Graph& graph);
    void compose(const Graph& graph);

    // SetMax's share: the left margin blanked and the labels written again.
    void repaintScale(const Graph& graph, double maxValue);
    // ResizeGraph's share: stretch the painted data, bottom right anchored.
    void stretchData(double xPercent, double yPercent, const Graph& graph);

    const QImage& picture() const { return graphImage_; }
    double ticks() const { return ticks_; }

private:
    void paintLabels(QImage& target, const Graph& graph, double maxValue, bool fromSetMax);
    void copyPlotColumns(const QImage& from, QImage& to, int x, int y, int w, int h);

    PlotGeometry geo_;
    QImage graphImage_;  // hDCGraph
    QImage grid_;        // GridImage
    QImage data_;        // DataImage
    QImage back_;        // BackImage
    QImage mix_;         // MixImage
    std::vector<QPen> nodePens_;
    QPen minorPen_, majorPen_, framePen_;

    // Survive InitDraw, so a redraw continues the running grid phase.
    double ticks_ = 0;
    double nextLabelAt_ = 0;
    QString pendingLabel_;
};

}  // namespace orm
