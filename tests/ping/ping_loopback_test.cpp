// Real echoes: to 127.0.0.0/8, and inside network namespaces the tests make.
#include "ping_support.h"
#include "sources/ping.h"

#include <QThread>
#include <gtest/gtest.h>

#include <sys/socket.h>

using namespace orm;
using namespace orm::test;

constexpr quint32 Loopback = 0x7f000001;

TEST(RealPing, LoopbackEchoIsReadOneSampleLater)
{
    // The kernel starts stamping arrivals a moment after the first socket asks
    // for it; until then a stamp is the time of the read.
    const int stamped = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(stamped, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
    QThread::msleep(50);
    PingService service;
    Node node = pingNode();
    EXPECT_EQ(service.evaluate(node, 1), 0.0);
    QThread::msleep(400);  // a long tick: the round trip is still the kernel's
    ASSERT_TRUE(runUntil([&] { return !service.running(node); }));
    ::close(stamped);
    const EchoReply reply = *service.reply(node);
    if (reply.Status == EchoGeneralFailure)
        GTEST_SKIP() << "no ICMP socket for this user";
    EXPECT_EQ(reply.Status, EchoSuccess);
    EXPECT_LT(reply.RoundTripTime, 200u);
    EXPECT_EQ(service.evaluate(node, 1), double(reply.RoundTripTime));
}

TEST(RealPing, NodesPingingTogetherEachGetTheirOwnReply)
{
    // Raw sockets hear every reply of the host; each must keep only its own. On a
    // slow link all the sockets are open before the first reply comes.
    const auto slow = slowNamespace("100kbit", "1600");
    PingService service([] { return std::make_unique<IcmpSocket>(IcmpSocket::Kind::Raw); });
    std::vector<Node> nodes{pingNode("127.0.0.1", 1472), pingNode("127.0.0.2", 1000), pingNode("127.0.0.3", 500),
                            pingNode("127.0.0.1", 100)};
    for (Node& n : nodes)
        service.evaluate(n, 10);
    for (const Node& n : nodes)
        ASSERT_TRUE(runUntil([&] { return !service.running(n); }));
    if (service.reply(nodes[0])->Status == EchoGeneralFailure)
        GTEST_SKIP() << "no ICMP socket for this user";
    const quint32 addresses[] = {Loopback, Loopback + 1, Loopback + 2, Loopback};
    for (size_t i = 0; i < nodes.size(); ++i) {
        const EchoReply reply = *service.reply(nodes[i]);
        EXPECT_EQ(reply.Status, EchoSuccess) << i;
        EXPECT_EQ(reply.DataSize, nodes[i].PingPacketSize) << i;
        EXPECT_EQ(reply.Address, addresses[i]) << i;
        EXPECT_TRUE(!slow || reply.RoundTripTime > 0) << i;  // the slow link gives a real round trip
    }
}

TEST(RealPing, NoRouteFailsUntilTheLoopbackComesUp)
{
    const auto ns = ownNamespace();
    if (!ns || !run("sysctl", {"-qw", "net.ipv4.ping_group_range=0 2147483647"}))
        GTEST_SKIP() << "cannot make a network namespace here (needs root)";
    for (bool up : {false, true}) {
        ASSERT_TRUE(!up || loopbackUp());
        for (auto kind : {IcmpSocket::Kind::Raw, IcmpSocket::Kind::Datagram}) {
            PingService service([kind] { return std::make_unique<IcmpSocket>(kind); });
            Node node = pingNode();
            service.evaluate(node, 1);
            ASSERT_TRUE(runUntil([&] { return !service.running(node); }));
            EXPECT_EQ(service.reply(node)->Status, up ? EchoSuccess : EchoDestNetUnreachable) << up << int(kind);
        }
    }
}
