// A headless run with a Speed Test Node and Website Nodes against the
// program's own endpoint in a process of its own: what they log is what curl
// measures on the same file, a missing file is counted and written to the
// error file on every sample, and a closed port never passes its test.
#include "../e2e/run_headless.h"
#include "../transfers/local_servers.h"

#include <QDir>
#include <QElapsedTimer>
#include <algorithm>
#include <gtest/gtest.h>

using namespace orm::test;

namespace {

// A single loopback fetch of some 30 ms strays with whatever else the machine
// does at that moment; the middle one of several does not.
double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
}

// curl's own figure for one fetch, in bytes a second.
double curlSpeed(const QString& url)
{
    QProcess curl;
    curl.start(QStringLiteral("curl"), {QStringLiteral("-s"), QStringLiteral("-o"), QStringLiteral("/dev/null"),
                                        QStringLiteral("-w"), QStringLiteral("%{speed_download}"), url});
    if (!curl.waitForFinished(30000) || curl.exitCode() != 0)
        return 0;
    return curl.readAllStandardOutput().trimmed().toDouble();
}

TEST(HeadlessTransfers, NodesLogWhatCurlMeasuresAndCountEveryFailure)
{
    ProgramServer server({QStringLiteral("127.0.0.1:0")});
    ASSERT_NE(server.port, 0);

    // A data folder without "-": a "-" there misreads the transfer names.
    QTemporaryDir data(QDir::tempPath() + QStringLiteral("/ormheadlessXXXXXX"));
    ASSERT_FALSE(data.path().contains(QLatin1Char('-')));
    HeadlessRun run;
    run.dataDir = data.path();
    const QString file = server.url(QStringLiteral("/serverdownload.asp?s=1"));
    const QString missing = server.url(QStringLiteral("/nosuchfile"));
    const QString refused = QStringLiteral("http://127.0.0.1:%1/").arg(closedPort());
    // The two measured Graphs sample every 4 and every 3 seconds, so that
    // their transfers meet only now and then; those samples are left out.
    std::map<QString, QString> settings;
    for (const QString& pair : {QStringLiteral("SpeedTestServer=127.0.0.1:%1").arg(server.port), QStringLiteral("Sensors=3"),
                                QStringLiteral("Sensor1/SampleEverySeconds=4"), QStringLiteral("Sensor1/Node1/NodeType=17"),
                                QStringLiteral("Sensor1/Node1/VDDownloadSize=1"), QStringLiteral("Sensor2/SampleEverySeconds=3"),
                                QStringLiteral("Sensor2/Nodes=4"), QStringLiteral("Sensor2/Node1/DownloadURL=") + file,
                                QStringLiteral("Sensor3/SampleEverySeconds=1"), QStringLiteral("Sensor3/Nodes=2"),
                                QStringLiteral("Sensor3/Node1/DownloadURL=") + missing, QStringLiteral("Sensor3/Node2/DownloadURL=") + refused})
        settings[pair.section(QLatin1Char('='), 0, 0)] = pair.section(QLatin1Char('='), 1);
    for (const char* website : {"Sensor2/Node1", "Sensor2/Node2", "Sensor2/Node3", "Sensor2/Node4", "Sensor3/Node1", "Sensor3/Node2"})
        settings[QLatin1String(website) + QStringLiteral("/NodeType")] = QStringLiteral("4");
    for (int slave = 2; slave <= 4; ++slave) {  // Bandwidth, Response and Connection Time of the Master's transfers
        const QString key = QStringLiteral("Sensor2/Node%1/").arg(slave);
        settings[key + QStringLiteral("WebsiteMaster")] = QStringLiteral("False");
        settings[key + QStringLiteral("WebsiteSlaveToSensor")] = QStringLiteral("1");
        settings[key + QStringLiteral("DownloadType")] = QString::number(slave - 1);
    }
    run.writeSettings(settings);
    const int ticks = 34;
    run.start(ticks, {QStringLiteral("txtDebug"), QStringLiteral("VDDebugMode")});

    // curl fetches the same file between the Nodes' transfers, which start
    // right after a tick has written its line.
    std::vector<double> curl;
    for (int seen = 0; seen < ticks && run.process.state() != QProcess::NotRunning;) {
        if (!run.waitForValueLines(seen + 1))
            break;
        seen = int(run.valueLines().size());
        QElapsedTimer pause;
        pause.start();
        while (pause.elapsed() < 300)
            run.process.waitForFinished(20);
        if (seen < ticks)
            curl.push_back(curlSpeed(file));
    }
    ASSERT_TRUE(run.process.state() == QProcess::NotRunning ? run.process.exitCode() == 0 : run.finish());
    ASSERT_GE(curl.size(), 20u);

    // Each Master logs its four results; the Slaves show them and log nothing.
    QStringList columns{QStringLiteral("RESULTSERVER_DOWNLOAD")};
    for (const QString& url : {file, missing, refused})
        for (const char* prefix : {"RESULT_", "RTIME_", "RCONNECTTIME_", "RERROR_"})
            columns << QLatin1String(prefix) + url.toUpper();
    EXPECT_EQ(run.fields().mid(4), columns);

    // A Graph that samples every n seconds starts a transfer at ticks 1, 1 + n,
    // ...; the line of tick k (value line k) shows the result of the one begun
    // at k - n + 1, on the tick before the next begins. Those begun beside the
    // other Graph's are left out.
    auto measured = [&](const QString& column, int every, int otherEvery) {
        const QStringList values = run.column(column);
        std::vector<double> out;
        for (int tick = every; tick <= int(values.size()); tick += every) {
            const int begun = tick - every + 1;
            if ((begun - 1) % otherEvery != 0)
                out.push_back(values[tick - 1].toDouble());
        }
        return out;
    };
    const std::vector<double> speed = measured(QStringLiteral("RESULTSERVER_DOWNLOAD"), 4, 3);
    const std::vector<double> website = measured(QStringLiteral("RESULT_") + file.toUpper(), 3, 4);
    ASSERT_GE(speed.size(), 5u);
    ASSERT_GE(website.size(), 7u);
    // The figures are printed for the record (bench/transfer_bench measures
    // them): with the endpoint on this machine's processors, the kernel's
    // placement alone moves a Node between 0.7 and 1.05 of curl. The band
    // catches a wrong unit, clock or byte count and leaves room for a loaded machine.
    const double reference = median(curl);
    std::printf("curl %.0f B/s, Speed Test %.0f B/s (%.3f of curl), Website %.0f B/s (%.3f of curl)\n", reference,
                median(speed), median(speed) / reference, median(website), median(website) / reference);
    for (const double node : {median(speed), median(website)}) {
        EXPECT_GT(node, reference * 0.6);
        EXPECT_LT(node, reference * 1.5);
    }

    // The missing file: 0 on every sample, one more error each, one line each in the error file.
    const QStringList result = run.column(QStringLiteral("RESULT_") + missing.toUpper());
    const QStringList errors = run.column(QStringLiteral("RERROR_") + missing.toUpper());
    ASSERT_EQ(errors.size(), ticks);
    for (int k = 0; k < ticks; ++k) {
        EXPECT_EQ(result[k], QStringLiteral("0"));
        EXPECT_EQ(errors[k].toInt(), k) << "tick " << k + 1;
    }
    QFile err(data.filePath(QStringLiteral("Logs/ex") + QDate::currentDate().toString(QStringLiteral("yyyyMMdd")) +
                            QStringLiteral(".err")));
    ASSERT_TRUE(err.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromLocal8Bit(err.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    EXPECT_GE(lines.size(), ticks - 1);
    EXPECT_LE(lines.size(), ticks);
    for (const QString& line : lines)
        EXPECT_TRUE(line.contains(QStringLiteral(" Graph2 Node0 URL=") + missing + QStringLiteral(" Error - 6(404) - ")))
            << line.toStdString();

    // The closed port failed its setup test: it reads 0 and never fetched.
    QFile trace(data.filePath(QStringLiteral("Ormivane.txt")));
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    EXPECT_TRUE(trace.readAll().contains("TestDownloadError 1.0"));
    for (const char* prefix : {"RESULT_", "RERROR_"})
        for (const QString& v : run.column(QLatin1String(prefix) + refused.toUpper()))
            EXPECT_EQ(v, QStringLiteral("0")) << prefix;

    // Transfers are never waited for inside a tick.
    for (int ms : run.tickTimes())
        EXPECT_LT(ms, 200);
}

}  // namespace
