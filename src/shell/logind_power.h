// Restart and shut-down of the computer through systemd-logind on the system
// bus. Tests hand it a connection to a private bus with a mock logind, so no
// test can reach the machine's own.
#pragma once

#include <QDBusConnection>
#include <QString>

namespace orm {

class ComputerPower {
public:
    virtual ~ComputerPower() = default;
    // Mode 2 restarts, mode 1 shuts down; other modes do nothing. False when
    // the request was not taken.
    virtual bool ExitComputer(int mode) = 0;
};

class LogindPower final : public ComputerPower {
public:
    // With `systemctlFallback`, a bus without logind on it hands the request
    // to "systemctl reboot" or "systemctl poweroff" instead.
    LogindPower(QDBusConnection bus, bool systemctlFallback);

    bool ExitComputer(int mode) override;
    QString lastError() const { return error_; }

private:
    QDBusConnection bus_;
    bool fallback_;
    QString error_;
};

}  // namespace orm
