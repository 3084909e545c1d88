// The speed test endpoint: what each path answers, in this process and as
// `ormivane --speedtest-server` in a process of its own.
#include "endpoint/speed_test_endpoint.h"
#include "local_servers.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

struct Answer {
    int status = 0;
    QByteArray body;
    qint64 length = -1;  // Content-Length, -1 when absent
};

Answer fetch(QNetworkAccessManager& nam, const QString& url, const QByteArray& verb = "GET")
{
    const QNetworkRequest request{QUrl(url)};
    QNetworkReply* reply = verb == "HEAD" ? nam.head(request) : nam.sendCustomRequest(request, verb);
    Answer a;
    EXPECT_TRUE(waitUntil([&] { return reply->isFinished(); }, 20000)) << url.toStdString();
    a.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    a.body = reply->readAll();
    const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
    a.length = length.isValid() ? length.toLongLong() : -1;
    reply->deleteLater();
    return a;
}

TEST(SpeedTestEndpoint, ServesTheListTheFilesAndAPageAtItsRoot)
{
    LocalEndpoint server;
    ASSERT_NE(server.port(), 0);
    QNetworkAccessManager nam;

    const Answer root = fetch(nam, server.url(QStringLiteral("/")));
    EXPECT_EQ(root.status, 200);
    EXPECT_TRUE(root.body.contains("speed test"));

    const Answer list = fetch(nam, server.url(QStringLiteral("/downvariations.txt")));
    EXPECT_EQ(list.status, 200);
    EXPECT_EQ(list.body, defaultSpeedTestLadder());
    const auto options = parseDownloadOptions(list.body);
    ASSERT_TRUE(options);
    ASSERT_EQ(options->size(), 2u);
    EXPECT_EQ(options->front().text, QStringLiteral("500K   every 30 seconds"));
    EXPECT_EQ(options->back().size, 100000000);

    // Twice over the same kept-alive connection, the big one between.
    for (int s : {0, 1, 0}) {
        const Answer file = fetch(nam, server.url(QStringLiteral("/serverdownload.asp?s=%1").arg(s)));
        EXPECT_EQ(file.status, 200);
        EXPECT_EQ(file.body.size(), (*options)[size_t(s)].size);
        EXPECT_EQ(file.length, (*options)[size_t(s)].size);
    }
    const Answer head = fetch(nam, server.url(QStringLiteral("/serverdownload.asp?s=1")), "HEAD");
    EXPECT_EQ(head.status, 200);
    EXPECT_EQ(head.length, 100000000);
    EXPECT_TRUE(head.body.isEmpty());
}

TEST(SpeedTestEndpoint, AnythingElseIsNotFoundAndTheAddressDefaultsToLoopback)
{
    LocalEndpoint server("1000|1\r\n2000|2\r\n");
    QNetworkAccessManager nam;
    for (const char* path : {"/serverdownload.asp?s=2", "/serverdownload.asp?s=-1", "/serverdownload.asp?s=abc",
                             "/serverdownload.asp", "/downvariations.txt/x"})
        EXPECT_EQ(fetch(nam, server.url(QString::fromLatin1(path))).status, 404) << path;
    EXPECT_EQ(fetch(nam, server.url(QStringLiteral("/")), "DELETE").status, 405);

    SpeedTestEndpoint endpoint(defaultSpeedTestLadder());
    ASSERT_NE(endpoint.listenAt(parseListenAddress(QStringLiteral("0"))), 0);
    ASSERT_EQ(endpoint.servers().size(), 1);
    EXPECT_EQ(endpoint.servers().front()->serverAddress(), QHostAddress(QHostAddress::LocalHost));
    const ListenAddress v6 = parseListenAddress(QStringLiteral("[::1]:81"));
    EXPECT_EQ(v6.address, QHostAddress(QHostAddress::LocalHostIPv6));
    EXPECT_EQ(v6.port, 81);
    for (const char* bad : {"host:", "65536", "myhost:80"})
        EXPECT_FALSE(parseListenAddress(QString::fromLatin1(bad)).error.isEmpty()) << bad;
}

// The program as a server: the line it prints tells where it listens.
class ServerProcess {
public:
    explicit ServerProcess(const QStringList& args)
    {
        process.start(QStringLiteral(ORM_BINARY), QStringList{QStringLiteral("--speedtest-server")} + args);
        process.waitForStarted(5000);
    }
    ~ServerProcess()
    {
        process.terminate();
        if (!process.waitForFinished(5000))
            process.kill();
        process.waitForFinished(5000);
    }
    QProcess process;
};

TEST(SpeedTestEndpoint, TheProgramServesItsListOrRefusesABadOneWithAClearMessage)
{
    QTemporaryDir dir;
    const QString good = dir.filePath(QStringLiteral("good.txt")), bad = dir.filePath(QStringLiteral("bad.txt"));
    for (const auto& [file, text] : {std::pair(good, "1000|5\r\n3000|10\r\n"), std::pair(bad, "1000|5\r\nten|10\r\n")}) {
        QFile list(file);
        ASSERT_TRUE(list.open(QIODevice::WriteOnly));
        list.write(text);
    }
    {
        ServerProcess server({QStringLiteral("0"), QStringLiteral("--variations"), good});
        waitUntil([&] { return server.process.canReadLine() || server.process.state() == QProcess::NotRunning; });
        const QString line = QString::fromLocal8Bit(server.process.readLine()).trimmed();
        ASSERT_TRUE(line.startsWith(QStringLiteral("Speed test endpoint on http://127.0.0.1:"))) << line.toStdString();
        const QString base = line.section(QLatin1Char(' '), 4, 4);  // http://127.0.0.1:P/
        QNetworkAccessManager nam;
        EXPECT_EQ(fetch(nam, base + QStringLiteral("downvariations.txt")).body, QByteArray("1000|5\r\n3000|10\r\n"));
        EXPECT_EQ(fetch(nam, base + QStringLiteral("serverdownload.asp?s=1")).body.size(), 3000);
    }
    const std::pair<QStringList, const char*> cases[] = {
        {{QStringLiteral("0"), QStringLiteral("--variations"), bad}, "line 2"},
        {{QStringLiteral("0"), QStringLiteral("--variations"), dir.filePath(QStringLiteral("none.txt"))}, "cannot read"},
        {{QStringLiteral("localhost:99999")}, "not [ADDR:]PORT"},
    };
    for (const auto& [args, says] : cases) {
        ServerProcess server(args);
        ASSERT_TRUE(server.process.waitForFinished(10000));
        EXPECT_EQ(server.process.exitCode(), 2);
        EXPECT_TRUE(server.process.readAllStandardError().contains(says)) << says;
    }
}

}  // namespace
