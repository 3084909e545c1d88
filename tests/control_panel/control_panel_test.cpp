// The control panel on a started Monitor with real graph pictures and a real
// settings file: the tree, the structural edits and what they leave on disk.
#include "panel_fixture.h"
#include "shell/graph_panel.h"
#include "shell/node_panel.h"

#include <QLineEdit>
#include <QStackedWidget>
#include <QTest>

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
    QWidget* shownPanel() const { return panel->findChild<QStackedWidget*>()->currentWidget(); }

};

TEST_F(ControlPanelTest, AddButtonsGrowTheModelTheTreeAndTheWindows)
{
    ASSERT_EQ(sensors().size(), 1u);
    click("imgAddSensor");
    ASSERT_EQ(sensors().size(), 2u);
    EXPECT_EQ(windows->count(), 2);
    EXPECT_EQ(shownPanel(), panel->graphPanel());

    click("imgAddNode");
    ASSERT_EQ(sensors()[1].Nodes.size(), 2u);
    EXPECT_EQ(panel->tree()->selectedChild(), 1);
    EXPECT_EQ(shownPanel(), panel->nodePanel());
    EXPECT_EQ(panel->tree()->rows()[1].Children.size(), 2u);

    // All of it is on disk: a new start finds the same.
    startPanel();
    ASSERT_EQ(sensors().size(), 2u);
    EXPECT_EQ(sensors()[1].Nodes.size(), 2u);
}

TEST_F(ControlPanelTest, SelectingRowsLeavesTheSettingsFileUntouched)
{
    click("imgAddSensor");
    click("imgAddNode");
    monitor->SaveSettings();
    const QByteArray before = fileBytes();
    ASSERT_FALSE(before.isEmpty());
    for (int g = 0; g < 2; ++g) {
        panel->selectRow(g, -1);
        for (int n = 0; n < int(sensors()[size_t(g)].Nodes.size()); ++n)
            panel->selectRow(g, n);
    }
    tick();  // a tick saves nothing either
    EXPECT_EQ(fileBytes(), before);
}

TEST_F(ControlPanelTest, DeleteNodeInItsThreeCases)
{
    // The only Node of the only Graph: a stop box, nothing changes.
    panel->selectRow(0, 0);
    click("imgDeleteNode");
    EXPECT_EQ(prompts.stops.size(), 1);
    EXPECT_EQ(sensors().size(), 1u);
    EXPECT_EQ(sensors()[0].Nodes.size(), 1u);

    // A Node among others: one question, then it goes and the tree follows.
    click("imgAddNode");
    sensors()[0].Nodes[1].Name = QStringLiteral("second");
    panel->selectRow(0, 0);
    click("imgDeleteNode");
    ASSERT_EQ(prompts.asked.size(), 1);
    EXPECT_TRUE(prompts.asked[0].contains(QStringLiteral("(New Node 1)?")));
    ASSERT_EQ(sensors()[0].Nodes.size(), 1u);
    EXPECT_EQ(sensors()[0].Nodes[0].Name, QStringLiteral("second"));
    EXPECT_EQ(panel->tree()->rows()[0].Children.size(), 1u);

    // The last Node of a Graph among others takes the Graph with it.
    click("imgAddSensor");
    panel->selectRow(1, 0);
    click("imgDeleteNode");
    EXPECT_EQ(sensors().size(), 1u);
    EXPECT_EQ(windows->count(), 1);
    EXPECT_EQ(panel->tree()->rows().size(), 1u);

    // A No leaves everything.
    click("imgAddNode");
    prompts.answer = false;
    panel->selectRow(0, 1);
    click("imgDeleteNode");
    EXPECT_EQ(sensors()[0].Nodes.size(), 2u);
}

TEST_F(ControlPanelTest, DeletingAGraphKeepsTheOthersCurvesAndWindows)
{
    click("imgAddSensor");
    click("imgAddSensor");
    for (int i = 0; i < 3; ++i)
        sensors()[size_t(i)].Name = QStringLiteral("G%1").arg(i + 1);
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
    EXPECT_EQ(sensors()[1].Name, QStringLiteral("G3"));
    // The window and picture of G3 moved down with their samples.
    EXPECT_EQ(windows->window(1), third);
    EXPECT_EQ(third->graphIndex(), 1);
    EXPECT_EQ(windows->picture(1), thirdPicture);
    EXPECT_EQ(thirdPicture->index(), 1);
    EXPECT_EQ(newest(0), before);
    // The next tick goes on from there, into the same picture.
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

TEST_F(ControlPanelTest, RenameAndCollapseFromTheTreeAreSaved)
{
    panel->tree()->ForceTitleEdit(false, 0, 0);
    QLineEdit* box = panel->tree()->renameBox();
    ASSERT_TRUE(box->isVisible() || !box->isHidden());
    box->setText(QStringLiteral("Processor"));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(sensors()[0].Nodes[0].Name, QStringLiteral("Processor"));

    emit panel->tree()->collapseChanged(QStringLiteral("G0"), QStringLiteral("0"), true);
    startPanel();
    EXPECT_EQ(sensors()[0].Nodes[0].Name, QStringLiteral("Processor"));
    EXPECT_TRUE(sensors()[0].Collapsed);
    EXPECT_TRUE(panel->tree()->rows()[0].Collapsed);
}

}  // namespace
}  // namespace orm::test
