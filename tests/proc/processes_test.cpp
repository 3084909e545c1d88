// The reader and the process table on a fixture tree that holds the awkward
// cases side by side, and on a tree the test changes between snapshots.
#include "../store/store_files.h"
#include "sources/proc_pid.h"
#include "sources/processes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;
using orm::test::writeFile;

static const QString Tree = QStringLiteral(ORM_FIXTURES "/proc/tree");

// The row holding `pid`; -1 when none does.
static int rowOf(const ProcessTable& table, quint64 pid)
{
    for (size_t i = 0; i < table.rows().size(); ++i)
        if (table.rows()[i].th32ProcessID == pid)
            return int(i);
    return -1;
}

TEST(ProcPidReader, FixtureTree)
{
    ProcPidReader reader(Tree, 4096);
    // Numeric order, not the listing's; "self", "sys" and "net" are no processes.
    EXPECT_EQ(reader.pids(), (std::vector<quint32>{1, 2, 10, 100, 250, 300, 9999}));

    EXPECT_EQ(reader.name(1), "systemd");         // exe wins over cmdline and comm
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
    EXPECT_EQ(table.memoryAt(4), 5421 * 4096);
    table.RefreshProcessMemory(6);  // outside the table: nothing, no fault
    EXPECT_EQ(table.memoryAt(6), 0);

    std::vector<Graph> sensors(1);
    sensors[0].Nodes.resize(2);
    sensors[0].Nodes[0].ProcessMonitoring = "python3.11";
    sensors[0].Nodes[1].ProcessMonitoring = "Python3.11";  // the match is exact, letter case too
    sensors[0].Nodes[1].ProcessIndex = 42;
    ProcessIndexes(sensors, table);
    EXPECT_EQ(sensors[0].Nodes[0].ProcessIndex, 5);  // two rows of that name: the last
    EXPECT_EQ(sensors[0].Nodes[1].ProcessIndex, -1);  // no match: linked to no row, never a stale one

    ProcessTable other(QStringLiteral("/nonexistent/proc"));  // cannot be listed: no rows
    EXPECT_EQ(other.RefreshProcessList(), 0);
}

// A tree the test changes between snapshots, as processes start, end, take a
// number again and start other programs.
class ProcessTableChanges : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(proc.isValid()); }
    void start(int pid, const QByteArray& name, int pages = 10)
    {
        const QString d = proc.filePath(QString::number(pid));
        ASSERT_TRUE(QDir().mkpath(d));
        writeFile(d + QStringLiteral("/cmdline"), name + '\0');
        writeFile(d + QStringLiteral("/statm"), "100 " + QByteArray::number(pages) + " 0 0 0 0 0\n");
    }
    // The folder moves aside rather than going, so a new folder of the same
    // number cannot get its inode back.
    void end(int pid)
    {
        ASSERT_TRUE(QDir(proc.path()).rename(QString::number(pid), QStringLiteral("gone-%1-%2").arg(pid).arg(++ended)));
    }
    void rename(int pid, const QByteArray& name)
    {
        writeFile(proc.filePath(QString::number(pid)) + QStringLiteral("/cmdline"), name + '\0');
    }
    QString nameOf(int pid) const
    {
        const int row = rowOf(table, quint64(pid));
        return row < 0 ? QStringLiteral("<none>") : table.rows()[size_t(row)].szExeFile;
    }

    QTemporaryDir proc;
    ProcessTable table{proc.path(), 4096};
    int ended = 0;
};

TEST_F(ProcessTableChanges, NamesFollowForksReusedNumbersAndLateStarts)
{
    start(1, "init");
    start(20, "bash");
    ASSERT_EQ(table.RefreshProcessList(), 2);
    // A fork seen before it became its program: the next snapshot has the program.
    rename(20, "firefox");
    table.RefreshProcessList();
    EXPECT_EQ(nameOf(20), "firefox");

    // The number goes to a new process: its own name at once.
    end(20);
    start(20, "python3");
    table.RefreshProcessList();
    EXPECT_EQ(nameOf(20), "python3");
    table.RefreshProcessList();

    // A program started long after: seen once a round of snapshots is through.
    rename(1, "systemd");
    unsigned snapshots = 0;
    while (nameOf(1) != "systemd" && snapshots <= ProcessTable::NameCheckEvery) {
        table.RefreshProcessList();
        ++snapshots;
    }
    EXPECT_LE(snapshots, ProcessTable::NameCheckEvery);
    // Asked for fresh names (the panel's refresh), the table has them at once.
    rename(1, "init");
    table.RefreshProcessList(true);
    EXPECT_EQ(nameOf(1), "init");
}

TEST_F(ProcessTableChanges, MemoryOfTheRowsAskedForAndTheGenerationOfTheRows)
{
    start(5, "a", 7);
    start(6, "b", 8);
    table.RefreshProcessList();
    table.RefreshProcessList();  // the names settled
    const quint64 generation = table.generation();
    table.RefreshProcessList();
    EXPECT_EQ(table.generation(), generation);  // the same rows: Nodes stay linked
    EXPECT_EQ(table.memoryAt(1), 8 * 4096);

    // A working set read since the snapshot stands until asked again.
    writeFile(proc.filePath(QStringLiteral("6/statm")), "100 9 0 0 0 0 0\n");
    EXPECT_EQ(table.memoryAt(1), 8 * 4096);
    table.RefreshProcessMemory(1);
    EXPECT_EQ(table.memoryAt(1), 9 * 4096);

    // A new process before them moves the rows; a reused number too.
    start(2, "c");
    table.RefreshProcessList();
    EXPECT_NE(table.generation(), generation);
    EXPECT_EQ(table.memoryAt(2), 9 * 4096);
    const quint64 moved = table.generation();
    end(6);
    start(6, "b", 3);
    table.RefreshProcessList();
    EXPECT_NE(table.generation(), moved);
    EXPECT_EQ(table.memoryAt(2), 3 * 4096);

    // The last process gone leaves the rows as they were.
    end(2);
    end(5);
    end(6);
    EXPECT_EQ(table.RefreshProcessList(), 0);
    EXPECT_EQ(table.upperBound(), 2);
}
