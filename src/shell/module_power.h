// Restart and shut-down in a run that may never ask for them: the power
// module, and with it Qt DBus and the system bus, is loaded at the first request.
#pragma once

#include "model/module_library.h"
#include "shell/logind_power.h"

namespace orm {

// The power module's entry: a LogindPower on the system bus, with systemctl behind it.
inline constexpr char NewComputerPowerEntry[] = "ormivaneNewComputerPower";

class ModulePower final : public ComputerPower {
public:
    bool ExitComputer(int mode) override
    {
        ComputerPower* power = power_.get();
        return power && power->ExitComputer(mode);
    }

private:
    ModuleObject<ComputerPower> power_{"ormivane_power", NewComputerPowerEntry, "cannot restart or shut down"};
};

}  // namespace orm
