// The Node panel on a started Monitor; see PanelTest.
#pragma once

#include "../shell_common/panel_test.h"
#include "shell/node_panel.h"

namespace orm::test {

class NodePanelTest : public PanelTest<NodePanel> {
protected:
    // A Node of `type` appended to Graph `g` (made when missing), saved.
    int addNode(int g, int type, const QString& name = {})
    {
        while (int(monitor->Sensors.size()) <= g)
            monitor->AddSensor(false);
        auto& nodes = monitor->Sensors[size_t(g)].Nodes;
        Node n = newNode(int(nodes.size()));
        n.NodeType = type;
        n.Name = name.isEmpty() ? QStringLiteral("Node %1").arg(nodes.size()) : name;
        nodes.push_back(n);
        renumber(monitor->Sensors);
        monitor->SaveSettings();
        return int(nodes.size()) - 1;
    }

    Node& node(int g, int n) { return monitor->Sensors[size_t(g)].Nodes[size_t(n)]; }

    // What a fresh read of the settings file holds for a Node value.
    QString stored(int g, int n, const char* name) const
    {
        return storedValue(QStringLiteral("Settings/Sensor%1/Node%2").arg(g + 1).arg(n + 1), QLatin1String(name));
    }
};

}  // namespace orm::test
