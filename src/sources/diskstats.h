// The per-device I/O counters of /proc/diskstats.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace orm {

struct DiskStatsRow {
    quint32 major = 0;
    quint32 minor = 0;
    QString name;
    quint64 readsCompleted = 0, readsMerged = 0, sectorsRead = 0, msReading = 0;
    quint64 writesCompleted = 0, writesMerged = 0, sectorsWritten = 0, msWriting = 0;
    quint64 ioInProgress = 0, msDoingIo = 0, weightedMsDoingIo = 0;
};

// One row per line with the fourteen classic fields (later kernels add more,
// which are ignored); malformed lines are skipped.
std::vector<DiskStatsRow> parseDiskstats(QByteArrayView text);

// The row of the device major:minor, with its name left empty; nothing when
// no well-formed line has that number.
std::optional<DiskStatsRow> diskstatsRowOf(QByteArrayView text, quint32 major, quint32 minor);

}  // namespace orm
