#include "node_panel_fixture.h"

#include "model/catalogue.h"
#include "monitor/editing.h"
#include "shell/node_type_tiles.h"

#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QToolButton>

namespace orm::test {
namespace {

const QStringList AllFrames = {
    QStringLiteral("pctMeasureOptions"), QStringLiteral("pctNetCard"),       QStringLiteral("pctDriveList"),
    QStringLiteral("pctCPU"),            QStringLiteral("pctSSID"),          QStringLiteral("pctDownloadURL"),
    QStringLiteral("pctWebsite"),        QStringLiteral("framPingResponse"), QStringLiteral("pctProcesses"),
    QStringLiteral("pctSpeedTest"),
};

// MemTotal of the machine in whole MBytes, from its own /proc/meminfo.
qint64 machineMemoryMb()
{
    QFile f(QStringLiteral("/proc/meminfo"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const auto m = QRegularExpression(QStringLiteral("MemTotal:\\s+(\\d+) kB")).match(QString::fromLatin1(f.readAll()));
    return m.hasMatch() ? qRound64(m.captured(1).toDouble() / 1024.0) : -1;
}

TEST_F(NodePanelTest, LoadingAnyNodeWritesNothingAndShowsOnlyItsFrames)
{
    struct Case {
        int type;
        QStringList frames;
    };
    const std::vector<Case> cases = {
        {CpuType, {QStringLiteral("pctCPU")}},
        {RamType, {QStringLiteral("pctMeasureOptions")}},
        {WebsiteType, {QStringLiteral("pctDownloadURL"), QStringLiteral("pctWebsite")}},
        {LanType, {QStringLiteral("pctDownloadURL")}},
        {PingType, {QStringLiteral("framPingResponse")}},
        {DriveSpaceType, {QStringLiteral("pctMeasureOptions"), QStringLiteral("pctDriveList")}},
        {DiskReadType, {QStringLiteral("pctDriveList")}},
        {DownloadNodeType, {QStringLiteral("pctNetCard")}},
        {SpeedTestType, {QStringLiteral("pctSpeedTest")}},
        {ProcessType, {QStringLiteral("pctProcesses")}},
        {WifiType, {QStringLiteral("pctSSID")}},
        {SysUptimeType, {}},
    };
    node(0, 0).NodeType = cases[0].type;
    for (size_t k = 1; k < cases.size(); ++k)
        addNode(0, cases[k].type);
    // A Slave whose Master has gone, on a Bar Graph.
    const int slave = addNode(1, WebsiteType, QStringLiteral("Slave"));
    monitor->Sensors[1].GraphType = BarGraph;
    node(1, slave).WebsiteMaster = false;
    node(1, slave).WebsiteSlaveToSensor = 5;
    node(1, slave).WebsiteSlaveToNode = 9;
    node(1, slave).BarWidth = 4;
    node(1, slave).PenWidth = 1;
    monitor->AddSensor(true);  // a Log Graph
    monitor->SaveSettings();
    const QByteArray before = fileBytes();
    ASSERT_FALSE(before.isEmpty());
    const quint64 identity = fileIdentity();

    for (size_t k = 0; k < cases.size(); ++k) {
        SCOPED_TRACE(cases[k].type);
        panel->load(0, int(k));
        EXPECT_EQ(panel->graph(), 0);
        EXPECT_EQ(panel->node(), int(k));
        EXPECT_EQ(child<QLabel>(QStringLiteral("lblPanelTitle"))->text(), node(0, int(k)).Name);
        for (const QString& frame : AllFrames)
            EXPECT_EQ(shown(frame), cases[k].frames.contains(frame)) << frame.toStdString();
        EXPECT_TRUE(child<QToolButton>(QStringLiteral("imgGraphType(%1)").arg(cases[k].type - 1))->isChecked());
        EXPECT_EQ(fileBytes(), before);
    }

    panel->load(1, slave);
    EXPECT_TRUE(child<QAbstractButton>(QStringLiteral("optMasterSlave(1)"))->isChecked());
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbMasterSlave"))->currentText(), QStringLiteral("5: 9"));
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbLineWidth"))->currentText(), QStringLiteral("4"));
    EXPECT_EQ(node(1, slave).WebsiteSlaveToSensor, 5);
    EXPECT_EQ(node(1, slave).WebsiteSlaveToNode, 9);

    // A Log Graph's Node: the tiles and nothing else.
    panel->load(2, 0);
    EXPECT_TRUE(shown(QStringLiteral("imgCategory(0)")));
    EXPECT_FALSE(shown(QStringLiteral("pctNodeLook")));
    EXPECT_FALSE(shown(QStringLiteral("pctAveraging")));

    EXPECT_EQ(fileBytes(), before);
    EXPECT_EQ(fileIdentity(), identity);  // not even saved unchanged
    EXPECT_TRUE(host.calls.isEmpty());
    EXPECT_TRUE(host.messages.isEmpty());
    EXPECT_EQ(treeChanged->count(), 0);

    const QString physical = child<QLabel>(QStringLiteral("lblTotalPhysical"))->text();
    EXPECT_EQ(physical, QStringLiteral("Total Physical Memory:  %1 MBytes").arg(machineMemoryMb()));
    EXPECT_TRUE(child<QLabel>(QStringLiteral("lblTotalVirtual"))->text().startsWith(QStringLiteral("Total Virtual Memory:  ")));
    EXPECT_TRUE(child<QLabel>(QStringLiteral("lblTotalPagefile"))->text().endsWith(QStringLiteral(" MBytes")));
}

TEST_F(NodePanelTest, TypeTilesRefuseASecondLanAndRetypeTheGraphsUnit)
{
    const int lan = addNode(0, LanType);
    addNode(0, CpuType);
    panel->load(0, 0);
    const QByteArray before = fileBytes();
    {
        // A save replaces the file, so an unchanged identity means nothing was saved.
        const quint64 identity = fileIdentity();
        monitor->SaveSettings();
        ASSERT_NE(fileIdentity(), identity);
    }

    // Browsing a category changes nothing.
    click(QStringLiteral("imgCategory(0)"));
    EXPECT_TRUE(shown(QStringLiteral("imgGraphType(6)")));
    EXPECT_FALSE(shown(QStringLiteral("imgGraphType(4)")));
    EXPECT_EQ(fileBytes(), before);

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
    EXPECT_EQ(node(0, 0).NodeType, RamType);
    EXPECT_EQ(g.DataType, QStringLiteral("bytes"));
    EXPECT_EQ(g.LegendUnits, QStringLiteral("MBytes"));
    EXPECT_EQ(g.DataMagnitude, 20);
    EXPECT_EQ(stored(0, 0, "NodeType"), QStringLiteral("6"));
    EXPECT_TRUE(shown(QStringLiteral("pctMeasureOptions")));
    EXPECT_FALSE(shown(QStringLiteral("pctCPU")));
    EXPECT_TRUE(child<QToolButton>(QStringLiteral("imgGraphType(5)"))->isChecked());
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("nodes:0"), QStringLiteral("redraw:0")}));
    EXPECT_EQ(treeChanged->count(), 1);
    // The CPU Node behind it accepts bytes no more: the warning, word for word.
    EXPECT_EQ(host.messages, QStringList{QStringLiteral("Warning: ") + g.Name +
                                         QStringLiteral(" has Nodes that are not using the same data type. See "
                                                        "Help for more details.")});
}

TEST_F(NodePanelTest, PingTargetSizeAndKbpsAreStored)
{
    node(0, 0).NodeType = PingType;
    monitor->SaveSettings();
    panel->load(0, 0);

    auto* ip = child<QLineEdit>(QStringLiteral("txtPingIP"));
    ip->setText(QStringLiteral("127.0.0.1"));
    emit ip->editingFinished();
    EXPECT_EQ(node(0, 0).PingIP, QStringLiteral("127.0.0.1"));
    EXPECT_EQ(stored(0, 0, "PingIP"), QStringLiteral("127.0.0.1"));

    auto* size = child<QComboBox>(QStringLiteral("cmbPingPacketSize"));
    EXPECT_EQ(size->currentText(), QStringLiteral("Min"));
    choose(QStringLiteral("cmbPingPacketSize"), 3);
    EXPECT_EQ(size->currentText(), QStringLiteral("Lasge"));
    EXPECT_EQ(stored(0, 0, "PingPacketSize"), QStringLiteral("1000"));

    click(QStringLiteral("chkPingTranslate"));
    EXPECT_TRUE(node(0, 0).PingTranslate);
    EXPECT_EQ(monitor->Sensors[0].DataType, QStringLiteral("bps"));
    EXPECT_EQ(monitor->Sensors[0].LegendUnits, QStringLiteral("Kbps"));
    EXPECT_EQ(stored(0, 0, "PingTranslate"), QStringLiteral("True"));
    EXPECT_TRUE(host.calls.contains(QStringLiteral("redraw:0")));
    EXPECT_TRUE(host.messages.isEmpty());

    click(QStringLiteral("chkPingTranslate"));
    EXPECT_EQ(monitor->Sensors[0].LegendUnits, QStringLiteral("mSeconds"));
}

TEST_F(NodePanelTest, AveragingSamplesBelowOneAreOne)
{
    panel->load(0, 0);
    auto* text = child<QLineEdit>(QStringLiteral("txtAveragingSamples"));
    auto* bar = child<QScrollBar>(QStringLiteral("vscAveragingSample"));
    for (const QString& typed : {QStringLiteral("0"), QStringLiteral("-4"), QStringLiteral("abc")}) {
        node(0, 0).AveragingSamples = 10;
        text->setText(typed);
        emit text->editingFinished();
        EXPECT_EQ(text->text(), QStringLiteral("1")) << typed.toStdString();
        EXPECT_EQ(node(0, 0).AveragingSamples, 1);
        EXPECT_EQ(stored(0, 0, "AveragingSamples"), QStringLiteral("1"));
    }
    text->setText(QStringLiteral("25"));
    emit text->editingFinished();
    EXPECT_EQ(bar->value(), 25);
    bar->setValue(7);
    EXPECT_EQ(node(0, 0).AveragingSamples, 7);
    EXPECT_EQ(text->text(), QStringLiteral("7"));

    click(QStringLiteral("optAveraging(0)"));
    EXPECT_EQ(node(0, 0).Averaging, 0);
    EXPECT_EQ(stored(0, 0, "Averaging"), QStringLiteral("0"));
    EXPECT_EQ(child<QAbstractButton>(QStringLiteral("optAveraging(2)"))->text(), QStringLiteral("Lull Capture"));
}

TEST_F(NodePanelTest, PenVisibilityAndChoosersWriteTheirFields)
{
    panel->load(0, 0);
    panel->chooseColour = [](const QColor&) { return std::optional<QColor>(QColor(1, 2, 3)); };
    click(QStringLiteral("lblNodeColor"));
    EXPECT_EQ(node(0, 0).PenColor, 0x030201);
    panel->chooseColour = [](const QColor&) { return std::optional<QColor>(); };
    click(QStringLiteral("lblNodeColor"));
    EXPECT_EQ(node(0, 0).PenColor, 0x030201);

    choose(QStringLiteral("cmbLineWidth"), 2);
    EXPECT_EQ(node(0, 0).PenWidth, 3);
    choose(QStringLiteral("cmbLineDisplayType"), 2);
    EXPECT_EQ(node(0, 0).GraphLineType, 2);

    host.calls.clear();
    click(QStringLiteral("imgVisibleNode"));
    EXPECT_FALSE(node(0, 0).NodeVisible);
    EXPECT_EQ(stored(0, 0, "NodeVisible"), QStringLiteral("False"));
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("nodes:0"), QStringLiteral("redraw:0")}));
    click(QStringLiteral("imgLog"));
    EXPECT_FALSE(node(0, 0).LogData);

    monitor->lists.cmbCPU = {QStringLiteral("CPU 0"), QStringLiteral("CPU 1")};
    panel->load(0, 0);
    choose(QStringLiteral("cmbCPU"), 1);
    EXPECT_EQ(node(0, 0).CPUNumber, 1);
    EXPECT_EQ(stored(0, 0, "CPUNumber"), QStringLiteral("1"));
    EXPECT_EQ(treeChanged->count(), 1);

    node(0, 0).NodeType = DriveSpaceType;
    monitor->lists.cmbDriveList = {QStringLiteral("/ [10 GB] [root]"), QStringLiteral("/srv/data [20 GB] [x [y]")};
    panel->load(0, 0);
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbDriveList"))->currentIndex(), 0);
    monitor->PanelReady = false;
    choose(QStringLiteral("cmbDriveList"), 1);
    EXPECT_EQ(node(0, 0).DriveMonitoring, QStringLiteral("/"));
    monitor->PanelReady = true;
    choose(QStringLiteral("cmbDriveList"), 1);
    EXPECT_EQ(node(0, 0).DriveMonitoring, QStringLiteral("/srv/data"));
    EXPECT_EQ(treeChanged->count(), 2);
}

}  // namespace
}  // namespace orm::test
