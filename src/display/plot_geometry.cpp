#include "display/plot_geometry.h"

#include <climits>
#include <cmath>

namespace orm {

int roundEven(double v)
{
    if (!(v > double(INT_MIN)))
        return INT_MIN;
    if (!(v < double(INT_MAX)))
        return INT_MAX;
    return int(std::nearbyint(v));
}

PlotGeometry PlotGeometry::fromClient(int clientWidth, int clientHeight)
{
    PlotGeometry g;
    g.pWidth = clientWidth - 78;
    g.pHeight = clientHeight - 63;
    g.GridStep = g.pHeight / 4;
    g.HalfGridStep = g.GridStep / 2;
    g.gWidth = g.pWidth + 78;
    g.gHeight = g.pHeight + 63;
    return g;
}

qint32 lineY(double v, int pHeight, double maxValue)
{
    const double base = pHeight + 35;
    if (v < 0 || std::isnan(v))
        return qint32(base);
    if (maxValue == 0)
        maxValue = 0.1;
    double y = base - (pHeight / maxValue) * v;
    if (std::isnan(y))
        return qint32(base);
    if (y < -100000000)
        y = -100000000;
    return roundEven(y);
}

}  // namespace orm
