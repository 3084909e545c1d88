// The Downloader against real servers on 127.0.0.1: the events of a good
// transfer, what is saved, each way a transfer can fail, and the numbers and
// texts a failure is written down with.
#include "endpoint/speed_test_endpoint.h"
#include "local_servers.h"
#include "logging/error_file.h"
#include "sources/downloader.h"
#include "sources/transfer_errors.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

// The events in the order they come, as "start 500000", "complete 500000",
// "error 6", "all <failed names>"; progress reports are only counted.
class Recorder {
public:
    explicit Recorder(Downloader& d)
    {
        QObject::connect(&d, &Downloader::DownloadStart, [this](const QString&, qint64 n) { events << QStringLiteral("start %1").arg(n); });
        QObject::connect(&d, &Downloader::DownloadProgress, [this](const QString&, qint64 total, qint64 read) {
            ++progress;
            EXPECT_LE(read, total);
        });
        QObject::connect(&d, &Downloader::DownloadComplete,
                         [this](double size, const QString&) { events << QStringLiteral("complete %1").arg(qint64(size)); });
        QObject::connect(&d, &Downloader::DownloadError, [this](const QString&, const QString&, qint16 n, const QString& text) {
            events << QStringLiteral("error %1").arg(n);
            number = n;
            description = text;
        });
        QObject::connect(&d, &Downloader::AllDownloadsComplete,
                         [this](const QStringList& failed) { events << QStringLiteral("all ") + failed.join(QLatin1Char(',')); });
    }
    bool ended() const { return !events.isEmpty() && events.last().startsWith(QStringLiteral("all")); }
    QString kinds() const { return events.join(QLatin1Char(',')).remove(QRegularExpression(QStringLiteral(" [^,]*"))); }
    QStringList events;
    int progress = 0;
    qint16 number = 0;
    QString description;
};

class DownloaderTest : public ::testing::Test {
protected:
    QString name(const QString& file) const { return temp.filePath(file); }
    bool run(const QString& url, const QString& file = QStringLiteral("0-0"))
    {
        rec.events.clear();
        return d.BeginDownload(url, name(file)) && waitUntil([&] { return rec.ended(); }, 20000);
    }

    QTemporaryDir temp;
    Downloader d;
    Recorder rec{d};
};

TEST_F(DownloaderTest, AGoodTransferLeavesNoFileWhenNotSavingAndASavedOneKeepsALongerOldTail)
{
    LocalEndpoint server;
    d.SaveFiles = false;
    const QString n = name(QStringLiteral("0-1"));
    ASSERT_TRUE(d.BeginDownload(server.url(QStringLiteral("/serverdownload.asp?s=0")), n));
    EXPECT_FALSE(d.BeginDownload(server.url(QStringLiteral("/")), n)) << "the name already runs";
    ASSERT_TRUE(waitUntil([&] { return rec.ended(); }));
    EXPECT_EQ(rec.events, QStringList({QStringLiteral("start 500000"), QStringLiteral("complete 500000"), QStringLiteral("all ")}));
    EXPECT_GT(rec.progress, 0);
    EXPECT_FALSE(QFile::exists(n));
    EXPECT_EQ(d.TransferNames.size(), 1u) << "the lists are emptied once all ended";

    // A cancelled transfer reports nothing.
    ScriptServer silent;
    ASSERT_TRUE(d.BeginDownload(silent.url(QStringLiteral("/hang")), n));
    d.CancelAllDownload();
    EXPECT_FALSE(d.IsCurrentlyDownloading(QString(), n));
    waitUntil([] { return false; }, 300);
    EXPECT_EQ(rec.events.size(), 3);

    // A saved transfer writes from the start and keeps a longer old tail.
    d.SaveFiles = true;
    const QString saved = name(QStringLiteral("downvariations.txt"));
    ASSERT_TRUE(writeFile(saved, QByteArray(300, 'z')));
    ASSERT_TRUE(run(server.url(QStringLiteral("/downvariations.txt")), QStringLiteral("downvariations.txt")));
    QFile f(saved);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray list = defaultSpeedTestLadder();
    EXPECT_EQ(f.readAll(), list + QByteArray(300 - list.size(), 'z'));

    // Into a folder that cannot be written it fails.
    ASSERT_TRUE(run(server.url(QStringLiteral("/")), QStringLiteral("missing/s0n0")));
    EXPECT_TRUE(rec.kinds().endsWith(QStringLiteral("error,all"))) << rec.events.join(QLatin1Char(' ')).toStdString();
}

TEST_F(DownloaderTest, EachWayATransferFailsEndsInOneErrorWithItsNumber)
{
    ScriptServer server;
    ASSERT_NE(server.port(), 0);
    d.SaveFiles = false;
    d.setStallTimeout(300);  // 30 s in the program
    d.setBodyLimits(1 << 20, 8 << 20);
    const auto low = [](qint32 code) { return qint16(code & 0xFFFF); };
    const struct {
        QString url;
        qint16 number;     // 0: any but 0
        int status;        // of the failure mapping; -1: not looked at
        const char* says;  // in the description
        const char* kinds;
    } cases[] = {
        {server.url(QStringLiteral("/404")), 6, 404, "", "start,error,all"},
        {server.url(QStringLiteral("/500")), 8, 500, "", "start,error,all"},
        {server.url(QStringLiteral("/503")), 12, 503, "", "start,error,all"},
        {QStringLiteral("http://127.0.0.1:%1/").arg(closedPort()), 0, 0, "-2147012867", "error,all"},
        {server.url(QStringLiteral("/hang")), 0, 0, "-2147012867", ""},  // a stall counts as cannot connect
        {server.url(QStringLiteral("/cut?n=2000000")), 0, -1, "", ""},
        {server.url(QStringLiteral("/garbage")), 0, -1, "", ""},
        {server.url(QStringLiteral("/endless")), low(TransferError::TooLarge), -1, "", ""},
        // Not resolved, or not reached where no name server answers.
        {QStringLiteral("http://nosuchhost.invalid/file"), 0, -1, "", "error,all"},
        {QStringLiteral("ftp://127.0.0.1/x"), low(TransferError::InvalidUrl), -1, "", ""},
        {QStringLiteral("http://"), low(TransferError::InvalidUrl), -1, "", ""},
        {QStringLiteral("not a url"), low(TransferError::InvalidUrl), -1, "", ""},
    };
    for (const auto& c : cases) {
        const std::string url = c.url.toStdString();
        ASSERT_TRUE(run(c.url)) << url;
        EXPECT_EQ(rec.events.last(), QStringLiteral("all ") + name(QStringLiteral("0-0"))) << url;
        if (c.number)
            EXPECT_EQ(rec.number, c.number) << url;
        else
            EXPECT_NE(rec.number, 0) << url;
        if (c.status >= 0)
            EXPECT_EQ(mapTransferFailure(rec.description).status, c.status) << rec.description.toStdString();
        EXPECT_TRUE(rec.description.contains(QLatin1String(c.says))) << rec.description.toStdString();
        if (*c.kinds)
            EXPECT_EQ(rec.kinds(), QLatin1String(c.kinds)) << url;
    }
}

TEST_F(DownloaderTest, HttpsWorksWithATrustedCertificateAndFailsWithoutOne)
{
    TestCertificate cert;
    ASSERT_TRUE(cert.ok());
    ScriptServer server(cert.certFile(), cert.keyFile());
    ASSERT_NE(server.port(), 0);
    ASSERT_TRUE(run(server.url(QStringLiteral("/file?n=5000"))));
    EXPECT_EQ(rec.number, qint16(TransferError::SecureChannelError & 0xFFFF));

    cert.trust();
    Downloader fresh;  // a new manager, without the refused connection
    Recorder rec2(fresh);
    ASSERT_TRUE(fresh.BeginDownload(server.url(QStringLiteral("/file?n=5000")), name(QStringLiteral("0-2"))));
    ASSERT_TRUE(waitUntil([&] { return rec2.ended(); }));
    EXPECT_TRUE(rec2.events.contains(QStringLiteral("complete 5000")));
}

TEST(FailureMapping, TheTablesOrderDecidesAndTheEventNumberIsTheLow16Bits)
{
    EXPECT_EQ(mapTransferFailure(QStringLiteral("-2147024888 then -2147024890")).status, 500)
        << "the order of the table decides, not the order in the text";
    EXPECT_EQ(mapTransferFailure(QStringLiteral("-2147024890 -2147012867")).status, 404);
    const MappedFailure other = mapTransferFailure(QStringLiteral("something else"));
    EXPECT_EQ(other.status, 0);
    EXPECT_EQ(other.description, QStringLiteral("something else"));

    const TransferFailure f = transferFailure(TransferError::CannotConnect, QStringLiteral("Cannot connect"));
    EXPECT_EQ(f.number, 12029);
    EXPECT_EQ(f.description, QStringLiteral("System Error &H80072EFD (-2147012867).  Cannot connect"));
    EXPECT_EQ(replyFailure(QNetworkReply::ContentAccessDenied, 403, QStringLiteral("Forbidden"), false).description,
              QStringLiteral("System Error &H80190193 (-2145844845).  HTTP 403 Forbidden"));

    // An error file that cannot be written is reported, not fatal.
    QTemporaryDir dir;
    QFile blocker(dir.filePath(QStringLiteral("Logs")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));  // a file where the folder should be
    blocker.close();
    QString error;
    EXPECT_FALSE(appendErrorFileLine(dir.path(), QDateTime::currentDateTime(), {}, &error));
    EXPECT_TRUE(error.contains(QStringLiteral(".err")));
}

}  // namespace
