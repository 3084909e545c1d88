// The Wi-Fi tables fed by set answers of the system's wireless query, and
// the nl80211 answers as the kernel lays them out, built here byte by byte.
#include "sources/nl80211_source.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// Gives the answers the test has set, as often as it is asked.
struct FakeWifi final : WifiSource {
    WifiAnswer names{WifiAnswer::Ok, {}}, signalAnswer{WifiAnswer::Ok, {}};
    std::vector<QByteArray> ssids;
    std::vector<qint32> dbm;
    WifiAnswer activeSsids(std::vector<QByteArray>& out) override { out = ssids; return names; }
    WifiAnswer activeSignals(std::vector<qint32>& out) override { out = dbm; return signalAnswer; }
};

QString text(const std::vector<WifiRow>& table)
{
    QStringList rows;
    for (const WifiRow& r : table)
        rows << QStringLiteral("%1 %2").arg(r.SSID).arg(r.Signal);
    return rows.join(QStringLiteral(", "));
}

// Attribute numbers of the nl80211 interface (stable kernel ABI).
constexpr quint16 AttrIfindex = 3, AttrIftype = 5, AttrStaInfo = 21, AttrSsid = 52;
constexpr quint16 StaInfoSignal = 7, StaInfoSignalAvg = 13;
constexpr quint32 IftypeStation = 2, IftypeAp = 3;

// One netlink attribute: length and type in host order, payload padded to four bytes.
QByteArray attr(quint16 type, const QByteArray& payload)
{
    const quint16 header[2] = {quint16(4 + payload.size()), type};
    QByteArray a = QByteArray(reinterpret_cast<const char*>(header), 4) + payload;
    return a + QByteArray((4 - a.size() % 4) % 4, '\0');
}
QByteArray u32(quint32 v) { return QByteArray(reinterpret_cast<const char*>(&v), 4); }
QByteArray s8(qint8 v) { return QByteArray(1, char(v)); }

Nl80211Interface interface(quint32 ifindex, quint32 iftype, const QByteArray& ssid)
{
    QByteArray m = attr(AttrIfindex, u32(ifindex)) + attr(AttrIftype, u32(iftype));
    return parseNl80211Interface(ssid.isNull() ? m : m + attr(AttrSsid, ssid)).value();
}

}  // namespace

TEST(WifiTables, EachNameOnceEachNewNameEmptiesTheRowsBeforeIt)
{
    qint32 p = 7;
    EXPECT_TRUE(signalPercent(-101, p) && p == -2);  // nothing raises it to 0
    EXPECT_FALSE(signalPercent(std::numeric_limits<qint32>::min(), p));
    EXPECT_EQ(ssidText("Caf\xE9"), QString::fromUtf8("Caf\xC3\xA9"));  // not UTF-8: a character per byte

    FakeWifi source;
    source.ssids = {"Home", "Home"};
    source.dbm = {-70, -10};
    WifiTables wifi(source);
    EXPECT_TRUE(wifi.Wifi() && wifi.WifiStrength());
    EXPECT_EQ(text(wifi.WifiScan()), "Home 50, Home 100");  // -10 dBm and above held at 100
    EXPECT_EQ(text(wifi.WifiNetworks()), "Home 50");  // the first row of a name stays

    // "Home" is looked for among rows already emptied, so it comes again.
    source.ssids = {"Home", "Cafe", "Home"};
    source.dbm = {-70, -40, -55};
    ASSERT_TRUE(wifi.Wifi() && wifi.WifiStrength());
    EXPECT_EQ(text(wifi.WifiNetworks()), " 0,  0, Home 75");
}

TEST(Nl80211Parse, InterfacesInUseInIndexOrderAndTheStationSignal)
{
    const Nl80211Interface home = interface(9, IftypeStation, "HomeNet");
    // Not joined, and an access point naming its own network: no client of one.
    const auto order = activeInterfaces({home, interface(4, IftypeStation, QByteArray()),
                                         interface(5, IftypeAp, "Hotspot"), interface(7, IftypeStation, "A")});
    ASSERT_EQ(order.size(), 2u);
    EXPECT_EQ(order[0].ssid, "A");
    EXPECT_EQ(order[1].ssid, "HomeNet");

    // A device without a network interface, and a malformed index.
    EXPECT_FALSE(parseNl80211Interface(attr(AttrIftype, u32(10))));
    EXPECT_FALSE(parseNl80211Interface(attr(AttrIfindex, QByteArray(2, '\1'))));

    // A station's signal: the last reading, else the average.
    const QByteArray mac = attr(6, QByteArray("\x02\x00\x00\x00\x00\x01", 6));
    EXPECT_EQ(parseNl80211StationSignal(mac + attr(AttrStaInfo, attr(StaInfoSignalAvg, s8(-71)))), -71);
    EXPECT_EQ(parseNl80211StationSignal(attr(AttrStaInfo, attr(StaInfoSignalAvg, s8(-71)) + attr(StaInfoSignal, s8(-58)))),
              -58);
    EXPECT_FALSE(parseNl80211StationSignal(mac + attr(AttrStaInfo, attr(1, u32(1000)))));
}
