// The cost of one whole tick (sources, evaluation, log line) over a large set
// of system Nodes. Prints figures; asserts nothing.
#include "core/graph_view.h"
#include "core/key_value_store.h"
#include "core/monitor.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>

using namespace orm;

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const int graphs = 10, nodesPerGraph = 10, ticks = 1000;
    QTemporaryDir dir;
    SystemClock clock;
    MemoryStore store;
    auto sources = SourceSet::forLinux();
    HistoryViewFactory views;
    MonitorOptions options;
    options.dataDir = dir.path();
    Monitor monitor(options, clock, store, *sources, views);
    if (!monitor.startUp()) {
        std::fprintf(stderr, "start-up failed: %s\n", qPrintable(monitor.startError()));
        return 1;
    }

    // CPU, RAM, drive space and the three disk rates, all logged.
    const int kinds[] = {CpuType, RamType, DriveSpaceType, DiskRWType, DiskReadType, DiskWriteType,
                         CpuType, PageFileType, VMemoryType, DriveSpaceType};
    monitor.Sensors.clear();
    monitor.GraphForms.clear();
    for (int g = 0; g < graphs; ++g) {
        monitor.AddSensor(false);
        Graph& graph = monitor.Sensors.back();
        graph.Nodes.clear();
        for (int n = 0; n < nodesPerGraph; ++n) {
            Node node = newNode(n);
            node.NodeType = kinds[n];
            node.CPUNumber = qint16(n % std::max(1, sources->cpu->ProcessorCount));
            node.DriveMonitoring = QStringLiteral("/");
            node.LogData = true;
            graph.Nodes.push_back(node);
        }
    }

    std::vector<double> micros;
    micros.reserve(ticks);
    for (int t = 0; t < ticks; ++t) {
        const auto start = std::chrono::steady_clock::now();
        monitor.TimerData();
        const auto end = std::chrono::steady_clock::now();
        micros.push_back(std::chrono::duration<double, std::micro>(end - start).count());
    }
    if (!monitor.fatalError.isEmpty()) {
        std::fprintf(stderr, "tick failed: %s\n", qPrintable(monitor.fatalError));
        return 1;
    }
    std::sort(micros.begin(), micros.end());
    const double median = micros[micros.size() / 2];
    const double p99 = micros[size_t(micros.size() * 0.99)];
    const int nodes = graphs * nodesPerGraph;
    std::printf("tick benchmark: %d Graphs x %d Nodes (%d Nodes, all logged), %d ticks\n", graphs, nodesPerGraph,
                nodes, ticks);
    std::printf("  median tick   %10.1f us\n", median);
    std::printf("  99th pct tick %10.1f us\n", p99);
    std::printf("  per Node      %10.2f us (median / Nodes)\n", median / nodes);
    return 0;
}
