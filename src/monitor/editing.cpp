#include "monitor/editing.h"

#include "model/catalogue.h"
#include "model/debug_log.h"
#include "model/number_text.h"
#include "model/settings_store.h"
#include "model/version.h"

#include <cmath>
#include <limits>

namespace orm {

namespace {

QString product()
{
    return QLatin1String(ProductName);
}

bool validGraph(const Monitor& m, int graph)
{
    return graph >= 0 && size_t(graph) < m.Sensors.size();
}

bool validNode(const Monitor& m, int graph, int node)
{
    return validGraph(m, graph) && node >= 0 && size_t(node) < m.Sensors[size_t(graph)].Nodes.size();
}

bool isDisplayCode(int code)
{
    return code == LineGraph || code == BarGraph || code == SystrayIcon || code == TextGraph || code == VistaGadget;
}

// The save writes every key anew; the stale ones must go first.
void deleteSensorKeys(KeyValueStore& store, int from, int to)
{
    for (int i = from; i < to; ++i)
        store.deleteValue(sensorKey(i), QString());
}

void finishStructuralEdit(Monitor& m)
{
    renumber(m.Sensors);
    m.SaveSettings();
    m.refreshGadgetFeed();
}

// Removes the Graph and its view; later Graphs and views move down one place.
void removeGraph(Monitor& m, KeyValueStore& store, int graph,
                 const std::function<void(GraphView&, int)>& rebind)
{
    PauseTicks pause(m);
    trace(QStringLiteral("DeleteSensor 1.0"));
    deleteSensorKeys(store, graph, int(m.Sensors.size()));
    m.Sensors.erase(m.Sensors.begin() + graph);
    // The view objects move with their records: each window keeps its curves.
    if (size_t(graph) < m.GraphForms.size())
        m.GraphForms.erase(m.GraphForms.begin() + graph);
    if (rebind) {
        for (size_t i = size_t(graph); i < m.GraphForms.size(); ++i)
            if (m.GraphForms[i])
                rebind(*m.GraphForms[i], int(i));
    }
    finishStructuralEdit(m);
    trace(QStringLiteral("DeleteSensor 2.0"));
}

}  // namespace

int AddNode(Monitor& m, int graph)
{
    if (!validGraph(m, graph))
        return -1;
    PauseTicks pause(m);
    Graph& g = m.Sensors[size_t(graph)];
    const int index = int(g.Nodes.size());
    Node n = newNode(index);
    n.AdapterIndex = m.sources().defaultAdapterSlot();
    g.Nodes.push_back(std::move(n));
    finishStructuralEdit(m);
    return index;
}

EditResult DeleteNode(Monitor& m, KeyValueStore& store, EditPrompts& prompts, int graph, int node,
                      const std::function<void(GraphView&, int)>& rebind)
{
    if (!validNode(m, graph, node))
        return EditResult::Invalid;
    Graph& g = m.Sensors[size_t(graph)];
    const QString name = g.Nodes[size_t(node)].Name;

    if (g.Nodes.size() == 1 && m.Sensors.size() == 1) {
        prompts.stop(product() + QStringLiteral(" - Cannot Delete ") + name,
                     QStringLiteral("You cannot delete the last Node without deleting the entire Graph. In this case "
                                    "you only have 1 Graph and you must have at least 1 Graph.\n"
                                    "To change this Node to display a different type of data, just click on it to "
                                    "select it, then select the new type on the settings panel to the right."));
        return EditResult::Refused;
    }
    if (g.Nodes.size() == 1) {
        const bool yes = prompts.askYesNo(
            product() + QStringLiteral(" - Delete ") + name,
            QStringLiteral("You cannot delete the last Node without deleting the entire Graph. Would you like to "
                           "delete the entire Graph (")
                + g.Name + QStringLiteral(")?"));
        if (!yes)
            return EditResult::Declined;
        removeGraph(m, store, graph, rebind);
        return EditResult::GraphDeleted;
    }
    if (!prompts.askYesNo(product() + QStringLiteral(" - Delete ") + name,
                          QStringLiteral("Are you sure you want to delete this Node (") + name + QStringLiteral(")?")))
        return EditResult::Declined;

    PauseTicks pause(m);
    deleteSensorKeys(store, graph, graph + 1);
    g.Nodes.erase(g.Nodes.begin() + node);
    finishStructuralEdit(m);
    return EditResult::Done;
}

EditResult DeleteGraph(Monitor& m, KeyValueStore& store, EditPrompts& prompts, int graph,
                       const std::function<void(GraphView&, int)>& rebind)
{
    if (!validGraph(m, graph))
        return EditResult::Invalid;
    const QString name = m.Sensors[size_t(graph)].Name;
    if (m.Sensors.size() == 1) {
        prompts.stop(product() + QStringLiteral(" - Cannot Delete ") + name,
                     QStringLiteral("You cannot delete the last Graph. You only have 1 Graph and you must have at "
                                    "least 1 Graph.\n"
                                    "If you want to change the type of data to display in this graph, just click "
                                    "on the Node under this graph to select it, then select the new type on the "
                                    "settings panel to the right."));
        return EditResult::Refused;
    }
    if (!prompts.askYesNo(product() + QStringLiteral(" - Delete ") + name,
                          QStringLiteral("Are you sure you want to delete this graph (") + name + QStringLiteral(")?")))
        return EditResult::Declined;
    removeGraph(m, store, graph, rebind);
    return EditResult::Done;
}

TypeChange ChangeType(Monitor& m, int graph, int node, int code)
{
    TypeChange r;
    if (!validNode(m, graph, node))
        return r;
    Graph& g = m.Sensors[size_t(graph)];

    if (code == LanType || code == SpeedTestType) {
        for (const Graph& other : m.Sensors)
            for (const Node& n : other.Nodes)
                if (n.NodeType == code) {
                    r.result = EditResult::Refused;
                    r.message = OnlyOneNodeOfTypeText;
                    return r;
                }
    }

    if (isDisplayCode(code)) {
        // The tile of the Graph's own display kind changes nothing.
        if (code == g.GraphType) {
            r.result = EditResult::Refused;
            return r;
        }
        g.GraphType = code;
        r.graphTypeChanged = true;
    } else if (code >= WebsiteType && code <= WifiType) {
        Node& n = g.Nodes[size_t(node)];
        n.NodeType = code;
        n.WebsiteTested = false;
        n.WebsiteReady = false;
        unitCheck(m.Sensors, graph, node, false);
        r.warning = dataTypeWarning(m.Sensors, graph, m.Settings.ShowDataTypeErrors);
    } else {
        return r;
    }
    m.SaveSettings();
    m.refreshGadgetFeed();
    r.result = EditResult::Done;
    return r;
}

int sampleSecondsOf(const QString& text)
{
    return countAtLeastOne(text);
}

IntervalChange setSampleSeconds(Monitor& m, int graph, const QString& text, const SpeedTestMinimum& minimum)
{
    IntervalChange r;
    r.seconds = sampleSecondsOf(text);
    if (!validGraph(m, graph))
        return r;
    Graph& g = m.Sensors[size_t(graph)];
    g.SampleEverySeconds = r.seconds;
    g.TicksToSample = 0;

    bool hasSpeedTest = false;
    qint32 option = 0;
    for (const Node& n : g.Nodes)
        if (n.NodeType == SpeedTestType) {
            hasSpeedTest = true;
            option = n.VDDownloadSize;
            break;
        }
    if (hasSpeedTest && minimum && m.TestSetupLoaded && !m.TestSetupBusy && !m.commandLineHas(QStringLiteral("VDDebugMode"))) {
        const int least = minimum(option);
        if (least > 0 && g.SampleEverySeconds < least) {
            g.SampleEverySeconds = least;
            r.seconds = least;
            r.sensorError = SpeedTestMinimumText;
        }
    }
    m.SaveSettings();
    return r;
}

}  // namespace orm
