// Structural edits on a started Monitor with an in-memory store; the prompts
// are answered by the test.
#include "../monitor/monitor_fixture.h"
#include "monitor/editing.h"
#include "model/settings_store.h"

namespace orm::test {
namespace {

struct ScriptedPrompts final : EditPrompts {
    bool askYesNo(const QString& title, const QString& text) override
    {
        asked << title + QLatin1Char('|') + text;
        return answer;
    }
    void stop(const QString& title, const QString& text) override { stops << title + QLatin1Char('|') + text; }
    bool answer = true;
    QStringList asked, stops;
};

class EditingTest : public MonitorFixture {
protected:
    Graph& graph(int g) { return monitor->Sensors.at(size_t(g)); }
    // Graphs 0..count-1, named G1.., the timer on as after start-up.
    void makeGraphs(int count)
    {
        while (int(monitor->Sensors.size()) < count)
            monitor->AddSensor(false);
        for (int i = 0; i < count; ++i)
            graph(i).Name = QStringLiteral("G%1").arg(i + 1);
        monitor->tmrDataEnabled = true;
    }
    ScriptedPrompts prompts;
};

TEST_F(EditingTest, LastNodeOfOnlyGraphIsRefusedAndChangesNothing)
{
    makeGraphs(1);
    EXPECT_EQ(DeleteNode(*monitor, store, prompts, 0, 0), EditResult::Refused);
    ASSERT_EQ(prompts.stops.size(), 1);
    EXPECT_TRUE(prompts.stops[0].startsWith(QStringLiteral("Ormivane - Cannot Delete New Node 1|You cannot delete the last Node")));
    EXPECT_TRUE(prompts.stops[0].contains(QStringLiteral("at least 1 Graph.\nTo change this Node")));
    EXPECT_EQ(graph(0).Nodes.size(), 1u);  // nothing changed
    EXPECT_EQ(DeleteGraph(*monitor, store, prompts, 0), EditResult::Refused);
    EXPECT_TRUE(prompts.stops[1].contains(QStringLiteral("|You cannot delete the last Graph. You only have 1 Graph")));
    EXPECT_EQ(monitor->GraphForms.size(), 1u);
}

TEST_F(EditingTest, LastNodeAmongGraphsDeletesGraphAfterOneQuestion)
{
    makeGraphs(2);
    prompts.answer = false;
    EXPECT_EQ(DeleteNode(*monitor, store, prompts, 0, 0), EditResult::Declined);
    EXPECT_EQ(monitor->Sensors.size(), 2u);
    prompts.answer = true;
    EXPECT_EQ(DeleteNode(*monitor, store, prompts, 0, 0), EditResult::GraphDeleted);
    EXPECT_EQ(prompts.asked.size(), 2);
    EXPECT_EQ(prompts.asked[1], QStringLiteral("Ormivane - Delete New Node 1|You cannot delete the last Node without "
                                               "deleting the entire Graph. Would you like to delete the entire Graph (G1)?"));
    ASSERT_EQ(monitor->Sensors.size(), 1u);
    EXPECT_EQ(graph(0).Name, QStringLiteral("G2"));
    EXPECT_TRUE(monitor->tmrDataEnabled);
}

TEST_F(EditingTest, DeletingMiddleNodeMovesLaterNodesDownWithTheirState)
{
    makeGraphs(1);
    ASSERT_EQ(AddNode(*monitor, 0), 1);
    ASSERT_EQ(AddNode(*monitor, 0), 2);
    EXPECT_EQ(graph(0).Nodes[2].Name, QStringLiteral("New Node 3"));
    graph(0).Nodes[2].LastRawValue = 77;
    store.writeValue(nodeKey(0, 2), QStringLiteral("Name"), QStringLiteral("stale"));

    EXPECT_EQ(DeleteNode(*monitor, store, prompts, 0, 1), EditResult::Done);
    EXPECT_EQ(prompts.asked.back(), QStringLiteral("Ormivane - Delete New Node 2|Are you sure you want to delete this Node (New Node 2)?"));
    ASSERT_EQ(graph(0).Nodes.size(), 2u);
    EXPECT_EQ(graph(0).Nodes[1].Name, QStringLiteral("New Node 3"));
    EXPECT_EQ(graph(0).Nodes[1].LastRawValue, 77);
    EXPECT_FALSE(store.subKeys(sensorKey(0)).contains(QStringLiteral("Node3")));
    EXPECT_EQ(store.readValue(nodeKey(0, 1), QStringLiteral("Name"), {}), QStringLiteral("New Node 3"));
}

TEST_F(EditingTest, DeletingMiddleGraphKeepsLaterViewsAndDropsStaleKeys)
{
    makeGraphs(4);
    GraphView* third = monitor->GraphForms[2].get();
    GraphView* fourth = monitor->GraphForms[3].get();
    graph(2).Nodes[0].WebsiteSlaveToSensor = 3;  // a Slave of a Master in Graph 4
    std::vector<std::pair<GraphView*, int>> rebound;
    auto rebind = [&](GraphView& v, int i) { rebound.emplace_back(&v, i); };

    EXPECT_EQ(DeleteGraph(*monitor, store, prompts, 1, rebind), EditResult::Done);
    EXPECT_EQ(prompts.asked.back(), QStringLiteral("Ormivane - Delete G2|Are you sure you want to delete this graph (G2)?"));
    ASSERT_EQ(monitor->Sensors.size(), 3u);
    ASSERT_EQ(monitor->GraphForms.size(), 3u);
    EXPECT_EQ(monitor->GraphForms[1].get(), third);
    EXPECT_EQ(monitor->GraphForms[2].get(), fourth);
    EXPECT_EQ((std::vector<std::pair<GraphView*, int>>{{third, 1}, {fourth, 2}}), rebound);
    EXPECT_EQ(graph(1).Name, QStringLiteral("G3"));
    EXPECT_EQ(graph(1).Nodes[0].WebsiteSlaveToSensor, 3);  // stale on purpose: the user sets it again
    EXPECT_FALSE(store.subKeys(SettingsKey).contains(QStringLiteral("Sensor4")));
    EXPECT_EQ(store.readValue(sensorKey(1), QStringLiteral("Name"), {}), QStringLiteral("G3"));
    EXPECT_TRUE(monitor->tmrDataEnabled);

    prompts.answer = false;
    EXPECT_EQ(DeleteGraph(*monitor, store, prompts, 0), EditResult::Declined);
    EXPECT_EQ(monitor->Sensors.size(), 3u);
}

TEST_F(EditingTest, ChangeTypeRewritesUnitsAndWarns)
{
    makeGraphs(1);
    AddNode(*monitor, 0);  // two CPU Nodes, percent
    TypeChange c = ChangeType(*monitor, 0, 0, RamType);
    EXPECT_EQ(c.result, EditResult::Done);
    graph(0).Nodes[0].WebsiteTested = true;
    c = ChangeType(*monitor, 0, 0, PingType);
    EXPECT_FALSE(graph(0).Nodes[0].WebsiteTested);
    EXPECT_EQ(graph(0).DataType, QStringLiteral("seconds"));  // first Node sets the Graph's unit
    EXPECT_FALSE(c.warning.isEmpty());                         // the CPU Node no longer agrees
    monitor->Settings.ShowDataTypeErrors = false;
    EXPECT_TRUE(ChangeType(*monitor, 0, 1, UpDownType).warning.isEmpty());
    EXPECT_EQ(graph(0).DataType, QStringLiteral("seconds"));  // a second Node does not

    c = ChangeType(*monitor, 0, 0, BarGraph);
    EXPECT_TRUE(c.graphTypeChanged);
    EXPECT_EQ(graph(0).GraphType, BarGraph);
    EXPECT_EQ(graph(0).Nodes[0].NodeType, PingType);
}

TEST_F(EditingTest, OnlyOneLanAndOneSpeedTestInTheProgram)
{
    makeGraphs(2);
    EXPECT_EQ(ChangeType(*monitor, 0, 0, LanType).result, EditResult::Done);
    TypeChange c = ChangeType(*monitor, 1, 0, LanType);
    EXPECT_EQ(c.result, EditResult::Refused);
    EXPECT_EQ(c.message, OnlyOneNodeOfTypeText);
    EXPECT_EQ(graph(1).Nodes[0].NodeType, CpuType);
    EXPECT_EQ(ChangeType(*monitor, 1, 0, SpeedTestType).result, EditResult::Done);
    EXPECT_EQ(ChangeType(*monitor, 0, 0, SpeedTestType).result, EditResult::Refused);
}

TEST_F(EditingTest, SampleSecondsTextAndSpeedTestMinimum)
{
    makeGraphs(1);
    EXPECT_EQ(setSampleSeconds(*monitor, 0, QStringLiteral("0")).seconds, 1);
    EXPECT_EQ(graph(0).SampleEverySeconds, 1);
    EXPECT_EQ(sampleSecondsOf(QStringLiteral("abc")), 1);
    EXPECT_EQ(sampleSecondsOf(QStringLiteral("7.9s")), 7);

    ChangeType(*monitor, 0, 0, SpeedTestType);
    graph(0).Nodes[0].VDDownloadSize = 2;
    auto minimum = [](qint32 option) { return option == 2 ? 30 : 0; };
    EXPECT_TRUE(setSampleSeconds(*monitor, 0, QStringLiteral("5"), minimum).sensorError.isEmpty());  // no setup yet
    monitor->TestSetupLoaded = true;
    IntervalChange r = setSampleSeconds(*monitor, 0, QStringLiteral("5"), minimum);
    EXPECT_EQ(r.seconds, 30);
    EXPECT_EQ(r.sensorError, SpeedTestMinimumText);
    EXPECT_EQ(store.readValue(sensorKey(0), QStringLiteral("SampleEverySeconds"), {}), QStringLiteral("30"));
}

}  // namespace
}  // namespace orm::test
