// The host test of the ping panel against a real TCP server and real echoes.
// Where this user can make a network namespace the test runs inside one, with
// port 80 its own; otherwise on 127.0.0.1 with a port of the test's choosing.
#include "ping_support.h"
#include "sources/host_test.h"
#include "sources/ping.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTimer>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <optional>

using namespace orm;
using namespace orm::test;

namespace {

struct Recorder {
    QStringList statuses;
    QStringList checkings;
    QStringList hostTexts;
    std::vector<qint32> colours;
    std::map<int, QStringList> trials;
    int updated = 0;
    int restored = 0;
    int finished = 0;

    explicit Recorder(HostTest& t)
    {
        QObject::connect(&t, &HostTest::statusChanged, [this](const QString& s) { statuses << s; });
        QObject::connect(&t, &HostTest::checkingChanged, [this](const QString& s) { checkings << s; });
        QObject::connect(&t, &HostTest::hostTextChanged, [this](const QString& s) { hostTexts << s; });
        QObject::connect(&t, &HostTest::hostColourChanged, [this](qint32 c) { colours.push_back(c); });
        QObject::connect(&t, &HostTest::trialChanged, [this](int i, const QString& s) { trials[i] << s; });
        QObject::connect(&t, &HostTest::imagesUpdated, [this] { ++updated; });
        QObject::connect(&t, &HostTest::imagesRestored, [this] { ++restored; });
        QObject::connect(&t, &HostTest::finished, [this] { ++finished; });
    }
};

class HostTestTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        testApp();
        ns_.emplace("host");
        if (ns_->ok() && ns_->ip({"link", "set", "lo", "up"})) {
            in_.emplace(*ns_);
            inNamespace_ = in_->ok();
        }
        if (!inNamespace_)
            port_ = freePort();
    }
    void TearDown() override
    {
        in_.reset();
        ns_.reset();
    }

    static quint16 freePort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        return probe.serverPort();
    }
    bool listen(QTcpServer& server) { return server.listen(QHostAddress::LocalHost, port_); }
    // Slows the namespace's loopback so that echoes take a measurable time.
    bool slowLink()
    {
        return inNamespace_
            && ns_->exec({"tc", "qdisc", "replace", "dev", "lo", "root", "tbf", "rate", "8kbit", "burst", "200",
                          "latency", "20s"});
    }

    std::optional<TestNamespace> ns_;
    std::optional<EnterNamespace> in_;
    bool inNamespace_ = false;
    quint16 port_ = HostTest::WebPort;
    PingService pings_;
};

// The three round labels and the summary agree with one another.
void expectRoundsAgree(const Recorder& r)
{
    static const QRegularExpression ms(QStringLiteral("\\A([1-9][0-9]*) mSeconds\\z"));
    double sum = 0;
    int counted = 0;
    int silent = 0;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(r.trials.at(i).size(), 1) << i;
        const QString text = r.trials.at(i).first();
        if (text == PingNoResponseText) {
            ++silent;
            continue;
        }
        const auto m = ms.match(text);
        ASSERT_TRUE(m.hasMatch()) << text.toStdString();
        sum += m.captured(1).toInt();
        ++counted;
    }
    EXPECT_EQ(r.updated, silent);
    ASSERT_EQ(r.trials.at(3).size(), 1);
    EXPECT_EQ(r.trials.at(3).first(),
              counted == 0 ? PingNoResponseText : QString::number(qint64(std::floor(sum / counted))) + " mSeconds");
}

}  // namespace

TEST(HostText, TypedAddressStaysAnythingElseTakesTheAddress)
{
    EXPECT_FALSE(hostTextNeedsAddress("10.0.0.1"));
    EXPECT_FALSE(hostTextNeedsAddress("192.168.001.010"));
    EXPECT_FALSE(hostTextNeedsAddress("1X.2.3.4"));  // upper case passes
    EXPECT_FALSE(hostTextNeedsAddress("1.2.3.4 "));
    EXPECT_TRUE(hostTextNeedsAddress("www.example.com"));
    EXPECT_TRUE(hostTextNeedsAddress("WWW.EXAMPLE.COM"));  // no digits in the dotted form
    EXPECT_TRUE(hostTextNeedsAddress("1a.2.3.4"));
    EXPECT_TRUE(hostTextNeedsAddress("1.2.3"));
    EXPECT_TRUE(hostTextNeedsAddress(" 1.2.3.4"));
    EXPECT_TRUE(hostTextNeedsAddress("localhost"));
}

TEST(HostText, StatusTextsAsTheUserSeesThem)
{
    EXPECT_EQ(HostResolvingText, "Host to ping:" + QString(21, ' ') + "Resolving...");
    EXPECT_EQ(HostResolvedText, "Host to ping:" + QString(21, ' ') + "Resolved");
    EXPECT_EQ(HostStoppedText, "Host to ping:" + QString(21, ' ') + "Stopped...");
    EXPECT_EQ(HostErrorText, "Host to ping:" + QString(11, ' ') + "Error Connecting...");
}

TEST_F(HostTestTest, TypedAddressResolvesAndThreeEchoesFollow)
{
    const bool slow = slowLink();
    QTcpServer server;
    ASSERT_TRUE(listen(server));
    HostTest test(pings_, nullptr, port_);
    Recorder r(test);
    int ticks = 0;
    QTimer other;  // the rest of the program goes on meanwhile
    QObject::connect(&other, &QTimer::timeout, [&] { ticks += test.busy(); });
    other.start(10);

    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    EXPECT_TRUE(test.busy());
    EXPECT_EQ(r.statuses, QStringList{HostResolvingText});
    ASSERT_TRUE(runUntil([&] { return r.finished > 0; }));

    EXPECT_EQ(r.statuses, (QStringList{HostResolvingText, HostResolvedText}));
    EXPECT_EQ(r.colours, std::vector<qint32>{HostTest::ResolvedColour});
    EXPECT_TRUE(r.hostTexts.isEmpty());
    EXPECT_EQ(test.hostText(), "127.0.0.1");
    EXPECT_EQ(r.checkings, (QStringList{PingCheckingText, QString()}));
    EXPECT_EQ(r.restored, 0);
    expectRoundsAgree(r);
    if (slow) {
        // Each echo waited on the slow link, so each round has a figure.
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(test.trial(i).endsWith(" mSeconds")) << test.trial(i).toStdString();
        EXPECT_GT(ticks, 0);
    }
    EXPECT_FALSE(test.busy());
    EXPECT_EQ(pings_.channelCount(), 0);  // the scratch Node's channel is gone
}

TEST_F(HostTestTest, NameIsReplacedByItsAddress)
{
    QTcpServer server;
    ASSERT_TRUE(listen(server));
    HostTest test(pings_, nullptr, port_);
    Recorder r(test);
    test.resolveClicked(2, Qt::LeftButton, "localhost");
    ASSERT_TRUE(runUntil([&] { return r.finished > 0; }));
    EXPECT_EQ(r.statuses, (QStringList{HostResolvingText, HostResolvedText}));
    EXPECT_EQ(r.hostTexts, QStringList{"127.0.0.1"});
    EXPECT_EQ(test.hostText(), "127.0.0.1");
    // A loopback echo comes back in under a millisecond, which reads as 0 and
    // so as "! No Response !": the rounds only have to agree.
    expectRoundsAgree(r);
}

TEST_F(HostTestTest, HostWithoutWebPortEndsInErrorConnecting)
{
    HostTest test(pings_, nullptr, port_);
    Recorder r(test);
    test.resolveClicked(1, Qt::LeftButton, "127.0.0.1");
    ASSERT_TRUE(runUntil([&] { return r.finished > 0; }));
    EXPECT_EQ(r.statuses, (QStringList{HostResolvingText, HostErrorText}));
    EXPECT_EQ(r.colours, std::vector<qint32>{HostTest::FailedColour});
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(r.trials[i], QStringList{PingNoResponseText}) << i;
    EXPECT_EQ(r.restored, 1);
    EXPECT_TRUE(r.checkings.isEmpty());
    EXPECT_FALSE(test.busy());
}

TEST_F(HostTestTest, SecondClickStopsYetTheTimerStillFires)
{
    QTcpServer server;
    ASSERT_TRUE(listen(server));
    HostTest test(pings_, nullptr, port_);
    Recorder r(test);
    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    EXPECT_EQ(r.statuses, (QStringList{HostResolvingText, HostStoppedText}));
    EXPECT_FALSE(test.busy());
    // tmrOut was never stopped: five seconds on it reports the failure.
    ASSERT_TRUE(runUntil([&] { return r.finished > 1; }));
    EXPECT_EQ(r.statuses, (QStringList{HostResolvingText, HostStoppedText, HostErrorText}));
    EXPECT_EQ(r.colours, std::vector<qint32>{HostTest::FailedColour});
}

TEST_F(HostTestTest, ClickDuringTheEchoesStopsThem)
{
    if (!slowLink())
        GTEST_SKIP() << "needs a slow link in a namespace of its own";
    QTcpServer server;
    ASSERT_TRUE(listen(server));
    HostTest test(pings_, nullptr, port_);
    Recorder r(test);
    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    ASSERT_TRUE(runUntil([&] { return !r.checkings.isEmpty(); }));
    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    EXPECT_EQ(r.statuses.last(), HostStoppedText);
    EXPECT_EQ(r.checkings, (QStringList{PingCheckingText, QString()}));
    EXPECT_FALSE(test.busy());
    EXPECT_EQ(pings_.channelCount(), 0);
    // Nothing more arrives from the stopped rounds.
    bool later = false;
    QTimer::singleShot(1500, [&] { later = true; });
    ASSERT_TRUE(runUntil([&] { return later; }));
    EXPECT_EQ(r.finished, 1);
    EXPECT_EQ(r.trials.count(3), 0u);
}

TEST_F(HostTestTest, EmptyTextOtherImagesAndButtonsDoNothing)
{
    HostTest test(pings_, nullptr, port_);
    Recorder r(test);
    test.resolveClicked(0, Qt::LeftButton, QString());
    test.resolveClicked(3, Qt::LeftButton, "127.0.0.1");
    test.resolveClicked(0, Qt::RightButton, "127.0.0.1");
    EXPECT_FALSE(test.busy());
    EXPECT_TRUE(r.statuses.isEmpty());
}
