// What the metrics endpoint costs the monitor with 100 Nodes: the exposition
// alone, a whole scrape served on loopback (the monitor's own CPU time while
// curl asks on one kept-alive connection, as Prometheus does), and the tick with
// the endpoint off and on. Prints figures; asserts nothing.
#include "bench_monitor.h"
#include "endpoint/metrics_endpoint.h"
#include "monitor/metrics_feed.h"

#include <QCoreApplication>
#include <QProcess>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <sys/resource.h>

using namespace orm;

namespace {

constexpr int Graphs = 10, NodesPerGraph = 10, Nodes = Graphs * NodesPerGraph;
constexpr double GoalMicros = 1000;  // a scrape of 100 Nodes: under 1 ms of the monitor's time

double processCpuMicros()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1e6 + double(u.ru_utime.tv_usec + u.ru_stime.tv_usec);
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// A started monitor whose Graphs hold 100 system Nodes, every one logged.
bool startWithSystemNodes(BenchMonitor& bench)
{
    if (!bench.start())
        return false;
    const int types[] = {CpuType,      RamType,     DriveSpaceType, DiskRWType, DiskReadType,
                         DiskWriteType, PageFileType, VMemoryType,   ProcessesType, SysUptimeType};
    for (int g = 0; g < Graphs; ++g) {
        Graph& graph = bench.addGraph();
        graph.Name = QStringLiteral("Machine room \"%1\"").arg(g + 1);
        for (int n = 0; n < NodesPerGraph; ++n) {
            Node node = newNode(n);
            node.NodeType = types[n];
            node.LogData = true;
            node.DriveMonitoring = QStringLiteral("/");
            graph.Nodes.push_back(node);
        }
    }
    return true;
}

double timeOneTick(Monitor& m)
{
    const auto start = std::chrono::steady_clock::now();
    m.TimerData();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    BenchMonitor served, plain;
    if (!startWithSystemNodes(served) || !startWithSystemNodes(plain)) {
        std::fprintf(stderr, "start-up failed: %s\n", qPrintable(served.monitor->startError()));
        return 1;
    }
    served.monitor->recordHealth();

    // The tick with the endpoint off (nothing recorded) and on, taken in turns so
    // that both see the same machine.
    const int ticks = 300;
    std::vector<double> off, on;
    for (int t = 0; t < ticks; ++t) {
        QCoreApplication::processEvents();
        off.push_back(timeOneTick(*plain.monitor));
        on.push_back(timeOneTick(*served.monitor));
    }
    std::printf("metrics: %d Graphs x %d Nodes (%d Nodes), %d ticks each\n", Graphs, NodesPerGraph, Nodes, ticks);
    std::printf("  tick, endpoint off    %10.1f us (median)\n", median(off));
    std::printf("  tick, endpoint on     %10.1f us (median), %+.1f%% of the tick off\n", median(on),
                (median(on) / median(off) - 1) * 100);

    // The exposition alone, into a buffer that is kept, as the endpoint keeps its own.
    QByteArray text;
    std::vector<double> writes;
    for (int i = 0; i < 5000; ++i) {
        const auto start = std::chrono::steady_clock::now();
        writeMetrics(*served.monitor, text);
        writes.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    std::printf("  exposition            %10.1f us (median), %lld bytes\n", median(writes), qlonglong(text.size()));

    // Whole scrapes over loopback: curl asks for /metrics again and again on one connection.
    MetricsEndpoint endpoint([&served](QByteArray& out) { writeMetrics(*served.monitor, out); }, QByteArray());
    if (!endpoint.listenOn(QHostAddress::LocalHost, 0)) {
        std::fprintf(stderr, "cannot listen: %s\n", qPrintable(endpoint.errorString()));
        return 1;
    }
    const int scrapes = 2000;
    const QString url = QStringLiteral("http://127.0.0.1:%1/metrics").arg(endpoint.port());
    QProcess curl;
    curl.setStandardOutputFile(QProcess::nullDevice());
    curl.start(QStringLiteral("curl"), QStringList{QStringLiteral("-s")} + QStringList(scrapes, url));
    if (!curl.waitForStarted()) {
        std::fprintf(stderr, "curl did not start\n");
        return 1;
    }
    const double cpuBefore = processCpuMicros();
    const auto wallBefore = std::chrono::steady_clock::now();
    bool done = false;
    QObject::connect(&curl, &QProcess::finished, &app, [&done] { done = true; });
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double cpu = processCpuMicros() - cpuBefore;
    const double wall = std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - wallBefore).count();
    if (endpoint.scrapes() != quint64(scrapes)) {
        std::fprintf(stderr, "curl was served %llu scrapes of %d\n", endpoint.scrapes(), scrapes);
        return 1;
    }
    const double perScrape = cpu / scrapes;
    std::printf("  scrape over loopback  %10.1f us of the monitor's CPU time each (%d scrapes, %.1f us wall each)\n",
                perScrape, scrapes, wall / scrapes);
    std::printf("  goal: under %.0f us   %10.2f of the goal: %s\n", GoalMicros, perScrape / GoalMicros,
                perScrape < GoalMicros ? "met" : "NOT met");
    return 0;
}
