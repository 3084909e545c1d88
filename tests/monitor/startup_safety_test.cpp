// Start-up and shut-down against what a user's folders may hold: a FirstRun
// edited by hand, locks left by a killed run, a data folder that cannot be
// written, and a settings file that must not be rewritten for nothing.
#include "monitor_fixture.h"
#include "settings_file_monitor.h"
#include "../store/store_files.h"

#include <QDir>

using namespace orm;
using namespace orm::test;

namespace {

// A Monitor on an in-memory store in a folder of its own.
struct MemoryStart {
    MemoryStart(const QString& dataDir)
    {
        sources->cpuCounters = std::make_unique<ScriptedCpu>();
        sources->cpu = std::make_unique<CpuUsage>(*sources->cpuCounters);
        MonitorOptions options;
        options.dataDir = dataDir;
        monitor = std::make_unique<Monitor>(options, clock, store, *sources, views);
    }
    ManualClock clock;
    MemoryStore store;
    std::unique_ptr<SourceSet> sources = SourceSet::forLinux();
    RecordingViews views;
    std::unique_ptr<Monitor> monitor;
};

class StartUp : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral("config")).toLocal8Bit());
    }
    QString dataDir() const { return dir.filePath(QStringLiteral("data")); }
    QTemporaryDir dir;
};

TEST_F(StartUp, OnlyAMissingOrTrueFirstRunMakesTheFirstGraph)
{
    const struct {
        const char* stored;  // nullptr: no FirstRun value
        bool firstRun;
    } cases[] = {{nullptr, true}, {"True", true}, {"Flase", false}, {"", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored ? c.stored : "<missing>");
        QTemporaryDir data;
        MemoryStart s(data.path());
        if (c.stored)
            s.store.writeValue(SettingsKey, QStringLiteral("FirstRun"), QString::fromLatin1(c.stored));
        s.store.writeValue(SettingsKey, QStringLiteral("Sensors"), QStringLiteral("1"));
        s.store.writeValue(sensorKey(0), QStringLiteral("Name"), QStringLiteral("Disks"));
        s.store.writeValue(sensorKey(0), QStringLiteral("Nodes"), QStringLiteral("2"));
        ASSERT_TRUE(s.monitor->startUp());
        ASSERT_EQ(s.monitor->Sensors.size(), 1u);
        const Graph& g = s.monitor->Sensors[0];
        EXPECT_EQ(g.Name, c.firstRun ? QStringLiteral("New Graph 1") : QStringLiteral("Disks"));
        EXPECT_EQ(g.Nodes.size(), c.firstRun ? 1u : 2u);
    }
}

TEST_F(StartUp, ALockWhoseHolderIsGoneNeverBlocksAndAnUnwritableFolderSaysSo)
{
    ASSERT_TRUE(QDir().mkpath(dataDir()));
    writeFile(dataDir() + QStringLiteral("/Ormivane.lock"), "");  // killed between making and writing it
    MemoryStart first(dataDir());
    ASSERT_TRUE(first.monitor->startUp()) << first.monitor->startError().toStdString();
    first.monitor->Closing = true;
    first.monitor->unload();

    QFile::remove(dataDir() + QStringLiteral("/Ormivane.lock"));  // if the clean stop left one
    ASSERT_TRUE(QDir().mkpath(dataDir() + QStringLiteral("/Ormivane.lock")));  // nothing can be made there
    MemoryStart s(dataDir());
    EXPECT_FALSE(s.monitor->startUp());
    EXPECT_FALSE(s.monitor->startError().contains(QStringLiteral("already running")))
        << s.monitor->startError().toStdString();
    EXPECT_TRUE(s.monitor->startError().contains(dataDir())) << s.monitor->startError().toStdString();
}

class SettingsFileStart : public ::testing::Test, protected SettingsFileMonitor {
protected:
    void stop()
    {
        monitor->Closing = true;
        monitor->unload();
    }
    RecordingViews views;
};

TEST_F(SettingsFileStart, NothingChangedMeansTheFileIsNotRewrittenAtExit)
{
    ASSERT_TRUE(start(views));  // the first run writes the first Graph
    stop();
    const quint64 before = fileIdentity();
    const QByteArray bytes = fileBytes();
    ASSERT_TRUE(start(views));
    monitor->TimerData();
    stop();
    EXPECT_EQ(fileIdentity(), before);
    EXPECT_EQ(fileBytes(), bytes);

    ASSERT_TRUE(start(views));  // the panel was moved: that is saved
    monitor->Settings.XLoc = 321;
    stop();
    EXPECT_NE(fileIdentity(), before);
    EXPECT_EQ(storedValue(SettingsKey, QStringLiteral("XLoc")), QStringLiteral("321"));
}

TEST_F(SettingsFileStart, AnUnreadableFileIsKeptAndTheUserToldBeforeAnythingIsSaved)
{
    const QByteArray text = "[Settings]\nFirstRun=False\nSensors=1\nSensor1\\Name=\"Disk\nSensor1\\Nodes=3\n";
    writeFile(settingsFile, text);
    ASSERT_TRUE(start(views));
    const QStringList kept =
        QDir(dir.path()).entryList({QStringLiteral("Ormivane.conf.unreadable-*")}, QDir::Files);
    ASSERT_EQ(kept.size(), 1);
    bool told = false;
    for (const Notice& n : monitor->notices)
        told = told || n.text.contains(dir.filePath(kept[0]));
    EXPECT_TRUE(told);
    stop();
}

}  // namespace
