// A monitor of the real machine, started in a folder of its own with no Graph
// left, for a benchmark to fill with the Nodes it measures.
#pragma once

#include "model/graph_view.h"
#include "model/key_value_store.h"
#include "monitor/monitor.h"

#include <QTemporaryDir>
#include <memory>

namespace orm {

struct BenchMonitor {
    QTemporaryDir dir;
    SystemClock clock;
    MemoryStore store;
    std::unique_ptr<SourceSet> sources = SourceSet::forLinux();
    HistoryViewFactory views;
    std::unique_ptr<Monitor> monitor;

    // False when the monitor cannot start; its startError() then says why.
    bool start()
    {
        MonitorOptions options;
        options.dataDir = dir.path();
        monitor = std::make_unique<Monitor>(options, clock, store, *sources, views);
        if (!monitor->startUp())
            return false;
        monitor->Sensors.clear();
        monitor->GraphForms.clear();
        return true;
    }

    // A new Graph without a Node.
    Graph& addGraph()
    {
        monitor->AddSensor(false);
        Graph& graph = monitor->Sensors.back();
        graph.Nodes.clear();
        return graph;
    }
};

}  // namespace orm
