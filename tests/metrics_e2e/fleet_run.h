// What the fleet tests run: a headless Ormivane with its metrics endpoint, a
// real Prometheus on loopback, curl for single requests, and the settings of
// the benchmark's configuration.
#pragma once

#include "run_headless.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QThread>
#include <functional>
#include <map>

namespace orm::test {

// Polls every 100 ms: each poll of Prometheus is a curl process.
inline bool waitUntil(const std::function<bool()>& done, int ms)
{
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(100);
    }
    return true;
}

inline quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

struct CurlReply {
    int status = 0;
    QByteArray body;
};

inline CurlReply curl(const QString& url, const QStringList& extra = {})
{
    QProcess p;
    p.start(QStringLiteral("curl"), QStringList{QStringLiteral("-s"), QStringLiteral("-m"), QStringLiteral("10"),
                                                QStringLiteral("-w"), QStringLiteral("\n%{http_code}")} +
                                        extra + QStringList{url});
    p.waitForFinished(15000);
    const QByteArray out = p.readAllStandardOutput();
    const qsizetype cut = out.lastIndexOf('\n');
    return {out.mid(cut + 1).toInt(), out.left(cut)};
}

using Settings = std::map<QString, QString>;

// The benchmarks' configuration: the first-run Graph with its CPU Node, and
// "Ten": CPU, RAM, Page File, Drive Space "/", Disk R/W "/", Download and
// Upload on loopback, Ping 127.0.0.1, Processes, Sys Uptime; all sampled
// every second and logged.
inline Settings benchConfig()
{
    Settings s{{QStringLiteral("Sensors"), QStringLiteral("2")}};
    QFile lo(QStringLiteral("/sys/class/net/lo/ifindex"));
    const QString loopback = lo.open(QIODevice::ReadOnly) ? QString::fromLatin1(lo.readAll().trimmed()) : QStringLiteral("1");
    const std::vector<std::pair<QString, std::vector<int>>> graphs = {
        {QStringLiteral("New Graph 1"), {5}}, {QStringLiteral("Ten"), {5, 6, 10, 9, 18, 12, 13, 8, 22, 21}}};
    for (size_t g = 0; g < graphs.size(); ++g) {
        const QString key = QStringLiteral("Sensor%1/").arg(g + 1);
        s[key + QStringLiteral("Name")] = graphs[g].first;
        s[key + QStringLiteral("GraphType")] = QStringLiteral("1");
        s[key + QStringLiteral("SampleEverySeconds")] = QStringLiteral("1");
        s[key + QStringLiteral("Nodes")] = QString::number(graphs[g].second.size());
        for (size_t n = 0; n < graphs[g].second.size(); ++n) {
            const QString k = key + QStringLiteral("Node%1/").arg(n + 1);
            s[k + QStringLiteral("Name")] = QStringLiteral("Node %1").arg(n + 1);
            s[k + QStringLiteral("NodeType")] = QString::number(graphs[g].second[n]);
            s[k + QStringLiteral("LogData")] = QStringLiteral("True");
            s[k + QStringLiteral("DriveMonitoring")] = QStringLiteral("/");
            s[k + QStringLiteral("AdapterMonitoring")] = loopback;
            s[k + QStringLiteral("PingIP")] = QStringLiteral("127.0.0.1");
        }
    }
    return s;
}

// A headless run with its metrics endpoint; the URL it says it serves on.
inline QString startWithMetrics(HeadlessRun& run, int ticks, const QStringList& args)
{
    run.start(ticks, args);
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
        QProcess p;
        p.start(QStringLiteral("curl"), {QStringLiteral("-s"), QStringLiteral("-m"), QStringLiteral("10"),
                                         QStringLiteral("-G"), QStringLiteral("--data-urlencode"),
                                         QStringLiteral("query=") + promql, url(QStringLiteral("/api/v1/query"))});
        p.waitForFinished(15000);
        const QJsonObject reply = QJsonDocument::fromJson(p.readAllStandardOutput()).object();
        lastError = reply.value(QStringLiteral("error")).toString();
        return reply.value(QStringLiteral("status")).toString() == QLatin1String("success")
                   ? reply.value(QStringLiteral("data")).toObject()
                   : QJsonObject();
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
// loopback job aimed at `local` and the fleet job at `fleet`.
inline QByteArray exampleConfig(const QString& local, const QString& fleet)
{
    QFile f(QStringLiteral(ORM_FLEET_DIR "/prometheus.yml"));
    f.open(QIODevice::ReadOnly);
    QByteArray text = f.readAll();
    text.replace("scrape_interval: 15s", "scrape_interval: 1s").replace("scrape_interval: 5s", "scrape_interval: 1s");
    text.replace("\"127.0.0.1:9464\"", "\"" + local.toUtf8() + "\"");
    text.replace("\"desk-1.example.lan:9464\", \"desk-2.example.lan:9464\"", "\"" + fleet.toUtf8() + "\"");
    return text;
}

}  // namespace orm::test
