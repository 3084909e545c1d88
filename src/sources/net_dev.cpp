#include "sources/net_dev.h"

#include <QList>

namespace orm {

namespace {

// Receive: bytes packets errs drop fifo frame compressed multicast;
// transmit: bytes packets errs drop fifo colls carrier compressed.
constexpr int FieldCount = 16;

}  // namespace

std::vector<NetDevRow> parseNetDev(const QByteArray& text)
{
    std::vector<NetDevRow> rows;
    for (const QByteArray& line : text.split('\n')) {
        // Interface names cannot hold ':', so the first one ends the name. Old
        // kernels wrote large counters straight behind it, with no blank.
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArray name = line.left(colon).trimmed();
        if (name.isEmpty() || name.contains('|'))
            continue;
        const QList<QByteArray> fields = line.mid(colon + 1).simplified().split(' ');
        if (fields.size() < FieldCount)
            continue;
        quint64 value[FieldCount];
        bool usable = true;
        for (int i = 0; i < FieldCount && usable; ++i)
            value[i] = fields[i].toULongLong(&usable);
        if (!usable)
            continue;
        NetDevRow row;
        row.name = QString::fromUtf8(name);
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
    return rows;
}

}  // namespace orm
