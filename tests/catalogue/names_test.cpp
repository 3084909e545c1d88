#include "core/catalogue.h"

#include <QDateTime>
#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

namespace {

std::vector<Graph> oneGraph()
{
    Graph g = newGraph(0, false, {}, QDateTime(QDate(2026, 3, 5), QTime(9, 7, 41)));
    g.Nodes.push_back(newNode(1));
    return {g};
}

QStringList texts(const std::vector<Tile>& tiles)
{
    QStringList out;
    for (const Tile& t : tiles)
        out << t.text;
    return out;
}

std::vector<int> codes(const std::vector<Tile>& tiles)
{
    std::vector<int> out;
    for (const Tile& t : tiles)
        out.push_back(t.code);
    return out;
}

}  // namespace

TEST(NodeTypeName, EveryCodeWithoutAGraph)
{
    const QStringList expected = {
        "Line Graph", "Bar Graph",   "Systray Icon", "Website",    "CPU",        "RAM",
        "LAN",        "Ping",        "Drive Space",  "Page File",  "Up/Down",    "Download",
        "Upload",     "Up/Dn Err",   "Down Err",     "Up Err",     "Speed Test", "Disk R/W",
        "Disk Read",  "Disk Write",  "Sys Uptime",   "Processes",  "Process",    "V Memory",
        "Battery",    "WIFI",        "",             "Text",       "Vista Gadget"};
    for (int code = 1; code <= 29; ++code)
        EXPECT_EQ(nodeTypeName(code), expected[code - 1]) << code;
}

TEST(NodeTypeName, UnknownCodesAreEmpty)
{
    for (int code : {-1, 0, 27, 30, 65535})
        EXPECT_TRUE(nodeTypeName(code).isEmpty()) << code;
    auto sensors = oneGraph();
    EXPECT_TRUE(nodeTypeName(27, sensors, 0, 0).isEmpty());
    EXPECT_TRUE(nodeTypeName(30, sensors, 0, 0).isEmpty());
}

TEST(NodeTypeName, CpuAndDriveAdaptToTheirNode)
{
    auto sensors = oneGraph();
    sensors[0].Nodes[1].CPUNumber = 3;
    sensors[0].Nodes[1].DriveMonitoring = "/home";
    EXPECT_EQ(nodeTypeName(CpuType, sensors, 0, 1), "CPU 3");
    EXPECT_EQ(nodeTypeName(CpuType, sensors, 0, 0), "CPU 0");
    EXPECT_EQ(nodeTypeName(DriveSpaceType, sensors, 0, 1), "Drive /home");
    EXPECT_EQ(nodeTypeName(DriveSpaceType, sensors, 0, 0), "Drive /");
    // Other types ignore the Node.
    EXPECT_EQ(nodeTypeName(RamType, sensors, 0, 1), "RAM");

    // 65535 means no Graph, whatever the Node index says.
    EXPECT_EQ(nodeTypeName(CpuType, sensors, NoGraph, 1), "CPU");
    EXPECT_EQ(nodeTypeName(DriveSpaceType, sensors, NoGraph, 0), "Drive Space");
}

TEST(NodeTypeName, IndexesOutsideTheModelGiveThePlainName)
{
    auto sensors = oneGraph();
    EXPECT_EQ(nodeTypeName(CpuType, sensors, 1, 0), "CPU");
    EXPECT_EQ(nodeTypeName(CpuType, sensors, 0, 2), "CPU");
    EXPECT_EQ(nodeTypeName(DriveSpaceType, sensors, -1, 0), "Drive Space");
    EXPECT_EQ(nodeTypeName(DriveSpaceType, sensors, 0, -1), "Drive Space");
}

TEST(Tiles, EachCategoryInOrderOfCodes)
{
    const auto internet = categoryTiles(Category::Internet);
    EXPECT_EQ(texts(internet),
              QStringList({"Website", "LAN", "Ping", "Total Up/Down", "Download", "Upload",
                           "Error Total", "Error Down", "Error Up", "Speed Test", "Wifi Signal"}));
    EXPECT_EQ(codes(internet), (std::vector<int>{4, 7, 8, 11, 12, 13, 14, 15, 16, 17, 26}));

    const auto hardware = categoryTiles(Category::Hardware);
    EXPECT_EQ(texts(hardware), QStringList({"CPU", "Memory", "Drives", "Disk Activity",
                                            "Disk Read", "Disk Write", "Uptime", "Battery"}));
    EXPECT_EQ(codes(hardware), (std::vector<int>{5, 6, 9, 18, 19, 20, 21, 25}));

    const auto system = categoryTiles(Category::System);
    EXPECT_EQ(texts(system),
              QStringList({"Pagefile", "Processes", "Single Process", "Virtual Memory"}));
    EXPECT_EQ(codes(system), (std::vector<int>{10, 22, 23, 24}));
}

TEST(Tiles, EveryNodeTypeHasExactlyOneTileAndItsCategoryFindsIt)
{
    std::vector<int> seen(30, 0);
    for (Category c : {Category::Internet, Category::Hardware, Category::System})
        for (const Tile& t : categoryTiles(c)) {
            ++seen[t.code];
            EXPECT_EQ(categoryOf(t.code), c) << t.code;
        }
    for (int code = 4; code <= 26; ++code)
        EXPECT_EQ(seen[code], 1) << code;
    for (int code : {0, 1, 2, 3, 27, 28, 29})
        EXPECT_EQ(seen[code], 0) << code;
    EXPECT_EQ(categoryOf(27), Category::Internet);
    EXPECT_EQ(categoryOf(-5), Category::Internet);
}

TEST(Tiles, DisplayTiles)
{
    const auto tiles = displayTiles();
    EXPECT_EQ(texts(tiles),
              QStringList({"Line Graph", "Bar Graph", "Systray Icons", "Text", "Gadget"}));
    EXPECT_EQ(codes(tiles), (std::vector<int>{1, 2, 3, 28, 29}));
}
