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

class SettingsFileStart : public ::testing::Test, protected SettingsFileMonitor {
protected:
    void stop()
    {
        monitor->Closing = true;
        monitor->unload();
    }
    QString dataDir() const { return dir.filePath(QStringLiteral("data")); }
    RecordingViews views;
};

TEST_F(SettingsFileStart, OnlyAMissingOrTrueFirstRunMakesTheFirstGraph)
{
    const struct {
        const char* stored;  // nullptr: no FirstRun value
        bool firstRun;
    } cases[] = {{nullptr, true}, {"True", true}, {"Flase", false}, {"", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored ? c.stored : "<missing>");
        const QByteArray firstRun = c.stored ? QByteArray("FirstRun=") + c.stored + '\n' : QByteArray();
        writeFile(settingsFile, "[Settings]\n" + firstRun + "Sensors=1\nSensor1\\Name=Disks\nSensor1\\Nodes=2\n");
        ASSERT_TRUE(start(views));
        ASSERT_EQ(monitor->Sensors.size(), 1u);
        const Graph& g = monitor->Sensors[0];
        EXPECT_EQ(g.Name, c.firstRun ? QStringLiteral("New Graph 1") : QStringLiteral("Disks"));
        EXPECT_EQ(g.Nodes.size(), c.firstRun ? 1u : 2u);
        stop();
    }
}

TEST_F(SettingsFileStart, ALockWhoseHolderIsGoneNeverBlocksAndAnUnwritableFolderSaysSo)
{
    ASSERT_TRUE(QDir().mkpath(dataDir()));
    writeFile(dataDir() + QStringLiteral("/Ormivane.lock"), "");  // killed between making and writing it
    ASSERT_TRUE(start(views)) << monitor->startError().toStdString();
    stop();

    QFile::remove(dataDir() + QStringLiteral("/Ormivane.lock"));  // if the clean stop left one
    ASSERT_TRUE(QDir().mkpath(dataDir() + QStringLiteral("/Ormivane.lock")));  // nothing can be made there
    EXPECT_FALSE(start(views));
    EXPECT_FALSE(monitor->startError().contains(QStringLiteral("already running")))
        << monitor->startError().toStdString();
    EXPECT_TRUE(monitor->startError().contains(dataDir())) << monitor->startError().toStdString();
}

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
