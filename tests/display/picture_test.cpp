#include "display/graph_picture.h"

#include <QFontMetrics>
#include <QTime>
#include <gtest/gtest.h>
#include <memory>

using namespace orm;

namespace {

constexpr qint32 Red = 0x0000FF;  // 0x00BBGGRR
constexpr qint32 Green = 0x00FF00;


QRgb rgbOf(qint32 bgr) { return qRgb(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }

// A Line Graph of plain numbers, 568 x 159 (plot 490 x 96, base line at 131).
struct Rig {
    std::vector<Graph> sensors{1};
    std::unique_ptr<GraphPicture> pic;
    int tick = 0;

    explicit Rig(bool autoRange = false)
    {
        Graph& g = sensors[0];
        g.DataType = QStringLiteral("number");
        g.AutoRange = autoRange;
        g.LegendMax = 100;
        g.LocWidth = 568;
        g.LocHeight = 159;
        g.GraphBackColor = 0;  // dark, with grey grids
        g.GraphInteriorGridColor = 0x404040;
        g.GraphInteriorGridColorLight = 0x202020;
        g.GraphExteriorGridColor = 0x808080;
        g.GraphGridLabelColor = 0xC0C0C0;
        g.Nodes.resize(1);
        g.Nodes[0].GraphLineType = 0;
        g.Nodes[0].PenColor = Red;
    }
    Graph& graph() { return sensors[0]; }
    // Opens the window on the first call, once the test has set the Graph up.
    void write(std::vector<double> values, int times = 1)
    {
        if (!pic) {
            pic = std::make_unique<GraphPicture>(sensors, 0);
            pic->OpenGraph();
        }
        for (int i = 0; i < times; ++i, ++tick)
            pic->WriteGraph(values, QTime(10, 0).addSecs(tick).toString(QStringLiteral("hh:mm:ss")), 60, 5);
    }
    QRgb at(int x, int y) const { return pic->picture().pixel(x, y); }
};

}  // namespace

// The plot columns (x) in which `colour` shows above the base line (where a
// Node draws the columns it has no sample for).
std::vector<int> columnsWith(const Rig& rig, QRgb colour)
{
    std::vector<int> xs;
    for (int x = 56; x <= 544; ++x)
        for (int y = 36; y <= 128; ++y)
            if (y != 59 && y != 83 && y != 107 && rig.at(x, y) == colour) {
                xs.push_back(x);
                break;
            }
    return xs;
}

TEST(GraphPicture, ARedrawAfterNodesComeAndGoKeepsEveryCurveWhereItWas)
{
    Rig rig;
    rig.write({10}, 30);
    Node later;
    later.PenColor = Green;
    rig.graph().Nodes.push_back(later);  // added while the first has a history
    rig.pic->SetUpNodes(false);
    rig.write({10, 60}, 20);
    const std::vector<int> red = columnsWith(rig, rgbOf(Red)), green = columnsWith(rig, rgbOf(Green));
    ASSERT_FALSE(green.empty());
    EXPECT_GE(green.front(), 543 - 20);

    rig.pic->InitDraw();  // the graph menu's Redraw Graph
    rig.pic->RedrawGraph();
    EXPECT_EQ(columnsWith(rig, rgbOf(Red)), red);
    EXPECT_EQ(columnsWith(rig, rgbOf(Green)), green);
    rig.write({10, 60}, 3);
    const std::vector<int> greenNow = columnsWith(rig, rgbOf(Green));
    EXPECT_EQ(rig.pic->GetNodeValue(1, 22), 60);

    // The first Node goes: the second keeps its place.
    rig.pic->removeNode(0);
    rig.graph().Nodes.erase(rig.graph().Nodes.begin());
    rig.pic->SetUpNodes(false);
    rig.pic->InitDraw();
    rig.pic->RedrawGraph();
    EXPECT_EQ(columnsWith(rig, rgbOf(Green)), greenNow);
    EXPECT_TRUE(columnsWith(rig, rgbOf(Red)).empty());
}

TEST(GraphPicture, RaisingTheScaleKeepsEveryDrawnColumnOfAFlatStretch)
{
    Rig rig(true);
    // Red, alone or lit up by a grid line beneath.
    const auto redIn = [&](int x) {
        for (int y = 36; y <= 131; ++y)
            if (qRed(rig.at(x, y)) == 255 && qGreen(rig.at(x, y)) < 0x80)
                return true;
        return false;
    };
    rig.write({2}, 15);   // a plateau at the top of a scale of 2
    rig.write({100});     // the scale climbs fifty-fold: the plateau folds into the bottom rows
    for (int x = 530; x <= 542; ++x)
        EXPECT_TRUE(redIn(x)) << "column " << x;
}

TEST(GraphPicture, ScaleLabelsEndBeforeTheUnitCaption)
{
    // The caption reads upwards in the first columns; a blank caption takes its
    // room and draws nothing, so every lit pixel there would be a label's.
    const int captionRight = 2 + QFontMetrics(labelFont()).height();
    for (const double max : {1.35, 12345.678}) {
        Rig rig;
        rig.graph().LegendUnits = QStringLiteral(" ");
        rig.graph().LegendMax = max;
        rig.write({0});
        int lit = 0, labels = 0;
        for (int y = 20; y < 150; ++y) {
            for (int x = 0; x < 54; ++x) {
                const bool on = rig.at(x, y) != rgbOf(0);
                labels += on;
                lit += on && x <= captionRight;
            }
        }
        EXPECT_GT(labels, 50);
        EXPECT_EQ(lit, 0);
    }
}

TEST(GraphPicture, LineStandsAtTheComputedRow)
{
    Rig rig;
    Node hidden;
    hidden.NodeVisible = false;
    hidden.PenColor = Green;
    rig.graph().Nodes.push_back(hidden);
    rig.write({40, 10}, 5);
    // 131 - 96 / 100 * 40 = 92.6, drawn in the newest column at 490 + 53.
    EXPECT_EQ(rig.at(543, 93), rgbOf(Red));
    EXPECT_NE(rig.at(543, 92), rgbOf(Red));
    // The hidden Node draws nothing but keeps its place.
    EXPECT_TRUE(columnsWith(rig, rgbOf(Green)).empty());
    EXPECT_EQ(rig.pic->history().oldYData()[1], 121);

    rig.graph().Nodes[0].GraphLineType = 1;  // fill down to the base line
    rig.pic->SetUpNodes(false);
    rig.write({10, 10});
    EXPECT_EQ(rig.at(543, 128), rgbOf(Red));
    EXPECT_EQ(rig.at(542, 128), rgbOf(0));
}

TEST(GraphPicture, ResizeRebuildsWithTheNewestAtTheRight)
{
    Rig rig;
    rig.write({40}, 20);
    rig.write({10});
    rig.pic->resizeWindow(668, 159);
    EXPECT_EQ(rig.pic->history().samples(1).count(), 590);
    EXPECT_EQ(rig.at(643, 121), rgbOf(Red));
    EXPECT_TRUE(columnsWith(rig, rgbOf(Red)).empty());  // the padded columns on the left stay empty

    rig.pic->resizeWindow(100, 50);  // held at the minimum
    EXPECT_EQ(rig.pic->picture().size(), QSize(180, 100));
    EXPECT_EQ(rig.pic->history().samples(1).count(), 102);
    EXPECT_DOUBLE_EQ(rig.pic->GetNodeValue(0, 0), 10);
}
