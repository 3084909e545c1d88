// The memory figures, as /proc/meminfo gives them.
#pragma once

#include <QByteArrayView>
#include <QtGlobal>
#include <optional>

namespace orm {

// Whole bytes as doubles, except MemoryLoad (used physical memory in percent).
struct MemoryFigures {
    quint32 MemoryLoad = 0;
    double MemTotalPhys = 0, MemAvailPhys = 0, MemTotalPageFile = 0, MemAvailPageFile = 0,
           MemTotalVirtual = 0, MemAvailVirtual = 0;
};

// Physical: MemTotal and MemAvailable (MemFree + Buffers + Cached on kernels
// without it); page file: SwapTotal and SwapFree; virtual: CommitLimit and
// CommitLimit - Committed_AS, never below 0. No MemTotal: no figures.
std::optional<MemoryFigures> parseMeminfo(QByteArrayView text);

}  // namespace orm
