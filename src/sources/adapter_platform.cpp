#include "sources/adapter_platform.h"

#include "sources/kernel_text.h"

#include <QFile>

#include <algorithm>
#include <charconv>
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
std::optional<std::string_view> readWord(KernelFile& file)
{
    const auto whole = file.read();
    if (!whole)
        return std::nullopt;
    const std::string_view text = kernel_text::trimmed(kernel_text::view(*whole));
    if (text.empty())
        return std::nullopt;
    return text;
}

std::optional<qint64> readNumber(KernelFile& file)
{
    const auto text = readWord(file);
    qint64 value = 0;
    if (!text || std::from_chars(text->data(), text->data() + text->size(), value).ptr != text->data() + text->size())
        return std::nullopt;
    return value;
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

quint32 adapterStatusCode(std::string_view operState, bool loopback, bool carrier)
{
    if (operState == "up")
        return AdapterStatusOperational;
    if (operState == "down")
        return AdapterStatusDisconnected;
    if (operState == "dormant")
        return AdapterStatusConnecting;
    if (operState == "unknown")
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

// One interface as its sysfs folder tells it.
struct LinuxAdapterPlatform::Link {
    Link(const QString& dir, QByteArrayView linkName)
        : name(QString::fromUtf8(linkName)), bytes(linkName.toByteArray()),
          operState(dir + QStringLiteral("/operstate")), carrier(dir + QStringLiteral("/carrier"))
    {
        KernelFile ifindex(dir + QStringLiteral("/ifindex")), type(dir + QStringLiteral("/type")),
            speedFile(dir + QStringLiteral("/speed"));
        index = qint32(readNumber(ifindex).value_or(0));
        typeCode = adapterTypeCode(int(readNumber(type).value_or(-1)));
        speed = adapterSpeed(readNumber(speedFile).value_or(-1));
    }
    QString name;
    QByteArray bytes;
    KernelFile operState, carrier;
    qint32 index = 0;
    quint32 typeCode = 0;
    quint32 speed = 0;
};

LinuxAdapterPlatform::LinuxAdapterPlatform(QString procRoot, QString sysRoot, QString routeProbeAddress)
    : procRoot_(std::move(procRoot)), sysRoot_(std::move(sysRoot)), routeProbeAddress_(std::move(routeProbeAddress)),
      netDev_(procRoot_ + QStringLiteral("/net/dev"))
{
}

LinuxAdapterPlatform::~LinuxAdapterPlatform() = default;

LinuxAdapterPlatform::Link& LinuxAdapterPlatform::linkNamed(QByteArrayView name)
{
    for (const auto& link : links_) {
        if (link->bytes == name)
            return *link;
    }
    links_.push_back(std::make_unique<Link>(sysRoot_ + QStringLiteral("/class/net/") + QString::fromUtf8(name), name));
    return *links_.back();
}

AdapterReadError LinuxAdapterPlatform::interfaceRows(std::vector<InterfaceRow>& rows)
{
    rows.clear();
    const auto netDev = netDev_.read();
    if (!netDev)
        return {AdapterErrorNotSupported, QStringLiteral("The request is not supported.")};
    parseNetDev(*netDev, netDevRows_);
    for (const NetDevRow& dev : netDevRows_) {
        Link& link = linkNamed(dev.name);
        const auto operState = readWord(link.operState);
        InterfaceRow row;
        row.Index = link.index;
        row.Description = link.name;
        row.Name = link.name;
        row.InOctets = dev.rxBytes;
        row.OutOctets = dev.txBytes;
        row.InErrors = dev.rxErrors;
        row.OutErrors = dev.txErrors;
        // Linux keeps no per-interface count of unknown protocols.
        row.InUnknownProtos = 0;
        row.Type = link.typeCode;
        const bool loopback = row.Type == AdapterTypeLoopback;
        const std::string_view state = operState.value_or(std::string_view());
        // Only an "unknown" state asks whether there is a carrier.
        const bool carrier = state == "unknown" && !loopback && readNumber(link.carrier).value_or(0) == 1;
        row.OperStatus = adapterStatusCode(state, loopback, carrier);
        row.Speed = link.speed;
        rows.push_back(row);
        if (!operState) {
            // Gone, or never there: looked at afresh next time.
            links_.erase(std::find_if(links_.begin(), links_.end(), [&](const auto& l) { return l.get() == &link; }));
        }
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
