// A Website Node against curl: both fetch the same 10 MB and 100 MB files from
// the speed test endpoint (`ormivane --speedtest-server` serving those two
// sizes, a process of its own), in turns, five times each. Prints both medians and their ratio; the
// Node should come within 10% of curl. Asserts nothing.
//
// On a network the endpoint is another machine. Here it shares this one, and
// on two cores the kernel tends to wake a long-lived, mostly idle client (the
// Node) on the processor the sender runs on, which costs it up to a quarter of
// its speed, while curl, a fresh process each time, escapes that. So the
// endpoint gets a processor of its own and the Node and curl share another.
#include "model/graph_view.h"
#include "model/key_value_store.h"
#include "monitor/monitor.h"
#include "monitor/transfers.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include <sched.h>

using namespace orm;

namespace {

constexpr int Rounds = 5;

// Waits as the program's event loop does, asleep until something happens, so
// that the wait takes no processor from the transfer it waits for.
bool runUntil(const std::function<bool()>& done, int ms)
{
    QDeadlineTimer deadline(ms);
    QTimer wake;
    wake.start(50);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

// The first two processors this process may run on; none when it has one.
std::vector<int> twoProcessors()
{
    cpu_set_t allowed;
    CPU_ZERO(&allowed);
    std::vector<int> cpus;
    if (sched_getaffinity(0, sizeof allowed, &allowed) != 0)
        return cpus;
    for (int c = 0; c < CPU_SETSIZE && cpus.size() < 2; ++c)
        if (CPU_ISSET(c, &allowed))
            cpus.push_back(c);
    if (cpus.size() < 2)
        cpus.clear();
    return cpus;
}

// Binds the calling thread, and every thread and child it starts later, to one processor.
void runOn(int cpu)
{
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(cpu, &one);
    sched_setaffinity(0, sizeof one, &one);
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
}

double curlSpeed(const QString& url)
{
    QProcess curl;
    curl.start(QStringLiteral("curl"), {QStringLiteral("-s"), QStringLiteral("-o"), QStringLiteral("/dev/null"),
                                        QStringLiteral("-w"), QStringLiteral("%{speed_download}"), url});
    if (!curl.waitForFinished(60000) || curl.exitCode() != 0)
        return 0;
    return curl.readAllStandardOutput().trimmed().toDouble();
}

// One measured transfer of the Node: a tick starts it, its events end it.
double nodeSpeed(Monitor& monitor)
{
    Node& n = monitor.Sensors[0].Nodes[0];
    monitor.TimerData();
    if (!n.WebsiteBusy || !runUntil([&] { return !n.WebsiteBusy; }, 60000))
        return 0;
    return n.Bandwidth;
}

}  // namespace

int main(int argc, char* argv[])
{
    // Before any thread starts, so that all of them, and curl, run there too.
    const std::vector<int> cpus = twoProcessors();
    if (!cpus.empty())
        runOn(cpus[1]);
    QCoreApplication app(argc, argv);
    // A data folder without "-", which would misread the transfer names.
    QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/ormbenchXXXXXX"));
    QFile sizes(dir.filePath(QStringLiteral("sizes.txt")));
    if (!sizes.open(QIODevice::WriteOnly) || sizes.write("10000000|60\r\n100000000|600\r\n") < 0)
        return 1;
    sizes.close();
    QProcess server;
    if (!cpus.empty())
        server.setChildProcessModifier([cpu = cpus[0]] { runOn(cpu); });
    server.start(QCoreApplication::applicationDirPath() + QStringLiteral("/../ormivane"),
                 {QStringLiteral("--speedtest-server"), QStringLiteral("127.0.0.1:0"), QStringLiteral("--variations"),
                  sizes.fileName()});
    if (!server.waitForStarted(5000) || !server.waitForReadyRead(10000)) {
        std::fprintf(stderr, "transfer_bench: the endpoint did not start\n");
        return 1;
    }
    const QString base = QString::fromLocal8Bit(server.readLine()).trimmed().section(QLatin1Char(' '), 4, 4);

    qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral("config")).toLocal8Bit());
    MemoryStore store;
    store.writeValue(QStringLiteral("Settings"), QStringLiteral("FirstRun"), QStringLiteral("False"));
    store.writeValue(QStringLiteral("Settings"), QStringLiteral("Sensors"), QStringLiteral("1"));
    store.writeValue(QStringLiteral("Settings/Sensor1"), QStringLiteral("SampleEverySeconds"), QStringLiteral("1"));
    store.writeValue(QStringLiteral("Settings/Sensor1/Node1"), QStringLiteral("NodeType"), QStringLiteral("4"));
    store.writeValue(QStringLiteral("Settings/Sensor1/Node1"), QStringLiteral("DownloadURL"), base);
    SystemClock clock;
    auto sources = SourceSet::forLinux();
    HistoryViewFactory views;
    MonitorOptions options;
    options.dataDir = dir.filePath(QStringLiteral("data"));
    Monitor monitor(options, clock, store, *sources, views);
    Node* n = nullptr;
    if (!monitor.startUp() || !runUntil([&] { return monitor.Sensors[0].Nodes[0].WebsiteTested; }, 10000) ||
        !(n = &monitor.Sensors[0].Nodes[0])->WebsiteReady) {
        std::fprintf(stderr, "transfer_bench: the Website Node did not pass its test\n");
        return 1;
    }

    std::printf("transfer_bench: a Website Node and curl fetch the same file from %s, in turns, %d times each\n",
                base.toLocal8Bit().constData(), Rounds);
    if (cpus.empty())
        std::printf("one processor: the endpoint, the Node and curl share it\n");
    else
        std::printf("the endpoint runs on processor %d, the Node and curl on processor %d\n", cpus[0], cpus[1]);
    std::printf("%-8s %16s %16s %10s\n", "file", "Node median B/s", "curl median B/s", "Node/curl");
    const struct {
        const char* label;
        int option;
    } files[] = {{"10 MB", 0}, {"100 MB", 1}};
    for (const auto& f : files) {
        const QString url = base + QStringLiteral("serverdownload.asp?s=%1").arg(f.option);
        n->DownloadURL = url;
        std::vector<double> node, curl;
        for (int k = 0; k < Rounds; ++k) {
            node.push_back(nodeSpeed(monitor));
            curl.push_back(curlSpeed(url));
        }
        const double nm = median(node), cm = median(curl);
        std::printf("%-8s %16.0f %16.0f %10.3f\n", f.label, nm, cm, cm > 0 ? nm / cm : 0.0);
    }
    monitor.Closing = true;
    monitor.unload();
    server.terminate();
    server.waitForFinished(5000);
    return 0;
}
