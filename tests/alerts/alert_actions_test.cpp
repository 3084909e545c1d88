// What a fired rule does: each action through the host, the logging switch
// with its save, the question in the first 180 ticks, and mail to a real relay.
#include "alert_world.h"
#include "smtp_peers.h"

#include <QTcpServer>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

TEST(AlertActions, NoActionCodeDoesNothingThoughTheNoticeIsComposed)
{
    for (qint16 action : {qint16(0), qint16(-1), qint16(9)}) {
        AlertWorld w;
        w.store(0, {50, 0});
        w.add(action, ExceedsLimit).cLimit = 10;
        w.tester.TestAlerts();
        EXPECT_TRUE(w.host.calls.isEmpty()) << action;
        EXPECT_EQ(w.tester.AlertMailSubject, "G0N0 has exceeded 10");
    }
}

TEST(AlertActions, SoundMessagePrintAndApplicationGoToTheHost)
{
    AlertWorld w;
    w.store(0, {50, 0});
    w.add(PlaySound, ExceedsLimit).aSound = QStringLiteral("/tmp/alarm.wav");
    w.add(ShowMessageAction, ExceedsLimit).aMessage = QStringLiteral("Check the fans");
    w.add(ShowMessageAction, ExceedsLimit);
    w.add(PrintGraphAction, ExceedsLimit).aSensor = 1;
    w.add(StartApplication, ExceedsLimit).aApplication = QStringLiteral("/opt/run me.sh");
    for (Alert& a : w.tester.Alerts)
        a.cLimit = 10;
    w.tester.TestAlerts();
    // The sound starts, then the notice shows the rule's subject.
    EXPECT_EQ(w.host.calls, QStringList({"sound:/tmp/alarm.wav", "message:G0N0 has exceeded 10",
                                         "message:Check the fans", "message:Blank Alert Message", "print:1",
                                         "app:/opt/run me.sh"}));
    // Every tick the rule holds, the sound starts again and the notice gains a line.
    w.host.calls.clear();
    w.tester.Alerts.resize(1);
    w.tester.TestAlerts();
    w.tester.TestAlerts();
    EXPECT_EQ(w.host.calls.filter("sound:").size(), 2);
    EXPECT_EQ(w.host.calls.filter("message:").size(), 2);
}

TEST(AlertActions, LoggingSwitchSetsTheNodeAndSavesOnEveryFiring)
{
    AlertWorld w;
    w.store(0, {50, 0});
    w.Sensors[1].Nodes[1].LogData = true;
    Alert& stop = w.add(SwitchLogging, ExceedsLimit);
    stop.cLimit = 10;
    stop.aSensor = 1;
    stop.aNode = 1;
    stop.aStartLogging = false;
    w.tester.TestAlerts();
    EXPECT_FALSE(w.Sensors[1].Nodes[1].LogData);
    EXPECT_EQ(w.saves, 1);
    w.tester.TestAlerts();
    EXPECT_EQ(w.saves, 2);

    w.tester.Alerts[0].aStartLogging = true;
    w.tester.TestAlerts();
    EXPECT_TRUE(w.Sensors[1].Nodes[1].LogData);

    // A Node that no longer exists: nothing changes, nothing is saved.
    w.tester.Alerts[0].aNode = 5;
    w.tester.TestAlerts();
    w.tester.Alerts[0].aSensor = -1;
    w.tester.TestAlerts();
    EXPECT_EQ(w.saves, 3);
}

TEST(AlertActions, RestartInTheFirst180TicksAsksAndYesDisablesTheRule)
{
    AlertWorld w;
    w.store(0, {50, 0});
    w.add(RestartComputer, ExceedsLimit).cLimit = 10;
    w.TickCount = 179;
    w.host.answerWith = AlertAnswerYes;
    w.tester.TestAlerts();
    EXPECT_EQ(w.host.calls, QStringList({"question:" + exitQuestionText()}));
    EXPECT_FALSE(w.tester.Alerts[0].rEnabled);
    EXPECT_FALSE(w.Closing);
    EXPECT_EQ(exitQuestionText(),
              "\r\nOne of your Alerts may not be set up correctly and is\r\n"
              "already trying to Restart your computer. Would you like to disable this Alert?\r\n\r\n"
              "This Alert Action will continue in 60 seconds if not response is given.\r\n\r\n");
}

TEST(AlertActions, NoOrTheTimeOutGoesOnAndClosingFollowsEvenARefusedRequest)
{
    for (qint16 action : {qint16(RestartComputer), qint16(ShutDownComputer)}) {
        AlertWorld w;
        w.store(0, {50, 0});
        w.add(action, ExceedsLimit).cLimit = 10;
        w.TickCount = 1;
        w.host.answerWith = 0;
        w.host.answerLater(AlertAnswerNo, 50);  // the question waits while the event loop runs
        w.host.exitAccepted = false;
        w.tester.TestAlerts();
        const QString mode = action == RestartComputer ? "2" : "1";
        EXPECT_EQ(w.host.calls, QStringList({"question:" + exitQuestionText(), "exit:" + mode}));
        EXPECT_TRUE(w.Closing);
        EXPECT_TRUE(w.tester.Alerts[0].rEnabled);
    }
}

TEST(AlertActions, From180TicksOnThereIsNoQuestion)
{
    AlertWorld w;
    w.store(0, {50, 0});
    w.add(ShutDownComputer, ExceedsLimit).cLimit = 10;
    w.TickCount = 180;
    w.tester.TestAlerts();
    EXPECT_EQ(w.host.calls, QStringList({"exit:1"}));
    EXPECT_TRUE(w.Closing);
}

TEST(AlertActions, ClosingWhileTheQuestionIsUpDoesNotEndTheSession)
{
    AlertWorld w;
    w.store(0, {50, 0});
    w.add(RestartComputer, ExceedsLimit).cLimit = 10;
    w.TickCount = 0;
    w.host.answerWith = 0;
    QTimer::singleShot(50, [&] { w.Closing = true; });
    w.tester.TestAlerts();
    EXPECT_EQ(w.host.calls.filter("exit:").size(), 0);
}

TEST(AlertMail, NoRelayOrNoSenderOpensNoConnection)
{
    QTcpServer listener;
    ASSERT_TRUE(listener.listen(QHostAddress::LocalHost));
    int connections = 0;
    QObject::connect(&listener, &QTcpServer::newConnection, [&] { ++connections; });
    AlertWorld w;
    w.store(0, {50, 0});
    w.add(SendEmail, ExceedsLimit).cLimit = 10;
    w.tester.mail.MailSenderEMail = QStringLiteral("box@example.org");
    w.tester.TestAlerts();
    w.tester.mail.SMTPServer = QStringLiteral("127.0.0.1:") + QString::number(listener.serverPort());
    w.tester.mail.MailSenderEMail.clear();
    w.tester.TestAlerts();
    pumpUntil([] { return false; }, 200);
    EXPECT_EQ(connections, 0);
    EXPECT_EQ(w.tester.VDSMTPRelay1.SMTPState(), SmtpFinished);
}

TEST(AlertMail, FiredRuleMailsItsNoticeToTheRecipient)
{
    SmtpSink sink("plain");
    ASSERT_NE(sink.port(), 0) << qPrintable(sink.error());
    AlertWorld w;
    w.store(0, {3.25, 0});
    Alert& a = w.add(SendEmail, ExceedsLimit);
    a.cLimit = -1;
    a.aEmailAddress = QStringLiteral("admin@example.org");
    w.tester.mail.SMTPServer = QStringLiteral("127.0.0.1:") + QString::number(sink.port());
    w.tester.mail.MailSenderName = QStringLiteral("Build Box");
    w.tester.mail.MailSenderEMail = QStringLiteral("box@example.org");
    w.tester.TestAlerts();
    w.tester.TestAlerts();
    ASSERT_TRUE(sink.waitForMessages(2));
    const QJsonObject m = sink.messages().front();
    EXPECT_EQ(m.value("rcpt_tos").toArray().first().toString(), "admin@example.org");
    EXPECT_EQ(m.value("content").toString(),
              "DATE: 05 03 2026 09:07:41\r\n"
              "FROM: Build Box <box@example.org>\r\n"
              "TO: Ormivane <admin@example.org>\r\n"
              "SUBJECT: G0N0 has exceeded -1\r\n\r\n"
              "This is an automated email from Ormivane\r\n\r\n"
              "G0N0 has exceeded your limit of -1\r\n\r\n"
              "G0N0 has a current value of 3.25\r\n");
}
