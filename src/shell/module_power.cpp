#include "shell/module_power.h"

namespace orm {

ModulePower::~ModulePower()
{
    power_.reset();  // before its module goes
}

bool ModulePower::ExitComputer(int mode)
{
    if (!module_) {
        module_.emplace("ormivane_power");
        power_.reset(module_->make<ComputerPower>(NewComputerPowerEntry, "cannot restart or shut down"));
    }
    return power_ && power_->ExitComputer(mode);
}

}  // namespace orm
