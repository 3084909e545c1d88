// What the settings file must survive: a decimal-comma desktop, lines edited
// by hand that the reader cannot take whole, and what a killed save leaves.
#include "model/autostart.h"
#include "model/ini_store.h"
#include "model/number_text.h"
#include "model/settings_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "store_files.h"

#include <clocale>

using namespace orm;
using namespace orm::test;

namespace {

// The files kept beside `file` as unreadable.
QStringList keptBeside(const QString& file)
{
    const QFileInfo fi(file);
    return fi.dir().entryList({fi.fileName() + QStringLiteral(".unreadable-*")}, QDir::Files);
}

// A desktop whose numbers have a decimal comma, as the application sets it up.
class DecimalCommaDesktop {
public:
    DecimalCommaDesktop()
    {
        qputenv("LC_ALL", "de_DE.UTF-8");
        app_ = std::make_unique<QCoreApplication>(argc_, argv_);  // takes the locale from the environment
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    }
    ~DecimalCommaDesktop()
    {
        app_.reset();
        qunsetenv("LC_ALL");
        std::setlocale(LC_ALL, "C");
        QLocale::setDefault(QLocale::c());
    }
    bool active() const { return std::localeconv()->decimal_point[0] == ','; }

private:
    int argc_ = 1;
    char name_[9] = "ormivane";
    char* argv_[2] = {name_, nullptr};
    std::unique_ptr<QCoreApplication> app_;
};

}  // namespace

TEST(StoredNumbers, KeepTheirPointOnADecimalCommaDesktopAndComeBackWhole)
{
    DecimalCommaDesktop desktop;
    if (!desktop.active())
        GTEST_SKIP() << "no de_DE.UTF-8 locale on this machine";
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("o.conf"));
    AutoStartEntry none(QStringLiteral("/proc/ormivane-none/ormivane.desktop"));
    const QDateTime now(QDate(2026, 3, 5), QTime(9, 7, 41));
    std::vector<Graph> model{newGraph(0, true, {}, now)};
    model[0].LegendMax = 2.5;
    model[0].DataMagnitude = 0.001;
    model[0].LogStart = 20260305090741.0;
    {
        IniStore store(file);
        ASSERT_TRUE(SaveSettings(store, ProgramSettings{}, model, nullptr, none, QStringLiteral("/bin/o")));
    }
    const QByteArray bytes = readAll(file);
    EXPECT_TRUE(bytes.contains("DataMagnitude=0.001") && bytes.contains("LegendMax=2.5")) << bytes.constData();

    // Saved again from what was read: nothing drifts.
    for (int round = 0; round < 2; ++round) {
        IniStore store(file);
        ProgramSettings settings;
        std::vector<Graph> back;
        LoadSensors(store, settings, back, nullptr, none, now);
        ASSERT_EQ(back.size(), 1u);
        EXPECT_DOUBLE_EQ(back[0].LegendMax, 2.5);
        EXPECT_DOUBLE_EQ(back[0].DataMagnitude, 0.001);
        ASSERT_TRUE(SaveSettings(store, settings, back, nullptr, none, QStringLiteral("/bin/o")));
    }
    // What is shown follows the desktop, and what the user types there reads back.
    EXPECT_EQ(screenNumberText(2.5), QStringLiteral("2,5"));
    EXPECT_DOUBLE_EQ(typedNumber(QStringLiteral("2,5")), 2.5);
}

TEST(UnreadableSettingsFile, IsKeptBesideBeforeTheFirstSaveAndSaid)
{
    // An unclosed quote swallows the lines after it; a trailing backslash joins the next line;
    // a line without "=" and a key given twice are lost on the next save.
    const QByteArray cases[] = {
        "[Settings]\nSensors=1\nSensor1\\Name=\"Disk\nSensor1\\LocX=10\nSensor1\\LocY=20\n",
        "[Settings]\nSensors=1\nSensor1\\Name=Disk \\\nSensor1\\LocX=10\nXLoc=5\n",
        "[Settings]\nSensors=1\nthis is no value\n",
        "[Settings]\nSensors=1\nSensors=2\n",
    };
    for (const QByteArray& text : cases) {
        SCOPED_TRACE(text.constData());
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("Ormivane.conf"));
        writeFile(file, text);
        IniStore store(file);
        const QStringList kept = keptBeside(file);
        ASSERT_EQ(kept.size(), 1);
        EXPECT_TRUE(QRegularExpression(QStringLiteral("^Ormivane\\.conf\\.unreadable-\\d{14}$")).match(kept[0]).hasMatch())
            << kept[0].toStdString();
        EXPECT_TRUE(store.keptAside().endsWith(kept[0])) << store.keptAside().toStdString();
        EXPECT_EQ(readAll(file), text);  // nothing was written yet
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("XLoc"), QStringLiteral("7"));
        ASSERT_TRUE(store.sync());
        EXPECT_EQ(keptBeside(file).size(), 1);  // once a run
        EXPECT_EQ(readAll(dir.filePath(kept[0])), text);
    }
}

TEST(UnreadableSettingsFile, AFileTheReaderTakesWholeIsLeftAlone)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("Ormivane.conf"));
    {
        IniStore writer(file);  // every awkward text, as the store itself writes it
        const QStringList texts = {"quote \" back \\ slash", "line\nbreak", "semi;colon#hash=eq", "trailing \\"};
        for (int i = 0; i < texts.size(); ++i)
            writer.writeValue(QStringLiteral("Settings/Sensor1"), QStringLiteral("V%1").arg(i), texts[i]);
        ASSERT_TRUE(writer.sync());
    }
    QByteArray bytes = readAll(file);
    bytes += "\n; a comment\n# another\n\n[Settings]\n  Spaced Key  =  value  \n";  // edited by hand, readable
    writeFile(file, bytes);
    IniStore store(file);
    EXPECT_TRUE(keptBeside(file).isEmpty()) << keptBeside(file).join(' ').toStdString();
    EXPECT_TRUE(store.keptAside().isEmpty());
    EXPECT_EQ(store.readValue(QStringLiteral("Settings/Sensor1"), QStringLiteral("V3"), QString()),
              QStringLiteral("trailing \\"));
}

TEST(SettingsFileLeftovers, AKilledSaveLeavesNoLockThatDelaysAndNoTemporaries)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("Ormivane.conf"));
    writeFile(file, "[Settings]\nSensors=0\n");
    const QString lock = file + QStringLiteral(".lock"), half = file + QStringLiteral(".aB3xYz");
    writeFile(lock, "");  // killed between making the lock and writing it
    writeFile(half, "[Settings]\nhalf");
    writeFile(file + QStringLiteral(".backup"), "mine");  // not a temporary of a save
    writeFile(dir.filePath(QStringLiteral("Other.conf.aB3xYz")), "theirs");
    // A temporary is the file's own name, a dot and six letters or digits, nothing else.
    const QStringList mine = {file + QStringLiteral(".aB3xY"), file + QStringLiteral(".aB3xYz9"),
                              file + QStringLiteral(".aB-xYz"), dir.filePath(QStringLiteral("ORMIVANE.CONF.aB3xYz"))};
    for (const QString& name : mine)
        writeFile(name, "mine");
    IniStore store(file);
    EXPECT_FALSE(QFile::exists(lock) || QFile::exists(half));
    EXPECT_TRUE(QFile::exists(file + QStringLiteral(".backup")));
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("Other.conf.aB3xYz"))));
    for (const QString& name : mine)
        EXPECT_TRUE(QFile::exists(name)) << name.toStdString();

    // A lock of a live holder (this process) is left to it.
    writeFile(lock, QByteArray::number(QCoreApplication::applicationPid()) + "\nstore_test\n" +
                  QSysInfo::machineHostName().toUtf8() + "\n");
    IniStore second(file);
    EXPECT_TRUE(QFile::exists(lock));
    QFile::remove(lock);
    store.writeValue(QStringLiteral("Settings"), QStringLiteral("Sensors"), QStringLiteral("0"));
    EXPECT_TRUE(store.sync());
    EXPECT_NE(statOf(file).st_ino, ino_t(0));
}
