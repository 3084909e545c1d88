// zCPUUsage: the load of every logical processor as a whole percent.
#pragma once

#include "sources/kernel_file.h"
#include "sources/proc_stat.h"

#include <QString>
#include <QtGlobal>
#include <vector>

namespace orm {

// Per-processor busy percent since the previous collection.
class CpuCounters {
public:
    virtual ~CpuCounters() = default;
    virtual int processorCount() = 0;
    // One value per processor; the first collection gives 0 for each.
    virtual std::vector<double> collect() = 0;
};

// Reads <procRoot>/stat. The processor count is fixed by the first reading;
// a processor that is offline (no line) reads 0.
class ProcStatCpuCounters final : public CpuCounters {
public:
    explicit ProcStatCpuCounters(QString procRoot = QStringLiteral("/proc"));
    int processorCount() override;
    std::vector<double> collect() override;

private:
    struct Slot {
        CpuJiffies last;
        bool seen = false;
    };
    KernelFile stat_;
    int count_ = -1;
    std::vector<Slot> slots_;
    std::vector<CpuJiffies> rows_;
    std::vector<bool> present_;
};

// Rounds to the nearest integer, ties to even (49.5 -> 50, 50.5 -> 50);
// NaN and values beyond the 32-bit range give 0.
qint32 roundTiesEven(double value);

class CpuUsage {
public:
    explicit CpuUsage(CpuCounters& counters);

    // Init, per-tick collection and closing in one; returns CpuUsageValues(index),
    // 0 when index is outside the table. The closing call collects nothing.
    qint32 GetCpuUsage(bool init, bool closing, int index);
    qint32 value(int index) const;

    int ProcessorCount = 0;
    std::vector<qint32> CpuUsageValues;

private:
    CpuCounters& counters_;
};

}  // namespace orm
