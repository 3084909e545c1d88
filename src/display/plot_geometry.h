// The plot's place in a graph window, worked out from the window's size
// (InitGSizeVars), and where a value stands on it.
#pragma once

#include <QtGlobal>

namespace orm {

// The plot starts at 55, 35 in the window's own coordinates.
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

// A pixel coordinate: to the nearest whole number, halves to even, held to the int range.
int roundEven(double v);

// The Y pixel of display value v on a scale topping out at maxValue.
qint32 lineY(double v, int pHeight, double maxValue);

}  // namespace orm
