#include "model/debug_log.h"
#include "monitor_fixture.h"

using namespace orm;
using namespace orm::test;

namespace {

class Tick : public MonitorFixture {};

TEST_F(Tick, FirstRunMakesOneGraphWithOneCpuNode)
{
    ASSERT_EQ(monitor->Sensors.size(), 1u);
    const Graph& g = monitor->Sensors[0];
    EXPECT_EQ(g.Name, QStringLiteral("New Graph 1"));
    ASSERT_EQ(g.Nodes.size(), 1u);
    EXPECT_EQ(g.Nodes[0].Name, QStringLiteral("New Node 1"));
    EXPECT_EQ(g.Nodes[0].NodeType, CpuType);
    EXPECT_EQ(g.SampleEverySeconds, 1);
    EXPECT_EQ(store.readValue(QStringLiteral("Settings"), QStringLiteral("FirstRun"), QString()),
              QStringLiteral("False"));
    EXPECT_EQ(monitor->GraphForms.size(), 1u);
}

TEST_F(Tick, FirstTickCountsAsOneSecondAndLaterTicksMeasureRealTime)
{
    tick(7);  // however little time passed since start-up
    EXPECT_EQ(monitor->TickLength, 1000);
    EXPECT_EQ(monitor->TickCount, 1);
    tick(2500);
    EXPECT_EQ(monitor->TickLength, 2500);
    tick(1000);
    EXPECT_EQ(monitor->TickLength, 1000);
}

TEST_F(Tick, TickLengthIsRightAcrossTheWrapOfTheTickCount)
{
    clock.setTick(2147483000);
    tick();
    tick(1000);  // passes 2^31 - 1 and turns negative
    EXPECT_LT(monitor->TickStart, 0);
    EXPECT_EQ(monitor->TickLength, 1000);
}

TEST_F(Tick, GraphSamplesOnEveryNthTickBeginningWithTheFirst)
{
    monitor->Sensors[0].SampleEverySeconds = 5;
    for (int t = 1; t <= 11; ++t) {
        tick();
        if (t == 1) {
            EXPECT_EQ(monitor->Sensors[0].TicksToSample, 4);
        }
    }
    EXPECT_EQ(view(0).writes, 3);  // ticks 1, 6 and 11
}

TEST_F(Tick, ZeroSecondsStopsTheGraphForGood)
{
    monitor->Sensors[0].SampleEverySeconds = 0;
    for (int t = 0; t < 6; ++t)
        tick();
    EXPECT_EQ(view(0).writes, 1);
    EXPECT_EQ(monitor->Sensors[0].TicksToSample, -6);
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

    n.LogData = true;
    const int logged = cpu->collections;
    for (int t = 0; t < 3; ++t)
        tick();
    EXPECT_EQ(cpu->collections - logged, 3);
}

TEST_F(Tick, ManyCpuNodesStillReadTheSourceOnce)
{
    Graph& g = monitor->Sensors[0];
    for (int k = 1; k < 5; ++k)
        g.Nodes.push_back(newNode(k));
    const int before = cpu->collections;
    tick();
    EXPECT_EQ(cpu->collections - before, 1);
}

TEST_F(Tick, NothingDueAndNothingLoggedReadsNoSourceAndWritesTheBaseColumns)
{
    Graph& g = monitor->Sensors[0];
    g.SampleEverySeconds = 100;
    g.Nodes[0].LogData = false;
    tick();  // due: the first tick samples
    const int before = cpu->collections;
    tick();
    EXPECT_EQ(cpu->collections, before);
    EXPECT_TRUE(monitor->retrievalText.startsWith(QStringLiteral("Data Retrieval Rate = ")));
    const QStringList lines = logLines();
    ASSERT_FALSE(lines.isEmpty());
    EXPECT_EQ(lines.last().split(QLatin1Char(',')).size(), 4);
}

TEST_F(Tick, CpuValuesReachTheViewAndTheLog)
{
    cpu->percent = 49.5;  // ties go to the even number
    tick();
    tick();
    EXPECT_EQ(view(0).GetNodeValue(0, 0), 50);
    EXPECT_EQ(view(0).GetNodeValue(0, 1), 50);
    EXPECT_EQ(view(0).GetNodeValue(0, 2), 0);  // history too short
    const QStringList lines = logLines();
    ASSERT_GE(lines.size(), 5);
    EXPECT_EQ(lines[3], QStringLiteral("#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,CPU0,CPU1"));
    EXPECT_TRUE(lines.last().endsWith(QStringLiteral(",50,50")));
}

TEST_F(Tick, ACpuIndexBeyondTheTableReadsZero)
{
    monitor->Sensors[0].Nodes[0].CPUNumber = 7;
    tick();
    EXPECT_EQ(view(0).GetNodeValue(0, 0), 0);
}

TEST_F(Tick, SlowTickTurnsTheRateLabelRedAndItStaysRed)
{
    cpu->onCollect = [this] { clock.advance(1500); };
    tick();
    EXPECT_TRUE(monitor->retrievalRed);
    EXPECT_EQ(monitor->retrievalText, QStringLiteral("Data Retrieval Rate = 1500 mS"));
    EXPECT_EQ(monitor->DataTime, 1500);
    cpu->onCollect = nullptr;
    tick(1000);
    EXPECT_EQ(monitor->TickLength, 2500);  // the overrun shows in the next tick's length
    EXPECT_TRUE(monitor->retrievalRed);
    EXPECT_EQ(monitor->retrievalText, QStringLiteral("Data Retrieval Rate = 0 mS"));
    monitor->clearRetrievalRed();
    EXPECT_FALSE(monitor->retrievalRed);
    EXPECT_TRUE(monitor->retrievalToolTip().contains(QStringLiteral("Total: 0 mS")));
}

TEST_F(Tick, AFiringDuringATickIsLostNotQueued)
{
    cpu->onCollect = [this] { monitor->TimerData(); };
    tick();
    EXPECT_EQ(monitor->TickCount, 1);
    EXPECT_FALSE(monitor->TickBusy);
}

TEST_F(Tick, ClosingDuringATickEndsItBeforeTheLog)
{
    tick();
    const int lines = int(logLines().size());
    cpu->onCollect = [this] { monitor->Closing = true; };
    tick();
    EXPECT_EQ(int(logLines().size()), lines);
    EXPECT_EQ(view(0).writes, 1);
    EXPECT_FALSE(monitor->TickBusy);
}

TEST_F(Tick, UptimeNodeReadsTheUnsignedUptime)
{
    monitor->Sensors[0].Nodes[0].NodeType = SysUptimeType;
    clock.setTick(-5);
    monitor->TimerData();
    EXPECT_EQ(view(0).GetNodeValue(0, 0), 4294967291.0);
}

TEST_F(Tick, UnknownTypesAndLaterSourcesReadZeroThroughTheFrame)
{
    Graph& g = monitor->Sensors[0];
    g.Nodes[0].NodeType = 99;
    g.Nodes.push_back(newNode(1));
    g.Nodes[1].NodeType = UpErrType;
    tick();
    EXPECT_EQ(view(0).GetNodeValue(0, 0), 0);
    EXPECT_EQ(view(0).GetNodeValue(1, 0), 0);
    EXPECT_EQ(view(0).writes, 1);
}

TEST_F(Tick, LogGraphsAreNeverSampled)
{
    monitor->AddSensor(true);
    ASSERT_EQ(monitor->Sensors.size(), 2u);
    EXPECT_TRUE(monitor->Sensors[1].LogGraph);
    tick();
    EXPECT_EQ(view(1).writes, 0);
}

TEST_F(Tick, MidnightStartsANewFileWithItsHeader)
{
    clock.setNow(QDateTime(QDate(2026, 3, 5), QTime(23, 59, 59)));
    monitor->TimerData();
    tick();  // 00:00:00 of the next day
    const QStringList lines = logLines();
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(lines[0], QStringLiteral("#Software: Vendrake - Ormivane"));
    EXPECT_TRUE(lines[4].startsWith(QStringLiteral("2026-03-06,00:00:00,")));
}

TEST_F(Tick, DebugTraceWrapsTheTick)
{
    MonitorOptions options;
    options.dataDir = dir.filePath(QStringLiteral("debug"));
    options.commandLine = QStringLiteral("txtDebug");
    MemoryStore otherStore;
    Monitor debugged(options, clock, otherStore, sources(), views);
    ASSERT_TRUE(debugged.startUp());
    debugged.TimerData();
    QFile f(debugged.debugLogPath());
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromLocal8Bit(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_FALSE(lines.isEmpty());
    EXPECT_TRUE(lines[0].contains(QStringLiteral(" OS=8  ")));
    EXPECT_TRUE(lines.contains(QStringLiteral("0 - LoadMain 2.0")));
    EXPECT_TRUE(lines.contains(QStringLiteral("0 - TimerData 1.0")));
    EXPECT_TRUE(lines.contains(QStringLiteral("0 - TimerData 2.0 (0)")));
    EXPECT_TRUE(lines.contains(QStringLiteral(" 1 - DisplayData CPU")) ||
                lines.contains(QStringLiteral("  2 - DisplayData CPU")));
    debugLog() = DebugLog();  // the trace is process-wide: leave it off for the other tests
}

}  // namespace
