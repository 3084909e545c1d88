#include "sources/adapters.h"

#include "model/version.h"

#include <algorithm>

namespace orm {

namespace {

QString fixedWidth(const char* text, int width)
{
    return QString::fromLatin1(text).leftJustified(width, QLatin1Char(' '), true);
}

QString withoutNul(QString text)
{
    return text.remove(QChar(0));
}

// A counter as the record keeps it. The platform's counters are 64-bit, so
// they are taken whole; nothing here handles a wrap.
double counterValue(quint64 counter)
{
    return double(counter);
}

// The first refresh, and any refresh after a counter that read exactly 0,
// gives a delta of 0.
void advance(double counter, double& current, double& previous, double& delta)
{
    current = counter;
    if (previous == 0)
        previous = current;
    delta = current - previous;
    previous = current;
}

}  // namespace

QString AdapterTypeText(quint32 code)
{
    const char* text = "";
    switch (code) {
    case 1: text = "Other"; break;
    case 6: text = "Ethernet"; break;
    case 9: text = "Tokenring"; break;
    case 15: text = "FDDI"; break;
    case 23: text = "PPP"; break;
    case 24: text = "Loopback"; break;
    case 28: text = "Slip"; break;
    default: break;
    }
    return fixedWidth(text, 15);
}

QString AdapterStatusText(quint32 code)
{
    // Made once: every refresh sets the text again.
    static const QString texts[] = {fixedWidth("Not operational", 20), fixedWidth("Operational", 20),
                                    fixedWidth("Disconnected", 20),    fixedWidth("Connecting", 20),
                                    fixedWidth("Connected", 20),       fixedWidth("Unreachable", 20),
                                    fixedWidth("", 20)};
    return texts[std::min<quint32>(code, 6)];
}

QString AddressToText(const Ipv4Bytes& bytes)
{
    return QStringLiteral("%1.%2.%3.%4").arg(bytes[0]).arg(bytes[1]).arg(bytes[2]).arg(bytes[3]);
}

Adapters::Adapters(AdapterPlatform& platform) : platform_(platform) {}

void Adapters::GetAdapters(bool init)
{
    int slot = 0;
    if (init) {
        const AdapterReadError error = platform_.addressRows(addressRows_);
        if (error.failed()) {
            addressRows_.clear();
            failed(init, error, slot);
            return;
        }
    }

    std::vector<InterfaceRow>& rows = rows_;
    const AdapterReadError error = platform_.interfaceRows(rows);
    if (error.failed()) {
        failed(init, error, slot);
        return;
    }
    // Only start-up marks the default adapter, so only start-up asks for it.
    const qint32 bestIndex = init ? platform_.bestInterfaceIndex() : 0;

    for (const InterfaceRow& row : rows) {
        if (row.Index == 0)
            continue;
        // An adapter with no address row has no record, whatever it carries.
        const auto address = std::find_if(addressRows_.begin(), addressRows_.end(),
                                          [&](const AddressRow& a) { return a.Index == row.Index; });
        if (address == addressRows_.end())
            continue;

        slot = slotOfIndex(row.Index);
        if (slot < 0) {
            AdapterTable.emplace_back();
            slot = int(AdapterTable.size()) - 1;
            // Keyed at once, so that the record is found again on the next
            // refresh even when it was not made at start-up.
            AdapterTable[slot].Index = row.Index;
        }
        AdapterRecord& record = AdapterTable[slot];

        if (init) {
            record.Speed = row.Speed;
            record.IPAddress = AddressToText(address->Address);
            if (record.IPAddress == QLatin1String("127.0.0.1"))
                record.IPAddress += QLatin1String(" (localhost)");
            record.SubnetMask = AddressToText(address->Mask);
            record.BroadcastAddress = AddressToText(address->Broadcast);
            record.TypeText = AdapterTypeText(row.Type);
            record.InUnknownProtos = row.InUnknownProtos;
            record.Index = row.Index;
            record.Description = withoutNul(row.Description);
            record.Name = withoutNul(row.Name);
            record.IsDefault = row.Index == bestIndex;
        }

        advance(counterValue(row.InOctets), record.InOctets, record.InPrevious, record.InDelta);
        advance(counterValue(row.OutOctets), record.OutOctets, record.OutPrevious, record.OutDelta);

        record.StatusText = AdapterStatusText(row.OperStatus);
        record.InErrors = counterValue(row.InErrors);
        record.OutErrors = counterValue(row.OutErrors);
    }
}

void Adapters::failed(bool init, const AdapterReadError& error, int slot)
{
    // A refresh that fails is silent: the table keeps what it had.
    if (!init)
        return;
    if (error.number == AdapterErrorNotSupported) {
        IPHelperUnsupported = true;
        initError = QString::fromLatin1(IPHelperUnsupportedMessage);
        initErrorTitle.clear();
        return;
    }
    IPHelperUnsupported = false;
    // The second number in brackets has never been anything but 0.
    initError = QStringLiteral("%1 - (%2 - %3) %4\nError - IP Statistic Update - Please contact %5")
                    .arg(error.number)
                    .arg(slot)
                    .arg(0)
                    .arg(error.description, QString::fromLatin1(CompanyName));
    initErrorTitle = QString::fromLatin1(IPStatisticErrorTitle);
}

int Adapters::defaultSlot() const
{
    if (AdapterTable.empty())
        return -1;
    for (size_t slot = 0; slot < AdapterTable.size(); ++slot) {
        if (AdapterTable[slot].IsDefault)
            return int(slot);
    }
    return 0;
}

int Adapters::slotOfIndex(qint32 index) const
{
    for (size_t slot = 0; slot < AdapterTable.size(); ++slot) {
        if (AdapterTable[slot].Index == index)
            return int(slot);
    }
    return -1;
}

QStringList Adapters::descriptions() const
{
    QStringList list;
    for (const AdapterRecord& record : AdapterTable)
        list << record.Description;
    return list;
}

}  // namespace orm
