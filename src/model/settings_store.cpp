#include "settings_store.h"

#include "model/autostart.h"
#include "model/number_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace orm {

namespace {

// A stored number as an integer field: rounded half to even, as the
// runtime's assignment of a double did; nothing when it does not fit.
template <typename T>
std::optional<T> integerOf(double v)
{
    if (!std::isfinite(v))
        return std::nullopt;
    const double r = std::nearbyint(v);
    if (r < double(std::numeric_limits<T>::min()) || r > double(std::numeric_limits<T>::max()))
        return std::nullopt;
    return T(r);
}

bool blank(const QString& text)
{
    return text.trimmed().isEmpty();
}

// The values of one key, read with the field's load default.
class Reader {
public:
    Reader(const KeyValueStore& store, QString path) : store_(store), path_(std::move(path)) {}

    QString raw(const char* name) const { return store_.readValue(path_, QLatin1String(name), QString()); }
    QString text(const char* name, const QString& def) const
    {
        return store_.readValue(path_, QLatin1String(name), def);
    }
    bool flag(const char* name, bool def) const { return parseBool(raw(name)).value_or(def); }
    double number(const char* name, double def) const
    {
        const QString t = raw(name);
        return blank(t) ? def : leadingNumber(t);
    }
    template <typename T>
    T integer(const char* name, T def) const
    {
        const QString t = raw(name);
        return blank(t) ? def : integerOf<T>(leadingNumber(t)).value_or(def);
    }

private:
    const KeyValueStore& store_;
    QString path_;
};

class Writer {
public:
    Writer(KeyValueStore& store, QString path) : store_(store), path_(std::move(path)) {}

    void text(const char* name, const QString& value) { store_.writeValue(path_, QLatin1String(name), value); }
    void flag(const char* name, bool value) { text(name, boolText(value)); }
    void integer(const char* name, qint64 value) { text(name, QString::number(value)); }
    void number(const char* name, double value) { text(name, numberText(value)); }

private:
    KeyValueStore& store_;
    QString path_;
};

// A stored count (`Sensors`, `Nodes`). A count that cannot be true is not
// followed into millions of empty records: the keys present decide instead.
int storedCount(const KeyValueStore& store, const QString& path, const char* name, const QString& prefix,
                int def, int minimum, int maximum)
{
    const QString t = store.readValue(path, QLatin1String(name), QString());
    if (blank(t))
        return std::max(def, minimum);
    const double v = leadingNumber(t);
    if (v > maximum)
        return std::max(highestNumberedKey(store, path, prefix, maximum), minimum);
    return std::max(integerOf<int>(v).value_or(0), minimum);
}

int graphCount(const KeyValueStore& store)
{
    return storedCount(store, SettingsKey, "Sensors", QStringLiteral("Sensor"), 0, 0, MaxStoredGraphs);
}

int adapterRow(const QString& stored, const AdapterIndexMap* adapters)
{
    if (!adapters)
        return 0;
    int row = -1;
    if (!blank(stored))
        if (const auto index = integerOf<qint32>(leadingNumber(stored)))
            row = adapters->rowOfIndex(*index);
    if (row < 0)
        row = adapters->defaultRow();
    return std::max(row, 0);
}

Node loadNode(const KeyValueStore& store, int gi, int ni, const AdapterIndexMap* adapters)
{
    Node n = loadDefaultNode(ni);
    const Reader r(store, nodeKey(gi, ni));
    n.NodeType = r.integer("NodeType", n.NodeType);
    n.GraphLineType = r.integer("GraphLineType", n.GraphLineType);
    n.LogData = r.flag("LogData", n.LogData);
    n.NodeVisible = r.flag("NodeVisible", n.NodeVisible);
    n.Name = r.text("Name", n.Name);
    n.PenColor = r.integer("PenColor", n.PenColor);
    n.PenType = r.integer("PenType", n.PenType);
    n.PenWidth = r.integer("PenWidth", n.PenWidth);
    n.BarWidth = r.integer("BarWidth", n.BarWidth);
    n.AdapterIndex = adapterRow(r.raw("AdapterMonitoring"), adapters);
    n.ProcessMonitoring = r.text("ProcessMonitoring", n.ProcessMonitoring);
    n.DriveMonitoring = r.text("DriveMonitoring", n.DriveMonitoring);
    n.Averaging = r.integer("Averaging", n.Averaging);
    n.AveragingSamples = r.integer("AveragingSamples", n.AveragingSamples);
    n.PingTranslate = r.flag("PingTranslate", n.PingTranslate);
    n.PingPacketSize = r.integer("PingPacketSize", n.PingPacketSize);
    n.PingIP = r.text("PingIP", n.PingIP);
    n.SSID = r.text("SSID", n.SSID);
    n.DownloadURL = r.text("DownloadURL", n.DownloadURL);
    n.DownloadType = r.integer("DownloadType", n.DownloadType);
    n.VDDownloadSize = r.integer("VDDownloadSize", n.VDDownloadSize);
    n.Measuring = r.integer("Measuring", n.Measuring);
    n.LogItemView = r.text("LogItemView", n.LogItemView);
    n.WebsiteMaster = r.flag("WebsiteMaster", n.WebsiteMaster);
    n.WebsiteSlaveToSensor = r.integer("WebsiteSlaveToSensor", n.WebsiteSlaveToSensor);
    n.WebsiteSlaveToNode = r.integer("WebsiteSlaveToNode", n.WebsiteSlaveToNode);
    n.CPUNumber = r.integer("CPUNumber", n.CPUNumber);
    return n;
}

Graph loadGraph(const KeyValueStore& store, int gi, const AdapterIndexMap* adapters, const QDateTime& now)
{
    Graph g = loadDefaultGraph(gi, now);
    const QString key = sensorKey(gi);
    const Reader r(store, key);
    g.Name = r.text("Name", g.Name);
    g.AutoRange = r.flag("AutoRange", g.AutoRange);
    g.GraphType = r.integer("GraphType", g.GraphType);
    g.Description = r.text("Description", g.Description);
    g.LegendMax = r.number("LegendMax", g.LegendMax);
    g.LegendUnits = r.text("LegendUnits", g.LegendUnits);
    g.Visible = r.flag("Visible", g.Visible);
    g.TopMost = r.flag("TopMost", g.TopMost);
    g.DisableCrossHair = r.flag("DisableCrossHair", g.DisableCrossHair);
    g.GraphBackColor = r.integer("GraphBackColor", g.GraphBackColor);
    g.GraphExteriorGridColor = r.integer("GraphExteriorGridColor", g.GraphExteriorGridColor);
    g.GraphInteriorGridColor = r.integer("GraphInteriorGridColor", g.GraphInteriorGridColor);
    g.GraphInteriorGridColorLight = r.integer("GraphInteriorGridColorLight", g.GraphInteriorGridColorLight);
    g.GraphNameColor = r.integer("GraphNameColor", g.GraphNameColor);
    g.GraphGridLabelColor = r.integer("GraphGridLabelColor", g.GraphGridLabelColor);
    g.GraphCrossHairColor = r.integer("GraphCrossHairColor", g.GraphCrossHairColor);
    g.SampleEverySeconds = r.integer("SampleEverySeconds", g.SampleEverySeconds);
    g.Opacity = r.integer("Opacity", g.Opacity);
    g.LocX = r.integer("LocX", g.LocX);
    g.LocY = r.integer("LocY", g.LocY);
    g.LocWidth = r.integer("LocWidth", g.LocWidth);
    g.LocHeight = r.integer("LocHeight", g.LocHeight);
    g.LogStart = r.number("LogStart", g.LogStart);
    g.LogEnd = r.number("LogEnd", g.LogEnd);
    g.Transparent = r.flag("Transparent", g.Transparent);
    g.TransLegend = r.flag("TransLegend", g.TransLegend);
    g.TransGrid = r.flag("TransGrid", g.TransGrid);
    g.DisplayAsBytesPerSecond = r.flag("DisplayAsBytesPerSecond", g.DisplayAsBytesPerSecond);
    g.IconType = r.integer("IconType", g.IconType);
    g.DataType = r.text("DataType", g.DataType);
    g.DataMagnitude = r.number("DataMagnitude", g.DataMagnitude);
    g.LogGraph = r.flag("LogGraph", g.LogGraph);
    g.Collapsed = r.flag("Collapsed", g.Collapsed);

    const int nodes = storedCount(store, key, "Nodes", QStringLiteral("Node"), 1, 1, MaxStoredNodes);
    g.Nodes.reserve(size_t(nodes));
    for (int ni = 0; ni < nodes; ++ni)
        g.Nodes.push_back(loadNode(store, gi, ni, adapters));
    return g;
}

void saveNode(KeyValueStore& store, int gi, int ni, const Node& n, const AdapterIndexMap* adapters)
{
    const QString key = nodeKey(gi, ni);
    Writer w(store, key);
    w.integer("NodeType", n.NodeType);
    w.integer("GraphLineType", n.GraphLineType);
    w.flag("LogData", n.LogData);
    w.flag("NodeVisible", n.NodeVisible);
    w.text("Name", n.Name);
    w.integer("PenColor", n.PenColor);
    w.integer("PenType", n.PenType);
    w.integer("PenWidth", n.PenWidth);
    w.integer("BarWidth", n.BarWidth);
    // The adapter's own index: rows move when adapters come and go. With no
    // row to name, the stored choice stays for the day the adapter is back.
    if (adapters && n.AdapterIndex >= 0 && n.AdapterIndex < adapters->rowCount()) {
        w.integer("AdapterMonitoring", adapters->indexOfRow(n.AdapterIndex));
    } else {
        const QString kept = store.readValue(key, QStringLiteral("AdapterMonitoring"), QString());
        w.text("AdapterMonitoring", blank(kept) ? QStringLiteral("0") : kept);
    }
    w.text("ProcessMonitoring", n.ProcessMonitoring);
    w.text("DriveMonitoring", n.DriveMonitoring);
    w.integer("Averaging", n.Averaging);
    w.integer("AveragingSamples", n.AveragingSamples);
    w.flag("PingTranslate", n.PingTranslate);
    w.integer("PingPacketSize", n.PingPacketSize);
    w.text("PingIP", n.PingIP);
    w.text("SSID", n.SSID);
    w.text("DownloadURL", n.DownloadURL);
    w.integer("DownloadType", n.DownloadType);
    w.integer("VDDownloadSize", n.VDDownloadSize);
    w.integer("Measuring", n.Measuring);
    w.text("LogItemView", n.LogItemView);
    w.flag("WebsiteMaster", n.WebsiteMaster);
    w.integer("WebsiteSlaveToSensor", n.WebsiteSlaveToSensor);
    w.integer("WebsiteSlaveToNode", n.WebsiteSlaveToNode);
    w.integer("CPUNumber", n.CPUNumber);
}

void saveGraph(KeyValueStore& store, int gi, const Graph& g, const AdapterIndexMap* adapters)
{
    Writer w(store, sensorKey(gi));
    w.text("Name", g.Name);
    w.flag("AutoRange", g.AutoRange);
    w.integer("GraphType", g.GraphType);
    w.text("Description", g.Description);
    w.number("LegendMax", g.LegendMax);
    w.text("LegendUnits", QString(g.LegendUnits).remove(QChar(0)));
    w.flag("Visible", g.Visible);
    w.flag("TopMost", g.TopMost);
    w.flag("DisableCrossHair", g.DisableCrossHair);
    w.integer("GraphBackColor", g.GraphBackColor);
    w.integer("GraphExteriorGridColor", g.GraphExteriorGridColor);
    w.integer("GraphInteriorGridColor", g.GraphInteriorGridColor);
    w.integer("GraphInteriorGridColorLight", g.GraphInteriorGridColorLight);
    w.integer("GraphNameColor", g.GraphNameColor);
    w.integer("GraphGridLabelColor", g.GraphGridLabelColor);
    w.integer("GraphCrossHairColor", g.GraphCrossHairColor);
    w.integer("SampleEverySeconds", g.SampleEverySeconds);
    w.integer("Opacity", g.Opacity);
    w.integer("LocX", g.LocX);
    w.integer("LocY", g.LocY);
    w.integer("LocWidth", g.LocWidth);
    w.integer("LocHeight", g.LocHeight);
    w.number("LogStart", g.LogStart);
    w.number("LogEnd", g.LogEnd);
    w.flag("Transparent", g.Transparent);
    w.flag("TransLegend", g.TransLegend);
    w.flag("TransGrid", g.TransGrid);
    w.flag("DisplayAsBytesPerSecond", g.DisplayAsBytesPerSecond);
    w.integer("IconType", g.IconType);
    w.text("DataType", g.DataType);
    w.number("DataMagnitude", g.DataMagnitude);
    w.flag("LogGraph", g.LogGraph);
    w.flag("Collapsed", g.Collapsed);
    w.integer("Nodes", qint64(g.Nodes.size()));
    for (size_t ni = 0; ni < g.Nodes.size(); ++ni)
        saveNode(store, gi, int(ni), g.Nodes[ni], adapters);
}

}  // namespace

int highestNumberedKey(const KeyValueStore& store, const QString& path, const QString& prefix, int maximum)
{
    int highest = 0;
    for (const QString& key : store.subKeys(path)) {
        if (!key.startsWith(prefix))
            continue;
        bool ok = false;
        const int n = key.mid(prefix.size()).toInt(&ok);
        if (ok && n > highest && n <= maximum)
            highest = n;
    }
    return highest;
}

QString sensorKey(int graphIndex)
{
    return SettingsKey + QStringLiteral("/Sensor") + QString::number(graphIndex + 1);
}

QString nodeKey(int graphIndex, int nodeIndex)
{
    return sensorKey(graphIndex) + QStringLiteral("/Node") + QString::number(nodeIndex + 1);
}

bool readFlag(const KeyValueStore& store, const QString& path, const QString& name, bool def)
{
    return parseBool(store.readValue(path, name, QString())).value_or(def);
}

double readNumber(const KeyValueStore& store, const QString& path, const QString& name, double def)
{
    const QString t = store.readValue(path, name, QString());
    return blank(t) ? def : leadingNumber(t);
}

qint32 readInt(const KeyValueStore& store, const QString& path, const QString& name, qint32 def)
{
    const QString t = store.readValue(path, name, QString());
    return blank(t) ? def : integerOf<qint32>(leadingNumber(t)).value_or(def);
}

void LoadSensors(const KeyValueStore& store, ProgramSettings& settings, std::vector<Graph>& sensors,
                 const AdapterIndexMap* adapters, const AutoStartEntry& autoStart, const QDateTime& now)
{
    const ProgramSettings defaults;
    settings.AutoStart = autoStart.enabled();
    const Reader r(store, SettingsKey);
    settings.StartInSystray = r.flag("StartInSystray", defaults.StartInSystray);
    settings.DisplayToolTips = r.flag("DisplayToolTips", defaults.DisplayToolTips);
    settings.ShowDataTypeErrors = r.flag("ShowDataTypeErrors", defaults.ShowDataTypeErrors);
    settings.LogType = r.integer("LogType", defaults.LogType);
    settings.SpeedTestServer = r.text("SpeedTestServer", defaults.SpeedTestServer).trimmed();
    const int count = graphCount(store);

    sensors.clear();
    sensors.reserve(size_t(count));
    for (int gi = 0; gi < count; ++gi)
        sensors.push_back(loadGraph(store, gi, adapters, now));
}

bool SaveSettings(KeyValueStore& store, const ProgramSettings& settings, const std::vector<Graph>& sensors,
                  const AdapterIndexMap* adapters, AutoStartEntry& autoStart, const QString& execPath)
{
    const bool autoStartDone = settings.AutoStart ? autoStart.write(execPath) : autoStart.remove();

    Writer w(store, SettingsKey);
    w.flag("StartInSystray", settings.StartInSystray);
    w.flag("DisplayToolTips", settings.DisplayToolTips);
    w.flag("ShowDataTypeErrors", settings.ShowDataTypeErrors);
    w.text("SpeedTestServer", settings.SpeedTestServer);
    w.integer("Sensors", qint64(sensors.size()));
    for (size_t gi = 0; gi < sensors.size(); ++gi)
        saveGraph(store, int(gi), sensors[gi], adapters);

    const bool synced = store.sync();
    return synced && autoStartDone;
}

QString settingsDump(const KeyValueStore& store, int alertCount)
{
    QString out;
    const auto dumpValues = [&](const QString& path) {
        for (const auto& v : store.values(path))
            out += v.first + QLatin1Char('=') + v.second + QLatin1Char('\n');
    };
    const auto heading = [&](const char* word, int number) {
        out += QStringLiteral("\n%1 %2\n----------\n").arg(QLatin1String(word)).arg(number);
    };

    dumpValues(SettingsKey);
    const int graphs = graphCount(store);
    for (int gi = 0; gi < graphs; ++gi) {
        heading("Graph", gi + 1);
        dumpValues(sensorKey(gi));
        // The count as its text reads, so a missing `Nodes` shows no Node.
        const int nodes = storedCount(store, sensorKey(gi), "Nodes", QStringLiteral("Node"), 0, 0, MaxStoredNodes);
        for (int ni = 0; ni < nodes; ++ni) {
            heading("Node", ni + 1);
            dumpValues(nodeKey(gi, ni));
        }
    }
    for (int ai = 0; ai < alertCount; ++ai) {
        heading("Alert", ai + 1);
        dumpValues(SettingsKey + QStringLiteral("/Alert") + QString::number(ai + 1));
    }
    return out;
}

}  // namespace orm
