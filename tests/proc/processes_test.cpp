// The /proc parsers on texts as the kernel writes them; the reader and the
// process table on a fixture tree that holds the awkward cases side by side,
// then against the real /proc and a child process of our own.
#include "sources/proc_pid.h"
#include "sources/processes.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

static const QString Tree = QStringLiteral(ORM_FIXTURES "/proc/tree");

// The row holding `pid`; -1 when none does.
static int rowOf(const ProcessTable& table, quint64 pid)
{
    for (size_t i = 0; i < table.rows().size(); ++i)
        if (table.rows()[i].th32ProcessID == pid)
            return int(i);
    return -1;
}

TEST(ProcParsers, StatmAndNames)
{
    EXPECT_EQ(parseStatmResidentPages("  12   34 "), 34);
    EXPECT_FALSE(parseStatmResidentPages("5589\n"));
    EXPECT_FALSE(parseStatmResidentPages("1 -4 0"));

    EXPECT_EQ(cmdlineName(QByteArray("postgres: 15/main: checkpointer ", 32)), "postgres");
    EXPECT_EQ(cmdlineName(QByteArray("\0\0", 2)), "");
    EXPECT_EQ(processName("", "", "c"), "c");
    EXPECT_EQ(processName(QString(300, QLatin1Char('x')), "", "").size(), MaxProcessNameLength);
}

TEST(ProcPidReader, FixtureTree)
{
    ProcPidReader reader(Tree, 4096);
    // Numeric order, not the listing's; "self", "sys" and "net" are no processes.
    EXPECT_EQ(reader.pids(), (std::vector<quint32>{1, 2, 10, 100, 250, 300, 9999}));
    EXPECT_FALSE(ProcPidReader(QStringLiteral("/nonexistent/proc")).pids());

    EXPECT_EQ(reader.name(1), "systemd");         // exe wins over cmdline and comm
    EXPECT_EQ(reader.name(2), "kthreadd");        // no exe, empty cmdline
    EXPECT_EQ(reader.name(10), "sshd");           // exe unreadable, retitled cmdline
    EXPECT_EQ(reader.name(100), "odd name, v2");  // binary deleted while running
    EXPECT_FALSE(reader.name(9999));              // ended between listing and reading

    EXPECT_EQ(reader.residentBytes(1), 3196 * 4096);
    EXPECT_EQ(reader.residentBytes(100), 0);  // malformed statm
}

TEST(ProcessTable, SnapshotOfFixtureTreeAndProcessIndexes)
{
    ProcessTable table(Tree, 4096);
    EXPECT_EQ(table.RefreshProcessList(), 6);
    EXPECT_EQ(table.upperBound(), 5);
    EXPECT_EQ(table.rows()[4].th32ProcessID, 250u);
    EXPECT_EQ(table.rows()[4].szExeFile, "python3.11");
    EXPECT_EQ(table.ProcessMemory()[4], 5421 * 4096);
    EXPECT_EQ(table.memoryAt(6), 0);
    // Indexes outside the table change nothing and don't fault.
    const auto before = table.ProcessMemory();
    table.RefreshProcessMemory(-1);
    table.RefreshProcessMemory(6);
    EXPECT_EQ(table.ProcessMemory(), before);

    std::vector<Graph> sensors(2);
    sensors[0].Nodes.resize(2);
    sensors[1].Nodes.resize(1);
    sensors[0].Nodes[0].ProcessMonitoring = "python3.11";
    sensors[0].Nodes[1].ProcessMonitoring = "Python3.11";  // the match is exact, letter case too
    sensors[0].Nodes[1].ProcessIndex = 42;
    sensors[1].Nodes[0].ProcessMonitoring = "odd name, v2";
    ProcessIndexes(sensors, table);
    EXPECT_EQ(sensors[0].Nodes[0].ProcessIndex, 5);  // two rows of that name: the last
    EXPECT_EQ(sensors[0].Nodes[1].ProcessIndex, -1);  // no match: linked to no row, never a stale one
    EXPECT_EQ(sensors[1].Nodes[0].ProcessIndex, 3);

    // A root that cannot be listed, or that holds no process, gives no rows.
    QTemporaryDir empty;
    for (const QString& root : {QStringLiteral("/nonexistent/proc"), empty.path()}) {
        ProcessTable other(root);
        EXPECT_EQ(other.RefreshProcessList(), 0);
        EXPECT_EQ(other.upperBound(), -1);
    }
}

TEST(ProcessTableLive, OwnProcessAndAChildFoundByNameThenGone)
{
    int argc = 1;
    char name0[] = "proc_sources_test", *argv[] = {name0, nullptr};
    QCoreApplication app(argc, argv);  // QProcess wants one
    // A copy of sleep beside this test, where programs surely may run.
    QTemporaryDir dir(QCoreApplication::applicationDirPath() + QStringLiteral("/probe-XXXXXX"));
    const QString name = QStringLiteral("orm sleep, probe");
    ASSERT_TRUE(QFile::copy(QStandardPaths::findExecutable(QStringLiteral("sleep")), dir.filePath(name)));
    QProcess child;
    child.start(dir.filePath(name), {QStringLiteral("30")});
    ASSERT_TRUE(child.waitForStarted());
    const quint64 pid = quint64(child.processId());

    ProcessTable table;
    ASSERT_GT(table.RefreshProcessList(), 1);
    const int own = rowOf(table, quint64(QCoreApplication::applicationPid()));
    ASSERT_GE(own, 0);
    EXPECT_EQ(table.rows()[size_t(own)].szExeFile, "proc_sources_test");
    const int row = rowOf(table, pid);
    ASSERT_GE(row, 0);
    EXPECT_EQ(table.rows()[size_t(row)].szExeFile, name);
    EXPECT_GT(table.memoryAt(row), 0);

    std::vector<Graph> sensors(1);
    sensors[0].Nodes.resize(1);
    sensors[0].Nodes[0].ProcessMonitoring = name;
    ProcessIndexes(sensors, table);
    EXPECT_EQ(sensors[0].Nodes[0].ProcessIndex, qint16(row));

    // The row stays and reads 0 until the next snapshot drops it.
    child.kill();
    ASSERT_TRUE(child.waitForFinished());
    table.RefreshProcessMemory(qint16(row));
    EXPECT_EQ(table.memoryAt(row), 0);
    EXPECT_EQ(table.rows()[size_t(row)].th32ProcessID, pid);
    ASSERT_GT(table.RefreshProcessList(), 0);
    EXPECT_EQ(rowOf(table, pid), -1);
}
