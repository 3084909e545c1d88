// A restart rule read from the settings file at start-up and tested in the
// tick: at the 180th tick it goes straight to the mock logind; before, the
// window asks: Yes switches the rule off, No goes ahead.
#include "mock_logind.h"
#include "settings_file_monitor.h"
#include "shell/alert_sound.h"
#include "shell/logind_power.h"
#include "shell/message_dialog.h"
#include "shell/program_alert_host.h"

#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

class SilentSound final : public SoundPlayer {
public:
    void play(const QString&, bool) override {}
    void stop() override {}
};

// A CPU Graph and a rule that restarts the computer when its Node exceeds -1,
// in the settings file a start reads; the window, logind on a private bus,
// and the user at the window.
struct RestartProgram {
    MockLogind logind;
    LogindPower power{logind.connection(), false};
    SilentSound sound;
    MessageDialog dialog;
    ProgramAlertHost host{power, sound};
    QString asked;  // the question, once the user has seen it
    SettingsFileMonitor program;
    HistoryViewFactory views;

    RestartProgram()
    {
        host.setDialog(&dialog);
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
        if (!logind.ready() || !program.start(views))
            return false;
        program.monitor->alertTester.setHost(&host);
        program.monitor->TickCount = ticksBefore;
        return true;
    }
    // Clicks `button` once the window asks.
    void answerWith(QPushButton* button)
    {
        auto* poll = new QTimer(&dialog);
        QObject::connect(poll, &QTimer::timeout, &dialog, [this, button, poll] {
            if (dialog.isVisible() && dialog.AwaitingAnswer()) {
                asked = dialog.text();
                button->click();
                poll->deleteLater();
            }
        });
        poll->start(10);
    }
};

}  // namespace

TEST(RestartInTheTick, The180thTickRestartsWithoutAsking)
{
    RestartProgram p;
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
    ASSERT_TRUE(p.start(178));
    p.answerWith(p.dialog.yesButton());
    p.program.monitor->TimerData();
    EXPECT_TRUE(p.asked.contains("already trying to Restart your computer. Would you like to disable this Alert?"));
    EXPECT_FALSE(p.program.monitor->alertTester.Alerts[0].rEnabled);
    EXPECT_FALSE(p.program.monitor->Closing);
    // The tick goes on: later ticks find the rule off, and nothing reached logind.
    p.program.monitor->TimerData();
    p.program.monitor->TimerData();
    EXPECT_EQ(p.program.monitor->TickCount, 181);
    EXPECT_TRUE(p.logind.calls().isEmpty());
}

TEST(RestartRule, ShutDownBefore180TicksAnsweredNoPowersOff)
{
    RestartProgram p;
    ASSERT_TRUE(p.start(2));
    p.program.monitor->alertTester.Alerts[0].rAction = ShutDownComputer;
    p.answerWith(p.dialog.noButton());
    p.program.monitor->TimerData();
    EXPECT_FALSE(p.asked.isEmpty());
    EXPECT_TRUE(p.logind.waitForCall(QStringLiteral("PowerOff")));
    EXPECT_TRUE(p.program.monitor->alertTester.Alerts[0].rEnabled);
    EXPECT_TRUE(p.program.monitor->Closing);
}
