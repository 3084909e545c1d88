// The echo logic of a Ping Node, with sockets the test answers itself.
#include "ping_support.h"
#include "sources/ping.h"

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
    EXPECT_EQ(node.PingState4, 37);
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
    EXPECT_EQ(node.PingPacketSize, 1472);
    EXPECT_EQ(echoes.payloads.back().size(), 1472);
    EXPECT_EQ(pingTimeoutFor(1), 900);
    EXPECT_EQ(pingTimeoutFor(INT_MAX), INT_MAX);  // no overflow
    service.SendPing(node, timeout = pingTimeoutFor(200));
    EXPECT_EQ(timeout, 180000);
    EXPECT_EQ(service.runningTimeout(node), 180000);
    for (const char* target : {"www.example.com", " 10.0.0.1", "255.255.255.255"}) {
        Node bad = pingNode(target);
        service.evaluate(bad, 1);
        EXPECT_EQ(service.evaluate(bad, 1), 0.0) << target;
        EXPECT_EQ(bad.PingState3, 1) << target;
        EXPECT_EQ(service.reply(bad)->Status, EchoBadDestination) << target;
    }
    EXPECT_EQ(echoes.payloads.size(), 2u);  // nothing went out, least of all a broadcast
}

TEST_F(PingServiceTest, TimeOutsCountFailuresUpToTwoBillion)
{
    Node node = pingNode();
    node.PingState3 = MaxPingFailures - 2;
    service.SendPing(node, timeout = 30);
    ASSERT_TRUE(runUntil([&] { return !service.running(node); }));
    EXPECT_EQ(service.reply(node)->Status, EchoTimedOut);
    EXPECT_FALSE(echoes.alive(0));
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
