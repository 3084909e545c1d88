#include "sources/diskstats.h"

#include <QList>

namespace orm {

std::vector<DiskStatsRow> parseDiskstats(const QByteArray& text)
{
    std::vector<DiskStatsRow> rows;
    for (const QByteArray& line : text.split('\n')) {
        const QList<QByteArray> f = line.simplified().split(' ');
        if (f.size() < 14)
            continue;
        bool ok = true;
        auto num = [&](int i) {
            bool good = false;
            const quint64 v = f[i].toULongLong(&good);
            ok = ok && good;
            return v;
        };
        DiskStatsRow r;
        r.major = quint32(num(0));
        r.minor = quint32(num(1));
        r.name = QString::fromUtf8(f[2]);
        r.readsCompleted = num(3);
        r.readsMerged = num(4);
        r.sectorsRead = num(5);
        r.msReading = num(6);
        r.writesCompleted = num(7);
        r.writesMerged = num(8);
        r.sectorsWritten = num(9);
        r.msWriting = num(10);
        r.ioInProgress = num(11);
        r.msDoingIo = num(12);
        r.weightedMsDoingIo = num(13);
        if (ok)
            rows.push_back(r);
    }
    return rows;
}

}  // namespace orm
