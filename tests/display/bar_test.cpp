#include "display/bar_graph.h"
#include "display/bar_meter.h"
#include "display/colors.h"
#include "display/displayed_graph.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

using namespace orm;

namespace {

BarMeter meter(int value, int max)
{
    BarMeter m;
    m.Value = qint16(value);
    m.Max = qint16(max);
    return m;
}

// Two Ping Nodes, green and hidden, and a CPU one in blue; names with NULs.
Graph barGraph()
{
    Graph g;
    g.Name = QString("Net") + QChar(0) + QString("work");
    g.Nodes.resize(3);
    g.Nodes[0].NodeType = g.Nodes[1].NodeType = PingType;
    g.Nodes[0].PenColor = 0x00FF00;
    g.Nodes[1].NodeVisible = false;
    g.Nodes[2].Name = QString("c") + QChar(0) + QString("pu");
    g.Nodes[2].PenColor = 0xFF0000;
    g.Nodes[2].NodeType = CpuType;
    g.Nodes[2].CPUNumber = 1;
    return g;
}

// barGraph() shown as bars, at the size its window opens with.
std::vector<Graph> openedBars()
{
    std::vector<Graph> sensors{barGraph()};
    sensors[0].GraphType = BarGraph;
    sensors[0].LocWidth = 568;
    sensors[0].LocHeight = 159;
    return sensors;
}

}  // namespace

TEST(BarMeter, LitCellsRoundToEvenAndNeverDivideByZero)
{
    EXPECT_EQ(litCells(meter(25, 200)), 2);    // 2.5 goes to even
    EXPECT_EQ(litCells(meter(150, 100)), 20);  // above Max: all lit
    EXPECT_EQ(litCells(meter(1, 0)), 20);  // Max equals Min: all or nothing
    EXPECT_EQ(litCells(meter(0, 0)), 0);
}

TEST(BarMeter, CellsFillTheLengthEvenlyAndTheRegionCutsOutUnlitOnes)
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
        EXPECT_TRUE(cells[i].height() >= 4 && cells[i].height() <= 5 && cells[i].width() == inner.width()) << i;
    }

    const QSize bar(21, 203);
    m.BackStyle = 0;  // transparent
    const QRegion r = barMeterRegion(m, bar);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(r.contains(cellRects(m, bar)[i].center()), i < 10) << i;
    EXPECT_TRUE(r.contains(QPoint(0, 0)));  // the border stays
    m.BarStyle = 1;
    const QRect lit = gradientRect(m, bar);
    EXPECT_EQ(lit.height(), (203 - 2) / 2 + 1);  // 100.5 rounds away from zero
    EXPECT_EQ(lit.bottom(), 201);
    EXPECT_EQ(barMeterRegion(m, bar), QRegion(lit));
}

TEST(BarGraph, TickSetsLevelsLineEndsTipsAndPaintsTheBars)
{
    std::vector<Graph> sensors{Graph{}, barGraph()};
    const Graph& g = sensors[1];
    const std::vector<QRect> rects = barRects(g, 200);  // the hidden bar keeps only its gap
    EXPECT_EQ(rects, (std::vector<QRect>{QRect(60, 34, 21, 203), QRect(), QRect(91, 34, 21, 203)}));
    // Pointing: the third bar, the gap beside the first.
    EXPECT_EQ(barAt(g, 200, {95, 100}), 2);
    EXPECT_EQ(barAt(g, 200, {83, 100}), -1);

    BarGraphState state;
    setUpBars(state, g, 100.7, false, {});
    ASSERT_EQ(state.bars.size(), 3u);
    EXPECT_EQ(state.bars[0].Max, 100);

    barTick(state, sensors, 1, {50, -1, 120.5}, 100, 200);
    EXPECT_EQ(state.bars[1].Value, -1);
    EXPECT_EQ(state.bars[2].Value, 120);
    EXPECT_EQ(state.oldYData, (std::vector<qint32>{135, 235, -6}));
    EXPECT_EQ(barToolTips(state)[2],
              "Network:\r\n\r\nNode:    3\r\nName:   cpu\r\nType:     CPU 1\r\nValue:   120.5 Kbps");

    QImage image(200, 260, QImage::Format_RGB32);
    image.fill(Qt::white);
    drawBars(image, state, g, 200);
    const std::vector<QRect> cells = cellRects(state.bars[0], rects[0].size());
    EXPECT_EQ(image.pixelColor(cells[0].center() + rects[0].topLeft()), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(cells[15].center() + rects[0].topLeft()), QColor(0, 0, 0));
    EXPECT_EQ(image.pixelColor(85, 100), QColor(Qt::white));  // gap and hidden bar
    const QRegion shape = barRegion(state, g, 200);
    EXPECT_TRUE(shape.contains(rects[0].center()) && shape.contains(rects[2].center()));
    EXPECT_FALSE(shape.contains(QPoint(85, 100)));
}

// A Bar Graph has its bars, lit and telling "No Data", from the moment its
// window opens or it turns from a Line Graph into bars, before any sample.
TEST(BarGraphPicture, BarsStandBeforeTheFirstSample)
{
    std::vector<Graph> sensors = openedBars();
    Graph& g = sensors[0];
    g.GraphBackColor = 0xFFFFFF;
    DisplayedGraph fresh(sensors, 0, QString(), QString());
    fresh.OpenGraph();
    EXPECT_EQ(barToolTips(fresh.bars()),
              QStringList({QStringLiteral("New Node (Ping) - No Data"), QStringLiteral("New Node (Ping) - No Data"),
                           QStringLiteral("cpu (CPU 1) - No Data")}));
    const QImage shown = fresh.windowPicture();
    const QRect first = barRects(g, fresh.geometry().pHeight)[0];
    int green = 0;
    for (int y = first.top(); y <= first.bottom(); ++y)
        for (int x = first.left(); x <= first.right(); ++x)
            green += shown.pixelColor(x, y) == fromBgr(0x00FF00);
    EXPECT_GT(green, first.width() * first.height() / 4);

    // A Line Graph with a history, switched to bars.
    g.GraphType = LineGraph;
    DisplayedGraph line(sensors, 0, QString(), QString());
    line.OpenGraph();
    line.WriteGraph({5, 6, 7}, QStringLiteral("10:00:00"), 60, 5);
    g.GraphType = BarGraph;
    line.SetUpNodes(false);
    EXPECT_EQ(barToolTips(line.bars()).value(2), QStringLiteral("cpu (CPU 1) - No Data"));
}

// A window paints the bars over a piece of the picture only: what it shows is
// the snapshot's picture, pixel for pixel, a value wider than its bar included.
TEST(BarGraphPicture, TheWindowShowsWhatTheSnapshotSaves)
{
    std::vector<Graph> sensors = openedBars();
    Graph& g = sensors[0];
    DisplayedGraph bars(sensors, 0, QString(), QString());
    bars.OpenGraph();
    bars.WriteGraph({40, 50, 75}, QStringLiteral("10:00:00"), 60, 5);
    QImage painted(bars.picture().size(), QImage::Format_RGB32);
    painted.fill(Qt::magenta);
    {
        QPainter p(&painted);
        bars.paintWindowPicture(p);
    }
    EXPECT_EQ(painted, bars.windowPicture());

    BarGraphState state = bars.bars();
    state.bars[2].BarLabelValue = true;
    state.bars[2].Value = -12345;
    state.bars[0].BarStyle = 1;
    QImage whole = bars.picture().copy();
    drawBars(whole, state, g, bars.geometry().pHeight);
    const QRect area = barsArea(state, g, bars.geometry().pHeight, whole.width());
    QImage part = bars.picture().copy(area);
    drawBars(part, state, g, bars.geometry().pHeight, area.topLeft());
    EXPECT_EQ(part, whole.copy(area));
    EXPECT_EQ(bars.picture().copy(), [&] {
        QImage rest = whole.copy();
        QPainter(&rest).drawImage(area.topLeft(), bars.picture().copy(area));
        return rest;
    }()) << "drawBars painted outside the area";
}
