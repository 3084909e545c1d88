#include "display/aa_line.h"

#include "display/colors.h"

#include <QColor>
#include <cstdlib>

namespace orm {

bool TranslateColor(qint32 color, qint32& result)
{
    const quint32 u = quint32(color);
    switch (u >> 24) {
    case 0x00:
        result = color;
        return true;
    case 0x02:  // palette-relative RGB
        result = qint32(u & 0xFFFFFF);
        return true;
    case 0x80:  // system colour
        result = toBgr(fromBgr(color));
        return true;
    default:
        result = -1;
        return false;
    }
}

void AaLineDrawer::SetRGBComponents(qint32 color)
{
    qint32 value = 0;
    TranslateColor(color, value);
    DrawColor = value;
    if (value == 0) {
        DrawR = DrawG = DrawB = 0;
        return;
    }
    DrawR = value & 255;
    DrawG = (value / 256) & 255;
    DrawB = value / 65536;
}

void AaLineDrawer::setPixel(qint32 x, qint32 y, int r, int g, int b)
{
    if (!DrawSurface || !DrawSurface->valid(x, y))
        return;
    DrawSurface->setPixelColor(x, y, QColor(r & 255, g & 255, b & 255));
}

void AaLineDrawer::PlotBlended(qint32 x, qint32 y, qint32 alpha)
{
    if (!DrawSurface || !DrawSurface->valid(x, y))
        return;
    if (alpha > 252) {
        setPixel(x, y, DrawColor, DrawColor >> 8, DrawColor >> 16);
        return;
    }
    const QRgb px = DrawSurface->pixel(x, y);
    int bgR = 0, bgG = 0, bgB = 0;
    if ((px & 0xFFFFFF) != 0) {
        bgR = qRed(px);
        bgG = qGreen(px);
        bgB = qBlue(px);
    }
    // Dividing by 256, not 255, leaves full blends a shade darker; that is the look.
    const int back = 255 - alpha;
    setPixel(x, y, (DrawR * alpha + bgR * back) / 256, (DrawG * alpha + bgG * back) / 256,
             (DrawB * alpha + bgB * back) / 256);
}

void AaLineDrawer::LineGP(QImage& surface, qint16 x1, qint16 y1, qint16 x2, qint16 y2, qint32 color)
{
    DrawSurface = &surface;
    SetRGBComponents(color);

    int dx = int(x2) - int(x1);
    int dy = int(y2) - int(y1);
    const int sx = dx < 0 ? -1 : 1;
    const int sy = dy < 0 ? -1 : 1;
    dx = std::abs(dx);
    dy = std::abs(dy);
    if (dx == 0 && dy == 0)
        return;

    // Walk the major axis; the minor axis moves when the error term fills up.
    const bool yMajor = dx <= dy;
    const int major = yMajor ? dy : dx;
    const int minor = yMajor ? dx : dy;
    const int minorStep = yMajor ? sx : sy;
    // (x, y) moved by m along the minor axis.
    auto offset = [&](int x, int y, int m) { return yMajor ? QPoint(x + m, y) : QPoint(x, y + m); };

    // End caps: a third of the slope's share beside each end, the ends at half.
    const int c = (minor * 85) / major;
    QPoint p = offset(x1, y1, -minorStep);
    PlotBlended(p.x(), p.y(), c);
    PlotBlended(x1, y1, 127);
    p = offset(x2, y2, minorStep);
    PlotBlended(p.x(), p.y(), c);
    PlotBlended(x2, y2, 127);

    int x = x1;
    int y = y1;
    int err = major / 2;
    for (int i = 0; i <= major; ++i) {
        setPixel(x, y, DrawColor, DrawColor >> 8, DrawColor >> 16);
        const int w = (err * 255) / major;
        p = offset(x, y, -minorStep);
        PlotBlended(p.x(), p.y(), 255 - w);
        p = offset(x, y, minorStep);
        PlotBlended(p.x(), p.y(), w);
        err += minor;
        if (err >= major) {
            err -= major;
            if (yMajor)
                x += sx;
            else
                y += sy;
        }
        if (yMajor)
            y += sy;
        else
            x += sx;
    }
}

void AaLineDrawer::DrawPolyline(const std::vector<QPoint>& points, QImage& surface, qint32 color)
{
    for (size_t i = 1; i < points.size(); ++i)
        LineGP(surface, qint16(points[i - 1].x()), qint16(points[i - 1].y()), qint16(points[i].x()),
               qint16(points[i].y()), color);
}

}  // namespace orm
