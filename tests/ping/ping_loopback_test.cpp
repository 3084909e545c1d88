// Real echoes: to 127.0.0.0/8, and inside network namespaces the tests make.
#include "ping_support.h"
#include "sources/ping.h"

#include <QThread>
#include <gtest/gtest.h>

#include <optional>
#include <unistd.h>

using namespace orm;
using namespace orm::test;

namespace {

constexpr quint32 Loopback = 0x7f000001;

Node pingNode(const QString& ip, qint16 size)
{
    Node n = newNode(0);
    n.NodeType = PingType;
    n.PingIP = ip;
    n.PingPacketSize = size;
    return n;
}

class RealPing : public ::testing::Test {
protected:
    void SetUp() override { testApp(); }

    // Waits for the Node's echo to end; skips where this user may not ping.
    ::testing::AssertionResult echoEnded(PingService& service, const Node& node)
    {
        if (!runUntil([&] { return !service.running(node); }))
            return ::testing::AssertionFailure() << "the echo never ended";
        return ::testing::AssertionSuccess();
    }
    bool mayNotPing(PingService& service, const Node& node)
    {
        return ::geteuid() != 0 && service.reply(node) && service.reply(node)->Status == EchoGeneralFailure;
    }

    // A namespace whose loopback is up and lets root open datagram ICMP sockets.
    static bool prepare(const TestNamespace& ns)
    {
        return ns.ok() && ns.ip({"link", "set", "lo", "up"})
            && ns.exec({"sysctl", "-qw", "net.ipv4.ping_group_range=0 2147483647"});
    }
};

struct Outcome {
    bool ended = false;
    EchoReply reply;
    EchoSocket::Done done()
    {
        return [this](const EchoReply& r) {
            ended = true;
            reply = r;
        };
    }
};

}  // namespace

TEST_F(RealPing, RoundTripToLoopbackIsReadOneSampleLater)
{
    PingService service;
    Node node = pingNode("127.0.0.1", 100);
    EXPECT_EQ(service.evaluate(node, 1), 0.0);
    ASSERT_TRUE(echoEnded(service, node));
    if (mayNotPing(service, node))
        GTEST_SKIP() << "no ICMP socket for this user";
    const EchoReply* reply = service.reply(node);
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->Status, EchoSuccess);
    EXPECT_EQ(reply->Address, Loopback);
    EXPECT_EQ(reply->DataSize, 100);
    EXPECT_LT(reply->RoundTripTime, 900u);
    const quint32 rtt = reply->RoundTripTime;

    EXPECT_EQ(service.evaluate(node, 1), double(rtt));
    EXPECT_EQ(node.PingState4, qint32(rtt));
    EXPECT_EQ(node.PingState3, 0);
    EXPECT_TRUE(service.running(node));  // the next one is out
}

TEST_F(RealPing, LargestPacketEchoesBackWhole)
{
    PingService service;
    Node node = pingNode("127.0.0.1", 5000);
    service.evaluate(node, 1);
    EXPECT_EQ(node.PingPacketSize, 1472);
    ASSERT_TRUE(echoEnded(service, node));
    if (mayNotPing(service, node))
        GTEST_SKIP() << "no ICMP socket for this user";
    EXPECT_EQ(service.reply(node)->Status, EchoSuccess);
    EXPECT_EQ(service.reply(node)->DataSize, 1472);
}

TEST_F(RealPing, NodesPingingTogetherEachGetTheirOwnReply)
{
    // Raw sockets hear every reply of the host; each must keep only its own. On
    // a slow link the replies come after all the sockets are open, so each
    // socket sees all of them.
    TestNamespace ns("together");
    std::optional<EnterNamespace> in;
    if (prepare(ns) && ns.exec({"tc", "qdisc", "replace", "dev", "lo", "root", "tbf", "rate", "100kbit", "burst",
                                "1600", "latency", "10s"}))
        in.emplace(ns);
    PingService service([] { return std::make_unique<IcmpSocket>(IcmpSocket::Kind::Raw); });
    std::vector<Node> nodes{pingNode("127.0.0.1", 1472), pingNode("127.0.0.2", 1000),
                            pingNode("127.0.0.3", 500), pingNode("127.0.0.1", 100)};
    for (Node& n : nodes)
        service.evaluate(n, 10);
    ASSERT_TRUE(runUntil([&] {
        return std::none_of(nodes.begin(), nodes.end(), [&](const Node& n) { return service.running(n); });
    }));
    if (mayNotPing(service, nodes[0]))
        GTEST_SKIP() << "no ICMP socket for this user";
    const quint32 addresses[] = {Loopback, Loopback + 1, Loopback + 2, Loopback};
    for (size_t i = 0; i < nodes.size(); ++i) {
        const EchoReply* r = service.reply(nodes[i]);
        ASSERT_NE(r, nullptr);
        EXPECT_EQ(r->Status, EchoSuccess) << i;
        EXPECT_EQ(r->DataSize, nodes[i].PingPacketSize) << i;
        EXPECT_EQ(r->Address, addresses[i]) << i;
    }
}

TEST_F(RealPing, NoRouteReadsZeroAndCountsAFailure)
{
    ORM_NAMESPACE_OR_SKIP(ns, "noroute");  // its loopback stays down
    ASSERT_TRUE(ns.exec({"sysctl", "-qw", "net.ipv4.ping_group_range=0 2147483647"}));
    for (auto kind : {IcmpSocket::Kind::Raw, IcmpSocket::Kind::Datagram}) {
        PingService service([kind] { return std::make_unique<IcmpSocket>(kind); });
        Node node = pingNode("127.0.0.1", 100);
        {
            EnterNamespace in(ns);
            ASSERT_TRUE(in.ok());
            EXPECT_EQ(service.evaluate(node, 1), 0.0);
        }
        ASSERT_TRUE(echoEnded(service, node));
        EXPECT_EQ(service.reply(node)->Status, EchoDestNetUnreachable);
        EXPECT_EQ(service.evaluate(node, 1), 0.0);
        EXPECT_EQ(node.PingState3, 1);
    }
}

TEST_F(RealPing, DatagramSocketWhereTheGroupRangeAllowsIt)
{
    TestNamespace ns("dgram");
    if (!prepare(ns))
        GTEST_SKIP() << "cannot make a network namespace here (needs root)";
    EnterNamespace in(ns);
    ASSERT_TRUE(in.ok());
    for (auto kind : {IcmpSocket::Kind::Auto, IcmpSocket::Kind::Datagram}) {
        IcmpSocket socket(kind);
        Outcome out;
        ASSERT_EQ(socket.start(Loopback, QByteArray(64, 's'), out.done()), 0u);
        EXPECT_EQ(socket.opened(), IcmpSocket::Kind::Datagram);
        ASSERT_TRUE(runUntil([&] { return out.ended; }));
        EXPECT_EQ(out.reply.Status, EchoSuccess);
        EXPECT_EQ(out.reply.DataSize, 64);
        EXPECT_EQ(out.reply.Address, Loopback);
    }
}

TEST_F(RealPing, SlowLinkGivesARealRoundTrip)
{
    TestNamespace ns("slow");
    if (!prepare(ns))
        GTEST_SKIP() << "cannot make a network namespace here (needs root)";
    // 1500-byte packets at 100 kbit/s: the reply waits about 120 ms for tokens.
    if (!ns.exec({"tc", "qdisc", "replace", "dev", "lo", "root", "tbf", "rate", "100kbit", "burst", "1600",
                  "latency", "5s"}))
        GTEST_SKIP() << "no tbf queue discipline";
    EnterNamespace in(ns);
    ASSERT_TRUE(in.ok());
    PingService service;
    Node node = pingNode("127.0.0.1", 1472);
    EXPECT_EQ(service.evaluate(node, 5), 0.0);
    ASSERT_TRUE(echoEnded(service, node));
    ASSERT_EQ(service.reply(node)->Status, EchoSuccess);
    const double rtt = service.evaluate(node, 5);
    EXPECT_GT(rtt, 0.0);
    EXPECT_LT(rtt, 4900.0);
    EXPECT_EQ(node.PingState4, qint32(rtt));
    EXPECT_EQ(node.PingState3, 0);
}

TEST_F(RealPing, ReplyLaterThanTheSamplePeriodTimesOut)
{
    TestNamespace ns("late");
    if (!prepare(ns))
        GTEST_SKIP() << "cannot make a network namespace here (needs root)";
    // At 10 kbit/s the reply of a 1500-byte echo waits about 1.2 s: past 900 ms.
    if (!ns.exec({"tc", "qdisc", "replace", "dev", "lo", "root", "tbf", "rate", "10kbit", "burst", "1600",
                  "latency", "20s"}))
        GTEST_SKIP() << "no tbf queue discipline";
    EnterNamespace in(ns);
    ASSERT_TRUE(in.ok());
    PingService service;
    Node node = pingNode("127.0.0.1", 1472);
    service.evaluate(node, 1);
    EXPECT_EQ(service.runningTimeout(node), 900);
    ASSERT_TRUE(echoEnded(service, node));
    EXPECT_EQ(service.reply(node)->Status, EchoTimedOut);
    EXPECT_EQ(service.evaluate(node, 1), 0.0);
    EXPECT_EQ(node.PingState3, 1);
}

TEST_F(RealPing, RouterReportsTheHostUnreachable)
{
    // Two namespaces on a veth pair; B routes for A and has no way to 10.202.0.0/24.
    TestNamespace a("a");
    TestNamespace b("b");
    if (!prepare(a) || !prepare(b))
        GTEST_SKIP() << "cannot make network namespaces here (needs root)";
    if (!a.ip({"link", "add", "va", "type", "veth", "peer", "name", "vb", "netns", b.name()}))
        GTEST_SKIP() << "no veth pairs here";
    ASSERT_TRUE(a.ip({"addr", "add", "10.201.0.1/24", "dev", "va"}));
    ASSERT_TRUE(b.ip({"addr", "add", "10.201.0.2/24", "dev", "vb"}));
    ASSERT_TRUE(a.ip({"link", "set", "va", "up"}));
    ASSERT_TRUE(b.ip({"link", "set", "vb", "up"}));
    ASSERT_TRUE(a.ip({"route", "add", "default", "via", "10.201.0.2"}));
    ASSERT_TRUE(b.ip({"route", "add", "unreachable", "10.202.0.0/24"}));
    ASSERT_TRUE(b.exec({"sysctl", "-qw", "net.ipv4.ip_forward=1"}));

    EnterNamespace in(a);
    ASSERT_TRUE(in.ok());
    const quint32 router = 0x0ac90002;
    const quint32 target = 0x0aca0005;
    for (auto kind : {IcmpSocket::Kind::Raw, IcmpSocket::Kind::Datagram}) {
        IcmpSocket socket(kind);
        Outcome out;
        ASSERT_EQ(socket.start(target, QByteArray(100, 's'), out.done()), 0u);
        ASSERT_TRUE(runUntil([&] { return out.ended; })) << int(kind);
        EXPECT_EQ(out.reply.Status, EchoDestHostUnreachable) << int(kind);
        EXPECT_EQ(out.reply.Address, router) << int(kind);
    }

    PingService service;
    Node node = pingNode("10.202.0.5", 100);
    service.evaluate(node, 2);
    ASSERT_TRUE(echoEnded(service, node));
    EXPECT_EQ(service.evaluate(node, 2), 0.0);
    EXPECT_EQ(node.PingState3, 1);
}

TEST_F(RealPing, BusyEventLoopDoesNotLengthenTheRoundTrip)
{
    // The reply is back at once but the program only reads it after a long tick;
    // the round trip is the kernel's, not the wait of the event loop.
    PingService service;
    Node node = pingNode("127.0.0.1", 100);
    service.evaluate(node, 1);
    QThread::msleep(600);
    ASSERT_TRUE(echoEnded(service, node));
    if (mayNotPing(service, node))
        GTEST_SKIP() << "no ICMP socket for this user";
    EXPECT_EQ(service.reply(node)->Status, EchoSuccess);
    EXPECT_LT(service.reply(node)->RoundTripTime, 300u);
}
