// A small software line drawer that plots smooth lines pixel by pixel: used for
// the polyline of the log viewer's clock picture, not for the strip chart.
#pragma once

#include <QImage>
#include <QPoint>
#include <QtGlobal>
#include <vector>

namespace orm {

// A colour as a packed 0x00BBGGRR value. Plain values pass through, a system
// colour (0x800000nn) takes the program's value for that index; any other
// form cannot be translated: false, and the result is -1.
bool TranslateColor(qint32 color, qint32& result);

class AaLineDrawer {
public:
    // Translates the colour (-1 when that fails) and splits it into its components.
    void SetRGBComponents(qint32 color);

    // One anti-aliased line: a full-colour core with a blended neighbour on each
    // side in every column, and capped ends. Pixels off the surface are skipped.
    void LineGP(QImage& surface, qint16 x1, qint16 y1, qint16 x2, qint16 y2, qint32 color);

    // Blends DrawColor over one pixel of DrawSurface; Alpha above 252 writes it outright.
    void PlotBlended(qint32 x, qint32 y, qint32 alpha);

    // LineGP for each pair of neighbouring points.
    void DrawPolyline(const std::vector<QPoint>& points, QImage& surface, qint32 color);

    qint32 DrawR = 0;
    qint32 DrawG = 0;
    qint32 DrawB = 0;
    qint32 DrawColor = 0;
    QImage* DrawSurface = nullptr;

private:
    void setPixel(qint32 x, qint32 y, int r, int g, int b);
};

}  // namespace orm
