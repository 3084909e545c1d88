// The pure parsers on text captured from real machines and on hand-made
// files with the awkward cases, the memory reader over them, and the kernel
// file they read through: the kernel's own files stay open and give fresh text
// each time; other files are opened anew, so that one replaced is seen as it is now.
#include "sources/diskstats.h"
#include "sources/kernel_file.h"
#include "sources/memory_status.h"
#include "sources/mounts.h"
#include "sources/proc_stat.h"
#include "temp_tree.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

TEST(ProcStatParser, OneRowPerProcessorGuestTimeOnceBadLinesSkipped)
{
    std::vector<CpuJiffies> captured, rows;
    parseProcStat(readAll(fixture("machine/stat")), captured);
    ASSERT_EQ(captured.size(), 2u);  // the "cpu" total line is skipped
    EXPECT_EQ(captured[0].busy, 751u + 863 + 8 + 14);

    parseProcStat("cpu0 40 5 10 100 20 3 2 1 30 4\ncpu1 abc 0 0 0 0\ncpux 1 2 3 4 5\ncpu2 7\n"
                  "cpu3 1 2 3 4\n",  // old kernel: nothing after idle
                  rows);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].total, 40u + 5 + 10 + 100 + 20 + 3 + 2 + 1);  // guest time is inside user and nice
    EXPECT_EQ(rows[0].busy, 40u + 5 + 10 + 3 + 2 + 1);
    EXPECT_EQ(rows[1].busy, 6u);  // cpu3
}

TEST(MeminfoParser, CapturedAndOldKernelFiguresNoTotalNoFigures)
{
    const auto m = parseMeminfo(readAll(fixture("machine/meminfo")));
    ASSERT_TRUE(m.has_value());
    EXPECT_DOUBLE_EQ(m->MemAvailVirtual, (12342044.0 - 75620.0) * 1024);
    EXPECT_EQ(m->MemoryLoad, 1u);  // 1.49 % used

    // no MemAvailable line; 3 GiB is above the signed 32-bit range
    const auto old = parseMeminfo(readAll(fixture("meminfo_old_3gib")));
    ASSERT_TRUE(old.has_value());
    EXPECT_DOUBLE_EQ(old->MemTotalPhys, 3221225472.0);
    EXPECT_DOUBLE_EQ(old->MemAvailPhys, (524288.0 + 131072 + 393216) * 1024);
    EXPECT_EQ(old->MemoryLoad, 67u);  // 66.67 %
    EXPECT_DOUBLE_EQ(old->MemAvailVirtual, 0.0);  // more committed than the limit: never negative

    EXPECT_FALSE(parseMeminfo("MemTotal: lots kB\n").has_value());
    EXPECT_EQ(parseMeminfo("MemTotal: 0 kB\n").value().MemoryLoad, 0u);
}

TEST(MountsParser, EscapesHiddenPointsAndTheMountInView)
{
    EXPECT_EQ(decodeMountField("a\\040b\\011c\\134d"), QStringLiteral("a b\tc\\d"));
    EXPECT_EQ(decodeMountField("odd\\9x\\04"), QStringLiteral("odd\\9x\\04"));  // not escapes: kept
    EXPECT_FALSE(isHiddenMountPoint("/run/media/ann/disk"));
    EXPECT_FALSE(isHiddenMountPoint("/devices"));  // only the folder, not a name that starts alike

    // a point mounted twice keeps its first place, with the later mount's data
    const auto twice = driveMounts(parseMounts("/dev/sda1 /data ext4 rw 0 0\n/dev/sda2 /home ext4 rw 0 0\n"
                                               "/dev/sdc1 /data xfs rw 0 0\nsystemd-1 /data autofs rw 0 0\n"));
    ASSERT_EQ(twice.size(), 2u);
    EXPECT_EQ(twice[0].device, QStringLiteral("/dev/sdc1"));
    EXPECT_EQ(twice[1].mountPoint, QStringLiteral("/home"));
}

TEST(DiskstatsParser, ShortAndBadLinesSkipped)
{
    EXPECT_EQ(parseDiskstats(readAll(fixture("multidisk/proc/diskstats"))).size(), 11u);  // not "broken"
    EXPECT_TRUE(parseDiskstats("8 1 sda1 x 0 0 0 0 0 0 0 0 0 0\n").empty());
}

TEST(UnsignedWidening, FiguresAboveTheSignedRangeStayPositive)
{
    EXPECT_DOUBLE_EQ(LargeIntegerToDouble(-1, 1), 8589934591.0);
    EXPECT_DOUBLE_EQ(LargeIntegerToDouble(quint64(0x1'8000'0000ull)), 6442450944.0);  // low part reads negative
}

TEST(MemoryReader, KeepsTheLastFiguresWhenTheFileFails)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/meminfo";
    MemoryStatus mem(dir.path());
    writeFile(path, "MemTotal: 1000 kB\nMemAvailable: 250 kB\n");
    mem.GetMemoryStatus();
    writeFile(path, "garbage\n");
    mem.GetMemoryStatus();
    ASSERT_TRUE(QFile::remove(path));
    mem.GetMemoryStatus();
    EXPECT_EQ(mem.figures.MemoryLoad, 75u);
    EXPECT_DOUBLE_EQ(mem.figures.MemAvailPhys, 256000.0);
}

namespace {

// The "rchar" count of /proc/self/io: bytes this process has read so far.
quint64 readChars(QByteArrayView io)
{
    const QByteArray text = io.toByteArray();
    const qsizetype at = text.indexOf("rchar: ");
    return at < 0 ? 0 : text.mid(at + 7, text.indexOf('\n', at) - at - 7).toULongLong();
}

TEST(KernelFile, KeptOpenProcFileGivesFreshWholeTextEachRead)
{
    KernelFile io(QStringLiteral("/proc/self/io"));
    const quint64 before = readChars(io.read().value_or(QByteArray()));
    ASSERT_GT(before, 0u);
    // /proc/self/maps comes a page at a time; reading it moves rchar on.
    KernelFile maps(QStringLiteral("/proc/self/maps"));
    const auto text = maps.read();
    const QByteArray direct = readAll(QStringLiteral("/proc/self/maps"));
    ASSERT_TRUE(text.has_value() && direct.size() > 4096);
    EXPECT_NEAR(double(text->size()), double(direct.size()), direct.size() * 0.1);
    EXPECT_GT(readChars(io.read().value_or(QByteArray())), before);
}

TEST(KernelFile, OtherFilesAreSeenAsTheyAreNow)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("stat"));
    KernelFile file(path);
    EXPECT_FALSE(file.read().has_value());  // not there yet
    writeFile(path, "one\n");
    EXPECT_EQ(file.read().value(), "one\n");
    // Replaced by a new file under the same name, as an atomic writer does.
    writeFile(path + QStringLiteral(".new"), "two, longer\n");
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QFile::rename(path + QStringLiteral(".new"), path));
    EXPECT_EQ(file.read().value(), "two, longer\n");
}

}  // namespace
