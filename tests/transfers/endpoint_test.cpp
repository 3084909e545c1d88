// The speed test endpoint as `ormivane --speedtest-server`: what each path
// answers, and the clear refusal of a bad list or address.
#include "local_servers.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
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
    EXPECT_TRUE(waitUntil([&] { return reply->isFinished(); }, 20000)) << url.toStdString();
    const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
    const Answer a{reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll(),
                   length.isValid() ? length.toLongLong() : -1};
    reply->deleteLater();
    return a;
}

TEST(SpeedTestEndpoint, TheProgramServesItsListOrRefusesABadOneWithAClearMessage)
{
    QTemporaryDir dir;
    const QString good = dir.filePath(QStringLiteral("good.txt")), bad = dir.filePath(QStringLiteral("bad.txt"));
    ASSERT_TRUE(writeFile(good, "1000|5\r\n3000|10\r\n") && writeFile(bad, "1000|5\r\nten|10\r\n"));
    {
        ProgramServer server({QStringLiteral("0"), QStringLiteral("--variations"), good});
        ASSERT_TRUE(server.line.startsWith(QStringLiteral("Speed test endpoint on http://127.0.0.1:"))) << server.line.toStdString();
        const QString& base = server.base;
        QNetworkAccessManager nam;
        EXPECT_TRUE(fetch(nam, base).body.contains("speed test"));
        EXPECT_EQ(fetch(nam, base + QStringLiteral("downvariations.txt")).body, QByteArray("1000|5\r\n3000|10\r\n"));
        for (const char* verb : {"GET", "HEAD"}) {
            const Answer file = fetch(nam, base + QStringLiteral("serverdownload.asp?s=1"), verb);
            EXPECT_EQ(file.status, 200);
            EXPECT_EQ(file.length, 3000);
            EXPECT_EQ(file.body.size(), QByteArray(verb) == "GET" ? 3000 : 0);
        }
        for (const char* path : {"serverdownload.asp?s=2", "serverdownload.asp?s=-1", "serverdownload.asp?s=abc",
                                 "serverdownload.asp", "downvariations.txt/x"})
            EXPECT_EQ(fetch(nam, base + QLatin1String(path)).status, 404) << path;
        EXPECT_EQ(fetch(nam, base, "DELETE").status, 405);
    }
    const std::pair<QStringList, const char*> cases[] = {
        {{QStringLiteral("0"), QStringLiteral("--variations"), bad}, "line 2"},
        {{QStringLiteral("0"), QStringLiteral("--variations"), dir.filePath(QStringLiteral("none.txt"))}, "cannot read"},
        {{QStringLiteral("localhost:99999")}, "not [ADDR:]PORT"},
    };
    for (const auto& [args, says] : cases) {
        ProgramServer server(args);
        server.process.waitForFinished(10000);
        EXPECT_EQ(server.process.exitCode(), 2);
        EXPECT_TRUE(server.process.readAllStandardError().contains(says)) << says;
    }
}

}  // namespace
