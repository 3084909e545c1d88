// The Wi-Fi tables fed by recorded answers of the system's wireless query.
#include "sources/wifi.h"

#include <deque>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// Plays back recorded answers, one per question asked.
class RecordedWifi final : public WifiSource {
public:
    struct Names {
        WifiAnswer answer;
        std::vector<QByteArray> ssids;
    };
    struct Signals {
        WifiAnswer answer;
        std::vector<qint32> dbm;
    };
    std::deque<Names> names;
    std::deque<Signals> signalRows;

    WifiAnswer activeSsids(std::vector<QByteArray>& ssids) override
    {
        if (names.empty())
            return {WifiAnswer::Failed, QStringLiteral("no answer recorded")};
        auto n = names.front();
        names.pop_front();
        ssids = n.ssids;
        return n.answer;
    }
    WifiAnswer activeSignals(std::vector<qint32>& dbm) override
    {
        if (signalRows.empty())
            return {WifiAnswer::Failed, QStringLiteral("no answer recorded")};
        auto s = signalRows.front();
        signalRows.pop_front();
        dbm = s.dbm;
        return s.answer;
    }
};

const WifiAnswer ok{WifiAnswer::Ok, {}};

qint32 percent(qint32 dbm)
{
    qint32 p = -9999;
    EXPECT_TRUE(signalPercent(dbm, p));
    return p;
}

std::vector<std::pair<QString, qint32>> rows(const std::vector<WifiRow>& table)
{
    std::vector<std::pair<QString, qint32>> out;
    for (const auto& r : table)
        out.emplace_back(r.SSID, r.Signal);
    return out;
}
using Rows = std::vector<std::pair<QString, qint32>>;

}  // namespace

TEST(WifiStrength, DbmToPercent)
{
    EXPECT_EQ(percent(-100), 0);
    EXPECT_EQ(percent(-70), 50);
    EXPECT_EQ(percent(-40), 100);
    EXPECT_EQ(percent(-10), 100);  // held at 100
    EXPECT_EQ(percent(-97), 5);
    EXPECT_EQ(percent(-67), 55);
    EXPECT_EQ(percent(-101), -2);  // nothing raises it to 0
    EXPECT_EQ(percent(-128), -47);
    qint32 p = 7;
    EXPECT_FALSE(signalPercent(std::numeric_limits<qint32>::min(), p));
    EXPECT_EQ(p, 7);
}

TEST(WifiStrength, SsidBytesToNames)
{
    EXPECT_EQ(ssidText("HomeNet"), "HomeNet");
    EXPECT_EQ(ssidText("Caf\xC3\xA9"), QString::fromUtf8("Caf\xC3\xA9"));
    EXPECT_EQ(ssidText("Caf\xE9"), QString::fromUtf8("Caf\xC3\xA9"));  // not UTF-8: a character per byte
    EXPECT_EQ(ssidText(QByteArray("Net\0junk", 8)), "Net");
    EXPECT_EQ(ssidText(QByteArray("\0abc", 4)), "");
}

TEST(WifiTables, SameNetworkOnTwoAdaptersGivesOneEntry)
{
    RecordedWifi source;
    source.names = {{ok, {"Home", "Home"}}};
    source.signalRows = {{ok, {-70, -40}}};
    WifiTables wifi(source);
    EXPECT_TRUE(wifi.Wifi());
    EXPECT_TRUE(wifi.WifiAvailable());
    EXPECT_EQ(rows(wifi.WifiNetworks()), (Rows{{"Home", 0}}));
    EXPECT_TRUE(wifi.WifiStrength());
    EXPECT_EQ(rows(wifi.WifiScan()), (Rows{{"Home", 50}, {"Home", 100}}));
    EXPECT_EQ(rows(wifi.WifiNetworks()), (Rows{{"Home", 50}}));  // the first row of a name stays
}

TEST(WifiTables, EachNewNameEmptiesTheRowsBeforeIt)
{
    RecordedWifi source;
    source.names = {{ok, {"Home", "Cafe", "Home"}}};
    source.signalRows = {{ok, {-70, -40, -55}}};
    WifiTables wifi(source);
    ASSERT_TRUE(wifi.Wifi());
    ASSERT_TRUE(wifi.WifiStrength());
    // "Home" is looked for among rows already emptied, so it comes again.
    EXPECT_EQ(rows(wifi.WifiNetworks()), (Rows{{"", 0}, {"", 0}, {"Home", 75}}));

    source.names = {{ok, {"Home", "Cafe"}}};
    source.signalRows = {{ok, {-70, -40}}};
    ASSERT_TRUE(wifi.Wifi());  // a new query rebuilds, it doesn't add
    ASSERT_TRUE(wifi.WifiStrength());
    EXPECT_EQ(rows(wifi.WifiNetworks()), (Rows{{"", 0}, {"Cafe", 100}}));
}

TEST(WifiTables, NamelessRowShiftsTheSignals)
{
    RecordedWifi source;
    source.names = {{ok, {QByteArray("\0\0\0\0", 4), "Home", "Cafe"}}, {ok, {"", "Home"}}};
    source.signalRows = {{ok, {-40, -70}}, {ok, {-40, -100}}};
    WifiTables wifi(source);
    ASSERT_TRUE(wifi.Wifi());
    EXPECT_EQ(rows(wifi.WifiScan()), (Rows{{"Home", 0}, {"Cafe", 0}}));
    ASSERT_TRUE(wifi.WifiStrength());
    EXPECT_EQ(rows(wifi.WifiScan()), (Rows{{"Home", 100}, {"Cafe", 50}}));

    // More signal rows than names: the query fails and nothing changes.
    ASSERT_TRUE(wifi.Wifi());
    const Rows networks = rows(wifi.WifiNetworks());
    EXPECT_EQ(networks, (Rows{{"Home", 0}}));
    EXPECT_FALSE(wifi.WifiStrength());
    EXPECT_EQ(rows(wifi.WifiScan()), (Rows{{"Home", 0}}));
    EXPECT_EQ(rows(wifi.WifiNetworks()), networks);
}

TEST(WifiTables, NoWifiAndFailuresLeaveTheTables)
{
    RecordedWifi source;
    WifiTables wifi(source);
    EXPECT_FALSE(wifi.WifiStrength());  // nothing asked yet
    EXPECT_TRUE(wifi.WifiNetworks().empty());

    source.names = {{ok, {"Home"}},
                    {{WifiAnswer::NoWifi, {}}, {}},
                    {{WifiAnswer::Failed, QStringLiteral("Permission denied")}, {"Other"}}};
    source.signalRows = {{ok, {-52}}, {{WifiAnswer::Failed, QStringLiteral("Device busy")}, {-90}}};
    ASSERT_TRUE(wifi.Wifi());
    ASSERT_TRUE(wifi.WifiStrength());
    const Rows before{{"Home", 80}};
    EXPECT_EQ(rows(wifi.WifiNetworks()), before);

    EXPECT_FALSE(wifi.WifiStrength());  // the signal query fails
    EXPECT_EQ(rows(wifi.WifiNetworks()), before);

    EXPECT_FALSE(wifi.Wifi());  // no Wi-Fi
    EXPECT_FALSE(wifi.WifiAvailable());
    EXPECT_EQ(rows(wifi.WifiNetworks()), before);
    EXPECT_FALSE(wifi.Wifi());  // an error
    EXPECT_EQ(rows(wifi.WifiScan()), before);

    // Unavailable: WifiStrength rebuilds WifiNetworks from the scan it has.
    EXPECT_FALSE(wifi.WifiStrength());
    EXPECT_EQ(rows(wifi.WifiNetworks()), before);
}

TEST(WifiTables, InterfacesWithoutANetworkGiveAnEmptyScan)
{
    RecordedWifi source;
    source.names = {{ok, {}}};
    WifiTables wifi(source);
    EXPECT_TRUE(wifi.Wifi());
    EXPECT_TRUE(wifi.WifiScan().empty());
    EXPECT_FALSE(wifi.WifiStrength());
    EXPECT_TRUE(wifi.WifiNetworks().empty());
}
