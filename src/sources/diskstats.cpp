#include "sources/diskstats.h"

#include "sources/kernel_text.h"

namespace orm {

using namespace kernel_text;

namespace {

// One line's numbers into `r`, its name into `name`; false for a malformed line.
bool parseLine(std::string_view line, DiskStatsRow& r, std::string_view& name)
{
    quint64 v[13];
    std::string_view word;
    int numbers = 0;
    for (int field = 0; field < 14; ++field) {
        if (!nextWord(line, word))
            return false;
        if (field == 2)
            name = word;
        else if (!toNumber(word, v[numbers++]))
            return false;
    }
    r.major = quint32(v[0]);
    r.minor = quint32(v[1]);
    r.readsCompleted = v[2];
    r.readsMerged = v[3];
    r.sectorsRead = v[4];
    r.msReading = v[5];
    r.writesCompleted = v[6];
    r.writesMerged = v[7];
    r.sectorsWritten = v[8];
    r.msWriting = v[9];
    r.ioInProgress = v[10];
    r.msDoingIo = v[11];
    r.weightedMsDoingIo = v[12];
    return true;
}

}  // namespace

std::vector<DiskStatsRow> parseDiskstats(QByteArrayView text)
{
    std::vector<DiskStatsRow> rows;
    std::string_view rest = view(text), line, name;
    DiskStatsRow r;
    while (nextLine(rest, line)) {
        if (!parseLine(line, r, name))
            continue;
        r.name = QString::fromUtf8(name.data(), qsizetype(name.size()));
        rows.push_back(r);
    }
    return rows;
}

std::optional<DiskStatsRow> diskstatsRowOf(QByteArrayView text, quint32 major, quint32 minor)
{
    std::string_view rest = view(text), line, name;
    DiskStatsRow r;
    while (nextLine(rest, line)) {
        if (parseLine(line, r, name) && r.major == major && r.minor == minor)
            return r;
    }
    return std::nullopt;
}

}  // namespace orm
