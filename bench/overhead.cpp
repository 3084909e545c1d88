// What the monitor costs the machine, next to the least a monitor can cost.
//
//     overhead [--desktop] [--seconds N] [--binary PATH]
//
// --binary measures another build of ormivane (an older one, for a figure
// from before a change) in place of the one built beside the bench.
// Writes a settings file into a temporary folder (the first-run Graph with its
// CPU Node and a Line Graph "Ten" of CPU, RAM, Page File, Drive Space "/",
// Disk R/W "/", Download and Upload on the loopback adapter, Ping 127.0.0.1,
// Processes and Sys Uptime, all sampled every second and logged), then runs the
// floor program and `ormivane --headless` side by side for 60 s. With --desktop
// ormivane runs with its windows on a virtual X server instead, and the config
// holds a Bar Graph of CPU, RAM and Drive Space "/" as well.
//
// For each it prints the CPU seconds per minute over the last 50 s (from
// /proc/PID/task/*/schedstat, nanoseconds, every thread), the peak RSS (VmHWM)
// and the ratio to the floor; headless, then the cost of one tick by Node,
// measured in this process. Prints figures; asserts nothing.
#include "bench_monitor.h"
#include "model/catalogue.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>
#include <optional>

#include <csignal>

using namespace orm;

namespace {

using Values = std::map<QString, QString>;

// The adapter index the settings store keeps for the loopback adapter.
QString loopbackIndex()
{
    QFile f(QStringLiteral("/sys/class/net/lo/ifindex"));
    return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll().trimmed()) : QStringLiteral("1");
}

void addNode(Values& v, int graph, int node, int type, const Values& extra = {})
{
    const QString key = QStringLiteral("Sensor%1/Node%2/").arg(graph).arg(node);
    v[key + QStringLiteral("Name")] = QStringLiteral("Node %1").arg(node);
    v[key + QStringLiteral("NodeType")] = QString::number(type);
    v[key + QStringLiteral("LogData")] = QStringLiteral("True");
    v[key + QStringLiteral("DriveMonitoring")] = QStringLiteral("/");
    v[key + QStringLiteral("AdapterMonitoring")] = loopbackIndex();
    v[key + QStringLiteral("PingIP")] = QStringLiteral("127.0.0.1");
    for (const auto& [k, value] : extra)
        v[key + k] = value;
}

void addGraph(Values& v, int graph, const QString& name, int type, const std::vector<int>& nodeTypes, int y)
{
    const QString key = QStringLiteral("Sensor%1/").arg(graph);
    v[key + QStringLiteral("Name")] = name;
    v[key + QStringLiteral("GraphType")] = QString::number(type);
    v[key + QStringLiteral("SampleEverySeconds")] = QStringLiteral("1");
    v[key + QStringLiteral("Visible")] = QStringLiteral("True");
    v[key + QStringLiteral("LocX")] = QStringLiteral("100");
    v[key + QStringLiteral("LocY")] = QString::number(y);
    v[key + QStringLiteral("LocWidth")] = QStringLiteral("568");
    v[key + QStringLiteral("LocHeight")] = QStringLiteral("159");
    v[key + QStringLiteral("Nodes")] = QString::number(nodeTypes.size());
    for (size_t n = 0; n < nodeTypes.size(); ++n)
        addNode(v, graph, int(n) + 1, nodeTypes[n]);
}

const std::vector<int> TenTypes = {CpuType,      RamType,          PageFileType, DriveSpaceType, DiskRWType,
                                   DownloadNodeType, UploadType,   PingType,     ProcessesType,  SysUptimeType};

// The benchmark's configuration, with the Bar Graph when the windows are on.
void writeConfig(const QString& path, bool withBarGraph)
{
    Values v;
    v[QStringLiteral("FirstRun")] = QStringLiteral("False");
    v[QStringLiteral("StartInSystray")] = QStringLiteral("False");
    v[QStringLiteral("DisplayToolTips")] = QStringLiteral("False");
    const int graphs = withBarGraph ? 3 : 2;
    v[QStringLiteral("Sensors")] = QString::number(graphs);
    addGraph(v, 1, QStringLiteral("New Graph 1"), LineGraph, {CpuType}, 100);
    addGraph(v, 2, QStringLiteral("Ten"), LineGraph, TenTypes, 300);
    if (withBarGraph)
        addGraph(v, 3, QStringLiteral("Bars"), BarGraph, {CpuType, RamType, DriveSpaceType}, 500);
    QSettings s(path, QSettings::IniFormat);
    for (const auto& [k, value] : v)
        s.setValue(QStringLiteral("Settings/") + k, value);
    s.sync();
}

// Nanoseconds on the CPU of every thread of a process; nothing once it has gone.
std::optional<qint64> cpuNanoseconds(qint64 pid)
{
    const QString tasks = QStringLiteral("/proc/%1/task").arg(pid);
    const QStringList threads = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    if (threads.isEmpty())
        return std::nullopt;
    qint64 total = 0;
    for (const QString& t : threads) {
        QFile f(tasks + QLatin1Char('/') + t + QStringLiteral("/schedstat"));
        if (f.open(QIODevice::ReadOnly))
            total += f.readAll().split(' ').value(0).toLongLong();
    }
    return total;
}

// A field of /proc/PID/status in KiB ("VmHWM:  27400 kB").
qint64 statusKiB(qint64 pid, const char* field)
{
    QFile f(QStringLiteral("/proc/%1/status").arg(pid));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith(field))
            return line.mid(qsizetype(qstrlen(field))).simplified().split(' ').value(0).toLongLong();
    return 0;
}

struct Measured {
    QString name;
    double cpuSecondsPerMinute = 0;
    double peakRssMiB = 0;
    bool ok = false;
};

// A virtual X server on a display number nobody holds.
std::unique_ptr<QProcess> startXvfb(QString& display)
{
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfb.isEmpty())
        return nullptr;
    for (int n = 150 + int(getpid() % 50), tries = 0; tries < 20; ++n, ++tries) {
        if (QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(n)))
            continue;
        auto x = std::make_unique<QProcess>();
        x->start(xvfb, {QStringLiteral(":%1").arg(n), QStringLiteral("-screen"), QStringLiteral("0"),
                        QStringLiteral("1280x800x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        if (!x->waitForStarted(5000))
            return nullptr;
        for (int i = 0; i < 50 && x->state() == QProcess::Running &&
                        !QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n));
             ++i)
            QThread::msleep(100);
        if (x->state() == QProcess::Running) {
            display = QStringLiteral(":%1").arg(n);
            return x;
        }
    }
    return nullptr;
}

// Runs the floor and ormivane side by side; the figures of both, floor first.
std::vector<Measured> runSideBySide(bool desktop, int seconds, const QString& binary)
{
    QTemporaryDir dir;
    const QString config = dir.filePath(QStringLiteral("ormivane.conf"));
    writeConfig(config, desktop);

    QString display;
    std::unique_ptr<QProcess> xvfb;
    if (desktop && !(xvfb = startXvfb(display))) {
        std::fprintf(stderr, "overhead: no virtual X server (Xvfb) could be started\n");
        return {};
    }

    QProcess floor;
    floor.start(QCoreApplication::applicationDirPath() + QStringLiteral("/overhead_floor"),
                {dir.filePath(QStringLiteral("floor.log"))});

    QProcess monitor;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.filePath(QStringLiteral("xdg")));
    env.insert(QStringLiteral("XDG_DATA_HOME"), dir.filePath(QStringLiteral("xdg-data")));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    QStringList args{QStringLiteral("--data-dir"), dir.filePath(QStringLiteral("data")), QStringLiteral("--config"),
                     config};
    if (desktop)
        env.insert(QStringLiteral("DISPLAY"), display);
    else
        args.prepend(QStringLiteral("--headless"));
    monitor.setProcessEnvironment(env);
    monitor.start(binary, args);

    std::vector<Measured> out(2);
    out[0].name = QStringLiteral("floor");
    out[1].name = desktop ? QStringLiteral("ormivane, windows under Xvfb") : QStringLiteral("ormivane --headless");
    if (!floor.waitForStarted(5000) || !monitor.waitForStarted(5000)) {
        std::fprintf(stderr, "overhead: a program did not start\n");
        return {};
    }
    const qint64 pids[2] = {floor.processId(), monitor.processId()};

    // The first seconds (start-up, the windows' first paint) are left out.
    const int settle = std::min(10, seconds / 6);
    QThread::sleep(settle);
    std::optional<qint64> before[2] = {cpuNanoseconds(pids[0]), cpuNanoseconds(pids[1])};
    QThread::sleep(seconds - settle);
    for (int i = 0; i < 2; ++i) {
        const auto after = cpuNanoseconds(pids[i]);
        out[size_t(i)].ok = before[i] && after;
        if (out[size_t(i)].ok)
            out[size_t(i)].cpuSecondsPerMinute = double(*after - *before[i]) / 1e9 * 60.0 / (seconds - settle);
        out[size_t(i)].peakRssMiB = double(statusKiB(pids[i], "VmHWM:")) / 1024.0;
    }

    for (QProcess* p : {&floor, &monitor}) {
        if (p->state() == QProcess::Running)
            ::kill(pid_t(p->processId()), SIGTERM);
    }
    for (QProcess* p : {&floor, &monitor}) {
        if (!p->waitForFinished(15000)) {
            p->kill();
            p->waitForFinished(5000);
        }
    }
    const QByteArray errors = monitor.readAllStandardError();
    if (monitor.exitCode() != 0 || !out[1].ok)
        std::fprintf(stderr, "overhead: ormivane ended with status %d: %s\n", monitor.exitCode(), errors.constData());
    if (xvfb) {
        xvfb->terminate();
        xvfb->waitForFinished(5000);
    }
    return out;
}

void printFigures(const std::vector<Measured>& rows, int seconds)
{
    if (rows.empty())
        return;
    const double floorCpu = rows[0].cpuSecondsPerMinute;
    std::printf("%-32s %12s %12s %10s\n", "what runs", "CPU-s/min", "peak RSS", "x floor");
    for (const Measured& m : rows) {
        const double ratio = floorCpu > 0 ? m.cpuSecondsPerMinute / floorCpu : 0.0;
        std::printf("%-32s %12.4f %8.1f MiB %9.1fx%s\n", qPrintable(m.name), m.cpuSecondsPerMinute, m.peakRssMiB,
                    ratio, m.ok ? "" : "  (the process ended early)");
    }
    std::printf("(CPU over the last %d s of a %d s run, every thread counted)\n", seconds - std::min(10, seconds / 6),
                seconds);
}

// CPU time of this thread, in microseconds.
double threadMicros()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e6 + double(ts.tv_nsec) / 1e3;
}

// The median CPU time of one tick of a monitor whose only Graph holds Nodes of
// the given types, all logged; no Graph at all for an empty list.
double tickMicros(const std::vector<int>& types, int ticks)
{
    BenchMonitor bench;
    if (!bench.start())
        return 0;
    Monitor& monitor = *bench.monitor;
    if (!types.empty()) {
        Graph& graph = bench.addGraph();
        const int loopback = bench.sources->adapters->slotOfIndex(loopbackIndex().toInt());
        for (size_t n = 0; n < types.size(); ++n) {
            Node node = newNode(int(n));
            node.NodeType = types[n];
            node.LogData = true;
            node.DriveMonitoring = QStringLiteral("/");
            node.AdapterIndex = qint16(std::max(loopback, 0));
            node.PingIP = QStringLiteral("127.0.0.1");
            graph.Nodes.push_back(node);
        }
        monitor.GraphForms.back()->OpenGraph();
    }
    std::vector<double> micros;
    for (int t = 0; t < ticks; ++t) {
        QCoreApplication::processEvents();  // echo replies arrive between ticks
        const double start = threadMicros();
        monitor.TimerData();
        micros.push_back(threadMicros() - start);
    }
    std::sort(micros.begin(), micros.end());
    return micros[micros.size() / 2];
}

void printNodeCosts()
{
    const int ticks = 300;
    const double base = tickMicros({}, ticks);
    std::printf("\nCPU time of one tick by Node, in this process, median of %d ticks:\n", ticks);
    std::printf("  %-28s %9.1f us\n", "no Graph (the log line alone)", base);
    for (int type : TenTypes) {
        const double t = tickMicros({type}, ticks);
        std::printf("  %-28s %9.1f us  (+%.1f)\n", qPrintable(nodeTypeName(type)), t, t - base);
    }
    std::printf("  %-28s %9.1f us\n", "all ten in one Graph", tickMicros(TenTypes, ticks));
}

}  // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    const bool desktop = args.contains(QStringLiteral("--desktop"));
    int seconds = 60;
    if (const qsizetype at = args.indexOf(QStringLiteral("--seconds")); at >= 0)
        seconds = std::max(12, args.value(at + 1).toInt());

    QString binary = QStringLiteral(ORM_BINARY);
    if (const qsizetype at = args.indexOf(QStringLiteral("--binary")); at >= 0)
        binary = args.value(at + 1);

    std::printf("%s, %d s side by side with the floor (%s)\n", desktop ? "windows under Xvfb" : "headless", seconds,
                qPrintable(binary));
    std::fflush(stdout);
    const std::vector<Measured> rows = runSideBySide(desktop, seconds, binary);
    printFigures(rows, seconds);
    if (!desktop)
        printNodeCosts();
    return rows.empty() ? 1 : 0;
}
