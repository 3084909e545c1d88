// A private D-Bus bus with python3-dbusmock's logind on it, started by the
// test: restart and shut-down requests land there, never on the machine.
#pragma once

#include "pump_until.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace orm::test {

class MockLogind {
public:
    MockLogind()
    {
        bus_.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1"),
                    QStringLiteral("--address=unix:dir=") + dir_.path()});
        if (!bus_.waitForStarted(5000) || !pumpUntil([this] { return bus_.canReadLine(); }))
            return;
        const QString address = QString::fromUtf8(bus_.readLine()).trimmed();

        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), address);
        mock_.setProcessEnvironment(env);
        mock_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        mock_.start(QStringLiteral("/usr/bin/python3"),
                    {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--system"),
                     QStringLiteral("-t"), QStringLiteral("logind"), QStringLiteral("-l"), logFile()});
        mock_.waitForStarted(5000);
        connection_ = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(address, QStringLiteral("mock-logind-%1").arg(quintptr(this))));
        ready_ = connection_->isConnected() && pumpUntil([this] {
                     return connection_->interface()->isServiceRegistered(QStringLiteral("org.freedesktop.login1"))
                         .value();
                 });
    }
    ~MockLogind()
    {
        if (connection_)
            QDBusConnection::disconnectFromBus(connection_->name());
        for (QProcess* p : {&mock_, &bus_}) {
            p->terminate();
            if (!p->waitForFinished(3000))
                p->kill();
            p->waitForFinished(2000);
        }
    }

    bool ready() const { return ready_; }
    QDBusConnection connection() const { return *connection_; }

    // The logind methods called so far, by name ("Reboot", "PowerOff").
    QStringList calls() const
    {
        QStringList out;
        QFile f(logFile());
        if (f.open(QIODevice::ReadOnly))
            for (const QByteArray& line : f.readAll().split('\n'))
                if (const QList<QByteArray> words = line.split(' '); words.size() >= 2)
                    out << QString::fromUtf8(words[1]);
        return out;
    }
    bool waitForCall(const QString& method, int ms = 5000) const
    {
        return pumpUntil([&] { return calls().contains(method); }, ms);
    }

private:
    QString logFile() const { return dir_.filePath(QStringLiteral("logind.log")); }
    QTemporaryDir dir_;
    QProcess bus_;
    QProcess mock_;
    std::unique_ptr<QDBusConnection> connection_;
    bool ready_ = false;
};

}  // namespace orm::test
