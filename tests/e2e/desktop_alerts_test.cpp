// A person builds an Alert with mouse and keyboard only, played with xdotool
// on the real windows: "Show Alerts" from the tray menu, "Show a message saying
// Hot when Graph (New Graph 1), Node (New Node 1) exceeds" a limit of -1, armed;
// the wizard closes and the message dialog says "Hot". After a restart the
// wizard lists the rule as it was left, and it fires again.
#include "desktop_session.h"

using namespace orm::test;

namespace {

// The sentence as built. A limit of -1 is the unset value, so its link keeps its word.
const QString BuiltSentence =
    QStringLiteral("Show a message saying Hot when Graph (New Graph 1), Node (New Node 1) exceeds Limit1");

class DesktopAlerts : public DesktopWalk {
protected:
    DesktopAlerts() { failureShot = QStringLiteral("desktop-alerts-failure.png"); }

    // "Show Alerts" from the tray icon's menu. A menu that closes at once (the
    // icon just docked, a notice just raised) is opened again, as a person would.
    bool openWizard(WidgetMap& map)
    {
        bool menu = false;
        for (int tries = 0; tries < 4 && !menu; ++tries) {
            if (!click(map, QStringLiteral("trayIcon"), 3))
                return false;
            menu = waitFor([&] { return map.has(QStringLiteral("menu(1104)")); }, 2500);
        }
        if (!click(map, QStringLiteral("menu(1104)")))
            return false;
        return shown(map, QStringLiteral("cmdNewAlert"));
    }
    bool sentenceIs(WidgetMap& map, const QString& text)
    {
        const bool ok = waitFor([&] { return map.text(QStringLiteral("richAlertDesc")) == text; }, 4000);
        if (!ok)
            ADD_FAILURE() << "the sentence reads \"" << qPrintable(map.text(QStringLiteral("richAlertDesc"))) << '"';
        return ok;
    }
    // A link of the sentence opens its dialog; `fill` types into it and Enter is OK.
    bool setLink(WidgetMap& map, const QString& word, const std::function<void()>& fill)
    {
        if (!click(map, QStringLiteral("link(%1)").arg(word)) || !shown(map, QStringLiteral("cmdCancel")))
            return false;
        fill();
        key(QStringLiteral("Return"));
        return waitFor([&] { return !map.has(QStringLiteral("cmdCancel")); }, 3000);
    }
    static bool messageSaysHot(WidgetMap& map)
    {
        return waitFor([&] { return map.text(QStringLiteral("lblTxt")).startsWith(QLatin1String("Hot\n")); }, 3000);
    }
    // Opens a picker and takes its first entry with the keys.
    void pickFirst(WidgetMap& map, const QString& combo)
    {
        click(map, combo);
        key(QStringLiteral("Down"));
        key(QStringLiteral("Return"));
    }
};

TEST_F(DesktopAlerts, ARuleBuiltByHandShowsItsMessageAndSurvivesARestart)
{
    HeadlessRun r;
    WidgetMap map(mapPath(r));
    ASSERT_TRUE(startWithPanel(r, map)) << "no control panel";
    if (!waitFor([&] { return map.has(QStringLiteral("trayIcon")); }, 4000))
        GTEST_SKIP() << "no tray host on this desktop";

    ASSERT_TRUE(openWizard(map));
    ASSERT_TRUE(click(map, QStringLiteral("cmdNewAlert")));
    ASSERT_TRUE(click(map, QStringLiteral("lstAlertOptions(2)")));  // Show a message
    ASSERT_TRUE(sentenceIs(map, QStringLiteral("Show a message saying Message")));
    ASSERT_TRUE(setLink(map, QStringLiteral("Message"), [&] { type(QStringLiteral("Hot")); }));
    ASSERT_TRUE(sentenceIs(map, QStringLiteral("Show a message saying Hot")));

    ASSERT_TRUE(click(map, QStringLiteral("cmdNext")));
    ASSERT_TRUE(click(map, QStringLiteral("lstAlertOptions(0)")));  // when a Node exceeds a limit
    ASSERT_TRUE(sentenceIs(map, QStringLiteral("Show a message saying Hot when Node2 exceeds Limit1")));
    ASSERT_TRUE(setLink(map, QStringLiteral("Node2"), [&] {
        pickFirst(map, QStringLiteral("cmbSensor1"));
        pickFirst(map, QStringLiteral("cmbNode"));
    }));
    ASSERT_TRUE(setLink(map, QStringLiteral("Limit1"), [&] { key(QStringLiteral("ctrl+a")); type(QStringLiteral("-1")); }));
    ASSERT_TRUE(sentenceIs(map, BuiltSentence));
    ASSERT_TRUE(click(map, QStringLiteral("cmdNext")));
    ASSERT_TRUE(click(map, QStringLiteral("lstAlertOptions(8)")));  // [NONE]
    ASSERT_TRUE(sentenceIs(map, BuiltSentence));
    EXPECT_EQ(r.setting(QStringLiteral("Alert1/aMessage")), QStringLiteral("Hot"));
    EXPECT_EQ(r.setting(QStringLiteral("Alert1/cLimit")), QStringLiteral("-1"));
    pause(600);
    snapshot(QStringLiteral("alert-wizard.png"), map.rect(QStringLiteral("frmAlerts")));

    ASSERT_TRUE(click(map, QStringLiteral("cmdNext")));  // Finish
    ASSERT_TRUE(sentenceIs(map, QString()));
    ASSERT_TRUE(click(map, QStringLiteral("lstvwAlerts.check(0)")));
    EXPECT_TRUE(settingBecomes(r, QStringLiteral("Alert1/rEnabled"), QStringLiteral("True")));

    // Closed as a person would: a click on the wizard's title, then Alt+C. The
    // message may already stand over the middle of the screen.
    const QRect wizard = map.rect(QStringLiteral("frmAlerts"));
    ASSERT_TRUE(click(map, QStringLiteral("frmAlerts"), 1, QPoint(wizard.width() / 3, 8)));
    key(QStringLiteral("alt+c"));
    ASSERT_TRUE(waitFor([&] { return !map.has(QStringLiteral("frmAlerts")); }, 3000)) << "the wizard stays open";
    EXPECT_TRUE(messageSaysHot(map)) << "the message reads \"" << qPrintable(map.text(QStringLiteral("lblTxt"))) << '"';
    snapshot(QStringLiteral("alert-message.png"), map.rect(QStringLiteral("frmMessage")));
    ASSERT_TRUE(stop(r));

    // After a restart the wizard lists the rule, armed, with its sentence.
    start(r);
    WidgetMap map2(mapPath(r));
    ASSERT_TRUE(waitFor([&] { return map2.has(QStringLiteral("trayIcon")); }, 6000));
    ASSERT_TRUE(openWizard(map2));
    ASSERT_TRUE(shown(map2, QStringLiteral("lstvwAlerts(0)")));
    EXPECT_EQ(map2.text(QStringLiteral("lstvwAlerts(0)")), QStringLiteral("[x] New Alert 1"));
    EXPECT_FALSE(map2.has(QStringLiteral("lstvwAlerts(1)")));
    ASSERT_TRUE(click(map2, QStringLiteral("lstvwAlerts(0)")));
    EXPECT_TRUE(sentenceIs(map2, BuiltSentence));
    // Armed as it was left, the rule fires again.
    EXPECT_TRUE(messageSaysHot(map2));
    EXPECT_TRUE(stop(r));
}

}  // namespace

int main(int argc, char** argv)
{
    return orm::test::runOnVirtualDesktop(argc, argv);
}
