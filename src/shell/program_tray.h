// The program's own icon in the notification area: its tip, its balloons, and
// the tray menu, whose commands go to the control panel.
#pragma once

#include "model/settings_store.h"

#include <QIcon>
#include <QImage>
#include <QObject>
#include <QString>
#include <QSystemTrayIcon>
#include <map>
#include <memory>

class QAction;
class QMenu;

namespace orm {

// The tray menu's entries by command id; 0 is a menu closed without a choice.
enum TrayCommand : int {
    TrayShowMain = 1100,
    TrayStartInSystray = 1101,
    TrayDisplayToolTips = 1102,
    TrayShowDataTypeErrors = 1103,
    TrayShowAlerts = 1104,
    TrayRunAtStartup = 1105,
    TrayShowAllHiddenGraphs = 1106,
    TrayAbout = 1110,
    TrayExit = 2000,
};

// What the tray menu asks of the control panel. The toggles flip the setting,
// save the settings and bring the panel's own controls in line.
class TrayMenuActions {
public:
    virtual ~TrayMenuActions() = default;
    virtual void showMain() = 0;                  // "&Show Ormivane!", and a double click on the icon
    virtual void showAlerts() = 0;                // "Show &Alerts": open frmAlerts
    virtual void showAllHiddenGraphs() = 0;       // "Show all &Hidden Graphs"
    virtual void toggleStartInSystray() = 0;      // "Start in S&ystray"
    virtual void toggleRunAtStartup() = 0;        // "&Run at Startup"
    virtual void toggleDisplayToolTips() = 0;     // "&Display Tool-Tips": also re-creates the tool-tips
    virtual void toggleShowDataTypeErrors() = 0;  // "Show Data Type &Errors"
    virtual void about() = 0;                     // "About Ormivane"
    virtual void exit() = 0;                      // "E&xit": sets Closing
};

// Acts on one command id; unknown ids and 0 do nothing.
void runTrayCommand(int id, TrayMenuActions& actions);

// A balloon as the shell takes it: the text cut to 256 characters, the title to 64.
struct TrayMessage {
    QString title;
    QString text;
    int iconFlag = 0;  // 0 none, 1 information, 2 warning, 3 error
};
TrayMessage trayMessage(const QString& title, const QString& text, int iconFlag);

// "Ormivane - " and what the program is.
QString programTrayTip();
// The program's icon, built as a 16 x 16 tray picture (three bars).
QImage programIconPicture();
QIcon programIcon();

class ProgramTray : public QObject {
    Q_OBJECT
public:
    ProgramTray(const ProgramSettings& settings, TrayMenuActions& actions, QObject* parent = nullptr);
    ~ProgramTray() override;

    // False when the desktop has no tray host: the control panel must then stay shown.
    static bool available();

    QSystemTrayIcon* icon() const { return icon_.get(); }
    QMenu* menu() const { return menu_.get(); }
    // The menu entry of a command; null for ids the menu does not hold.
    QAction* action(int id) const;

    // Sets the four check marks from the settings; runs each time the menu opens.
    void refreshChecks();

    // Shows a balloon when a tray host exists; false when it could not be shown.
    bool ShowTrayMessage(const QString& title, const QString& text, int iconFlag = 1);
    const TrayMessage& lastMessage() const { return lastMessage_; }

    // The icon's mouse routes: a double click shows the control panel.
    void activate(QSystemTrayIcon::ActivationReason reason);

private:
    QAction* addEntry(int id, const QString& text, bool checkable = false);

    const ProgramSettings& settings_;
    TrayMenuActions& actions_;
    std::unique_ptr<QMenu> menu_;  // outlives the icon that refers to it
    std::unique_ptr<QSystemTrayIcon> icon_;
    std::map<int, QAction*> entries_;
    TrayMessage lastMessage_;
};

}  // namespace orm
