#include "sources/proc_stat.h"

#include <QList>

namespace orm {

std::vector<CpuJiffies> parseProcStat(const QByteArray& text)
{
    std::vector<CpuJiffies> rows;
    for (const QByteArray& line : text.split('\n')) {
        if (!line.startsWith("cpu"))
            continue;
        const QList<QByteArray> f = line.simplified().split(' ');
        bool ok = false;
        const int index = f[0].mid(3).toInt(&ok);
        // user nice system idle iowait irq softirq steal: older kernels stop at idle
        if (!ok || index < 0 || f.size() < 5)
            continue;
        quint64 v[8] = {};
        bool good = true;
        for (int i = 1; i < f.size() && i <= 8; ++i) {
            v[i - 1] = f[i].toULongLong(&ok);
            good = good && ok;
        }
        if (!good)
            continue;
        CpuJiffies row;
        row.index = index;
        for (quint64 x : v)
            row.total += x;
        row.busy = row.total - v[3] - v[4];
        rows.push_back(row);
    }
    return rows;
}

}  // namespace orm
