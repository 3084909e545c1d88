#include "sources/cpu_usage.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace orm {

namespace {

double busyPercent(const CpuJiffies& before, const CpuJiffies& now)
{
    // Counters that went back (a reset) or no jiffy elapsed: nothing to measure.
    if (now.total <= before.total || now.busy < before.busy)
        return 0.0;
    const double share = double(now.busy - before.busy) / double(now.total - before.total);
    return std::min(100.0, share * 100.0);
}

}  // namespace

ProcStatCpuCounters::ProcStatCpuCounters(QString procRoot)
    : stat_(procRoot + QStringLiteral("/stat"))
{
}

int ProcStatCpuCounters::processorCount()
{
    if (count_ >= 0)
        return count_;
    // The highest N + 1, which is the number of cpuN lines while all are
    // online, and keeps slot N for cpuN if one is offline at start.
    count_ = 0;
    if (const auto text = stat_.read()) {
        parseProcStat(*text, rows_);
        for (const CpuJiffies& r : rows_)
            count_ = std::max(count_, r.index + 1);
    }
    slots_.assign(size_t(count_), Slot{});
    return count_;
}

std::vector<double> ProcStatCpuCounters::collect()
{
    const int count = processorCount();
    std::vector<double> percents(size_t(count), 0.0);
    present_.assign(size_t(count), false);
    if (const auto text = stat_.read()) {
        parseProcStat(*text, rows_);
        for (const CpuJiffies& r : rows_) {
            if (r.index >= count)
                continue;
            Slot& s = slots_[size_t(r.index)];
            present_[size_t(r.index)] = true;
            if (s.seen)
                percents[size_t(r.index)] = busyPercent(s.last, r);
            s.last = r;
            s.seen = true;
        }
    }
    // A processor without a line starts afresh when it comes back.
    for (size_t i = 0; i < slots_.size(); ++i) {
        if (!present_[i])
            slots_[i].seen = false;
    }
    return percents;
}

qint32 roundTiesEven(double value)
{
    if (!std::isfinite(value))
        return 0;
    const double r = std::nearbyint(value);  // default rounding mode: to nearest, ties to even
    if (r < -2147483648.0 || r > 2147483647.0)
        return 0;
    return qint32(r);
}

CpuUsage::CpuUsage(CpuCounters& counters)
    : counters_(counters)
{
}

qint32 CpuUsage::GetCpuUsage(bool init, bool closing, int index)
{
    if (init)
        ProcessorCount = counters_.processorCount();
    if (closing)
        return value(index);
    if (init)
        CpuUsageValues.assign(size_t(std::max(ProcessorCount, 0)), 0);
    const std::vector<double> percents = counters_.collect();
    for (size_t i = 0; i < CpuUsageValues.size(); ++i)
        CpuUsageValues[i] = i < percents.size() ? roundTiesEven(percents[i]) : 0;
    return value(index);
}

qint32 CpuUsage::value(int index) const
{
    if (index < 0 || size_t(index) >= CpuUsageValues.size())
        return 0;
    return CpuUsageValues[size_t(index)];
}

}  // namespace orm
