#include "sources/meminfo.h"

#include <QHash>
#include <QList>
#include <algorithm>
#include <cmath>

namespace orm {

std::optional<MemoryFigures> parseMeminfo(const QByteArray& text)
{
    // "Name:   12345 kB"; a line without the unit is a count, not a size.
    QHash<QByteArray, double> bytes;
    for (const QByteArray& line : text.split('\n')) {
        const int colon = line.indexOf(':');
        if (colon <= 0)
            continue;
        const QList<QByteArray> f = line.mid(colon + 1).simplified().split(' ');
        bool ok = false;
        const quint64 n = f[0].toULongLong(&ok);
        if (!ok)
            continue;
        const bool kb = f.size() > 1 && f[1].toLower() == "kb";
        bytes.insert(line.left(colon).trimmed(), double(n) * (kb ? 1024.0 : 1.0));
    }
    if (!bytes.contains("MemTotal"))
        return std::nullopt;

    MemoryFigures m;
    m.MemTotalPhys = bytes.value("MemTotal");
    if (bytes.contains("MemAvailable"))
        m.MemAvailPhys = bytes.value("MemAvailable");
    else
        m.MemAvailPhys = bytes.value("MemFree") + bytes.value("Buffers") + bytes.value("Cached");
    m.MemAvailPhys = std::min(m.MemAvailPhys, m.MemTotalPhys);
    m.MemTotalPageFile = bytes.value("SwapTotal");
    m.MemAvailPageFile = bytes.value("SwapFree");
    m.MemTotalVirtual = bytes.value("CommitLimit");
    m.MemAvailVirtual = std::max(0.0, m.MemTotalVirtual - bytes.value("Committed_AS"));
    if (m.MemTotalPhys > 0) {
        const double used = (m.MemTotalPhys - m.MemAvailPhys) / m.MemTotalPhys * 100.0;
        m.MemoryLoad = quint32(std::clamp(std::round(used), 0.0, 100.0));
    }
    return m;
}

}  // namespace orm
