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

TEST(ProgramTray, MenuEntriesMarksAndCommands)
{
    ProgramSettings settings;
    settings.StartInSystray = true;
    settings.AutoStart = false;
    settings.DisplayToolTips = false;
    settings.ShowDataTypeErrors = true;
    FakeActions actions(settings);
    ProgramTray tray(settings, actions);
    QStringList texts;
    for (QAction* a : tray.menu()->actions())
        texts << (a->isSeparator() ? QStringLiteral("-") : a->text() + (a->isChecked() ? "+" : ""));
    EXPECT_EQ(texts, QStringList({"&Show Ormivane!", "Show &Alerts", "Show all &Hidden Graphs", "-",
                                  "Start in S&ystray+", "&Run at Startup", "-", "&Display Tool-Tips",
                                  "Show Data Type &Errors+", "-", "About Ormivane", "-", "E&xit"}));
    EXPECT_TRUE(tray.icon()->toolTip().startsWith("Ormivane - "));
    settings.AutoStart = true;  // changed by the panel: shown at the next opening
    emit tray.menu()->aboutToShow();
    EXPECT_TRUE(tray.action(TrayRunAtStartup)->isChecked());

    for (int id : {TrayShowMain, TrayShowAlerts, TrayShowAllHiddenGraphs, TrayStartInSystray, TrayRunAtStartup,
                   TrayDisplayToolTips, TrayShowDataTypeErrors, TrayAbout, TrayExit})
        tray.action(id)->trigger();
    EXPECT_EQ(actions.calls,
              QStringList({"showMain", "showAlerts", "hidden", "systray", "startup", "tips", "errors", "about", "exit"}));
    // The mark is the setting's: flipped by the panel it shows, left alone it does not.
    EXPECT_FALSE(tray.action(TrayStartInSystray)->isChecked());
    EXPECT_TRUE(tray.action(TrayRunAtStartup)->isChecked());

    // A menu closed without a choice, an id of another menu, or any click but the double does nothing.
    actions.calls.clear();
    runTrayCommand(0, actions);
    runTrayCommand(1001, actions);
    tray.activate(QSystemTrayIcon::Trigger);
    tray.activate(QSystemTrayIcon::Context);
    tray.activate(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(actions.calls, QStringList({"showMain"}));

    // Balloons are cut to what the shell holds.
    EXPECT_EQ(tray.ShowTrayMessage(QString(64, 't') + "!", QString(256, 'x') + "!", 1), ProgramTray::available());
    EXPECT_EQ(tray.lastMessage().title, QString(64, 't'));
    EXPECT_EQ(tray.lastMessage().text, QString(256, 'x'));
}
