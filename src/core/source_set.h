// The sources the monitor reads, each behind its platform reader, so that
// tests can hand the logic known readings.
#pragma once

#include "core/settings_store.h"
#include "sources/cpu_usage.h"
#include "sources/drive_info.h"
#include "sources/memory_status.h"

#include <memory>

namespace orm {

struct SourceSet {
    std::unique_ptr<CpuCounters> cpuCounters;
    std::unique_ptr<CpuUsage> cpu;
    std::unique_ptr<MemoryStatus> memory;
    std::unique_ptr<DrivePlatform> drivePlatform;
    std::unique_ptr<DriveInfo> drives;

    // How Nodes' stored adapter indexes map to adapter rows; null with no adapter table.
    const AdapterIndexMap* adapterMap() const { return nullptr; }
    int defaultAdapterSlot() const { return 0; }

    // The machine's own sources, read from the given /proc and /sys.
    static std::unique_ptr<SourceSet> forLinux(const QString& procRoot = QStringLiteral("/proc"),
                                               const QString& sysRoot = QStringLiteral("/sys"));
};

}  // namespace orm
