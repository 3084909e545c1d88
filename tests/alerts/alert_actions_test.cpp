// What a fired rule does: each action through the host, the logging switch
// with its save, and the answers to the question of the first 180 ticks.
#include "alert_world.h"
#include "pump_until.h"

#include <QTcpServer>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

TEST(AlertActions, EachActionGoesToTheHostAndUnknownCodesOnlyComposeTheNotice)
{
    AlertWorld w;
    w.store(0, {50, 0});
    w.add(PlaySound, ExceedsLimit).aSound = QStringLiteral("/tmp/alarm.wav");
    w.add(ShowMessageAction, ExceedsLimit).aMessage = QStringLiteral("Check the fans");
    w.add(ShowMessageAction, ExceedsLimit);
    w.add(PrintGraphAction, ExceedsLimit).aSensor = 1;
    w.add(StartApplication, ExceedsLimit).aApplication = QStringLiteral("/opt/run me.sh");
    w.add(0, ExceedsLimit);
    w.add(9, ExceedsLimit);
    for (Alert& a : w.tester.Alerts)
        a.cLimit = 10;
    w.tester.TestAlerts();
    // The sound starts, then the notice shows the rule's subject.
    EXPECT_EQ(w.host.calls, QStringList({"sound:/tmp/alarm.wav", "message:G0N0 has exceeded 10",
                                         "message:Check the fans", "message:Blank Alert Message", "print:1",
                                         "app:/opt/run me.sh"}));
    EXPECT_EQ(w.tester.AlertMailSubject, "G0N0 has exceeded 10");
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

TEST(AlertActions, NoOrTheTimeOutGoesOnAndClosingFollowsEvenARefusedRequest)
{
    AlertWorld w;
    w.store(0, {50, 0});
    w.add(RestartComputer, ExceedsLimit).cLimit = 10;
    w.TickCount = 1;
    w.host.answerWith = 0;
    w.host.exitAccepted = false;
    w.host.answerLater(AlertAnswerNo, 50);  // the question waits while the event loop runs
    w.tester.TestAlerts();
    EXPECT_EQ(w.host.calls, QStringList({"question:" + exitQuestionText(), "exit:2"}));
    EXPECT_TRUE(w.Closing);
    EXPECT_TRUE(w.tester.Alerts[0].rEnabled);
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
}
