#include "source_set.h"

#include "sources/nl80211_source.h"

namespace orm {

std::unique_ptr<SourceSet> SourceSet::forLinux(const QString& procRoot, const QString& sysRoot)
{
    auto s = std::make_unique<SourceSet>();
    s->cpuCounters = std::make_unique<ProcStatCpuCounters>(procRoot);
    s->cpu = std::make_unique<CpuUsage>(*s->cpuCounters);
    s->memory = std::make_unique<MemoryStatus>(procRoot);
    s->drivePlatform = std::make_unique<LinuxDrivePlatform>(procRoot, sysRoot);
    s->drives = std::make_unique<DriveInfo>(*s->drivePlatform);
    s->adapterPlatform = std::make_unique<LinuxAdapterPlatform>(procRoot, sysRoot);
    s->adapters = std::make_unique<Adapters>(*s->adapterPlatform);
    s->adapterRows = std::make_unique<AdapterRows>(*s->adapters);
    s->processes = std::make_unique<ProcessTable>(procRoot);
    s->wifiSource = std::make_unique<Nl80211Source>();
    s->wifi = std::make_unique<WifiTables>(*s->wifiSource);
    s->battery = std::make_unique<BatteryReader>(sysRoot);
    s->pings = std::make_unique<PingService>();
    s->shares = std::make_unique<ShareResolver>();
    return s;
}

}  // namespace orm
