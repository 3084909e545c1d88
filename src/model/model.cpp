#include "model.h"

#include <QDateTime>
#include <QLocale>

namespace orm {

const std::array<qint32, 12> PenTable = {0xFF0000, 0x00FF00, 0xFF00FF, 0xFFFF00, 0xFFC0C0, 0xFFC0FF,
                                         0x0000FF, 0x00FFFF, 0xC0C0FF, 0xC0FFC0, 0xFFFFC0, 0xC0FFFF};

double momentNumber(const QDateTime& t)
{
    return QLocale::c().toDouble(t.toString(QStringLiteral("yyyyMMddHHmmss")));
}

Graph loadDefaultGraph(int graphIndex, const QDateTime& now)
{
    Graph g;  // the member initialisers are the load defaults
    g.GraphIndex = static_cast<qint16>(graphIndex);
    g.Name = QStringLiteral("New Graph %1").arg(graphIndex + 1);
    g.LogStart = momentNumber(now);
    g.LogEnd = g.LogStart;
    return g;
}

Node loadDefaultNode(int nodeIndex)
{
    Node n;
    n.NodeIndex = static_cast<qint16>(nodeIndex);
    return n;
}

Node newNode(int nodeIndex)
{
    Node n;
    n.Name = QStringLiteral("New Node %1").arg(nodeIndex + 1);
    n.GraphLineType = 0;
    n.NodeType = CpuType;
    n.NodeIndex = static_cast<qint16>(nodeIndex);
    n.PenColor = PenTable[static_cast<size_t>(nodeIndex) % PenTable.size()];
    n.LogItemView.clear();
    return n;
}

Graph newGraph(int graphIndex, bool logGraph, CascadePosition at, const QDateTime& now)
{
    Graph g;
    g.AutoRange = true;
    g.Description = QStringLiteral("Current Sample vs. Time");
    g.GraphBackColor = 0xFFFFFF;
    g.GraphExteriorGridColor = 0;
    g.GraphInteriorGridColor = 0xC0C0C0;
    g.GraphNameColor = 0xFF0000;
    g.GraphGridLabelColor = 0;
    g.GraphInteriorGridColorLight = 0xDEDEDE;
    g.GraphCrossHairColor = 255;
    g.GraphType = LineGraph;
    g.GraphIndex = static_cast<qint16>(graphIndex);
    g.LegendUnits = QStringLiteral("Percent");
    g.LogGraph = false;
    g.DataType = QStringLiteral("percent");
    g.DataMagnitude = -1.0;
    g.LegendMax = 100.0;
    g.Name = QStringLiteral("New Graph %1").arg(graphIndex + 1);
    g.Visible = true;
    g.LocX = at.x;
    g.LocY = at.y;
    g.LocWidth = 568;
    g.LocHeight = 159;
    g.TopMost = false;
    g.Collapsed = false;
    g.DisableCrossHair = false;
    g.SampleEverySeconds = 1;
    g.TicksToSample = 0;
    g.Opacity = 255;
    g.Transparent = true;
    g.TransLegend = true;
    g.TransGrid = true;
    g.DisplayAsBytesPerSecond = false;
    g.IconType = 0;

    Node first = newNode(0);
    first.Name = QStringLiteral("New Node 1");
    first.PenColor = PenTable[0];
    if (logGraph) {
        g.LegendUnits = QStringLiteral("mSeconds");
        g.DataType = QStringLiteral("seconds");
        g.DataMagnitude = 0.001;
        g.LogGraph = true;
        g.TopMost = true;
        g.Name = QStringLiteral("Log View Graph %1").arg(graphIndex + 1);
        g.LogStart = momentNumber(now);
        g.LogEnd = g.LogStart;
        first.Name = QStringLiteral("SYS_TMR");
        first.LogItemView = QStringLiteral("SYS_TMR");
        first.NodeType = SysUptimeType;
    }
    g.Nodes.push_back(first);
    return g;
}

void renumber(std::vector<Graph>& sensors)
{
    for (size_t i = 0; i < sensors.size(); ++i) {
        sensors[i].GraphIndex = static_cast<qint16>(i);
        for (size_t j = 0; j < sensors[i].Nodes.size(); ++j)
            sensors[i].Nodes[j].NodeIndex = static_cast<qint16>(j);
    }
}

}  // namespace orm
