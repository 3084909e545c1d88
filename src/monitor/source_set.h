// The sources the monitor reads, each behind its platform reader, so that
// tests can hand the logic known readings.
#pragma once

#include "model/settings_store.h"
#include "sources/adapter_platform.h"
#include "sources/adapters.h"
#include "sources/battery.h"
#include "sources/cpu_usage.h"
#include "sources/drive_info.h"
#include "sources/memory_status.h"
#include "sources/ping.h"
#include "sources/processes.h"
#include "sources/share_paths.h"
#include "sources/wifi.h"

#include <memory>

namespace orm {

// Stored adapter indexes against the rows of the adapter table.
class AdapterRows final : public AdapterIndexMap {
public:
    explicit AdapterRows(const Adapters& adapters) : adapters_(adapters) {}
    int rowOfIndex(qint32 dwIndex) const override { return adapters_.slotOfIndex(dwIndex); }
    qint32 indexOfRow(int row) const override
    {
        return row >= 0 && row < adapters_.AdapterCount() ? adapters_.AdapterTable[size_t(row)].Index : 0;
    }
    int rowCount() const override { return adapters_.AdapterCount(); }
    int defaultRow() const override { return std::max(0, adapters_.defaultSlot()); }

private:
    const Adapters& adapters_;
};

struct SourceSet {
    std::unique_ptr<CpuCounters> cpuCounters;
    std::unique_ptr<CpuUsage> cpu;
    std::unique_ptr<MemoryStatus> memory;
    std::unique_ptr<DrivePlatform> drivePlatform;
    std::unique_ptr<DriveInfo> drives;
    std::unique_ptr<AdapterPlatform> adapterPlatform;
    std::unique_ptr<Adapters> adapters;
    std::unique_ptr<AdapterRows> adapterRows;
    std::unique_ptr<ProcessTable> processes;
    std::unique_ptr<WifiSource> wifiSource;
    std::unique_ptr<WifiTables> wifi;
    std::unique_ptr<BatteryReader> battery;
    std::unique_ptr<PingService> pings;
    std::unique_ptr<ShareResolver> shares;  // where LAN files are found

    // How Nodes' stored adapter indexes map to adapter rows; null with no adapter source.
    const AdapterIndexMap* adapterMap() const { return adapterRows.get(); }
    // The slot new Nodes take: the adapter on the route out, else row 0.
    int defaultAdapterSlot() const { return adapters ? std::max(0, adapters->defaultSlot()) : 0; }

    // The machine's own sources, read from the given /proc and /sys.
    static std::unique_ptr<SourceSet> forLinux(const QString& procRoot = QStringLiteral("/proc"),
                                               const QString& sysRoot = QStringLiteral("/sys"));
};

}  // namespace orm
