// Names of the type codes and the tiles of the node panel.
#include "model/catalogue.h"

#include <array>

namespace orm {

namespace {

// Index = code; 27 and 0 name nothing.
const std::array<const char*, 30> TypeNames = {
    "",           "Line Graph", "Bar Graph",    "Systray Icon", "Website",   "CPU",
    "RAM",        "LAN",        "Ping",         "Drive Space",  "Page File", "Up/Down",
    "Download",   "Upload",     "Up/Dn Err",    "Down Err",     "Up Err",    "Speed Test",
    "Disk R/W",   "Disk Read",  "Disk Write",   "Sys Uptime",   "Processes", "Process",
    "V Memory",   "Battery",    "WIFI",         "",             "Text",      "Vista Gadget",
};

struct TileRow {
    int code;
    Category category;
    const char* text;
};

// In order of codes; the tile lblGraphType(k) stands for code k + 1.
const std::array<TileRow, 23> NodeTiles = {{
    {WebsiteType, Category::Internet, "Website"},
    {CpuType, Category::Hardware, "CPU"},
    {RamType, Category::Hardware, "Memory"},
    {LanType, Category::Internet, "LAN"},
    {PingType, Category::Internet, "Ping"},
    {DriveSpaceType, Category::Hardware, "Drives"},
    {PageFileType, Category::System, "Pagefile"},
    {UpDownType, Category::Internet, "Total Up/Down"},
    {DownloadNodeType, Category::Internet, "Download"},
    {UploadType, Category::Internet, "Upload"},
    {UpDnErrType, Category::Internet, "Error Total"},
    {DownErrType, Category::Internet, "Error Down"},
    {UpErrType, Category::Internet, "Error Up"},
    {SpeedTestType, Category::Internet, "Speed Test"},
    {DiskRWType, Category::Hardware, "Disk Activity"},
    {DiskReadType, Category::Hardware, "Disk Read"},
    {DiskWriteType, Category::Hardware, "Disk Write"},
    {SysUptimeType, Category::Hardware, "Uptime"},
    {ProcessesType, Category::System, "Processes"},
    {ProcessType, Category::System, "Single Process"},
    {VMemoryType, Category::System, "Virtual Memory"},
    {BatteryType, Category::Hardware, "Battery"},
    {WifiType, Category::Internet, "Wifi Signal"},
}};

}  // namespace

QString nodeTypeName(int code, const std::vector<Graph>& sensors, int graph, int node)
{
    if (code < 1 || code >= int(TypeNames.size()))
        return {};
    const bool valid = graph != NoGraph && graph >= 0 && graph < int(sensors.size()) && node >= 0
                       && node < int(sensors[graph].Nodes.size());
    if (valid) {
        const Node& n = sensors[graph].Nodes[node];
        if (code == CpuType)
            return QStringLiteral("CPU ") + QString::number(n.CPUNumber);
        if (code == DriveSpaceType)
            return QStringLiteral("Drive ") + n.DriveMonitoring;
    }
    return QString::fromLatin1(TypeNames[code]);
}

QString nodeTypeName(int code)
{
    return nodeTypeName(code, {}, NoGraph, 0);
}

std::vector<Tile> categoryTiles(Category c)
{
    std::vector<Tile> tiles;
    for (const TileRow& row : NodeTiles)
        if (row.category == c)
            tiles.push_back({row.code, QString::fromLatin1(row.text)});
    return tiles;
}

Category categoryOf(int nodeType)
{
    for (const TileRow& row : NodeTiles)
        if (row.code == nodeType)
            return row.category;
    return Category::Internet;
}

std::vector<Tile> displayTiles()
{
    return {
        {LineGraph, QStringLiteral("Line Graph")},
        {BarGraph, QStringLiteral("Bar Graph")},
        {SystrayIcon, QStringLiteral("Systray Icons")},
        {TextGraph, QStringLiteral("Text")},
        {VistaGadget, QStringLiteral("Gadget")},
    };
}

}  // namespace orm
