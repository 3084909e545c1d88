// The model in the store: save and load, defaults and bad stored values,
// adapter indexes, and the autostart entry.
#include "model/autostart.h"
#include "model/number_text.h"
#include "model/settings_store.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "print_qstring.h"

using namespace orm;

namespace {

const QDateTime Now(QDate(2026, 3, 5), QTime(9, 7, 41));
// For the tests that are not about it: an entry that can never be there.
AutoStartEntry NoEntry(QStringLiteral("/proc/ormivane-none/ormivane.desktop"));

// The adapter table as rows of dwIndex.
struct FakeAdapters final : AdapterIndexMap {
    FakeAdapters(QList<qint32> indexes, int defaultRow) : indexes(std::move(indexes)), row(defaultRow) {}
    int rowOfIndex(qint32 dwIndex) const override { return int(indexes.indexOf(dwIndex)); }
    qint32 indexOfRow(int r) const override { return indexes.at(r); }
    int rowCount() const override { return int(indexes.size()); }
    int defaultRow() const override { return row; }
    QList<qint32> indexes; int row;
};

// A plain Graph and a log Graph with three Nodes.
std::vector<Graph> twoGraphs()
{
    std::vector<Graph> m{newGraph(0, false, {17, 34}, Now), newGraph(1, true, {}, Now)};
    m[0].LegendUnits = QString("K") + QChar(0) + "bps" + QChar(0);
    m[0].GraphBackColor = qint32(0x80FF00FFu);  // top bit set
    m[1].DataMagnitude = 1E-05;
    m[1].Nodes.insert(m[1].Nodes.end(), {newNode(1), newNode(2)});
    return m;
}

std::vector<Graph> load(const KeyValueStore& store, const AdapterIndexMap* adapters = nullptr,
                        ProgramSettings* settings = nullptr)
{
    ProgramSettings s;
    std::vector<Graph> sensors{Graph{}};  // anything already there is replaced
    LoadSensors(store, settings ? *settings : s, sensors, adapters, NoEntry, Now);
    return sensors;
}

bool save(KeyValueStore& store, const std::vector<Graph>& sensors, const AdapterIndexMap* adapters = nullptr,
          const ProgramSettings& settings = {})
{
    return SaveSettings(store, settings, sensors, adapters, NoEntry, "/bin/ormivane");
}

// Writes each saved "path/name=text" into `store` with every value but the
// counts and the adapter changed to another of its kind; gives the writes made.
QStringList writeChanged(KeyValueStore& store, const QStringList& saved)
{
    QStringList out;
    for (const QString& w : saved) {
        const QString key = w.section('=', 0, 0), name = key.section('/', -1);
        QString value = w.section('=', 1);
        const double v = value.toDouble(), n = double(out.size() + 1);
        if (name != "Sensors" && name != "Nodes" && name != "AdapterMonitoring")
            value = value == "True" ? "False" : value == "False" ? "True"
                  : value == numberText(v) ? numberText(v + n) : value + numberText(n);
        store.writeValue(key.section('/', 0, -2), name, value);
        out << key + '=' + value;
    }
    return out;
}

TEST(SettingsStore, SaveWritesInItsOrderAndFormsAndEveryValueIsLoadedBack)
{
    MemoryStore saved, memory;
    ASSERT_TRUE(save(saved, twoGraphs()));
    const QStringList& w = saved.writes;
    for (const char* v : {"Sensor1/GraphBackColor=-2130771713", "Sensor1/LegendUnits=Kbps", "Sensor2/DataMagnitude=1E-05"})
        EXPECT_TRUE(w.contains(QStringLiteral("Settings/") + v)) << v;

    // A field not loaded, or loaded into another field or Node, shows when
    // the load is saved again.
    const QStringList changed = writeChanged(memory, w);
    MemoryStore again;
    ProgramSettings settings;
    ASSERT_TRUE(save(again, load(memory, nullptr, &settings), nullptr, settings));
    EXPECT_EQ(again.writes.join('\n').toStdString(), changed.join('\n').toStdString());  // shown as a diff
}

TEST(SettingsStore, BadCountsAndValuesGiveTheDefaultAndLoseNothingValid)
{
    MemoryStore store;
    ASSERT_TRUE(save(store, twoGraphs()));
    store.writeValue("Settings", "Sensors", "none");
    EXPECT_TRUE(load(store).empty());
    // Beyond the stored Graphs: defaults, with one Node; counts that cannot be true follow the keys present.
    store.writeValue("Settings", "Sensors", "3");
    store.writeValue("Settings/Sensor2", "Nodes", "99999");
    store.writeValue("Settings/Sensor1", "Nodes", "-5");
    const QString g1 = "Settings/Sensor1";
    store.writeValue("Settings", "DisplayToolTips", "yes");  // not a boolean: default True
    store.writeValue(g1, "LocX", "abc");  // text for a number: 0
    store.writeValue(g1, "SampleEverySeconds", "");  // empty: default 5
    store.writeValue(g1, "Opacity", "70000");        // beyond 16 bits: default 255
    store.writeValue(g1, "LegendMax", " 2.5e3x");
    store.writeValue(g1 + "/Node1", "PenWidth", "2.5");  // half to even
    ProgramSettings s;
    const auto g = load(store, nullptr, &s);
    ASSERT_EQ(g.size(), 3u);
    EXPECT_EQ(g[0].Nodes.size(), 1u);
    EXPECT_EQ(g[1].Nodes.size(), 3u);
    ASSERT_EQ(g[2].Nodes.size(), 1u);
    EXPECT_EQ(g[2].Nodes[0].NodeType, WebsiteType);
    EXPECT_TRUE(s.DisplayToolTips);
    EXPECT_EQ(std::tuple(g[0].LocX, g[0].SampleEverySeconds, g[0].Opacity), std::tuple(0, 5, 255));
    EXPECT_EQ(g[0].LegendMax, 2500.0);
    EXPECT_EQ(g[0].Nodes[0].PenWidth, 2);
    EXPECT_EQ(g.at(1).Nodes.at(2).Name, "New Node 3");  // the rest as saved
}

TEST(SettingsStore, AdapterIsStoredByItsOwnIndexAndFollowedAcrossRowChanges)
{
    MemoryStore store;
    auto m = twoGraphs();
    m[0].Nodes[0].AdapterIndex = 2;
    m[1].Nodes[2].AdapterIndex = 7;  // no such row, never stored: "0"
    const FakeAdapters before({1, 4, 9}, 0), moved({9, 2}, 1), gone({2, 5}, 1);
    ASSERT_TRUE(save(store, m, &before));
    const QString n1 = "Settings/Sensor1/Node1";
    EXPECT_EQ(store.readValue(n1, "AdapterMonitoring", ""), "9");
    EXPECT_EQ(store.readValue("Settings/Sensor2/Node3", "AdapterMonitoring", ""), "0");
    EXPECT_EQ(load(store, &moved)[0].Nodes[0].AdapterIndex, 0);
    ASSERT_TRUE(save(store, m, &moved));  // no row for it: the stored choice is kept
    EXPECT_EQ(store.readValue(n1, "AdapterMonitoring", ""), "9");
    // Gone: the default adapter, whose index the next save writes.
    auto g = load(store, &gone);
    EXPECT_EQ(g[0].Nodes[0].AdapterIndex, 1);
    ASSERT_TRUE(save(store, g, &gone));
    EXPECT_EQ(store.readValue(n1, "AdapterMonitoring", ""), "5");
}

TEST(AutoStartEntry, WrittenAndRemovedBySaveAndFoundByLoad)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("config/autostart/ormivane.desktop");  // folder made on write
    AutoStartEntry entry(file);
    MemoryStore store;
    ProgramSettings s;
    s.AutoStart = true;
    ASSERT_TRUE(SaveSettings(store, s, {}, nullptr, entry, "/opt/o/ormivane")) << entry.lastError().toStdString();
    std::vector<Graph> g;
    LoadSensors(store, s = {}, g, nullptr, AutoStartEntry(file), Now);  // as a new start finds it
    EXPECT_TRUE(s.AutoStart);
    EXPECT_TRUE(SaveSettings(store, s = {}, g, nullptr, entry, "/opt/o/ormivane"));
    EXPECT_FALSE(QFile::exists(file));

    // Inside the quotes \ " ` $ are escaped and % doubled; then the desktop
    // file's own escaping doubles every backslash.
    EXPECT_TRUE(autoStartDesktopText("/a b/\"A\"/$x`y`/100%/b\\s/o")
                    .contains("Exec=\"/a b/\\\\\"A\\\\\"/\\\\$x\\\\`y\\\\`/100%%/b\\\\\\\\s/o\"\n"));
    EXPECT_FALSE(NoEntry.write("/bin/ormivane"));  // its folder cannot be made
}

}  // namespace
