// The model as a tree of keys: SaveSettings writes every Graph and Node,
// LoadSensors reads them back at start.
#pragma once

#include "model/key_value_store.h"
#include "model/model.h"

#include <QDateTime>
#include <QString>
#include <vector>

namespace orm {

class AutoStartEntry;

// The key of the program-wide values, and the keys of a Graph and a Node
// (numbered from 1).
inline const QString SettingsKey = QStringLiteral("Settings");
QString sensorKey(int graphIndex);             // "Settings/Sensor<graphIndex + 1>"
QString nodeKey(int graphIndex, int nodeIndex);  // "Settings/Sensor<g + 1>/Node<n + 1>"

// Counts in the store beyond these are not believed (see LoadSensors).
inline constexpr int MaxStoredGraphs = 1000;
inline constexpr int MaxStoredNodes = 1000;

struct ProgramSettings {
    bool StartInSystray = false;
    bool DisplayToolTips = true;
    bool ShowDataTypeErrors = true;
    qint32 LogType = 0;
    bool AutoStart = false;
    bool wmi = false;
    qint32 XLoc = 0, YLoc = 0;
    bool FirstRun = true;
    // host[:port] of the speed test endpoint; empty until the user names one.
    QString SpeedTestServer;
};

// How stored adapter indexes map to rows of the adapter table.
class AdapterIndexMap {
public:
    virtual ~AdapterIndexMap() = default;
    virtual int rowOfIndex(qint32 dwIndex) const = 0;  // -1 when no row has it
    virtual qint32 indexOfRow(int row) const = 0;      // the row's dwIndex
    virtual int rowCount() const = 0;
    virtual int defaultRow() const = 0;
};

// The highest n of the keys "<prefix><n>" just below `path`, up to `maximum`; 0 when none.
int highestNumberedKey(const KeyValueStore& store, const QString& path, const QString& prefix, int maximum);

// Reads of single values as LoadSensors does them: a missing or empty value
// gives `def`; a number is the text's leading number; a boolean that is not
// "True" or "False" (any case) gives `def`.
bool readFlag(const KeyValueStore& store, const QString& path, const QString& name, bool def);
double readNumber(const KeyValueStore& store, const QString& path, const QString& name, double def);
// As readNumber, rounded; `def` when out of the 32-bit range.
qint32 readInt(const KeyValueStore& store, const QString& path, const QString& name, qint32 def);

// Fills `settings` (StartInSystray, DisplayToolTips, ShowDataTypeErrors,
// LogType, AutoStart, SpeedTestServer) and `sensors` from the store; never writes. `Sensors`
// negative reads as no Graph; above MaxStoredGraphs it is taken as the highest
// Sensor<n> key present (at most MaxStoredGraphs). `Nodes` reads the same way
// and is at least 1. Graphs and Nodes missing from the store get the load
// defaults. `adapters` may be null: AdapterIndex is then 0.
void LoadSensors(const KeyValueStore& store, ProgramSettings& settings, std::vector<Graph>& sensors,
                 const AdapterIndexMap* adapters, const AutoStartEntry& autoStart, const QDateTime& now);

// Writes the autostart entry (or removes it), then every value of the model in
// its fixed order, then syncs. Stale keys stay. An AdapterIndex without a row
// in `adapters` keeps the stored AdapterMonitoring ("0" when none). False when
// the store could not be synced (store.lastError()) or the autostart entry
// could not be changed (autoStart.lastError()).
bool SaveSettings(KeyValueStore& store, const ProgramSettings& settings, const std::vector<Graph>& sensors,
                  const AdapterIndexMap* adapters, AutoStartEntry& autoStart, const QString& execPath);

// Every value as "name=data" lines: Settings, then each Graph under a blank
// line, "Graph n" and "----------", each Node likewise ("Node m") within its
// Graph, and the Alerts ("Alert n") at the end.
QString settingsDump(const KeyValueStore& store, int alertCount);

}  // namespace orm
