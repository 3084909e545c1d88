// What the request and the three events of a measured transfer write into the
// Node, on a clock the test moves, and the names the handlers read indices from.
#include "transfer_fixture.h"

using namespace orm;
using namespace orm::test;

namespace {

class TransferResults : public TransferFixture {
protected:
    void SetUp() override
    {
        TransferFixture::SetUp();
        graph(0, 1, {website(QStringLiteral("http://127.0.0.1:1/a")), website(QStringLiteral("http://127.0.0.1:1/b"))});
        ASSERT_TRUE(start());
        transfers().DownloaderTest.CancelAllDownload();  // the start-up tests are not wanted here
        name = transfers().transferName(0, 1);
    }
    QString name;
};

TEST_F(TransferResults, TheRequestTheStartAndTheEndFollowTheTable)
{
    LocalEndpoint server;
    Node& n = node(0, 1);
    n.DownloadURL = server.url(QStringLiteral("/serverdownload.asp?s=0"));
    n.ConnectTime = 111;
    n.Bandwidth = 5;
    n.WebsiteDue = true;
    n.TransferConnected = true;
    const qint32 requested = clock.tickCount();
    transfers().startDueTransfers();
    EXPECT_EQ(n.PreviousConnectTime, 111);
    EXPECT_EQ(n.ConnectTime, requested);
    EXPECT_TRUE(transfers().DownloaderFiles.IsCurrentlyDownloading(n.DownloadURL, name));
    transfers().DownloaderFiles.CancelAllDownload();  // its events are played by hand below

    clock.advance(30);
    transfers().FileDownloadStart(name, 0);
    EXPECT_EQ(n.ConnectTime, 30) << "the ms from the request to the first byte";
    EXPECT_EQ(n.PreviousBandwidth, 5);
    EXPECT_EQ(n.Bandwidth, 0);
    EXPECT_EQ(n.TransferStart, requested + 30);

    clock.advance(3);
    transfers().FileDownloadComplete(1000, name);
    EXPECT_EQ(n.ResponseTime, 3);
    EXPECT_DOUBLE_EQ(n.Bandwidth, 333333.33) << "bytes a second, rounded to two decimals";
    EXPECT_FALSE(n.WebsiteBusy);
    EXPECT_EQ(node(0, 0).Bandwidth, 0) << "only the Node of the name";
}

TEST_F(TransferResults, AnEndWithoutAStartCountsFromTheRequestAndAZeroTimeUsesTenMs)
{
    Node& n = node(0, 1);
    n.PreviousConnectTime = 42;
    n.ConnectTime = clock.tickCount();
    n.TransferConnected = false;
    n.WebsiteBusy = true;
    clock.advance(200);
    transfers().FileDownloadComplete(2000, name);
    EXPECT_EQ(n.ResponseTime, 200);
    EXPECT_EQ(n.Bandwidth, 10000);
    EXPECT_EQ(n.ConnectTime, 42) << "the connect time goes back to the one before";

    transfers().FileDownloadStart(name, 0);
    transfers().FileDownloadComplete(123456, name);
    EXPECT_EQ(n.ResponseTime, 1) << "never 0";
    EXPECT_EQ(n.Bandwidth, 12345600) << "the calculation takes 10 ms";
}

TEST_F(TransferResults, AFailureCountsZeroesAndWritesTheErrorFile)
{
    Node& n = node(0, 1);
    n.ErrorCount = 2;
    n.Bandwidth = 900;
    n.WebsiteTested = n.WebsiteReady = true;
    n.ConnectTime = clock.tickCount();
    transfers().FileDownloadStart(name, 0);
    clock.advance(50);
    show(0, 1);
    const QString description = QStringLiteral("System Error &H80070006 (-2147024890).  HTTP 404 Not Found");
    transfers().FileDownloadError(name, QStringLiteral("http://127.0.0.1:1/b"), 6, description);
    EXPECT_EQ(n.ErrorCount, 3);
    EXPECT_EQ(n.Bandwidth, 0);
    EXPECT_EQ(n.ResponseTime, 50);
    EXPECT_FALSE(n.WebsiteBusy);
    EXPECT_TRUE(n.WebsiteReady) << "the next due sample tries again";
    EXPECT_EQ(urlTexts, QStringList{DownloadErrorText});
    EXPECT_EQ(urlColour, UrlBadColour);

    show(0, 0);  // another Node in the panel: nothing is shown
    transfers().FileDownloadError(name, QStringLiteral("http://127.0.0.1:1/b"), 8,
                                  QStringLiteral("System Error &H80070008 (-2147024888).  HTTP 500"));
    EXPECT_EQ(urlTexts.size(), 1);

    const QString when = clock.now().toString(QStringLiteral("MM-dd-yyyy HH:mm:ss"));
    EXPECT_EQ(errLines(),
              QStringList({when + QStringLiteral(" Graph0 Node1 URL=http://127.0.0.1:1/b Error - 6(404) - ") + description,
                           when + QStringLiteral(" Graph0 Node1 URL=http://127.0.0.1:1/b Error - 8(500) - System "
                                                 "Error &H80070008 (-2147024888).   Internal server error")}));
}

TEST_F(TransferResults, HandlersDoNothingWhileClosingOrForNamesWithoutANode)
{
    monitor->Closing = true;
    transfers().FileDownloadError(name, QString(), 6, QString());
    monitor->Closing = false;
    for (const QString& stray : {transfers().transferName(5, 0), transfers().transferName(0, 9)}) {
        transfers().FileDownloadStart(stray, 0);
        transfers().FileDownloadError(stray, QString(), 6, QString());
    }
    EXPECT_EQ(node(0, 1).ErrorCount, 0);
    EXPECT_TRUE(errLines().isEmpty());
}

TEST(TransferNames, IndicesComeFromTheNameAsSplitOnDashes)
{
    EXPECT_EQ(transferIndices(QStringLiteral("/home/u/.local/share/Ormivane/Temp/3-12")), std::make_pair(3, 12));
    EXPECT_EQ(transferIndices(QStringLiteral("/home/jean-luc/Ormivane/Temp/3-12")), std::make_pair(0, 0))
        << "a folder with a - misreads the indices";
    EXPECT_EQ(transferIndices(QStringLiteral("/data/Temp/7")), std::make_pair(-1, -1));
    EXPECT_EQ(testIndices(QStringLiteral("/srv/sensors/Temp/s2n15")), std::make_pair(2, 15));
    EXPECT_EQ(testIndices(QStringLiteral("/data/Temp/x")), std::make_pair(-1, -1));
}

}  // namespace
