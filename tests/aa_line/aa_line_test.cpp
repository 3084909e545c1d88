#include "display/aa_line.h"

#include <QColor>
#include <gtest/gtest.h>

using namespace orm;

// The edge cases of the anti-aliased line: colour translation, blending at the
// ends of the weight range, points off the surface, and lines of no length.
TEST(AaLine, EdgeCases)
{
    AaLineDrawer d;
    d.SetRGBComponents(qint32(0x8000000F));  // button face
    EXPECT_EQ(d.DrawColor, 0xF0F0F0);
    d.SetRGBComponents(0x01000005);  // not translatable
    EXPECT_EQ(d.DrawColor, -1);

    QImage img(10, 10, QImage::Format_RGB32);
    img.fill(qRgb(0, 0, 200));
    d.DrawSurface = &img;
    d.SetRGBComponents(0x0000FF);
    d.PlotBlended(1, 1, 253);  // written outright
    d.PlotBlended(2, 2, 252);
    d.PlotBlended(3, 3, 0);  // no colour, but a shade darker: / 256
    d.PlotBlended(-1, 20, 100);  // off the surface: nothing
    EXPECT_EQ(img.pixelColor(1, 1), QColor(255, 0, 0));
    EXPECT_EQ(img.pixelColor(2, 2), QColor(251, 0, 2));
    EXPECT_EQ(img.pixelColor(3, 3), QColor(0, 0, 199));

    const QImage before = img;
    AaLineDrawer().LineGP(img, 4, 4, 4, 4, 0xFFFFFF);
    AaLineDrawer().DrawPolyline({QPoint(0, 0)}, img, 0xFFFFFF);
    EXPECT_EQ(img, before);
    // A steep line has its full-colour core whichever end it starts from.
    QImage there = before, back = before;
    AaLineDrawer().LineGP(there, 3, 1, 5, 7, 0xFFFFFF);
    AaLineDrawer().LineGP(back, 5, 7, 3, 1, 0xFFFFFF);
    for (int y = 1; y <= 7; ++y)
        EXPECT_TRUE(there.pixel(3 + y / 3, y) == qRgb(255, 255, 255) && back.pixel(3 + y / 3, y) == qRgb(255, 255, 255)) << y;
}
