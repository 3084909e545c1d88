// A month of one-second logs read back: a plain reader of the files (the
// floor), the header refresh, the graph refresh of a 600-pixel Log Graph with
// three Nodes and the export of those three columns, each timed warm. Prints
// figures; asserts nothing.
#include "display/displayed_graph.h"
#include "logging/log_line.h"
#include "model/key_value_store.h"
#include "monitor/log_work.h"
#include "monitor/monitor.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <random>
#include <sys/resource.h>
#include <unistd.h>

using namespace orm;

namespace {

constexpr int Days = 30;
constexpr int LinesPerDay = 86400;
const QString PingTarget = QStringLiteral("192.168.1.1");
const QString ProcessName = QStringLiteral("firefox-esr");

double peakResidentMB()
{
    rusage u {};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_maxrss) / 1024.0;
}

// The "#Fields:" line the writer gives a default Graph of ten typical Nodes:
// two CPUs, RAM, page file, drive space and disk traffic of "/", download and
// upload (two adapters), the process count, a Ping Node and a Process Node.
QByteArray typicalFields()
{
    LogFlags flags;
    flags.logAdapters = flags.logMemory = flags.logCPU = flags.logProcesses = flags.logPing = flags.logProcess = true;
    flags.logDrives = {true};
    LogInputs in;
    in.adapters.resize(2);
    in.cpu = {0, 0};
    in.drives = {DriveLogRow{QStringLiteral("/"), 0, 0, 0}};
    std::vector<Graph> sensors(1);
    Node ping;
    ping.NodeType = PingType;
    ping.PingIP = PingTarget;
    Node process;
    process.NodeType = ProcessType;
    process.ProcessMonitoring = ProcessName;
    sensors[0].Nodes = {ping, process};
    in.processMemory = {1};
    in.sensors = &sensors;
    return buildLogLine(flags, in, QString(), QString(), QLatin1Char(',')).fields.toLocal8Bit();
}

// The values of one line, whole numbers as the writer writes them.
class LineMaker {
public:
    // `date` as "yyyy-mm-dd", `ofDay` the second of that day.
    void line(std::string& out, const char* date, int ofDay, qint64 second)
    {
        char stamp[16];
        std::snprintf(stamp, sizeof stamp, ",%02d:%02d:%02d", ofDay / 3600, ofDay / 60 % 60, ofDay % 60);
        out += date;
        out += stamp;
        const auto add = [&out](qint64 v) {
            char buf[24];
            out += ',';
            out.append(buf, size_t(std::to_chars(buf, buf + sizeof buf, v).ptr - buf));
        };
        add(1000);
        add(qint32(48215203 + second * 1000));
        for (int a = 0; a < 2; ++a) {  // ADPT_DN, ADPT_UP, ADPT_ERR_DN, ADPT_ERR_UP
            add(a == 0 ? qint64(random_() % 250000) : qint64(random_() % 900));
            add(a == 0 ? qint64(random_() % 40000) : 0);
            add(a == 0 ? 3 : 0);
            add(0);
        }
        add(16663166976);                                 // MEM_TOT
        add(25253101568);                                 // MEM_V_TOT
        add(8589930496);                                  // MEM_P_TOT
        add(9000000000 + qint64(random_() % 2000000000));  // MEM_AVA
        add(17000000000 + qint64(random_() % 2000000000)); // MEM_V_AVA
        add(8589930496 - qint64(random_() % 1000000));     // MEM_P_AVA
        add(qint64(random_() % 101));                      // CPU0
        add(qint64(random_() % 101));                      // CPU1
        add(512000000000 - second * 4096);                 // DISK_FREE_/
        add(qint64(random_() % 65536) * 512);              // DISK_R_/
        add(qint64(random_() % 65536) * 512);              // DISK_W_/
        add(300 + qint64(random_() % 40));                 // PROCS
        add(100);                                          // PING_SIZE_
        add(8 + qint64(random_() % 60));                   // PING_RTT_
        add(700000000 + qint64(random_() % 90000000));     // the process's memory
        out += "\r\n";
    }

private:
    std::minstd_rand random_{42};
};

// Writes the month in `logs`, ending today; the bytes written.
qint64 writeMonth(const QString& logs)
{
    QDir().mkpath(logs);
    const QByteArray fields = typicalFields();
    const QDate today = QDate::currentDate();
    LineMaker maker;
    std::string out;
    out.reserve(1 << 21);
    qint64 bytes = 0, second = 0;
    for (int day = Days - 1; day >= 0; --day) {
        const QDate date = today.addDays(-day);
        const QString path = logs + QStringLiteral("/ex") + date.toString(QStringLiteral("yyyyMMdd")) + ".log";
        FILE* f = std::fopen(QFile::encodeName(path).constData(), "wb");
        if (!f)
            return -1;
        const QDateTime start(date, QTime(0, 0));
        const std::string dateText = date.toString(QStringLiteral("yyyy-MM-dd")).toStdString();
        for (int i = 0; i < LinesPerDay; ++i, ++second) {
            // A header at the start of the day, and a restart every week's middle.
            if (i == 0 || (day % 7 == 3 && i == LinesPerDay / 2)) {
                out += "#Software: Vendrake - Ormivane\r\n#Version: 1.0.0\r\n#Date: ";
                out += start.addSecs(i).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toStdString();
                out += "\r\n";
                out.append(fields.constData(), size_t(fields.size()));
                out += "\r\n";
            }
            maker.line(out, dateText.c_str(), i, second);
            if (out.size() >= (1 << 20)) {
                bytes += qint64(std::fwrite(out.data(), 1, out.size(), f));
                out.clear();
            }
        }
        bytes += qint64(std::fwrite(out.data(), 1, out.size(), f));
        out.clear();
        std::fclose(f);
    }
    return bytes;
}

// The floor: 1 MiB reads, memchr for line ends, one integer column (SYS_TMR) summed.
qint64 plainRead(const QString& logs)
{
    std::vector<char> buf(1 << 20);
    qint64 sum = 0;
    for (const QString& name : QDir(logs).entryList({QStringLiteral("*.log")}, QDir::Files, QDir::Name)) {
        const int fd = ::open(QFile::encodeName(logs + '/' + name).constData(), O_RDONLY);
        if (fd < 0)
            continue;
        size_t have = 0;
        ssize_t got;
        while ((got = ::read(fd, buf.data() + have, buf.size() - have)) > 0) {
            const char* p = buf.data();
            const char* end = p + have + size_t(got);
            const char* nl;
            while ((nl = static_cast<const char*>(std::memchr(p, '\n', size_t(end - p))))) {
                if (*p != '#') {
                    const char* f = p;
                    for (int c = 0; c < 3 && f; ++c)
                        f = static_cast<const char*>(std::memchr(f, ',', size_t(nl - f)));
                    if (f) {
                        qint64 v = 0;
                        const char* s = f + 1;
                        if (const char* stop = static_cast<const char*>(std::memchr(s, ',', size_t(nl - s)));
                            stop && s < stop)
                            std::from_chars(s, stop, v);
                        sum += v;
                    }
                }
                p = nl + 1;
            }
            have = size_t(end - p);
            std::memmove(buf.data(), p, have);
        }
        ::close(fd);
    }
    return sum;
}

class BenchHost final : public LogWorkHost {
public:
    void setStatus(const QString& text) override { status = text; }
    void showMessage(const QString& text) override { std::fprintf(stderr, "message: %s\n", qPrintable(text)); }
    void letEventsThrough() override { QCoreApplication::processEvents(); }
    QString status;
};

// The best of five warm runs of each, in seconds. The runs take turns, so that
// whatever else the machine does meanwhile falls on all of them alike.
std::vector<double> timeBest(const std::vector<std::function<void()>>& works)
{
    std::vector<double> best(works.size(), 1e9);
    for (int round = 0; round < 5; ++round)
        for (size_t k = 0; k < works.size(); ++k) {
            const auto start = std::chrono::steady_clock::now();
            works[k]();
            const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            best[k] = std::min(best[k], s);
        }
    return best;
}

}  // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    // ORMIVANE_BENCH_DIR keeps the month between runs (for a profiler); else a temporary folder.
    QTemporaryDir temporary;
    const QString kept = qEnvironmentVariable("ORMIVANE_BENCH_DIR");
    const QDir dir(kept.isEmpty() ? temporary.path() : kept);
    const QString logs = dir.filePath(QStringLiteral("Logs"));
    qint64 bytes = 0;
    if (!kept.isEmpty() && QFileInfo::exists(logs)) {
        for (const QFileInfo& f : QDir(logs).entryInfoList({QStringLiteral("*.log")}, QDir::Files))
            bytes += f.size();
    } else {
        bytes = writeMonth(logs);
    }
    if (bytes <= 0) {
        std::fprintf(stderr, "cannot write the month of logs into %s\n", qPrintable(logs));
        return 1;
    }
    const double mb = double(bytes) / 1e6;
    std::printf("a month of logs: %d files, %d lines, %.0f MB (peak resident after writing them: %.1f MB)\n", Days,
                Days * LinesPerDay, mb, peakResidentMB());

    // A Log Graph over the whole month, 600 pixels wide, with three Nodes.
    SystemClock clock;
    MemoryStore store;
    auto sources = SourceSet::forLinux();
    MonitorOptions options;
    options.dataDir = dir.path();
    DisplayedGraphFactory views(QString(), dir.path());
    Monitor monitor(options, clock, store, *sources, views);
    views.bind(monitor.Sensors);
    Graph g = newGraph(0, true, {}, clock.now());
    g.LocWidth = 600 + 78;
    g.LogStart = momentNumber(QDateTime(QDate::currentDate().addDays(-Days), QTime(0, 0)));
    g.LogEnd = momentNumber(QDateTime(QDate::currentDate().addDays(1), QTime(0, 0)));
    g.Nodes.resize(3, g.Nodes[0]);
    const char* columns[] = {"CPU0", "PING_RTT_192.168.1.1", "MEM_AVA"};
    for (int n = 0; n < 3; ++n)
        g.Nodes[size_t(n)].LogItemView = QString::fromLatin1(columns[n]);
    monitor.Sensors.push_back(g);
    monitor.GraphForms.push_back(views.make(0));
    monitor.GraphForms[0]->OpenGraph();
    BenchHost host;
    LogWork work(monitor, host);

    plainRead(logs);  // warms the cache
    qint64 checksum = 0;
    const std::vector<double> t = timeBest({[&] { checksum = plainRead(logs); }, [&] { work.RefreshLogHeaders(0); },
                                            [&] { work.RefreshLogGraph(0); }, [&] { work.ExportLog(0); }});
    const double floor = t[0];

    std::printf("pixels %d, records found %.0f, export %lld bytes (checksum %lld)\n",
                monitor.GraphForms[0]->plotWidth(), monitor.Sensors[0].LogRecordCount,
                static_cast<long long>(QFileInfo(work.exportPath()).size()), static_cast<long long>(checksum));
    const auto row = [&](const char* what, double s) {
        std::printf("  %-30s %7.3f s %8.0f MB/s %6.2fx the plain reader\n", what, s, mb / s, s / floor);
    };
    row("plain reader (the floor)", floor);
    row("header refresh", t[1]);
    row("graph refresh, 3 Nodes", t[2]);
    row("export of 3 columns", t[3]);
    std::printf("peak resident memory: %.1f MB\n", peakResidentMB());
    return 0;
}
