// Alerts in a headless run, as a user sets them up: after a first start, rules
// and mail settings go into the settings file, and the next run acts on them.
// Mail goes to aiosmtpd on loopback.
#include "run_headless.h"
#include "smtp_peers.h"

#include <gtest/gtest.h>

using namespace orm::test;

namespace {

// A first start makes Graph 1 with the CPU Node "New Node 1"; it then samples every second.
void firstStart(HeadlessRun& run)
{
    run.start(1, {});
    ASSERT_TRUE(run.finish());
    run.writeSettings({{"Sensor1/SampleEverySeconds", "1"}});
}

std::map<QString, QString> mailRule(quint16 port)
{
    return {{"Alerts", "1"}, {"Alert1/rEnabled", "True"}, {"Alert1/rAction", "1"}, {"Alert1/rCondition", "1"},
            {"Alert1/rException", "0"}, {"Alert1/cSensor", "0"}, {"Alert1/cNode", "0"}, {"Alert1/cLimit", "-1"},
            {"Alert1/aEmailAddress", "admin@example.org"}, {"SMTPServer", "127.0.0.1:" + QString::number(port)},
            {"MailSenderName", "Build Box"}, {"MailSenderEMail", "box@example.org"}};
}

}  // namespace

TEST(HeadlessAlerts, ExceedsMinusOneMailsOncePerTickWithTheHeadersAsWritten)
{
    SmtpSink sink("plain");
    ASSERT_NE(sink.port(), 0) << qPrintable(sink.error());
    HeadlessRun run;
    firstStart(run);
    run.writeSettings(mailRule(sink.port()));
    run.start(4, {});
    ASSERT_TRUE(run.finish());
    EXPECT_EQ(run.valueLines().size(), 1 + 4);
    ASSERT_TRUE(sink.waitForMessages(4));
    const auto mails = sink.messages();
    EXPECT_EQ(mails.size(), 4u);
    // The mail's text is the mail tests' business: here, the Node and limit of the settings reach it.
    for (const QJsonObject& m : mails) {
        EXPECT_TRUE(m.value("content").toString().contains("\r\nSUBJECT: New Node 1 has exceeded -1\r\n"))
            << qPrintable(m.value("content").toString());
        EXPECT_EQ(m.value("mail_from").toString(), "box@example.org");
        EXPECT_EQ(m.value("rcpt_tos").toArray().first().toString(), "admin@example.org");
    }
}

TEST(HeadlessAlerts, LoginGoesAsEhloWithTheLocalPartAndAuthLogin)
{
    SmtpSink sink("auth");
    ASSERT_NE(sink.port(), 0) << qPrintable(sink.error());
    HeadlessRun run;
    firstStart(run);
    auto rule = mailRule(sink.port());
    rule["SMTPAuthUser"] = "alice@mail.example.org";
    rule["SMTPAuthPass"] = "s3cr\u00e9t; \"quoted\" = #1";
    run.writeSettings(rule);
    run.start(1, {});
    ASSERT_TRUE(run.finish());
    ASSERT_TRUE(sink.waitForMessages(1));
    const QJsonObject m = sink.messages().front();
    EXPECT_EQ(m.value("greeting").toString(), "EHLO");
    EXPECT_EQ(m.value("login").toString(), "alice@mail.example.org");
    EXPECT_EQ(m.value("password").toString(), "s3cr\u00e9t; \"quoted\" = #1");
    // The password stays in the file as it was.
    EXPECT_EQ(run.setting("SMTPAuthPass"), "s3cr\u00e9t; \"quoted\" = #1");
}

TEST(HeadlessAlerts, StartLoggingRuleFlipsLogDataInTheFileAndTheHeaderFollowsOnTheNextTick)
{
    HeadlessRun run;
    firstStart(run);
    run.writeSettings({{"Sensor1/Nodes", "2"}, {"Sensor1/Node2/Name", "Memory"}, {"Sensor1/Node2/NodeType", "6"},
                       {"Sensor1/Node2/LogData", "False"}, {"Alerts", "1"}, {"Alert1/rAction", "4"},
                       {"Alert1/rCondition", "1"}, {"Alert1/cSensor", "0"}, {"Alert1/cNode", "0"},
                       {"Alert1/cLimit", "-1"}, {"Alert1/aSensor", "0"}, {"Alert1/aNode", "1"},
                       {"Alert1/aStartLogging", "True"}});
    const int before = int(run.lines().size());
    run.start(3, {});
    ASSERT_TRUE(run.finish());
    EXPECT_EQ(run.setting("Sensor1/Node2/LogData"), "True");
    // This run: a header without the memory columns, one line, then a header with them.
    const QStringList lines = run.lines().mid(before);
    QStringList fieldLines;
    int valuesBeforeSecondHeader = 0;
    for (const QString& l : lines) {
        if (l.startsWith("#Fields: "))
            fieldLines << l;
        else if (!l.startsWith('#') && fieldLines.size() == 1)
            ++valuesBeforeSecondHeader;
    }
    ASSERT_EQ(fieldLines.size(), 2) << qPrintable(lines.join('\n'));
    EXPECT_EQ(valuesBeforeSecondHeader, 1);
    EXPECT_GT(fieldLines[1].count(','), fieldLines[0].count(','));
    EXPECT_EQ(run.valueLines().size(), 1 + 3);
}
