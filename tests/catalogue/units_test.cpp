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

QString unitsOf(const Graph& g)
{
    return g.DataType + " " + QString::number(g.DataMagnitude) + " " + g.LegendUnits;
}

}  // namespace

TEST(UnitCheck, OnlyTheFirstNodeNotTestingRewritesTheGraphsUnit)
{
    std::vector<Graph> sensors = {graphOf({DiskReadType, RamType})};
    EXPECT_FALSE(unitCheck(sensors, 0, 0, true));  // testing changes nothing
    EXPECT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_EQ(unitsOf(sensors[0]), "bytes 10 KBytes");
    sensors[0].Nodes[1].NodeType = LanType;
    EXPECT_FALSE(unitCheck(sensors, 0, 1, false));
    // A count keeps the Graph's magnitude.
    sensors[0].Nodes[0].NodeType = ProcessesType;
    EXPECT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_EQ(unitsOf(sensors[0]), "number 10 Count");
    EXPECT_FALSE(unitCheck(sensors, -1, 0, false));
    EXPECT_TRUE(dataTypeWarning(sensors, 3, true).isEmpty());
}

TEST(DataTypeWarning, CpuWithRamInMBytesWarnsUntilThePercentScale)
{
    std::vector<Graph> sensors = {graphOf({RamType, CpuType}), graphOf({LanType, PingType})};
    sensors[0].Name = "Box";
    ASSERT_TRUE(unitCheck(sensors, 0, 0, false));
    EXPECT_TRUE(dataTypeWarning(sensors, 0, true).contains("Box"));  // word for word in the Node panel's test
    // "0-100%" from the bytes list: RAM accepts percent, CPU is percent.
    applyMagnitude(sensors[0], magnitudeEntries(sensors[0].DataType).back());
    EXPECT_EQ(sensors[0].DataType + QString::number(sensors[0].DataMagnitude), "percent-1");
    EXPECT_TRUE(dataTypeWarning(sensors, 0, true).isEmpty());
    // A ping in milliseconds among bandwidths warns; translated it fits.
    EXPECT_FALSE(dataTypeWarning(sensors, 1, true).isEmpty());
    sensors[1].Nodes[1].PingTranslate = true;
    EXPECT_TRUE(dataTypeWarning(sensors, 1, true).isEmpty());
}
