// Website Nodes: what a Master and its Slaves show, when the next transfer is
// due, and whole runs of ticks against the endpoint and a missing file.
#include "model/number_text.h"
#include "transfer_fixture.h"

using namespace orm;
using namespace orm::test;

namespace {

class WebsiteNodes : public TransferFixture {
protected:
    // The Master (0, 0) with four Slaves: one of each DownloadType, and one
    // whose Master's place is empty.
    void startWithSlaves(int masterType)
    {
        graph(0, 1,
              {website(QStringLiteral("http://127.0.0.1:1/"), masterType), slave(0, 0, 0), slave(0, 0, 1),
               slave(0, 0, 2), slave(0, 0, 3), slave(4, 2, 0)});
        ASSERT_TRUE(start());
        transfers().DownloaderTest.CancelAllDownload();
    }
    double value(int n) { return monitor->evaluateNode(monitor->Sensors[0], node(0, n), 0, n, 1.0); }
    void setMaster(bool busy)
    {
        Node& m = node(0, 0);
        m.WebsiteTested = m.WebsiteReady = true;
        m.WebsiteBusy = busy;
        m.Bandwidth = 100;
        m.PreviousBandwidth = 90;
        m.ResponseTime = 20;
        m.ConnectTime = 7;
        m.PreviousConnectTime = 6;
        m.ErrorCount = 3;
    }
};

TEST_F(WebsiteNodes, NothingShowsUntilTheMasterPassedItsTest)
{
    startWithSlaves(0);
    for (int n = 0; n < 6; ++n)
        EXPECT_EQ(value(n), 0.0) << n;
    EXPECT_FALSE(node(0, 0).WebsiteDue);
    node(0, 0).WebsiteTested = true;  // tested but failed
    EXPECT_EQ(value(1), 0.0);
}

TEST_F(WebsiteNodes, EachSlavePicksByItsOwnTypeAndABusyMasterShowsThePreviousResults)
{
    startWithSlaves(2);
    setMaster(false);
    EXPECT_EQ(value(0), 7.0) << "the Master shows its own type";
    EXPECT_EQ(value(1), 100.0) << "a Bandwidth Slave of a Connection Time Master shows the Bandwidth";
    EXPECT_EQ(value(2), 20.0);
    EXPECT_EQ(value(3), 7.0);
    EXPECT_EQ(value(4), 3.0);
    EXPECT_EQ(value(5), 0.0) << "a Slave whose Master is gone";
    EXPECT_FALSE(node(0, 1).WebsiteDue) << "Slaves never fetch";

    setMaster(true);
    EXPECT_EQ(value(1), 90.0);
    EXPECT_EQ(value(2), 0.0) << "the previous response time is never kept: 0 while busy";
    EXPECT_EQ(value(3), 6.0);
    EXPECT_EQ(value(4), 3.0);
}

TEST_F(WebsiteNodes, AnIdleMasterIsDueABusyOneWaitsAndALostOneStartsAgain)
{
    ScriptServer server;
    ASSERT_NE(server.port(), 0);
    startWithSlaves(0);
    Node& m = node(0, 0);
    m.DownloadURL = server.url(QStringLiteral("/hang"));
    setMaster(false);
    value(0);
    EXPECT_TRUE(m.WebsiteDue);
    transfers().startDueTransfers();
    ASSERT_TRUE(m.WebsiteBusy);

    value(0);
    EXPECT_FALSE(m.WebsiteDue) << "its transfer still runs: no second one";
    transfers().startDueTransfers();
    EXPECT_EQ(transfers().DownloaderFiles.TransferNames.size(), 2u);

    transfers().DownloaderFiles.CancelAllDownload();  // the end is lost
    EXPECT_EQ(value(0), 90.0);
    EXPECT_TRUE(m.WebsiteDue);
    transfers().startDueTransfers();
    EXPECT_TRUE(transfers().DownloaderFiles.IsCurrentlyDownloading(m.DownloadURL, transfers().transferName(0, 0)));
    transfers().DownloaderFiles.CancelAllDownload();
}

TEST_F(WebsiteNodes, TicksMeasureTheEndpointAndCountEveryFailedSampleOfAMissingFile)
{
    LocalEndpoint server;
    const QString good = server.url(QStringLiteral("/serverdownload.asp?s=0"));
    const QString missing = server.url(QStringLiteral("/nosuchfile"));
    graph(0, 1, {website(good), slave(0, 0, 1), website(missing), slave(0, 2, 3)});
    ASSERT_TRUE(start());
    ASSERT_TRUE(settle()) << "the start-up tests end";
    EXPECT_TRUE(node(0, 0).WebsiteReady);
    EXPECT_TRUE(node(0, 2).WebsiteReady) << "the root of the missing file answers";

    for (int k = 1; k <= 3; ++k) {
        tick();  // due: shows the last result, starts the next transfer
        ASSERT_TRUE(settle());
        EXPECT_EQ(node(0, 2).ErrorCount, k);
    }
    EXPECT_GT(node(0, 0).Bandwidth, 0.0);
    EXPECT_GE(node(0, 0).ResponseTime, 1.0);
    EXPECT_EQ(node(0, 0).ErrorCount, 0);
    EXPECT_EQ(node(0, 2).Bandwidth, 0.0);

    const QStringList err = errLines();
    ASSERT_EQ(err.size(), 3);
    for (const QString& line : err) {
        EXPECT_TRUE(line.contains(QStringLiteral(" Graph0 Node2 URL=") + missing + QStringLiteral(" Error - 6(404) - ")))
            << line.toStdString();
    }

    // The log shows the Masters' results, and a Slave has no columns.
    tick();
    const QString u = logUrlName(good);
    QStringList fields, values;
    for (const QString& line : logLines()) {
        if (line.startsWith(QStringLiteral("#Fields: ")))
            fields = line.mid(9).split(QLatin1Char(','));
        else if (!line.isEmpty() && !line.startsWith(QLatin1Char('#')))
            values = line.split(QLatin1Char(','));
    }
    ASSERT_EQ(fields.size(), values.size());
    EXPECT_EQ(fields.mid(4), QStringList({QStringLiteral("RESULT_") + u, QStringLiteral("RTIME_") + u,
                                          QStringLiteral("RCONNECTTIME_") + u, QStringLiteral("RERROR_") + u,
                                          QStringLiteral("RESULT_") + logUrlName(missing),
                                          QStringLiteral("RTIME_") + logUrlName(missing),
                                          QStringLiteral("RCONNECTTIME_") + logUrlName(missing),
                                          QStringLiteral("RERROR_") + logUrlName(missing)}));
    EXPECT_EQ(values[4], numberText(node(0, 0).Bandwidth));
    EXPECT_EQ(values[11], QStringLiteral("3")) << "the error count of the missing file";
}

}  // namespace
