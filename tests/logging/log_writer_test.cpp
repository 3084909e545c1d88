// The daily log on disk: header blocks, rollover, line ends and failures, in a
// temporary data folder with a clock the test moves.
#include "logging/log_writer.h"

#include "core/clock.h"
#include "core/version.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace orm;

namespace {

const QString Base = QStringLiteral("#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR");

// The file's lines; every line must end in CR LF.
QStringList readLines(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "cannot read " << path.toStdString();
        return {};
    }
    const QString text = QString::fromLocal8Bit(f.readAll());
    EXPECT_TRUE(text.endsWith(QStringLiteral("\r\n")));
    EXPECT_EQ(text.count(QLatin1Char('\n')), text.count(QStringLiteral("\r\n")));
    QStringList lines = text.split(QStringLiteral("\r\n"));
    lines.removeLast();
    return lines;
}

QStringList header(const QString& date, const QString& fields)
{
    return {QStringLiteral("#Software: Vendrake - Ormivane"),
            QStringLiteral("#Version: ") + QStringLiteral(ORMIVANE_VERSION),
            QStringLiteral("#Date: ") + date, fields};
}

QDateTime at(int y, int mo, int d, int h, int mi, int s, int ms = 0)
{
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s, ms));
}

// A clock that answers a fixed series of wall-clock readings, then keeps the last.
class ScriptedClock final : public Clock {
public:
    explicit ScriptedClock(std::vector<QDateTime> series) : series_(std::move(series)) {}
    qint32 tickCount() const override { return 0; }
    qint32 uptimeTickCount() const override { return 0; }
    QDateTime now() const override
    {
        const QDateTime t = series_[std::min(next_, series_.size() - 1)];
        ++next_;
        return t;
    }

private:
    std::vector<QDateTime> series_;
    mutable size_t next_ = 0;
};

class LogWriterTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    ManualClock clock;  // 2026-03-05 09:07:41
    QString data() const { return tmp.path() + QStringLiteral("/data"); }
    QString today() const { return data() + QStringLiteral("/Logs/ex20260305.log"); }
};

}  // namespace

TEST_F(LogWriterTest, ReproducesTheExampleAndDashesWhenNotDue)
{
    Node cpu;
    cpu.NodeType = CpuType;
    Node drive;
    drive.NodeType = DriveSpaceType;
    Node ping;
    ping.NodeType = PingType;
    ping.PingIP = QStringLiteral("10.0.0.1");  // a column name only; nothing is sent
    ping.PingState4 = 23;
    Graph g;
    g.Nodes = {cpu, drive, ping};
    g.TicksToSample = 0;
    std::vector<Graph> sensors{g};

    LogFlags f;
    f.logCPU = f.logPing = true;
    f.logDrives = {true};
    LogInputs in;
    in.SysTmr = clock.tickCount();
    in.cpu = {12, 7};
    in.drives = {{QStringLiteral("C:"), 52428800000.0, 0, 65536}};
    in.sensors = &sensors;

    LogWriter w(data(), clock, 0);
    ASSERT_TRUE(w.LogData(f, in)) << w.error().toStdString();

    clock.advance(1000);
    sensors[0].TicksToSample = 4;
    in.SysTmr = clock.tickCount();
    ASSERT_TRUE(w.LogData(f, in)) << w.error().toStdString();

    const QString fields = Base + QStringLiteral(",CPU0,CPU1,DISK_FREE_C:,DISK_R_C:,DISK_W_C:,"
                                                 "PING_SIZE_10.0.0.1,PING_RTT_10.0.0.1");
    QStringList expected = header(QStringLiteral("2026-03-05 09:07:41"), fields);
    expected << QStringLiteral("2026-03-05,09:07:41,1000,48215203,12,7,52428800000,0,65536,100,23")
             << QStringLiteral("2026-03-05,09:07:42,1000,48216203,12,7,52428800000,0,65536,-,-");
    EXPECT_EQ(readLines(today()), expected);
    EXPECT_EQ(w.LastLogFields, fields);
}

TEST_F(LogWriterTest, WithNothingLoggedEveryCallStillWritesFourValues)
{
    Node quiet;
    quiet.NodeType = PingType;
    quiet.LogData = false;
    Graph g;
    g.Nodes = {quiet};
    std::vector<Graph> sensors{g};
    LogInputs in;
    in.sensors = &sensors;

    LogWriter w(data(), clock, 0);  // the data folder does not exist yet
    ASSERT_TRUE(w.LogData(LogFlags{}, in)) << w.error().toStdString();
    // Someone removes the folder: the next call makes it again.
    ASSERT_TRUE(QDir(w.logFolder()).removeRecursively());
    clock.advance(1000);
    in.SampleLength = 1001;
    ASSERT_TRUE(w.LogData(LogFlags{}, in)) << w.error().toStdString();
    clock.advance(1000);
    ASSERT_TRUE(w.LogData(LogFlags{}, in)) << w.error().toStdString();

    QStringList expected = header(QStringLiteral("2026-03-05 09:07:42"), Base);
    expected << QStringLiteral("2026-03-05,09:07:42,1001,0")
             << QStringLiteral("2026-03-05,09:07:43,1001,0");
    EXPECT_EQ(readLines(today()), expected);
}

TEST_F(LogWriterTest, HeaderAgainOnRestartAndDirectlyBeforeChangedColumns)
{
    LogInputs in;
    {
        LogWriter first(data(), clock, 0);
        ASSERT_TRUE(first.LogData(LogFlags{}, in));
    }
    clock.advance(1000);
    LogWriter second(data(), clock, 0);  // a new run on the day's existing file
    EXPECT_TRUE(second.LastLogFields.isEmpty());
    ASSERT_TRUE(second.LogData(LogFlags{}, in));
    clock.advance(1000);
    LogFlags cpu;
    cpu.logCPU = true;
    in.cpu = {40};
    ASSERT_TRUE(second.LogData(cpu, in));
    clock.advance(1000);
    ASSERT_TRUE(second.LogData(cpu, in));

    QStringList expected = header(QStringLiteral("2026-03-05 09:07:41"), Base);
    expected << QStringLiteral("2026-03-05,09:07:41,1000,0")
             << header(QStringLiteral("2026-03-05 09:07:42"), Base)
             << QStringLiteral("2026-03-05,09:07:42,1000,0")
             << header(QStringLiteral("2026-03-05 09:07:43"), Base + QStringLiteral(",CPU0"))
             << QStringLiteral("2026-03-05,09:07:43,1000,0,40")
             << QStringLiteral("2026-03-05,09:07:44,1000,0,40");
    EXPECT_EQ(readLines(today()), expected);
}

TEST_F(LogWriterTest, ProcessThatEndsDropsItsColumnUnderANewHeader)
{
    Node proc;
    proc.NodeType = ProcessType;
    proc.ProcessMonitoring = QStringLiteral("sleep");
    proc.ProcessIndex = 1;
    Graph g;
    g.Nodes = {proc};
    std::vector<Graph> sensors{g};
    LogFlags f;
    f.logProcess = true;
    LogInputs in;
    in.sensors = &sensors;
    in.processMemory = {100, 2048};

    LogWriter w(data(), clock, 1);
    ASSERT_TRUE(w.LogData(f, in));
    clock.advance(1000);
    in.processMemory = {100};
    ASSERT_TRUE(w.LogData(f, in));

    const QString blank = QStringLiteral("#Fields: DATE TIME SAMPLE_LENGTH_MILLI_S SYS_TMR");
    QStringList expected = header(QStringLiteral("2026-03-05 09:07:41"), blank + QStringLiteral(" sleep"));
    expected << QStringLiteral("2026-03-05 09:07:41 1000 0 2048")
             << header(QStringLiteral("2026-03-05 09:07:42"), blank)
             << QStringLiteral("2026-03-05 09:07:42 1000 0");
    EXPECT_EQ(readLines(today()), expected);
}

TEST_F(LogWriterTest, MidnightStartsANewFileWithItsHeader)
{
    clock.setNow(at(2026, 3, 5, 23, 59, 59));
    LogWriter w(data(), clock, 0);
    LogInputs in;
    ASSERT_TRUE(w.LogData(LogFlags{}, in));
    clock.advance(1000);
    ASSERT_TRUE(w.LogData(LogFlags{}, in));  // same columns, but a new file

    EXPECT_EQ(readLines(today()),
              header(QStringLiteral("2026-03-05 23:59:59"), Base)
                  << QStringLiteral("2026-03-05,23:59:59,1000,0"));
    EXPECT_EQ(readLines(data() + QStringLiteral("/Logs/ex20260306.log")),
              header(QStringLiteral("2026-03-06 00:00:00"), Base)
                  << QStringLiteral("2026-03-06,00:00:00,1000,0"));
}

TEST_F(LogWriterTest, DateTimeAndFileNameAreSeparateReadings)
{
    // Date read just before midnight, time and file name just after.
    ScriptedClock edge({at(2026, 3, 5, 23, 59, 59, 999), at(2026, 3, 6, 0, 0, 0)});
    LogWriter w(data(), edge, 0);
    ASSERT_TRUE(w.LogData(LogFlags{}, LogInputs{}));
    EXPECT_FALSE(QFile::exists(today()));
    const QStringList lines = readLines(data() + QStringLiteral("/Logs/ex20260306.log"));
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(lines[4], QStringLiteral("2026-03-05,00:00:00,1000,0"));
}

TEST_F(LogWriterTest, FolderThatCannotBeMadeFails)
{
    // A regular file where the data folder should be: fails for root too.
    QFile blocker(data());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    LogWriter w(data(), clock, 0);
    EXPECT_FALSE(w.LogData(LogFlags{}, LogInputs{}));
    EXPECT_TRUE(w.error().contains(data() + QStringLiteral("/Logs"))) << w.error().toStdString();
    EXPECT_TRUE(w.error().contains(QStringLiteral("Not a directory"))) << w.error().toStdString();
}

TEST_F(LogWriterTest, ReadOnlyLogsFolderFails)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "root ignores folder permissions";
    ASSERT_TRUE(QDir().mkpath(data() + QStringLiteral("/Logs")));
    QFile::setPermissions(data() + QStringLiteral("/Logs"), QFile::ReadOwner | QFile::ExeOwner);
    LogWriter w(data(), clock, 0);
    EXPECT_FALSE(w.LogData(LogFlags{}, LogInputs{}));
    EXPECT_TRUE(w.error().contains(today())) << w.error().toStdString();
    QFile::setPermissions(data() + QStringLiteral("/Logs"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST_F(LogWriterTest, FullDeviceFailsTheWrite)
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        GTEST_SKIP() << "no /dev/full";
    ASSERT_TRUE(QDir().mkpath(data() + QStringLiteral("/Logs")));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), today()));
    LogWriter w(data(), clock, 0);
    EXPECT_FALSE(w.LogData(LogFlags{}, LogInputs{}));
    EXPECT_TRUE(w.error().contains(today())) << w.error().toStdString();
    EXPECT_TRUE(w.error().contains(QStringLiteral("No space left"))) << w.error().toStdString();
}

TEST_F(LogWriterTest, ShutDownRemovesOnlyWorkingCopies)
{
    const QString logs = data() + QStringLiteral("/Logs/");
    ASSERT_TRUE(QDir().mkpath(logs));
    for (const char* name : {"ex20260305.log", "ex20260305.log1", "ex20260304.log1", "other.log1", "ex1.err"}) {
        QFile f(logs + QLatin1String(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    LogWriter::removeWorkingCopies(data());
    QStringList left = QDir(logs).entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(left, (QStringList{"ex1.err", "ex20260305.log", "other.log1"}));
}
