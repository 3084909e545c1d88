// A Process Node shows the memory of its own process and of no other: after
// the table is rebuilt under it, when its process ends, when no process has
// its name. The table is read from a /proc the test writes.
#include "monitor_fixture.h"
#include "../store/store_files.h"

#include <QDir>

using namespace orm;
using namespace orm::test;

namespace {

constexpr qint64 Page = 4096;

class ProcessNode : public MonitorFixture {
protected:
    void configure() override
    {
        ASSERT_TRUE(proc.isValid());
        addProcess(1, "systemd", 100);
        addProcess(10, "sshd", 200);
        addProcess(20, "bash", 300);
        sources().processes = std::make_unique<ProcessTable>(proc.path(), Page);

        // Processes first, so that its rebuild comes before the Process Nodes read.
        const int types[] = {ProcessesType, ProcessType, ProcessType, ProcessType};
        const char* watched[] = {"", "sshd", "no-such-program", "bash"};
        store.writeValue(SettingsKey, QStringLiteral("FirstRun"), QStringLiteral("False"));
        store.writeValue(SettingsKey, QStringLiteral("Sensors"), QStringLiteral("1"));
        store.writeValue(sensorKey(0), QStringLiteral("SampleEverySeconds"), QStringLiteral("1"));
        store.writeValue(sensorKey(0), QStringLiteral("Nodes"), QStringLiteral("4"));
        for (int k = 0; k < 4; ++k) {
            store.writeValue(nodeKey(0, k), QStringLiteral("NodeType"), QString::number(types[k]));
            store.writeValue(nodeKey(0, k), QStringLiteral("ProcessMonitoring"), QString::fromLatin1(watched[k]));
        }
    }

    void addProcess(int pid, const char* name, int residentPages)
    {
        const QString d = proc.filePath(QString::number(pid));
        ASSERT_TRUE(QDir().mkpath(d));
        writeFile(d + QStringLiteral("/comm"), QByteArray(name) + '\n');
        writeFile(d + QStringLiteral("/cmdline"), QByteArray());
        writeFile(d + QStringLiteral("/statm"), "1000 " + QByteArray::number(residentPages) + " 0 0 0 0 0\n");
    }
    void endProcess(int pid) { ASSERT_TRUE(QDir(proc.filePath(QString::number(pid))).removeRecursively()); }
    double value(int node) { return view(0).GetNodeValue(node, 0); }

    QTemporaryDir proc;
};

TEST_F(ProcessNode, ShowsOnlyItsOwnProcessThroughRebuildsAndEnds)
{
    using Values = std::vector<double>;
    const auto values = [&] { return Values{value(0), value(1), value(2), value(3)}; };
    // Three processes: the upper bound; sshd; no process of that name, so not row 0's; bash.
    tick();
    EXPECT_EQ(values(), (Values{2, 200 * Page, 0, 300 * Page}));

    // New processes take the rows sshd and bash stood on.
    addProcess(5, "python3", 900);
    addProcess(15, "cron", 800);
    tick();
    EXPECT_EQ(values(), (Values{4, 200 * Page, 0, 300 * Page}));

    // sshd ends: its Node reads 0, whoever stands on its row now; a new sshd is found again.
    endProcess(10);
    tick();
    EXPECT_EQ(values(), (Values{3, 0, 0, 300 * Page}));
    addProcess(30, "sshd", 250);
    tick();
    EXPECT_EQ(value(1), 250 * Page);
}

TEST_F(ProcessNode, ARebuildByAnyoneIsFollowedAndAClearedChoiceReadsNothing)
{
    tick();
    addProcess(5, "python3", 900);
    sources().processes->RefreshProcessList();  // as the panel's refresh button does
    Graph& g = monitor->Sensors[0];
    g.Nodes.erase(g.Nodes.begin());  // no Processes Node rebuilds the table any more
    tick();
    EXPECT_EQ(value(0), 200 * Page);
    EXPECT_EQ(value(2), 300 * Page);

    g.Nodes[0].ProcessMonitoring.clear();  // the panel's check was cleared
    g.Nodes[0].ProcessIndex = 0;
    tick();
    EXPECT_EQ(value(0), 0);

    // The log's column of a Process Node carries its own process's memory.
    const QStringList lines = logLines();
    QStringList fields;
    for (const QString& l : lines)
        if (l.startsWith(QStringLiteral("#Fields: ")))
            fields = l.mid(9).split(QLatin1Char(','));
    const QStringList last = lines.last().split(QLatin1Char(','));
    const qsizetype bash = fields.indexOf(QStringLiteral("bash"));
    ASSERT_GE(bash, 0) << fields.join(',').toStdString();
    EXPECT_EQ(last.value(bash), QString::number(300 * Page));
    EXPECT_EQ(fields.indexOf(QStringLiteral("no-such-program")), -1);
}

}  // namespace
