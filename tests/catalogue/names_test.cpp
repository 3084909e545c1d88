#include "model/catalogue.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

TEST(NodeTypeName, PlainNamesAsWrittenAndNoneFor27)
{
    EXPECT_EQ(nodeTypeName(SystrayIcon), "Systray Icon");
    EXPECT_EQ(nodeTypeName(UpDnErrType), "Up/Dn Err");
    EXPECT_EQ(nodeTypeName(WifiType), "WIFI");
    EXPECT_EQ(nodeTypeName(VistaGadget), "Vista Gadget");
    for (int code : {-1, 0, 27, 30})
        EXPECT_TRUE(nodeTypeName(code).isEmpty()) << code;
}

TEST(NodeTypeName, CpuAndDriveNameTheirNodeWhenThereIsOne)
{
    std::vector<Graph> sensors(1);
    sensors[0].Nodes = {newNode(0), newNode(1)};
    sensors[0].Nodes[1].CPUNumber = 3;
    sensors[0].Nodes[1].DriveMonitoring = "/home";
    EXPECT_EQ(nodeTypeName(CpuType, sensors, 0, 1), "CPU 3");
    EXPECT_EQ(nodeTypeName(DriveSpaceType, sensors, 0, 1), "Drive /home");
    EXPECT_EQ(nodeTypeName(RamType, sensors, 0, 1), "RAM");
    // No Graph (65535), or indexes outside the model, give the plain name.
    EXPECT_EQ(nodeTypeName(CpuType, sensors, NoGraph, 1), "CPU");
    EXPECT_EQ(nodeTypeName(DriveSpaceType, sensors, 0, 2), "Drive Space");
    EXPECT_EQ(nodeTypeName(DriveSpaceType, sensors, 0, -1), "Drive Space");
}

static QStringList texts(const std::vector<Tile>& tiles)
{
    QStringList out;
    for (const Tile& t : tiles)
        out << t.text + "=" + QString::number(t.code);
    return out;
}

TEST(Tiles, EveryNodeTypeHasOneTileInItsCategory)
{
    std::vector<int> seen(30, 0);
    for (Category c : {Category::Internet, Category::Hardware, Category::System})
        for (const Tile& t : categoryTiles(c)) {
            ++seen[t.code];
            EXPECT_EQ(categoryOf(t.code), c) << t.code;
        }
    for (int code = 0; code < 30; ++code)
        EXPECT_EQ(seen[code], code >= WebsiteType && code <= WifiType ? 1 : 0) << code;
    EXPECT_EQ(categoryOf(27), Category::Internet);
    EXPECT_EQ(texts(categoryTiles(Category::System)),
              QStringList({"Pagefile=10", "Processes=22", "Single Process=23", "Virtual Memory=24"}));
    EXPECT_EQ(texts(displayTiles()),
              QStringList({"Line Graph=1", "Bar Graph=2", "Systray Icons=3", "Text=28", "Gadget=29"}));
}
