#include "display/bar_graph.h"
#include "display/bar_meter.h"
#include "display/colors.h"

#include <QImage>
#include <gtest/gtest.h>

using namespace orm;

namespace {

BarMeter meter(int value, int max, int min = 0)
{
    BarMeter m;
    m.Value = qint16(value);
    m.Max = qint16(max);
    m.Min = qint16(min);
    return m;
}

QPoint centre(const QRect& r)
{
    return QPoint(r.left() + r.width() / 2, r.top() + r.height() / 2);
}

Graph barGraph()
{
    Graph g;
    g.Name = QString("Net") + QChar(0) + QString("work");
    g.GraphType = BarGraph;
    g.GraphBackColor = 0x000000;
    g.LegendUnits = "Kbps";
    for (int i = 0; i < 3; ++i) {
        Node n;
        n.Name = QString("Node %1").arg(i + 1);
        n.NodeType = PingType;
        n.PenColor = 0x00FF00 >> (8 * i);  // green, red, then 0
        g.Nodes.push_back(n);
    }
    g.Nodes[1].NodeVisible = false;
    g.Nodes[2].PenColor = 0xFF0000;  // blue
    g.Nodes[2].NodeType = CpuType;
    g.Nodes[2].CPUNumber = 1;
    g.Nodes[2].Name = QString("c") + QChar(0) + QString("pu");
    return g;
}

}  // namespace

TEST(BarMeter, LitCellsFollowValueWithinBarsAndNoDivisionWhenMaxIsMin)
{
    EXPECT_EQ(litCells(meter(50, 100)), 10);
    EXPECT_EQ(litCells(meter(13, 100)), 3);    // 2.6
    EXPECT_EQ(litCells(meter(25, 200)), 2);    // 2.5 goes to even
    EXPECT_EQ(litCells(meter(150, 100)), 20);  // above Max: all lit
    EXPECT_EQ(litCells(meter(0, 100)), 0);
    EXPECT_EQ(litCells(meter(-5, 100)), 0);
    EXPECT_EQ(litCells(meter(1, 0, 0)), 20);
    EXPECT_EQ(litCells(meter(0, 0, 0)), 0);
    EXPECT_EQ(toInt16(40000.0), 32767);
    EXPECT_EQ(toInt16(2.5), 2);
}

TEST(BarMeter, CellsFillTheLengthEvenlyAndKeepTheSpacing)
{
    BarMeter m = meter(50, 100);
    m.BarSpacing = 1;
    const QSize size(10, 103);
    const QRect inner = innerRect(m, size);
    const std::vector<QRect> cells = cellRects(m, size);
    ASSERT_EQ(cells.size(), 20u);
    EXPECT_EQ(cells.front().bottom(), inner.bottom());  // grows from the bottom
    EXPECT_EQ(cells.back().top(), inner.top());
    for (size_t i = 0; i + 1 < cells.size(); ++i) {
        EXPECT_EQ(cells[i].top() - cells[i + 1].bottom() - 1, 1) << i;
        EXPECT_GE(cells[i].height(), 4);
        EXPECT_LE(cells[i].height(), 5);
        EXPECT_EQ(cells[i].width(), inner.width());
    }

    m.Alignment = GrowFromLeft;
    m.RightToLeft = true;
    const std::vector<QRect> across = cellRects(m, QSize(103, 10));
    EXPECT_EQ(across.front().right(), innerRect(m, QSize(103, 10)).right());
}

TEST(BarMeter, RegionCutsOutUnlitCellsOnlyWhenTransparent)
{
    BarMeter m = meter(50, 100);
    const QSize size(21, 203);
    EXPECT_EQ(barMeterRegion(m, size), QRegion(QRect(QPoint(0, 0), size)));

    m.BackStyle = 0;
    const QRegion r = barMeterRegion(m, size);
    const std::vector<QRect> cells = cellRects(m, size);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(r.contains(centre(cells[i])), i < 10) << i;
    EXPECT_TRUE(r.contains(QPoint(0, 0)));  // the border stays

    m.BarStyle = 1;
    const QRect lit = gradientRect(m, size);
    EXPECT_EQ(lit.height(), (203 - 2) / 2 + 1);  // 100.5 rounds away from zero
    EXPECT_EQ(lit.bottom(), 201);
    EXPECT_EQ(barMeterRegion(m, size), QRegion(lit));
}

TEST(BarMeter, LighteningAGreyKeepsItGreyAndCapsAtWhite)
{
    EXPECT_EQ(shiftLightness(0x646464, 50), 0x969696);
    EXPECT_EQ(shiftLightness(0xDCDCDC, 50), 0xFFFFFF);
    const qint32 red = 0x0000FF;
    EXPECT_EQ(hslToRgb(rgbToHsl(red)), red);
    EXPECT_EQ(fromBgr(0x0000FF), QColor(255, 0, 0));
    EXPECT_EQ(fromBgr(qint32(0x8000000F)), QColor(240, 240, 240));
}

TEST(BarGraph, LayoutSkipsHiddenBarsButKeepsTheirGap)
{
    const Graph g = barGraph();
    const std::vector<QRect> rects = barRects(g, 200);
    ASSERT_EQ(rects.size(), 3u);
    EXPECT_EQ(rects[0], QRect(60, 34, 21, 203));
    EXPECT_TRUE(rects[1].isEmpty());
    EXPECT_EQ(rects[2], QRect(91, 34, 21, 203));
    EXPECT_EQ(barFrameWidth(g), 21 + 21 + 15 + 10);
}

TEST(BarGraph, TickSetsLevelsLineEndsTipsAndPaintsTheBars)
{
    std::vector<Graph> sensors{Graph{}, barGraph()};
    const Graph& g = sensors[1];
    BarGraphState state;
    setUpBars(state, g, 100.7, false, {});
    ASSERT_EQ(state.bars.size(), 3u);
    EXPECT_EQ(state.bars[0].Value, 100);
    EXPECT_EQ(state.bars[0].Max, 100);

    EXPECT_EQ(barNoDataTips(sensors, 1),
              QStringList({"Node 1 (Ping) - No Data", "Node 2 (Ping) - No Data",
                           "cpu (CPU 1) - No Data"}));

    barTick(state, sensors, 1, {50, -1, 120.5}, 100, 200);
    EXPECT_EQ(state.bars[0].Value, 50);
    EXPECT_EQ(state.bars[1].Value, -1);
    EXPECT_EQ(state.bars[2].Value, 120);
    EXPECT_EQ(state.oldYData, (std::vector<qint32>{135, 235, -6}));
    EXPECT_EQ(barToolTips(state)[2],
              "Network:\r\n\r\nNode:    3\r\nName:   cpu\r\nType:     CPU 1\r\n"
              "Value:   120.5 Kbps");

    QImage image(200, 260, QImage::Format_RGB32);
    image.fill(Qt::white);
    drawBars(image, state, g, 200);
    const std::vector<QRect> rects = barRects(g, 200);
    const std::vector<QRect> cells = cellRects(state.bars[0], rects[0].size());
    EXPECT_EQ(image.pixelColor(centre(cells[0]) + rects[0].topLeft()), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(centre(cells[15]) + rects[0].topLeft()), QColor(0, 0, 0));
    EXPECT_EQ(image.pixelColor(centre(cells[19]) + rects[2].topLeft()), QColor(0, 0, 255));
    EXPECT_EQ(image.pixelColor(85, 100), QColor(Qt::white));  // gap and hidden bar

    const QRegion shape = barRegion(state, g, 200);
    EXPECT_TRUE(shape.contains(centre(rects[0])));
    EXPECT_TRUE(shape.contains(centre(rects[2])));
    EXPECT_FALSE(shape.contains(QPoint(85, 100)));
}
