// The setup test of Website and LAN Nodes: the checks on the text, the root
// address it fetches, and every text and colour it shows in the panel.
#include "transfer_fixture.h"

using namespace orm;
using namespace orm::test;

namespace {

TEST(UrlCheck, TheTextIsCheckedInLowerCaseAndOnlyTheRootIsFetched)
{
    EXPECT_EQ(checkWebsiteUrl(QStringLiteral("HTTP://HOST:8080/a/b")).root, QStringLiteral("HTTP://HOST:8080/"));
    EXPECT_EQ(checkWebsiteUrl(QStringLiteral("http://host")).root, QStringLiteral("http://host"))
        << "no / after the scheme: tested as it is";
    EXPECT_EQ(checkWebsiteUrl(QStringLiteral("https://host/file")).root, QStringLiteral("https://host/"));
    EXPECT_EQ(checkWebsiteUrl(QStringLiteral("HTTPS://")).failure, BadUrlText);
    for (const char* bad : {"ftp://host/file", "", "http:/host", "\\\\host\\share\\f"})
        EXPECT_EQ(checkWebsiteUrl(QString::fromLatin1(bad)).failure, MustBeginHttpText) << bad;

    EXPECT_EQ(speedTestAddress(QStringLiteral(" 127.0.0.1:8080 "), QStringLiteral("/downvariations.txt")),
              QStringLiteral("http://127.0.0.1:8080/downvariations.txt"));
    EXPECT_EQ(speedTestAddress(QStringLiteral("HTTPS://host/base/"), QStringLiteral("/x")), QStringLiteral("HTTPS://host/base/x"));
    EXPECT_EQ(speedTestAddress(QString(), QStringLiteral("/x")), QString());
}

class SetupTest : public TransferFixture {
protected:
    // One Website Node at (0, 0), one LAN Node at (0, 1); the panel shows `shownNode`.
    void startWith(const QString& url, const QString& lan, int shownNode = 0)
    {
        graph(0, 1, {website(url), {{QStringLiteral("NodeType"), QStringLiteral("7")}, {QStringLiteral("DownloadURL"), lan}}});
        onBeforeStart = [this, shownNode] { show(0, shownNode); };
        ASSERT_TRUE(start());
        ASSERT_TRUE(settle());
    }
};

TEST_F(SetupTest, AnAnsweringRootPassesAndItsTestFileGoes)
{
    LocalEndpoint server;
    startWith(server.url(QStringLiteral("/NoSuchFile.bin")).toUpper(), QStringLiteral("\\\\testhost\\share\\x"));
    EXPECT_EQ(urlTexts, QStringList({TestingLinkText, LinkTestPassedText}));
    EXPECT_EQ(urlColour, UrlGoodColour);
    EXPECT_TRUE(node(0, 0).WebsiteTested);
    EXPECT_TRUE(node(0, 0).WebsiteReady);
    EXPECT_FALSE(QFile::exists(transfers().testName(0, 0)));
    EXPECT_TRUE(QDir(transfers().tempFolder()).exists());
}

TEST_F(SetupTest, ACheckOnTheTextFailsAtOnceAndNoServerFailsLater)
{
    startWith(QStringLiteral("http://"), QStringLiteral("\\\\testhost\\share\\x"));
    EXPECT_EQ(urlTexts, QStringList({TestingLinkText, BadUrlText}));
    EXPECT_FALSE(node(0, 0).WebsiteTested) << "a text that fails its check is not tested at all";

    urlTexts.clear();
    node(0, 0).DownloadURL = QStringLiteral("http://127.0.0.1:%1/file").arg(closedPort());
    transfers().TestDownload(0, 0);
    ASSERT_TRUE(settle());
    EXPECT_EQ(urlTexts, QStringList({TestingLinkText, LinkTestFailedText}));
    EXPECT_EQ(urlColour, UrlBadColour);
    EXPECT_TRUE(node(0, 0).WebsiteTested);
    EXPECT_FALSE(node(0, 0).WebsiteReady);
    tick();
    EXPECT_EQ(views.made.at(0)->GetNodeValue(0, 0), 0.0) << "a Node that failed its test reads 0";
}

TEST_F(SetupTest, ALanFileIsTestedByCopyingIt)
{
    QFile f(shareDir() + QStringLiteral("/test.bin"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QByteArray(4096, 'a'));
    f.close();
    startWith(QStringLiteral("http://"), QStringLiteral("\\\\testhost\\share\\test.bin"), 1);
    EXPECT_EQ(urlTexts, QStringList({TestingFileText, FileTestPassedText}));
    EXPECT_EQ(urlColour, UrlGoodColour);
    EXPECT_TRUE(node(0, 1).WebsiteReady);
    EXPECT_FALSE(QFile::exists(transfers().testName(0, 1)));

    urlTexts.clear();
    node(0, 1).DownloadURL = QStringLiteral("\\\\testhost\\share\\missing.bin");
    transfers().TestDownload(0, 1);
    ASSERT_TRUE(settle());
    EXPECT_EQ(urlTexts, QStringList({TestingFileText, FileTestFailedText}));
    EXPECT_EQ(urlColour, UrlBadColour);
    EXPECT_FALSE(transfers().AsyncCopy.AsyncCopyIsTest);

    urlTexts.clear();
    node(0, 1).WebsiteBusy = true;
    transfers().TestDownload(0, 1);
    EXPECT_EQ(warnings, QStringList{LanBusyText});
    EXPECT_EQ(urlTexts, QStringList{TestingFileText});
}

TEST_F(SetupTest, OnlyTheNodeInThePanelIsToldAndOnlyFetchingNodesAreTestedAtStart)
{
    LocalEndpoint server;
    graph(0, 1, {website(server.url(QStringLiteral("/"))), slave(0, 0, 1),
                 website(QStringLiteral("http://127.0.0.1:%1/").arg(closedPort()))});
    onBeforeStart = [this] { show(0, 1); };
    ASSERT_TRUE(start());
    const std::vector<QString> tests(transfers().DownloaderTest.TransferNames.begin() + 1,
                                     transfers().DownloaderTest.TransferNames.end());
    EXPECT_EQ(tests, std::vector<QString>({transfers().testName(0, 0), transfers().testName(0, 2)}))
        << "the Slave fetches nothing, so it is not tested";
    ASSERT_TRUE(settle());
    EXPECT_TRUE(urlTexts.isEmpty());
    EXPECT_TRUE(node(0, 0).WebsiteReady);
    EXPECT_FALSE(node(0, 2).WebsiteReady);
}

}  // namespace
