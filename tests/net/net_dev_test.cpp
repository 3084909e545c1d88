// The /proc/net/dev parser and the Linux reader, on captured and hand-made files.
#include "sources/adapter_platform.h"
#include "sources/adapters.h"
#include "sources/net_dev.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace orm;

namespace {

QByteArray fixture(const char* name)
{
    QFile file(QStringLiteral(ORM_FIXTURES "/net/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

const NetDevRow* rowNamed(const std::vector<NetDevRow>& rows, const QString& name)
{
    for (const NetDevRow& row : rows) {
        if (row.name == name)
            return &row;
    }
    return nullptr;
}

const QString MachineRoot = QStringLiteral(ORM_FIXTURES "/net/machine");

}  // namespace

TEST(NetDevParser, CapturedFileGivesEveryInterfaceInOrder)
{
    const auto rows = parseNetDev(fixture("proc_net_dev_real.txt"));
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].name, "lo");
    EXPECT_EQ(rows[1].name, "ifb0");
    EXPECT_EQ(rows[3].name, "eth0");
    EXPECT_EQ(rows[0].rxBytes, 3323u);
    EXPECT_EQ(rows[0].txBytes, 3323u);
    EXPECT_EQ(rows[3].rxBytes, 52132785u);
    EXPECT_EQ(rows[3].rxPackets, 1037u);
    EXPECT_EQ(rows[3].txBytes, 56040u);
    EXPECT_EQ(rows[3].txPackets, 688u);
}

TEST(NetDevParser, LargeCountersOddNamesAndBrokenLines)
{
    const auto rows = parseNetDev(fixture("proc_net_dev_large.txt"));

    const NetDevRow* lo = rowNamed(rows, "lo");
    ASSERT_TRUE(lo);
    EXPECT_EQ(lo->rxBytes, 18446744073709551615ull);
    EXPECT_EQ(lo->txBytes, 18446744073709551614ull);
    EXPECT_EQ(lo->rxPackets, 4294967296ull);

    // Counter written straight behind the colon, as old kernels did.
    const NetDevRow* vlan = rowNamed(rows, "eth0.100");
    ASSERT_TRUE(vlan);
    EXPECT_EQ(vlan->rxBytes, 9007199254740993ull);
    EXPECT_EQ(vlan->txBytes, 5000000000ull);
    EXPECT_EQ(vlan->rxErrors, 7u);
    EXPECT_EQ(vlan->rxDropped, 8u);
    EXPECT_EQ(vlan->txErrors, 9u);
    EXPECT_EQ(vlan->txDropped, 10u);

    const NetDevRow* bridge = rowNamed(rows, "br-1a2b3c4d");
    ASSERT_TRUE(bridge);
    EXPECT_EQ(bridge->rxBytes, 4294967295u);
    EXPECT_EQ(bridge->txBytes, 4294967296u);

    EXPECT_TRUE(rowNamed(rows, QString::fromUtf8("wg_ü-x.y")));

    // Short, non-numeric, negative and nameless lines are skipped; the line
    // after them still counts.
    EXPECT_FALSE(rowNamed(rows, "broken"));
    EXPECT_FALSE(rowNamed(rows, "bad0"));
    EXPECT_FALSE(rowNamed(rows, "neg0"));
    const NetDevRow* last = rowNamed(rows, "last0");
    ASSERT_TRUE(last);
    EXPECT_EQ(last->txBytes, 9u);
    EXPECT_EQ(rows.size(), 5u);

    EXPECT_TRUE(parseNetDev(QByteArray()).empty());
}

TEST(LinuxAdapterReader, FixtureTreeGivesSortedRowsWithFaithfulCodes)
{
    LinuxAdapterPlatform platform(MachineRoot + "/proc", MachineRoot + "/sys");
    std::vector<InterfaceRow> rows;
    ASSERT_FALSE(platform.interfaceRows(rows).failed());
    ASSERT_EQ(rows.size(), 8u);

    // Sorted by index; an interface with no sysfs folder has index 0.
    QStringList order;
    for (const InterfaceRow& row : rows)
        order << row.Name;
    EXPECT_EQ(order, QStringList({"ghost", "lo", "eth0", "wlan0", "tun0", "eth1", "ppp0", "bond0"}));
    EXPECT_EQ(rows[0].Index, 0);

    const InterfaceRow& lo = rows[1];
    EXPECT_EQ(lo.Index, 1);
    EXPECT_EQ(lo.Description, "lo");
    EXPECT_EQ(lo.Type, AdapterTypeLoopback);
    EXPECT_EQ(lo.OperStatus, AdapterStatusOperational);  // "unknown" on a loopback
    EXPECT_EQ(lo.Speed, 0u);                              // no speed file

    const InterfaceRow& eth0 = rows[2];
    EXPECT_EQ(eth0.Type, AdapterTypeEthernet);
    EXPECT_EQ(eth0.OperStatus, AdapterStatusOperational);
    EXPECT_EQ(eth0.Speed, 1000000000u);
    EXPECT_EQ(eth0.InOctets, 52132785u);
    EXPECT_EQ(eth0.OutOctets, 56040u);
    EXPECT_EQ(eth0.InErrors, 3u);
    EXPECT_EQ(eth0.OutErrors, 4u);

    const InterfaceRow& wlan0 = rows[3];
    EXPECT_EQ(wlan0.OperStatus, AdapterStatusConnecting);  // dormant
    EXPECT_EQ(wlan0.Speed, 0u);                            // -1: unknown
    EXPECT_EQ(wlan0.InOctets, 7000000000ull);              // beyond 32 bits, kept whole

    EXPECT_EQ(rows[4].Type, AdapterTypeOther);              // tun0
    EXPECT_EQ(rows[4].OperStatus, AdapterStatusOperational);  // unknown with carrier
    EXPECT_EQ(rows[5].OperStatus, AdapterStatusDisconnected);  // eth1 down
    EXPECT_EQ(rows[5].Speed, 4294967295u);                     // 100 Gbit/s does not fit
    EXPECT_EQ(rows[6].Type, AdapterTypePpp);
    EXPECT_EQ(rows[6].OperStatus, AdapterStatusDisconnected);  // unknown, no carrier
    EXPECT_EQ(rows[7].OperStatus, AdapterStatusNonOperational);  // lowerlayerdown
}

TEST(LinuxAdapterReader, MissingInterfaceTableIsUnsupported)
{
    LinuxAdapterPlatform platform(MachineRoot + "/nowhere", MachineRoot + "/sys");
    std::vector<InterfaceRow> rows;
    EXPECT_EQ(platform.interfaceRows(rows).number, AdapterErrorNotSupported);

    Adapters adapters(platform);
    adapters.GetAdapters(true);
    EXPECT_TRUE(adapters.IPHelperUnsupported);
    EXPECT_EQ(adapters.initError, "IP Helper is not supported by this system.");
    EXPECT_EQ(adapters.AdapterCount(), 0);
    EXPECT_EQ(adapters.defaultSlot(), -1);
}
