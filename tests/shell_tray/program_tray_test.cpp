#include "shell/program_tray.h"

#include <QAction>
#include <QMenu>
#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// Records each call; flips StartInSystray as the panel would.
struct FakeActions : TrayMenuActions {
    explicit FakeActions(ProgramSettings& s) : settings(s) {}
    ProgramSettings& settings;
    QStringList calls;
    void showMain() override { calls << "showMain"; }
    void showAlerts() override { calls << "showAlerts"; }
    void showAllHiddenGraphs() override { calls << "hidden"; }
    void toggleStartInSystray() override { calls << "systray"; settings.StartInSystray = !settings.StartInSystray; }
    void toggleRunAtStartup() override { calls << "startup"; }
    void toggleDisplayToolTips() override { calls << "tips"; }
    void toggleShowDataTypeErrors() override { calls << "errors"; }
    void about() override { calls << "about"; }
    void exit() override { calls << "exit"; }
};

}  // namespace

TEST(ProgramTray, MenuEntriesAndCheckMarksFollowTheSettings)
{
    ProgramSettings settings;
    settings.StartInSystray = true;
    settings.AutoStart = false;
    settings.DisplayToolTips = false;
    settings.ShowDataTypeErrors = true;
    FakeActions actions(settings);
    ProgramTray tray(settings, actions);

    QStringList texts;
    QStringList checked;
    int checkable = 0;
    for (QAction* a : tray.menu()->actions()) {
        texts << (a->isSeparator() ? QStringLiteral("-") : a->text());
        checkable += a->isCheckable();
        if (a->isChecked())
            checked << a->text();
    }
    EXPECT_EQ(texts, QStringList({"&Show Ormivane!", "Show &Alerts", "Show all &Hidden Graphs", "-",
                                  "Start in S&ystray", "&Run at Startup", "-", "&Display Tool-Tips",
                                  "Show Data Type &Errors", "-", "About Ormivane", "-", "E&xit"}));
    EXPECT_EQ(checkable, 4);
    EXPECT_EQ(checked, QStringList({"Start in S&ystray", "Show Data Type &Errors"}));

    // Settings changed elsewhere (the panel's check boxes) show at the next opening.
    settings.StartInSystray = false;
    settings.AutoStart = true;
    settings.DisplayToolTips = true;
    emit tray.menu()->aboutToShow();
    EXPECT_FALSE(tray.action(TrayStartInSystray)->isChecked());
    EXPECT_TRUE(tray.action(TrayRunAtStartup)->isChecked());
    EXPECT_TRUE(tray.action(TrayDisplayToolTips)->isChecked());

    EXPECT_TRUE(tray.icon()->toolTip().startsWith("Ormivane - "));
    EXPECT_FALSE(tray.icon()->icon().isNull());
}

TEST(ProgramTray, CommandsReachTheActions)
{
    ProgramSettings settings;
    FakeActions actions(settings);
    ProgramTray tray(settings, actions);

    const int ids[] = {TrayShowMain, TrayShowAlerts, TrayShowAllHiddenGraphs, TrayStartInSystray,
                       TrayRunAtStartup, TrayDisplayToolTips, TrayShowDataTypeErrors, TrayAbout, TrayExit};
    for (int id : ids)
        tray.action(id)->trigger();
    EXPECT_EQ(actions.calls,
              QStringList({"showMain", "showAlerts", "hidden", "systray", "startup", "tips", "errors", "about", "exit"}));

    // The mark is the setting's: flipped by the panel it shows, left alone it does not.
    EXPECT_TRUE(tray.action(TrayStartInSystray)->isChecked());
    EXPECT_EQ(tray.action(TrayRunAtStartup)->isChecked(), settings.AutoStart);

    // A menu closed without a choice, or an id of another menu, does nothing.
    actions.calls.clear();
    runTrayCommand(0, actions);
    runTrayCommand(1001, actions);
    EXPECT_EQ(tray.action(1001), nullptr);

    // Mouse routes: only the double click shows the panel.
    tray.activate(QSystemTrayIcon::Trigger);
    tray.activate(QSystemTrayIcon::Context);
    tray.activate(QSystemTrayIcon::MiddleClick);
    EXPECT_TRUE(actions.calls.isEmpty());
    tray.activate(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(actions.calls, QStringList({"showMain"}));
}

TEST(ProgramTray, MessagesAreCutToWhatTheShellHolds)
{
    const QString title64(64, QChar('t'));
    const QString text256(256, QChar('x'));
    TrayMessage m = trayMessage(title64 + "extra", text256 + "more", 2);
    EXPECT_EQ(m.title, title64);
    EXPECT_EQ(m.text, text256);
    EXPECT_EQ(m.iconFlag, 2);

    // Without a tray host the balloon cannot show, but what was asked is kept cut.
    ProgramSettings settings;
    FakeActions actions(settings);
    ProgramTray tray(settings, actions);
    const bool shown = tray.ShowTrayMessage(title64 + "!", text256 + "!", 1);
    EXPECT_EQ(shown, ProgramTray::available());
    EXPECT_EQ(tray.lastMessage().title.size(), 64);
    EXPECT_EQ(tray.lastMessage().text.size(), 256);
}
