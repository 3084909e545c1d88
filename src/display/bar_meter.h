// Bargraph: a level meter that shows Value between Min and Max as a stack of
// cells or as a sliding gradient, and gives its visible shape as a region so a
// window can be cut to it.
#pragma once

#include <QRect>
#include <QRegion>
#include <QSize>
#include <QString>
#include <QtGlobal>
#include <vector>

class QPainter;

namespace orm {

// The side a bar grows from (RightToLeft grows from the opposite one).
enum BarAlignmentSide : qint16 { GrowFromBottom = 0, GrowFromTop = 1, GrowFromLeft = 2, GrowFromRight = 3 };

struct BarMeter {
    qint32 BackColor = qint32(0x8000000F);  // button face
    bool Enabled = true;
    qint16 BackStyle = 1;    // 0 transparent, 1 opaque
    qint16 BorderStyle = 1;  // 1: a one-pixel frame round the control
    qint16 Alignment = GrowFromBottom;
    bool RightToLeft = false;
    QString ToolTipText;
    qint16 Value = 100;
    qint16 Max = 100;
    qint16 Min = 0;
    qint32 ForeColor = 65280;
    qint16 ForeStyle = 1;        // 1 solid cells, 0 outlined cells
    qint16 ForeBorderStyle = 1;  // 1: a darker edge on lit cells
    qint16 Bars = 20;
    qint16 BarSpacing = 0;
    qint16 BarStyle = 0;  // 0 cells, 1 gradient
    bool BarLabelValue = false;
};

// A 16-bit property from a double, the way the control's Integer properties
// take one: rounded half to even, held within the 16-bit range.
qint16 toInt16(double v);

// Lit cells for BarStyle 0: all or nothing when Max equals Min, otherwise
// Value / (Max - Min) * Bars rounded, at most Bars and at least 0.
int litCells(const BarMeter& m);

// The area inside the border, in control coordinates.
QRect innerRect(const BarMeter& m, QSize size);

// The cells, first the one at the growth side; thickness shares the length
// evenly after the spacing. Cells too thin to show are empty rectangles.
std::vector<QRect> cellRects(const BarMeter& m, QSize size);

// The lit part of the gradient bar, grown from its side in proportion to Value.
QRect gradientRect(const BarMeter& m, QSize size);

// The control's visible shape in control coordinates: the whole control when
// opaque; when transparent the unlit cells are cut out (BarStyle 0) or only the
// gradient's lit part is left (BarStyle 1).
QRegion barMeterRegion(const BarMeter& m, QSize size);

// Paints the control into the rectangle `at` of the painter's device.
void drawBarMeter(QPainter& p, const BarMeter& m, const QRect& at);

// Colour helpers on 0x00BBGGRR values.
int RGBRed(qint32 c);
int RGBGreen(qint32 c);
int RGBBlue(qint32 c);

// Hue, saturation and lightness on a 0..255 scale, hue sectors of a sixth of 255.
struct Hsl {
    double h = 0;
    double s = 0;
    double l = 0;
};
Hsl rgbToHsl(qint32 bgr);
qint32 hslToRgb(const Hsl& hsl);
// The colour with its lightness moved by `amount`, held within 0..255.
qint32 shiftLightness(qint32 bgr, int amount);

}  // namespace orm
