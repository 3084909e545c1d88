// The pure parsers, on text captured from a real machine and on hand-made
// files with the awkward cases.
#include "sources/diskstats.h"
#include "sources/meminfo.h"
#include "sources/mounts.h"
#include "sources/proc_stat.h"
#include "temp_tree.h"

#include <gtest/gtest.h>

using namespace orm;
using orm::test::fixture;
using orm::test::readAll;

TEST(ProcStatParser, CapturedFileGivesOneRowPerProcessorAndSkipsTheTotal)
{
    const QByteArray text = readAll(fixture("machine/stat"));
    ASSERT_FALSE(text.isEmpty());
    const auto rows = parseProcStat(text);
    ASSERT_EQ(rows.size(), 2u);
    // cpu0 751 0 863 74648 13 0 8 14 0 0
    EXPECT_EQ(rows[0].index, 0);
    EXPECT_EQ(rows[0].total, 751u + 863 + 74648 + 13 + 8 + 14);
    EXPECT_EQ(rows[0].busy, 751u + 863 + 8 + 14);
    EXPECT_EQ(rows[1].index, 1);
}

TEST(ProcStatParser, GuestTimeIsNotCountedTwiceAndBadLinesAreSkipped)
{
    const QByteArray text = "cpu  10 0 10 80 0 0 0 0 0 0\n"
                            "cpu0 40 5 10 100 20 3 2 1 30 4\n"
                            "cpu1 abc 0 0 0 0\n"
                            "cpu3 1 2 3 4\n"           // old kernel: no iowait and after
                            "cpux 1 2 3 4 5\n"
                            "cpu2 7\n"
                            "intr 1 2 3\n";
    const auto rows = parseProcStat(text);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].index, 0);
    EXPECT_EQ(rows[0].total, 40u + 5 + 10 + 100 + 20 + 3 + 2 + 1);
    EXPECT_EQ(rows[0].busy, 40u + 5 + 10 + 3 + 2 + 1);
    EXPECT_EQ(rows[1].index, 3);
    EXPECT_EQ(rows[1].total, 10u);
    EXPECT_EQ(rows[1].busy, 6u);
    EXPECT_TRUE(parseProcStat("").empty());
}

TEST(MeminfoParser, CapturedFileMapsTheFieldsToBytes)
{
    const auto m = parseMeminfo(readAll(fixture("machine/meminfo")));
    ASSERT_TRUE(m.has_value());
    EXPECT_DOUBLE_EQ(m->MemTotalPhys, 24684092.0 * 1024);
    EXPECT_DOUBLE_EQ(m->MemAvailPhys, 24317244.0 * 1024);
    EXPECT_DOUBLE_EQ(m->MemTotalPageFile, 0.0);
    EXPECT_DOUBLE_EQ(m->MemAvailPageFile, 0.0);
    EXPECT_DOUBLE_EQ(m->MemTotalVirtual, 12342044.0 * 1024);
    EXPECT_DOUBLE_EQ(m->MemAvailVirtual, (12342044.0 - 75620.0) * 1024);
    EXPECT_EQ(m->MemoryLoad, 1u);  // 1.49 % used
}

TEST(MeminfoParser, OldKernelWithoutMemAvailableAndOvercommit)
{
    const auto m = parseMeminfo(readAll(fixture("meminfo_old_3gib")));
    ASSERT_TRUE(m.has_value());
    // 3 GiB: above the signed 32-bit range, still a positive figure
    EXPECT_DOUBLE_EQ(m->MemTotalPhys, 3221225472.0);
    EXPECT_DOUBLE_EQ(m->MemAvailPhys, (524288.0 + 131072 + 393216) * 1024);
    EXPECT_EQ(m->MemoryLoad, 67u);  // 2 of 3 GiB used: 66.67 %
    EXPECT_DOUBLE_EQ(m->MemTotalPageFile, 2147483648.0);
    EXPECT_DOUBLE_EQ(m->MemAvailPageFile, 1073741824.0);
    // more committed than the limit: nothing available, never negative
    EXPECT_DOUBLE_EQ(m->MemAvailVirtual, 0.0);
}

TEST(MeminfoParser, NoTotalMeansNoFigures)
{
    EXPECT_FALSE(parseMeminfo("").has_value());
    EXPECT_FALSE(parseMeminfo("MemFree: 12 kB\nSwapTotal: 0 kB\n").has_value());
    EXPECT_FALSE(parseMeminfo("MemTotal: lots kB\n").has_value());
    const auto zero = parseMeminfo("MemTotal: 0 kB\n");
    ASSERT_TRUE(zero.has_value());
    EXPECT_EQ(zero->MemoryLoad, 0u);
}

TEST(MountsParser, DecodesOctalEscapes)
{
    EXPECT_EQ(decodeMountField("/run/media/ann/USB\\040STICK"), QStringLiteral("/run/media/ann/USB STICK"));
    EXPECT_EQ(decodeMountField("a\\011b\\012c\\134d"), QStringLiteral("a\tb\nc\\d"));
    // not an escape: kept as written
    EXPECT_EQ(decodeMountField("odd\\9x\\04"), QStringLiteral("odd\\9x\\04"));
}

TEST(MountsParser, CapturedFileKeepsOnlyTheRoot)
{
    const auto all = parseMounts(readAll(fixture("machine/self/mounts")));
    EXPECT_GE(all.size(), 10u);
    const auto drives = driveMounts(all);
    ASSERT_EQ(drives.size(), 1u);
    EXPECT_EQ(drives[0].mountPoint, QStringLiteral("/"));
    EXPECT_EQ(drives[0].device, QStringLiteral("/dev/vda"));
    EXPECT_EQ(drives[0].fsType, QStringLiteral("ext4"));
}

TEST(MountsParser, MultiDiskMachineDrivesInMountOrder)
{
    const auto all = parseMounts(readAll(fixture("multidisk/proc/self/mounts")));
    std::vector<QString> points;
    for (const MountEntry& m : driveMounts(all))
        points.push_back(m.mountPoint);
    const std::vector<QString> expected = {
        "/", "/boot/efi", "/home", "/tmp", "/mnt/media", "/mnt/nas", "/run/media/ann/USB STICK",
        "/run/media/ann/Holiday Photos", "/mnt/back up\told", "/var/lib/docker/overlay2/3f1c/merged",
    };
    EXPECT_EQ(points, expected);
}

TEST(MountsParser, SecondMountOnAPointKeepsTheFirstPlaceWithTheMountInView)
{
    const auto drives = driveMounts(parseMounts("/dev/sda1 /data ext4 rw 0 0\n"
                                                "/dev/sda2 /home ext4 rw 0 0\n"
                                                "/dev/sdc1 /data xfs rw 0 0\n"
                                                "systemd-1 /data autofs rw 0 0\n"));
    ASSERT_EQ(drives.size(), 2u);
    EXPECT_EQ(drives[0].mountPoint, QStringLiteral("/data"));
    EXPECT_EQ(drives[0].device, QStringLiteral("/dev/sdc1"));
    EXPECT_EQ(drives[1].mountPoint, QStringLiteral("/home"));
}

TEST(MountsParser, PlumbingMountPointsAreHidden)
{
    EXPECT_TRUE(isHiddenMountPoint("/run"));
    EXPECT_TRUE(isHiddenMountPoint("/run/user/1000"));
    EXPECT_TRUE(isHiddenMountPoint("/run/media"));
    EXPECT_FALSE(isHiddenMountPoint("/run/media/ann/disk"));
    EXPECT_TRUE(isHiddenMountPoint("/snap/core/1"));
    EXPECT_TRUE(isHiddenMountPoint("/dev/shm"));
    EXPECT_FALSE(isHiddenMountPoint("/devices"));  // only the folder itself, not a name that starts alike
    EXPECT_FALSE(isHiddenMountPoint("/"));
    EXPECT_FALSE(isHiddenMountPoint("/runner"));
}

TEST(DiskstatsParser, CapturedFileAndMixedFieldCounts)
{
    const auto machine = parseDiskstats(readAll(fixture("machine/diskstats")));
    ASSERT_FALSE(machine.empty());
    bool sawVda = false;
    for (const DiskStatsRow& r : machine) {
        if (r.name == QStringLiteral("vda")) {
            sawVda = true;
            EXPECT_EQ(r.major, 254u);
            EXPECT_EQ(r.minor, 0u);
        }
    }
    EXPECT_TRUE(sawVda);

    const auto rows = parseDiskstats(readAll(fixture("multidisk/proc/diskstats")));
    ASSERT_EQ(rows.size(), 11u);  // the short "broken" line is skipped
    const DiskStatsRow& sda1 = rows[5];
    EXPECT_EQ(sda1.name, QStringLiteral("sda1"));  // 14-field line of an old kernel
    EXPECT_EQ(sda1.major, 8u);
    EXPECT_EQ(sda1.minor, 1u);
    EXPECT_EQ(sda1.readsCompleted, 4811u);
    EXPECT_EQ(sda1.sectorsRead, 833146u);
    EXPECT_EQ(sda1.sectorsWritten, 401826u);
    EXPECT_EQ(sda1.weightedMsDoingIo, 24132u);
    EXPECT_EQ(rows[8].name, QStringLiteral("sdb1"));
    EXPECT_EQ(rows[8].ioInProgress, 2u);
}
