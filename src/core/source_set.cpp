#include "source_set.h"

namespace orm {

std::unique_ptr<SourceSet> SourceSet::forLinux(const QString& procRoot, const QString& sysRoot)
{
    auto s = std::make_unique<SourceSet>();
    s->cpuCounters = std::make_unique<ProcStatCpuCounters>(procRoot);
    s->cpu = std::make_unique<CpuUsage>(*s->cpuCounters);
    s->memory = std::make_unique<MemoryStatus>(procRoot);
    s->drivePlatform = std::make_unique<LinuxDrivePlatform>(procRoot, sysRoot);
    s->drives = std::make_unique<DriveInfo>(*s->drivePlatform);
    return s;
}

}  // namespace orm
