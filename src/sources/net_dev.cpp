#include "sources/net_dev.h"

#include "sources/kernel_text.h"

namespace orm {

using namespace kernel_text;

namespace {

// Receive: bytes packets errs drop fifo frame compressed multicast;
// transmit: bytes packets errs drop fifo colls carrier compressed.
constexpr int FieldCount = 16;

}  // namespace

void parseNetDev(QByteArrayView text, std::vector<NetDevRow>& rows)
{
    rows.clear();
    std::string_view rest = view(text), line;
    while (nextLine(rest, line)) {
        // Interface names cannot hold ':', so the first one ends the name. Old
        // kernels wrote large counters straight behind it, with no blank.
        const size_t colon = line.find(':');
        if (colon == std::string_view::npos)
            continue;
        const std::string_view name = trimmed(line.substr(0, colon));
        if (name.empty() || name.find('|') != std::string_view::npos)
            continue;
        std::string_view fields = line.substr(colon + 1);
        quint64 value[FieldCount];
        bool usable = true;
        for (int i = 0; i < FieldCount && usable; ++i)
            usable = nextNumber(fields, value[i]);
        if (!usable)
            continue;
        NetDevRow row;
        row.name = QByteArrayView(name.data(), qsizetype(name.size()));
        row.rxBytes = value[0];
        row.rxPackets = value[1];
        row.rxErrors = value[2];
        row.rxDropped = value[3];
        row.txBytes = value[8];
        row.txPackets = value[9];
        row.txErrors = value[10];
        row.txDropped = value[11];
        rows.push_back(row);
    }
}

}  // namespace orm
