// What the adapter table is read from: the interface rows with their counters,
// the IPv4 address rows, and the adapter that leads to the outside world.
#pragma once

#include "sources/kernel_file.h"
#include "sources/net_dev.h"

#include <QString>
#include <QtGlobal>
#include <array>
#include <memory>
#include <string_view>
#include <vector>

namespace orm {

// Interface type codes as the adapter logic knows them.
inline constexpr quint32 AdapterTypeOther = 1;
inline constexpr quint32 AdapterTypeEthernet = 6;
inline constexpr quint32 AdapterTypePpp = 23;
inline constexpr quint32 AdapterTypeLoopback = 24;

// Operational status codes. The logic's texts for 1 and 5 are swapped on
// purpose, so a working adapter (5) reads "Unreachable".
inline constexpr quint32 AdapterStatusNonOperational = 0;
inline constexpr quint32 AdapterStatusUnreachable = 1;
inline constexpr quint32 AdapterStatusDisconnected = 2;
inline constexpr quint32 AdapterStatusConnecting = 3;
inline constexpr quint32 AdapterStatusConnected = 4;
inline constexpr quint32 AdapterStatusOperational = 5;

// The error number of a system that has no interface table at all.
inline constexpr int AdapterErrorNotSupported = 50;

using Ipv4Bytes = std::array<quint8, 4>;  // byte 0 is the first of the dotted text

struct InterfaceRow {
    qint32 Index = 0;  // 0 never names an adapter
    QString Description;
    QString Name;
    quint64 InOctets = 0, OutOctets = 0;
    quint64 InErrors = 0, OutErrors = 0;
    quint32 InUnknownProtos = 0;
    quint32 Type = 0;
    quint32 OperStatus = 0;
    quint32 Speed = 0;  // bits per second
};

struct AddressRow {
    qint32 Index = 0;
    Ipv4Bytes Address{}, Mask{}, Broadcast{};
};

// 0 when the read worked, else the error number and its description.
struct AdapterReadError {
    int number = 0;
    QString description;
    bool failed() const { return number != 0; }
};

class AdapterPlatform {
public:
    virtual ~AdapterPlatform() = default;
    // All interfaces, sorted by index.
    virtual AdapterReadError interfaceRows(std::vector<InterfaceRow>& rows) = 0;
    // All IPv4 addresses, sorted by address.
    virtual AdapterReadError addressRows(std::vector<AddressRow>& rows) = 0;
    // The index of the adapter whose route leads to the outside world; 0 when
    // there is none.
    virtual qint32 bestInterfaceIndex() = 0;
};

// A public address whose route names the default adapter. Nothing is ever sent
// to it: a UDP socket is only connected, which picks the route.
inline constexpr const char* DefaultRouteProbeAddress = "8.8.8.8";

// Counters from <procRoot>/net/dev; index, type, state and speed from
// <sysRoot>/class/net/<name>/; addresses from getifaddrs. Index, type and
// speed are read when an interface is first seen; its state on every read,
// from a file kept open. An interface whose state can no longer be read has
// gone, and is looked at afresh when its name comes back.
class LinuxAdapterPlatform final : public AdapterPlatform {
public:
    explicit LinuxAdapterPlatform(QString procRoot = QStringLiteral("/proc"),
                                  QString sysRoot = QStringLiteral("/sys"),
                                  QString routeProbeAddress = QString::fromLatin1(DefaultRouteProbeAddress));
    ~LinuxAdapterPlatform() override;

    AdapterReadError interfaceRows(std::vector<InterfaceRow>& rows) override;
    AdapterReadError addressRows(std::vector<AddressRow>& rows) override;
    qint32 bestInterfaceIndex() override;

private:
    struct Link;
    Link& linkNamed(QByteArrayView name);

    QString procRoot_;
    QString sysRoot_;
    QString routeProbeAddress_;
    KernelFile netDev_;
    std::vector<NetDevRow> netDevRows_;
    std::vector<std::unique_ptr<Link>> links_;
};

// The type code of an ARPHRD_* link type.
quint32 adapterTypeCode(int linkType);
// The status code of an operstate word. A loopback says "unknown" while it
// works; other links saying "unknown" count as working when they have carrier.
quint32 adapterStatusCode(std::string_view operState, bool loopback, bool carrier);
// Bits per second from the Mbit/s of the speed file; unknown (-1) is 0 and
// links faster than the 32-bit field holds read its maximum.
quint32 adapterSpeed(qint64 megabitsPerSecond);

}  // namespace orm
