// The words and units that belong to each node type: names for the tree, the
// legends and the Alerts; the panel's tiles; the base unit of each type and the
// magnitudes offered for it; the short names of log fields; and the rule that
// keeps the Nodes of one Graph in one unit.
#pragma once

#include "model/model.h"

#include <QString>
#include <vector>

namespace orm {

// Graph index that means "no Graph".
inline constexpr int NoGraph = 65535;

// ---- names and tiles (catalogue_names.cpp) ----

// The name of a NodeType or GraphType code. With a valid Graph and Node, CPU
// becomes "CPU " + CPUNumber and Drive Space "Drive " + DriveMonitoring.
// 27 and codes outside 1..29 give "".
QString nodeTypeName(int code, const std::vector<Graph>& sensors, int graph = NoGraph,
                     int node = 0);
QString nodeTypeName(int code);

enum class Category { Internet = 0, Hardware = 1, System = 2 };

struct Tile {
    int code;
    QString text;
};

// The node tiles of a category, in order of their codes.
std::vector<Tile> categoryTiles(Category c);
// The category whose tiles hold the type; codes that are not node types give
// Internet, the first category.
Category categoryOf(int nodeType);
// "Line Graph", "Bar Graph", "Systray Icons", "Text", "Gadget" with 1, 2, 3, 28, 29.
std::vector<Tile> displayTiles();

// ---- units (catalogue_units.cpp) ----

// One entry of cmbDataMagnitude. Entries without item data ("0-100%", "# of")
// have hasData false; itemData then holds what choosing them stores (-1 for
// "0-100%", 0 for "# of", which stores nothing).
struct MagnitudeEntry {
    QString text;
    bool hasData;
    double itemData;
};

// The entries offered for a base unit, top to bottom; an unknown unit has none.
std::vector<MagnitudeEntry> magnitudeEntries(const QString& dataType);
// What an entry's item data becomes in DataMagnitude: -3 is stored as 0.001.
double storedMagnitude(double itemData);
// The user picks an entry: DataMagnitude and LegendUnits follow it. "0-100%"
// makes the Graph a percent Graph (-1), which bytes Nodes accept; "# of" keeps
// the magnitude.
void applyMagnitude(Graph& graph, const MagnitudeEntry& entry);

struct UnitInfo {
    QString base;
    QString alsoAccepted;  // empty when the type accepts only its base unit
    bool hasMagnitude;     // false: the Graph keeps its own DataMagnitude
    double magnitude;      // the Graph's own when hasMagnitude is false
    QString legend;
};

// The unit a Node measures in; the bandwidth legend is "KBps" when the Graph
// shows bytes per second, "Kbps" otherwise. Unknown codes are plain numbers.
UnitInfo unitOf(const Node& node, const Graph& graph);

// Unit check. In test mode, or for any Node but the first, whether the Node's
// base or second unit is the Graph's DataType; nothing changes. For the first
// Node when not testing, the Graph takes DataType, DataMagnitude and
// LegendUnits from the Node, and the answer is true. Bad indexes give false.
bool unitCheck(std::vector<Graph>& sensors, int graph, int node, bool testOnly);

// The warning text, or empty when all Nodes agree or showDataTypeErrors is off.
QString dataTypeWarning(const std::vector<Graph>& sensors, int graph, bool showDataTypeErrors);

// ---- log fields (catalogue_log.cpp) ----

struct LogFieldInfo {
    QString label;
    QString base;
    bool hasMagnitude;  // false: the Graph keeps its own DataMagnitude
    double magnitude;
    QString legend;
    int nodeType;  // 0: the field gives no type, the Node keeps its own
};

// The family of a log column: "CPU3" -> "CPU", "DISK_FREE_/" -> "DISK_FREE_",
// "ADPT_ERR_DN_3" -> "ADPT_ERR_DN". Names of no family come back unchanged.
QString logFieldFamily(const QString& field);
// Shortens field in place to its family and gives its row; any name the table
// lacks is a process's memory.
LogFieldInfo logFieldLabel(QString& field, bool bytesPerSecond = false);

// The user picks a log column for a Node of a Log Graph: the Node shows it and
// is named and typed after it; the first Node also sets the Graph's unit.
void chooseLogField(std::vector<Graph>& sensors, int graph, int node, const QString& fieldKey);
// The Name chooseLogField gives: the label, then what the key names after its
// family (adapter, CPU or drive number, address, process).
QString logNodeName(const QString& fieldKey);

}  // namespace orm
