// The interface counters of /proc/net/dev, text in, rows out.
#pragma once

#include <QByteArrayView>
#include <QtGlobal>
#include <vector>

namespace orm {

// One interface line. The kernel keeps these as 64-bit counters.
struct NetDevRow {
    QByteArrayView name;  // a view into the text parsed
    quint64 rxBytes = 0, rxPackets = 0, rxErrors = 0, rxDropped = 0;
    quint64 txBytes = 0, txPackets = 0, txErrors = 0, txDropped = 0;
};

// Rows in the order of the file, into `rows` (emptied first). The two heading
// lines, and any line without a name before ":" or without sixteen whole
// numbers after it, are skipped.
void parseNetDev(QByteArrayView text, std::vector<NetDevRow>& rows);

}  // namespace orm
