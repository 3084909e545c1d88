// The Node panel's transfer controls, offscreen and by object name: the URL
// test's texts and colours, the option list from the endpoint, the forced test.
#include "../shell_node_panel/node_panel_fixture.h"
#include "../transfers/local_servers.h"
#include "display/colors.h"
#include "monitor/editing.h"
#include "monitor/transfers.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace orm::test {
namespace {

class TransferControls : public NodePanelTest {
protected:
    Transfers& transfers() { return monitor->transfers(); }
    QString urlLabel() { return child<QLabel>(QStringLiteral("lblGen(29)"))->text(); }
    QColor urlColour() { return child<QLineEdit>(QStringLiteral("txtDownloadURL"))->palette().color(QPalette::Text); }
    // Types an address as the user does; the label right after.
    QString typeUrl(const QString& text)
    {
        auto* url = child<QLineEdit>(QStringLiteral("txtDownloadURL"));
        url->setText(text);
        emit url->editingFinished();
        return urlLabel();
    }
    bool testsEnd()
    {
        return waitUntil([&] { return transfers().DownloaderTest.TransferNames.size() <= 1 && !transfers().AsyncCopy.running(); });
    }
};

TEST_F(TransferControls, TheUrlTestSaysWhatItFoundInTheWordsAndColoursOfThePanel)
{
    LocalEndpoint server;
    node(0, 0).NodeType = WebsiteType;
    panel->load(0, 0);
    EXPECT_EQ(urlLabel(), QStringLiteral("Download File URL:"));

    EXPECT_EQ(typeUrl(QStringLiteral("http://")), QStringLiteral("Download File URL:")) << "the address it had: no change, no test";
    EXPECT_EQ(typeUrl(QStringLiteral("www.example.com")), QStringLiteral("Download File URL:      Must begin with http://"));
    EXPECT_EQ(urlColour(), fromBgr(255));
    EXPECT_EQ(typeUrl(QStringLiteral("http://")), QStringLiteral("Download File URL:          Bad URL"));

    EXPECT_EQ(typeUrl(server.url(QStringLiteral("/serverdownload.asp?s=1"))),
              QStringLiteral("Download File URL:              Testing Link..."));
    EXPECT_EQ(stored(0, 0, "DownloadURL"), server.url(QStringLiteral("/serverdownload.asp?s=1")));
    ASSERT_TRUE(testsEnd());
    EXPECT_EQ(urlLabel(), QStringLiteral("Download File URL:           Link Test Passed"));
    EXPECT_EQ(urlColour(), fromBgr(65280));
    EXPECT_TRUE(node(0, 0).WebsiteReady);

    typeUrl(QStringLiteral("HTTPS://127.0.0.1:%1/file").arg(closedPort()));
    EXPECT_FALSE(node(0, 0).WebsiteReady) << "a new address is untested";
    ASSERT_TRUE(testsEnd());
    EXPECT_EQ(urlLabel(), QStringLiteral("Download File URL:              BAD URL"));
    EXPECT_EQ(urlColour(), fromBgr(255));

    // Shown again later, the Node keeps the colour of its last test.
    panel->load(0, 0);
    EXPECT_EQ(urlLabel(), QStringLiteral("Download File URL:"));
    EXPECT_EQ(urlColour(), fromBgr(255));

    // The test button tests again what is there.
    node(0, 0).DownloadURL = server.url(QStringLiteral("/"));
    click(QStringLiteral("imgTestDownload"));
    ASSERT_TRUE(testsEnd());
    EXPECT_EQ(urlLabel(), QStringLiteral("Download File URL:           Link Test Passed"));
}

TEST_F(TransferControls, ALanPathIsCheckedAsWritten)
{
    node(0, 0).NodeType = LanType;
    panel->load(0, 0);
    EXPECT_EQ(urlLabel(), QStringLiteral("Transfer LAN File:"));
    EXPECT_EQ(typeUrl(QStringLiteral("Z:\\share\\file.bin")), QStringLiteral("Transfer LAN File:      Must begin with \\\\"));
    EXPECT_EQ(typeUrl(QStringLiteral("\\\\")), QStringLiteral("Transfer LAN File:          Bad File"));
    typeUrl(QStringLiteral("\\\\nosuchhost\\share\\file.bin"));
    ASSERT_TRUE(testsEnd());
    EXPECT_EQ(urlLabel(), QStringLiteral("Transfer LAN File:              BAD FILE"));
    EXPECT_EQ(urlColour(), fromBgr(255));
}

TEST_F(TransferControls, AnUnreachableEndpointIsToldThenTheOptionsComeAndAChoiceKeepsTheMinimum)
{
    LocalEndpoint server;
    node(0, 0).NodeType = SpeedTestType;
    node(0, 0).VDDownloadSize = 1;
    panel->load(0, 0);
    auto* options = child<QComboBox>(QStringLiteral("cmbDownloadOptions"));
    EXPECT_EQ(options->count(), 0) << "no endpoint named yet";
    transfers().setSpeedTestServer(QStringLiteral("127.0.0.1:%1").arg(closedPort()));
    ASSERT_TRUE(testsEnd());
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblGen(32)"))->text(), QStringLiteral("Failed to get Download setup information."));
    EXPECT_EQ(options->count(), 0);

    auto* serverBox = child<QLineEdit>(QStringLiteral("txtSpeedTestServer"));
    serverBox->setText(QStringLiteral("127.0.0.1:%1").arg(server.port()));
    emit serverBox->editingFinished();
    EXPECT_EQ(storedValue(QStringLiteral("Settings"), QStringLiteral("SpeedTestServer")),
              QStringLiteral("127.0.0.1:%1").arg(server.port()));
    ASSERT_TRUE(testsEnd());
    QStringList texts;
    for (int k = 0; k < options->count(); ++k)
        texts << options->itemText(k);
    EXPECT_EQ(texts, QStringList({QStringLiteral("500K   every 30 seconds"), QStringLiteral("100M   every 10 minutes")}));
    EXPECT_EQ(options->currentIndex(), 1) << "the Node's choice stands";
    EXPECT_EQ(options->itemData(1).toInt(), 600);

    monitor->Sensors[0].SampleEverySeconds = 5;
    choose(QStringLiteral("cmbDownloadOptions"), 0);
    EXPECT_EQ(stored(0, 0, "VDDownloadSize"), QStringLiteral("0"));
    EXPECT_EQ(monitor->Sensors[0].SampleEverySeconds, 30);
    EXPECT_EQ(storedValue(QStringLiteral("Settings/Sensor1"), QStringLiteral("SampleEverySeconds")),
              QStringLiteral("30"));
}

TEST_F(TransferControls, ForcingATestRunsItOnTheNextTickAndTheButtonComesBack)
{
    LocalEndpoint server;
    node(0, 0).NodeType = SpeedTestType;
    monitor->Sensors[0].SampleEverySeconds = 600;
    transfers().setSpeedTestServer(QStringLiteral("127.0.0.1:%1").arg(server.port()));
    ASSERT_TRUE(testsEnd());
    ASSERT_TRUE(monitor->TestSetupLoaded);
    panel->load(0, 0);
    monitor->TimerData();  // the first sample
    ASSERT_TRUE(waitUntil([&] { return transfers().DownloaderFiles.TransferNames.size() <= 1; }));
    ASSERT_GT(monitor->Sensors[0].TicksToSample, 0);

    click(QStringLiteral("cmdForceTest"));
    auto* button = child<QPushButton>(QStringLiteral("cmdForceTest"));
    EXPECT_EQ(button->text(), QStringLiteral("Running..."));
    EXPECT_EQ(monitor->Sensors[0].TicksToSample, 0);
    monitor->TimerData();
    EXPECT_TRUE(node(0, 0).WebsiteBusy);
    ASSERT_TRUE(waitUntil([&] { return !node(0, 0).WebsiteBusy; }));
    EXPECT_EQ(button->text(), QStringLiteral("Force 1 Test Now"));
    EXPECT_GT(node(0, 0).Bandwidth, 0.0);
}

}  // namespace
}  // namespace orm::test
