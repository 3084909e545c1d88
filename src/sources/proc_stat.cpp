#include "sources/proc_stat.h"

#include "sources/kernel_text.h"

namespace orm {

using namespace kernel_text;

void parseProcStat(QByteArrayView text, std::vector<CpuJiffies>& rows)
{
    rows.clear();
    std::string_view rest = view(text), line;
    while (nextLine(rest, line)) {
        std::string_view word;
        if (!line.starts_with("cpu") || !nextWord(line, word))
            continue;
        quint64 index = 0;
        // the "cpu" total line has no number
        if (!toNumber(word.substr(3), index) || index > quint64(INT_MAX))
            continue;
        // user nice system idle iowait irq softirq steal: older kernels stop at idle
        quint64 v[8] = {};
        int fields = 0;
        bool good = true;
        while (fields < 8 && good && nextWord(line, word))
            good = toNumber(word, v[fields++]);
        if (!good || fields < 4)
            continue;
        CpuJiffies row;
        row.index = int(index);
        for (quint64 x : v)
            row.total += x;
        row.busy = row.total - v[3] - v[4];
        rows.push_back(row);
    }
}

}  // namespace orm
