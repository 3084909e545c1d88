#include "core/catalogue.h"

#include <QDateTime>
#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

namespace {

const QDateTime Now(QDate(2026, 3, 5), QTime(9, 7, 41));

Graph graphOf(std::initializer_list<int> types)
{
    Graph g = newGraph(0, false, {}, Now);
    g.Nodes.clear();
    int i = 0;
    for (int t : types) {
        Node n = newNode(i++);
        n.NodeType = t;
        g.Nodes.push_back(n);
    }
    return g;
}

struct Row {
    QString base, also;
    bool hasMagnitude;
    double magnitude;
    QString legend;
};

void expectUnit(const Node& node, const Graph& graph, const Row& row)
{
    const UnitInfo u = unitOf(node, graph);
    SCOPED_TRACE(node.NodeType);
    EXPECT_EQ(u.base, row.base);
    EXPECT_EQ(u.alsoAccepted, row.also);
    EXPECT_EQ(u.hasMagnitude, row.hasMagnitude);
    if (row.hasMagnitude) {
        EXPECT_DOUBLE_EQ(u.magnitude, row.magnitude);
    }
    EXPECT_EQ(u.legend, row.legend);
}

}  // namespace

TEST(UnitOf, TheRowOfEachNodeType)
{
    Graph g = graphOf({});
    Node n = newNode(0);
    auto with = [&](int type) {
        n.NodeType = type;
        return n;
    };
    for (int t : {CpuType, BatteryType, WifiType})
        expectUnit(with(t), g, {"percent", "", true, -1, "Percent"});
    for (int t : {RamType, DriveSpaceType, PageFileType, VMemoryType})
        expectUnit(with(t), g, {"bytes", "percent", true, 20, "MBytes"});
    for (int t : {LanType, UpDownType, DownloadNodeType, UploadType, SpeedTestType})
        expectUnit(with(t), g, {"bps", "", true, 3, "Kbps"});
    for (int t : {UpDnErrType, DownErrType, UpErrType, ProcessesType})
        expectUnit(with(t), g, {"number", "", false, 0, "Count"});
    for (int t : {DiskRWType, DiskReadType, DiskWriteType, ProcessType})
        expectUnit(with(t), g, {"bytes", "", true, 10, "KBytes"});
    // The uptime pair does not agree and stays so.
    expectUnit(with(SysUptimeType), g, {"seconds", "", true, 3600, "Minutes"});
}

TEST(UnitOf, WebsiteFollowsDownloadType)
{
    Graph g = graphOf({});
    Node n = newNode(0);
    n.NodeType = WebsiteType;
    n.DownloadType = 0;
    expectUnit(n, g, {"bps", "", true, 3, "Kbps"});
    n.DownloadType = 1;
    expectUnit(n, g, {"seconds", "", true, 0.001, "mSeconds"});
    n.DownloadType = 2;
    expectUnit(n, g, {"seconds", "", true, 0.001, "mSeconds"});
    n.DownloadType = 3;
    expectUnit(n, g, {"number", "", false, 0, "Count"});
}

TEST(UnitOf, PingTranslatedIsABandwidthNode)
{
    Graph g = graphOf({});
    Node ping = newNode(0);
    ping.NodeType = PingType;
    expectUnit(ping, g, {"seconds", "", true, 0.001, "mSeconds"});
    ping.PingTranslate = true;
    Node lan = newNode(1);
    lan.NodeType = LanType;
    const UnitInfo a = unitOf(ping, g), b = unitOf(lan, g);
    EXPECT_EQ(a.base, b.base);
    EXPECT_EQ(a.magnitude, b.magnitude);
    EXPECT_EQ(a.legend, b.legend);
    EXPECT_EQ(a.legend, "Kbps");
}

TEST(UnitOf, BytesPerSecondLegend)
{
    Graph g = graphOf({});
    g.DisplayAsBytesPerSecond = true;
    Node n = newNode(0);
    for (int t : {LanType, UpDownType, DownloadNodeType, UploadType, SpeedTestType, WebsiteType}) {
        n.NodeType = t;
        EXPECT_EQ(unitOf(n, g).legend, "KBps") << t;
    }
    n.NodeType = PingType;
    n.PingTranslate = true;
    EXPECT_EQ(unitOf(n, g).legend, "KBps");
    // Only bandwidth legends change.
    n.NodeType = DiskReadType;
    EXPECT_EQ(unitOf(n, g).legend, "KBytes");
}

TEST(UnitOf, CodesThatAreNotNodeTypesArePlainNumbers)
{
    Graph g = graphOf({});
    Node n = newNode(0);
    for (int t : {0, 1, 3, 27, 29, 99, -4}) {
        n.NodeType = t;
        EXPECT_EQ(unitOf(n, g).base, "number") << t;
    }
}

TEST(MagnitudeEntries, ByBaseUnit)
{
    auto texts = [](const QString& type) {
        QStringList out;
        for (const MagnitudeEntry& e : magnitudeEntries(type))
            out << e.text;
        return out;
    };
    auto data = [](const QString& type) {
        std::vector<double> out;
        for (const MagnitudeEntry& e : magnitudeEntries(type))
            if (e.hasData)
                out.push_back(e.itemData);
        return out;
    };
    EXPECT_EQ(texts("bps"), QStringList({"Tbps", "Gbps", "Mbps", "Kbps", "bps"}));
    EXPECT_EQ(data("bps"), (std::vector<double>{12, 9, 6, 3, 0}));
    EXPECT_EQ(texts("bytes"),
              QStringList({"Tbytes", "Gbytes", "Mbytes", "Kbytes", "bytes", "0-100%"}));
    EXPECT_EQ(data("bytes"), (std::vector<double>{40, 30, 20, 10, 0}));
    EXPECT_EQ(texts("seconds"), QStringList({"Years", "Months", "Days", "Hours", "Minutes",
                                             "Seconds", "mSeconds"}));
    EXPECT_EQ(data("seconds"), (std::vector<double>{31536000, 2592000, 86400, 3600, 60, 0, -3}));
    EXPECT_EQ(texts("percent"), QStringList({"0-100%"}));
    EXPECT_TRUE(data("percent").empty());
    EXPECT_EQ(texts("number"), QStringList({"# of"}));
    EXPECT_TRUE(data("number").empty());
    EXPECT_TRUE(magnitudeEntries("furlongs").empty());
}

TEST(MagnitudeEntries, ChoosingAnEntry)
{
    EXPECT_DOUBLE_EQ(storedMagnitude(-3), 0.001);
    EXPECT_DOUBLE_EQ(storedMagnitude(20), 20);
    EXPECT_DOUBLE_EQ(storedMagnitude(0), 0);

    Graph g = graphOf({});
    g.DataType = "seconds";
    applyMagnitude(g, magnitudeEntries("seconds").back());
    EXPECT_DOUBLE_EQ(g.DataMagnitude, 0.001);
    EXPECT_EQ(g.LegendUnits, "mSeconds");
    EXPECT_EQ(g.DataType, "seconds");

    g.DataType = "number";
    g.DataMagnitude = 7;
    applyMagnitude(g, magnitudeEntries("number").front());
    EXPECT_DOUBLE_EQ(g.DataMagnitude, 7);
    EXPECT_EQ(g.LegendUnits, "# of");
}

TEST(UnitCheck, FirstNodeNotTestingRewritesTheGraphsUnit)
{
    std::vector<Graph> sensors = {graphOf({DiskReadType, RamType})};
    EXPECT_EQ(sensors[0].DataType, "percent");

    // Testing changes nothing, even for the first Node.
    EXPECT_FALSE(unitCheck(sensors, 0, 0, true));
    EXPECT_EQ(sensors[0].DataType, "percent");

    EXPECT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_EQ(sensors[0].DataType, "bytes");
    EXPECT_DOUBLE_EQ(sensors[0].DataMagnitude, 10);
    EXPECT_EQ(sensors[0].LegendUnits, "KBytes");

    // Any later Node is only tested, never rewrites.
    sensors[0].Nodes[1].NodeType = LanType;
    EXPECT_FALSE(unitCheck(sensors, 0, 1, false));
    EXPECT_EQ(sensors[0].DataType, "bytes");
    EXPECT_EQ(sensors[0].LegendUnits, "KBytes");

    // A count keeps whatever magnitude the Graph has.
    sensors[0].Nodes[0].NodeType = ProcessesType;
    EXPECT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_EQ(sensors[0].DataType, "number");
    EXPECT_DOUBLE_EQ(sensors[0].DataMagnitude, 10);
    EXPECT_EQ(sensors[0].LegendUnits, "Count");

    // Out of range codes are tested as counts.
    sensors[0].Nodes[1].NodeType = 27;
    EXPECT_TRUE(unitCheck(sensors, 0, 1, true));
}

TEST(UnitCheck, BadIndexesAreRefusedWithoutChange)
{
    std::vector<Graph> sensors = {graphOf({CpuType})};
    EXPECT_FALSE(unitCheck(sensors, 1, 0, false));
    EXPECT_FALSE(unitCheck(sensors, 0, 1, false));
    EXPECT_FALSE(unitCheck(sensors, -1, 0, false));
    EXPECT_EQ(sensors[0].DataType, "percent");
    EXPECT_TRUE(dataTypeWarning(sensors, 3, true).isEmpty());
}

TEST(DataTypeWarning, CpuWithRamInMBytesWarnsUntilThePercentScale)
{
    std::vector<Graph> sensors = {graphOf({RamType, CpuType})};
    sensors[0].Name = "Box";
    ASSERT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_EQ(sensors[0].LegendUnits, "MBytes");

    EXPECT_EQ(dataTypeWarning(sensors, 0, true),
              "Warning: Box has Nodes that are not using the same data type. See Help for more "
              "details.");
    EXPECT_TRUE(dataTypeWarning(sensors, 0, false).isEmpty());

    // The bytes list offers "0-100%": RAM accepts percent, CPU is percent.
    const auto entries = magnitudeEntries(sensors[0].DataType);
    ASSERT_EQ(entries.back().text, "0-100%");
    applyMagnitude(sensors[0], entries.back());
    EXPECT_EQ(sensors[0].DataType, "percent");
    EXPECT_DOUBLE_EQ(sensors[0].DataMagnitude, -1);
    EXPECT_TRUE(unitCheck(sensors, 0, 0, true));
    EXPECT_TRUE(unitCheck(sensors, 0, 1, true));
    EXPECT_TRUE(dataTypeWarning(sensors, 0, true).isEmpty());
}

TEST(DataTypeWarning, CpuFirstAcceptsRamAndAgreeingGraphsAreQuiet)
{
    std::vector<Graph> sensors = {graphOf({CpuType, RamType, BatteryType}),
                                  graphOf({LanType, DownloadNodeType})};
    sensors[1].Nodes.push_back(newNode(2));
    sensors[1].Nodes[2].NodeType = PingType;
    ASSERT_TRUE(unitCheck(sensors, 0, 0, false));
    ASSERT_TRUE(unitCheck(sensors, 1, 0, false));
    EXPECT_TRUE(dataTypeWarning(sensors, 0, true).isEmpty());

    // A ping in milliseconds among bandwidths warns; shown in Kbps it fits.
    EXPECT_FALSE(dataTypeWarning(sensors, 1, true).isEmpty());
    sensors[1].Nodes[2].PingTranslate = true;
    EXPECT_TRUE(dataTypeWarning(sensors, 1, true).isEmpty());
}
