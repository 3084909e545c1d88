// ICMP packets as the kernel hands them over, captured from real sockets; the
// real echoes of the other tests cover plain replies.
#include "sources/icmp_socket.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace orm;

static QByteArray fixture(const char* name)
{
    QFile f(QStringLiteral(ORM_FIXTURES "/ping/") + QLatin1String(name));
    return f.open(QIODevice::ReadOnly) ? QByteArray::fromHex(f.readAll().trimmed()) : QByteArray();
}

TEST(IcmpParse, OnlyErrorsQuotingOurEchoMatch)
{
    // Host unreachable from 10.201.0.2 about an echo to 10.202.0.5.
    const QByteArray error = fixture("host_unreachable_raw.hex");
    const auto m = parseIcmpPacket(error, true);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->source, 0x0ac90002u);
    EXPECT_TRUE(m->quotesEcho);
    EXPECT_EQ(m->echoTarget, 0x0aca0005u);
    EXPECT_EQ(m->id, 0x1234);
    EXPECT_EQ(m->sequence, 7);
    EXPECT_EQ(statusForIcmp(m->type, m->code), EchoDestHostUnreachable);
    EXPECT_FALSE(parseIcmpPacket(error.left(20 + 8 + 20 + 4), true).value_or(*m).quotesEcho);  // quote cut short
    // Port unreachable about a UDP datagram must never end an echo.
    EXPECT_FALSE(parseIcmpPacket(fixture("port_unreachable_raw.hex"), true).value_or(*m).quotesEcho);
}

TEST(IcmpParse, CutShortOrForeignPacketsGiveNothing)
{
    const QByteArray reply = fixture("echo_reply_raw.hex");
    ASSERT_EQ(parseIcmpPacket(reply, true).value_or(IcmpMessage{}).dataSize, 32);
    EXPECT_FALSE(parseIcmpPacket(reply.left(27), true));  // IP header and 7 bytes
    EXPECT_FALSE(parseIcmpPacket(QByteArray(), false));
    QByteArray longHeader = reply;
    longHeader[0] = char(0x4f);  // a 60-byte IP header leaves no ICMP
    EXPECT_FALSE(parseIcmpPacket(longHeader, true));
    const QByteArray request = makeEchoRequest(0xbeef, 2, QByteArray(1471, 's'));  // odd length
    EXPECT_EQ(internetChecksum(request.constData(), request.size()), 0);
}
