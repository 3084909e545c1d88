// The process table against the real /proc and a child process of our own,
// started under an awkward name.
#include "sources/processes.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// QProcess wants an application object.
class QtApp : public ::testing::Environment {
public:
    void SetUp() override
    {
        if (!QCoreApplication::instance())
            app_ = new QCoreApplication(argc_, argv_);
    }

private:
    int argc_ = 1;
    char name_[18] = "proc_sources_test";
    char* argv_[2] = {name_, nullptr};
    QCoreApplication* app_ = nullptr;
};
[[maybe_unused]] auto* const qtApp = ::testing::AddGlobalTestEnvironment(new QtApp);

std::vector<int> rowsOf(const ProcessTable& table, quint32 pid)
{
    std::vector<int> out;
    for (size_t i = 0; i < table.rows().size(); ++i)
        if (table.rows()[i].th32ProcessID == pid)
            out.push_back(int(i));
    return out;
}

}  // namespace

TEST(ProcessTableLive, OwnProcessIsInTheTable)
{
    ProcessTable table;
    const qint16 count = table.RefreshProcessList();
    ASSERT_GT(count, 1);
    EXPECT_EQ(table.upperBound(), count - 1);
    const auto own = rowsOf(table, quint32(QCoreApplication::applicationPid()));
    ASSERT_EQ(own.size(), 1u);
    EXPECT_EQ(table.rows()[size_t(own[0])].szExeFile, "proc_sources_test");
    EXPECT_GT(table.ProcessMemory()[size_t(own[0])], 0);
}

TEST(ProcessTableLive, ChildFoundByNameThenEnds)
{
    const QString sleep = QStandardPaths::findExecutable(QStringLiteral("sleep"));
    ASSERT_FALSE(sleep.isEmpty());
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QString name = QStringLiteral("orm sleep, probe");
    const QString copy = dir.filePath(name);
    ASSERT_TRUE(QFile::copy(sleep, copy));

    QProcess child;
    child.start(copy, {QStringLiteral("30")});
    if (!child.waitForStarted()) {  // a temp folder mounted noexec: the plain name will do
        name = QStringLiteral("sleep");
        child.start(sleep, {QStringLiteral("30")});
        ASSERT_TRUE(child.waitForStarted());
    }
    const quint32 pid = quint32(child.processId());

    ProcessTable table;
    ASSERT_GT(table.RefreshProcessList(), 0);
    const auto rows = rowsOf(table, pid);
    ASSERT_EQ(rows.size(), 1u);
    const int row = rows[0];
    EXPECT_EQ(table.rows()[size_t(row)].szExeFile, name);
    EXPECT_GT(table.ProcessMemory()[size_t(row)], 0);

    std::vector<Graph> sensors(1);
    sensors[0].Nodes.resize(1);
    sensors[0].Nodes[0].NodeType = ProcessType;
    sensors[0].Nodes[0].ProcessMonitoring = name;
    ProcessIndexes(sensors, table);
    int lastOfName = -1;
    for (size_t i = 0; i < table.rows().size(); ++i)
        if (table.rows()[i].szExeFile == name)
            lastOfName = int(i);
    EXPECT_EQ(sensors[0].Nodes[0].ProcessIndex, lastOfName);

    table.RefreshProcessMemory(qint16(row));
    EXPECT_GT(table.memoryAt(row), 0);

    child.kill();
    ASSERT_TRUE(child.waitForFinished());

    // The row stays and reads 0 until the next snapshot drops it.
    const int bound = table.upperBound();
    table.RefreshProcessMemory(qint16(row));
    EXPECT_EQ(table.memoryAt(row), 0);
    EXPECT_EQ(table.upperBound(), bound);
    EXPECT_EQ(table.rows()[size_t(row)].th32ProcessID, pid);

    ASSERT_GT(table.RefreshProcessList(), 0);
    for (const auto& entry : table.rows())
        EXPECT_FALSE(entry.th32ProcessID == pid && entry.szExeFile == name);
    if (name != QStringLiteral("sleep")) {
        // Nothing of that name is left, so the Node keeps its stale index.
        ProcessIndexes(sensors, table);
        EXPECT_EQ(sensors[0].Nodes[0].ProcessIndex, lastOfName);
    }
}
