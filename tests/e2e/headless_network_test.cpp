// The network and process Nodes of a headless run, against real traffic on
// the loopback adapter, real echoes to 127.0.0.1 and a real child process.
#include "log_shape.h"
#include "loopback_transfer.h"
#include "run_headless.h"

#include <gtest/gtest.h>

using namespace orm::test;

namespace {

TEST(HeadlessNetwork, LoopbackTrafficAddsUpInTheAdapterColumnsBesideTheProcessCount)
{
    ensureApp();
    HeadlessRun run;
    const QString lo = loopbackIfIndex();
    std::map<QString, QString> s{
        {"Sensors", "1"}, {"Sensor1/SampleEverySeconds", "1"}, {"Sensor1/Nodes", "4"}, {"Sensor1/Node4/NodeType", "22"}};
    // Download, upload and errors of the loopback adapter, and the count of processes.
    for (int n = 1; n <= 3; ++n) {
        s[QStringLiteral("Sensor1/Node%1/NodeType").arg(n)] = QString::number(n == 3 ? 11 : 11 + n);
        s[QStringLiteral("Sensor1/Node%1/AdapterMonitoring").arg(n)] = lo;
    }
    run.writeSettings(s);
    run.start(6);
    ASSERT_TRUE(run.waitForValueLines(2));
    const qint64 moved = moveBytesOverLoopback(50 * 1000 * 1000);
    ASSERT_EQ(moved, 50 * 1000 * 1000);
    ASSERT_TRUE(run.finish());

    // lo has the lowest interface index, so it is the first adapter row.
    for (const char* column : {"ADPT_DN_0", "ADPT_UP_0"}) {
        double sum = 0;
        for (const QString& v : run.column(QLatin1String(column)))
            sum += v.toDouble();
        EXPECT_NEAR(sum, double(moved), moved * 0.05) << column;
    }
    EXPECT_EQ(run.column(QStringLiteral("ADPT_ERR_DN_0")).size(), 6);
    // The run counted itself, and has ended since: one less than its count, plus
    // itself, is the count now, give or take what other processes did meanwhile.
    EXPECT_NEAR(run.column(QStringLiteral("PROCS")).last().toInt(), runningProcesses(), 5);
}

TEST(HeadlessNetwork, PingToLoopbackAndAProcessUntilItEnds)
{
    ensureApp();
    QTemporaryDir bin;
    const QString name = QStringLiteral("ormivane-probe-child");
    ASSERT_TRUE(QFile::copy(QStringLiteral("/bin/sleep"), bin.filePath(name)));
    QProcess child;
    child.start(bin.filePath(name), {QStringLiteral("60")});
    ASSERT_TRUE(child.waitForStarted(5000));

    HeadlessRun run;
    run.writeSettings({{"Sensors", "1"}, {"Sensor1/SampleEverySeconds", "1"}, {"Sensor1/Nodes", "2"},
                       {"Sensor1/Node1/NodeType", "8"}, {"Sensor1/Node1/PingIP", "127.0.0.1"},
                       {"Sensor1/Node1/PingPacketSize", "200"}, {"Sensor1/Node2/NodeType", "23"},
                       {"Sensor1/Node2/ProcessMonitoring", name}});
    run.start(6);
    ASSERT_TRUE(run.waitForValueLines(2));
    child.kill();
    child.waitForFinished(5000);
    ASSERT_TRUE(run.finish());

    const QStringList size = run.column(QStringLiteral("PING_SIZE_127.0.0.1"));
    const QStringList rtt = run.column(QStringLiteral("PING_RTT_127.0.0.1"));
    ASSERT_EQ(size.size(), 6);
    ASSERT_EQ(rtt.size(), 6);
    EXPECT_EQ(size[0], QStringLiteral("200"));
    EXPECT_EQ(rtt[0], QStringLiteral("0"));  // nothing had been sent before the first sample
    for (const QString& v : rtt) {
        bool ok = false;
        EXPECT_LT(v.toInt(&ok), 5);
        EXPECT_TRUE(ok) << v.toStdString();
    }
    const QStringList memory = run.column(name);
    ASSERT_EQ(memory.size(), 6);
    EXPECT_GT(memory[0].toDouble(), 0);
    EXPECT_EQ(memory.last(), QStringLiteral("0"));
}

}  // namespace
