// A headless Ormivane scraped by curl, checked by promtool and scraped by a
// real Prometheus on loopback, asked through its HTTP API.
#include "exposition_reader.h"
#include "fleet_run.h"

#include <QDateTime>
#include <QStorageInfo>
#include <QTcpSocket>
#include <QUrl>
#include <gtest/gtest.h>
#include <cmath>
#include <set>

using namespace orm::test;

namespace {

// The values of one log line by column, with its moment in seconds since the epoch.
struct LogLine {
    double at = 0;
    std::map<QString, double> values;
};

std::vector<LogLine> logLines(const HeadlessRun& run)
{
    std::vector<LogLine> out;
    QStringList fields;
    for (const QString& line : run.lines()) {
        if (line.startsWith(QStringLiteral("#Fields: "))) {
            fields = line.mid(9).split(QLatin1Char(','));
            continue;
        }
        if (line.startsWith(QLatin1Char('#')))
            continue;
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

// What each Node of the benchmark's configuration reads, from its log line:
// every value a Node can take on that line (the adapter is any of the table's).
std::vector<double> fromLog(const QString& type, const LogLine& l, double rootBytes)
{
    const auto v = [&](const QString& field) { return l.values.count(field) ? l.values.at(field) : qQNaN(); };
    const double seconds = v(QStringLiteral("SAMPLE_LENGTH_MILLI_S")) / 1000;
    if (type == QLatin1String("CPU"))
        return {v(QStringLiteral("CPU0"))};
    if (type == QLatin1String("RAM"))
        return {v(QStringLiteral("MEM_TOT")) - v(QStringLiteral("MEM_AVA"))};
    if (type == QLatin1String("Page File"))
        return {v(QStringLiteral("MEM_P_TOT")) - v(QStringLiteral("MEM_P_AVA"))};
    if (type == QLatin1String("Drive Space"))
        return {rootBytes - v(QStringLiteral("DISK_FREE_/"))};
    if (type == QLatin1String("Disk R/W"))
        return {(v(QStringLiteral("DISK_R_/")) + v(QStringLiteral("DISK_W_/"))) / seconds};
    if (type == QLatin1String("Ping"))
        return {v(QStringLiteral("PING_RTT_127.0.0.1")) / 1000};
    if (type == QLatin1String("Processes"))
        return {v(QStringLiteral("PROCS"))};
    if (type == QLatin1String("Sys Uptime"))
        return {double(quint32(qint32(v(QStringLiteral("SYS_TMR"))))) / 1000};
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

TEST(Fleet, PrometheusScrapesTheBenchConfigurationAndItsValuesAreTheLogs)
{
    // The endpoint asks for a token: the example's fleet job brings it from its file.
    HeadlessRun run;
    Settings settings = benchConfig();
    settings[QStringLiteral("MetricsToken")] = QStringLiteral("fleet-s3cret");
    run.writeSettings(settings);
    const QString url = startWithMetrics(run, 120, {QStringLiteral("--metrics"), QStringLiteral("127.0.0.1:0")});
    ASSERT_FALSE(url.isEmpty()) << run.process.readAllStandardError().toStdString();
    ASSERT_TRUE(run.waitForValueLines(2));

    EXPECT_EQ(curl(url).status, 401);
    EXPECT_EQ(curl(url, {QStringLiteral("-H"), QStringLiteral("Authorization: Bearer wrong")}).status, 401);
    const CurlReply first = curl(url, {QStringLiteral("-H"), QStringLiteral("Authorization: Bearer fleet-s3cret")});
    ASSERT_EQ(first.status, 200);
    const PromtoolVerdict verdict = promtoolCheck(first.body);
    EXPECT_TRUE(verdict.passed) << verdict.output.toStdString() << first.body.toStdString();

    PrometheusRun prometheus;
    ASSERT_TRUE(prometheus.start({{QStringLiteral("prometheus.yml"), exampleConfig(QStringLiteral("127.0.0.1:1"), QUrl(url).authority())},
                                  {QStringLiteral("ormivane.token"), "fleet-s3cret\n"}}))
        << prometheus.log().toStdString();
    // Ten seconds of scrapes, one a second.
    const QString scrapes = QStringLiteral("count_over_time(ormivane_ticks_total{job=\"ormivane\"}[1m])");
    ASSERT_TRUE(waitUntil([&] { return prometheus.number(scrapes) >= 10; }, 40000)) << prometheus.log().toStdString();
    EXPECT_EQ(prometheus.number(QStringLiteral("up{job=\"ormivane\"}")), 1);

    // Every Node is a series with its labels.
    std::set<QString> names;
    for (const auto& s : prometheus.series(QStringLiteral("ormivane_node_value{job=\"ormivane\"}"))) {
        const QJsonObject m = s.toObject().value(QStringLiteral("metric")).toObject();
        names.insert(QStringList{m.value(QStringLiteral("graph")).toString(), m.value(QStringLiteral("node")).toString(),
                                 m.value(QStringLiteral("type")).toString(), m.value(QStringLiteral("unit")).toString()}
                         .join(QLatin1Char('/')));
    }
    const std::set<QString> expected = {
        QStringLiteral("New Graph 1/Node 1/CPU/percent"),  QStringLiteral("Ten/Node 1/CPU/percent"),
        QStringLiteral("Ten/Node 2/RAM/bytes"),            QStringLiteral("Ten/Node 3/Page File/bytes"),
        QStringLiteral("Ten/Node 4/Drive Space/bytes"),    QStringLiteral("Ten/Node 5/Disk R/W/bytes_per_second"),
        QStringLiteral("Ten/Node 6/Download/bytes_per_second"), QStringLiteral("Ten/Node 7/Upload/bytes_per_second"),
        QStringLiteral("Ten/Node 8/Ping/seconds"),         QStringLiteral("Ten/Node 9/Processes/count"),
        QStringLiteral("Ten/Node 10/Sys Uptime/seconds")};
    EXPECT_EQ(names, expected);

    // Each scraped value is the value of that Node in the log line of a tick
    // just before its scrape.
    const std::vector<LogLine> lines = logLines(run);
    const double rootBytes = double(QStorageInfo(QStringLiteral("/")).bytesTotal());
    int checked = 0;
    for (const auto& s : prometheus.series(QStringLiteral("ormivane_node_value{job=\"ormivane\"}[8s]"))) {
        const QString type = s.toObject().value(QStringLiteral("metric")).toObject().value(QStringLiteral("type")).toString();
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
                for (const auto& s : data.value(QStringLiteral("result")).toArray()) {
                    const QJsonObject m = s.toObject().value(QStringLiteral("metric")).toObject();
                    shown.insert(m.value(QStringLiteral("graph")).toString() + QLatin1Char('/') +
                                 m.value(QStringLiteral("node")).toString());
                }
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
    Settings settings = benchConfig();
    const quint16 port = freePort();
    settings[QStringLiteral("MetricsPort")] = QString::number(port);
    run.writeSettings(settings);
    const QString url = startWithMetrics(run, 120, {});
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

TEST(Fleet, APortInUseIsToldAndTheMonitorRunsOn)
{
    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost, 0));
    HeadlessRun run;
    run.writeSettings(benchConfig());
    run.start(3, {QStringLiteral("--metrics"), QStringLiteral("127.0.0.1:%1").arg(taken.serverPort())});
    EXPECT_TRUE(run.finish());
    const QString err = QString::fromLocal8Bit(run.process.readAllStandardError());
    EXPECT_TRUE(err.contains(QStringLiteral("cannot listen on 127.0.0.1 port %1").arg(taken.serverPort()))) << err.toStdString();
    EXPECT_TRUE(err.contains(QStringLiteral("runs on without it"))) << err.toStdString();
    EXPECT_EQ(run.valueLines().size(), 3);
}

TEST(Fleet, BadSettingsAndOptionsAreToldClearly)
{
    for (const char* option : {"99999", "localhost:9464", "::1:9464"}) {
        HeadlessRun run;
        run.writeSettings(benchConfig());
        run.start(2, {QStringLiteral("--metrics"), QLatin1String(option)});
        ASSERT_TRUE(run.process.waitForFinished(20000));
        EXPECT_EQ(run.process.exitCode(), 2) << option;
        EXPECT_TRUE(run.process.readAllStandardError().contains("--metrics")) << option;
        EXPECT_TRUE(run.valueLines().isEmpty()) << option;
    }
    // A setting that cannot be used leaves the endpoint off and the monitor running.
    for (const auto& [name, value] : std::vector<std::pair<QString, QString>>{
             {QStringLiteral("MetricsPort"), QStringLiteral("70000")}, {QStringLiteral("MetricsAddress"), QStringLiteral("my-host")}}) {
        HeadlessRun run;
        Settings s = benchConfig();
        s[QStringLiteral("MetricsPort")] = QString::number(freePort());
        s[name] = value;
        run.writeSettings(s);
        run.start(2, {});
        EXPECT_TRUE(run.finish()) << name.toStdString();
        const QString err = QString::fromLocal8Bit(run.process.readAllStandardError());
        EXPECT_TRUE(err.contains(name) && err.contains(value)) << err.toStdString();
        EXPECT_FALSE(run.process.readAllStandardOutput().contains("http://")) << name.toStdString();
        EXPECT_EQ(run.valueLines().size(), 2);
    }
}

}  // namespace
