// nl80211 answers as the kernel lays them out, built here byte by byte, and
// the real query on this machine.
#include "sources/nl80211_source.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// Attribute numbers of the nl80211 interface (stable kernel ABI).
constexpr quint16 AttrIfindex = 3, AttrIftype = 5, AttrStaInfo = 21, AttrSsid = 52;
constexpr quint16 StaInfoSignal = 7, StaInfoSignalAvg = 13;
constexpr quint32 IftypeStation = 2, IftypeAp = 3;

// One netlink attribute: length, type, payload, padded to four bytes.
QByteArray attr(quint16 type, const QByteArray& payload)
{
    const quint16 header[2] = {quint16(4 + payload.size()), type};  // host byte order
    QByteArray a(reinterpret_cast<const char*>(header), 4);
    a += payload;
    while (a.size() % 4)
        a += '\0';
    return a;
}
QByteArray u32(quint32 v)
{
    return QByteArray(reinterpret_cast<const char*>(&v), 4);
}
QByteArray u8(qint8 v) { return QByteArray(1, char(v)); }

QByteArray interfaceMessage(quint32 ifindex, quint32 iftype, const QByteArray& ssid)
{
    QByteArray m = attr(AttrIfindex, u32(ifindex)) + attr(AttrIftype, u32(iftype));
    if (!ssid.isNull())
        m += attr(AttrSsid, ssid);
    return m;
}

}  // namespace

TEST(Nl80211Parse, Interfaces)
{
    const auto home = parseNl80211Interface(interfaceMessage(3, IftypeStation, "HomeNet"));
    ASSERT_TRUE(home);
    EXPECT_EQ(home->ifindex, 3u);
    EXPECT_EQ(home->ssid, "HomeNet");
    EXPECT_TRUE(home->associated());

    const auto idle = parseNl80211Interface(interfaceMessage(4, IftypeStation, QByteArray()));
    ASSERT_TRUE(idle);
    EXPECT_FALSE(idle->associated());

    // An access point names its own network; it is no client of one.
    const auto ap = parseNl80211Interface(interfaceMessage(5, IftypeAp, "Hotspot"));
    ASSERT_TRUE(ap);
    EXPECT_FALSE(ap->associated());

    // A device without a network interface, and a malformed index.
    EXPECT_FALSE(parseNl80211Interface(attr(AttrIftype, u32(10))));
    EXPECT_FALSE(parseNl80211Interface(attr(AttrIfindex, QByteArray(2, '\1'))));

    const auto order = activeInterfaces({*parseNl80211Interface(interfaceMessage(9, IftypeStation, "B")),
                                         *idle, *ap,
                                         *parseNl80211Interface(interfaceMessage(7, IftypeStation, "A"))});
    ASSERT_EQ(order.size(), 2u);
    EXPECT_EQ(order[0].ssid, "A");
    EXPECT_EQ(order[1].ssid, "B");
}

TEST(Nl80211Parse, StationSignal)
{
    const QByteArray mac = attr(6, QByteArray("\x02\x00\x00\x00\x00\x01", 6));
    EXPECT_EQ(parseNl80211StationSignal(mac + attr(AttrStaInfo, attr(StaInfoSignal, u8(-60)))), -60);
    EXPECT_EQ(parseNl80211StationSignal(mac + attr(AttrStaInfo, attr(StaInfoSignalAvg, u8(-71)))), -71);
    EXPECT_EQ(parseNl80211StationSignal(
                  attr(AttrStaInfo, attr(StaInfoSignalAvg, u8(-71)) + attr(StaInfoSignal, u8(-58)))),
              -58);
    EXPECT_FALSE(parseNl80211StationSignal(mac + attr(AttrStaInfo, attr(1, u32(1000)))));
    EXPECT_FALSE(parseNl80211StationSignal(mac));
}

TEST(Nl80211Source, NoWifiOnThisMachine)
{
    if (!QDir(QStringLiteral("/sys/class/ieee80211")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).isEmpty())
        GTEST_SKIP() << "this machine has a wireless device";
    Nl80211Source source;
    std::vector<QByteArray> ssids{"stale"};
    const WifiAnswer names = source.activeSsids(ssids);
    EXPECT_EQ(names.status, WifiAnswer::NoWifi) << names.error.toStdString();
    std::vector<qint32> dbm;
    EXPECT_EQ(source.activeSignals(dbm).status, WifiAnswer::NoWifi);
    EXPECT_TRUE(dbm.empty());

    WifiTables wifi(source);
    EXPECT_FALSE(wifi.Wifi());
    EXPECT_FALSE(wifi.WifiStrength());
    EXPECT_TRUE(wifi.WifiNetworks().empty());
}
