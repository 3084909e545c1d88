// The Speed Test Node: the option list from the endpoint, the minimum rule,
// the rhythm of asking again, and its transfers.
#include "monitor/editing.h"
#include "transfer_fixture.h"

#include <QSignalSpy>

using namespace orm;
using namespace orm::test;

namespace {

class SpeedTestNode : public TransferFixture {
protected:
    void startOn(const QString& server, int seconds, int option = 0, const QString& words = QString())
    {
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("SpeedTestServer"), server);
        graph(0, seconds, {{{QStringLiteral("NodeType"), QStringLiteral("17")}, {QStringLiteral("VDDownloadSize"), QString::number(option)}}});
        ASSERT_TRUE(start(words));
    }
};

TEST_F(SpeedTestNode, TheListComesFromTheEndpointAndRaisesTheInterval)
{
    LocalEndpoint server;
    startOn(QStringLiteral("127.0.0.1:%1").arg(server.port()), 1, 1);
    EXPECT_TRUE(monitor->TestSetupBusy) << "asked for at start";
    ASSERT_TRUE(settle());
    EXPECT_FALSE(monitor->TestSetupBusy);
    EXPECT_EQ(transfers().DownloadOptions.size(), 2u);
    EXPECT_EQ(transfers().speedTestMinimum(5), 0) << "no such option";

    QSignalSpy raised(&transfers(), &Transfers::minimumRaised);
    tick();
    EXPECT_EQ(monitor->Sensors[0].SampleEverySeconds, 600);
    ASSERT_EQ(raised.size(), 1);
    EXPECT_EQ(raised[0][1].toInt(), 600);
    EXPECT_EQ(raised[0][2].toString(), SpeedTestMinimumText);
    EXPECT_EQ(store.readValue(QStringLiteral("Settings/Sensor1"), QStringLiteral("SampleEverySeconds"), QString()),
              QStringLiteral("600"))
        << "saved at once";
}

TEST_F(SpeedTestNode, VDDebugModeKeepsTheIntervalAndALostTransferStartsAgain)
{
    LocalEndpoint server;
    startOn(QStringLiteral("127.0.0.1:%1").arg(server.port()), 1, 1, QStringLiteral("VDDebugMode"));
    ASSERT_TRUE(settle());
    tick();
    EXPECT_EQ(monitor->Sensors[0].SampleEverySeconds, 1);
    EXPECT_TRUE(node(0, 0).WebsiteBusy);
    ASSERT_TRUE(settle());

    // A transfer whose end was lost shows the result before and starts again.
    node(0, 0).WebsiteBusy = true;
    node(0, 0).PreviousBandwidth = 77;
    tick();
    EXPECT_EQ(views.made.at(0)->GetNodeValue(0, 0), 77.0);
    EXPECT_TRUE(transfers().DownloaderFiles.IsCurrentlyDownloading(QString(), transfers().transferName(0, 0)));
    ASSERT_TRUE(settle());
}

TEST_F(SpeedTestNode, WithoutAnEndpointItReadsZeroAndAsksNothing)
{
    startOn(QString(), 1);
    EXPECT_FALSE(monitor->TestSetupBusy);
    for (int k = 0; k < 3; ++k)
        tick();
    EXPECT_EQ(transfers().DownloaderFiles.TransferNames.size(), 1u);
    EXPECT_EQ(transfers().DownloaderTest.TransferNames.size(), 1u);
    EXPECT_EQ(views.made.at(0)->GetNodeValue(0, 0), 0.0);
    EXPECT_FALSE(node(0, 0).WebsiteBusy);
}

TEST_F(SpeedTestNode, AFailedListIsToldAndAskedForAgainAtTheTicksRhythm)
{
    ScriptServer server;
    ASSERT_NE(server.port(), 0);
    // A Graph that is never due: only the Log flags' rhythm asks again.
    startOn(server.url(QStringLiteral("/empty")), 100000);
    ASSERT_TRUE(settle());
    EXPECT_FALSE(monitor->TestSetupLoaded);
    EXPECT_FALSE(monitor->TestSetupBusy);
    EXPECT_TRUE(warnings.isEmpty()) << "an empty list is not an error";
    tick();  // the first tick evaluates; from now on the Graph waits
    ASSERT_TRUE(settle());

    monitor->Settings.SpeedTestServer = server.url(QStringLiteral("/nolist"));  // answers 404
    int asked = 0;
    for (int k = 0; k < 22; ++k) {
        tick();
        if (monitor->TestSetupBusy)
            ++asked;
        ASSERT_TRUE(settle());
    }
    EXPECT_EQ(asked, 2) << "a missing list is asked for on every eleventh tick";
    EXPECT_EQ(warnings, QStringList({SetupFailedText, SetupFailedText}));
}

}  // namespace
