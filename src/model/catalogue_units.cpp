// Base units, the magnitudes offered for them, the unit of each node type and
// the check that keeps one Graph in one unit.
#include "model/catalogue.h"

namespace orm {

namespace {

const QString Bps = QStringLiteral("bps");
const QString Bytes = QStringLiteral("bytes");
const QString Seconds = QStringLiteral("seconds");
const QString Percent = QStringLiteral("percent");
const QString Number = QStringLiteral("number");
const QString PercentEntry = QStringLiteral("0-100%");

QString bandwidthLegend(const Graph& graph)
{
    return graph.DisplayAsBytesPerSecond ? QStringLiteral("KBps") : QStringLiteral("Kbps");
}

UnitInfo fixed(const QString& base, double magnitude, const QString& legend,
               const QString& also = {})
{
    return {base, also, true, magnitude, legend};
}

// Counts have no scale of their own: the Graph keeps its magnitude.
UnitInfo count(const Graph& graph)
{
    return {Number, {}, false, graph.DataMagnitude, QStringLiteral("Count")};
}

// The test half of the unit check.
bool agrees(const Node& node, const Graph& graph)
{
    const UnitInfo unit = unitOf(node, graph);
    return unit.base == graph.DataType
           || (!unit.alsoAccepted.isEmpty() && unit.alsoAccepted == graph.DataType);
}

bool validNode(const std::vector<Graph>& sensors, int graph, int node)
{
    return graph >= 0 && graph < int(sensors.size()) && node >= 0
           && node < int(sensors[graph].Nodes.size());
}

}  // namespace

std::vector<MagnitudeEntry> magnitudeEntries(const QString& dataType)
{
    auto entry = [](const char* text, double data) {
        return MagnitudeEntry{QString::fromLatin1(text), true, data};
    };
    if (dataType == Bps)
        return {entry("Tbps", 12), entry("Gbps", 9), entry("Mbps", 6), entry("Kbps", 3),
                entry("bps", 0)};
    if (dataType == Bytes)
        return {entry("Tbytes", 40), entry("Gbytes", 30), entry("Mbytes", 20),
                entry("Kbytes", 10), entry("bytes", 0), {PercentEntry, false, -1}};
    if (dataType == Seconds)
        return {entry("Years", 31536000), entry("Months", 2592000), entry("Days", 86400),
                entry("Hours", 3600),     entry("Minutes", 60),     entry("Seconds", 0),
                entry("mSeconds", -3)};
    if (dataType == Percent)
        return {{PercentEntry, false, -1}};
    if (dataType == Number)
        return {{QStringLiteral("# of"), false, 0}};
    return {};
}

double storedMagnitude(double itemData)
{
    return itemData == -3 ? 0.001 : itemData;
}

void applyMagnitude(Graph& graph, const MagnitudeEntry& entry)
{
    if (entry.hasData) {
        graph.DataMagnitude = storedMagnitude(entry.itemData);
    } else if (entry.text == PercentEntry) {
        graph.DataType = Percent;
        graph.DataMagnitude = -1;
    }
    graph.LegendUnits = entry.text;
}

UnitInfo unitOf(const Node& node, const Graph& graph)
{
    const QString kbps = bandwidthLegend(graph);
    const QString msec = QStringLiteral("mSeconds");
    switch (node.NodeType) {
    case WebsiteType:
        switch (node.DownloadType) {
        case 0:
            return fixed(Bps, 3, kbps);
        case 1:
        case 2:
            return fixed(Seconds, 0.001, msec);
        default:
            return count(graph);
        }
    case CpuType:
    case BatteryType:
    case WifiType:
        return fixed(Percent, -1, QStringLiteral("Percent"));
    case RamType:
    case DriveSpaceType:
    case PageFileType:
    case VMemoryType:
        return fixed(Bytes, 20, QStringLiteral("MBytes"), Percent);
    case PingType:
        return node.PingTranslate ? fixed(Bps, 3, kbps) : fixed(Seconds, 0.001, msec);
    case LanType:
    case UpDownType:
    case DownloadNodeType:
    case UploadType:
    case SpeedTestType:
        return fixed(Bps, 3, kbps);
    case UpDnErrType:
    case DownErrType:
    case UpErrType:
    case ProcessesType:
        return count(graph);
    case DiskRWType:
    case DiskReadType:
    case DiskWriteType:
    case ProcessType:
        return fixed(Bytes, 10, QStringLiteral("KBytes"));
    case SysUptimeType:
        // 3600 with "Minutes" does not agree; the pair is kept as it always was.
        return fixed(Seconds, 3600, QStringLiteral("Minutes"));
    default:
        return count(graph);
    }
}

bool unitCheck(std::vector<Graph>& sensors, int graph, int node, bool testOnly)
{
    if (!validNode(sensors, graph, node))
        return false;
    Graph& g = sensors[graph];
    if (testOnly || node > 0)
        return agrees(g.Nodes[node], g);
    const UnitInfo unit = unitOf(g.Nodes[node], g);
    g.DataType = unit.base;
    if (unit.hasMagnitude)
        g.DataMagnitude = unit.magnitude;
    g.LegendUnits = unit.legend;
    return true;
}

QString dataTypeWarning(const std::vector<Graph>& sensors, int graph, bool showDataTypeErrors)
{
    if (!showDataTypeErrors || graph < 0 || graph >= int(sensors.size()))
        return {};
    const Graph& g = sensors[graph];
    for (const Node& node : g.Nodes) {
        if (!agrees(node, g))
            return QStringLiteral("Warning: ") + g.Name
                   + QStringLiteral(
                       " has Nodes that are not using the same data type. See Help for more details.");
    }
    return {};
}

}  // namespace orm
