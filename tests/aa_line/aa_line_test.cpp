#include "display/aa_line.h"

#include <QColor>
#include <gtest/gtest.h>

using namespace orm;

static QImage surface(QRgb fill)
{
    QImage img(10, 10, QImage::Format_RGB32);
    img.fill(fill);
    return img;
}

TEST(AaLine, ColoursAndBlending)
{
    AaLineDrawer d;
    d.SetRGBComponents(qint32(0x8000000F));  // button face
    EXPECT_EQ(d.DrawColor, 0xF0F0F0);
    d.SetRGBComponents(0x01000005);  // not translatable
    EXPECT_EQ(d.DrawColor, -1);

    QImage img = surface(qRgb(0, 0, 200));
    d.DrawSurface = &img;
    d.SetRGBComponents(0x0000FF);
    d.PlotBlended(1, 1, 253);  // written outright
    d.PlotBlended(2, 2, 252);
    d.PlotBlended(3, 3, 0);  // no colour, but a shade darker: / 256
    d.PlotBlended(-1, 20, 100);  // off the surface: nothing
    EXPECT_EQ(img.pixelColor(1, 1), QColor(255, 0, 0));
    EXPECT_EQ(img.pixelColor(2, 2), QColor(251, 0, 2));
    EXPECT_EQ(img.pixelColor(3, 3), QColor(0, 0, 199));
}

TEST(AaLine, HorizontalLineKeepsTheStartingShare)
{
    QImage img = surface(qRgb(255, 255, 255));
    AaLineDrawer().LineGP(img, 2, 5, 8, 5, 0x0000FF);
    EXPECT_EQ(img.pixelColor(8, 5), QColor(255, 0, 0));
    EXPECT_EQ(img.pixelColor(5, 4), QColor(254, 126, 126));  // 255 - 127
    EXPECT_EQ(img.pixelColor(5, 6), QColor(254, 127, 127));  // 127
    // Caps of 0 darken their pixels once more.
    EXPECT_EQ(img.pixelColor(2, 4), QColor(253, 126, 126));
    EXPECT_EQ(img.pixelColor(9, 5), QColor(255, 255, 255));
}

TEST(AaLine, SteepLineBothWays)
{
    QImage img = surface(qRgb(0, 0, 0)), back = img;
    auto grey = [&](int x, int y) { return qRed(img.pixel(x, y)); };
    AaLineDrawer().LineGP(img, 3, 1, 5, 7, 0xFFFFFF);
    AaLineDrawer().LineGP(back, 5, 7, 3, 1, 0xFFFFFF);
    for (int y = 1; y <= 7; ++y)  // the full-colour core, the same either way
        EXPECT_TRUE(grey(3 + y / 3, y) == 255 && qRed(back.pixel(3 + y / 3, y)) == 255) << y;
    EXPECT_EQ(grey(4, 1), 126);  // err 3 of 6
    EXPECT_EQ(grey(3, 3), 212);  // err 1 after the minor step
    EXPECT_EQ(grey(2, 1), 140);  // cap 2 * 85 / 6 = 28 under the neighbour
}

TEST(AaLine, DegenerateLineAndPolyline)
{
    QImage img = surface(qRgb(10, 20, 30));
    const QImage before = img;
    AaLineDrawer d;
    d.LineGP(img, 4, 4, 4, 4, 0xFFFFFF);
    d.DrawPolyline({QPoint(0, 0)}, img, 0xFFFFFF);
    EXPECT_EQ(img, before);
    d.DrawPolyline({QPoint(1, 1), QPoint(1, 8), QPoint(8, 8)}, img, 0x00FF00);
    EXPECT_TRUE(img.pixelColor(1, 4) == QColor(0, 255, 0) && img.pixelColor(5, 8) == QColor(0, 255, 0));
}
