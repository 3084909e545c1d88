// The daily log on disk: header blocks, rollover, line ends and failures, in a
// temporary data folder with a clock the test moves.
#include "logging/log_writer.h"

#include "model/clock.h"
#include "model/version.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace orm;

namespace {

const QString Base = QStringLiteral("#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR");

// The file's lines; every line must end in CR LF.
QStringList readLines(const QString& path)
{
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << path.toStdString();
    const QString text = QString::fromLocal8Bit(f.readAll());
    EXPECT_TRUE(text.endsWith("\r\n") && text.count('\n') == text.count("\r\n"));
    return text.split("\r\n", Qt::SkipEmptyParts);
}

QStringList header(const char* date, const QString& fields)
{
    return {QStringLiteral("#Software: Vendrake - Ormivane"), QStringLiteral("#Version: " ORMIVANE_VERSION),
            QStringLiteral("#Date: ") + QLatin1String(date), fields};
}

// Answers a fixed series of wall-clock readings, then keeps the last.
struct ScriptedClock final : Clock {
    std::vector<QDateTime> series;
    mutable size_t next = 0;
    qint32 tickCount() const override { return 0; }
    qint32 uptimeTickCount() const override { return 0; }
    QDateTime now() const override { return series[std::min(next++, series.size() - 1)]; }
};

class LogWriterTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    ManualClock clock;  // 2026-03-05 09:07:41
    QString data() const { return tmp.path() + QStringLiteral("/data"); }
    QString today() const { return data() + QStringLiteral("/Logs/ex20260305.log"); }
    // One tick: writes a line, then moves the clock a second on.
    void tick(LogWriter& w, const LogFlags& f = {}, const LogInputs& in = {})
    {
        EXPECT_TRUE(w.LogData(f, in)) << w.error().toStdString();
        clock.advance(1000);
    }
};

}  // namespace

TEST_F(LogWriterTest, ReproducesTheExampleAndDashesWhenNotDue)
{
    Node ping;
    ping.NodeType = PingType;
    ping.PingIP = QStringLiteral("10.0.0.1");  // a column name only; nothing is sent
    ping.PingState4 = 23;
    std::vector<Graph> sensors(1);
    sensors[0].Nodes = {ping};

    LogFlags f;
    f.logCPU = f.logPing = true;
    f.logDrives = {true};
    LogInputs in;
    in.SysTmr = clock.tickCount();
    in.cpu = {12, 7};
    in.drives = {{QStringLiteral("C:"), 52428800000.0, 0, 65536}};
    in.sensors = &sensors;

    LogWriter w(data(), clock, 0);
    tick(w, f, in);
    sensors[0].TicksToSample = 4;
    in.SysTmr = clock.tickCount();
    tick(w, f, in);

    const QString fields = Base + QStringLiteral(",CPU0,CPU1,DISK_FREE_C:,DISK_R_C:,DISK_W_C:,"
                                                 "PING_SIZE_10.0.0.1,PING_RTT_10.0.0.1");
    EXPECT_EQ(readLines(today()),
              header("2026-03-05 09:07:41", fields)
                  << QStringLiteral("2026-03-05,09:07:41,1000,48215203,12,7,52428800000,0,65536,100,23")
                  << QStringLiteral("2026-03-05,09:07:42,1000,48216203,12,7,52428800000,0,65536,-,-"));
    EXPECT_EQ(w.LastLogFields, fields);
}

TEST_F(LogWriterTest, MidnightOrARemovedFolderStartsANewFileAndEachReadingIsSeparate)
{
    clock.setNow(QDateTime(QDate(2026, 3, 5), QTime(23, 59, 59)));
    LogWriter w(data(), clock, 0);
    tick(w);
    tick(w);  // same columns, but a new file
    EXPECT_EQ(readLines(today()), header("2026-03-05 23:59:59", Base) << "2026-03-05,23:59:59,1000,0");
    const QString tomorrow = data() + QStringLiteral("/Logs/ex20260306.log");
    EXPECT_EQ(readLines(tomorrow), header("2026-03-06 00:00:00", Base) << "2026-03-06,00:00:00,1000,0");
    // A log folder removed mid-run is made again, with its header. (Restarts and changed
    // columns get their header in the end-to-end runs.)
    ASSERT_TRUE(QDir(w.logFolder()).removeRecursively());
    tick(w);
    EXPECT_EQ(readLines(tomorrow), header("2026-03-06 00:00:01", Base) << "2026-03-06,00:00:01,1000,0");

    // Date read just before midnight, time and file name just after.
    ASSERT_TRUE(QDir(w.logFolder()).removeRecursively());
    ScriptedClock edge;
    edge.series = {QDateTime(QDate(2026, 3, 5), QTime(23, 59, 59, 999)), QDateTime(QDate(2026, 3, 6), QTime(0, 0))};
    ASSERT_TRUE(LogWriter(data(), edge, 0).LogData({}, {}));
    EXPECT_FALSE(QFile::exists(today()));
    EXPECT_EQ(readLines(tomorrow).value(4), QStringLiteral("2026-03-05,00:00:00,1000,0"));
}

TEST_F(LogWriterTest, FailuresSayWhatAndWhere)
{
    // A folder where the day's file should be, and a full device: each fails for root
    // too. (A file where the Logs folder belongs is refused at the program's start.)
    ASSERT_TRUE(QDir().mkpath(today()));
    LogWriter w(data(), clock, 0);
    EXPECT_FALSE(w.LogData({}, {}));
    EXPECT_TRUE(w.error().contains(today())) << w.error().toStdString();
    ASSERT_TRUE(QDir().rmdir(today()));
    if (QFile::exists("/dev/full") && QFile::link("/dev/full", today())) {
        EXPECT_FALSE(w.LogData({}, {}));
        EXPECT_TRUE(w.error().contains(today()) && w.error().contains("No space left")) << w.error().toStdString();
    }
}

TEST_F(LogWriterTest, ShutDownRemovesOnlyWorkingCopies)
{
    const QString logs = data() + QStringLiteral("/Logs/");
    ASSERT_TRUE(QDir().mkpath(logs));
    for (const char* name : {"ex20260305.log", "ex20260305.log1", "EX20260304.LOG1", "other.log1", "ex1.err"})
        ASSERT_TRUE(QFile(logs + QLatin1String(name)).open(QIODevice::WriteOnly));
    LogWriter::removeWorkingCopies(data());
    EXPECT_EQ(QDir(logs).entryList(QDir::Files, QDir::Name), (QStringList{"ex1.err", "ex20260305.log", "other.log1"}));
}
