// Short names, labels and units of log columns, and the choice of a column for
// a Node of a Log Graph.
#include "model/catalogue.h"

#include <array>

namespace orm {

namespace {

// Tried in this order; a name that starts with a family word is cut to it.
const std::array<const char*, 15> Families = {
    "CPU",        "ADPT_DN", "ADPT_UP",   "ADPT_ERR_DN", "ADPT_ERR_UP",
    "DISK_FREE_", "DISK_R_", "DISK_W_",   "PING_SIZE_",  "PING_RTT_",
    "RESULT_",    "RCONNECTTIME_", "RTIME_", "RERROR_",  "WIFI_",
};

struct FieldRow {
    const char* family;
    const char* label;
    const char* base;
    bool hasMagnitude;
    double magnitude;
    const char* legend;  // nullptr: "Kbps" or "KBps"
    int nodeType;
};

const std::array<FieldRow, 27> Fields = {{
    {"SAMPLE_LENGTH_MILLI_S", "Sample Time", "seconds", false, 0, "Seconds", 0},
    {"SYS_TMR", "Sys Uptime", "seconds", true, 3600, "Minutes", SysUptimeType},
    {"BATTERY", "Battery", "percent", false, 0, "Percent", BatteryType},
    {"WIFI", "WIFI_", "percent", false, 0, "Percent", WifiType},
    {"WIFI_", "WIFI_", "percent", false, 0, "Percent", WifiType},
    {"ADPT_DN", "Download", "bps", true, 3, nullptr, DownloadNodeType},
    {"ADPT_UP", "Upload", "bps", true, 3, nullptr, UploadType},
    {"ADPT_ERR_DN", "Down Err", "number", false, 0, "Count", DownErrType},
    {"ADPT_ERR_UP", "Upload Err", "number", false, 0, "Count", UpErrType},
    {"MEM_TOT", "RAM Total", "bytes", true, 20, "MBytes", RamType},
    {"MEM_AVA", "RAM Avail", "bytes", true, 20, "MBytes", RamType},
    {"MEM_V_TOT", "VRM Total", "bytes", true, 20, "MBytes", VMemoryType},
    {"MEM_V_AVA", "VRM Avail", "bytes", true, 20, "MBytes", VMemoryType},
    {"MEM_P_TOT", "Page Total", "bytes", true, 20, "MBytes", PageFileType},
    {"MEM_P_AVA", "Page Avail", "bytes", true, 20, "MBytes", PageFileType},
    {"CPU", "CPU Usage", "percent", false, 0, "Percent", CpuType},
    {"DISK_FREE_", "Disk Space", "bytes", true, 20, "MBytes", DriveSpaceType},
    {"DISK_R_", "Disk Read", "bytes", true, 10, "KBytes", DiskReadType},
    {"DISK_W_", "Disk Write", "bytes", true, 10, "KBytes", DiskWriteType},
    {"PROCS", "Processes", "number", false, 0, "Count", ProcessesType},
    {"PING_SIZE_", "Ping Size", "bytes", false, 0, "Bytes", PingType},
    {"PING_RTT_", "Ping RTT", "seconds", true, 0.001, "mSeconds", PingType},
    {"RESULT_", "Website BW", "bps", true, 3, nullptr, WebsiteType},
    {"RCONNECTTIME_", "Website CT", "seconds", true, 0.001, "mSeconds", WebsiteType},
    {"RTIME_", "Website RT", "seconds", true, 0.001, "mSeconds", WebsiteType},
    {"RERROR_", "Website ERR", "number", false, 0, "Count", WebsiteType},
    {"RESULTSERVER_DOWNLOAD", "Speed Test", "bps", true, 3, nullptr, SpeedTestType},
}};

// Any other column is a process's memory.
const FieldRow ProcessRow = {"", "Process Mem", "bytes", true, 10, "KBytes", ProcessType};

const FieldRow* rowOf(const QString& family)
{
    for (const FieldRow& row : Fields)
        if (family == QLatin1String(row.family))
            return &row;
    return nullptr;
}

bool validNode(const std::vector<Graph>& sensors, int graph, int node)
{
    return graph >= 0 && graph < int(sensors.size()) && node >= 0
           && node < int(sensors[graph].Nodes.size());
}

}  // namespace

QString logFieldFamily(const QString& field)
{
    for (const char* family : Families)
        if (field.startsWith(QLatin1String(family)))
            return QString::fromLatin1(family);
    return field;
}

LogFieldInfo logFieldLabel(QString& field, bool bytesPerSecond)
{
    field = logFieldFamily(field);
    const FieldRow* found = rowOf(field);
    const FieldRow& row = found ? *found : ProcessRow;
    QString legend = row.legend ? QString::fromLatin1(row.legend)
                     : bytesPerSecond ? QStringLiteral("KBps")
                                      : QStringLiteral("Kbps");
    return {QString::fromLatin1(row.label), QString::fromLatin1(row.base), row.hasMagnitude,
            row.magnitude, legend, row.nodeType};
}

QString logNodeName(const QString& fieldKey)
{
    QString family = fieldKey;
    const LogFieldInfo info = logFieldLabel(family);
    // A process column is all name; a family column names its thing after the
    // family word ("ADPT_DN_0" -> "0", "DISK_FREE_/home" -> "/home").
    QString rest = rowOf(family) ? fieldKey.mid(family.size()) : fieldKey;
    if (rest.startsWith(QLatin1Char('_')))
        rest.remove(0, 1);
    if (rest.isEmpty())
        return info.label;
    // "WIFI_" already ends in its joint.
    if (info.label.endsWith(QLatin1Char('_')))
        return info.label + rest;
    return info.label + QLatin1Char(' ') + rest;
}

void chooseLogField(std::vector<Graph>& sensors, int graph, int node, const QString& fieldKey)
{
    if (!validNode(sensors, graph, node))
        return;
    Graph& g = sensors[graph];
    Node& n = g.Nodes[node];
    n.LogItemView = fieldKey;
    QString family = fieldKey;
    const LogFieldInfo info = logFieldLabel(family, g.DisplayAsBytesPerSecond);
    if (node == 0) {
        g.DataType = info.base;
        if (info.hasMagnitude)
            g.DataMagnitude = info.magnitude;
        g.LegendUnits = info.legend;
    }
    if (info.nodeType != 0)
        n.NodeType = info.nodeType;
    n.Name = logNodeName(fieldKey);
}

}  // namespace orm
