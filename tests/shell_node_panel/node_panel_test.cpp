#include "node_panel_fixture.h"

#include "model/catalogue.h"
#include "monitor/editing.h"
#include "shell/node_type_tiles.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>
#include <unistd.h>

namespace orm::test {
namespace {

TEST_F(NodePanelTest, LoadingAnyNodeWritesNothingAndShowsOnlyItsFrames)
{
    const QStringList frames = {QStringLiteral("pctMeasureOptions"), QStringLiteral("pctDriveList"),
                                QStringLiteral("pctCPU"), QStringLiteral("pctDownloadURL"), QStringLiteral("pctWebsite")};
    const std::vector<std::pair<int, QStringList>> cases = {
        {CpuType, {QStringLiteral("pctCPU")}},
        {WebsiteType, {QStringLiteral("pctDownloadURL"), QStringLiteral("pctWebsite")}},
        {DriveSpaceType, {QStringLiteral("pctMeasureOptions"), QStringLiteral("pctDriveList")}},
        {SysUptimeType, {}},
    };
    node(0, 0).NodeType = cases[0].first;
    for (size_t k = 1; k < cases.size(); ++k)
        addNode(0, cases[k].first);
    // A Slave whose Master has gone, on a Bar Graph.
    const int slave = addNode(1, WebsiteType, QStringLiteral("Slave"));
    monitor->Sensors[1].GraphType = BarGraph;
    node(1, slave).WebsiteMaster = false;
    node(1, slave).WebsiteSlaveToSensor = 5;
    node(1, slave).WebsiteSlaveToNode = 9;
    node(1, slave).BarWidth = 4;  // a Bar Graph's width, not the pen's
    node(1, slave).PenWidth = 1;
    monitor->AddSensor(true);  // a Log Graph
    monitor->SaveSettings();
    const QByteArray before = fileBytes();
    const quint64 identity = fileIdentity();

    for (size_t k = 0; k < cases.size(); ++k) {
        SCOPED_TRACE(cases[k].first);
        panel->load(0, int(k));
        for (const QString& frame : frames)
            EXPECT_EQ(shown(frame), cases[k].second.contains(frame)) << frame.toStdString();
        EXPECT_TRUE(child<QToolButton>(QStringLiteral("imgGraphType(%1)").arg(cases[k].first - 1))->isChecked());
    }
    panel->load(1, slave);
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbMasterSlave"))->currentText(), QStringLiteral("5: 9"));
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbLineWidth"))->currentText(), QStringLiteral("4"));
    panel->load(2, 0);  // a Log Graph's Node: the tiles and nothing else
    EXPECT_TRUE(shown(QStringLiteral("imgCategory(0)")));
    EXPECT_FALSE(shown(QStringLiteral("pctNodeLook")));

    EXPECT_EQ(fileBytes(), before);
    EXPECT_EQ(fileIdentity(), identity);  // not even saved unchanged
    EXPECT_TRUE(host.calls.isEmpty());
    EXPECT_TRUE(host.messages.isEmpty());
    EXPECT_EQ(treeChanged->count(), 0);
    const qint64 memory = qint64(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGE_SIZE);
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblTotalPhysical"))->text(),
              QStringLiteral("Total Physical Memory:  %1 MBytes").arg(qRound64(memory / 1048576.0)));
}

TEST_F(NodePanelTest, TypeTilesRefuseASecondLanAndRetypeTheGraphsUnit)
{
    const int lan = addNode(0, LanType);
    addNode(0, CpuType);
    panel->load(0, 0);
    const QByteArray before = fileBytes();
    click(QStringLiteral("imgCategory(0)"));  // browsing a category changes nothing
    click(QStringLiteral("imgGraphType(6)"));
    EXPECT_EQ(host.messages, QStringList{OnlyOneNodeOfTypeText});
    EXPECT_EQ(node(0, 0).NodeType, CpuType);
    EXPECT_EQ(node(0, lan).NodeType, LanType);
    EXPECT_FALSE(child<QToolButton>(QStringLiteral("imgGraphType(6)"))->isChecked());
    EXPECT_EQ(fileBytes(), before);

    // The first Node defines the Graph's unit.
    host.messages.clear();
    click(QStringLiteral("imgCategory(1)"));
    click(QStringLiteral("imgGraphType(5)"));
    const Graph& g = monitor->Sensors[0];
    EXPECT_EQ(g.LegendUnits, QStringLiteral("MBytes"));
    EXPECT_EQ(stored(0, 0, "NodeType"), QStringLiteral("6"));
    EXPECT_TRUE(shown(QStringLiteral("pctMeasureOptions")));
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("nodes:0"), QStringLiteral("redraw:0")}));
    EXPECT_EQ(treeChanged->count(), 1);
    // The CPU Node behind it accepts bytes no more: the warning, word for word.
    EXPECT_EQ(host.messages, QStringList{QStringLiteral("Warning: ") + g.Name +
                                         QStringLiteral(" has Nodes that are not using the same data type. See "
                                                        "Help for more details.")});

    // A ping in Kbps takes the Graph to a bandwidth.
    node(0, 0).NodeType = PingType;
    panel->load(0, 0);
    click(QStringLiteral("chkPingTranslate"));
    EXPECT_EQ(g.LegendUnits, QStringLiteral("Kbps"));
    EXPECT_EQ(stored(0, 0, "PingTranslate"), QStringLiteral("True"));
}

TEST_F(NodePanelTest, ChoosersWriteTheirFieldsAndBadOrCancelledChoicesNothingElse)
{
    panel->load(0, 0);
    auto* samples = child<QLineEdit>(QStringLiteral("txtAveragingSamples"));
    for (const QString& typed : {QStringLiteral("0"), QStringLiteral("-4"), QStringLiteral("abc")}) {
        node(0, 0).AveragingSamples = 10;
        samples->setText(typed);
        emit samples->editingFinished();
        EXPECT_EQ(samples->text(), QStringLiteral("1")) << typed.toStdString();
        EXPECT_EQ(stored(0, 0, "AveragingSamples"), QStringLiteral("1"));
    }
    child<QScrollBar>(QStringLiteral("vscAveragingSample"))->setValue(7);
    EXPECT_EQ(samples->text(), QStringLiteral("7"));
    EXPECT_EQ(stored(0, 0, "AveragingSamples"), QStringLiteral("7"));

    panel->chooseColour = [](const QColor&) { return std::optional<QColor>(QColor(1, 2, 3)); };
    click(QStringLiteral("lblNodeColor"));
    panel->chooseColour = [](const QColor&) { return std::optional<QColor>(); };
    click(QStringLiteral("lblNodeColor"));
    EXPECT_EQ(node(0, 0).PenColor, 0x030201);
    host.calls.clear();
    click(QStringLiteral("imgVisibleNode"));
    EXPECT_EQ(stored(0, 0, "NodeVisible"), QStringLiteral("False"));
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("nodes:0"), QStringLiteral("redraw:0")}));

    // A drive's name is what stands before its first " [".
    node(0, 0).NodeType = DriveSpaceType;
    monitor->lists.cmbDriveList = {QStringLiteral("/ [10 GB] [root]"), QStringLiteral("/srv/data [20 GB] [x [y]")};
    panel->load(0, 0);
    monitor->PanelReady = false;  // still filling: a pick is not the user's
    choose(QStringLiteral("cmbDriveList"), 1);
    EXPECT_EQ(node(0, 0).DriveMonitoring, QStringLiteral("/"));
    monitor->PanelReady = true;
    choose(QStringLiteral("cmbDriveList"), 1);
    EXPECT_EQ(stored(0, 0, "DriveMonitoring"), QStringLiteral("/srv/data"));
    EXPECT_EQ(treeChanged->count(), 1);
}

}  // namespace
}  // namespace orm::test
