// Website Nodes: what a Master and its Slaves show, and when the next transfer
// is due.
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

TEST_F(WebsiteNodes, EachSlavePicksByItsOwnTypeAndABusyMasterShowsThePreviousResults)
{
    startWithSlaves(2);
    node(0, 0).WebsiteTested = true;  // tested but failed: nothing shows
    EXPECT_EQ(value(1), 0.0);
    EXPECT_FALSE(node(0, 0).WebsiteDue);
    // The Master shows its own type (Connection Time), each Slave its own (Bandwidth, Response and Connection Time,
    // Errors), a Slave whose Master is gone 0; while busy the previous results, but never a previous response time.
    const double idle[] = {7, 100, 20, 7, 3, 0}, busy[] = {90, 0, 6, 3, 0};
    setMaster(false);
    for (int n = 0; n < 6; ++n)
        EXPECT_EQ(value(n), idle[n]) << "Node " << n;
    setMaster(true);
    for (int n = 1; n < 6; ++n)
        EXPECT_EQ(value(n), busy[n - 1]) << "busy, Node " << n;
    EXPECT_FALSE(node(0, 1).WebsiteDue) << "Slaves never fetch";
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

}  // namespace
