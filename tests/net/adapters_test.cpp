// The adapter table's rules on a platform whose rows the test sets.
#include "sources/adapters.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace orm;

namespace {

struct FakePlatform final : AdapterPlatform {
    std::vector<InterfaceRow> interfaces;
    std::vector<AddressRow> addresses;
    qint32 best = 0;
    AdapterReadError interfaceError, addressError;
    int addressReads = 0;

    AdapterReadError interfaceRows(std::vector<InterfaceRow>& rows) override
    {
        rows = interfaceError.failed() ? std::vector<InterfaceRow>() : interfaces;
        return interfaceError;
    }
    AdapterReadError addressRows(std::vector<AddressRow>& rows) override
    {
        ++addressReads;
        rows = addressError.failed() ? std::vector<AddressRow>() : addresses;
        return addressError;
    }
    qint32 bestInterfaceIndex() override { return best; }

    InterfaceRow& add(qint32 index, const QString& name, quint64 in = 0, quint64 out = 0)
    {
        InterfaceRow row;
        row.Index = index;
        row.Description = name;
        row.Name = name;
        row.InOctets = in;
        row.OutOctets = out;
        row.Type = AdapterTypeEthernet;
        row.OperStatus = AdapterStatusOperational;
        interfaces.push_back(row);
        return interfaces.back();
    }
    InterfaceRow& row(qint32 index)
    {
        for (InterfaceRow& r : interfaces) {
            if (r.Index == index)
                return r;
        }
        throw std::logic_error("no such row");
    }
    void address(qint32 index, Ipv4Bytes address, Ipv4Bytes mask = {255, 255, 255, 0}, Ipv4Bytes broadcast = {})
    {
        addresses.push_back({index, address, mask, broadcast});
    }
};

}  // namespace

TEST(AdapterTable, RecordsOnlyForAdaptersWithAnAddressRow)
{
    FakePlatform platform;
    platform.add(0, "phantom", 10, 10);       // index 0 never names an adapter
    platform.add(1, "lo", 500, 500).Type = AdapterTypeLoopback;
    platform.add(2, "eth0", 1000, 2000).Speed = 100000000;
    platform.add(3, "docker0", 99999, 99999);  // moves traffic, has no IPv4 address
    platform.address(0, {10, 9, 9, 9});
    platform.address(2, {192, 168, 1, 20}, {255, 255, 255, 0}, {192, 168, 1, 255});
    platform.address(1, {127, 0, 0, 1}, {255, 0, 0, 0});
    platform.address(2, {192, 168, 1, 99});  // a second address: the first row counts

    Adapters adapters(platform);
    adapters.GetAdapters(true);

    ASSERT_EQ(adapters.AdapterCount(), 2);
    EXPECT_EQ(adapters.descriptions(), QStringList({"lo", "eth0"}));
    EXPECT_EQ(adapters.slotOfIndex(3), -1);
    EXPECT_EQ(adapters.slotOfIndex(0), -1);

    const AdapterRecord& lo = adapters.AdapterTable[0];
    EXPECT_EQ(lo.IPAddress, "127.0.0.1 (localhost)");
    EXPECT_EQ(lo.SubnetMask, "255.0.0.0");
    EXPECT_EQ(lo.BroadcastAddress, "0.0.0.0");
    EXPECT_EQ(lo.TypeText, "Loopback       ");

    const AdapterRecord& eth0 = adapters.AdapterTable[1];
    EXPECT_EQ(eth0.Index, 2);
    EXPECT_EQ(eth0.Name, "eth0");
    EXPECT_EQ(eth0.IPAddress, "192.168.1.20");
    EXPECT_EQ(eth0.BroadcastAddress, "192.168.1.255");
    EXPECT_EQ(eth0.Speed, 100000000u);
    EXPECT_EQ(eth0.TypeText, "Ethernet       ");
    EXPECT_EQ(eth0.StatusText, "Unreachable         ");  // a working adapter reads so
}

TEST(AdapterTable, DeltasFollowTheRefreshRules)
{
    FakePlatform platform;
    platform.add(2, "eth0", 5000, 0);  // outbound counter truly 0 at the start
    platform.address(2, {10, 0, 0, 2});
    Adapters adapters(platform);

    adapters.GetAdapters(true);
    const AdapterRecord& r = adapters.AdapterTable.at(0);
    EXPECT_EQ(r.InOctets, 5000);
    EXPECT_EQ(r.InDelta, 0);  // first refresh
    EXPECT_EQ(r.InPrevious, 5000);
    EXPECT_EQ(r.OutPrevious, 0);

    platform.row(2).InOctets = 5600;
    platform.row(2).OutOctets = 800;
    adapters.GetAdapters(false);
    EXPECT_EQ(r.InDelta, 600);
    EXPECT_EQ(r.OutDelta, 0);  // previous was exactly 0: taken again, delta 0
    EXPECT_EQ(r.OutPrevious, 800);

    platform.row(2).OutOctets = 1000;
    adapters.GetAdapters(false);
    EXPECT_EQ(r.OutDelta, 200);

    // No wrap handling: whatever the counter does passes on unchanged.
    platform.row(2).InOctets = 4294967295u;
    adapters.GetAdapters(false);
    platform.row(2).InOctets = 3;
    adapters.GetAdapters(false);
    EXPECT_EQ(r.InDelta, -4294967292.0);
    EXPECT_EQ(r.InOctets, 3);

    // 64-bit counters are kept whole.
    platform.row(2).InOctets = 3 + 10000000000ull;
    adapters.GetAdapters(false);
    EXPECT_EQ(r.InDelta, 10000000000.0);
}

TEST(AdapterTable, FieldsReadAtStartStayWhileCountersAndStateMove)
{
    FakePlatform platform;
    platform.add(4, "wlan0", 10, 10).Speed = 54000000;
    platform.row(4).InErrors = 1;
    platform.address(4, {10, 1, 1, 4});
    Adapters adapters(platform);
    adapters.GetAdapters(true);

    platform.row(4).Type = AdapterTypePpp;
    platform.row(4).Speed = 1;
    platform.row(4).Description = "renamed";
    platform.row(4).OperStatus = AdapterStatusDisconnected;
    platform.row(4).InErrors = 7;
    platform.row(4).OutErrors = 4294967296ull;
    platform.addresses[0].Address = {10, 1, 1, 5};
    adapters.GetAdapters(false);

    const AdapterRecord& r = adapters.AdapterTable.at(0);
    EXPECT_EQ(r.TypeText, "Ethernet       ");
    EXPECT_EQ(r.Speed, 54000000u);
    EXPECT_EQ(r.Description, "wlan0");
    EXPECT_EQ(r.IPAddress, "10.1.1.4");
    EXPECT_EQ(r.StatusText, "Disconnected        ");
    EXPECT_EQ(r.InErrors, 7);
    EXPECT_EQ(r.OutErrors, 4294967296.0);
    EXPECT_EQ(platform.addressReads, 1);
}

TEST(AdapterTable, TextsKeepTheirFixedWidths)
{
    EXPECT_EQ(AdapterStatusText(0), "Not operational     ");
    EXPECT_EQ(AdapterStatusText(1), "Operational         ");
    EXPECT_EQ(AdapterStatusText(6), QString(20, ' '));
    EXPECT_EQ(AdapterTypeText(28), "Slip           ");
    EXPECT_EQ(AdapterTypeText(71), QString(15, ' '));
    EXPECT_EQ(AddressToText({0, 10, 200, 255}), "0.10.200.255");
}

TEST(AdapterTable, VanishedAdapterKeepsItsRecordAndNewOnesWaitForRestart)
{
    FakePlatform platform;
    platform.add(1, "lo", 100, 100);
    platform.add(5, "usb0", 1000, 1000);
    platform.address(1, {127, 0, 0, 1});
    platform.address(5, {10, 5, 5, 5});
    Adapters adapters(platform);
    adapters.GetAdapters(true);
    platform.row(5).InOctets = 1300;
    adapters.GetAdapters(false);
    ASSERT_EQ(adapters.AdapterTable[1].InDelta, 300);

    platform.interfaces.erase(platform.interfaces.begin() + 1);  // usb0 unplugged
    platform.add(6, "usb1", 50, 50);
    platform.address(6, {10, 6, 6, 6});  // appears too late: address rows were read at start
    platform.row(1).InOctets = 150;
    adapters.GetAdapters(false);

    ASSERT_EQ(adapters.AdapterCount(), 2);
    const AdapterRecord& usb0 = adapters.AdapterTable[1];
    EXPECT_EQ(usb0.InOctets, 1300);
    EXPECT_EQ(usb0.InDelta, 300);  // stale, as the last refresh left it
    EXPECT_EQ(adapters.AdapterTable[0].InDelta, 50);
    EXPECT_EQ(adapters.slotOfIndex(6), -1);
}

TEST(AdapterTable, RecordsKeepTheirSlotWhenTheInterfaceOrderChanges)
{
    FakePlatform platform;
    platform.add(1, "a", 10, 10);
    platform.add(2, "b", 20, 20);
    platform.address(1, {10, 0, 0, 1});
    platform.address(2, {10, 0, 0, 2});
    Adapters adapters(platform);
    adapters.GetAdapters(true);

    std::swap(platform.interfaces[0], platform.interfaces[1]);
    platform.row(2).InOctets = 25;
    adapters.GetAdapters(false);
    EXPECT_EQ(adapters.AdapterTable[0].Description, "a");
    EXPECT_EQ(adapters.AdapterTable[0].InDelta, 0);
    EXPECT_EQ(adapters.AdapterTable[1].InDelta, 5);
}

TEST(AdapterTable, DefaultSlot)
{
    FakePlatform platform;
    Adapters empty(platform);
    empty.GetAdapters(true);
    EXPECT_EQ(empty.defaultSlot(), -1);
    EXPECT_TRUE(empty.descriptions().isEmpty());
    EXPECT_TRUE(empty.initError.isEmpty());

    platform.add(1, "lo");
    platform.add(3, "eth0");
    platform.add(4, "wlan0");
    platform.address(1, {127, 0, 0, 1});
    platform.address(3, {10, 0, 0, 3});
    platform.address(4, {10, 0, 0, 4});

    Adapters noRoute(platform);
    noRoute.GetAdapters(true);
    EXPECT_EQ(noRoute.defaultSlot(), 0);  // start-up falls back to the first row

    platform.best = 4;
    Adapters routed(platform);
    routed.GetAdapters(true);
    EXPECT_EQ(routed.defaultSlot(), 2);
    EXPECT_TRUE(routed.AdapterTable[2].IsDefault);
    EXPECT_FALSE(routed.AdapterTable[1].IsDefault);
    EXPECT_EQ(routed.slotOfIndex(3), 1);
}

TEST(AdapterTable, ManyAddressRowsAreNoFault)
{
    FakePlatform platform;
    for (int i = 1; i <= 40; ++i) {
        platform.add(i, QStringLiteral("veth%1").arg(i), i, i);
        platform.address(i, {10, 0, quint8(i), 1});
    }
    Adapters adapters(platform);
    adapters.GetAdapters(true);
    EXPECT_EQ(adapters.AdapterCount(), 40);
    EXPECT_TRUE(adapters.initError.isEmpty());
}

TEST(AdapterTable, FailuresAtStartAreReportedAndRefreshFailuresAreSilent)
{
    FakePlatform platform;
    platform.add(2, "eth0", 100, 100);
    platform.address(2, {10, 0, 0, 2});

    platform.interfaceError = {AdapterErrorNotSupported, "The request is not supported."};
    Adapters unsupported(platform);
    unsupported.GetAdapters(true);
    EXPECT_TRUE(unsupported.IPHelperUnsupported);
    EXPECT_EQ(unsupported.initError, "IP Helper is not supported by this system.");
    EXPECT_TRUE(unsupported.initErrorTitle.isEmpty());
    EXPECT_EQ(unsupported.AdapterCount(), 0);

    platform.interfaceError = {};
    platform.addressError = {13, "Permission denied"};
    Adapters denied(platform);
    denied.IPHelperUnsupported = true;
    denied.GetAdapters(true);
    EXPECT_FALSE(denied.IPHelperUnsupported);
    EXPECT_EQ(denied.initError,
              "13 - (0 - 0) Permission denied\nError - IP Statistic Update - Please contact Vendrake");
    EXPECT_EQ(denied.initErrorTitle, "IP Statistic Update Error");
    EXPECT_EQ(denied.AdapterCount(), 0);

    platform.addressError = {};
    Adapters working(platform);
    working.GetAdapters(true);
    platform.row(2).InOctets = 400;
    platform.interfaceError = {5, "Input/output error"};
    working.GetAdapters(false);
    EXPECT_TRUE(working.initError.isEmpty());
    ASSERT_EQ(working.AdapterCount(), 1);
    EXPECT_EQ(working.AdapterTable[0].InOctets, 100);  // kept what it had
    EXPECT_EQ(working.AdapterTable[0].InDelta, 0);
}
