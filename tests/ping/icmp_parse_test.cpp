// The ICMP packets as the kernel hands them over, captured from real sockets.
#include "sources/icmp_socket.h"

#include <QFile>
#include <gtest/gtest.h>

#include <cerrno>

using namespace orm;

namespace {

QByteArray fixture(const char* name)
{
    QFile f(QStringLiteral(ORM_FIXTURES "/ping/") + QLatin1String(name));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QByteArray::fromHex(f.readAll().trimmed());
}

constexpr quint32 Loopback = 0x7f000001;

}  // namespace

TEST(IcmpParse, EchoReplyFromRawSocketHasIpHeader)
{
    const QByteArray packet = fixture("echo_reply_raw.hex");
    ASSERT_EQ(packet.size(), 60);
    const auto m = parseIcmpPacket(packet, true);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->type, IcmpEchoReply);
    EXPECT_EQ(m->id, 0x1234);
    EXPECT_EQ(m->sequence, 7);
    EXPECT_EQ(m->source, Loopback);
    EXPECT_EQ(m->dataSize, 32);
    EXPECT_FALSE(m->quotesEcho);
    // Read as if it had no IP header, it is not an echo reply.
    const auto wrong = parseIcmpPacket(packet, false);
    ASSERT_TRUE(wrong);
    EXPECT_NE(wrong->type, IcmpEchoReply);
}

TEST(IcmpParse, EchoReplyFromDatagramSocketStartsAtIcmp)
{
    const auto m = parseIcmpPacket(fixture("echo_reply_dgram.hex"), false);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->type, IcmpEchoReply);
    EXPECT_EQ(m->sequence, 7);
    EXPECT_EQ(m->source, 0u);
    EXPECT_EQ(m->dataSize, 32);
}

TEST(IcmpParse, RouterErrorQuotesOurEcho)
{
    // Host unreachable from 10.201.0.2 about an echo to 10.202.0.5.
    const auto m = parseIcmpPacket(fixture("host_unreachable_raw.hex"), true);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->type, 3);
    EXPECT_EQ(m->code, 1);
    EXPECT_EQ(m->source, 0x0ac90002u);
    EXPECT_TRUE(m->quotesEcho);
    EXPECT_EQ(m->echoTarget, 0x0aca0005u);
    EXPECT_EQ(m->id, 0x1234);
    EXPECT_EQ(m->sequence, 7);
    EXPECT_EQ(statusForIcmp(m->type, m->code), EchoDestHostUnreachable);
}

TEST(IcmpParse, ErrorAboutOtherTrafficIsNotOurs)
{
    // Port unreachable about a UDP datagram: must never end an echo.
    const auto m = parseIcmpPacket(fixture("port_unreachable_raw.hex"), true);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->type, 3);
    EXPECT_EQ(m->code, 3);
    EXPECT_FALSE(m->quotesEcho);
}

TEST(IcmpParse, CutShortOrForeignPacketsGiveNothing)
{
    const QByteArray reply = fixture("echo_reply_raw.hex");
    EXPECT_FALSE(parseIcmpPacket(reply.left(27), true));  // IP header and 7 bytes
    EXPECT_FALSE(parseIcmpPacket(reply.left(19), true));
    EXPECT_FALSE(parseIcmpPacket(QByteArray(), false));
    QByteArray udp = reply;
    udp[9] = char(17);  // protocol UDP
    EXPECT_FALSE(parseIcmpPacket(udp, true));
    QByteArray badLength = reply;
    badLength[0] = char(0x4f);  // 60-byte header in a 60-byte packet: no ICMP left
    EXPECT_FALSE(parseIcmpPacket(badLength, true));
    // An error whose quoted datagram is cut short is kept but not matched.
    const QByteArray error = fixture("host_unreachable_raw.hex");
    const auto cut = parseIcmpPacket(error.left(20 + 8 + 20 + 4), true);
    ASSERT_TRUE(cut);
    EXPECT_FALSE(cut->quotesEcho);
}

TEST(IcmpParse, EchoRequestChecksumsAndRoundTrips)
{
    for (int size : {0, 1, 100, 1471, 1472}) {
        const QByteArray packet = makeEchoRequest(0xbeef, 0x0102, QByteArray(size, 's'));
        ASSERT_EQ(packet.size(), 8 + size);
        // A packet with its checksum in place sums to zero.
        EXPECT_EQ(internetChecksum(packet.constData(), packet.size()), 0) << size;
        const auto m = parseIcmpPacket(packet, false);
        ASSERT_TRUE(m);
        EXPECT_EQ(m->type, IcmpEchoRequest);
        EXPECT_EQ(m->id, 0xbeef);
        EXPECT_EQ(m->sequence, 0x0102);
        EXPECT_EQ(m->dataSize, size);
    }
    // The captured reply carries a checksum made by the kernel.
    const QByteArray reply = fixture("echo_reply_raw.hex").mid(20);
    EXPECT_EQ(internetChecksum(reply.constData(), reply.size()), 0);
}

TEST(IcmpParse, StatusCodes)
{
    EXPECT_EQ(statusForIcmp(0, 0), 0u);
    EXPECT_EQ(statusForIcmp(3, 0), 11002u);
    EXPECT_EQ(statusForIcmp(3, 1), 11003u);
    EXPECT_EQ(statusForIcmp(3, 2), 11004u);
    EXPECT_EQ(statusForIcmp(3, 3), 11005u);
    EXPECT_EQ(statusForIcmp(3, 4), 11009u);
    EXPECT_EQ(statusForIcmp(3, 13), 11003u);
    EXPECT_EQ(statusForIcmp(11, 0), 11013u);
    EXPECT_EQ(statusForIcmp(11, 1), 11014u);
    EXPECT_EQ(statusForIcmp(12, 0), 11015u);
    EXPECT_EQ(statusForIcmp(4, 0), 11016u);
    EXPECT_EQ(statusForErrno(ENETUNREACH), 11002u);
    EXPECT_EQ(statusForErrno(EHOSTUNREACH), 11003u);
    EXPECT_EQ(statusForErrno(EMSGSIZE), 11009u);
    EXPECT_EQ(statusForErrno(ENOBUFS), 11006u);
    EXPECT_EQ(statusForErrno(EPERM), 11050u);
    EXPECT_EQ(EchoTimedOut, 11010u);
}
