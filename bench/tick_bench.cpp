// The cost of one whole tick (sources, evaluation, log line) over large sets
// of Nodes. Prints figures; asserts nothing.
#include "bench_monitor.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

using namespace orm;

namespace {

struct Figures {
    double median = 0, p99 = 0;
};

// Runs `ticks` ticks, letting the event loop deliver echo replies between them
// (outside the measured time), as the program's timer would.
Figures measure(Monitor& monitor, int ticks)
{
    std::vector<double> micros;
    micros.reserve(size_t(ticks));
    for (int t = 0; t < ticks; ++t) {
        QCoreApplication::processEvents();
        const auto start = std::chrono::steady_clock::now();
        monitor.TimerData();
        const auto end = std::chrono::steady_clock::now();
        micros.push_back(std::chrono::duration<double, std::micro>(end - start).count());
    }
    std::sort(micros.begin(), micros.end());
    return {micros[micros.size() / 2], micros[size_t(double(micros.size()) * 0.99)]};
}

// A fresh monitor whose Graphs hold the Nodes `fill` makes.
int runSet(const char* title, int graphs, int nodesPerGraph, int ticks,
           const std::function<void(Node&, int graph, int node)>& fill)
{
    BenchMonitor bench;
    if (!bench.start()) {
        std::fprintf(stderr, "start-up failed: %s\n", qPrintable(bench.monitor->startError()));
        return 1;
    }
    Monitor& monitor = *bench.monitor;
    for (int g = 0; g < graphs; ++g) {
        Graph& graph = bench.addGraph();
        for (int n = 0; n < nodesPerGraph; ++n) {
            Node node = newNode(n);
            node.LogData = true;
            fill(node, g, n);
            graph.Nodes.push_back(node);
        }
    }
    ProcessIndexes(monitor.Sensors, *bench.sources->processes);

    const Figures f = measure(monitor, ticks);
    if (!monitor.fatalError.isEmpty()) {
        std::fprintf(stderr, "tick failed: %s\n", qPrintable(monitor.fatalError));
        return 1;
    }
    const int nodes = graphs * nodesPerGraph;
    std::printf("%s: %d Graphs x %d Nodes (%d Nodes, all logged), %d ticks\n", title, graphs, nodesPerGraph, nodes,
                ticks);
    std::printf("  median tick   %10.1f us\n", f.median);
    std::printf("  99th pct tick %10.1f us\n", f.p99);
    std::printf("  per Node      %10.2f us (median / Nodes)\n", f.median / nodes);
    return 0;
}

}  // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const int ticks = 1000;
    const int processors = std::max(1, SourceSet::forLinux()->cpuCounters->processorCount());

    // CPU, RAM, drive space and the disk rates.
    const int system[] = {CpuType, RamType, DriveSpaceType, DiskRWType, DiskReadType, DiskWriteType,
                          CpuType, PageFileType, VMemoryType, DriveSpaceType};
    int status = runSet("system Nodes", 10, 10, ticks, [&](Node& node, int, int n) {
        node.NodeType = system[n];
        node.CPUNumber = qint16(n % processors);
        node.DriveMonitoring = QStringLiteral("/");
    });

    // The same set with 10 adapter Nodes, 5 Ping Nodes to 127.0.0.1 and 5 Process
    // Nodes on this very process in place of some of the system Nodes.
    const QString self = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    status |= runSet("system, adapter, ping and process Nodes", 10, 10, ticks, [&](Node& node, int g, int n) {
        node.NodeType = system[n];
        node.CPUNumber = qint16(n % processors);
        node.DriveMonitoring = QStringLiteral("/");
        if (g < 2 && n < 5) {
            const int adapterTypes[] = {UpDownType, DownloadNodeType, UploadType, DownloadNodeType, UploadType};
            node.NodeType = adapterTypes[n];
            node.AdapterIndex = 0;
        } else if (g == 2 && n < 5) {
            node.NodeType = PingType;
            node.PingIP = QStringLiteral("127.0.0.1");
        } else if (g == 3 && n < 5) {
            node.NodeType = ProcessType;
            node.ProcessMonitoring = self;
        }
    });

    // A Processes Node in every Graph beside the system Nodes: the process
    // folders are listed for the first of them in a tick.
    status |= runSet("system Nodes and a Processes Node a Graph", 10, 10, ticks, [&](Node& node, int, int n) {
        node.NodeType = n == 0 ? ProcessesType : system[n];
        node.CPUNumber = qint16(n % processors);
        node.DriveMonitoring = QStringLiteral("/");
    });

    // Logged Website and LAN Nodes that wait for their test: their columns are
    // named after the address on every line.
    status |= runSet("logged Website and LAN Nodes", 10, 10, ticks, [&](Node& node, int g, int n) {
        node.NodeType = n % 2 ? LanType : WebsiteType;
        node.DownloadURL = n % 2 ? QStringLiteral("\\\\fileserver\\share\\test file %1.bin").arg(g)
                                 : QStringLiteral("http://speed.example.net/files/test-%1-%2.bin").arg(g).arg(n);
    });
    return status;
}
