// The stores: what every store must do, and for the settings file what
// reaches the disk, its mode, its atomic rewrite, and what others write into it.
#include "model/ini_store.h"
#include "model/key_value_store.h"

#include <QTemporaryDir>

#include "store_files.h"

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace orm;
using namespace orm::test;

namespace {

// A copy under a new name, so what is read comes from the bytes on disk and
// not from anything this process still holds.
QString diskCopy(const QString& file)
{
    static int n = 0;
    const QString copy = file + QStringLiteral(".copy%1").arg(++n);
    EXPECT_TRUE(QFile::copy(file, copy));
    return copy;
}

// Kills and reaps a child however the test ends.
struct Child {
    pid_t pid = ::fork();
    ~Child() { pid > 0 && ::kill(pid, SIGKILL) == 0 && ::waitpid(pid, nullptr, 0); }
};

void checkContract(KeyValueStore& s)
{
    ASSERT_TRUE(s.writeValue("Settings/Sensor1", "Description", ""));
    EXPECT_EQ(s.readValue("Settings/Sensor1", "Description", "dflt"), "");  // empty is not missing
    s.writeValue("Settings", "CloseNow", "True");
    s.writeValue("Settings/Sensor2/Node1", "Name", "a");
    s.writeValue("Settings/Sensor10", "Name", "b");
    // values() is the key's own values, never those of its sub-keys.
    EXPECT_EQ(s.values("Settings"), (QList<QPair<QString, QString>>{{"CloseNow", "True"}}));

    // A key and a value of the same name are deleted each without the other.
    s.writeValue("Settings", "Sensor1", "beside");
    s.writeValue("Settings", "Sensor2", "value");
    EXPECT_TRUE(s.deleteValue("Settings/Sensor1", ""));
    EXPECT_EQ(s.readValue("Settings", "Sensor1", "gone"), "beside");
    EXPECT_TRUE(s.deleteValue("Settings", "Sensor2"));
    EXPECT_EQ(s.readValue("Settings/Sensor2/Node1", "Name", "gone"), "a");
    EXPECT_EQ(s.subKeys("Settings"), QStringList({"Sensor10", "Sensor2"}));
    EXPECT_FALSE(s.deleteValue("Settings", ""));  // the top-level key stays
    EXPECT_EQ(s.readValue("Settings/Sensor10", "Name", ""), "b");
}

TEST(StoreContract, MemoryStoreAndIniStore)
{
    QTemporaryDir dir;
    MemoryStore memory;
    IniStore file(dir.filePath("o.conf"));
    for (KeyValueStore* s : std::initializer_list<KeyValueStore*>{&memory, &file}) {
        SCOPED_TRACE(s == &memory ? "MemoryStore" : "IniStore");
        checkContract(*s);
    }
}

TEST(IniStore, FileIsMadeOwnerOnlyAndReplacedOnEverySave)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("o.conf");
    writeFile(file, "[Settings]\nSensors=0\n");
    ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), 0644), 0);
    const ino_t before = statOf(file).st_ino;
    const mode_t oldMask = ::umask(022);
    IniStore store(file);
    store.writeValue("Settings", "SMTPAuthPass", "secret");
    const bool saved = store.sync();
    ::umask(oldMask);
    ASSERT_TRUE(saved) << store.lastError().toStdString();
    EXPECT_NE(statOf(file).st_ino, before);  // a new file renamed over the old one
    EXPECT_EQ(statOf(file).st_mode & 07777, 0600u);
    EXPECT_EQ(IniStore(diskCopy(file)).readValue("Settings", "SMTPAuthPass", ""), "secret");
}

TEST(IniStore, KilledMidSaveLeavesAWholeFileThatCanBeSavedAgain)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("k.conf");
    IniStore store(file);
    int saved[2];
    ASSERT_EQ(::pipe(saved), 0);
    {
        Child child;  // saves again and again until killed at some point of a save
        ASSERT_GE(child.pid, 0);
        for (int gen = 1; child.pid == 0; ++gen) {
            for (int i = 0; i < 300; ++i)
                store.writeValue("Settings/Sensor1", QStringLiteral("V%1").arg(i),
                                 QStringLiteral("%1-%2").arg(gen).arg(QString(40, 'x')));
            if (store.sync() && ::write(saved[1], "s", 1) != 1)
                ::_exit(1);
        }
        ::close(saved[1]);
        char c = 0;
        for (int k = 0; k < 3; ++k)
            ASSERT_EQ(::read(saved[0], &c, 1), 1) << "the writer died";
    }
    ::close(saved[0]);
    EXPECT_EQ(statOf(file).st_mode & 07777, 0600u);
    const auto vals = IniStore(diskCopy(file)).values("Settings/Sensor1");
    ASSERT_EQ(vals.size(), 300);
    const QString gen = vals[0].second.section('-', 0, 0);
    EXPECT_GE(gen.toInt(), 3);
    for (const auto& v : vals)  // all from the same save
        EXPECT_EQ(v.second.section('-', 0, 0), gen) << v.first.toStdString();
    store.writeValue("Settings", "Sensors", "1");  // the killed writer's lock does not stop a save
    EXPECT_TRUE(store.sync()) << store.lastError().toStdString();
}

TEST(IniStore, FailedSaveIsReportedAndTheNextOneKeepsWhatWasPending)
{
    QTemporaryDir dir;
    const QString blocker = dir.filePath("Vendrake"), file = blocker + "/Ormivane.conf";
    writeFile(blocker, "");  // a file where the folder should be
    IniStore store(file);
    store.writeValue("Settings", "Sensors", "2");
    EXPECT_FALSE(store.sync());
    EXPECT_TRUE(store.lastError().contains(file)) << store.lastError().toStdString();

    ASSERT_TRUE(QFile::remove(blocker));  // the folder is made on the next save
    store.writeValue("Settings/Sensor1", "Name", "after");
    EXPECT_TRUE(store.sync() && store.lastError().isEmpty()) << store.lastError().toStdString();
    IniStore disk(diskCopy(file));
    EXPECT_EQ(disk.readValue("Settings", "Sensors", ""), "2");  // written before the failure
    EXPECT_EQ(disk.readValue("Settings/Sensor1", "Name", ""), "after");
}

}  // namespace
