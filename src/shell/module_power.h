// Restart and shut-down in a run that may never ask for them: the power
// module, and with it Qt DBus and the system bus, is loaded at the first request.
#pragma once

#include "model/module_library.h"
#include "shell/logind_power.h"

#include <memory>
#include <optional>

namespace orm {

// The power module's entry: a LogindPower on the system bus, with systemctl behind it.
inline constexpr char NewComputerPowerEntry[] = "ormivaneNewComputerPower";

class ModulePower final : public ComputerPower {
public:
    ~ModulePower() override;
    bool ExitComputer(int mode) override;

private:
    std::optional<ModuleLibrary> module_;
    std::unique_ptr<ComputerPower> power_;
};

}  // namespace orm
