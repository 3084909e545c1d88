// Restart and shut-down reach a mock logind on a private bus: directly, and
// from a fired rule, with the question of the first 180 ticks on the window.
#include "alert_world.h"
#include "answering_window.h"

#include <QPushButton>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

// A rule that restarts the computer when Node 0 of Graph 0 exceeds 10.
struct RestartRule : WindowAndLogind {
    AlertWorld world;

    explicit RestartRule(double tickCount)
    {
        world.tester.setHost(&host);
        world.TickCount = tickCount;
        world.store(0, {50, 0});
        world.add(RestartComputer, ExceedsLimit).cLimit = 10;
    }
};

}  // namespace

TEST(LogindPower, RebootAndPowerOffReachTheMockAndOtherModesDoNothing)
{
    MockLogind logind;
    ASSERT_TRUE(logind.ready());
    LogindPower power(logind.connection(), false);
    EXPECT_FALSE(power.ExitComputer(0));
    EXPECT_FALSE(power.ExitComputer(8));
    EXPECT_TRUE(logind.calls().isEmpty());
    EXPECT_TRUE(power.ExitComputer(2)) << qPrintable(power.lastError());
    EXPECT_TRUE(logind.waitForCall(QStringLiteral("Reboot")));
    EXPECT_TRUE(power.ExitComputer(1));
    EXPECT_TRUE(logind.waitForCall(QStringLiteral("PowerOff")));
    EXPECT_EQ(logind.calls(), QStringList({"Reboot", "PowerOff"}));
}

TEST(LogindPower, BusWithoutLogindRefusesWhenNoFallbackIsAllowed)
{
    MockLogind logind;
    ASSERT_TRUE(logind.ready());
    QDBusConnection empty = QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/bus"),
                                                          QStringLiteral("no-bus"));
    LogindPower power(empty, false);
    EXPECT_FALSE(power.ExitComputer(2));
    EXPECT_FALSE(power.lastError().isEmpty());
    QDBusConnection::disconnectFromBus(QStringLiteral("no-bus"));
}

TEST(RestartRule, From180TicksOnItRestartsWithNoQuestion)
{
    RestartRule rule(180);
    ASSERT_TRUE(rule.logind.ready());
    rule.world.tester.TestAlerts();
    EXPECT_TRUE(rule.logind.waitForCall(QStringLiteral("Reboot")));
    EXPECT_FALSE(rule.dialog.isVisible());
    EXPECT_TRUE(rule.world.Closing);
}

TEST(RestartRule, Before180TicksItAsksAndYesDisablesIt)
{
    RestartRule rule(179);
    ASSERT_TRUE(rule.logind.ready());
    rule.answerWith(rule.dialog.yesButton());
    rule.world.tester.TestAlerts();
    EXPECT_TRUE(rule.asked.contains("already trying to Restart your computer"));
    EXPECT_FALSE(rule.world.tester.Alerts[0].rEnabled);
    EXPECT_FALSE(rule.world.Closing);
    // The next tick finds it switched off.
    rule.world.tester.TestAlerts();
    EXPECT_TRUE(rule.logind.calls().isEmpty());
}

TEST(RestartRule, ShutDownBefore180TicksAnsweredNoPowersOff)
{
    RestartRule rule(3);
    ASSERT_TRUE(rule.logind.ready());
    rule.world.tester.Alerts[0].rAction = ShutDownComputer;
    rule.answerWith(rule.dialog.noButton());
    rule.world.tester.TestAlerts();
    EXPECT_TRUE(rule.logind.waitForCall(QStringLiteral("PowerOff")));
    EXPECT_TRUE(rule.world.tester.Alerts[0].rEnabled);
    EXPECT_TRUE(rule.world.Closing);
}
