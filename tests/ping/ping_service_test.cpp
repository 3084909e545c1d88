// The echo logic of a Ping Node with sockets the test answers itself.
#include "ping_support.h"
#include "sources/ping.h"

#include <gtest/gtest.h>

#include <climits>

using namespace orm;
using namespace orm::test;

namespace {

Node pingNode(const char* ip = "127.0.0.1", qint16 size = 100)
{
    Node n = newNode(0);
    n.NodeType = PingType;
    n.PingIP = QString::fromLatin1(ip);
    n.PingPacketSize = size;
    return n;
}

EchoReply replied(quint32 rtt, quint32 status = EchoSuccess)
{
    EchoReply r;
    r.Address = 0x7f000001;
    r.Status = status;
    r.RoundTripTime = rtt;
    r.DataSize = 100;
    return r;
}

class PingServiceTest : public ::testing::Test {
protected:
    void SetUp() override { testApp(); }
    FakeEchoes echoes;
    PingService service{echoes.factory()};
};

}  // namespace

TEST_F(PingServiceTest, EachSampleShowsTheEchoOfThePreviousOne)
{
    Node node = pingNode();
    // The first sample has no echo behind it: 0, and no failure.
    EXPECT_EQ(service.evaluate(node, 1), 0.0);
    EXPECT_EQ(node.PingState3, 0);
    EXPECT_EQ(node.PingState4, 0);
    ASSERT_EQ(echoes.sent.size(), 1u);
    EXPECT_EQ(echoes.sent[0]->address, 0x7f000001u);
    EXPECT_EQ(echoes.sent[0]->payload, QByteArray(100, 's'));

    ASSERT_TRUE(echoes.answer(0, replied(37)));
    EXPECT_EQ(service.evaluate(node, 1), 37.0);
    EXPECT_EQ(node.PingState4, 37);
    ASSERT_EQ(echoes.sent.size(), 2u);

    // No reply came for the second echo: the buffer's round trip was cleared
    // and its status 0 kept, so it reads 0 without a failure.
    EXPECT_EQ(service.evaluate(node, 1), 0.0);
    EXPECT_EQ(node.PingState3, 0);
    EXPECT_FALSE(echoes.sent[1]->alive);  // the read closed it
}

TEST_F(PingServiceTest, PacketSizeIsCappedAndWrittenBack)
{
    Node big = pingNode("127.0.0.1", 5000);
    qint32 timeout = 900;
    service.SendPing(big, timeout);
    EXPECT_EQ(big.PingPacketSize, MaxPingPacketSize);
    ASSERT_EQ(echoes.sent.size(), 1u);
    EXPECT_EQ(echoes.sent[0]->payload, QByteArray(1472, 's'));

    Node max = pingNode("127.0.0.1", 1472);
    service.SendPing(max, timeout);
    EXPECT_EQ(max.PingPacketSize, 1472);

    // A bad stored size sends an empty payload and is left as it is.
    Node negative = pingNode("127.0.0.1", -5);
    service.SendPing(negative, timeout);
    EXPECT_EQ(negative.PingPacketSize, -5);
    EXPECT_TRUE(echoes.sent.back()->payload.isEmpty());
}

TEST_F(PingServiceTest, TimeOutRuleAndCap)
{
    EXPECT_EQ(pingTimeoutFor(1), 900);
    EXPECT_EQ(pingTimeoutFor(5), 4900);
    EXPECT_EQ(pingTimeoutFor(INT_MAX), INT_MAX);  // no overflow

    Node node = pingNode();
    service.evaluate(node, 1);
    EXPECT_EQ(service.runningTimeout(node), 900);

    qint32 timeout = pingTimeoutFor(200);
    service.SendPing(node, timeout);
    EXPECT_EQ(timeout, MaxPingTimeoutMs);  // written back
    EXPECT_EQ(service.runningTimeout(node), 180000);

    // A Graph with SampleEverySeconds 0 never samples; were it asked, its echo
    // would have no time-out and only the next read would end it.
    service.evaluate(node, 0);
    EXPECT_TRUE(service.running(node));
    EXPECT_EQ(service.runningTimeout(node), -1);
}

TEST_F(PingServiceTest, EchoThatNeverAnswersTimesOutAndCounts)
{
    Node node = pingNode();
    qint32 ended = 0;
    QObject::connect(&service, &PingService::echoDone, [&](qint32 channel) { ended = channel; });
    qint32 timeout = 30;
    service.SendPing(node, timeout);
    ASSERT_TRUE(runUntil([&] { return ended != 0; }));
    EXPECT_EQ(ended, node.PingState1);
    EXPECT_FALSE(echoes.sent[0]->alive);
    ASSERT_NE(service.reply(node), nullptr);
    EXPECT_EQ(service.reply(node)->Status, EchoTimedOut);
    EXPECT_EQ(service.ReadPing(node), 0);
    EXPECT_EQ(node.PingState3, 1);

    // The status stays in the buffer: an echo read before its reply came counts
    // the old time-out once more.
    timeout = 5000;
    service.SendPing(node, timeout);
    EXPECT_EQ(service.ReadPing(node), 0);
    EXPECT_EQ(node.PingState3, 2);
}

TEST_F(PingServiceTest, ErrorsCountFailuresAndStatus1100Reads)
{
    Node node = pingNode();
    qint32 timeout = 900;

    // A socket that fails at once: reported later from the event loop.
    echoes.failWith = EchoDestNetUnreachable;
    bool heard = false;
    QObject::connect(&service, &PingService::echoDone, [&] { heard = true; });
    service.SendPing(node, timeout);
    EXPECT_FALSE(heard);
    ASSERT_TRUE(runUntil([&] { return heard; }));
    EXPECT_EQ(service.ReadPing(node), 0);
    EXPECT_EQ(node.PingState3, 1);

    // An error message from a router.
    echoes.failWith = 0;
    service.SendPing(node, timeout);
    ASSERT_TRUE(echoes.answer(0, replied(12, EchoTtlExpiredTransit)));
    EXPECT_EQ(service.ReadPing(node), 0);
    EXPECT_EQ(node.PingState3, 2);

    // 1100 is read as a success.
    service.SendPing(node, timeout);
    ASSERT_TRUE(echoes.answer(1, replied(12, PingStatusAlsoSuccess)));
    EXPECT_EQ(service.ReadPing(node), 12);
    EXPECT_EQ(node.PingState3, 2);
}

TEST_F(PingServiceTest, FailureCountStopsAtTwoBillion)
{
    Node node = pingNode("not an address");
    node.PingState3 = MaxPingFailures - 1;
    qint32 timeout = 900;
    for (int i = 0; i < 3; ++i) {
        service.SendPing(node, timeout);
        service.ReadPing(node);
        EXPECT_EQ(node.PingState3, MaxPingFailures) << i;
    }
}

TEST_F(PingServiceTest, TargetThatIsNotAnAddressReadsZeroAndFails)
{
    for (const char* target : {"www.example.com", "", " 10.0.0.1", "1.2.3.4.5", "255.255.255.255"}) {
        Node node = pingNode(target);
        EXPECT_EQ(service.evaluate(node, 1), 0.0) << target;
        EXPECT_EQ(node.PingState3, 0) << target;  // the first sample counts nothing
        EXPECT_EQ(service.evaluate(node, 1), 0.0) << target;
        EXPECT_EQ(node.PingState3, 1) << target;
        EXPECT_EQ(service.reply(node)->Status, EchoBadDestination) << target;
    }
    EXPECT_TRUE(echoes.sent.empty());  // nothing went out, least of all a broadcast
}

TEST_F(PingServiceTest, EchoFollowsItsNodeWhenNodesMove)
{
    std::vector<Node> nodes;
    for (qint16 size : {100, 200, 500, 1000})
        nodes.push_back(pingNode("127.0.0.1", size));
    for (Node& n : nodes)
        service.evaluate(n, 1);
    // Delete the first Node (the later ones move down) and grow the vector so
    // that it moves, all while the echoes run.
    nodes.erase(nodes.begin());
    for (int i = 0; i < 64; ++i)
        nodes.push_back(pingNode("127.0.0.1", 1));
    // Replies come in a shuffled order, each with its size as round trip.
    for (size_t i : {3u, 1u, 2u, 0u})
        ASSERT_TRUE(echoes.answer(i, replied(quint32(echoes.sent[i]->payload.size()))));
    EXPECT_EQ(service.ReadPing(nodes[0]), 200);
    EXPECT_EQ(service.ReadPing(nodes[1]), 500);
    EXPECT_EQ(service.ReadPing(nodes[2]), 1000);
}

TEST_F(PingServiceTest, CopiedNodeGetsAChannelOfItsOwn)
{
    Node a = pingNode();
    qint32 timeout = 900;
    service.SendPing(a, timeout);
    Node b = a;
    ASSERT_TRUE(echoes.answer(0, replied(20)));
    EXPECT_EQ(service.ReadPing(a), 20);
    service.SendPing(a, timeout);
    // b's echo was a's: it reads nothing, then goes its own way.
    EXPECT_EQ(service.ReadPing(b), 0);
    EXPECT_EQ(b.PingState3, 0);
    service.SendPing(b, timeout);
    EXPECT_NE(b.PingState1, a.PingState1);
    ASSERT_EQ(echoes.sent.size(), 3u);
    EXPECT_TRUE(echoes.sent[1]->alive);  // a's echo survived b's send
    ASSERT_TRUE(echoes.answer(1, replied(21)));
    ASSERT_TRUE(echoes.answer(2, replied(22)));
    EXPECT_EQ(service.ReadPing(a), 21);
    EXPECT_EQ(service.ReadPing(b), 22);
}

TEST_F(PingServiceTest, NewSendAndReleaseEndTheRunningEcho)
{
    Node node = pingNode();
    qint32 timeout = 900;
    service.SendPing(node, timeout);
    service.SendPing(node, timeout);  // sent again without a read
    EXPECT_FALSE(echoes.sent[0]->alive);
    EXPECT_TRUE(echoes.sent[1]->alive);
    const int channels = service.channelCount();
    service.release(node);
    EXPECT_EQ(service.channelCount(), channels - 1);
    EXPECT_FALSE(echoes.sent[1]->alive);
    EXPECT_EQ(node.PingState1, 0);
    EXPECT_EQ(service.ReadPing(node), 0);
    EXPECT_EQ(node.PingState3, 0);
}
