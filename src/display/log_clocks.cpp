#include "display/log_clocks.h"

#include "display/aa_line.h"
#include "display/colors.h"

#include <cmath>
#include <vector>

namespace orm {

namespace {

constexpr int Margin = 3;
constexpr double Pi = 3.14159265358979323846;

// The point at `length` from the centre in the direction of a clock's hand:
// 0 is twelve o'clock, turning right by `turn` of a whole circle.
QPoint along(QPoint centre, double length, double turn)
{
    const double a = turn * 2 * Pi;
    return {centre.x() + int(std::lround(length * std::sin(a))), centre.y() - int(std::lround(length * std::cos(a)))};
}

void drawClock(QImage& picture, QPoint centre, const QTime& time, const ClockLook& look)
{
    AaLineDrawer drawer;
    const double r = look.radius;
    std::vector<QPoint> rim;
    for (int k = 0; k <= 48; ++k)
        rim.push_back(along(centre, r, k / 48.0));
    drawer.DrawPolyline(rim, picture, look.rim);
    for (int hour = 0; hour < 12; ++hour)
        drawer.LineGP(picture, qint16(along(centre, r * 0.78, hour / 12.0).x()),
                      qint16(along(centre, r * 0.78, hour / 12.0).y()), qint16(along(centre, r, hour / 12.0).x()),
                      qint16(along(centre, r, hour / 12.0).y()), look.rim);
    if (!time.isValid())
        return;
    const double minutes = time.minute() + time.second() / 60.0;
    const double hours = time.hour() % 12 + minutes / 60.0;
    drawer.DrawPolyline({centre, along(centre, r * 0.5, hours / 12.0)}, picture, look.hourHand);
    drawer.DrawPolyline({centre, along(centre, r * 0.8, minutes / 60.0)}, picture, look.minuteHand);
}

}  // namespace

QPoint clockCentre(int clock, const ClockLook& look)
{
    const int side = 2 * (look.radius + Margin) + 1;
    return {look.radius + Margin + clock * side, look.radius + Margin};
}

QImage drawLogClocks(const QTime& start, const QTime& end, const ClockLook& look)
{
    const int side = 2 * (look.radius + Margin) + 1;
    QImage picture(2 * side, side, QImage::Format_RGB32);
    picture.fill(fromBgr(look.back));
    drawClock(picture, clockCentre(0, look), start, look);
    drawClock(picture, clockCentre(1, look), end, look);
    return picture;
}

}  // namespace orm
