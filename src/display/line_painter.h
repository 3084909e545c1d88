// The scrolling strip chart of a Line Graph, on off-screen images only. The
// images use the window's own coordinates; the plot starts at 55, 35. A Line
// Graph keeps three window-sized images (the picture, its grid and its lines);
// any other Graph only the picture, which it never scrolls.
#pragma once

#include "model/model.h"
#include "display/graph_history.h"

#include <QFont>
#include <QImage>
#include <QPen>
#include <QString>
#include <vector>

namespace orm {

// "MS Sans Serif", 14 high and 5 wide, as the desktop's sans-serif offers it.
QFont labelFont();

class LinePainter final : public PlotPainter {
public:
    void setGeometry(const PlotGeometry& geometry) override { geo_ = geometry; }
    const PlotGeometry& geometry() const { return geo_; }
    bool ready() const { return !data_.isNull(); }

    // The window picture before anything is drawn: the back colour alone.
    void blank(const Graph& graph) override;
    // Images, grid and frame, labels; the plot is empty afterwards.
    void InitDraw(const Graph& graph, double maxValue) override;
    // One pen a Node (SetUpNodes).
    void setNodePens(const Graph& graph) override;

    // A frame, in the order WriteGraph needs them.
    void scroll() override;
    void gridColumn(int legendSpacing, int smallTicks) override;
    void drawSegment(int node, qint32 fromY, qint32 toY, int lineType) override;
    void advanceLabel(const QString& label, int legendSpacing, const Graph& graph) override;
    void compose(const Graph& graph) override;

    // SetMax's share: the left margin blanked and the labels written again.
    void repaintScale(const Graph& graph, double maxValue) override;
    // ResizeGraph's share: stretch the painted data, bottom right anchored.
    void stretchData(double xPercent, double yPercent, const Graph& graph) override;

    const QImage& picture() const { return graphImage_; }
    double ticks() const { return ticks_; }

private:
    void paintLabels(QImage& target, const Graph& graph, double maxValue, bool fromSetMax);
    void copyPlotColumns(const QImage& from, QImage& to, int x, int y, int w, int h);
    // The background's rows y .. y + h - 1, across columns x .. x + w - 1 of `to`.
    void fillFromBack(QImage& to, int x, int y, int w, int h) const;

    PlotGeometry geo_;
    QImage graphImage_;  // hDCGraph
    QImage grid_;        // GridImage
    QImage data_;        // DataImage
    // BackImage: every plot column of the background is the same (back colour,
    // the frame's bottom edge), so one column of it is kept, top to bottom.
    std::vector<QRgb> backColumn_;
    std::vector<QPen> nodePens_;
    QPen minorPen_, majorPen_, framePen_;

    // Survive InitDraw, so a redraw continues the running grid phase.
    double ticks_ = 0;
    double nextLabelAt_ = 0;
    QString pendingLabel_;
};

}  // namespace orm
