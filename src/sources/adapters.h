// zAdaptors: the machine's network adapters with their addresses and running
// byte and error counters. GetAdapters both builds the table and refreshes it.
#pragma once

#include "sources/adapter_platform.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <vector>

namespace orm {

struct AdapterRecord {
    double InOctets = 0, OutOctets = 0;
    quint32 Speed = 0;  // bits per second
    QString IPAddress, SubnetMask, BroadcastAddress;
    QString TypeText;    // always 15 characters, blank-padded
    QString StatusText;  // always 20 characters, blank-padded
    double InErrors = 0, OutErrors = 0;
    quint32 InUnknownProtos = 0;
    qint32 Index = 0;  // the adapter's own index: what settings store, not the slot
    QString Description, Name;
    bool IsDefault = false;
    double InDelta = 0, OutDelta = 0, InPrevious = 0, OutPrevious = 0;
};

// The text of a type code, blank-padded to 15 characters; unknown codes are blanks.
QString AdapterTypeText(quint32 code);
// The text of a status code, blank-padded to 20 characters; unknown codes are blanks.
QString AdapterStatusText(quint32 code);
// Dotted decimal, byte 0 first.
QString AddressToText(const Ipv4Bytes& bytes);

inline constexpr const char* IPHelperUnsupportedMessage = "IP Helper is not supported by this system.";
inline constexpr const char* IPStatisticErrorTitle = "IP Statistic Update Error";

class Adapters {
public:
    explicit Adapters(AdapterPlatform& platform);

    // Start-up calls this once with true: the address rows are read and every
    // record gets its fixed fields. Each tick that needs adapter values calls
    // it with false, which refreshes counters, deltas and status only.
    void GetAdapters(bool init);

    // Slots only ever grow: an adapter that goes away keeps its record and its
    // last values.
    std::vector<AdapterRecord> AdapterTable;
    int AdapterCount() const { return int(AdapterTable.size()); }
    // The slot marked as the route to the outside world, else 0; -1 with no rows.
    int defaultSlot() const;
    // The slot holding the adapter with this index; -1 when none does.
    int slotOfIndex(qint32 index) const;
    // The adapters' labels in slot order, as the adapter list shows them.
    QStringList descriptions() const;

    bool IPHelperUnsupported = false;
    // What start-up shows in a message box when the first call failed; empty
    // when it worked. The title is empty for the plain box of an unsupported
    // system and IPStatisticErrorTitle, with a stop icon, for any other error.
    QString initError;
    QString initErrorTitle;

private:
    void failed(bool init, const AdapterReadError& error, int slot);
    std::vector<InterfaceRow> rows_;  // kept between refreshes

    AdapterPlatform& platform_;
    std::vector<AddressRow> addressRows_;  // read at init only
};

}  // namespace orm
