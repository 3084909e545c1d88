// Node histories and the averages read from them.
#include "display/averaging.h"
#include "display/node_history.h"

#include <gtest/gtest.h>

using namespace orm;

namespace {

// One Node with the given samples, oldest first.
struct Fixture {
    Graph g;
    NodeHistory h;
    Fixture(const char* type, double magnitude, std::initializer_list<double> samples, int mode, int window = 10)
    {
        g.DataType = QString::fromLatin1(type);
        g.DataMagnitude = magnitude;
        g.Nodes.resize(1);
        g.Nodes[0].Averaging = mode;
        g.Nodes[0].AveragingSamples = window;
        h.reset(1);
        for (double s : samples)
            h.addSample(1, s, "t", 100);
    }
    double avg(int index = 0, double value = 0, bool round = true, bool ping = true)
    {
        return GetAvg(g, h, 1, index, value, false, round, ping);
    }
};

}  // namespace

TEST(GetAvg, UnitsIncomingValueAndRounding)
{
    Fixture bps("bps", 3, {125000}, RealTime);
    EXPECT_DOUBLE_EQ(bps.avg(), 1000);  // bytes per second shown as Kbps
    bps.g.DisplayAsBytesPerSecond = true;
    EXPECT_DOUBLE_EQ(bps.avg(), 125);

    Fixture odd("furlongs", 0, {5}, RealTime);  // no unit: no division, 0
    EXPECT_EQ(odd.avg(), 0);
    EXPECT_EQ(GetAvg(odd.g, odd.h, 2, 0, 0, false, true, true), 0);  // no such Node

    Fixture f("number", 0, {1, 2}, Average, 3);
    // One past the end: the incoming value joins the window before it is stored.
    EXPECT_DOUBLE_EQ(f.avg(-1, 0.25, false), 3.25 / 3);
    EXPECT_DOUBLE_EQ(GetAvg(f.g, f.h, 1, -1, 7.25, true, true, true), 7.2);  // halves to even
}

TEST(GetAvg, GapsAndPeaksAndLulls)
{
    for (int mode = PeakCapture; mode <= RealTime; ++mode)
        EXPECT_EQ(Fixture("number", 0, {-1, -1, -1}, mode, 3).avg(), 0) << "mode " << mode;
    // 20, then the gap adds 20 / 2, then 10: 40 over the full window of 3.
    EXPECT_DOUBLE_EQ(Fixture("number", 0, {10, -1, 20}, Average, 3).avg(0, 0, false), 40.0 / 3);
    EXPECT_EQ(Fixture("number", 0, {-1, 5}, Average, 1).avg(1), 0);        // one missing column: 0 / 0
    // Peak and lull keep their unscaled comparison.
    EXPECT_DOUBLE_EQ(Fixture("bytes", 10, {2048, 10240}, PeakCapture, 2).avg(), 2);  // the oldest positive wins
    EXPECT_DOUBLE_EQ(Fixture("number", 0, {5, -1, 3, 8}, LullCapture, 4).avg(), 3);
}

TEST(GetAvg, PingTranslationTurnsRoundTripsIntoSpeed)
{
    Fixture f("bps", 3, {50}, RealTime);
    Node& n = f.g.Nodes[0];
    n.NodeType = PingType;
    n.PingTranslate = true;
    n.PingPacketSize = 100;
    // 1000 / 50 ms * 200 bytes = 4000 bytes a second, 32 Kbps.
    EXPECT_DOUBLE_EQ(f.avg(), 32);
    EXPECT_DOUBLE_EQ(f.avg(0, 0, true, false), 0.4);  // off: 50 bytes/s as Kbps
    n.Averaging = LullCapture;
    f.h.addSample(1, 0, "t", 100);
    EXPECT_EQ(f.avg(), 0);  // a failed echo zeroes the lull
}

TEST(NodeHistory, TrimsLevelsAndKeepsOrder)
{
    NodeHistory h;
    h.reset(2);
    for (int t = 1; t <= 5; ++t) {
        h.addSample(1, t, QString::number(t), 3);
        if (t > 3)  // a Node added later is shorter
            h.addSample(2, 10 * t, QString::number(t), 3);
    }
    EXPECT_EQ(h.nodeValue(0, 2), 3);
    EXPECT_EQ(h.nodeValue(0, 3), 0.0);  // equal to Count

    h.level(5);  // fillers in front of each list, so that the newest stay side by side
    EXPECT_EQ(h.labels().at(2), "||");
    EXPECT_EQ(h.samples(1).at(2), -1);
    ASSERT_EQ(h.samples(2).count(), 5);
    EXPECT_EQ(h.samples(2).at(3), -1);
    EXPECT_EQ(h.samples(2).at(5), 50);

    // A long run keeps its order through the compaction of the lists.
    h.reset(1);
    for (int t = 0; t < 5000; ++t)
        h.addSample(1, t, {}, 490);
    ASSERT_EQ(h.samples(1).count(), 490);
    for (int p = 1; p <= 490; ++p)
        ASSERT_EQ(h.samples(1).at(p), 5000 - 490 + p - 1);
}
