// The echo logic of a Ping Node, with sockets the test answers itself, and real
// echoes on the loopback.
#include "ping_support.h"
#include "sources/host_test.h"
#include "sources/ping.h"

#include <QTcpServer>

#include <gtest/gtest.h>

#include <climits>

using namespace orm;
using namespace orm::test;

struct PingServiceTest : ::testing::Test {
    FakeEchoes echoes;
    PingService service{echoes.factory()};
    qint32 timeout = 900;
};

TEST_F(PingServiceTest, EachSampleShowsTheEchoOfThePreviousOne)
{
    Node node = pingNode();
    EXPECT_EQ(service.evaluate(node, 1), 0.0);  // no echo behind the first sample
    ASSERT_EQ(echoes.payloads, std::vector<QByteArray>{QByteArray(100, 's')});
    ASSERT_TRUE(echoes.answer(0, 37));
    EXPECT_EQ(service.evaluate(node, 1), 37.0);
    // No reply to the second echo: the read closes it, and the cleared round trip
    // with status 0 reads 0; neither sample counts a failure.
    EXPECT_EQ(service.evaluate(node, 1), 0.0);
    EXPECT_EQ(node.PingState3, 0);
    EXPECT_FALSE(echoes.alive(1));
}

TEST_F(PingServiceTest, SendCapsSizeAndTimeOutAndSendsOnlyToAddresses)
{
    Node node = pingNode("127.0.0.1", 5000);
    service.SendPing(node, timeout);
    EXPECT_EQ(echoes.payloads.back().size(), 1472);
    EXPECT_EQ(pingTimeoutFor(INT_MAX), INT_MAX);  // no overflow
    for (const char* target : {"www.example.com", "255.255.255.255"}) {
        Node bad = pingNode(target);
        service.evaluate(bad, 1);
        EXPECT_EQ(service.evaluate(bad, 1), 0.0) << target;
        EXPECT_EQ(service.reply(bad)->Status, EchoBadDestination) << target;
    }
    EXPECT_EQ(echoes.payloads.size(), 1u);  // nothing went out, least of all a broadcast
}

TEST_F(PingServiceTest, TimeOutsCountFailuresUpToTwoBillion)
{
    Node node = pingNode();
    node.PingState3 = MaxPingFailures - 2;
    service.SendPing(node, timeout = 30);
    ASSERT_TRUE(pumpUntil([&] { return !service.running(node); }));
    EXPECT_EQ(service.reply(node)->Status, EchoTimedOut);
    EXPECT_EQ(service.ReadPing(node), 0);
    EXPECT_EQ(node.PingState3, MaxPingFailures - 1);
    // The status stays in the buffer: a read before the next reply counts it again.
    service.SendPing(node, timeout = 5000);
    EXPECT_EQ(service.ReadPing(node), 0);
    service.ReadPing(node);
    EXPECT_EQ(node.PingState3, MaxPingFailures);  // and no further
    service.SendPing(node, timeout);
    ASSERT_TRUE(echoes.answer(2, 12, PingStatusAlsoSuccess));  // read as a success
    EXPECT_EQ(service.ReadPing(node), 12);
    EXPECT_EQ(node.PingState3, MaxPingFailures);
}

TEST_F(PingServiceTest, EchoFollowsItsNodeWhenNodesMoveOrAreCopied)
{
    std::vector<Node> nodes{pingNode("127.0.0.1", 100), pingNode("127.0.0.1", 200), pingNode("127.0.0.1", 500)};
    for (Node& n : nodes)
        service.evaluate(n, 1);
    nodes.erase(nodes.begin());    // the later Nodes move down
    nodes.resize(64, pingNode());  // and the vector moves
    for (size_t i : {2u, 0u, 1u})
        ASSERT_TRUE(echoes.answer(i, quint32(echoes.payloads[i].size())));
    EXPECT_EQ(service.ReadPing(nodes[0]), 200);
    EXPECT_EQ(service.ReadPing(nodes[1]), 500);
    // A copy shares the channel until it sends, then gets one of its own.
    Node copy = nodes[0];
    service.SendPing(copy, timeout);
    service.SendPing(nodes[0], timeout);
    ASSERT_TRUE(echoes.answer(3, 21));  // the copy's echo survived the original's send
    ASSERT_TRUE(echoes.answer(4, 22));
    EXPECT_EQ(service.ReadPing(copy), 21);
    EXPECT_EQ(service.ReadPing(nodes[0]), 22);
}

// Real echoes to 127.0.0.0/8.
constexpr quint32 Loopback = 0x7f000001;

TEST(RealPing, NodesPingingTogetherEachGetTheirOwnReply)
{
    // Raw sockets hear every reply of the host; each must keep only its own. All
    // the sockets are open before the loop can deliver the first reply.
    PingService service([] { return std::make_unique<IcmpSocket>(IcmpSocket::Kind::Raw); });
    std::vector<Node> nodes{pingNode("127.0.0.1", 1472), pingNode("127.0.0.2", 1000), pingNode("127.0.0.3", 500),
                            pingNode("127.0.0.1", 100)};
    for (Node& n : nodes)
        service.evaluate(n, 10);
    for (const Node& n : nodes)
        ASSERT_TRUE(pumpUntil([&] { return !service.running(n); }));
    if (service.reply(nodes[0])->Status == EchoGeneralFailure)
        GTEST_SKIP() << "no ICMP socket for this user";
    const quint32 addresses[] = {Loopback, Loopback + 1, Loopback + 2, Loopback};
    for (size_t i = 0; i < nodes.size(); ++i) {
        const EchoReply reply = *service.reply(nodes[i]);
        EXPECT_EQ(reply.Status, EchoSuccess) << i;
        EXPECT_EQ(reply.DataSize, nodes[i].PingPacketSize) << i;
        EXPECT_EQ(reply.Address, addresses[i]) << i;
    }
}

// The host test of the ping panel against a real TCP server on 127.0.0.1.
TEST(HostTest, RoundsAverageTheAnswersAndAClickStopsTheEchoes)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    FakeEchoes echoes;
    PingService pings(echoes.factory());
    HostTest test(pings, nullptr, server.serverPort());
    int finished = 0;
    QObject::connect(&test, &HostTest::finished, [&] { ++finished; });
    test.resolveClicked(2, Qt::LeftButton, "localhost");
    const quint32 rtts[] = {10, 0, 21};
    for (size_t i = 0; i < 3; ++i) {
        ASSERT_TRUE(pumpUntil([&] { return echoes.pending.size() > i; }));
        ASSERT_TRUE(echoes.answer(i, rtts[i], i == 1 ? EchoTimedOut : EchoSuccess));
    }
    ASSERT_TRUE(pumpUntil([&] { return finished > 0; }));
    EXPECT_EQ(test.hostText(), "127.0.0.1");
    const QStringList trials{test.trial(0), test.trial(1), test.trial(2), test.trial(3)};
    EXPECT_EQ(trials, (QStringList{"10 mSeconds", "! No Response !", "21 mSeconds", "15 mSeconds"}));

    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    ASSERT_TRUE(pumpUntil([&] { return echoes.pending.size() > 3; }));
    test.resolveClicked(0, Qt::LeftButton, "127.0.0.1");
    EXPECT_EQ(test.checking(), "");
    EXPECT_FALSE(echoes.alive(3));
    EXPECT_TRUE(hostTextNeedsAddress("WWW.EXAMPLE.COM"));
}
