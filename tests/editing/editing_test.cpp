// Structural edits on a started Monitor with an in-memory store; the prompts
// are answered by the test.
#include "../monitor/monitor_fixture.h"
#include "../monitor/scripted_prompts.h"
#include "model/settings_store.h"
#include "monitor/editing.h"

namespace orm::test {
namespace {

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

TEST_F(EditingTest, DeletingMiddleNodeMovesLaterNodesDownWithTheirState)
{
    makeGraphs(1);
    AddNode(*monitor, 0);
    ASSERT_EQ(AddNode(*monitor, 0), 2);
    graph(0).Nodes[2].LastRawValue = 77;
    store.writeValue(nodeKey(0, 2), QStringLiteral("Name"), QStringLiteral("stale"));

    EXPECT_EQ(DeleteNode(*monitor, store, prompts, 0, 1), EditResult::Done);
    EXPECT_EQ(prompts.asked.back(), QStringLiteral("Ormivane - Delete New Node 2|Are you sure you want to delete this Node (New Node 2)?"));
    ASSERT_EQ(graph(0).Nodes.size(), 2u);
    EXPECT_EQ(graph(0).Nodes[1].LastRawValue, 77);
    EXPECT_FALSE(store.subKeys(sensorKey(0)).contains(QStringLiteral("Node3")));
    EXPECT_EQ(store.readValue(nodeKey(0, 1), QStringLiteral("Name"), {}), QStringLiteral("New Node 3"));
}

TEST_F(EditingTest, DeletingMiddleGraphKeepsLaterViewsAndDropsStaleKeys)
{
    makeGraphs(4);
    GraphView* third = monitor->GraphForms[2].get();
    GraphView* fourth = monitor->GraphForms[3].get();
    std::vector<std::pair<GraphView*, int>> rebound;
    auto rebind = [&](GraphView& v, int i) { rebound.emplace_back(&v, i); };

    EXPECT_EQ(DeleteGraph(*monitor, store, prompts, 1, rebind), EditResult::Done);
    ASSERT_EQ(monitor->GraphForms.size(), 3u);
    EXPECT_EQ(monitor->GraphForms[2].get(), fourth);
    EXPECT_EQ((std::vector<std::pair<GraphView*, int>>{{third, 1}, {fourth, 2}}), rebound);
    EXPECT_FALSE(store.subKeys(SettingsKey).contains(QStringLiteral("Sensor4")));
    EXPECT_EQ(store.readValue(sensorKey(1), QStringLiteral("Name"), {}), QStringLiteral("G3"));
    EXPECT_TRUE(monitor->tmrDataEnabled);
}

TEST_F(EditingTest, TheLastNodeAndTheLastGraphAreRefusedAndALastNodeTakesItsGraph)
{
    makeGraphs(1);
    EXPECT_EQ(DeleteNode(*monitor, store, prompts, 0, 0), EditResult::Refused);
    EXPECT_EQ(DeleteGraph(*monitor, store, prompts, 0), EditResult::Refused);
    EXPECT_EQ(prompts.stops.size(), 2);
    ASSERT_EQ(monitor->Sensors.size(), 1u);

    makeGraphs(2);
    EXPECT_EQ(DeleteNode(*monitor, store, prompts, 1, 0), EditResult::GraphDeleted);
    ASSERT_EQ(monitor->Sensors.size(), 1u);
    EXPECT_EQ(monitor->GraphForms.size(), 1u);
    EXPECT_EQ(graph(0).Name, QStringLiteral("G1"));
}

}  // namespace
}  // namespace orm::test
