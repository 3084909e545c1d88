// The /proc parsers on texts as the kernel writes them, and the reader on a
// fixture tree that holds the awkward cases side by side.
#include "sources/proc_pid.h"
#include "sources/processes.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {
const QString Tree = QStringLiteral(ORM_FIXTURES "/proc/tree");
}

TEST(ProcParsers, StatmResidentIsTheSecondField)
{
    EXPECT_EQ(parseStatmResidentPages("5589 3196 2049 13 0 556 0\n"), 3196);
    EXPECT_EQ(parseStatmResidentPages("0 0 0 0 0 0 0\n"), 0);  // kernel thread, zombie
    EXPECT_EQ(parseStatmResidentPages("  12   34 "), 34);
    EXPECT_FALSE(parseStatmResidentPages(""));
    EXPECT_FALSE(parseStatmResidentPages("5589\n"));
    EXPECT_FALSE(parseStatmResidentPages("garbage\n"));
    EXPECT_FALSE(parseStatmResidentPages("1 -4 0"));
    EXPECT_FALSE(parseStatmResidentPages("1 12abc 0"));
}

TEST(ProcParsers, NamesFromExeCmdlineAndComm)
{
    EXPECT_EQ(exeLinkName("/usr/bin/python3.11"), "python3.11");
    EXPECT_EQ(exeLinkName("/opt/Odd Tools/odd name, v2 (deleted)"), "odd name, v2");
    EXPECT_EQ(exeLinkName(""), "");

    EXPECT_EQ(cmdlineName(QByteArray("/usr/bin/python3\0/srv/worker.py\0", 33)), "python3");
    EXPECT_EQ(cmdlineName(QByteArray("sshd: admin@pts/0\0\0\0", 20)), "sshd");
    EXPECT_EQ(cmdlineName(QByteArray("postgres: 15/main: checkpointer ", 32)), "postgres");
    EXPECT_EQ(cmdlineName(QByteArray("\0\0", 2)), "");
    EXPECT_EQ(cmdlineName(""), "");

    EXPECT_EQ(commName("kworker/0:1-events\n"), "kworker/0:1-events");

    EXPECT_EQ(processName("a", "b", "c"), "a");
    EXPECT_EQ(processName("", "b", "c"), "b");
    EXPECT_EQ(processName("", "", "c"), "c");
    EXPECT_EQ(processName(QString(300, QLatin1Char('x')), "", "").size(), MaxProcessNameLength);
}

TEST(ProcPidReader, FixtureTree)
{
    ProcPidReader reader(Tree, 4096);
    const auto pids = reader.pids();
    ASSERT_TRUE(pids);
    // Numeric order, not the listing's; "self", "sys" and "net" are no processes.
    EXPECT_EQ(*pids, (std::vector<quint32>{1, 2, 10, 100, 250, 300, 9999}));

    EXPECT_EQ(reader.name(1), "systemd");          // exe wins over cmdline and comm
    EXPECT_EQ(reader.name(2), "kthreadd");         // no exe, empty cmdline
    EXPECT_EQ(reader.name(10), "sshd");            // exe unreadable, retitled cmdline
    EXPECT_EQ(reader.name(100), "odd name, v2");   // binary deleted while running
    EXPECT_FALSE(reader.name(9999));               // ended between listing and reading
    EXPECT_FALSE(reader.name(4242));

    EXPECT_EQ(reader.residentBytes(1), 3196 * 4096);
    EXPECT_EQ(reader.residentBytes(2), 0);
    EXPECT_EQ(reader.residentBytes(100), 0);  // malformed statm
    EXPECT_EQ(reader.residentBytes(4242), 0);

    EXPECT_FALSE(ProcPidReader(QStringLiteral("/nonexistent/proc")).pids());
}

TEST(ProcessTable, SnapshotOfFixtureTree)
{
    ProcessTable table(Tree, 4096);
    EXPECT_EQ(table.RefreshProcessList(), 6);
    EXPECT_EQ(table.upperBound(), 5);
    ASSERT_EQ(table.rows().size(), table.ProcessMemory().size());
    const std::vector<QString> names{"systemd", "kthreadd", "sshd", "odd name, v2", "python3.11", "python3.11"};
    for (size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(table.rows()[i].szExeFile, names[i]) << i;
    EXPECT_EQ(table.rows()[4].th32ProcessID, 250u);
    EXPECT_EQ(table.ProcessMemory()[4], 5421 * 4096);
    EXPECT_EQ(table.memoryAt(6), 0);
    EXPECT_EQ(table.memoryAt(-1), 0);

    // Indexes outside the table change nothing and don't fault.
    const auto before = table.ProcessMemory();
    table.RefreshProcessMemory(-1);
    table.RefreshProcessMemory(6);
    table.RefreshProcessMemory(32767);
    EXPECT_EQ(table.ProcessMemory(), before);
}

TEST(ProcessTable, FailedOrEmptySnapshotKeepsTheOldRows)
{
    ProcessTable missing(QStringLiteral("/nonexistent/proc"));
    EXPECT_EQ(missing.RefreshProcessList(), 0);
    EXPECT_EQ(missing.upperBound(), -1);

    // A snapshot without one process never cuts the tables down.
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    ProcessTable table(root.path(), 4096);
    EXPECT_EQ(table.RefreshProcessList(), 0);
    EXPECT_EQ(table.upperBound(), -1);

    table.erase();
    EXPECT_TRUE(table.rows().empty());
    EXPECT_TRUE(table.ProcessMemory().empty());
}

TEST(ProcessIndexes, LastRowWinsUnmatchedKeepsItsIndex)
{
    ProcessTable table(Tree, 4096);
    ASSERT_EQ(table.RefreshProcessList(), 6);

    std::vector<Graph> sensors(2);
    Node python;
    python.NodeType = ProcessType;
    python.ProcessMonitoring = "python3.11";
    Node gone = python;
    gone.ProcessMonitoring = "Python3.11";  // the match is exact, letter case too
    gone.ProcessIndex = 42;
    Node odd = python;
    odd.ProcessMonitoring = "odd name, v2";
    sensors[0].Nodes = {python, gone};
    sensors[1].Nodes = {odd};

    ProcessIndexes(sensors, table);
    EXPECT_EQ(sensors[0].Nodes[0].ProcessIndex, 5);  // two rows of that name: the last
    EXPECT_EQ(sensors[0].Nodes[1].ProcessIndex, 42);
    EXPECT_EQ(sensors[1].Nodes[0].ProcessIndex, 3);
}
