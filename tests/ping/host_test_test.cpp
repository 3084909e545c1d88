// The host test of the ping panel against a real TCP server on 127.0.0.1.
#include "ping_support.h"
#include "sources/host_test.h"
#include "sources/ping.h"

#include <QTcpServer>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

// What the panel shows in order: status texts, and host colours as numbers.
struct Recorder {
    QStringList shown;
    int updated = 0, restored = 0, finished = 0;
    explicit Recorder(HostTest& t)
    {
        QObject::connect(&t, &HostTest::statusChanged, [this](const QString& s) { shown << s; });
        QObject::connect(&t, &HostTest::hostColourChanged, [this](qint32 c) { shown << QString::number(c); });
        QObject::connect(&t, &HostTest::imagesUpdated, [this] { ++updated; });
        QObject::connect(&t, &HostTest::imagesRestored, [this] { ++restored; });
        QObject::connect(&t, &HostTest::finished, [this] { ++finished; });
    }
};

}  // namespace

TEST(HostTest, NameTakesItsAddressAndRoundsAverageTheAnswers)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    FakeEchoes echoes;
    PingService pings(echoes.factory());
    HostTest test(pings, nullptr, server.serverPort());
    Recorder r(test);
    test.resolveClicked(2, Qt::LeftButton, "localhost");
    const quint32 rtts[] = {10, 0, 21};
    for (size_t i = 0; i < 3; ++i) {
        ASSERT_TRUE(runUntil([&] { return echoes.pending.size() > i; }));
        EXPECT_EQ(test.checking(), "Checking Ping Response. Please Wait...");
        ASSERT_TRUE(echoes.answer(i, rtts[i], i == 1 ? EchoTimedOut : EchoSuccess));
    }
    ASSERT_TRUE(runUntil([&] { return r.finished > 0; }));
    EXPECT_EQ(test.hostText(), "127.0.0.1");
    const QStringList trials{test.trial(0), test.trial(1), test.trial(2), test.trial(3)};
    EXPECT_EQ(trials, (QStringList{"10 mSeconds", "! No Response !", "21 mSeconds", "15 mSeconds"}));
    EXPECT_EQ(r.updated, 1);
    // A click during the echoes stops them.
    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    ASSERT_TRUE(runUntil([&] { return echoes.pending.size() > 3; }));
    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    EXPECT_EQ(r.shown.last(), HostStoppedText);
    EXPECT_EQ(test.checking(), "");
    EXPECT_FALSE(echoes.alive(3));
    EXPECT_EQ(HostStoppedText, "Host to ping:" + QString(21, ' ') + "Stopped...");
    EXPECT_FALSE(hostTextNeedsAddress("1X.2.3.4"));  // upper case passes as typed
    EXPECT_TRUE(hostTextNeedsAddress("WWW.EXAMPLE.COM"));
}
