// The mail client against a real relay (aiosmtpd) and against a scripted peer
// that splits, repeats, refuses, hangs up or stays silent.
#include "alerts/base64.h"
#include "alerts/smtp_relay.h"
#include "model/clock.h"
#include "smtp_peers.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

struct Relay {
    ManualClock clock{QDateTime(QDate(2026, 3, 5), QTime(9, 7, 41))};
    VDSMTPRelay relay{clock};
    explicit Relay(quint16 port)
    {
        at(port);
        relay.MailSenderName = "Build Box";
        relay.MailSenderEMail = "monitor@example.org";
        relay.MailRecipientName = "Ormivane";
        relay.MailRecipientEMail = "admin@example.org";
        relay.MailSubject = "CPU has exceeded 90";
        relay.MailBody = "First line\r\nSecond line";
    }
    explicit Relay(SmtpSink& sink) : Relay(sink.port()) { EXPECT_NE(sink.port(), 0) << qPrintable(sink.error()); }
    void at(quint16 port) { relay.SMTPServer = QStringLiteral("127.0.0.1:") + QString::number(port); }
};

}  // namespace

TEST(SmtpAgainstAiosmtpd, LoginSendsEhloWithTheUsersLocalPartAndBase64Credentials)
{
    SmtpSink sink("auth");
    Relay r(sink);
    r.relay.SMTPAuthUser = QStringLiteral("alice@mail.example.org");
    r.relay.SMTPAuthPass = QStringLiteral(" p\u00e4ss:w\"o=rd\\%; ");  // blanks at the ends are sent
    EXPECT_TRUE(r.relay.SendMail());
    ASSERT_TRUE(sink.waitForMessages(1));
    const QJsonObject m = sink.messages().front();
    EXPECT_EQ(m.value("greeting").toString(), "EHLO");
    EXPECT_EQ(m.value("host_name").toString(), "alice");
    EXPECT_EQ(m.value("login").toString(), "alice@mail.example.org");
    EXPECT_EQ(m.value("password").toString(), QStringLiteral(" p\u00e4ss:w\"o=rd\\%; "));
}

// A blank login is none; the message goes as written, up to a lone dot; an
// attachment goes uuencoded, a missing one is left out.
TEST(SmtpAgainstAiosmtpd, BlankLoginSendsHeloAndTheMessageGoesAsWrittenWithItsAttachment)
{
    SmtpSink sink("plain");
    Relay r(sink);
    QTemporaryDir dir;
    r.relay.tempFolder = dir.path();
    r.relay.SMTPAuthUser = "   ";
    r.relay.SMTPAuthPass = "secret";
    r.relay.MailBody += QStringLiteral("\r\n.\r\nlost");  // no dot stuffing
    r.relay.MailAttachment = dir.filePath(QStringLiteral("gone.txt"));
    EXPECT_TRUE(r.relay.SendMail());
    EXPECT_EQ(r.relay.SMTPState(), SmtpFinished);

    r.relay.MailBody = QStringLiteral("First line");
    r.relay.MailAttachment = dir.filePath(QStringLiteral("report.bin"));
    QFile f(r.relay.MailAttachment);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QByteArray("Cat"));
    f.close();
    EXPECT_TRUE(r.relay.SendMail());
    ASSERT_TRUE(sink.waitForMessages(2));
    const QJsonObject m = sink.messages().front();
    EXPECT_EQ(m.value("greeting").toString(), "HELO");
    EXPECT_EQ(m.value("host_name").toString(), "monitor");  // the local part, not a host name
    EXPECT_EQ(m.value("mail_from").toString(), "monitor@example.org");
    EXPECT_EQ(m.value("rcpt_tos").toArray().first().toString(), "admin@example.org");
    EXPECT_TRUE(m.value("login").isNull());
    EXPECT_EQ(m.value("content").toString(),
              "DATE: 05 03 2026 09:07:41\r\n"
              "FROM: Build Box <monitor@example.org>\r\n"
              "TO: Ormivane <admin@example.org>\r\n"
              "SUBJECT: CPU has exceeded 90\r\n"
              "\r\n"
              "First line\r\nSecond line\r\n");
    const QString content = sink.messages()[1].value("content").toString();
    EXPECT_TRUE(content.contains("\r\n\r\nFirst line\r\nbegin 600 report.bin\r\n#0V%T\r\n`\r\nend\r\n"))
        << qPrintable(content);
    EXPECT_TRUE(QDir(dir.path()).entryList({QStringLiteral("tmpSendMail*")}).isEmpty());
}

TEST(SmtpDialogue, SplitEhloReplyIsTwoRepliesAndTheSecondIsIgnored)
{
    ScriptedPeer peer(reply("220 hi\r\n"),
                      {split({"250-relay.example\r\n", "250 AUTH LOGIN\r\n"}), reply("334 VXNlcm5hbWU6\r\n"),
                       reply("334 UGFzc3dvcmQ6\r\n"), reply("235 ok\r\n"), reply("250 ok\r\n"), reply("251 fwd\r\n"),
                       reply("354 go\r\n"), reply("250 queued\r\n")});
    Relay r(peer.port());
    r.relay.SMTPAuthUser = "bob";
    r.relay.SMTPAuthPass = "pw";
    EXPECT_TRUE(r.relay.SendMail());
    const QByteArray expected = "EHLO bob\r\nAUTH LOGIN\r\n" + Base64Encode(QStringLiteral("bob"), 0).toLatin1() +
                                "\r\n" + Base64Encode(QStringLiteral("pw"), 0).toLatin1() + "\r\n" +
                                "MAIL FROM: <monitor@example.org>\r\nRCPT TO: <admin@example.org>\r\nDATA\r\n" +
                                "DATE: 05 03 2026 09:07:41\r\n";
    // QUIT has no line end, and the client hangs up without waiting for its reply.
    EXPECT_TRUE(pumpUntil([&] { return peer.closedByClient; }));
    EXPECT_TRUE(peer.received.startsWith(expected)) << peer.received.constData();
    EXPECT_TRUE(peer.received.endsWith("\r\n.\r\nQUIT")) << peer.received.constData();
}

TEST(SmtpDialogue, RefusalsHangUpsAndUnparsableRepliesEndTheSendAsAFailure)
{
    struct Case { const char* name; std::deque<PeerReply> replies; QByteArray lastCommand; };
    const std::vector<Case> cases = {
        {"5xx to HELO", {reply("550 go away\r\n")}, "HELO monitor\r\n"},
        {"4xx to MAIL", {reply("250 ok\r\n"), reply("421 busy\r\n")}, "MAIL FROM: <monitor@example.org>\r\n"},
        {"221 early", {reply("221 bye\r\n")}, "HELO monitor\r\n"},
        {"not a code", {reply("2x0 what\r\n")}, "HELO monitor\r\n"},
        {"hang-up", {hangUp()}, "HELO monitor\r\n"},
    };
    for (const Case& c : cases) {
        ScriptedPeer peer(reply("220 hi\r\n"), c.replies);
        Relay r(peer.port());
        EXPECT_FALSE(r.relay.SendMail()) << c.name;
        EXPECT_EQ(r.relay.SMTPState(), SmtpFinished) << c.name;
        EXPECT_TRUE(peer.received.endsWith(c.lastCommand)) << c.name << ": " << peer.received.constData();
    }
}

// The wait ends on silence or when the program closes; a later send starts
// afresh, a second greeting starts the hello again, and once a mail went out
// SendMail says true for good.
TEST(SmtpDialogue, SilenceAndClosingEndTheWaitAndMailSentIsNeverCleared)
{
    ScriptedPeer silent(silence(), {});
    Relay r(silent.port());
    r.relay.silenceLimitMs = 300;
    EXPECT_FALSE(r.relay.SendMail());
    EXPECT_EQ(r.relay.SMTPState(), SmtpFinished);

    bool closing = false;
    r.relay.silenceLimitMs = 60000;
    r.relay.closing = [&] { return closing; };
    QTimer::singleShot(100, &silent, [&] { closing = true; });
    EXPECT_FALSE(r.relay.SendMail());
    closing = false;

    ScriptedPeer good(reply("220 hi\r\n"), {reply("220 hello again\r\n"), reply("250 ok\r\n"), reply("250 ok\r\n"),
                                            reply("250 ok\r\n"), reply("354 go\r\n"), reply("250 ok\r\n")});
    r.at(good.port());
    EXPECT_TRUE(r.relay.SendMail());
    EXPECT_TRUE(good.received.startsWith("HELO monitor\r\nHELO monitor\r\nMAIL FROM: <monitor@example.org>\r\n"));
    ScriptedPeer refusing(reply("554 no\r\n"), {});
    r.at(refusing.port());
    EXPECT_TRUE(r.relay.SendMail());
    EXPECT_EQ(refusing.connections, 1);
}

TEST(SmtpDialogue, UnreachableRelayAndUnusableAddressFailAtOnce)
{
    QTcpServer probe;
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
    const quint16 closedPort = probe.serverPort();
    probe.close();
    Relay r(closedPort);
    EXPECT_FALSE(r.relay.SendMail());
    for (const char* server : {"127.0.0.1:0", "127.0.0.1:70000", "127.0.0.1:smtp", ":25", "[::1"}) {
        r.relay.SMTPServer = QLatin1String(server);
        EXPECT_FALSE(r.relay.SendMail()) << server;
        EXPECT_EQ(r.relay.SMTPState(), SmtpFinished) << server;
    }
}

TEST(SmtpAddress, HostPortFormsAndLocalParts)
{
    struct Case { const char* server; const char* host; quint16 port; };
    const Case cases[] = {
        {" 127.0.0.1:2525 ", "127.0.0.1", 2525},
        {"[::1]:587", "::1", 587},
        {"fe80::1", "fe80::1", 25},
    };
    for (const Case& c : cases) {
        const auto a = relayAddress(QLatin1String(c.server), 25);
        ASSERT_TRUE(a) << c.server;
        EXPECT_EQ(a->host, QLatin1String(c.host)) << c.server;
        EXPECT_EQ(a->port, c.port) << c.server;
    }
    EXPECT_EQ(LocalPart(QStringLiteral("a@b@c")), "a");
}
