// Processor load: the jiffy arithmetic between snapshots of a stat file, the
// rounding, and the table the tick reads.
#include "sources/cpu_usage.h"
#include "temp_tree.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <limits>

using namespace orm;
using Percents = std::vector<double>;
using Values = std::vector<qint32>;

namespace {

struct StatFile : ::testing::Test {
    void write(const QByteArray& text) { orm::test::writeFile(dir.path() + "/stat", text); }
    QTemporaryDir dir;
    ProcStatCpuCounters counters{dir.path()};
};

// Hands the table known percentages and counts the collections.
struct FixedCounters final : CpuCounters {
    int processorCount() override { return count; }
    std::vector<double> collect() override
    {
        ++collections;
        return percents;
    }
    int count = 0, collections = 0;
    std::vector<double> percents;
};

}  // namespace

TEST_F(StatFile, BusyShareBetweenSnapshotsOfAFixedCount)
{
    write("cpu  0 0 0 0 0 0 0 0 0 0\ncpu0 100 0 100 800 0 0 0 0 40 0\ncpu1 500 10 90 300 100 0 0 0 0 0\n");
    EXPECT_EQ(counters.collect(), Percents({0.0, 0.0}));  // first collection

    // cpu0: 100 of 200 busy, 20 of the user jiffies a guest's, not counted twice;
    // cpu1: 25 busy, 10 iowait, 65 idle
    write("cpu0 150 0 150 900 0 0 0 0 60 0\ncpu1 515 10 100 365 110 0 0 0 0 0\n");
    EXPECT_EQ(counters.collect(), Percents({50.0, 25.0}));

    // no jiffy elapsed, and a counter that went back: 0, not a fault
    write("cpu0 150 0 150 900 0 0 0 0 60 0\ncpu1 10 0 0 10 0 0 0 0 0 0\n");
    EXPECT_EQ(counters.collect(), Percents({0.0, 0.0}));

    // the count stays as first read: cpu1 offline reads 0, a new cpu2 is not seen
    write("cpu0 160 0 150 990 0 0 0\ncpu2 0 0 0 0 0 0 0\n");
    EXPECT_EQ(counters.collect(), Percents({10.0, 0.0}));
    ASSERT_TRUE(QFile::remove(dir.path() + "/stat"));  // unreadable: zeros
    EXPECT_EQ(counters.collect(), Percents({0.0, 0.0}));
    EXPECT_TRUE(ProcStatCpuCounters(dir.path() + "/missing").collect().empty());
}

TEST(CpuUsageTable, InitFixesTheCountAndStoresValuesRoundedTiesToEven)
{
    FixedCounters c;
    c.count = 3;
    c.percents = {50.5, 1, std::numeric_limits<double>::quiet_NaN()};
    CpuUsage cpu(c);
    EXPECT_EQ(cpu.GetCpuUsage(false, false, 0), 0);  // before init: an empty table
    EXPECT_EQ(cpu.GetCpuUsage(true, false, 0), 50);
    EXPECT_EQ(cpu.CpuUsageValues, Values({50, 1, 0}));  // NaN reads 0

    // a later count is ignored; fewer readings than processors: the rest read 0
    c.count = 4;
    c.percents = {12.0};
    cpu.GetCpuUsage(false, false, 0);
    EXPECT_EQ(cpu.CpuUsageValues, Values({12, 0, 0}));

    // the closing call returns the last value and collects nothing
    const int collections = c.collections;
    c.percents = {70.0, 80.0, 90.0};
    EXPECT_EQ(cpu.GetCpuUsage(false, true, 0), 12);
    EXPECT_EQ(c.collections, collections);
}
