// The control panel on a started Monitor with real graph pictures and a real
// settings file: what the tree and the windows do when Nodes and Graphs go.
#include "panel_fixture.h"

namespace orm::test {
namespace {

class ControlPanelTest : public PanelFixture {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        startPanel();
    }
    std::vector<Graph>& sensors() { return monitor->Sensors; }
};

TEST_F(ControlPanelTest, DeletingTheOnlyNodeStopsAndTheLastNodeOfAGraphTakesItsWindow)
{
    panel->selectRow(0, 0);
    click("imgDeleteNode");
    EXPECT_EQ(prompts.stops.size(), 1);
    EXPECT_EQ(sensors()[0].Nodes.size(), 1u);

    click("imgAddSensor");
    ASSERT_EQ(windows->count(), 2);
    panel->selectRow(1, 0);
    click("imgDeleteNode");
    EXPECT_EQ(sensors().size(), 1u);
    EXPECT_EQ(windows->count(), 1);
    EXPECT_EQ(panel->tree()->rows().size(), 1u);

    // A collapsed Graph stays so after a new start.
    emit panel->tree()->collapseChanged(QStringLiteral("G0"), QStringLiteral("0"), true);
    startPanel();
    EXPECT_TRUE(panel->tree()->rows()[0].Collapsed);
}

TEST_F(ControlPanelTest, DeletingAGraphKeepsTheOthersCurvesAndWindows)
{
    click("imgAddSensor");
    click("imgAddSensor");
    auto* third = windows->window(2);
    auto* thirdPicture = windows->picture(2);
    for (int t = 1; t <= 5; ++t)
        thirdPicture->history().addSample(1, 10.0 + t, QStringLiteral("label"), 600);
    const auto newest = [&](int shift) {
        std::vector<double> v;
        for (int k = 0; k < 5; ++k)
            v.push_back(thirdPicture->GetNodeValue(0, k + shift));
        return v;
    };
    const std::vector<double> before = newest(0);
    ASSERT_EQ(before.front(), 15.0);

    panel->selectRow(1, -1);
    click("imgDeleteSensor");
    ASSERT_EQ(sensors().size(), 2u);
    // The window and picture of the third Graph moved down with their samples,
    // and the next tick goes on from there, into the same picture.
    EXPECT_EQ(windows->window(1), third);
    EXPECT_EQ(thirdPicture->index(), 1);
    tick();
    EXPECT_EQ(newest(1), before);

    // The last Graph cannot go.
    panel->selectRow(0, -1);
    click("imgDeleteSensor");
    panel->selectRow(0, -1);
    click("imgDeleteSensor");
    EXPECT_EQ(sensors().size(), 1u);
    EXPECT_EQ(prompts.stops.size(), 1);
}

}  // namespace
}  // namespace orm::test
