// What stays of a transparent Bar Graph's window: the label text itself.
#include "display/window_shape.h"

#include <QFont>
#include <QPainter>
#include <gtest/gtest.h>

using namespace orm;

TEST(WindowShape, TheLegendIsTheTextLeftOfThePlotAndNotTheSlabAroundIt)
{
    for (const qint32 back : {0xFFFFFF, 0x000000, 0x336699}) {
        SCOPED_TRACE(back);
        Graph g;
        g.GraphBackColor = back;
        const PlotGeometry geo = PlotGeometry::fromClient(568, 159);
        QImage picture(geo.gWidth, geo.gHeight, QImage::Format_RGB32);
        const QColor backColour(back & 0xFF, (back >> 8) & 0xFF, (back >> 16) & 0xFF);
        picture.fill(backColour);
        QPainter p(&picture);
        p.setPen(backColour.lightness() > 128 ? Qt::black : Qt::white);
        p.setFont(QFont(QStringLiteral("Sans"), 9));
        p.drawText(QRect(0, 30, 52, 20), Qt::AlignRight, QStringLiteral("2.5"));
        p.drawText(QRect(0, 120, 52, 20), Qt::AlignRight, QStringLiteral("0"));
        p.fillRect(QRect(60, 40, 30, 30), Qt::red);  // the plot is not the legend's
        p.end();

        const QRegion legend = legendRegion(picture, g, geo);
        ASSERT_FALSE(legend.isEmpty());
        int inside = 0, text = 0;
        for (int y = 0; y < geo.gHeight; ++y) {
            for (int x = 0; x < 54; ++x) {
                const bool drawn = picture.pixelColor(x, y) != backColour;
                text += drawn;
                if (legend.contains(QPoint(x, y))) {
                    ++inside;
                    EXPECT_TRUE(drawn) << x << "," << y;
                } else {
                    EXPECT_FALSE(drawn) << x << "," << y;
                }
            }
        }
        EXPECT_EQ(inside, text);
        EXPECT_LT(inside, 54 * geo.gHeight / 10);  // a few glyphs, not a slab
        EXPECT_FALSE(legend.intersects(QRect(54, 0, geo.gWidth - 54, geo.gHeight)));
    }
}
