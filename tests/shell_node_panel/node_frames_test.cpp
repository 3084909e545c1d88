#include "node_panel_fixture.h"

#include "shell/node_panel_rules.h"
#include "shell/ping_frame.h"
#include "sources/host_test.h"
#include "sources/processes.h"

#include <QLabel>
#include <QLineEdit>
#include <QTcpServer>
#include <QTreeWidget>

namespace orm::test {
namespace {

TEST_F(NodePanelTest, SlaveNeedsAMasterAndFollowsTheChosenOne)
{
    node(0, 0).NodeType = WebsiteType;
    monitor->SaveSettings();
    panel->load(0, 0);
    const QByteArray before = fileBytes();

    // The Node itself is the only Master: it cannot follow itself.
    click(QStringLiteral("optMasterSlave(1)"));
    EXPECT_EQ(host.messages, QStringList{NoWebsiteMasterText});
    EXPECT_TRUE(node(0, 0).WebsiteMaster);
    EXPECT_TRUE(child<QAbstractButton>(QStringLiteral("optMasterSlave(0)"))->isChecked());
    EXPECT_EQ(fileBytes(), before);

    const int master = addNode(1, WebsiteType, QStringLiteral("Home"));
    panel->load(0, 0);
    auto* masters = child<QComboBox>(QStringLiteral("cmbMasterSlave"));
    ASSERT_EQ(masters->count(), 1);
    EXPECT_EQ(masters->itemText(0), monitor->Sensors[1].Name + QStringLiteral(": Home"));
    click(QStringLiteral("optMasterSlave(1)"));
    EXPECT_EQ(node(0, 0).WebsiteSlaveToSensor, 1);
    EXPECT_EQ(stored(0, 0, "WebsiteMaster"), QStringLiteral("False"));
    EXPECT_EQ(stored(0, 0, "WebsiteSlaveToNode"), QString::number(master));

    choose(QStringLiteral("cmbWebsiteType"), 1);  // the time to load it
    EXPECT_EQ(monitor->Sensors[0].LegendUnits, QStringLiteral("mSeconds"));
}

TEST_F(NodePanelTest, ProcessListChecksOneProcess)
{
    node(0, 0).NodeType = ProcessType;
    monitor->SaveSettings();
    const ProcessTable& table = *monitor->sources().processes;
    ASSERT_GE(table.rows().size(), 3u);
    panel->load(0, 0);
    auto* list = child<QTreeWidget>(QStringLiteral("LstVwProcesses"));
    ASSERT_EQ(list->topLevelItemCount(), int(table.rows().size()));
    list->topLevelItem(1)->setCheckState(0, Qt::Checked);
    list->topLevelItem(2)->setCheckState(0, Qt::Checked);
    EXPECT_EQ(list->topLevelItem(1)->checkState(0), Qt::Unchecked);
    EXPECT_EQ(node(0, 0).ProcessIndex, 2);
    list->topLevelItem(2)->setCheckState(0, Qt::Unchecked);  // the name stays, the link goes
    EXPECT_EQ(node(0, 0).ProcessIndex, 0);
    EXPECT_EQ(stored(0, 0, "ProcessMonitoring"), table.rows()[2].szExeFile);

    // A refresh lists the new snapshot and links the Node to the last row of its name.
    click(QStringLiteral("imgRefreshProcesses"));
    int last = -1;
    for (size_t r = 0; r < table.rows().size(); ++r)
        if (table.rows()[r].szExeFile == node(0, 0).ProcessMonitoring)
            last = int(r);
    ASSERT_GE(last, 0);
    EXPECT_EQ(node(0, 0).ProcessIndex, last);
    EXPECT_EQ(list->topLevelItem(last)->checkState(0), Qt::Checked);
}

TEST_F(NodePanelTest, HostTestPutsTheAddressInTheNode)
{
    QTcpServer web;
    ASSERT_TRUE(web.listen(QHostAddress::LocalHost));
    node(0, 0).NodeType = PingType;
    monitor->SaveSettings();
    panel->load(0, 0);
    auto* frame = child<PingFrame>(QStringLiteral("framPingResponse"));
    frame->setHostTestPort(web.serverPort());
    auto* ip = child<QLineEdit>(QStringLiteral("txtPingIP"));
    ip->setText(QStringLiteral("localhost"));

    click(QStringLiteral("imgResolve"));
    ASSERT_NE(frame->hostTest(), nullptr);
    QSignalSpy address(frame->hostTest(), &HostTest::hostTextChanged);
    ASSERT_TRUE(address.wait(30000));

    EXPECT_EQ(child<QLabel>(QStringLiteral("lblGen(22)"))->text(), HostResolvedText);
    EXPECT_EQ(ip->text(), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(ip->palette().color(QPalette::Base), QColor(0, 255, 0));
    EXPECT_EQ(stored(0, 0, "PingIP"), QStringLiteral("127.0.0.1"));
}

}  // namespace
}  // namespace orm::test
