#include "shell/program_tray.h"

#include "model/version.h"
#include "display/tray_icons.h"
#include "shell/banner_menu.h"

#include <QAction>
#include <QMenu>
#include <QPixmap>

namespace orm {

void runTrayCommand(int id, TrayMenuActions& actions)
{
    switch (id) {
    case TrayShowMain: actions.showMain(); break;
    case TrayStartInSystray: actions.toggleStartInSystray(); break;
    case TrayDisplayToolTips: actions.toggleDisplayToolTips(); break;
    case TrayShowDataTypeErrors: actions.toggleShowDataTypeErrors(); break;
    case TrayShowAlerts: actions.showAlerts(); break;
    case TrayRunAtStartup: actions.toggleRunAtStartup(); break;
    case TrayShowAllHiddenGraphs: actions.showAllHiddenGraphs(); break;
    case TrayAbout: actions.about(); break;
    case TrayExit: actions.exit(); break;
    default: break;
    }
}

TrayMessage trayMessage(const QString& title, const QString& text, int iconFlag)
{
    return {title.left(64), text.left(256), iconFlag};
}

QString programTrayTip()
{
    return QString::fromLatin1(ProductName) + QStringLiteral(" - System and Network Monitor");
}

QImage programIconPicture()
{
    // Three rising bars: green, amber, red (0x00BBGGRR).
    return icoPicture(iconBars3({6, 10, 14}, {0x0000C000, 0x0000B0FF, 0x000000E0}));
}

QIcon programIcon()
{
    return QIcon(QPixmap::fromImage(programIconPicture()));
}

ProgramTray::ProgramTray(const ProgramSettings& settings, TrayMenuActions& actions, QObject* parent)
    : QObject(parent), settings_(settings), actions_(actions), menu_(std::make_unique<BannerMenu>())
{
    const QString product = QString::fromLatin1(ProductName);
    addEntry(TrayShowMain, QStringLiteral("&Show ") + product + QStringLiteral("!"));
    addEntry(TrayShowAlerts, QStringLiteral("Show &Alerts"));
    addEntry(TrayShowAllHiddenGraphs, QStringLiteral("Show all &Hidden Graphs"));
    menu_->addSeparator();
    addEntry(TrayStartInSystray, QStringLiteral("Start in S&ystray"), true);
    addEntry(TrayRunAtStartup, QStringLiteral("&Run at Startup"), true);
    menu_->addSeparator();
    addEntry(TrayDisplayToolTips, QStringLiteral("&Display Tool-Tips"), true);
    addEntry(TrayShowDataTypeErrors, QStringLiteral("Show Data Type &Errors"), true);
    menu_->addSeparator();
    addEntry(TrayAbout, QStringLiteral("About Ormivane"));
    menu_->addSeparator();
    addEntry(TrayExit, QStringLiteral("E&xit"));
    refreshChecks();
    connect(menu_.get(), &QMenu::aboutToShow, this, &ProgramTray::refreshChecks);

    icon_ = std::make_unique<QSystemTrayIcon>(programIcon());
    icon_->setToolTip(programTrayTip());
    icon_->setContextMenu(menu_.get());
    connect(icon_.get(), &QSystemTrayIcon::activated, this, &ProgramTray::activate);
    if (available())
        icon_->show();
}

ProgramTray::~ProgramTray()
{
    icon_.reset();  // the icon lets go of the menu first
}

bool ProgramTray::available()
{
    return QSystemTrayIcon::isSystemTrayAvailable();
}

QAction* ProgramTray::addEntry(int id, const QString& text, bool checkable)
{
    QAction* a = menu_->addAction(text);
    a->setData(id);
    a->setCheckable(checkable);
    // The check mark is the setting's, not the action's own toggle: the
    // panel flips the setting and the next opening shows it.
    connect(a, &QAction::triggered, this, [this, id] {
        runTrayCommand(id, actions_);
        refreshChecks();
    });
    entries_[id] = a;
    return a;
}

QAction* ProgramTray::action(int id) const
{
    const auto it = entries_.find(id);
    return it == entries_.end() ? nullptr : it->second;
}

void ProgramTray::refreshChecks()
{
    entries_.at(TrayStartInSystray)->setChecked(settings_.StartInSystray);
    entries_.at(TrayRunAtStartup)->setChecked(settings_.AutoStart);
    entries_.at(TrayDisplayToolTips)->setChecked(settings_.DisplayToolTips);
    entries_.at(TrayShowDataTypeErrors)->setChecked(settings_.ShowDataTypeErrors);
}

bool ProgramTray::ShowTrayMessage(const QString& title, const QString& text, int iconFlag)
{
    lastMessage_ = trayMessage(title, text, iconFlag);
    if (!available() || !icon_->isVisible())
        return false;
    const auto kind = iconFlag >= 1 && iconFlag <= 3 ? QSystemTrayIcon::MessageIcon(iconFlag)
                                                     : QSystemTrayIcon::NoIcon;
    icon_->showMessage(lastMessage_.title, lastMessage_.text, kind, 10000);
    return true;
}

void ProgramTray::activate(QSystemTrayIcon::ActivationReason reason)
{
    // The right button opens the context menu by itself; a single left click does nothing.
    if (reason == QSystemTrayIcon::DoubleClick)
        actions_.showMain();
}

}  // namespace orm
