// The setup test of Website and LAN Nodes: the root address it fetches, which
// Nodes are tested at start, and what the panel is told.
#include "transfer_fixture.h"

using namespace orm;
using namespace orm::test;

namespace {

TEST(UrlCheck, TheTextIsCheckedInLowerCaseAndOnlyTheRootIsFetched)
{
    EXPECT_EQ(checkWebsiteUrl(QStringLiteral("HTTP://HOST:8080/a/b")).root, QStringLiteral("HTTP://HOST:8080/"));
    EXPECT_EQ(checkWebsiteUrl(QStringLiteral("http://host")).root, QStringLiteral("http://host"))
        << "no / after the scheme: tested as it is";
    EXPECT_EQ(checkWebsiteUrl(QStringLiteral("HTTPS://")).failure, BadUrlText);
    for (const char* bad : {"", "http:/host", "\\\\host\\share\\f"})
        EXPECT_EQ(checkWebsiteUrl(QString::fromLatin1(bad)).failure, MustBeginHttpText) << bad;

    EXPECT_EQ(speedTestAddress(QStringLiteral(" 127.0.0.1:8080 "), QStringLiteral("/downvariations.txt")),
              QStringLiteral("http://127.0.0.1:8080/downvariations.txt"));
    EXPECT_EQ(speedTestAddress(QStringLiteral("HTTPS://host/base/"), QStringLiteral("/x")), QStringLiteral("HTTPS://host/base/x"));
    EXPECT_EQ(speedTestAddress(QString(), QStringLiteral("/x")), QString());
}

TEST_F(TransferFixture, AtStartOnlyFetchingNodesAreTestedAndOnlyTheShownOneIsTold)
{
    LocalEndpoint server;
    graph(0, 1, {website(server.url(QStringLiteral("/NoSuchFile.bin")).toUpper()), slave(0, 0, 1),
                 website(QStringLiteral("http://127.0.0.1:%1/").arg(closedPort()))});
    onBeforeStart = [this] { show(0, 0); };
    ASSERT_TRUE(start());
    const std::vector<QString> tests(transfers().DownloaderTest.TransferNames.begin() + 1,
                                     transfers().DownloaderTest.TransferNames.end());
    EXPECT_EQ(tests, std::vector<QString>({transfers().testName(0, 0), transfers().testName(0, 2)}))
        << "the Slave fetches nothing, so it is not tested";
    ASSERT_TRUE(settle());
    EXPECT_EQ(urlTexts, QStringList({TestingLinkText, LinkTestPassedText})) << "the root answers; the closed port is not shown";
    EXPECT_EQ(urlColour, UrlGoodColour);
    EXPECT_TRUE(node(0, 0).WebsiteReady);
    EXPECT_FALSE(QFile::exists(transfers().testName(0, 0)));
    EXPECT_TRUE(node(0, 2).WebsiteTested);
    EXPECT_FALSE(node(0, 2).WebsiteReady);
    tick();
    EXPECT_EQ(views.made.at(0)->GetNodeValue(2, 0), 0.0) << "a Node that failed its test reads 0";
}

TEST_F(TransferFixture, ALanFileIsTestedByCopyingIt)
{
    ASSERT_TRUE(writeFile(shareDir() + QStringLiteral("/test.bin"), QByteArray(4096, 'a')));
    graph(0, 1, {lanFile(QStringLiteral("\\\\testhost\\share\\test.bin"))});
    onBeforeStart = [this] { show(0, 0); };
    ASSERT_TRUE(start());
    ASSERT_TRUE(settle());
    EXPECT_EQ(urlTexts, QStringList({TestingFileText, FileTestPassedText}));
    EXPECT_TRUE(node(0, 0).WebsiteReady);
    EXPECT_FALSE(QFile::exists(transfers().testName(0, 0)));

    urlTexts.clear();
    node(0, 0).DownloadURL = QStringLiteral("\\\\testhost\\share\\missing.bin");
    transfers().TestDownload(0, 0);
    ASSERT_TRUE(settle());
    EXPECT_EQ(urlTexts, QStringList({TestingFileText, FileTestFailedText}));
    EXPECT_EQ(urlColour, UrlBadColour);
    EXPECT_FALSE(transfers().AsyncCopy.AsyncCopyIsTest);

    urlTexts.clear();
    node(0, 0).WebsiteBusy = true;
    transfers().TestDownload(0, 0);
    EXPECT_EQ(warnings, QStringList{LanBusyText});
    EXPECT_EQ(urlTexts, QStringList{TestingFileText});
}

}  // namespace
