#include "display/aa_line.h"

#include <gtest/gtest.h>
#include <tuple>

namespace orm {
namespace {

using T = std::tuple<int, int, int>;

QImage surface(QRgb fill)
{
    QImage img(10, 10, QImage::Format_RGB32);
    img.fill(fill);
    return img;
}

T at(const QImage& img, int x, int y)
{
    const QRgb p = img.pixel(x, y);
    return {qRed(p), qGreen(p), qBlue(p)};
}

TEST(AaLine, ColoursAndBlending)
{
    AaLineDrawer d;
    d.SetRGBComponents(0x00336699);
    EXPECT_EQ(T(d.DrawR, d.DrawG, d.DrawB), T(0x99, 0x66, 0x33));
    d.SetRGBComponents(qint32(0x8000000F));  // button face
    EXPECT_EQ(d.DrawColor, 0xF0F0F0);
    d.SetRGBComponents(0x01000005);  // not translatable
    EXPECT_EQ(d.DrawColor, -1);

    QImage img = surface(qRgb(0, 0, 200));
    d.DrawSurface = &img;
    d.SetRGBComponents(0x0000FF);
    d.PlotBlended(1, 1, 253);  // written outright
    d.PlotBlended(2, 2, 252);
    d.PlotBlended(3, 3, 0);    // no colour, but a shade darker: / 256
    d.PlotBlended(-1, 20, 100);
    EXPECT_EQ(at(img, 1, 1), T(255, 0, 0));
    EXPECT_EQ(at(img, 2, 2), T(251, 0, 2));
    EXPECT_EQ(at(img, 3, 3), T(0, 0, 199));
}

TEST(AaLine, HorizontalLineKeepsTheStartingShare)
{
    QImage img = surface(qRgb(255, 255, 255));
    AaLineDrawer d;
    d.LineGP(img, 2, 5, 8, 5, 0x0000FF);
    for (int x = 2; x <= 8; ++x)
        EXPECT_EQ(at(img, x, 5), T(255, 0, 0)) << x;
    EXPECT_EQ(at(img, 5, 4), T(254, 126, 126));  // 255 - 127
    EXPECT_EQ(at(img, 5, 6), T(254, 127, 127));  // 127
    // Caps of 0 darken their pixels once more.
    EXPECT_EQ(at(img, 2, 4), T(253, 126, 126));
    EXPECT_EQ(at(img, 8, 6), T(253, 127, 127));
    EXPECT_EQ(at(img, 9, 5), T(255, 255, 255));
}

TEST(AaLine, SteepLineBothWays)
{
    const int core[][2] = {{3, 1}, {3, 2}, {4, 3}, {4, 4}, {4, 5}, {5, 6}, {5, 7}};
    QImage img = surface(qRgb(0, 0, 0));
    AaLineDrawer d;
    d.LineGP(img, 3, 1, 5, 7, 0xFFFFFF);
    auto grey = [&](int x, int y) { return qRed(img.pixel(x, y)); };
    for (const auto& p : core)
        EXPECT_EQ(grey(p[0], p[1]), 255) << p[0] << "," << p[1];
    EXPECT_EQ(grey(4, 1), 126);  // err 3 of 6
    EXPECT_EQ(grey(2, 2), 42);   // err 5
    EXPECT_EQ(grey(4, 2), 211);
    EXPECT_EQ(grey(3, 3), 212);  // err 1 after the minor step
    EXPECT_EQ(grey(5, 3), 41);
    EXPECT_EQ(grey(2, 1), 140);  // cap 2 * 85 / 6 = 28 under the neighbour
    EXPECT_EQ(grey(6, 7), 140);
    EXPECT_EQ(grey(4, 0), 0);

    img = surface(qRgb(0, 0, 0));
    d.LineGP(img, 5, 7, 3, 1, 0xFFFFFF);
    for (const auto& p : core)
        EXPECT_EQ(grey(p[0], p[1]), 255) << p[0] << "," << p[1];
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
    EXPECT_EQ(at(img, 1, 4), T(0, 255, 0));
    EXPECT_EQ(at(img, 8, 8), T(0, 255, 0));
}

}  // namespace
}  // namespace orm
