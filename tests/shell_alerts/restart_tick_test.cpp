// A restart rule read from the settings file at start-up and tested in the
// tick: at the 180th tick it goes straight to the mock logind; before, the
// window asks, and Yes switches the rule off.
#include "answering_window.h"
#include "settings_file_monitor.h"

#include <QSettings>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

// A CPU Graph and a rule that restarts the computer when its Node exceeds -1,
// in the settings file a start reads.
struct RestartProgram : WindowAndLogind {
    SettingsFileMonitor program;
    HistoryViewFactory views;

    RestartProgram()
    {
        QSettings s(program.settingsFile, QSettings::IniFormat);
        s.beginGroup(QStringLiteral("Settings"));
        for (const auto& [k, v] : std::initializer_list<std::pair<const char*, const char*>>{
                 {"FirstRun", "False"}, {"Sensors", "1"}, {"Sensor1/Nodes", "1"}, {"Sensor1/Node1/NodeType", "5"},
                 {"Sensor1/SampleEverySeconds", "1"}, {"Alerts", "1"}, {"Alert1/rAction", "7"},
                 {"Alert1/rCondition", "1"}, {"Alert1/cSensor", "0"}, {"Alert1/cNode", "0"}, {"Alert1/cLimit", "-1"}})
            s.setValue(QLatin1String(k), QLatin1String(v));
    }
    bool start(double ticksBefore)
    {
        if (!program.start(views))
            return false;
        program.monitor->alertTester.setHost(&host);
        program.monitor->TickCount = ticksBefore;
        return true;
    }
};

}  // namespace

TEST(RestartInTheTick, The180thTickRestartsWithoutAsking)
{
    RestartProgram p;
    ASSERT_TRUE(p.logind.ready());
    ASSERT_TRUE(p.start(179));
    ASSERT_EQ(p.program.monitor->alertTester.Alerts.size(), 1u);
    p.program.monitor->TimerData();
    EXPECT_EQ(p.program.monitor->TickCount, 180);
    EXPECT_TRUE(p.logind.waitForCall(QStringLiteral("Reboot")));
    EXPECT_TRUE(p.asked.isEmpty());
    EXPECT_FALSE(p.dialog.isVisible());
    EXPECT_TRUE(p.program.monitor->Closing);
}

TEST(RestartInTheTick, The179thTickAsksAndYesSwitchesTheRuleOff)
{
    RestartProgram p;
    ASSERT_TRUE(p.logind.ready());
    ASSERT_TRUE(p.start(178));
    p.answerWith(p.dialog.yesButton());
    p.program.monitor->TimerData();
    EXPECT_TRUE(p.asked.contains("Would you like to disable this Alert?"));
    EXPECT_FALSE(p.program.monitor->alertTester.Alerts[0].rEnabled);
    EXPECT_FALSE(p.program.monitor->Closing);
    // The tick goes on: later ticks find the rule off, and nothing reached logind.
    p.program.monitor->TimerData();
    p.program.monitor->TimerData();
    EXPECT_EQ(p.program.monitor->TickCount, 181);
    EXPECT_TRUE(p.logind.calls().isEmpty());
}
