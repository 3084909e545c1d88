#include "display/averaging.h"
#include "display/scale.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace orm;

namespace {

Graph graphOf(const char* type, double magnitude)
{
    Graph g;
    g.DataType = QString::fromLatin1(type);
    g.DataMagnitude = magnitude;
    g.LegendUnits = QStringLiteral("unset");
    DecideLegendUnits(g);
    return g;
}

}  // namespace

TEST(Scale, SecondsRungsAndTheTenPassLimit)
{
    Graph g = graphOf("seconds", 60);
    runUnitLadder(g, 60.1, 1);
    EXPECT_EQ(g.DataMagnitude, 60);
    g.Nodes.resize(1);
    const LadderResult r = runUnitLadder(g, 61, 1);
    DecideLegendUnits(g);
    EXPECT_EQ(g.LegendUnits, "Hours");
    // Converted back, 61 Minutes read as Hours.
    EXPECT_NEAR(GetAvg(g, NodeHistory(), 1, -1, r.raw / r.mult, true, false, false), 61.0 / 60, 1e-9);

    // 12.15 Months climbs to 0.9986 Years, which falls back, and so on.
    g = graphOf("seconds", 2592000);
    const LadderResult loop = runUnitLadder(g, 12.15, 1);
    EXPECT_FALSE(loop.settled);
    EXPECT_EQ(loop.passes, 10);
    EXPECT_EQ(g.DataMagnitude, 2592000);
}

// The auto range reads the largest sample instead of every column; over a
// window that slides past its peaks, with gaps, NaN and the units that scale,
// it must give what reading each column as it stands gives.
TEST(Scale, AutoRangeMaximumFollowsTheWindowAsItSlides)
{
    const char* types[] = {"bps", "bytes", "seconds", "percent", "odd"};
    for (const char* type : types) {
        Graph g = graphOf(type, 3);
        g.Nodes.resize(2);
        g.Nodes[1].NodeType = PingType;
        g.Nodes[1].PingTranslate = true;  // the speed falls as the round trip grows
        NodeHistory h;
        h.reset(2);
        unsigned seed = 7;
        for (int t = 0; t < 400; ++t) {
            seed = seed * 1103515245u + 12345u;
            double v = double((seed >> 8) % 5000) - 500;  // gaps (-1 and below) among the samples
            if (t % 97 == 0)
                v = 90000;  // a peak that later slides out of the window
            if (t % 131 == 0)
                v = std::nan("");
            const std::vector<double> incoming{v, v / 10};
            double real = 0;
            const double got = autoRangeMaximum(g, h, incoming, real);
            double big = 0;
            for (int k = 1; k <= 2; ++k) {
                const UnitFactors unit = unitFactors(g);
                const SampleList& list = h.samples(k);
                for (int c = 1; c <= list.count(); ++c)
                    big = std::max(big, GetAvg(unit, g.Nodes[size_t(k) - 1], list, c, 0, true, false, true));
                big = std::max(big, GetAvg(unit, g.Nodes[size_t(k) - 1], list, -1, incoming[size_t(k) - 1], true, false, true));
            }
            ASSERT_DOUBLE_EQ(real, big) << type << " at tick " << t;
            ASSERT_DOUBLE_EQ(got, std::max(1.0, roundTenth(big))) << type << " at tick " << t;
            h.addSample(1, incoming[0], "t", 60);
            h.addSample(2, incoming[1], "t", 60);
            if (t == 200)
                h.level(45);  // the window narrows: its oldest columns go
        }
    }
}
