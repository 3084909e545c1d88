// A headless Ormivane with its metrics endpoint, scraped by curl, checked by
// promtool and scraped by a real Prometheus on loopback, asked through its
// HTTP API.
#include "../alerts/pump_until.h"
#include "../store/print_qstring.h"
#include "exposition_reader.h"
#include "log_shape.h"
#include "run_headless.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStorageInfo>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <gtest/gtest.h>
#include <cmath>
#include <functional>
#include <set>

using namespace orm::test;

namespace {

// Looks every 100 ms: each look at Prometheus is a curl process.
bool waitUntil(const std::function<bool()>& done, int ms)
{
    return pumpUntil(done, ms, 100);
}

quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

struct CurlReply {
    int status = 0;
    QByteArray body;
};

CurlReply curl(const QString& url, const QStringList& extra = {})
{
    QProcess p;
    p.start(QStringLiteral("curl"), QStringList{QStringLiteral("-s"), QStringLiteral("-m"), QStringLiteral("10"), QStringLiteral("-w"),
                                                QStringLiteral("\n%{http_code}")} + extra + QStringList{url});
    p.waitForFinished(15000);
    const QByteArray out = p.readAllStandardOutput();
    const qsizetype cut = out.lastIndexOf('\n');
    return {out.mid(cut + 1).toInt(), out.left(cut)};
}

QStringList bearer(const char* token) { return {QStringLiteral("-H"), QStringLiteral("Authorization: Bearer ") + QLatin1String(token)}; }

using Settings = std::map<QString, QString>;

// A headless run with its metrics endpoint; the URL it says it serves on.
QString startWithMetrics(HeadlessRun& run, const QStringList& args)
{
    run.start(120, args);
    QString url;
    waitUntil(
        [&] {
            run.process.waitForReadyRead(50);
            const QString out = QString::fromLocal8Bit(run.process.peek(run.process.bytesAvailable()));
            const qsizetype at = out.indexOf(QStringLiteral("http://"));
            if (at >= 0 && out.indexOf(QLatin1Char('\n'), at) > at)
                url = out.mid(at, out.indexOf(QLatin1Char('\n'), at) - at).section(QLatin1Char(' '), 0, 0);
            return !url.isEmpty() || run.process.state() == QProcess::NotRunning;
        },
        20000);
    return url;
}

class PrometheusRun {
public:
    ~PrometheusRun()
    {
        process.terminate();
        if (!process.waitForFinished(10000))
            process.kill();
        process.waitForFinished(5000);
    }

    // Writes the configuration and the files beside it, starts Prometheus on a
    // free loopback port; true once it says it is ready.
    bool start(const std::map<QString, QByteArray>& files)
    {
        for (const auto& [name, bytes] : files) {
            QFile f(dir.filePath(name));
            f.open(QIODevice::WriteOnly);
            f.write(bytes);
        }
        port = freePort();
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral("prometheus"),
                      {QStringLiteral("--config.file=") + dir.filePath(QStringLiteral("prometheus.yml")),
                       QStringLiteral("--storage.tsdb.path=") + dir.filePath(QStringLiteral("data")),
                       QStringLiteral("--web.listen-address=127.0.0.1:%1").arg(port), QStringLiteral("--log.level=warn")});
        const auto running = [this] { return process.state() == QProcess::Running; };
        return process.waitForStarted(10000) &&
               waitUntil([&] { return curl(url(QStringLiteral("/-/ready"))).status == 200 || !running(); }, 30000) &&
               running();
    }

    QString url(const QString& path) const { return QStringLiteral("http://127.0.0.1:%1%2").arg(port).arg(path); }
    QString log() { return QString::fromLocal8Bit(process.readAll()); }

    // The "data" of an instant query, or an empty object when it failed.
    QJsonObject query(const QString& promql)
    {
        const QJsonObject reply = QJsonDocument::fromJson(
            curl(url(QStringLiteral("/api/v1/query")), {QStringLiteral("-G"), QStringLiteral("--data-urlencode"),
                                                         QStringLiteral("query=") + promql}).body).object();
        lastError = reply.value(QStringLiteral("error")).toString();
        return reply.value(QStringLiteral("data")).toObject();
    }
    QJsonArray series(const QString& promql) { return query(promql).value(QStringLiteral("result")).toArray(); }
    // The value of a query that gives one number; NaN when it gives none.
    double number(const QString& promql)
    {
        const QJsonArray r = series(promql);
        return r.size() == 1 ? r[0].toObject().value(QStringLiteral("value")).toArray()[1].toString().toDouble() : qQNaN();
    }

    QTemporaryDir dir;
    QProcess process;
    quint16 port = 0;
    QString lastError;
};

// The repository's example scrape configuration, every interval 1 s, the
// loopback job aimed at nothing and the fleet job, with its token file, at `fleet`.
QByteArray exampleConfig(const QString& fleet)
{
    QFile f(QStringLiteral(ORM_FLEET_DIR "/prometheus.yml"));
    f.open(QIODevice::ReadOnly);
    QByteArray text = f.readAll();
    text.replace("scrape_interval: 15s", "scrape_interval: 1s").replace("scrape_interval: 5s", "scrape_interval: 1s");
    text.replace("\"127.0.0.1:9464\"", "\"127.0.0.1:1\"");
    text.replace("\"desk-1.example.lan:9464\", \"desk-2.example.lan:9464\"", "\"" + fleet.toUtf8() + "\"");
    return text;
}

// The values of one log line by column, with its moment in seconds since the epoch.
struct LogLine {
    double at = 0;
    std::map<QString, double> values;
};

std::vector<LogLine> logLines(const HeadlessRun& run)
{
    std::vector<LogLine> out;
    const QStringList fields = run.fields();
    for (const QString& line : run.valueLines()) {
        const QStringList cells = line.split(QLatin1Char(','));
        LogLine l;
        l.at = QDateTime::fromString(cells.value(0) + QLatin1Char(' ') + cells.value(1), QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                   .toSecsSinceEpoch();
        for (qsizetype c = 2; c < cells.size() && c < fields.size(); ++c)
            l.values[fields[c]] = cells[c].toDouble();
        out.push_back(l);
    }
    return out;
}

// Every value a Node of the benchmark's configuration can take on a log line
// (the adapter is any of the table's).
std::vector<double> fromLog(const QString& type, const LogLine& l, double rootBytes)
{
    const auto v = [&](const char* field) {
        const auto it = l.values.find(QLatin1String(field));
        return it == l.values.end() ? qQNaN() : it->second;
    };
    const double seconds = v("SAMPLE_LENGTH_MILLI_S") / 1000;
    const std::map<QString, double> single = {
        {QStringLiteral("CPU"), v("CPU0")},
        {QStringLiteral("RAM"), v("MEM_TOT") - v("MEM_AVA")},
        {QStringLiteral("Page File"), v("MEM_P_TOT") - v("MEM_P_AVA")},
        {QStringLiteral("Drive Space"), rootBytes - v("DISK_FREE_/")},
        {QStringLiteral("Disk R/W"), (v("DISK_R_/") + v("DISK_W_/")) / seconds},
        {QStringLiteral("Ping"), v("PING_RTT_127.0.0.1") / 1000},
        {QStringLiteral("Processes"), v("PROCS")},
        {QStringLiteral("Sys Uptime"), double(quint32(qint32(v("SYS_TMR")))) / 1000}};
    if (single.count(type))
        return {single.at(type)};
    std::vector<double> rates;
    const QString family = type == QLatin1String("Download") ? QStringLiteral("ADPT_DN_") : QStringLiteral("ADPT_UP_");
    for (const auto& [field, value] : l.values)
        if (field.startsWith(family))
            rates.push_back(value / seconds);
    return rates;
}

bool close(double a, double b)
{
    return std::fabs(a - b) <= 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)});
}

QString labels(const QJsonValue& series, const std::vector<const char*>& names)
{
    const QJsonObject m = series.toObject().value(QStringLiteral("metric")).toObject();
    QStringList out;
    for (const char* name : names)
        out << m.value(QLatin1String(name)).toString();
    return out.join(QLatin1Char('/'));
}

TEST(Fleet, PrometheusScrapesTheBenchConfigurationAndItsValuesAreTheLogs)
{
    // Names with quotes, backslashes, a newline and non-ASCII arrive intact;
    // the endpoint asks for a token, which the example's fleet job reads from its file.
    const QString graph = QStringLiteral("Büro \"Ost\" \\ Rack 3");
    const QString ping = QStringLiteral("Ping \"gw\" \\ first\nsecond");
    HeadlessRun run;
    Settings settings = systemLogSettings();  // the benchmarks' configuration
    settings[QStringLiteral("Sensor2/Name")] = graph;
    for (int n = 1; n <= 10; ++n)
        settings[QStringLiteral("Sensor2/Node%1/Name").arg(n)] = QStringLiteral("Node %1").arg(n);
    settings[QStringLiteral("Sensor2/Node8/Name")] = ping;
    settings[QStringLiteral("MetricsToken")] = QStringLiteral("fleet-s3cret");
    run.writeSettings(settings);
    const QString url = startWithMetrics(run, {QStringLiteral("--metrics"), QStringLiteral("127.0.0.1:0")});
    ASSERT_FALSE(url.isEmpty()) << run.process.readAllStandardError().toStdString();
    ASSERT_TRUE(run.waitForValueLines(2));

    EXPECT_EQ(curl(url).status, 401);
    EXPECT_EQ(curl(url, bearer("wrong")).status, 401);
    const CurlReply first = curl(url, bearer("fleet-s3cret"));
    ASSERT_EQ(first.status, 200);
    const PromtoolVerdict verdict = promtoolCheck(first.body);
    EXPECT_TRUE(verdict.passed) << verdict.output.toStdString() << first.body.toStdString();

    PrometheusRun prometheus;
    ASSERT_TRUE(prometheus.start({{QStringLiteral("prometheus.yml"), exampleConfig(QUrl(url).authority())},
                                  {QStringLiteral("ormivane.token"), "fleet-s3cret\n"}}))
        << prometheus.log().toStdString();
    // Ten seconds of scrapes, one a second.
    const QString scrapes = QStringLiteral("count_over_time(ormivane_ticks_total{job=\"ormivane\"}[1m])");
    ASSERT_TRUE(waitUntil([&] { return prometheus.number(scrapes) >= 10; }, 40000)) << prometheus.log().toStdString();
    EXPECT_EQ(prometheus.number(QStringLiteral("up{job=\"ormivane\"}")), 1);

    // Every Node is a series with its labels.
    std::set<QString> names;
    for (const auto& s : prometheus.series(QStringLiteral("ormivane_node_value{job=\"ormivane\"}")))
        names.insert(labels(s, {"graph", "node", "type", "unit"}));
    std::set<QString> expected{QStringLiteral("New Graph 1/New Node/CPU/percent")};
    const char* kinds[] = {"CPU/percent", "RAM/bytes", "Page File/bytes", "Drive Space/bytes", "Disk R/W/bytes_per_second",
                           "Download/bytes_per_second", "Upload/bytes_per_second", "Ping/seconds", "Processes/count", "Sys Uptime/seconds"};
    for (int n = 0; n < 10; ++n)
        expected.insert(graph + QLatin1Char('/') + (n == 7 ? ping : QStringLiteral("Node %1").arg(n + 1)) + QLatin1Char('/') + QLatin1String(kinds[n]));
    EXPECT_EQ(names, expected);

    // Each scraped value is the value of that Node in the log line of a tick
    // just before its scrape.
    const std::vector<LogLine> lines = logLines(run);
    const double rootBytes = double(QStorageInfo(QStringLiteral("/")).bytesTotal());
    int checked = 0;
    for (const auto& s : prometheus.series(QStringLiteral("ormivane_node_value{job=\"ormivane\"}[8s]"))) {
        const QString type = labels(s, {"type"});
        for (const auto& point : s.toObject().value(QStringLiteral("values")).toArray()) {
            const double at = point.toArray()[0].toDouble();
            const double value = point.toArray()[1].toString().toDouble();
            bool found = false;
            for (const LogLine& l : lines)
                if (l.at >= at - 3 && l.at <= at + 1)
                    for (double candidate : fromLog(type, l, rootBytes))
                        found = found || close(candidate, value);
            EXPECT_TRUE(found) << type.toStdString() << " " << value << " at " << at;
            ++checked;
        }
    }
    EXPECT_GE(checked, 11 * 6);

    // The monitor's own numbers.
    EXPECT_EQ(prometheus.number(QStringLiteral("ormivane_ticks_lost_total")), 0);
    EXPECT_EQ(prometheus.number(QStringLiteral("ormivane_build_info")), 1);
    EXPECT_GT(prometheus.number(QStringLiteral("ormivane_log_lines_total")), 10);
    EXPECT_EQ(prometheus.number(QStringLiteral("ormivane_log_lines_total - ormivane_tick_duration_seconds_count")), 0);

    // Every query of the dashboard runs; together its Node panels show every Node.
    QFile file(QStringLiteral(ORM_FLEET_DIR "/grafana-dashboard.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    std::set<QString> shown;
    int queries = 0;
    for (const auto& p : QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("panels")).toArray()) {
        for (const auto& t : p.toObject().value(QStringLiteral("targets")).toArray()) {
            QString expr = t.toObject().value(QStringLiteral("expr")).toString();
            expr.replace(QStringLiteral("$__rate_interval"), QStringLiteral("5s"))
                .replace(QStringLiteral("$job"), QStringLiteral(".*"))
                .replace(QStringLiteral("$instance"), QStringLiteral(".*"));
            const QJsonObject data = prometheus.query(expr);
            EXPECT_FALSE(data.isEmpty()) << expr.toStdString() << ": " << prometheus.lastError.toStdString();
            ++queries;
            if (expr.startsWith(QStringLiteral("ormivane_node_value")))
                for (const auto& s : data.value(QStringLiteral("result")).toArray())
                    shown.insert(labels(s, {"graph", "node"}));
        }
    }
    EXPECT_GE(queries, 20);
    EXPECT_EQ(shown.size(), expected.size());

    run.process.terminate();
    EXPECT_TRUE(run.finish());
}

TEST(Fleet, AHundredScrapesAtOnceLoseNoTick)
{
    HeadlessRun run;
    Settings settings = systemLogSettings();
    const quint16 port = freePort();
    settings[QStringLiteral("MetricsPort")] = QString::number(port);
    run.writeSettings(settings);
    const QString url = startWithMetrics(run, {});
    ASSERT_EQ(url, QStringLiteral("http://127.0.0.1:%1/metrics").arg(port)) << run.process.readAllStandardError().toStdString();
    ASSERT_TRUE(run.waitForValueLines(1));
    const QByteArray request = "GET /metrics HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n";

    // Rounds of a hundred connections, each asking once, for about eight ticks.
    int answered = 0, asked = 0;
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 8000) {
        std::vector<std::unique_ptr<QTcpSocket>> round;
        for (int i = 0; i < 100; ++i) {
            round.push_back(std::make_unique<QTcpSocket>());
            round.back()->connectToHost(QHostAddress::LocalHost, port);
            round.back()->write(request);
        }
        asked += 100;
        for (auto& c : round) {
            QByteArray reply;
            while (c->state() != QAbstractSocket::UnconnectedState && c->waitForReadyRead(5000))
                reply += c->readAll();
            reply += c->readAll();
            answered += reply.startsWith("HTTP/1.1 200 OK") && reply.contains("ormivane_ticks_total");
        }
    }
    EXPECT_EQ(answered, asked);
    EXPECT_EQ(valueOf(readExposition(curl(url).body), QStringLiteral("ormivane_ticks_lost_total")), 0);
    for (const QString& length : run.column(QStringLiteral("SAMPLE_LENGTH_MILLI_S")))
        EXPECT_LT(length.toDouble(), 2000);
    run.process.terminate();
    EXPECT_TRUE(run.finish());
}

TEST(Fleet, BadSettingsOptionsAndAPortInUseAreToldClearly)
{
    for (const char* option : {"99999", "localhost:9464", "::1:9464"}) {
        HeadlessRun run;
        run.writeSettings(systemLogSettings());
        run.start(2, {QStringLiteral("--metrics"), QLatin1String(option)});
        ASSERT_TRUE(run.process.waitForFinished(20000));
        EXPECT_EQ(run.process.exitCode(), 2) << option;
        EXPECT_TRUE(run.process.readAllStandardError().contains("--metrics")) << option;
        EXPECT_TRUE(run.valueLines().isEmpty()) << option;
    }
    // A setting that cannot be used, or a port in use, leaves the endpoint off and the monitor running.
    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost, 0));
    const QString busy = QString::number(taken.serverPort());
    const struct {
        QString name, value;
        QStringList says;
    } cases[] = {
        {QStringLiteral("MetricsPort"), QStringLiteral("70000"), {QStringLiteral("MetricsPort"), QStringLiteral("70000")}},
        {QStringLiteral("MetricsAddress"), QStringLiteral("my-host"), {QStringLiteral("MetricsAddress"), QStringLiteral("my-host")}},
        {QStringLiteral("MetricsPort"), busy, {QStringLiteral("cannot listen on 127.0.0.1 port ") + busy, QStringLiteral("runs on without it")}},
    };
    for (const auto& c : cases) {
        HeadlessRun run;
        Settings s = systemLogSettings();
        s[QStringLiteral("MetricsPort")] = QString::number(freePort());
        s[c.name] = c.value;
        run.writeSettings(s);
        run.start(2, {});
        EXPECT_TRUE(run.finish()) << c.name.toStdString();
        const QString err = QString::fromLocal8Bit(run.process.readAllStandardError());
        for (const QString& text : c.says)
            EXPECT_TRUE(err.contains(text)) << err.toStdString();
        EXPECT_FALSE(run.process.readAllStandardOutput().contains("http://")) << c.name.toStdString();
        EXPECT_EQ(run.valueLines().size(), 2);
    }
}

}  // namespace
