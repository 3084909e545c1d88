// Memory figures: the reader over a /proc folder, and the widening of
// unsigned platform fields.
#include "sources/memory_status.h"
#include "sources/unsigned_double.h"
#include "temp_tree.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <cmath>

using namespace orm;
using orm::test::fixture;
using orm::test::readAll;
using orm::test::writeFile;

TEST(UnsignedWidening, FieldsAboveTheSignedRangeStayPositive)
{
    EXPECT_DOUBLE_EQ(UnsignedToDouble(0), 0.0);
    EXPECT_DOUBLE_EQ(UnsignedToDouble(0x7FFFFFFF), 2147483647.0);
    EXPECT_DOUBLE_EQ(UnsignedToDouble(qint32(0x80000000u)), 2147483648.0);
    EXPECT_DOUBLE_EQ(UnsignedToDouble(qint32(0xC0000000u)), 3221225472.0);  // 3 GiB
    EXPECT_DOUBLE_EQ(UnsignedToDouble(-1), 4294967295.0);
}

TEST(UnsignedWidening, LargeFigureFromItsHalves)
{
    // a low part of 0x80000000 gets 4294967296.0 added
    EXPECT_DOUBLE_EQ(LargeIntegerToDouble(qint32(0x80000000u), 0), 2147483648.0);
    EXPECT_DOUBLE_EQ(LargeIntegerToDouble(-1, 1), 8589934591.0);
    EXPECT_DOUBLE_EQ(LargeIntegerToDouble(quint64(0x1234'8000'0001ull)), double(0x1234'8000'0001ull));
    EXPECT_DOUBLE_EQ(LargeIntegerToDouble(quint64(2000398934016ull)), 2000398934016.0);
}

TEST(MemoryReader, ReadsTheFileAndKeepsTheLastFiguresWhenItCannot)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/meminfo";
    ASSERT_TRUE(writeFile(path, readAll(fixture("meminfo_old_3gib"))));
    MemoryStatus mem(dir.path());
    mem.GetMemoryStatus();
    EXPECT_DOUBLE_EQ(mem.figures.MemTotalPhys, 3221225472.0);
    EXPECT_EQ(mem.figures.MemoryLoad, 67u);

    ASSERT_TRUE(writeFile(path, "MemTotal: 1000 kB\nMemAvailable: 250 kB\n"));
    mem.GetMemoryStatus();
    EXPECT_DOUBLE_EQ(mem.figures.MemTotalPhys, 1024000.0);
    EXPECT_EQ(mem.figures.MemoryLoad, 75u);
    EXPECT_DOUBLE_EQ(mem.figures.MemTotalPageFile, 0.0);  // no swap lines: none

    ASSERT_TRUE(writeFile(path, "garbage\n"));
    mem.GetMemoryStatus();
    EXPECT_DOUBLE_EQ(mem.figures.MemTotalPhys, 1024000.0);

    ASSERT_TRUE(QFile::remove(path));
    mem.GetMemoryStatus();
    EXPECT_EQ(mem.figures.MemoryLoad, 75u);
    EXPECT_DOUBLE_EQ(mem.figures.MemAvailPhys, 256000.0);
}

TEST(MemoryReader, RealMachine)
{
    MemoryStatus mem;
    mem.GetMemoryStatus();
    const MemoryFigures& m = mem.figures;
    EXPECT_GT(m.MemTotalPhys, 0.0);
    EXPECT_GT(m.MemAvailPhys, 0.0);
    EXPECT_LE(m.MemAvailPhys, m.MemTotalPhys);
    EXPECT_LE(m.MemAvailPageFile, m.MemTotalPageFile);
    EXPECT_LE(m.MemAvailVirtual, m.MemTotalVirtual);
    EXPECT_LE(m.MemoryLoad, 100u);
    // whole bytes
    EXPECT_EQ(m.MemTotalPhys, std::floor(m.MemTotalPhys));
}
