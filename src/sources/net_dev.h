// The interface counters of /proc/net/dev, text in, rows out.
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <vector>

namespace orm {

// One interface line. The kernel keeps these as 64-bit counters.
struct NetDevRow {
    QString name;
    quint64 rxBytes = 0, rxPackets = 0, rxErrors = 0, rxDropped = 0;
    quint64 txBytes = 0, txPackets = 0, txErrors = 0, txDropped = 0;
};

// Rows in the order of the file. The two heading lines, and any line without a
// name before ":" or without sixteen whole numbers after it, are skipped.
std::vector<NetDevRow> parseNetDev(const QByteArray& text);

}  // namespace orm
