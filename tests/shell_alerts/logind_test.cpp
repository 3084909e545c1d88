// Restart and shut-down reach a mock logind on a private bus, never the machine.
#include "mock_logind.h"
#include "shell/logind_power.h"

#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

// Reboot and PowerOff reaching the mock are the restart tests' business (restart_tick_test).
TEST(LogindPower, OtherModesAndABusWithoutLogindDoNothing)
{
    MockLogind logind;
    ASSERT_TRUE(logind.ready());
    LogindPower power(logind.connection(), false);
    EXPECT_FALSE(power.ExitComputer(0));
    EXPECT_FALSE(power.ExitComputer(8));
    EXPECT_TRUE(logind.calls().isEmpty());

    // A bus without logind refuses when no fallback is allowed.
    QDBusConnection empty = QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/bus"),
                                                          QStringLiteral("no-bus"));
    LogindPower nowhere(empty, false);
    EXPECT_FALSE(nowhere.ExitComputer(2));
    EXPECT_FALSE(nowhere.lastError().isEmpty());
    QDBusConnection::disconnectFromBus(QStringLiteral("no-bus"));
}
