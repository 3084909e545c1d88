// The settings file: what reaches the disk, its mode, its atomic rewrite, and
// what other processes write into it.
#include "core/ini_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "print_qstring.h"

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace orm;

namespace {

// A second copy of the file under a new name, so that what is read comes from
// the bytes on disk and not from anything this process still holds.
QString diskCopy(const QString& file)
{
    static int n = 0;
    const QString copy = file + QStringLiteral(".copy%1").arg(++n);
    QFile::remove(copy);
    EXPECT_TRUE(QFile::copy(file, copy));
    return copy;
}

mode_t modeOf(const QString& file)
{
    struct stat st {};
    EXPECT_EQ(::stat(QFile::encodeName(file).constData(), &st), 0);
    return st.st_mode & 07777;
}

ino_t inodeOf(const QString& file)
{
    struct stat st {};
    EXPECT_EQ(::stat(QFile::encodeName(file).constData(), &st), 0);
    return st.st_ino;
}

// Kills and reaps a child however the test ends.
struct Child {
    pid_t pid = -1;
    ~Child()
    {
        if (pid > 0) {
            ::kill(pid, SIGKILL);
            ::waitpid(pid, nullptr, 0);
        }
    }
    void reap()
    {
        int status = 0;
        ::waitpid(pid, &status, 0);
        pid = -1;
    }
};

TEST(IniStore, AwkwardTextsComeBackFromDiskUnchanged)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("Vendrake/Ormivane.conf");  // folder made on first save
    const QStringList texts = {"a, b",         "@Invalid()",      " lead and trail ",  "quote \" back \\ slash",
                               "ünïcode €",    "semi;colon#hash=eq", "line\nbreak",   "",
                               "-2147483648", "[Settings]",      "http://host/p?a=1&b=2"};
    {
        IniStore store(file);
        for (int i = 0; i < texts.size(); ++i)
            store.writeValue("Settings/Sensor1", QStringLiteral("V%1").arg(i), texts[i]);
        ASSERT_TRUE(store.sync()) << store.lastError().toStdString();
    }
    IniStore back(diskCopy(file));
    for (int i = 0; i < texts.size(); ++i)
        EXPECT_EQ(back.readValue("Settings/Sensor1", QStringLiteral("V%1").arg(i), "missing"), texts[i]) << i;
}

TEST(IniStore, ReadsAHandWrittenFile)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("hand.conf");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("[Settings]\nSensors=2\nSensor1\\Name=By Hand\nSensor1\\Node1\\NodeType=5\nList=a,b\n");
    f.close();
    IniStore store(file);
    EXPECT_EQ(store.readValue("Settings", "Sensors", ""), "2");
    EXPECT_EQ(store.readValue("Settings/Sensor1", "Name", ""), "By Hand");
    EXPECT_EQ(store.readValue("Settings/Sensor1/Node1", "NodeType", ""), "5");
    EXPECT_EQ(store.readValue("Settings", "List", ""), "a,b");
    EXPECT_EQ(store.subKeys("Settings"), QStringList({"Sensor1"}));
}

TEST(IniStore, FileIsOwnerOnlyAndReplacedOnEverySave)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("o.conf");
    const mode_t oldMask = ::umask(022);
    IniStore store(file);
    store.writeValue("Settings", "SMTPAuthPass", "secret");
    const bool first = store.sync();
    ::umask(oldMask);
    ASSERT_TRUE(first) << store.lastError().toStdString();
    EXPECT_EQ(modeOf(file), mode_t(0600));

    // Each save writes a new file and renames it over the old one.
    const ino_t before = inodeOf(file);
    store.writeValue("Settings", "SMTPAuthPass", "other");
    ASSERT_TRUE(store.sync());
    EXPECT_NE(inodeOf(file), before);
    EXPECT_EQ(modeOf(file), mode_t(0600));
    EXPECT_EQ(IniStore(diskCopy(file)).readValue("Settings", "SMTPAuthPass", ""), "other");
}

TEST(IniStore, ExistingOpenFileIsClosedToOthersAtTheNextSave)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("open.conf");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("[Settings]\nSensors=0\n");
    f.close();
    ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), 0644), 0);
    IniStore store(file);
    store.writeValue("Settings", "StartInSystray", "False");
    ASSERT_TRUE(store.sync());
    EXPECT_EQ(modeOf(file), mode_t(0600));
}

TEST(IniStore, CloseNowAppendedByHandIsSeenAfterReload)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("o.conf");
    IniStore store(file);
    store.writeValue("Settings", "StartInSystray", "False");
    store.writeValue("Settings/Sensor1/Node1", "NodeType", "5");
    ASSERT_TRUE(store.sync());

    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::Append));
    f.write("CloseNow=True\n");
    f.close();
    store.reload();
    EXPECT_EQ(store.readValue("Settings", "CloseNow", "False"), "True");
    EXPECT_EQ(store.readValue("Settings/Sensor1/Node1", "NodeType", ""), "5");
    EXPECT_TRUE(store.lastError().isEmpty()) << store.lastError().toStdString();
}

TEST(IniStore, ValueSetByAnotherProcessIsSeenAndNothingPendingIsLost)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("o.conf");
    IniStore store(file);
    store.writeValue("Settings", "Sensors", "1");
    ASSERT_TRUE(store.sync());
    store.writeValue("Settings", "XLoc", "120");  // not yet saved

    Child child;
    child.pid = ::fork();
    ASSERT_GE(child.pid, 0);
    if (child.pid == 0) {
        {
            QSettings other(file, QSettings::IniFormat);
            other.setValue("Settings/CloseNow", "True");
            other.sync();
        }
        ::_exit(0);
    }
    child.reap();

    store.reload();
    EXPECT_EQ(store.readValue("Settings", "CloseNow", "False"), "True");
    IniStore disk(diskCopy(file));
    EXPECT_EQ(disk.readValue("Settings", "CloseNow", ""), "True");
    EXPECT_EQ(disk.readValue("Settings", "XLoc", ""), "120");
    EXPECT_EQ(disk.readValue("Settings", "Sensors", ""), "1");
}

TEST(IniStore, KilledMidSaveLeavesAWholeFileThatCanBeSavedAgain)
{
    QTemporaryDir dir;
    constexpr int Values = 300;
    for (int round = 0; round < 4; ++round) {
        const QString file = dir.filePath(QStringLiteral("k%1.conf").arg(round));
        int saved[2];
        ASSERT_EQ(::pipe(saved), 0);
        Child child;
        child.pid = ::fork();
        ASSERT_GE(child.pid, 0);
        if (child.pid == 0) {
            ::close(saved[0]);
            IniStore store(file);
            const QString pad(40, QLatin1Char('x'));
            for (int gen = 1;; ++gen) {
                for (int i = 0; i < Values; ++i)
                    store.writeValue("Settings/Sensor1", QStringLiteral("V%1").arg(i),
                                     QStringLiteral("%1-%2").arg(gen).arg(pad));
                if (store.sync()) {
                    const char c = 's';
                    if (::write(saved[1], &c, 1) != 1)
                        ::_exit(1);
                }
            }
        }
        ::close(saved[1]);
        const int wanted = round + 2;
        for (int k = 0; k < wanted; ++k) {
            char c = 0;
            ASSERT_EQ(::read(saved[0], &c, 1), 1) << "the writer died";
        }
        ::kill(child.pid, SIGKILL);
        child.reap();
        ::close(saved[0]);

        EXPECT_EQ(modeOf(file), mode_t(0600));
        IniStore disk(diskCopy(file));
        const auto vals = disk.values("Settings/Sensor1");
        ASSERT_EQ(vals.size(), Values) << "round " << round;
        const QString gen = vals[0].second.section(QLatin1Char('-'), 0, 0);
        EXPECT_GE(gen.toInt(), wanted);
        for (const auto& v : vals)
            EXPECT_EQ(v.second.section(QLatin1Char('-'), 0, 0), gen) << v.first.toStdString();

        // The lock left by the killed writer does not stop the next save.
        IniStore again(file);
        again.writeValue("Settings", "Sensors", "1");
        EXPECT_TRUE(again.sync()) << again.lastError().toStdString();
    }
}

TEST(IniStore, FailedSaveIsReportedAndTheNextOneRecovers)
{
    QTemporaryDir dir;
    const QString blocker = dir.filePath("Vendrake");
    const QString file = blocker + "/Ormivane.conf";
    QFile b(blocker);  // a file where the folder should be
    ASSERT_TRUE(b.open(QIODevice::WriteOnly));
    b.close();

    IniStore store(file);
    store.writeValue("Settings", "Sensors", "2");
    EXPECT_FALSE(store.sync());
    EXPECT_TRUE(store.lastError().contains(file)) << store.lastError().toStdString();

    ASSERT_TRUE(QFile::remove(blocker));
    ASSERT_TRUE(QDir().mkpath(blocker));
    store.writeValue("Settings", "StartInSystray", "True");
    EXPECT_TRUE(store.sync()) << store.lastError().toStdString();
    EXPECT_TRUE(store.lastError().isEmpty());
    IniStore disk(diskCopy(file));
    EXPECT_EQ(disk.readValue("Settings", "Sensors", ""), "2");  // written before the failure
    EXPECT_EQ(disk.readValue("Settings", "StartInSystray", ""), "True");
    EXPECT_EQ(modeOf(file), mode_t(0600));
}

TEST(IniStore, UnreadableLinesAreDroppedAndTheRestIsKept)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("bad.conf");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("[Settings]\nSensors=1\nthis line is no value\nStartInSystray=True\n");
    f.close();
    IniStore store(file);
    EXPECT_EQ(store.readValue("Settings", "StartInSystray", ""), "True");
    store.writeValue("Settings", "DisplayToolTips", "False");
    EXPECT_TRUE(store.sync()) << store.lastError().toStdString();
    IniStore disk(diskCopy(file));
    EXPECT_TRUE(disk.lastError().isEmpty());
    EXPECT_EQ(disk.readValue("Settings", "Sensors", ""), "1");
    EXPECT_EQ(disk.readValue("Settings", "DisplayToolTips", ""), "False");
}

}  // namespace
