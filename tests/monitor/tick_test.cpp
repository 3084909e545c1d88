// The tick on a hand-driven clock, and the rules it applies to counters.
#include "monitor_fixture.h"

using namespace orm;
using namespace orm::test;

namespace {

class Tick : public MonitorFixture {};

TEST_F(Tick, TickLengthIsOneSecondFirstThenRealTimeAcrossTheWrapOfTheCount)
{
    tick(7);  // however little time passed since start-up
    EXPECT_EQ(monitor->TickLength, 1000);
    tick(2500);
    EXPECT_EQ(monitor->TickLength, 2500);
    clock.setTick(2147483000);
    tick();
    tick(1000);  // passes 2^31 - 1 and turns negative
    EXPECT_LT(monitor->TickStart, 0);
    EXPECT_EQ(monitor->TickLength, 1000);
}

TEST_F(Tick, GraphSamplesOnEveryNthTickFromTheFirstAndZeroStopsItForGood)
{
    monitor->AddSensor(true);  // a Log Graph is never sampled
    monitor->Sensors[0].SampleEverySeconds = 5;
    for (int t = 1; t <= 11; ++t)
        tick();
    EXPECT_EQ(view(0).writes, 3);  // ticks 1, 6 and 11

    monitor->Sensors[0].SampleEverySeconds = 0;
    monitor->Sensors[0].TicksToSample = 0;
    for (int t = 0; t < 6; ++t)
        tick();
    EXPECT_EQ(view(0).writes, 4);
    EXPECT_EQ(monitor->Sensors[0].TicksToSample, -6);
    EXPECT_EQ(view(1).writes, 0);
}

TEST_F(Tick, SourceIsReadOnlyWhenAGraphIsDueOrTheNodeIsLogged)
{
    Node& n = monitor->Sensors[0].Nodes[0];
    monitor->Sensors[0].SampleEverySeconds = 3;
    n.LogData = false;
    const int before = cpu->collections;
    for (int t = 0; t < 4; ++t)
        tick();
    EXPECT_EQ(cpu->collections - before, 2);  // ticks 1 and 4
    EXPECT_EQ(logLines().last().split(QLatin1Char(',')).size(), 4);  // the base columns only

    n.LogData = true;
    monitor->Sensors[0].Nodes.push_back(newNode(1));  // two CPU Nodes still read the source once
    const int logged = cpu->collections;
    for (int t = 0; t < 3; ++t)
        tick();
    EXPECT_EQ(cpu->collections - logged, 3);
}

TEST_F(Tick, UnknownTypesBadIndexesAndLaterSourcesReadZeroAndUptimeIsUnsigned)
{
    Graph& g = monitor->Sensors[0];
    g.Nodes[0].CPUNumber = 7;
    for (int type : {99, int(UpErrType), int(SysUptimeType)}) {
        g.Nodes.push_back(newNode(int(g.Nodes.size())));
        g.Nodes.back().NodeType = type;
    }
    clock.setTick(-5);
    monitor->TimerData();
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(view(0).GetNodeValue(k, 0), 0) << k;
    EXPECT_EQ(view(0).GetNodeValue(3, 0), 4294967291.0);
}

TEST_F(Tick, CpuValuesAreRoundedAndASlowTickTurnsTheRateLabelRedUntilCleared)
{
    cpu->onCollect = [this] { clock.advance(1500); };
    cpu->percent = 49.5;  // ties go to the even number, in the view and in the log
    tick();
    EXPECT_EQ(view(0).GetNodeValue(0, 0), 50);
    EXPECT_TRUE(logLines().last().endsWith(QStringLiteral(",50,50")));
    EXPECT_EQ(monitor->retrievalText, QStringLiteral("Data Retrieval Rate = 1500 mS"));
    cpu->onCollect = nullptr;
    tick(1000);
    EXPECT_EQ(monitor->TickLength, 2500);  // the overrun shows in the next tick's length
    EXPECT_TRUE(monitor->retrievalRed);
    monitor->clearRetrievalRed();
    EXPECT_FALSE(monitor->retrievalRed);
}

TEST_F(Tick, AFiringDuringATickIsLostAndClosingEndsItBeforeTheLog)
{
    cpu->onCollect = [this] { monitor->TimerData(); };
    tick();
    EXPECT_EQ(monitor->TickCount, 1);
    const int lines = int(logLines().size());
    cpu->onCollect = [this] { monitor->Closing = true; };
    tick();
    EXPECT_EQ(int(logLines().size()), lines);
    EXPECT_EQ(view(0).writes, 1);
    EXPECT_FALSE(monitor->TickBusy);
}

TEST(CounterRules, RateFromTheSecondSampleOnAndPercentageByMeasuringAndDataType)
{
    Node n;
    EXPECT_EQ(rateRule(n, 5000, 0), 0);
    EXPECT_EQ(rateRule(n, 7000, 2), 1000);
    EXPECT_EQ(rateRule(n, 1000, 1), -6000);  // a falling counter passes on
    Node z;
    EXPECT_EQ(rateRule(z, 0, 1), 0);
    EXPECT_EQ(rateRule(z, 4000, 1), 0);  // LastRawValue 0 counts as never read

    // The percentage rule by measuring and data type, and a total of zero.
    const QString pct = QStringLiteral("percent"), bytes = QStringLiteral("bytes");
    EXPECT_EQ(percentageRule(1, bytes, 8000, 2000), 6000);
    EXPECT_EQ(percentageRule(2, pct, 8000, 2000), 25);
    EXPECT_EQ(percentageRule(3, pct, 8000, 2000), 0);
    EXPECT_EQ(percentageRule(-1, bytes, 8000, 2000), 0);
    EXPECT_EQ(percentageRule(1, pct, 0, 0), 0);
}

}  // namespace
