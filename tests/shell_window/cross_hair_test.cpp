// The cross-hair's choice on a real graph picture with a known history.
#include "display/cross_hair.h"
#include "display/displayed_graph.h"

#include <gtest/gtest.h>

namespace orm {
namespace {

// 200 x 100 plot on a 0..100 scale: value v lies at y = 135 - v.
class CrossHairTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Graph g;
        g.Name = QStringLiteral("G");
        g.GraphType = LineGraph;
        g.AutoRange = false;
        g.LegendMax = 100;
        g.DataType = QStringLiteral("percent");
        g.LegendUnits = QStringLiteral("%");
        g.LocWidth = 278;
        g.LocHeight = 163;
        Node a;
        a.Name = QStringLiteral("Alpha");
        a.NodeType = RamType;
        a.PenColor = 0x0000FF;
        Node b = a;
        b.Name = QString::fromUtf8("Be\0ta", 5);
        b.PenColor = 0x00FF00;
        g.Nodes = {a, b};
        sensors.push_back(g);
        picture = std::make_unique<DisplayedGraph>(sensors, 0, QString(), QString());
        picture->OpenGraph(1);
    }
    void write(double a, double b, const QString& label) { picture->WriteGraph({a, b}, label, 60, 5); }
    CrossHairPoint at(int x, int y) { return crossHairAt(sensors, 0, *picture, x, y); }

    std::vector<Graph> sensors;
    std::unique_ptr<DisplayedGraph> picture;
};

TEST_F(CrossHairTest, NearestNodeInTheColumnWinsAndTiesGoToTheFirst)
{
    for (int i = 1; i <= 5; ++i)
        write(20, 70, QStringLiteral("t%1").arg(i));
    ASSERT_EQ(picture->geometry().pHeight, 100);
    ASSERT_EQ(picture->maxValue(), 100);

    EXPECT_EQ(at(253, 65).node, 1);
    EXPECT_EQ(at(253, 112).node, 0);
    EXPECT_EQ(at(253, 90).node, 0);  // 25 from each: the first seen stays
    EXPECT_EQ(at(253, 36).node, 1);  // top two rows: the highest value

    const CrossHairPoint p = at(253, 65);
    EXPECT_EQ(p.y, 65);
    EXPECT_EQ(p.dataText, QStringLiteral("70 % - t5\r\n"));
    EXPECT_EQ(p.nameText, QStringLiteral("Beta (RAM)"));
    EXPECT_EQ(p.swatchColor, 0x00FF00);
}

TEST_F(CrossHairTest, ColumnClampsToTheHistoryAndFillerColumnsShowNothing)
{
    write(10, 30, QStringLiteral("a"));
    write(11, 31, QStringLiteral("b"));
    write(12, 32, QStringLiteral("c"));
    EXPECT_EQ(crossHairColumn(55, 3), 2);
    EXPECT_EQ(crossHairColumn(40, 3), 1);
    EXPECT_EQ(crossHairColumn(250, 3), 3);
    EXPECT_EQ(crossHairColumn(60, 0), 0);
    // The history fills the plot's width, the newest column at the right.
    ASSERT_EQ(picture->history().labels().count(), 200);
    EXPECT_TRUE(at(252, 120).dataText.endsWith(QStringLiteral(" - b\r\n")));
    EXPECT_TRUE(at(254, 120).dataText.endsWith(QStringLiteral(" - c\r\n")));  // one past: held at the last
    EXPECT_TRUE(at(251, 120).shown);
    EXPECT_FALSE(at(250, 120).shown);  // a filler column, "||"
    EXPECT_FALSE(at(55, 120).shown);
}

TEST_F(CrossHairTest, NothingOutsideThePlotOrWhenSwitchedOff)
{
    EXPECT_FALSE(at(250, 100).shown);  // no history yet
    write(20, 70, QStringLiteral("t"));
    EXPECT_FALSE(at(54, 100).shown);
    EXPECT_FALSE(at(255, 100).shown);
    EXPECT_FALSE(at(253, 34).shown);
    EXPECT_FALSE(at(253, 136).shown);
    EXPECT_TRUE(at(254, 135).shown);

    sensors[0].DisableCrossHair = true;
    EXPECT_FALSE(at(253, 100).shown);
    sensors[0].DisableCrossHair = false;
    sensors[0].Nodes[0].NodeVisible = false;
    sensors[0].Nodes[1].NodeVisible = false;
    EXPECT_FALSE(at(253, 100).shown);
    sensors[0].Nodes[1].NodeVisible = true;
    EXPECT_EQ(at(253, 120).node, 1);
    sensors[0].GraphType = BarGraph;
    EXPECT_FALSE(at(253, 100).shown);
}

TEST_F(CrossHairTest, ValueAboveTheScaleHoldsTheLineButShowsTheValue)
{
    write(150, 0, QStringLiteral("t"));
    ASSERT_EQ(picture->history().labels().count(), 200);
    ASSERT_EQ(picture->history().labels().at(200), QStringLiteral("t"));
    const CrossHairPoint p = at(253, 36);
    EXPECT_EQ(p.node, 0);
    EXPECT_EQ(p.y, 35);
    EXPECT_TRUE(p.dataText.startsWith(QStringLiteral("150 % - ")));
    EXPECT_EQ(crossHairLineY(-5, 100, 100), 134);
    EXPECT_EQ(crossHairLineY(5, 100, 0), 134);  // no scale: the base line, no fault
}

TEST(CrossHairText, DecimalsFollowTheSize)
{
    EXPECT_EQ(crossHairDecimals(5), 2);
    EXPECT_EQ(crossHairDecimals(0.1), 2);
    EXPECT_EQ(crossHairDecimals(0.05), 3);
    EXPECT_EQ(crossHairDecimals(0.005), 4);
    EXPECT_EQ(crossHairDecimals(5e-9), 10);
    EXPECT_EQ(crossHairDecimals(0), 10);
    EXPECT_DOUBLE_EQ(crossHairRound(0.05123), 0.051);
    EXPECT_DOUBLE_EQ(crossHairRound(5.4321), 5.43);
    EXPECT_DOUBLE_EQ(crossHairRound(0.000012345), 0.000012);
}

TEST(CrossHairStrokes, LinesSpanThePlotAndTheDotIsSevenRows)
{
    CrossHairPoint p;
    p.shown = true;
    p.x = 80;
    p.y = 60;
    const std::vector<QLine> s = crossHairStrokes(p, 200, 100);
    ASSERT_EQ(s.size(), 9u);
    EXPECT_EQ(s[0], QLine(55, 60, 255, 60));
    EXPECT_EQ(s[1], QLine(80, 35, 80, 135));
    const int half[] = {1, 2, 3, 3, 3, 2, 1};
    for (int r = 0; r < 7; ++r)
        EXPECT_EQ(s[size_t(r) + 2], QLine(80 - half[r], 57 + r, 80 + half[r], 57 + r));
    EXPECT_TRUE(crossHairStrokes(CrossHairPoint{}, 200, 100).empty());
}

}  // namespace
}  // namespace orm
