// The power module: restart and shut-down through logind, with Qt DBus,
// loaded at the first request.
#include "shell/logind_power.h"
#include "shell/module_power.h"

extern "C" Q_DECL_EXPORT orm::ComputerPower* ormivaneNewComputerPower()
{
    return new orm::LogindPower(QDBusConnection::systemBus(), true);
}
