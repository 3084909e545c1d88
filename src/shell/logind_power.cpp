#include "shell/logind_power.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QProcess>

namespace orm {

LogindPower::LogindPower(QDBusConnection bus, bool systemctlFallback)
    : bus_(std::move(bus)), fallback_(systemctlFallback)
{
}

bool LogindPower::ExitComputer(int mode)
{
    if (mode != 1 && mode != 2)
        return false;
    const bool restart = mode == 2;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), restart ? QStringLiteral("Reboot") : QStringLiteral("PowerOff"));
    call << false;  // not interactive: no password prompt
    if (bus_.isConnected()) {
        const QDBusMessage answer = bus_.call(call, QDBus::Block, 10000);
        if (answer.type() == QDBusMessage::ReplyMessage) {
            error_.clear();
            return true;
        }
        error_ = answer.errorName() + QStringLiteral(": ") + answer.errorMessage();
        const bool noLogind = answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
                              answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
        if (!noLogind)
            return false;
    } else {
        error_ = bus_.lastError().message();
    }
    if (!fallback_)
        return false;
    return QProcess::startDetached(QStringLiteral("systemctl"),
                                   {restart ? QStringLiteral("reboot") : QStringLiteral("poweroff")});
}

}  // namespace orm
