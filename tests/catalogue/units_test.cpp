#include "model/catalogue.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

namespace {

Graph graphOf(std::initializer_list<int> types)
{
    Graph g;
    for (int t : types) {
        g.Nodes.push_back(newNode(int(g.Nodes.size())));
        g.Nodes.back().NodeType = t;
    }
    return g;
}

// "base/also magnitude legend"; "-" where the type leaves the Graph's magnitude.
QString unitText(const Graph& g, int node = 0)
{
    const UnitInfo u = unitOf(g.Nodes[node], g);
    return u.base + "/" + u.alsoAccepted + " " + (u.hasMagnitude ? QString::number(u.magnitude) : "-") + " "
        + u.legend;
}

}  // namespace

TEST(UnitOf, RowsOfTheNodeTypes)
{
    Graph g = graphOf({CpuType, RamType, LanType, UpDnErrType, DiskReadType, SysUptimeType, 27, PingType, WebsiteType});
    const QStringList expected = {"percent/ -1 Percent", "bytes/percent 20 MBytes", "bps/ 3 Kbps",
                                  "number/ - Count",     "bytes/ 10 KBytes",        "seconds/ 3600 Minutes",
                                  "number/ - Count",     "seconds/ 0.001 mSeconds", "bps/ 3 Kbps"};
    for (int i = 0; i < expected.size(); ++i)
        EXPECT_EQ(unitText(g, i), expected[i]) << g.Nodes[i].NodeType;
    // A website measures by its download type.
    for (qint16 type : {1, 2, 3}) {
        g.Nodes[8].DownloadType = type;
        EXPECT_EQ(unitText(g, 8), type == 3 ? "number/ - Count" : "seconds/ 0.001 mSeconds") << type;
    }
    // A translated ping has the units of a bandwidth Node, bytes per second too.
    g.Nodes[7].PingTranslate = true;
    g.DisplayAsBytesPerSecond = true;
    EXPECT_EQ(unitText(g, 7), "bps/ 3 KBps");
    EXPECT_EQ(unitText(g, 2), "bps/ 3 KBps");
    EXPECT_EQ(unitText(g, 4), "bytes/ 10 KBytes");
}

TEST(MagnitudeEntries, OfferedPerBaseUnitAndChosen)
{
    QStringList bytes;
    for (const MagnitudeEntry& e : magnitudeEntries("bytes"))
        bytes << e.text + "=" + (e.hasData ? QString::number(e.itemData) : "");
    EXPECT_EQ(bytes, QStringList({"Tbytes=40", "Gbytes=30", "Mbytes=20", "Kbytes=10", "bytes=0", "0-100%="}));
    EXPECT_EQ(magnitudeEntries("number").front().text, "# of");
    EXPECT_TRUE(magnitudeEntries("furlongs").empty());

    Graph g;
    g.DataType = "seconds";
    applyMagnitude(g, magnitudeEntries("seconds").back());
    EXPECT_EQ(g.DataMagnitude, 0.001);  // -3 is stored as 0.001
    EXPECT_EQ(g.LegendUnits, "mSeconds");
    g.DataType = "number";
    applyMagnitude(g, magnitudeEntries("number").front());
    EXPECT_EQ(g.DataMagnitude, 0.001);  // "# of" keeps the magnitude
    EXPECT_EQ(g.LegendUnits, "# of");
}

TEST(UnitCheck, FirstNodeNotTestingRewritesTheGraphsUnit)
{
    std::vector<Graph> sensors = {graphOf({DiskReadType, RamType})};
    EXPECT_FALSE(unitCheck(sensors, 0, 0, true));  // testing changes nothing
    EXPECT_EQ(sensors[0].DataType, "bps");
    EXPECT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_EQ(sensors[0].DataType + " " + QString::number(sensors[0].DataMagnitude) + " " + sensors[0].LegendUnits,
              "bytes 10 KBytes");
    // Any later Node is only tested.
    sensors[0].Nodes[1].NodeType = LanType;
    EXPECT_FALSE(unitCheck(sensors, 0, 1, false));
    EXPECT_EQ(sensors[0].LegendUnits, "KBytes");
    // A count keeps the Graph's magnitude.
    sensors[0].Nodes[0].NodeType = ProcessesType;
    EXPECT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_EQ(sensors[0].DataType + " " + QString::number(sensors[0].DataMagnitude) + " " + sensors[0].LegendUnits,
              "number 10 Count");
    // Bad indexes are refused.
    EXPECT_FALSE(unitCheck(sensors, 1, 0, false));
    EXPECT_FALSE(unitCheck(sensors, -1, 0, false));
    EXPECT_TRUE(dataTypeWarning(sensors, 3, true).isEmpty());
}

TEST(DataTypeWarning, CpuWithRamInMBytesWarnsUntilThePercentScale)
{
    std::vector<Graph> sensors = {graphOf({RamType, CpuType}), graphOf({LanType, PingType})};
    sensors[0].Name = "Box";
    ASSERT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_EQ(dataTypeWarning(sensors, 0, true),
              "Warning: Box has Nodes that are not using the same data type. See Help for more details.");
    EXPECT_TRUE(dataTypeWarning(sensors, 0, false).isEmpty());
    // "0-100%" from the bytes list: RAM accepts percent, CPU is percent.
    applyMagnitude(sensors[0], magnitudeEntries(sensors[0].DataType).back());
    EXPECT_EQ(sensors[0].DataType + QString::number(sensors[0].DataMagnitude), "percent-1");
    EXPECT_TRUE(dataTypeWarning(sensors, 0, true).isEmpty());
    // A ping in milliseconds among bandwidths warns; translated it fits.
    EXPECT_FALSE(dataTypeWarning(sensors, 1, true).isEmpty());
    sensors[1].Nodes[1].PingTranslate = true;
    EXPECT_TRUE(dataTypeWarning(sensors, 1, true).isEmpty());
}
