// The per-processor jiffy counters of /proc/stat.
#pragma once

#include <QByteArrayView>
#include <QtGlobal>
#include <climits>
#include <vector>

namespace orm {

// One "cpuN" line. Idle and iowait count as idle; guest time is already inside
// user and nice, so it is not added again.
struct CpuJiffies {
    quint64 busy = 0;
    quint64 total = 0;
    int index = 0;  // N of "cpuN"
};

// One row per "cpuN" line, in file order, into `rows` (emptied first); the
// "cpu" total line and malformed lines are skipped. Offline processors have no line.
void parseProcStat(QByteArrayView text, std::vector<CpuJiffies>& rows);

}  // namespace orm
