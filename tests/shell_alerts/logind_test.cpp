// Restart and shut-down reach a mock logind on a private bus, never the machine.
#include "mock_logind.h"
#include "shell/logind_power.h"

#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

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

    // A bus without logind refuses when no fallback is allowed.
    QDBusConnection empty = QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/bus"),
                                                          QStringLiteral("no-bus"));
    LogindPower nowhere(empty, false);
    EXPECT_FALSE(nowhere.ExitComputer(2));
    EXPECT_FALSE(nowhere.lastError().isEmpty());
    QDBusConnection::disconnectFromBus(QStringLiteral("no-bus"));
}
