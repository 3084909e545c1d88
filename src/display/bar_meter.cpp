#include "display/bar_meter.h"

#include "model/debug_log.h"
#include "model/number_text.h"
#include "display/colors.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace orm {

namespace {

constexpr double HlsMax = 255;
constexpr double Undefined = HlsMax * 2 / 3;  // hue of a grey

bool vertical(const BarMeter& m)
{
    return m.Alignment != GrowFromLeft && m.Alignment != GrowFromRight;
}

// The side growth starts from, after RightToLeft.
int growSide(const BarMeter& m)
{
    int side = m.Alignment;
    if (side < GrowFromBottom || side > GrowFromRight)
        side = GrowFromBottom;
    if (m.RightToLeft)
        side = side == GrowFromBottom ? GrowFromTop
               : side == GrowFromTop  ? GrowFromBottom
               : side == GrowFromLeft ? GrowFromRight
                                      : GrowFromLeft;
    return side;
}

// A span [from, from + len) along the axis, measured from the growth side,
// as a rectangle inside `inner`.
QRect spanRect(const BarMeter& m, const QRect& inner, int from, int len)
{
    if (len <= 0)
        return {};
    switch (growSide(m)) {
    case GrowFromTop:
        return QRect(inner.left(), inner.top() + from, inner.width(), len);
    case GrowFromLeft:
        return QRect(inner.left() + from, inner.top(), len, inner.height());
    case GrowFromRight:
        return QRect(inner.right() + 1 - from - len, inner.top(), len, inner.height());
    default:
        return QRect(inner.left(), inner.bottom() + 1 - from - len, inner.width(), len);
    }
}

int axisLength(const BarMeter& m, const QRect& inner)
{
    return vertical(m) ? inner.height() : inner.width();
}

// The lit share of the length for the gradient: all or nothing when Max = Min.
double litFraction(const BarMeter& m)
{
    if (m.Max == m.Min)
        return m.Value > m.Min ? 1.0 : 0.0;
    return std::clamp(double(m.Value) / double(m.Max - m.Min), 0.0, 1.0);
}

double hueToRgb(double m1, double m2, double h)
{
    if (h < 0)
        h += 1;
    if (h > 1)
        h -= 1;
    if (h < 1.0 / 6)
        return m1 + (m2 - m1) * 6 * h;
    if (h < 1.0 / 2)
        return m2;
    if (h < 2.0 / 3)
        return m1 + (m2 - m1) * (2.0 / 3 - h) * 6;
    return m1;
}

int toByte(double unit)
{
    return std::clamp(int(std::lround(unit * 255)), 0, 255);
}

void drawGradientBar(QPainter& p, const BarMeter& m, const QRect& whole, const QRect& lit)
{
    debugLog().enter(QStringLiteral("DrawGradient"));
    if (lit.isEmpty()) {
        debugLog().leave(QStringLiteral("DrawGradient"));
        return;
    }
    // Bands of a quarter, a half and a quarter across the bar give it a rounded look.
    const bool vert = vertical(m);
    QLinearGradient g(vert ? QPointF(whole.left(), 0) : QPointF(0, whole.top()),
                      vert ? QPointF(whole.right() + 1, 0) : QPointF(0, whole.bottom() + 1));
    const qint32 c = m.ForeColor;
    g.setColorAt(0.0, fromBgr(shiftLightness(c, -40)));
    g.setColorAt(0.25, fromBgr(shiftLightness(c, 40)));
    g.setColorAt(0.75, fromBgr(c));
    g.setColorAt(1.0, fromBgr(shiftLightness(c, -60)));
    trace(QStringLiteral("DrawGradient 1.5"));
    p.fillRect(lit, g);
    debugLog().leave(QStringLiteral("DrawGradient"));
}

}  // namespace

qint16 toInt16(double v)
{
    if (std::isnan(v))
        return 0;
    const double r = std::nearbyint(v);
    return qint16(std::clamp(r, -32768.0, 32767.0));
}

int litCells(const BarMeter& m)
{
    if (m.Bars <= 0)
        return 0;
    if (m.Max == m.Min)
        return m.Value > m.Min ? m.Bars : 0;
    const double n = std::nearbyint(double(m.Value) / double(m.Max - m.Min) * m.Bars);
    if (n > m.Bars)
        return m.Bars;
    return n < 0 ? 0 : int(n);
}

QRect innerRect(const BarMeter& m, QSize size)
{
    const QRect all(QPoint(0, 0), size);
    return m.BorderStyle == 1 ? all.adjusted(1, 1, -1, -1) : all;
}

std::vector<QRect> cellRects(const BarMeter& m, QSize size)
{
    std::vector<QRect> cells;
    if (m.Bars <= 0)
        return cells;
    const QRect inner = innerRect(m, size);
    const int spacing = std::max<int>(0, m.BarSpacing);
    const double pitch = double(axisLength(m, inner) + spacing) / m.Bars;
    for (int i = 0; i < m.Bars; ++i) {
        const int from = int(std::lround(i * pitch));
        const int to = int(std::lround((i + 1) * pitch)) - spacing;
        cells.push_back(spanRect(m, inner, from, to - from));
    }
    return cells;
}

QRect gradientRect(const BarMeter& m, QSize size)
{
    const QRect inner = innerRect(m, size);
    const int len = int(std::lround(litFraction(m) * axisLength(m, inner)));
    return spanRect(m, inner, 0, len);
}

QRegion barMeterRegion(const BarMeter& m, QSize size)
{
    QRegion whole(QRect(QPoint(0, 0), size));
    if (m.BackStyle != 0)
        return whole;
    if (m.BarStyle == 1)
        return QRegion(gradientRect(m, size));
    const std::vector<QRect> cells = cellRects(m, size);
    const int lit = litCells(m);
    for (int i = lit; i < int(cells.size()); ++i)
        if (!cells[i].isEmpty())
            whole = whole.xored(QRegion(cells[i]));
    return whole;
}

void drawBarMeter(QPainter& p, const BarMeter& m, const QRect& at)
{
    if (at.isEmpty())
        return;
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.translate(at.topLeft());
    const QSize size = at.size();
    if (m.BackStyle != 0)
        p.fillRect(QRect(QPoint(0, 0), size), fromBgr(m.BackColor));
    if (m.BorderStyle == 1) {
        p.setPen(systemColor(16));
        p.setBrush(Qt::NoBrush);
        p.drawRect(0, 0, size.width() - 1, size.height() - 1);
    }
    if (m.BarStyle == 1) {
        drawGradientBar(p, m, innerRect(m, size), gradientRect(m, size));
    } else {
        const std::vector<QRect> cells = cellRects(m, size);
        const int lit = litCells(m);
        const QColor fore = fromBgr(m.ForeColor);
        const QColor edge = fromBgr(shiftLightness(m.ForeColor, -60));
        for (int i = 0; i < lit && i < int(cells.size()); ++i) {
            const QRect& c = cells[i];
            if (c.isEmpty())
                continue;
            if (m.ForeStyle == 1)
                p.fillRect(c, fore);
            if (m.ForeStyle != 1 || (m.ForeBorderStyle == 1 && c.width() > 2 && c.height() > 2)) {
                p.setPen(m.ForeStyle == 1 ? edge : fore);
                p.setBrush(Qt::NoBrush);
                p.drawRect(c.adjusted(0, 0, -1, -1));
            }
        }
    }
    if (m.BarLabelValue) {
        p.setPen(fromBgr(m.ForeColor));
        p.drawText(QRect(QPoint(0, 0), size), Qt::AlignCenter, screenNumberText(m.Value));
    }
    p.restore();
}

int RGBRed(qint32 c) { return int(quint32(c) & 0xFFu); }
int RGBGreen(qint32 c) { return int((quint32(c) >> 8) & 0xFFu); }
int RGBBlue(qint32 c) { return int((quint32(c) >> 16) & 0xFFu); }

Hsl rgbToHsl(qint32 bgr)
{
    const double r = RGBRed(bgr) / 255.0, g = RGBGreen(bgr) / 255.0, b = RGBBlue(bgr) / 255.0;
    const double hi = std::max({r, g, b});
    const double lo = std::min({r, g, b});
    const double l = (hi + lo) / 2;
    Hsl out;
    out.l = l * HlsMax;
    if (hi == lo) {
        out.h = Undefined;
        return out;
    }
    const double d = hi - lo;
    out.s = (l > 0.5 ? d / (2 - hi - lo) : d / (hi + lo)) * HlsMax;
    double h = r == hi ? (g - b) / d + (g < b ? 6 : 0) : g == hi ? (b - r) / d + 2 : (r - g) / d + 4;
    out.h = h / 6 * HlsMax;
    return out;
}

qint32 hslToRgb(const Hsl& c)
{
    const double h = c.h / HlsMax, s = c.s / HlsMax, l = c.l / HlsMax;
    int r, g, b;
    if (s == 0) {
        r = g = b = toByte(l);
    } else {
        const double m2 = l <= 0.5 ? l * (1 + s) : l + s - l * s;
        const double m1 = 2 * l - m2;
        r = toByte(hueToRgb(m1, m2, h + 1.0 / 3));
        g = toByte(hueToRgb(m1, m2, h));
        b = toByte(hueToRgb(m1, m2, h - 1.0 / 3));
    }
    return qint32(quint32(r) | (quint32(g) << 8) | (quint32(b) << 16));
}

qint32 shiftLightness(qint32 bgr, int amount)
{
    Hsl c = rgbToHsl(bgr);
    c.l = std::clamp(c.l + amount, 0.0, double(HlsMax));
    return hslToRgb(c);
}

}  // namespace orm
