// The drive table and the Linux layer under it, on a hand-made multi-disk
// tree and on this machine.
#include "sources/drive_info.h"
#include "temp_tree.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace orm;
using namespace orm::test;

namespace {

// A proc of our own holding the multi-disk mounts and counters, the multi-disk
// sys, and a dev with the label links udev makes.
struct MultiDisk : ::testing::Test {
    void SetUp() override
    {
        const QString labels = dev.path() + "/disk/by-label/";
        ASSERT_TRUE(QDir().mkpath(labels));
        const char* links[][2] = {{"sdb1", "USB\\x20STICK"}, {"sr0", "Holiday\\x20Photos"},
                                  {"sda10", "other"},  // a name that merely starts alike
                                  {"nvme0n1p2", "system"}};
        for (auto [target, name] : links) {
            const QByteArray from = QByteArray("../../") + target, to = QFile::encodeName(labels + name);
            ASSERT_EQ(::symlink(from.constData(), to.constData()), 0);
        }
        ASSERT_TRUE(QDir().mkpath(proc.path() + "/self"));
        write("self/mounts", readAll(fixture("multidisk/proc/self/mounts")));
        write("diskstats", readAll(fixture("multidisk/proc/diskstats")));
    }
    void write(const QString& name, const QByteArray& text) { writeFile(proc.path() + '/' + name, text); }
    // The removable partition sdb1 alone, with these sector counts.
    void sectors(quint64 read, quint64 written)
    {
        write("diskstats", QStringLiteral("8 17 sdb1 1 0 %1 0 1 0 %2 0 0 0 0\n").arg(read).arg(written).toUtf8());
    }
    QTemporaryDir proc, dev;
    LinuxDrivePlatform p{proc.path(), fixture("multidisk/sys"), dev.path()};
};

}  // namespace

TEST_F(MultiDisk, DrivesInMountOrderWithTypesLabelsAndLocalSpace)
{
    DriveInfo info(p);
    info.UpdateDriveCounters(0);  // before enumeration: an empty table, nothing to do
    info.GetDriveInfo();
    QStringList rows;
    for (const DriveRecord& d : info.DriveTable)
        rows << d.Name + " | " + d.DriveTypeText + " | " + d.VolumeName;
    EXPECT_EQ(rows, QStringList({
                        "/ | Local Disk | system",
                        "/boot/efi | Local Disk | /dev/nvme0n1p1",
                        "/home | Local Disk | /dev/sda1",
                        "/tmp | RAM Disk | tmpfs",
                        "/mnt/media | Remote | fileserver:/export/media",
                        "/mnt/nas | Remote | //nas/share",
                        "/run/media/ann/USB STICK | Removable | USB STICK",
                        "/run/media/ann/Holiday Photos | CD/DVD-Rom | Holiday Photos",
                        "/mnt/back up\told | Local Disk | /dev/sda2",
                        "/var/lib/docker/overlay2/3f1c/merged | Unknown | overlay",
                    }));
    EXPECT_GT(info.DriveTable[0].TotalBytes, 0.0);  // "/" and "/tmp" are real folders here
    EXPECT_GT(info.DriveTable[3].TotalBytes, 0.0);

    write("self/mounts", "proc /proc proc rw 0 0\n");  // no drives: a single empty element
    info.GetDriveInfo();
    ASSERT_EQ(info.DriveTable.size(), 1u);
    EXPECT_TRUE(info.DriveTable[0].Name.isEmpty());
    EXPECT_EQ(info.indexOf("/"), -1);
}

TEST_F(MultiDisk, DiskCountersOfTheMountsDevice)
{
    const auto home = p.diskPerformance("/home");
    ASSERT_TRUE(home.has_value());
    EXPECT_DOUBLE_EQ(home->BytesRead, 833146.0 * 512);  // an old kernel's 14-field line
    EXPECT_EQ(home->StorageManagerName, QStringLiteral("sda1"));
    for (const char* none : {"/tmp", "/not/mounted"})
        EXPECT_FALSE(p.diskPerformance(none).has_value()) << none;
    EXPECT_EQ(DriveInfo(p).GetDriveSpace("/not/mounted"), std::make_pair(0.0, 0.0));
}

TEST_F(MultiDisk, ADriveUnmountedWhileRunningReadsNoSpaceOfTheFilesystemBeneath)
{
    struct stat shm {}, here {};
    QTemporaryDir place;
    if (::stat("/dev/shm", &shm) != 0 || ::stat(QFile::encodeName(place.path()).constData(), &here) != 0 ||
        shm.st_dev == here.st_dev)
        GTEST_SKIP() << "needs /dev/shm on a filesystem of its own";
    // The mount point is a link, so that the test can do what an unmount does: leave the
    // same path showing another filesystem.
    const QString point = place.filePath("vol"), beneath = place.filePath("beneath");
    ASSERT_TRUE(QDir().mkpath(beneath));
    ASSERT_EQ(::symlink("/dev/shm", QFile::encodeName(point).constData()), 0);
    write("self/mounts", "/dev/sdb1 " + QFile::encodeName(point) + " vfat rw 0 0\n");
    DriveInfo info(p);
    sectors(2, 10);
    info.GetDriveInfo();
    const DriveRecord& d = info.DriveTable[0];
    info.UpdateDriveCounters(0);
    sectors(3, 12);
    info.UpdateDriveCounters(0);
    ASSERT_GT(d.TotalBytes, 0.0);  // mounted: its own space

    ASSERT_TRUE(QFile::remove(point));
    ASSERT_EQ(::symlink(QFile::encodeName(beneath).constData(), QFile::encodeName(point).constData()), 0);
    sectors(4, 14);
    info.UpdateDriveCounters(0);
    EXPECT_EQ(d.TotalBytes, 0.0);
    EXPECT_EQ(info.GetDriveSpace(d.Name), std::make_pair(0.0, 0.0));
}

TEST_F(MultiDisk, CountersBaselineThenPreviousThenByteDeltas)
{
    write("self/mounts", "/dev/sdb1 / vfat rw 0 0\n");  // a removable disk on a folder with real space
    sectors(2, 10);
    DriveInfo info(p);
    info.GetDriveInfo();
    const DriveRecord& d = info.DriveTable[0];
    ASSERT_EQ(d.DriveTypeText, QStringLiteral("Removable"));
    info.UpdateDriveCounters(0);  // first call: only a baseline, and no space yet
    EXPECT_FALSE(d.HasPrevious);
    EXPECT_DOUBLE_EQ(d.TotalBytes, 0.0);

    sectors(3, 12);  // second: previous counters set, delta 0, space read whatever the type
    info.UpdateDriveCounters(0);
    EXPECT_DOUBLE_EQ(d.ReadDelta, 0.0);
    EXPECT_GT(d.TotalBytes, 0.0);

    sectors(5, 20);  // third: the first real difference, in bytes, not divided by time
    info.UpdateDriveCounters(0);
    EXPECT_DOUBLE_EQ(d.ReadDelta, 1024.0);
    EXPECT_DOUBLE_EQ(d.WriteDelta, 4096.0);

    // too large for the fixed-point form: skipped; just below it stays exact
    sectors(1801439850949, 20);
    info.UpdateDriveCounters(0);
    EXPECT_DOUBLE_EQ(d.ReadPrevious, 2560.0);
    sectors(1801439850948, 20);
    info.UpdateDriveCounters(0);
    EXPECT_DOUBLE_EQ(d.ReadDelta, 1801439850948.0 * 512 - 2560);
}

TEST(RealMachine, RootIsFoundWithoutThePlumbingMounts)
{
    LinuxDrivePlatform p;
    DriveInfo info(p);
    info.GetDriveInfo();
    const int root = info.indexOf("/");
    ASSERT_GE(root, 0);
    const DriveRecord& d = info.DriveTable[size_t(root)];
    for (const DriveRecord& r : info.DriveTable)
        EXPECT_FALSE(r.Name.startsWith("/proc") || r.Name.startsWith("/sys")) << qPrintable(r.Name);

    info.UpdateDriveCounters(root);
    info.UpdateDriveCounters(root);
    EXPECT_LE(d.FreeBytes, d.TotalBytes);
}
