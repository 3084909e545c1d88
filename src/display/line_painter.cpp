#include "display/line_painter.h"

#include "display/colors.h"
#include "display/image_fold.h"
#include "display/scale.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

namespace orm {

namespace {

QPen gridPen(qint32 colour, Qt::PenStyle style)
{
    QPen pen(fromBgr(colour));
    pen.setStyle(style);
    pen.setWidth(1);
    pen.setCosmetic(true);
    return pen;
}

// A segment far above the plot (y is bounded only at -100000000) is cut to the
// image first, along the same slope, so the rasteriser never sees huge numbers.
void drawClipped(QPainter& p, double x1, double y1, double x2, double y2, double lo, double hi)
{
    if ((y1 < lo && y2 < lo) || (y1 > hi && y2 > hi))
        return;
    const bool inside = y1 >= lo && y1 <= hi && y2 >= lo && y2 <= hi;
    if (inside) {
        p.drawLine(QLine(int(x1), int(y1), int(x2), int(y2)));
        return;
    }
    auto cut = [lo, hi](double& xa, double& ya, double xb, double yb) {
        const double edge = ya < lo ? lo : (ya > hi ? hi : ya);
        if (edge != ya) {
            xa += (xb - xa) * (edge - ya) / (yb - ya);
            ya = edge;
        }
    };
    cut(x1, y1, x2, y2);
    cut(x2, y2, x1, y1);
    p.drawLine(QLineF(x1, y1, x2, y2));
}

}  // namespace

QFont labelFont()
{
    // A 14 pixel cell is an 11 pixel em.
    QFont font(QStringLiteral("MS Sans Serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(11);
    font.setWeight(QFont::Normal);
    return font;
}

void LinePainter::blank(const Graph& graph)
{
    graphImage_ = QImage(std::max(geo_.gWidth, 1), std::max(geo_.gHeight, 1), QImage::Format_RGB32);
    graphImage_.fill(fromBgr(graph.GraphBackColor));
}

void LinePainter::InitDraw(const Graph& graph, double maxValue)
{
    pendingLabel_.clear();
    blank(graph);
    const int pw = geo_.pWidth;
    const int ph = geo_.pHeight;
    {
        QPainter p(&graphImage_);
        p.setPen(gridPen(graph.GraphExteriorGridColor, Qt::SolidLine));
        p.drawRect(54, 34, pw + 1, ph + 1);
    }

    // Background and data start as the window shows now: back colour and frame.
    // Only a Line Graph scrolls them; the others draw on the picture alone.
    const int w = std::max(pw + 55, 1);
    const int h = std::max(ph + 60, 1);
    const bool lines = graph.GraphType == LineGraph;
    data_ = lines ? graphImage_.copy(0, 0, w, h) : QImage();
    grid_ = QImage();
    backColumn_.clear();
    if (lines) {
        const int column = std::min(56, w - 1);
        backColumn_.resize(size_t(h));
        for (int y = 0; y < h; ++y)
            backColumn_[size_t(y)] = reinterpret_cast<const QRgb*>(data_.constScanLine(y))[column];
    }

    minorPen_ = gridPen(graph.GraphInteriorGridColorLight, Qt::DotLine);
    majorPen_ = gridPen(graph.GraphInteriorGridColor, Qt::DotLine);
    framePen_ = gridPen(graph.GraphExteriorGridColor, Qt::SolidLine);

    {
        QPainter p(&graphImage_);
        p.setPen(gridPen(graph.GraphInteriorGridColor, Qt::SolidLine));
        if (geo_.GridStep > 0) {
            for (int y = geo_.GridStep + 35; y <= ph + 34; y += geo_.GridStep)
                p.drawLine(55, y, pw + 54, y);
            for (int x = geo_.GridStep + 55; x <= pw + 53; x += geo_.GridStep)
                p.drawLine(x, 35, x, ph + 35);
        }
    }
    paintLabels(graphImage_, graph, maxValue, false);
    if (lines)
        grid_ = graphImage_.copy(0, 0, w, h);
}

void LinePainter::setNodePens(const Graph& graph)
{
    nodePens_.clear();
    for (const Node& node : graph.Nodes) {
        QPen pen(fromBgr(node.PenColor));
        static const Qt::PenStyle styles[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine,
                                              Qt::DashDotDotLine, Qt::NoPen, Qt::SolidLine};
        Qt::PenStyle style = node.PenType >= 0 && node.PenType <= 6 ? styles[node.PenType] : Qt::SolidLine;
        if (node.PenWidth > 1) {
            // Wide pens have no dashes on this kind of surface.
            if (style != Qt::NoPen)
                style = Qt::SolidLine;
            pen.setWidth(node.PenWidth);
            pen.setCapStyle(Qt::RoundCap);
            pen.setJoinStyle(Qt::RoundJoin);
        } else {
            pen.setWidth(1);
            pen.setCosmetic(true);
        }
        pen.setStyle(style);
        nodePens_.push_back(pen);
    }
}

void LinePainter::scroll()
{
    if (!ready())
        return;
    const int w = data_.width();
    const int top = 35;
    const int bottom = std::min(geo_.pHeight + 60, data_.height());
    if (w <= 56)
        return;
    const size_t bytes = size_t(w - 56) * sizeof(QRgb);
    for (int y = top; y < bottom; ++y) {
        auto* d = reinterpret_cast<QRgb*>(data_.scanLine(y));
        std::memmove(d + 55, d + 56, bytes);
        // The column entering at the right comes clean from the background.
        d[w - 1] = backColumn_[size_t(y)];
        auto* g = reinterpret_cast<QRgb*>(grid_.scanLine(y));
        std::memmove(g + 55, g + 56, bytes);
    }
}

void LinePainter::gridColumn(int legendSpacing, int smallTicks)
{
    if (!ready() || smallTicks == 0 || legendSpacing == 0)
        return;
    const int minorEvery = legendSpacing / smallTicks;
    if (minorEvery == 0 || std::fmod(ticks_, minorEvery) != 0)
        return;
    const bool major = std::fmod(ticks_, legendSpacing) == 0;
    const int x = geo_.pWidth + 53;
    const int base = geo_.baseLine();
    QPainter p(&grid_);
    p.setPen(major ? majorPen_ : minorPen_);
    p.drawLine(x, 0, x, base);
    p.setPen(framePen_);
    p.drawLine(x, base + 1, x, base + (major ? 7 : 3));
}

void LinePainter::drawSegment(int node, qint32 fromY, qint32 toY, int lineType)
{
    if (!ready() || node < 0 || size_t(node) >= nodePens_.size())
        return;
    QPainter p(&data_);
    p.setPen(nodePens_[size_t(node)]);
    const double lo = -32;
    const double hi = data_.height() + 32;
    const int x = geo_.pWidth + 53;
    drawClipped(p, x - 1, fromY, x, toY, lo, hi);
    if (lineType == 1)
        drawClipped(p, x, toY, x, geo_.baseLine(), lo, hi);
    else if (lineType == 2)
        drawClipped(p, x, toY, x, 0, lo, hi);
}

void LinePainter::advanceLabel(const QString& label, int legendSpacing, const Graph& graph)
{
    ticks_ += 1;
    const double half = legendSpacing / 2.0;
    if (nextLabelAt_ == 0) {
        pendingLabel_ = label;
        nextLabelAt_ = half;
    }
    if (ticks_ == nextLabelAt_) {
        if (ready()) {
            // Half a spacing back: under the moment the label names.
            const int right = geo_.pWidth + 55;
            const int left = roundEven(right - half - (pendingLabel_.size() * 5) / 2.0);
            const int top = geo_.pHeight + 42;
            const QRect box(left, top, right - left, 38);
            QPainter p(&data_);
            p.setClipRect(box);
            p.setFont(labelFont());
            p.setPen(fromBgr(graph.GraphGridLabelColor));
            p.drawText(box, Qt::AlignLeft | Qt::AlignTop, pendingLabel_);
        }
        nextLabelAt_ += legendSpacing;
    }
    if (std::floor(nextLabelAt_ - half) == ticks_)
        pendingLabel_ = label;
}

void LinePainter::compose(const Graph& graph)
{
    if (!ready())
        return;
    // A dark background is painted through (OR), a light one multiplied (AND).
    const bool orMode = (graph.GraphInteriorGridColor & graph.GraphBackColor) == graph.GraphBackColor;
    const int right = std::min(data_.width(), graphImage_.width());
    const int bottom = std::min({geo_.pHeight + 60, data_.height(), graphImage_.height()});
    for (int y = 35; y < bottom; ++y) {
        const auto* g = reinterpret_cast<const QRgb*>(grid_.constScanLine(y));
        const auto* d = reinterpret_cast<const QRgb*>(data_.constScanLine(y));
        auto* out = reinterpret_cast<QRgb*>(graphImage_.scanLine(y));
        if (orMode)
            for (int x = 55; x < right; ++x)
                out[x] = g[x] | d[x];
        else
            for (int x = 55; x < right; ++x)
                out[x] = g[x] & d[x];
    }
}

void LinePainter::repaintScale(const Graph& graph, double maxValue)
{
    if (graphImage_.isNull())
        return;
    {
        QPainter p(&graphImage_);
        p.fillRect(QRect(0, 20, 54, geo_.pHeight + 60), fromBgr(graph.GraphBackColor));
    }
    paintLabels(graphImage_, graph, maxValue, true);
}

void LinePainter::paintLabels(QImage& target, const Graph& graph, double maxValue, bool fromSetMax)
{
    QPainter p(&target);
    const QFont font = labelFont();
    p.setFont(font);
    p.setPen(fromBgr(graph.GraphGridLabelColor));
    const QFontMetrics metrics(font);
    // Written twice from SetMax, which thickens the soft edges of the text.
    const int times = fromSetMax ? 2 : 1;
    const int ph = geo_.pHeight;
    const QString& units = graph.LegendUnits;
    // The unit caption reads upwards along the left edge; a label as long as
    // "0.125" is narrowed to end before it rather than run into it.
    const bool caption = graph.GraphType == LineGraph && !units.isEmpty();
    const int labelsLeft = caption ? 2 + metrics.height() + 1 : 0;
    for (int i = 0; i <= 4; ++i) {
        const QString text = scaleLabelText(maxValue, i);
        const int y = roundEven((ph + 28) - (ph / 4.0) * i);
        const int right = fromSetMax ? 52 : 50;
        const int width = metrics.horizontalAdvance(text);
        const double squeeze = width > right - labelsLeft ? double(right - labelsLeft) / width : 1.0;
        for (int t = 0; t < times; ++t) {
            p.save();
            p.translate(right, y);
            p.scale(squeeze, 1);
            p.drawText(QPoint(-width, metrics.ascent()), text);
            p.restore();
        }
    }
    if (graph.GraphType != LineGraph)
        return;
    // The unit, reading upwards, centred on the axis at 5 pixels a character.
    const int y = roundEven(ph / 2.0 + 35 + (units.size() * 5) / 2.0);
    for (int t = 0; t < times; ++t) {
        p.save();
        p.translate(2, y);
        p.rotate(-90);
        p.drawText(QPoint(0, metrics.ascent()), units);
        p.restore();
    }
}

void LinePainter::copyPlotColumns(const QImage& from, QImage& to, int x, int y, int w, int h)
{
    const int right = std::min({x + w, from.width(), to.width()});
    const int bottom = std::min({y + h, from.height(), to.height()});
    if (right <= x)
        return;
    for (int row = std::max(y, 0); row < bottom; ++row)
        std::memcpy(reinterpret_cast<QRgb*>(to.scanLine(row)) + x,
                    reinterpret_cast<const QRgb*>(from.constScanLine(row)) + x, size_t(right - x) * sizeof(QRgb));
}

void LinePainter::fillFromBack(QImage& to, int x, int y, int w, int h) const
{
    const int right = std::min(x + w, to.width());
    const int bottom = std::min({y + h, to.height(), int(backColumn_.size())});
    if (right <= x)
        return;
    for (int row = std::max(y, 0); row < bottom; ++row) {
        auto* line = reinterpret_cast<QRgb*>(to.scanLine(row));
        std::fill(line + x, line + right, backColumn_[size_t(row)]);
    }
}

void LinePainter::stretchData(double xPercent, double yPercent, const Graph& graph)
{
    if (!ready())
        return;
    const int pw = geo_.pWidth;
    const int ph = geo_.pHeight;
    if (yPercent * ph >= 32000)
        yPercent = 32736.0 / ph;
    if (xPercent * pw >= 32000)
        xPercent = 32736.0 / pw;
    // An unchanged width keeps the time labels as they were, unstretched.
    const bool keepLabels = xPercent == 1;
    const QRect anew(55, 35, pw + 1, keepLabels ? ph : ph + 25);
    const QRect plot(55, 35, pw, ph);
    int tw = 0, th = 0, tx = 0, ty = 0;
    if (std::isfinite(xPercent) && std::isfinite(yPercent)) {
        tw = roundEven(xPercent * pw);
        th = roundEven(yPercent * ph);
        tx = roundEven(pw - xPercent * pw + 55);
        ty = roundEven(ph - yPercent * ph + 35);
    }
    const bool scaled = tw > 0 && th > 0 && pw > 0 && ph > 0;
    if (scaled && tw >= pw && th >= ph) {
        // Growing reads the lines as they were: they are put together aside.
        QImage mix(data_.size(), QImage::Format_RGB32);
        fillFromBack(mix, 55, 35, pw + 1, ph + 25);
        {
            QPainter p(&mix);
            p.setClipRect(QRect(55, 35, pw + 1, ph + 25));
            p.drawImage(QRect(tx, ty, tw, th), data_, plot);
        }
        copyPlotColumns(mix, data_, anew.x(), anew.y(), anew.width(), anew.height());
    } else {
        // Rows or columns fold together (merged, so that no line vanishes) into
        // a picture of their own, which then goes onto the cleared plot.
        QImage folded;
        if (scaled) {
            const std::vector<QRgb> back(backColumn_.begin() + 35, backColumn_.begin() + 35 + ph);
            folded = foldScaled(data_, plot, back, tw, th);
        }
        fillFromBack(data_, anew.x(), anew.y(), anew.width(), anew.height());
        if (!folded.isNull()) {
            QPainter p(&data_);
            p.setClipRect(anew);
            p.drawImage(tx, ty, folded);
        }
    }
    compose(graph);
}

}  // namespace orm
