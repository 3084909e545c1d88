// The adapter table's rules on a platform whose rows the test sets; the
// /proc/net/dev parser and Linux reader on hand-made files and a fixture tree;
// and the loopback row on this machine.
#include "sources/adapters.h"
#include "sources/net_dev.h"

#include <QFile>
#include <gtest/gtest.h>

#include <net/if.h>

using namespace orm;

namespace {

const QString MachineRoot = QStringLiteral(ORM_FIXTURES "/net/machine");

struct FakePlatform final : AdapterPlatform {
    std::vector<InterfaceRow> interfaces;
    std::vector<AddressRow> addresses;
    qint32 best = 0;
    AdapterReadError error;  // fails whichever read comes first
    AdapterReadError interfaceRows(std::vector<InterfaceRow>& rows) override { rows = interfaces; return error; }
    AdapterReadError addressRows(std::vector<AddressRow>& rows) override { rows = addresses; return error; }
    qint32 bestInterfaceIndex() override { return best; }

    // An Ethernet adapter at work, with one address row.
    void add(qint32 index, const char* name, quint64 in = 0, Ipv4Bytes address = {10, 0, 0, 1})
    {
        interfaces.push_back({.Index = index, .Description = name, .Name = name, .InOctets = in,
                              .Type = AdapterTypeEthernet, .OperStatus = AdapterStatusOperational});
        addresses.push_back({index, address});
    }
};

}  // namespace

TEST(AdapterTable, RecordsComeFromStartUpAndStay)
{
    FakePlatform p;
    p.add(0, "phantom");  // index 0 never names an adapter
    p.add(3, "docker0");
    p.addresses.pop_back();  // moves traffic, has no IPv4 address
    p.add(1, "eth0", 1000, {192, 168, 1, 20});
    p.addresses.push_back({1, {192, 168, 1, 99}});  // a second address: the first row counts
    p.add(2, "wlan0");
    p.best = 2;
    Adapters adapters(p);
    adapters.GetAdapters(true);
    EXPECT_EQ(adapters.descriptions(), QStringList({"eth0", "wlan0"}));
    EXPECT_EQ(adapters.AdapterTable[0].IPAddress, "192.168.1.20");
    EXPECT_EQ(adapters.defaultSlot(), 1);  // the best route's
    p.interfaces[2].InOctets = 1300;
    adapters.GetAdapters(false);

    // eth0 is unplugged and usb0 comes too late: address rows are read at start only.
    p.interfaces[2] = {.Index = 6, .Description = "usb0", .Name = "usb0", .InOctets = 50};
    p.addresses.push_back({6, {10, 0, 0, 6}});
    // The type is read at start, the status on every refresh.
    p.interfaces[3].Type = AdapterTypePpp;
    p.interfaces[3].OperStatus = AdapterStatusDisconnected;
    adapters.GetAdapters(false);
    ASSERT_EQ(adapters.descriptions(), QStringList({"eth0", "wlan0"}));
    EXPECT_EQ(adapters.AdapterTable[0].InDelta, 300);  // stale, as the last refresh left it
    EXPECT_EQ(adapters.AdapterTable[1].StatusText, "Disconnected        ");
}

TEST(AdapterTable, DeltasFollowTheRefreshRules)
{
    FakePlatform p;
    p.add(2, "eth0", 5000);  // outbound counter truly 0 at the start
    Adapters adapters(p);
    adapters.GetAdapters(true);
    EXPECT_EQ(adapters.defaultSlot(), 0);  // no route: the first row
    const AdapterRecord& r = adapters.AdapterTable.at(0);
    const auto refresh = [&](quint64 in, quint64 out) {
        p.interfaces[0].InOctets = in;
        p.interfaces[0].OutOctets = out;
        adapters.GetAdapters(false);
    };
    refresh(5600, 800);
    EXPECT_EQ(r.InDelta, 600);
    EXPECT_EQ(r.OutDelta, 0);  // previous was exactly 0: taken again, delta 0
    refresh(4294967295u, 1000);
    refresh(3, 1000);
    EXPECT_EQ(r.InDelta, -4294967292.0);  // no wrap handling: the fall passes on
    refresh(3 + 10000000000ull, 1000);
    EXPECT_EQ(r.InDelta, 10000000000.0);  // 64-bit counters are kept whole

    p.error = {5, "Input/output error"};  // a failing refresh is silent and changes nothing
    refresh(1, 1);
    EXPECT_EQ(r.InOctets, 3 + 10000000000.0);
}

TEST(NetDevParser, LargeCountersOddNamesAndBrokenLines)
{
    QFile file(QStringLiteral(ORM_FIXTURES "/net/proc_net_dev_large.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    std::vector<NetDevRow> rows;
    parseNetDev(text, rows);
    QStringList got;  // name, received and sent bytes
    for (const NetDevRow& r : rows)
        got << QStringLiteral("%1 %2 %3").arg(QString::fromUtf8(r.name)).arg(r.rxBytes).arg(r.txBytes);
    // eth0.100 has its counter straight behind the colon, as old kernels wrote
    // it. Short, non-numeric, negative and nameless lines are skipped; the line
    // after them still counts.
    ASSERT_EQ(got, QStringList({"lo 18446744073709551615 18446744073709551614", "eth0.100 9007199254740993 5000000000",
                                "br-1a2b3c4d 4294967295 4294967296", QString::fromUtf8("wg_ü-x.y 12 34"), "last0 1 9"}));
    EXPECT_EQ(rows[1].txErrors, 9u);  // the columns between bytes and bytes
}

TEST(LinuxAdapterReader, FixtureTreeGivesSortedRowsWithFaithfulCodes)
{
    LinuxAdapterPlatform platform(MachineRoot + "/proc", MachineRoot + "/sys");
    std::vector<InterfaceRow> rows;
    ASSERT_FALSE(platform.interfaceRows(rows).failed());
    QStringList got;  // name, index, type code, status code, bits per second
    for (const InterfaceRow& r : rows)
        got << QStringLiteral("%1 %2 %3 %4 %5").arg(r.Name).arg(r.Index).arg(r.Type).arg(r.OperStatus).arg(r.Speed);
    // Sorted by index; ghost has no sysfs folder. lo and tun0 say "unknown" and
    // work (5), ppp0 says it without carrier (2); wlan0 is dormant (3) with
    // speed -1, eth1's 100 Gbit/s does not fit, bond0 is lowerlayerdown (0).
    ASSERT_EQ(got, QStringList({"ghost 0 1 0 0", "lo 1 24 5 0", "eth0 2 6 5 1000000000", "wlan0 3 6 3 0",
                                "tun0 4 1 5 0", "eth1 5 6 2 4294967295", "ppp0 6 23 2 0", "bond0 7 6 0 0"}));
    EXPECT_EQ(rows[2].OutErrors, 4u);
}

TEST(RealAdapters, TheRouteToALoopbackAddressLeadsOutThroughLo)
{
    const qint32 index = qint32(if_nametoindex("lo"));
    LinuxAdapterPlatform probeLoopback(QStringLiteral("/proc"), QStringLiteral("/sys"), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(probeLoopback.bestInterfaceIndex(), index);
    LinuxAdapterPlatform platform;
    Adapters adapters(platform);
    adapters.GetAdapters(true);
    ASSERT_GE(adapters.slotOfIndex(index), 0);
    EXPECT_EQ(adapters.AdapterTable[adapters.slotOfIndex(index)].IPAddress, "127.0.0.1 (localhost)");
}
