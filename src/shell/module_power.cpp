#include "shell/module_power.h"

#include <cstdio>

namespace orm {

ModulePower::~ModulePower()
{
    power_.reset();  // before its module goes
}

bool ModulePower::ExitComputer(int mode)
{
    if (!module_) {
        module_.emplace("ormivane_power");
        if (auto* make = module_->function<NewComputerPower>(NewComputerPowerEntry))
            power_.reset(make());
        else
            std::fprintf(stderr, "ormivane: cannot restart or shut down: %s\n", qPrintable(module_->error()));
        std::fflush(stderr);
    }
    return power_ && power_->ExitComputer(mode);
}

}  // namespace orm
