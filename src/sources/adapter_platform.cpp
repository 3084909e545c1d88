#include "sources/adapter_platform.h"
#include "sources/platform_file.h"

#include "sources/net_dev.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orm {

namespace {

// Sysfs files that a link does not support fail on read; they give nothing.
std::optional<QByteArray> readSmallFile(const QString& path)
{
    const auto whole = readPlatformFile(path);
    if (!whole)
        return std::nullopt;
    const QByteArray text = whole->trimmed();
    if (text.isEmpty())
        return std::nullopt;
    return text;
}

std::optional<qint64> readNumber(const QString& path)
{
    const auto text = readSmallFile(path);
    if (!text)
        return std::nullopt;
    bool ok = false;
    const qint64 value = text->toLongLong(&ok);
    return ok ? std::optional<qint64>(value) : std::nullopt;
}

Ipv4Bytes bytesOf(const sockaddr* address)
{
    Ipv4Bytes bytes{};
    if (address && address->sa_family == AF_INET) {
        const auto* in = reinterpret_cast<const sockaddr_in*>(address);
        std::memcpy(bytes.data(), &in->sin_addr, 4);  // network order: first byte first
    }
    return bytes;
}

// An address label such as "eth0:1" belongs to the interface "eth0".
qint32 indexOfLabel(const char* label)
{
    QByteArray name(label);
    const qsizetype colon = name.indexOf(':');
    if (colon >= 0)
        name.truncate(colon);
    return qint32(if_nametoindex(name.constData()));
}

struct IfAddrsFree {
    void operator()(ifaddrs* list) const { freeifaddrs(list); }
};
using IfAddrsList = std::unique_ptr<ifaddrs, IfAddrsFree>;

struct FdClose {
    int fd;
    ~FdClose() { if (fd >= 0) ::close(fd); }
};

AdapterReadError errnoError(int number)
{
    return {number, QString::fromLocal8Bit(std::strerror(number))};
}

}  // namespace

quint32 adapterTypeCode(int linkType)
{
    switch (linkType) {
    case ARPHRD_ETHER: return AdapterTypeEthernet;
    case ARPHRD_LOOPBACK: return AdapterTypeLoopback;
    case ARPHRD_PPP: return AdapterTypePpp;
    default: return AdapterTypeOther;
    }
}

quint32 adapterStatusCode(const QString& operState, bool loopback, bool carrier)
{
    if (operState == QLatin1String("up"))
        return AdapterStatusOperational;
    if (operState == QLatin1String("down"))
        return AdapterStatusDisconnected;
    if (operState == QLatin1String("dormant"))
        return AdapterStatusConnecting;
    if (operState == QLatin1String("unknown"))
        return loopback || carrier ? AdapterStatusOperational : AdapterStatusDisconnected;
    // lowerlayerdown, notpresent, testing
    return AdapterStatusNonOperational;
}

quint32 adapterSpeed(qint64 megabitsPerSecond)
{
    if (megabitsPerSecond <= 0)
        return 0;
    constexpr qint64 Most = 0xFFFFFFFFLL;
    if (megabitsPerSecond > Most / 1000000)
        return quint32(Most);
    return quint32(megabitsPerSecond * 1000000);
}

LinuxAdapterPlatform::LinuxAdapterPlatform(QString procRoot, QString sysRoot, QString routeProbeAddress)
    : procRoot_(std::move(procRoot)), sysRoot_(std::move(sysRoot)), routeProbeAddress_(std::move(routeProbeAddress))
{
}

AdapterReadError LinuxAdapterPlatform::interfaceRows(std::vector<InterfaceRow>& rows)
{
    rows.clear();
    const auto netDev = readPlatformFile(procRoot_ + QStringLiteral("/net/dev"));
    if (!netDev)
        return {AdapterErrorNotSupported, QStringLiteral("The request is not supported.")};
    for (const NetDevRow& dev : parseNetDev(*netDev)) {
        const QString dir = sysRoot_ + QStringLiteral("/class/net/") + dev.name;
        InterfaceRow row;
        row.Index = qint32(readNumber(dir + QStringLiteral("/ifindex")).value_or(0));
        row.Description = dev.name;
        row.Name = dev.name;
        row.InOctets = dev.rxBytes;
        row.OutOctets = dev.txBytes;
        row.InErrors = dev.rxErrors;
        row.OutErrors = dev.txErrors;
        // Linux keeps no per-interface count of unknown protocols.
        row.InUnknownProtos = 0;
        row.Type = adapterTypeCode(int(readNumber(dir + QStringLiteral("/type")).value_or(-1)));
        const QString operState = QString::fromLatin1(readSmallFile(dir + QStringLiteral("/operstate")).value_or(QByteArray()));
        const bool carrier = readNumber(dir + QStringLiteral("/carrier")).value_or(0) == 1;
        row.OperStatus = adapterStatusCode(operState, row.Type == AdapterTypeLoopback, carrier);
        row.Speed = adapterSpeed(readNumber(dir + QStringLiteral("/speed")).value_or(-1));
        rows.push_back(row);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const InterfaceRow& a, const InterfaceRow& b) { return a.Index < b.Index; });
    return {};
}

AdapterReadError LinuxAdapterPlatform::addressRows(std::vector<AddressRow>& rows)
{
    rows.clear();
    ifaddrs* raw = nullptr;
    if (getifaddrs(&raw) != 0)
        return errnoError(errno);
    const IfAddrsList list(raw);
    for (const ifaddrs* entry = list.get(); entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET)
            continue;
        AddressRow row;
        row.Index = indexOfLabel(entry->ifa_name);
        if (row.Index == 0)
            continue;
        row.Address = bytesOf(entry->ifa_addr);
        row.Mask = bytesOf(entry->ifa_netmask);
        if (entry->ifa_flags & IFF_BROADCAST)
            row.Broadcast = bytesOf(entry->ifa_broadaddr);
        rows.push_back(row);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const AddressRow& a, const AddressRow& b) { return a.Address < b.Address; });
    return {};
}

qint32 LinuxAdapterPlatform::bestInterfaceIndex()
{
    sockaddr_in probe{};
    probe.sin_family = AF_INET;
    probe.sin_port = htons(80);
    if (inet_pton(AF_INET, routeProbeAddress_.toLatin1().constData(), &probe.sin_addr) != 1)
        return 0;
    const FdClose sock{::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    if (sock.fd < 0)
        return 0;
    // Connecting a UDP socket only chooses the route and the local address.
    if (::connect(sock.fd, reinterpret_cast<const sockaddr*>(&probe), sizeof probe) != 0)
        return 0;
    sockaddr_in local{};
    socklen_t length = sizeof local;
    if (::getsockname(sock.fd, reinterpret_cast<sockaddr*>(&local), &length) != 0)
        return 0;
    const Ipv4Bytes localBytes = bytesOf(reinterpret_cast<const sockaddr*>(&local));

    std::vector<AddressRow> addresses;
    if (addressRows(addresses).failed())
        return 0;
    for (const AddressRow& row : addresses) {
        if (row.Address == localBytes)
            return row.Index;
    }
    return 0;
}

}  // namespace orm
