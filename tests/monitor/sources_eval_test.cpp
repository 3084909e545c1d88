// The Nodes fed by the network, process, battery and Wi-Fi sources, through
// the tick, on sources whose readings the test sets.
#include "monitor_fixture.h"

#include <QDir>

using namespace orm;
using namespace orm::test;

namespace {

class FakeAdapters final : public AdapterPlatform {
public:
    AdapterReadError interfaceRows(std::vector<InterfaceRow>& rows) override
    {
        rows = interfaces;
        return {};
    }
    AdapterReadError addressRows(std::vector<AddressRow>& rows) override
    {
        rows = {{1, {127, 0, 0, 1}, {255, 0, 0, 0}, {127, 255, 255, 255}},
                {7, {10, 0, 0, 5}, {255, 255, 255, 0}, {10, 0, 0, 255}}};
        return {};
    }
    qint32 bestInterfaceIndex() override { return 7; }

    std::vector<InterfaceRow> interfaces = {
        {1, QStringLiteral("lo"), QStringLiteral("lo"), 1000, 1000, 0, 0, 0, 24, 5, 0},
        {7, QStringLiteral("eth0"), QStringLiteral("eth0"), 50000, 9000, 3, 4, 0, 6, 5, 1000000000}};
};

class FakeWifi final : public WifiSource {
public:
    WifiAnswer activeSsids(std::vector<QByteArray>& ssids) override
    {
        ssids = {QByteArrayLiteral("Home Net")};
        return {WifiAnswer::Ok, {}};
    }
    WifiAnswer activeSignals(std::vector<qint32>& dbm) override
    {
        dbm = {signal};
        return {WifiAnswer::Ok, {}};
    }
    qint32 signal = -70;
};

class SourceNodes : public MonitorFixture {
protected:
    void configure() override
    {
        auto adapters = std::make_unique<FakeAdapters>();
        fakeAdapters = adapters.get();
        sources().adapterPlatform = std::move(adapters);
        sources().adapters = std::make_unique<Adapters>(*sources().adapterPlatform);
        sources().adapterRows = std::make_unique<AdapterRows>(*sources().adapters);
        sources().processes = std::make_unique<ProcessTable>(QStringLiteral(ORM_FIXTURES "/proc/tree"));
        sources().wifiSource = std::make_unique<FakeWifi>();
        sources().wifi = std::make_unique<WifiTables>(*sources().wifiSource);
        ASSERT_TRUE(sys.isValid());
        QDir().mkpath(sys.filePath(QStringLiteral("class/power_supply/BAT0")));
        writeFile(QStringLiteral("class/power_supply/BAT0/type"), "Battery\n");
        writeFile(QStringLiteral("class/power_supply/BAT0/present"), "1\n");
        writeFile(QStringLiteral("class/power_supply/BAT0/capacity"), "77\n");
        sources().battery = std::make_unique<BatteryReader>(sys.path());

        // One Graph of eight Nodes, stored as a user left it.
        const int types[] = {DownloadNodeType, UploadType, UpDownType, DownErrType, ProcessesType,
                             BatteryType,      WifiType,   DownloadNodeType};
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("FirstRun"), QStringLiteral("False"));
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("Sensors"), QStringLiteral("1"));
        const QString g = QStringLiteral("Settings/Sensor1");
        store.writeValue(g, QStringLiteral("SampleEverySeconds"), QStringLiteral("1"));
        store.writeValue(g, QStringLiteral("Nodes"), QStringLiteral("8"));
        for (int k = 0; k < 8; ++k) {
            const QString n = g + QStringLiteral("/Node%1").arg(k + 1);
            store.writeValue(n, QStringLiteral("NodeType"), QString::number(types[k]));
            store.writeValue(n, QStringLiteral("AdapterMonitoring"), QStringLiteral("7"));
            store.writeValue(n, QStringLiteral("SSID"), QStringLiteral("Home Net"));
        }
        // The last Node's adapter is gone: it falls back to the default adapter.
        store.writeValue(g + QStringLiteral("/Node8"), QStringLiteral("AdapterMonitoring"), QStringLiteral("99"));
    }

    void writeFile(const QString& rel, const QByteArray& text)
    {
        QFile f(sys.filePath(rel));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    }

    double value(int node) { return view(0).GetNodeValue(node, 0); }

    QTemporaryDir sys;
    FakeAdapters* fakeAdapters = nullptr;
};

TEST_F(SourceNodes, AdapterNodesMeasureRatesAndRawErrorCounts)
{
    const Graph& g = monitor->Sensors[0];
    ASSERT_EQ(g.Nodes.size(), 8u);
    EXPECT_EQ(g.Nodes[0].AdapterIndex, 1);  // stored index 7 is row 1
    EXPECT_EQ(g.Nodes[7].AdapterIndex, 1);  // index 99 is gone: the default adapter
    EXPECT_EQ(monitor->lists.cmbNetCard, QStringList({QStringLiteral("lo"), QStringLiteral("eth0")}));

    tick();
    EXPECT_EQ(value(0), 0);  // the first sample of a rate is 0
    EXPECT_EQ(value(3), 3);  // errors as they stand
    fakeAdapters->interfaces[1].InOctets += 4000;
    fakeAdapters->interfaces[1].OutOctets += 1000;
    tick(2000);
    EXPECT_EQ(value(0), 2000);
    EXPECT_EQ(value(1), 500);
    EXPECT_EQ(value(2), 2500);
    EXPECT_EQ(value(7), 2000);

    // The adapter columns carry the deltas of the last read, errors as counts.
    const QStringList lines = logLines();
    const QStringList fields = lines[3].split(QLatin1Char(','));
    const QStringList last = lines.last().split(QLatin1Char(','));
    EXPECT_EQ(last.value(int(fields.indexOf(QStringLiteral("ADPT_DN_1")))), QStringLiteral("4000"));
    EXPECT_EQ(last.value(int(fields.indexOf(QStringLiteral("ADPT_UP_1")))), QStringLiteral("1000"));
    EXPECT_EQ(last.value(int(fields.indexOf(QStringLiteral("ADPT_ERR_UP_1")))), QStringLiteral("4"));
}

TEST_F(SourceNodes, AnAdapterRowOutsideTheTableReadsZeroAndKeepsItsCounter)
{
    Node& n = monitor->Sensors[0].Nodes[0];
    tick();
    const double kept = n.LastRawValue;
    n.AdapterIndex = 5;
    fakeAdapters->interfaces[1].InOctets += 4000;
    tick();
    EXPECT_EQ(value(0), 0);
    EXPECT_EQ(n.LastRawValue, kept);
}

TEST_F(SourceNodes, ProcessesBatteryAndWifiNodes)
{
    tick();
    EXPECT_EQ(value(4), 5);   // six live processes in the tree (9999 has ended): the upper bound
    EXPECT_EQ(value(5), 77);
    EXPECT_EQ(value(6), 50);  // -70 dBm
    EXPECT_EQ(monitor->lists.cmbSSID, QStringList{QStringLiteral("Home Net")});

    const QStringList lines = logLines();
    EXPECT_TRUE(lines[3].contains(QStringLiteral(",BATTERY,")));
    EXPECT_TRUE(lines[3].contains(QStringLiteral(",WIFI_HomeNet,")));
    EXPECT_TRUE(lines[3].endsWith(QStringLiteral(",PROCS")));
    EXPECT_TRUE(lines.last().endsWith(QStringLiteral(",5")));
}

TEST_F(SourceNodes, ErrorNodesAloneReadNoAdapters)
{
    Graph& g = monitor->Sensors[0];
    g.Nodes.erase(g.Nodes.begin(), g.Nodes.begin() + 3);
    g.Nodes.resize(1);  // the Down Err Node only
    fakeAdapters->interfaces[1].InErrors = 50;
    tick();
    EXPECT_EQ(value(0), 3);  // what start-up read
    EXPECT_FALSE(logLines()[3].contains(QStringLiteral("ADPT_")));
}

}  // namespace
