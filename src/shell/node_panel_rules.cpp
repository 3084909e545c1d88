#include "shell/node_panel_rules.h"

#include "model/number_text.h"

#include <cmath>
#include <limits>

namespace orm {

NodeFrames framesFor(int t)
{
    NodeFrames f;
    f.measure = t == RamType || t == DriveSpaceType || t == PageFileType || t == VMemoryType;
    f.downloadUrl = t == WebsiteType || t == LanType;
    f.website = t == WebsiteType;
    f.ping = t == PingType;
    f.netCard = t >= UpDownType && t <= UpErrType;
    f.drive = t == DriveSpaceType || (t >= DiskRWType && t <= DiskWriteType);
    f.cpu = t == CpuType;
    f.ssid = t == WifiType;
    f.processes = t == ProcessType;
    f.speedTest = t == SpeedTestType;
    return f;
}

std::vector<MasterChoice> websiteMasters(const std::vector<Graph>& sensors, int exceptGraph, int exceptNode)
{
    std::vector<MasterChoice> out;
    for (size_t g = 0; g < sensors.size(); ++g) {
        const Graph& graph = sensors[g];
        for (size_t n = 0; n < graph.Nodes.size(); ++n) {
            const Node& node = graph.Nodes[n];
            if (node.NodeType != WebsiteType || !node.WebsiteMaster)
                continue;
            if (int(g) == exceptGraph && int(n) == exceptNode)
                continue;
            out.push_back({int(g), int(n), graph.Name + QStringLiteral(": ") + node.Name});
        }
    }
    return out;
}

MasterChoice slaveTarget(const std::vector<Graph>& sensors, int graph, int node)
{
    MasterChoice c{graph, node, {}};
    if (graph >= 0 && size_t(graph) < sensors.size() && node >= 0 &&
        size_t(node) < sensors[size_t(graph)].Nodes.size()) {
        const Graph& g = sensors[size_t(graph)];
        c.text = g.Name + QStringLiteral(": ") + g.Nodes[size_t(node)].Name;
    } else {
        c.text = QStringLiteral("%1: %2").arg(graph).arg(node);
    }
    return c;
}

QString driveOfEntry(const QString& entry, const QStringList& driveNames)
{
    QString best;
    bool found = false;
    for (const QString& name : driveNames) {
        if (entry.startsWith(name + QStringLiteral(" [")) && (!found || name.size() > best.size())) {
            best = name;
            found = true;
        }
    }
    if (found)
        return best;
    const qsizetype cut = entry.indexOf(QStringLiteral(" ["));
    return cut < 0 ? entry : entry.left(cut);
}

int averagingSamplesOf(const QString& text)
{
    return countAtLeastOne(text);
}

QString memoryTotalText(const QString& caption, double bytes)
{
    return caption + QString::number(qRound64(bytes / 1048576.0)) + QStringLiteral(" MBytes");
}

}  // namespace orm
