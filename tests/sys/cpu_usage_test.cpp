// Processor load: the jiffy arithmetic between two snapshots of /proc/stat,
// the rounding, and the table the tick and the Nodes read.
#include "sources/cpu_usage.h"
#include "temp_tree.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <cmath>
#include <limits>

using namespace orm;
using orm::test::writeFile;

namespace {

class StatFile : public ::testing::Test {
protected:
    void write(const QByteArray& text) { ASSERT_TRUE(writeFile(dir.path() + "/stat", text)); }
    QTemporaryDir dir;
};

// Hands the logic known percentages and counts the collections.
class FixedCounters final : public CpuCounters {
public:
    int processorCount() override { return count; }
    std::vector<double> collect() override
    {
        ++collections;
        return percents;
    }
    int count = 0;
    std::vector<double> percents;
    int collections = 0;
};

}  // namespace

TEST_F(StatFile, BusyShareBetweenTwoSnapshots)
{
    ProcStatCpuCounters counters(dir.path());
    write("cpu  0 0 0 0 0 0 0 0 0 0\n"
          "cpu0 100 0 100 800 0 0 0 0 40 0\n"
          "cpu1 500 10 90 300 100 0 0 0 0 0\n");
    EXPECT_EQ(counters.processorCount(), 2);
    EXPECT_EQ(counters.collect(), (std::vector<double>{0.0, 0.0}));  // first collection

    // cpu0: 50 user + 50 system busy, 100 idle; 20 of the user jiffies were a
    // guest's and must not count twice. cpu1: 30 busy, 10 iowait, 60 idle.
    write("cpu  0 0 0 0 0 0 0 0 0 0\n"
          "cpu0 150 0 150 900 0 0 0 0 60 0\n"
          "cpu1 520 10 100 360 110 0 0 0 0 0\n");
    const auto p = counters.collect();
    ASSERT_EQ(p.size(), 2u);
    EXPECT_DOUBLE_EQ(p[0], 50.0);
    EXPECT_DOUBLE_EQ(p[1], 30.0);

    // no jiffy elapsed, and a counter that went back: 0, not a fault
    write("cpu0 150 0 150 900 0 0 0 0 60 0\n"
          "cpu1 10 0 0 10 0 0 0 0 0 0\n");
    EXPECT_EQ(counters.collect(), (std::vector<double>{0.0, 0.0}));
}

TEST_F(StatFile, CountIsFixedAndOfflineProcessorReadsZero)
{
    ProcStatCpuCounters counters(dir.path());
    write("cpu0 0 0 0 100 0 0 0\ncpu1 0 0 0 100 0 0 0\n");
    ASSERT_EQ(counters.processorCount(), 2);
    counters.collect();

    // cpu1 goes offline and a cpu2 appears: the table keeps two slots
    write("cpu0 10 0 0 190 0 0 0\ncpu2 0 0 0 0 0 0 0\n");
    EXPECT_EQ(counters.processorCount(), 2);
    EXPECT_EQ(counters.collect(), (std::vector<double>{10.0, 0.0}));

    // back online: its first reading is a fresh start, the next a real share
    write("cpu0 20 0 0 280 0 0 0\ncpu1 50 0 0 150 0 0 0\n");
    EXPECT_EQ(counters.collect(), (std::vector<double>{10.0, 0.0}));
    write("cpu0 20 0 0 380 0 0 0\ncpu1 125 0 0 175 0 0 0\n");
    EXPECT_EQ(counters.collect(), (std::vector<double>{0.0, 75.0}));
}

TEST_F(StatFile, UnreadableFileGivesZeros)
{
    ProcStatCpuCounters counters(dir.path());
    write("cpu0 0 0 0 100 0 0 0\n");
    ASSERT_EQ(counters.processorCount(), 1);
    counters.collect();
    ASSERT_TRUE(QFile::remove(dir.path() + "/stat"));
    EXPECT_EQ(counters.collect(), (std::vector<double>{0.0}));

    ProcStatCpuCounters none(dir.path() + "/missing");
    EXPECT_EQ(none.processorCount(), 0);
    EXPECT_TRUE(none.collect().empty());
}

TEST(CpuRounding, TiesGoToEven)
{
    EXPECT_EQ(roundTiesEven(49.5), 50);
    EXPECT_EQ(roundTiesEven(50.5), 50);
    EXPECT_EQ(roundTiesEven(0.5), 0);
    EXPECT_EQ(roundTiesEven(1.5), 2);
    EXPECT_EQ(roundTiesEven(99.4999), 99);
    EXPECT_EQ(roundTiesEven(-0.5), 0);
    EXPECT_EQ(roundTiesEven(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(roundTiesEven(1e20), 0);
}

TEST(CpuUsageTable, InitCollectsAndStoresRoundedValues)
{
    FixedCounters c;
    c.count = 3;
    c.percents = {49.5, 50.5, 99.9};
    CpuUsage cpu(c);
    EXPECT_EQ(cpu.GetCpuUsage(true, false, 1), 50);
    EXPECT_EQ(cpu.ProcessorCount, 3);
    EXPECT_EQ(cpu.CpuUsageValues, (std::vector<qint32>{50, 50, 100}));
    EXPECT_EQ(c.collections, 1);

    // an index beyond the table, or below it, reads 0 and touches nothing
    EXPECT_EQ(cpu.GetCpuUsage(false, false, 3), 0);
    EXPECT_EQ(cpu.GetCpuUsage(false, false, -1), 0);
    EXPECT_EQ(cpu.value(3), 0);
    EXPECT_EQ(cpu.value(2), 100);
    EXPECT_EQ(cpu.CpuUsageValues.size(), 3u);

    // fewer readings than processors: the rest read 0
    c.percents = {12.0};
    cpu.GetCpuUsage(false, false, 0);
    EXPECT_EQ(cpu.CpuUsageValues, (std::vector<qint32>{12, 0, 0}));
}

TEST(CpuUsageTable, ClosingCallReturnsTheLastValueWithoutCollecting)
{
    FixedCounters c;
    c.count = 2;
    c.percents = {7.0, 8.0};
    CpuUsage cpu(c);
    cpu.GetCpuUsage(true, false, 0);
    c.percents = {70.0, 80.0};
    const int before = c.collections;
    EXPECT_EQ(cpu.GetCpuUsage(false, true, 0), 7);
    EXPECT_EQ(c.collections, before);
    EXPECT_EQ(cpu.CpuUsageValues, (std::vector<qint32>{7, 8}));
}

TEST(CpuUsageTable, CountNeverChangesAfterInit)
{
    FixedCounters c;
    c.count = 1;
    c.percents = {5.0};
    CpuUsage cpu(c);
    EXPECT_EQ(cpu.GetCpuUsage(false, false, 0), 0);  // before init: an empty table
    cpu.GetCpuUsage(true, false, 0);
    c.count = 4;
    c.percents = {1.0, 2.0, 3.0, 4.0};
    cpu.GetCpuUsage(false, false, 0);
    EXPECT_EQ(cpu.ProcessorCount, 1);
    EXPECT_EQ(cpu.CpuUsageValues, (std::vector<qint32>{1}));
}

TEST(CpuUsageTable, RealProcStatGivesOneEntryPerProcessor)
{
    const QByteArray text = orm::test::readAll("/proc/stat");
    int lines = 0;
    for (const QByteArray& l : text.split('\n'))
        lines += l.startsWith("cpu") && l.size() > 3 && l[3] != ' ';
    ASSERT_GT(lines, 0);

    ProcStatCpuCounters counters;
    CpuUsage cpu(counters);
    cpu.GetCpuUsage(true, false, 0);
    EXPECT_EQ(cpu.ProcessorCount, lines);
    EXPECT_EQ(cpu.CpuUsageValues, std::vector<qint32>(size_t(lines), 0));  // first collection
    volatile double spin = 0;
    for (int i = 0; i < 2000000; ++i)
        spin = spin + std::sqrt(double(i));
    cpu.GetCpuUsage(false, false, 0);
    for (qint32 v : cpu.CpuUsageValues) {
        EXPECT_GE(v, 0);
        EXPECT_LE(v, 100);
    }
}
