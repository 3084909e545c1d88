// The model in the store: save and load, their order and forms, defaults and
// bad stored values, adapter indexes, autostart and the settings dump.
#include "core/autostart.h"
#include "core/ini_store.h"
#include "core/settings_store.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "print_qstring.h"

using namespace orm;

namespace {

const QDateTime Now(QDate(2026, 3, 5), QTime(9, 7, 41));

// The adapter table as rows of dwIndex.
class FakeAdapters final : public AdapterIndexMap {
public:
    FakeAdapters(QList<qint32> indexes, int defaultRow) : indexes_(std::move(indexes)), default_(defaultRow) {}
    int rowOfIndex(qint32 dwIndex) const override { return int(indexes_.indexOf(dwIndex)); }
    qint32 indexOfRow(int row) const override { return indexes_.at(row); }
    int rowCount() const override { return int(indexes_.size()); }
    int defaultRow() const override { return default_; }

private:
    QList<qint32> indexes_;
    int default_;
};

// A model with every stored field away from its defaults.
std::vector<Graph> richModel()
{
    std::vector<Graph> m;
    Graph g = newGraph(0, false, {17, 34}, Now);
    g.AutoRange = false;
    g.Description = "Load, \"peak\" & more";
    g.GraphBackColor = qint32(0x80FF00FFu);  // top bit set
    g.GraphExteriorGridColor = 0x010203;
    g.GraphInteriorGridColor = qint32(0xFFFFFFFFu);
    g.GraphNameColor = 0x00FF00;
    g.GraphGridLabelColor = 7;
    g.GraphInteriorGridColorLight = 0xDEDEDE;
    g.GraphCrossHairColor = 255;
    g.GraphType = BarGraph;
    g.LegendUnits = "mSeconds";
    g.DataType = "seconds";
    g.DataMagnitude = 0.001;
    g.LegendMax = 123.456;
    g.Name = "CPU, all";
    g.Visible = false;
    g.LocX = -1200;
    g.LocY = 40;
    g.LocWidth = 568;
    g.LocHeight = 159;
    g.LogStart = 20260305090741;
    g.LogEnd = 20260306000000;
    g.TopMost = true;
    g.Collapsed = true;
    g.DisableCrossHair = true;
    g.SampleEverySeconds = 60;
    g.Opacity = 128;
    g.Transparent = false;
    g.TransLegend = true;
    g.TransGrid = true;
    g.DisplayAsBytesPerSecond = true;
    g.IconType = 2;
    Node& n = g.Nodes[0];
    n.Name = "Ping gw";
    n.GraphLineType = 2;
    n.NodeType = PingType;
    n.LogData = false;
    n.PenWidth = 5;
    n.BarWidth = 9;
    n.PenType = 4;
    n.PenColor = qint32(0xFFC0C0FFu);
    n.Measuring = 2;
    n.AdapterIndex = 2;
    n.ProcessMonitoring = "firefox-esr";
    n.DriveMonitoring = "/home";
    n.Averaging = 1;
    n.AveragingSamples = 25;
    n.DownloadURL = "http://127.0.0.1:8080/a?b=1,2";
    n.DownloadType = 3;
    n.VDDownloadSize = 4;
    n.LogItemView = "PING0";
    n.NodeVisible = false;
    n.PingTranslate = true;
    n.PingPacketSize = 1472;
    n.PingIP = "127.0.0.1";
    n.SSID = "home net";
    n.WebsiteMaster = false;
    n.WebsiteSlaveToSensor = 1;
    n.WebsiteSlaveToNode = 2;
    n.CPUNumber = 3;
    m.push_back(g);

    Graph h = newGraph(1, true, {}, Now);
    h.DataMagnitude = 1E-05;
    h.LegendMax = 1E+15;
    h.Description = "";
    for (int i = 1; i < 3; ++i)
        h.Nodes.push_back(newNode(i));
    h.Nodes[1].AdapterIndex = 0;
    h.Nodes[2].NodeType = WifiType;
    m.push_back(h);
    return m;
}

#define EXPECT_FIELD(a, b, f) EXPECT_EQ((a).f, (b).f) << #f
void expectSameStoredNode(const Node& a, const Node& b)
{
    EXPECT_FIELD(a, b, Name); EXPECT_FIELD(a, b, GraphLineType); EXPECT_FIELD(a, b, NodeType);
    EXPECT_FIELD(a, b, NodeIndex); EXPECT_FIELD(a, b, LogData); EXPECT_FIELD(a, b, PenWidth);
    EXPECT_FIELD(a, b, BarWidth); EXPECT_FIELD(a, b, PenType); EXPECT_FIELD(a, b, PenColor);
    EXPECT_FIELD(a, b, Measuring); EXPECT_FIELD(a, b, AdapterIndex); EXPECT_FIELD(a, b, ProcessMonitoring);
    EXPECT_FIELD(a, b, DriveMonitoring); EXPECT_FIELD(a, b, Averaging); EXPECT_FIELD(a, b, AveragingSamples);
    EXPECT_FIELD(a, b, DownloadURL); EXPECT_FIELD(a, b, DownloadType); EXPECT_FIELD(a, b, VDDownloadSize);
    EXPECT_FIELD(a, b, LogItemView); EXPECT_FIELD(a, b, NodeVisible); EXPECT_FIELD(a, b, PingTranslate);
    EXPECT_FIELD(a, b, PingPacketSize); EXPECT_FIELD(a, b, PingIP); EXPECT_FIELD(a, b, SSID);
    EXPECT_FIELD(a, b, WebsiteMaster); EXPECT_FIELD(a, b, WebsiteSlaveToSensor);
    EXPECT_FIELD(a, b, WebsiteSlaveToNode); EXPECT_FIELD(a, b, CPUNumber);
}

void expectSameStoredGraph(const Graph& a, const Graph& b)
{
    EXPECT_FIELD(a, b, AutoRange); EXPECT_FIELD(a, b, Description); EXPECT_FIELD(a, b, GraphBackColor);
    EXPECT_FIELD(a, b, GraphExteriorGridColor); EXPECT_FIELD(a, b, GraphInteriorGridColor);
    EXPECT_FIELD(a, b, GraphNameColor); EXPECT_FIELD(a, b, GraphGridLabelColor);
    EXPECT_FIELD(a, b, GraphInteriorGridColorLight); EXPECT_FIELD(a, b, GraphCrossHairColor);
    EXPECT_FIELD(a, b, GraphType); EXPECT_FIELD(a, b, GraphIndex); EXPECT_FIELD(a, b, LegendUnits);
    EXPECT_FIELD(a, b, LogGraph); EXPECT_FIELD(a, b, DataType); EXPECT_FIELD(a, b, DataMagnitude);
    EXPECT_FIELD(a, b, LegendMax); EXPECT_FIELD(a, b, Name); EXPECT_FIELD(a, b, Visible);
    EXPECT_FIELD(a, b, LocX); EXPECT_FIELD(a, b, LocY); EXPECT_FIELD(a, b, LocWidth);
    EXPECT_FIELD(a, b, LocHeight); EXPECT_FIELD(a, b, LogStart); EXPECT_FIELD(a, b, LogEnd);
    EXPECT_FIELD(a, b, TopMost); EXPECT_FIELD(a, b, Collapsed); EXPECT_FIELD(a, b, DisableCrossHair);
    EXPECT_FIELD(a, b, SampleEverySeconds); EXPECT_FIELD(a, b, Opacity); EXPECT_FIELD(a, b, Transparent);
    EXPECT_FIELD(a, b, TransLegend); EXPECT_FIELD(a, b, TransGrid); EXPECT_FIELD(a, b, DisplayAsBytesPerSecond);
    EXPECT_FIELD(a, b, IconType);
    ASSERT_EQ(a.Nodes.size(), b.Nodes.size());
    for (size_t i = 0; i < a.Nodes.size(); ++i)
        expectSameStoredNode(a.Nodes[i], b.Nodes[i]);
}

std::vector<Graph> load(const KeyValueStore& store, const AdapterIndexMap* adapters = nullptr,
                        ProgramSettings* settingsOut = nullptr)
{
    QTemporaryDir dir;
    ProgramSettings settings;
    std::vector<Graph> sensors;
    LoadSensors(store, settings, sensors, adapters, AutoStartEntry(dir.filePath("none.desktop")), Now);
    if (settingsOut)
        *settingsOut = settings;
    return sensors;
}

bool save(KeyValueStore& store, const std::vector<Graph>& sensors, const AdapterIndexMap* adapters = nullptr)
{
    QTemporaryDir dir;
    AutoStartEntry entry(dir.filePath("none.desktop"));
    return SaveSettings(store, ProgramSettings{}, sensors, adapters, entry, "/bin/ormivane");
}

void roundTrip(KeyValueStore& store, const QString& autostartFile)
{
    const FakeAdapters adapters({1, 4, 9}, 1);
    ProgramSettings in;
    in.StartInSystray = true;
    in.DisplayToolTips = false;
    in.ShowDataTypeErrors = false;
    in.AutoStart = true;
    const auto model = richModel();
    AutoStartEntry entry(autostartFile);
    ASSERT_TRUE(SaveSettings(store, in, model, &adapters, entry, "/usr/bin/ormivane"));

    ProgramSettings out;
    out.DisplayToolTips = true;
    std::vector<Graph> back{Graph{}};  // anything already there is replaced
    LoadSensors(store, out, back, &adapters, AutoStartEntry(autostartFile), Now);
    EXPECT_EQ(out.StartInSystray, true);
    EXPECT_EQ(out.DisplayToolTips, false);
    EXPECT_EQ(out.ShowDataTypeErrors, false);
    EXPECT_EQ(out.AutoStart, true);
    ASSERT_EQ(back.size(), model.size());
    for (size_t i = 0; i < model.size(); ++i)
        expectSameStoredGraph(back[i], model[i]);
}

TEST(SettingsStore, RoundTripInMemory)
{
    QTemporaryDir dir;
    MemoryStore store;
    roundTrip(store, dir.filePath("autostart/ormivane.desktop"));
}

TEST(SettingsStore, RoundTripThroughTheFile)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("Ormivane.conf");
    {
        IniStore store(file);
        roundTrip(store, dir.filePath("autostart/ormivane.desktop"));
    }
    // And from the bytes on disk, by a store that never saw the writes.
    const QString copy = dir.filePath("copy.conf");
    ASSERT_TRUE(QFile::copy(file, copy));
    IniStore disk(copy);
    const FakeAdapters adapters({1, 4, 9}, 1);
    const auto back = load(disk, &adapters);
    const auto model = richModel();
    ASSERT_EQ(back.size(), model.size());
    for (size_t i = 0; i < model.size(); ++i)
        expectSameStoredGraph(back[i], model[i]);
}

TEST(SettingsStore, SaveWritesEveryValueInItsOrderThenSyncs)
{
    MemoryStore store;
    std::vector<Graph> model{newGraph(0, false, {}, Now)};
    ASSERT_TRUE(save(store, model));
    QStringList names;
    for (const QString& w : store.writes)
        names << w.section('=', 0, 0);
    const QStringList graph = {"Name", "AutoRange", "GraphType", "Description", "LegendMax", "LegendUnits",
        "Visible", "TopMost", "DisableCrossHair", "GraphBackColor", "GraphExteriorGridColor",
        "GraphInteriorGridColor", "GraphInteriorGridColorLight", "GraphNameColor", "GraphGridLabelColor",
        "GraphCrossHairColor", "SampleEverySeconds", "Opacity", "LocX", "LocY", "LocWidth", "LocHeight",
        "LogStart", "LogEnd", "Transparent", "TransLegend", "TransGrid", "DisplayAsBytesPerSecond", "IconType",
        "DataType", "DataMagnitude", "LogGraph", "Collapsed", "Nodes"};
    const QStringList node = {"NodeType", "GraphLineType", "LogData", "NodeVisible", "Name", "PenColor",
        "PenType", "PenWidth", "BarWidth", "AdapterMonitoring", "ProcessMonitoring", "DriveMonitoring",
        "Averaging", "AveragingSamples", "PingTranslate", "PingPacketSize", "PingIP", "SSID", "DownloadURL",
        "DownloadType", "VDDownloadSize", "Measuring", "LogItemView", "WebsiteMaster", "WebsiteSlaveToSensor",
        "WebsiteSlaveToNode", "CPUNumber"};
    QStringList expected = {"Settings/StartInSystray", "Settings/DisplayToolTips", "Settings/ShowDataTypeErrors",
                            "Settings/Sensors"};
    for (const QString& n : graph)
        expected << "Settings/Sensor1/" + n;
    for (const QString& n : node)
        expected << "Settings/Sensor1/Node1/" + n;
    EXPECT_EQ(names, expected);
    EXPECT_EQ(store.syncCount, 1);
    EXPECT_TRUE(store.deletes.isEmpty());
}

TEST(SettingsStore, ValueForms)
{
    MemoryStore store;
    auto model = richModel();
    model[0].LegendUnits = QString("K") + QChar(0) + "bps" + QChar(0);
    ASSERT_TRUE(save(store, model));
    const QString g1 = "Settings/Sensor1", n1 = "Settings/Sensor1/Node1";
    EXPECT_EQ(store.readValue("Settings", "Sensors", ""), "2");
    EXPECT_EQ(store.readValue("Settings", "StartInSystray", ""), "False");
    EXPECT_EQ(store.readValue("Settings", "DisplayToolTips", ""), "True");
    EXPECT_EQ(store.readValue(g1, "AutoRange", ""), "False");
    EXPECT_EQ(store.readValue(g1, "GraphBackColor", ""), "-2130771713");
    EXPECT_EQ(store.readValue(g1, "GraphInteriorGridColor", ""), "-1");
    EXPECT_EQ(store.readValue(g1, "GraphExteriorGridColor", ""), "66051");
    EXPECT_EQ(store.readValue(g1, "LegendUnits", ""), "Kbps");
    EXPECT_EQ(store.readValue(g1, "DataMagnitude", ""), "0.001");
    EXPECT_EQ(store.readValue(g1, "LegendMax", ""), "123.456");
    EXPECT_EQ(store.readValue(g1, "LogStart", ""), "20260305090741");
    EXPECT_EQ(store.readValue(g1, "Nodes", ""), "1");
    EXPECT_EQ(store.readValue("Settings/Sensor2", "DataMagnitude", ""), "1E-05");
    EXPECT_EQ(store.readValue("Settings/Sensor2", "LegendMax", ""), "1E+15");
    EXPECT_EQ(store.readValue("Settings/Sensor2", "Nodes", ""), "3");
    EXPECT_EQ(store.readValue(n1, "PenColor", ""), "-4144897");
    EXPECT_EQ(store.readValue(n1, "WebsiteMaster", ""), "False");
    EXPECT_EQ(store.readValue(n1, "NodeType", ""), "8");
}

TEST(SettingsStore, GraphWithoutNodesCountHasOneWebsiteNode)
{
    MemoryStore store;
    store.writeValue("Settings", "Sensors", "1");
    store.writeValue("Settings/Sensor1", "Name", "Only a name");
    const auto g = load(store);
    ASSERT_EQ(g.size(), 1u);
    EXPECT_EQ(g[0].Name, "Only a name");
    ASSERT_EQ(g[0].Nodes.size(), 1u);
    expectSameStoredNode(g[0].Nodes[0], loadDefaultNode(0));
    EXPECT_EQ(g[0].Nodes[0].NodeType, WebsiteType);
    EXPECT_EQ(g[0].SampleEverySeconds, 5);
    EXPECT_EQ(g[0].TransLegend, false);
    EXPECT_EQ(g[0].TransGrid, false);
}

TEST(SettingsStore, CountBeyondTheStoredGraphsLoadsDefaults)
{
    MemoryStore store;
    auto model = richModel();
    ASSERT_TRUE(save(store, model));
    store.writeValue("Settings", "Sensors", "3");
    const auto g = load(store);
    ASSERT_EQ(g.size(), 3u);
    expectSameStoredGraph(g[1], model[1]);
    const Graph third = loadDefaultGraph(2, Now);
    expectSameStoredGraph(g[2], [&] { Graph d = third; d.Nodes = {loadDefaultNode(0)}; return d; }());
    EXPECT_EQ(g[2].Name, "New Graph 3");
    EXPECT_EQ(g[2].LogStart, 20260305090741.0);
    EXPECT_EQ(g[2].GraphIndex, 2);
}

TEST(SettingsStore, NoOrNegativeCountLoadsNoGraph)
{
    for (const char* count : {"0", "-3", "", "none"}) {
        MemoryStore store;
        store.writeValue("Settings/Sensor1", "Name", "stale");
        if (*count)
            store.writeValue("Settings", "Sensors", count);
        EXPECT_TRUE(load(store).empty()) << count;
    }
}

TEST(SettingsStore, AbsurdCountsFollowTheKeysPresent)
{
    MemoryStore store;
    ASSERT_TRUE(save(store, richModel()));
    store.writeValue("Settings", "Sensors", "1e9");
    store.writeValue("Settings/Sensor2", "Nodes", "99999");
    store.writeValue("Settings/Sensor1", "Nodes", "-5");
    const auto g = load(store);
    ASSERT_EQ(g.size(), 2u);
    EXPECT_EQ(g[1].Nodes.size(), 3u);
    EXPECT_EQ(g[0].Nodes.size(), 1u);
    store.writeValue("Settings/Sensor1", "Nodes", "0");
    EXPECT_EQ(load(store)[0].Nodes.size(), 1u);
}

TEST(SettingsStore, BadValuesLoseNothingValid)
{
    MemoryStore store;
    const auto model = richModel();
    ASSERT_TRUE(save(store, model));
    const QString g1 = "Settings/Sensor1", n1 = "Settings/Sensor1/Node1";
    store.writeValue("Settings", "DisplayToolTips", "yes");   // bad boolean: default True
    store.writeValue("Settings", "StartInSystray", "tRUE");   // any letter case
    store.writeValue("Settings", "LogType", "2 layouts");
    store.writeValue(g1, "LocX", "abc");                      // text for a number: 0
    store.writeValue(g1, "LocY", "12abc");
    store.writeValue(g1, "SampleEverySeconds", "");           // empty: default 5
    store.writeValue(g1, "Opacity", "70000");                 // beyond 16 bits: default 255
    store.writeValue(g1, "Visible", "1");                     // default True
    store.writeValue(g1, "TransGrid", "-1");                  // default False
    store.writeValue(g1, "LegendMax", " 2.5e3x");
    store.writeValue(n1, "PenWidth", "2.5");                  // half to even
    store.writeValue(n1, "LogData", "");                      // default True
    ProgramSettings s;
    const auto g = load(store, nullptr, &s);
    EXPECT_TRUE(s.DisplayToolTips);
    EXPECT_TRUE(s.StartInSystray);
    EXPECT_EQ(s.LogType, 2);
    ASSERT_EQ(g.size(), 2u);
    EXPECT_EQ(g[0].LocX, 0);
    EXPECT_EQ(g[0].LocY, 12);
    EXPECT_EQ(g[0].SampleEverySeconds, 5);
    EXPECT_EQ(g[0].Opacity, 255);
    EXPECT_TRUE(g[0].Visible);
    EXPECT_FALSE(g[0].TransGrid);
    EXPECT_EQ(g[0].LegendMax, 2500.0);
    EXPECT_EQ(g[0].Nodes[0].PenWidth, 2);
    EXPECT_TRUE(g[0].Nodes[0].LogData);
    // Everything else is as saved.
    EXPECT_EQ(g[0].Name, model[0].Name);
    EXPECT_EQ(g[0].GraphBackColor, model[0].GraphBackColor);
    EXPECT_EQ(g[0].Nodes[0].PingIP, model[0].Nodes[0].PingIP);
    expectSameStoredGraph(g[1], model[1]);
}

TEST(SettingsStore, LoadNeverWrites)
{
    MemoryStore store;
    ASSERT_TRUE(save(store, richModel()));
    store.writes.clear();
    store.writeValue("Settings", "Sensors", "5");
    store.writes.clear();
    const int syncs = store.syncCount;
    load(store);
    EXPECT_TRUE(store.writes.isEmpty());
    EXPECT_TRUE(store.deletes.isEmpty());
    EXPECT_EQ(store.syncCount, syncs);
}

TEST(SettingsStore, AdapterIsStoredByItsOwnIndexAndFollowedAcrossRowChanges)
{
    MemoryStore store;
    auto model = richModel();  // Node1 of Graph 1 watches row 2
    const FakeAdapters before({1, 4, 9}, 0);
    ASSERT_TRUE(save(store, model, &before));
    EXPECT_EQ(store.readValue("Settings/Sensor1/Node1", "AdapterMonitoring", ""), "9");

    // The adapter moved to row 0 and another came in.
    const FakeAdapters moved({9, 2}, 1);
    auto g = load(store, &moved);
    EXPECT_EQ(g[0].Nodes[0].AdapterIndex, 0);

    // Gone: the default adapter, whose index the next save writes.
    const FakeAdapters gone({2, 5}, 1);
    g = load(store, &gone);
    EXPECT_EQ(g[0].Nodes[0].AdapterIndex, 1);
    ASSERT_TRUE(save(store, g, &gone));
    EXPECT_EQ(store.readValue("Settings/Sensor1/Node1", "AdapterMonitoring", ""), "5");

    // A missing value also takes the default adapter.
    store.deleteValue("Settings/Sensor1/Node1", "AdapterMonitoring");
    EXPECT_EQ(load(store, &gone)[0].Nodes[0].AdapterIndex, 1);
}

TEST(SettingsStore, AdapterChoiceSurvivesASaveWithoutTheTable)
{
    MemoryStore store;
    auto model = richModel();
    const FakeAdapters adapters({1, 4, 9}, 0);
    ASSERT_TRUE(save(store, model, &adapters));
    auto g = load(store, nullptr);
    EXPECT_EQ(g[0].Nodes[0].AdapterIndex, 0);
    ASSERT_TRUE(save(store, g, nullptr));
    EXPECT_EQ(store.readValue("Settings/Sensor1/Node1", "AdapterMonitoring", ""), "9");
    // A row beyond the table keeps it too; a Node never stored writes "0".
    const FakeAdapters small({4}, 0);
    model[0].Nodes[0].AdapterIndex = 5;
    model[1].Nodes.push_back(newNode(3));
    model[1].Nodes[3].AdapterIndex = 7;
    ASSERT_TRUE(save(store, model, &small));
    EXPECT_EQ(store.readValue("Settings/Sensor1/Node1", "AdapterMonitoring", ""), "9");
    EXPECT_EQ(store.readValue("Settings/Sensor2/Node4", "AdapterMonitoring", ""), "0");
}

TEST(SettingsStore, SaveLeavesStaleKeysAndTheCountBoundsTheLoad)
{
    MemoryStore store;
    auto model = richModel();
    model.push_back(newGraph(2, false, {}, Now));
    ASSERT_TRUE(save(store, model));
    model.pop_back();
    ASSERT_TRUE(save(store, model));
    EXPECT_EQ(store.readValue("Settings/Sensor3", "Name", ""), "New Graph 3");
    EXPECT_EQ(load(store).size(), 2u);
}

TEST(SettingsStore, SaveReportsAFailedSync)
{
    MemoryStore store;
    store.failSync = true;
    EXPECT_FALSE(save(store, richModel()));
}

TEST(SettingsStore, AutoStartFollowsTheSettingAndAnEmptyEntryCountsAsOff)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("autostart/ormivane.desktop");
    MemoryStore store;
    AutoStartEntry entry(file);
    ProgramSettings s;
    s.AutoStart = true;
    ASSERT_TRUE(SaveSettings(store, s, {}, nullptr, entry, "/usr/bin/ormivane"));
    EXPECT_TRUE(entry.enabled());

    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("[Desktop Entry]\nExec=\n");
    f.close();
    ProgramSettings read;
    std::vector<Graph> g;
    LoadSensors(store, read, g, nullptr, entry, Now);
    EXPECT_FALSE(read.AutoStart);
    ASSERT_TRUE(SaveSettings(store, read, g, nullptr, entry, "/usr/bin/ormivane"));
    EXPECT_FALSE(QFileInfo::exists(file));
}

TEST(SettingsStore, DumpLayout)
{
    MemoryStore store;
    store.writeValue("Settings", "StartInSystray", "False");
    store.writeValue("Settings", "Sensors", "2");
    store.writeValue("Settings", "Alerts", "1");
    store.writeValue("Settings/Sensor1", "Name", "A");
    store.writeValue("Settings/Sensor1", "Nodes", "2");
    store.writeValue("Settings/Sensor1/Node1", "NodeType", "5");
    store.writeValue("Settings/Sensor1/Node2", "NodeType", "6");
    store.writeValue("Settings/Sensor2", "Name", "B");
    store.writeValue("Settings/Sensor2", "Nodes", "1");
    store.writeValue("Settings/Sensor2/Node1", "Name", "x=y");
    store.writeValue("Settings/Alert1", "rName", "New Alert 1");
    store.writeValue("Settings/Sensor3", "Name", "beyond the count");
    EXPECT_EQ(settingsDump(store, 1).toStdString(),
              "StartInSystray=False\nSensors=2\nAlerts=1\n"
              "\nGraph 1\n----------\nName=A\nNodes=2\n"
              "\nNode 1\n----------\nNodeType=5\n"
              "\nNode 2\n----------\nNodeType=6\n"
              "\nGraph 2\n----------\nName=B\nNodes=1\n"
              "\nNode 1\n----------\nName=x=y\n"
              "\nAlert 1\n----------\nrName=New Alert 1\n");
    EXPECT_EQ(settingsDump(MemoryStore(), 0).toStdString(), "");
}

}  // namespace
