#include "sources/meminfo.h"

#include "sources/kernel_text.h"

#include <algorithm>
#include <cmath>

namespace orm {

using namespace kernel_text;

namespace {

// The lines the figures are made of; a later line of the same name wins.
enum Field { MemTotal, MemAvailable, MemFree, Buffers, Cached, SwapTotal, SwapFree, CommitLimit, CommittedAS, Fields };
constexpr std::string_view FieldNames[Fields] = {"MemTotal", "MemAvailable", "MemFree",     "Buffers",     "Cached",
                                                 "SwapTotal", "SwapFree",    "CommitLimit", "Committed_AS"};

}  // namespace

std::optional<MemoryFigures> parseMeminfo(QByteArrayView text)
{
    // "Name:   12345 kB"; a line without the unit is a count, not a size.
    double bytes[Fields] = {};
    bool seen[Fields] = {};
    std::string_view rest = view(text), line;
    while (nextLine(rest, line)) {
        const size_t colon = line.find(':');
        if (colon == 0 || colon == std::string_view::npos)
            continue;
        const std::string_view name = trimmed(line.substr(0, colon));
        const auto field = std::find(std::begin(FieldNames), std::end(FieldNames), name);
        if (field == std::end(FieldNames))
            continue;
        std::string_view values = line.substr(colon + 1), unit;
        quint64 n = 0;
        if (!nextNumber(values, n))
            continue;
        const bool kb = nextWord(values, unit) && unit.size() == 2 && (unit[0] == 'k' || unit[0] == 'K') &&
                        (unit[1] == 'b' || unit[1] == 'B');
        const auto f = size_t(field - std::begin(FieldNames));
        bytes[f] = double(n) * (kb ? 1024.0 : 1.0);
        seen[f] = true;
    }
    if (!seen[MemTotal])
        return std::nullopt;

    MemoryFigures m;
    m.MemTotalPhys = bytes[MemTotal];
    m.MemAvailPhys = seen[MemAvailable] ? bytes[MemAvailable] : bytes[MemFree] + bytes[Buffers] + bytes[Cached];
    m.MemAvailPhys = std::min(m.MemAvailPhys, m.MemTotalPhys);
    m.MemTotalPageFile = bytes[SwapTotal];
    m.MemAvailPageFile = bytes[SwapFree];
    m.MemTotalVirtual = bytes[CommitLimit];
    m.MemAvailVirtual = std::max(0.0, m.MemTotalVirtual - bytes[CommittedAS]);
    if (m.MemTotalPhys > 0) {
        const double used = (m.MemTotalPhys - m.MemAvailPhys) / m.MemTotalPhys * 100.0;
        m.MemoryLoad = quint32(std::clamp(std::round(used), 0.0, 100.0));
    }
    return m;
}

}  // namespace orm
