// The Downloader against real servers on 127.0.0.1: the events of a good
// transfer, what is saved, and each way a transfer can fail.
#include "endpoint/speed_test_endpoint.h"
#include "local_servers.h"
#include "sources/downloader.h"
#include "sources/transfer_errors.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

struct Event {
    QString kind;  // start, complete, error, all
    QString name;
    double size = 0;
    qint16 number = 0;
    QString description;
};

// Records the events in the order they come; progress reports are only counted.
class Recorder {
public:
    explicit Recorder(Downloader& d)
    {
        QObject::connect(&d, &Downloader::DownloadStart, [this](const QString& n, qint64 total) {
            events.push_back({QStringLiteral("start"), n, double(total), 0, QString()});
        });
        QObject::connect(&d, &Downloader::DownloadProgress, [this](const QString&, qint64 total, qint64 read) {
            ++progress;
            EXPECT_GT(total, 0);
            EXPECT_LE(read, total);
        });
        QObject::connect(&d, &Downloader::DownloadComplete, [this](double size, const QString& n) {
            events.push_back({QStringLiteral("complete"), n, size, 0, QString()});
        });
        QObject::connect(&d, &Downloader::DownloadError,
                         [this](const QString& n, const QString&, qint16 number, const QString& description) {
                             events.push_back({QStringLiteral("error"), n, 0, number, description});
                         });
        QObject::connect(&d, &Downloader::AllDownloadsComplete, [this](const QStringList& failed) {
            events.push_back({QStringLiteral("all"), failed.join(QLatin1Char(',')), 0, 0, QString()});
        });
    }
    bool ended() const { return !events.empty() && events.back().kind == QLatin1String("all"); }
    const Event* find(const QString& kind) const
    {
        for (const Event& e : events)
            if (e.kind == kind)
                return &e;
        return nullptr;
    }
    std::vector<Event> events;
    int progress = 0;
};

class DownloaderTest : public ::testing::Test {
protected:
    QString name(const QString& file) const { return temp.filePath(file); }

    // One transfer to its end; the error event, or null when it completed.
    const Event* failureOf(const QString& url, const QString& file = QStringLiteral("0-0"))
    {
        EXPECT_TRUE(d.BeginDownload(url, name(file)));
        EXPECT_TRUE(waitUntil([&] { return rec.ended(); }, 20000)) << url.toStdString();
        return rec.find(QStringLiteral("error"));
    }

    QTemporaryDir temp;
    Downloader d;
    Recorder rec{d};
};

TEST_F(DownloaderTest, AGoodTransferStartsCompletesAndLeavesNoFileWhenNotSaving)
{
    LocalEndpoint server;
    d.SaveFiles = false;
    const QString n = name(QStringLiteral("0-1"));
    ASSERT_TRUE(d.BeginDownload(server.url(QStringLiteral("/serverdownload.asp?s=0")), n));
    EXPECT_TRUE(d.IsCurrentlyDownloading(QString(), n));
    EXPECT_FALSE(d.BeginDownload(server.url(QStringLiteral("/")), n)) << "the name already runs";

    ASSERT_TRUE(waitUntil([&] { return rec.ended(); }));
    ASSERT_EQ(rec.events.size(), 3u);
    EXPECT_EQ(rec.events[0].kind, QStringLiteral("start"));
    EXPECT_EQ(rec.events[0].size, 500000.0) << "the total comes from the length the server gave";
    EXPECT_EQ(rec.events[1].kind, QStringLiteral("complete"));
    EXPECT_EQ(rec.events[1].size, 500000.0);
    EXPECT_EQ(rec.events[2].name, QString()) << "nothing failed";
    EXPECT_GT(rec.progress, 0);
    EXPECT_FALSE(QFile::exists(n));
    EXPECT_EQ(d.TransferNames.size(), 1u) << "the lists are emptied once all ended";

    // A cancelled transfer reports nothing.
    ScriptServer silent;
    ASSERT_TRUE(d.BeginDownload(silent.url(QStringLiteral("/hang")), n));
    d.CancelAllDownload();
    EXPECT_FALSE(d.IsCurrentlyDownloading(QString(), n));
    waitUntil([] { return false; }, 300);
    EXPECT_EQ(rec.events.size(), 3u);
}

TEST_F(DownloaderTest, ASavedTransferWritesFromTheStartAndKeepsALongerOldTail)
{
    LocalEndpoint server;
    const QString n = name(QStringLiteral("downvariations.txt"));
    {
        QFile old(n);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(300, 'z'));
    }
    ASSERT_TRUE(d.BeginDownload(server.url(QStringLiteral("/downvariations.txt")), n));
    ASSERT_TRUE(waitUntil([&] { return rec.ended(); }));
    ASSERT_TRUE(rec.find(QStringLiteral("complete")));
    QFile f(n);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray saved = f.readAll();
    const QByteArray list = defaultSpeedTestLadder();
    EXPECT_EQ(saved.size(), 300);
    EXPECT_TRUE(saved.startsWith(list));
    EXPECT_EQ(saved.mid(list.size()), QByteArray(300 - list.size(), 'z'));

    // Into a folder that cannot be written it fails.
    rec.events.clear();
    EXPECT_TRUE(failureOf(server.url(QStringLiteral("/")), QStringLiteral("missing/s0n0")));
    EXPECT_FALSE(rec.find(QStringLiteral("complete")));
}

TEST_F(DownloaderTest, ServerStatusesCarryTheNumbersTheMappingLooksFor)
{
    ScriptServer server;
    ASSERT_NE(server.port(), 0);
    const struct {
        const char* path;
        qint16 number;
        int status;
    } cases[] = {{"/404", 6, 404}, {"/500", 8, 500}, {"/503", 12, 503}};
    for (const auto& c : cases) {
        rec.events.clear();
        const Event* e = failureOf(server.url(QString::fromLatin1(c.path)));
        ASSERT_TRUE(e) << c.path;
        EXPECT_EQ(e->number, c.number) << c.path;
        EXPECT_EQ(mapTransferFailure(e->description).status, c.status) << e->description.toStdString();
        EXPECT_TRUE(rec.find(QStringLiteral("start"))) << "the server answered, so the transfer had begun";
        EXPECT_EQ(rec.events.back().name, name(QStringLiteral("0-0"))) << "the failed names come with the end";
    }
}

TEST_F(DownloaderTest, NoServerASilentOneAndACutBodyEachFail)
{
    ScriptServer server;
    ASSERT_NE(server.port(), 0);
    d.setStallTimeout(300);

    const Event* refused = failureOf(QStringLiteral("http://127.0.0.1:%1/").arg(closedPort()));
    ASSERT_TRUE(refused);
    EXPECT_TRUE(refused->description.contains(QStringLiteral("-2147012867")));
    EXPECT_FALSE(rec.find(QStringLiteral("start")));

    rec.events.clear();
    const Event* silent = failureOf(server.url(QStringLiteral("/hang")));
    ASSERT_TRUE(silent);
    EXPECT_EQ(mapTransferFailure(silent->description).status, 0);
    EXPECT_TRUE(silent->description.contains(QStringLiteral("-2147012867"))) << "a stall counts as cannot connect";

    for (const char* path : {"/cut?n=2000000", "/garbage"}) {
        rec.events.clear();
        const Event* e = failureOf(server.url(QString::fromLatin1(path)));
        ASSERT_TRUE(e) << path;
        EXPECT_NE(e->number, 0) << path;
    }
}

TEST_F(DownloaderTest, AnEndlessBodyEndsAtTheLimitAndBadAddressesFailAsTransfersDo)
{
    ScriptServer server;
    ASSERT_NE(server.port(), 0);
    d.SaveFiles = false;
    d.setBodyLimits(1 << 20, 8 << 20);
    const Event* endless = failureOf(server.url(QStringLiteral("/endless")));
    ASSERT_TRUE(endless);
    EXPECT_EQ(endless->number, qint16(TransferError::TooLarge & 0xFFFF));

    for (const char* bad : {"ftp://127.0.0.1/x", "http://", "not a url"}) {
        rec.events.clear();
        const Event* e = failureOf(QString::fromLatin1(bad));
        ASSERT_TRUE(e) << bad;
        EXPECT_EQ(e->number, qint16(TransferError::InvalidUrl & 0xFFFF)) << bad;
    }
}

TEST_F(DownloaderTest, HttpsWorksWithATrustedCertificateAndFailsWithoutOne)
{
    TestCertificate cert;
    ASSERT_TRUE(cert.ok());
    ScriptServer server(cert.certFile(), cert.keyFile());
    ASSERT_NE(server.port(), 0);

    const Event* untrusted = failureOf(server.url(QStringLiteral("/file?n=5000")));
    ASSERT_TRUE(untrusted);
    EXPECT_EQ(untrusted->number, qint16(TransferError::SecureChannelError & 0xFFFF));

    cert.trust();
    Downloader fresh;  // a new manager, without the refused connection
    Recorder rec2(fresh);
    ASSERT_TRUE(fresh.BeginDownload(server.url(QStringLiteral("/file?n=5000")), name(QStringLiteral("0-2"))));
    ASSERT_TRUE(waitUntil([&] { return rec2.ended(); }));
    ASSERT_TRUE(rec2.find(QStringLiteral("complete")));
    EXPECT_EQ(rec2.find(QStringLiteral("complete"))->size, 5000.0);
}

}  // namespace
