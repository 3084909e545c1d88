// The Linux drive layer on a hand-made multi-disk tree, and on this machine.
#include "sources/drive_info.h"
#include "temp_tree.h"

#include <QTemporaryDir>
#include <QTemporaryFile>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace orm;
using orm::test::fixture;
using orm::test::readAll;
using orm::test::writeFile;

namespace {

// The multi-disk tree with a /dev of our own holding the label links udev
// would make.
class MultiDisk : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dev.isValid());
        const QString labels = dev.path() + "/disk/by-label";
        ASSERT_TRUE(QDir().mkpath(labels));
        link("../../sdb1", labels + "/USB\\x20STICK");
        link("../../sr0", labels + "/Holiday\\x20Photos");
        link("../../sda10", labels + "/other");  // a name that merely starts alike
        link("../../nvme0n1p2", labels + "/system");
    }
    static void link(const QString& target, const QString& name)
    {
        ASSERT_EQ(::symlink(QFile::encodeName(target).constData(), QFile::encodeName(name).constData()), 0);
    }
    LinuxDrivePlatform platform() const
    {
        return LinuxDrivePlatform(fixture("multidisk/proc"), fixture("multidisk/sys"), dev.path());
    }
    QTemporaryDir dev;
};

}  // namespace

TEST_F(MultiDisk, TypesFollowFilesystemDeviceAndRemovableFlag)
{
    LinuxDrivePlatform p = platform();
    const QStringList roots = p.driveStrings();
    ASSERT_EQ(roots.size(), 10);
    EXPECT_EQ(p.driveType("/"), DriveFixed);              // nvme partition
    EXPECT_EQ(p.driveType("/boot/efi"), DriveFixed);
    EXPECT_EQ(p.driveType("/home"), DriveFixed);
    EXPECT_EQ(p.driveType("/tmp"), DriveRamDisk);
    EXPECT_EQ(p.driveType("/mnt/media"), DriveRemote);    // nfs4
    EXPECT_EQ(p.driveType("/mnt/nas"), DriveRemote);      // cifs
    EXPECT_EQ(p.driveType("/run/media/ann/USB STICK"), DriveRemovable);
    EXPECT_EQ(p.driveType("/run/media/ann/Holiday Photos"), DriveCdRom);
    EXPECT_EQ(p.driveType("/mnt/back up\told"), DriveFixed);
    EXPECT_EQ(p.driveType("/var/lib/docker/overlay2/3f1c/merged"), DriveUnknown);
    EXPECT_EQ(p.driveType("/not/mounted"), DriveNoRootDir);

    EXPECT_TRUE(p.isRemovable("sdb1"));
    EXPECT_TRUE(p.isRemovable("sdb"));
    EXPECT_FALSE(p.isRemovable("sda2"));
    EXPECT_FALSE(p.isRemovable("nosuch"));
}

TEST_F(MultiDisk, LabelsElseTheDeviceName)
{
    LinuxDrivePlatform p = platform();
    p.driveStrings();
    EXPECT_EQ(p.volumeName("/run/media/ann/USB STICK"), QStringLiteral("USB STICK"));
    EXPECT_EQ(p.volumeName("/run/media/ann/Holiday Photos"), QStringLiteral("Holiday Photos"));
    EXPECT_EQ(p.volumeName("/"), QStringLiteral("system"));
    EXPECT_EQ(p.volumeName("/home"), QStringLiteral("/dev/sda1"));
    EXPECT_EQ(p.volumeName("/tmp"), QStringLiteral("tmpfs"));
    EXPECT_EQ(p.volumeName("/mnt/media"), QStringLiteral("fileserver:/export/media"));
    EXPECT_FALSE(p.volumeName("/not/mounted").has_value());
}

TEST_F(MultiDisk, DiskCountersOfTheMountsDevice)
{
    LinuxDrivePlatform p = platform();
    p.driveStrings();
    const auto home = p.diskPerformance("/home");
    ASSERT_TRUE(home.has_value());
    EXPECT_DOUBLE_EQ(home->BytesRead, 833146.0 * 512);
    EXPECT_DOUBLE_EQ(home->BytesWritten, 401826.0 * 512);
    EXPECT_EQ(home->ReadCount, 4811u);
    EXPECT_EQ(home->WriteCount, 2210u);
    EXPECT_EQ(home->StorageDeviceNumber, packDeviceNumber(8, 1));
    EXPECT_EQ(home->StorageManagerName, QStringLiteral("sda1"));
    EXPECT_GT(home->QueryTime, 0.0);

    const auto usb = p.diskPerformance("/run/media/ann/USB STICK");
    ASSERT_TRUE(usb.has_value());
    EXPECT_EQ(usb->StorageDeviceNumber, packDeviceNumber(8, 17));
    EXPECT_EQ(usb->QueueDepth, 2u);
    EXPECT_NE(p.diskPerformance("/")->StorageDeviceNumber, p.diskPerformance("/boot/efi")->StorageDeviceNumber);

    for (const char* none : {"/tmp", "/mnt/media", "/mnt/nas", "/var/lib/docker/overlay2/3f1c/merged", "/not/mounted"})
        EXPECT_FALSE(p.diskPerformance(none).has_value()) << none;
    EXPECT_NE(packDeviceNumber(0, 1), 0u);
}

TEST_F(MultiDisk, CountersRunThroughTheDriveTable)
{
    // a copy of the tree whose diskstats moves between readings
    QTemporaryDir proc;
    ASSERT_TRUE(writeFile(proc.path() + "/self/mounts", readAll(fixture("multidisk/proc/self/mounts"))));
    const QByteArray stats = readAll(fixture("multidisk/proc/diskstats"));
    ASSERT_TRUE(writeFile(proc.path() + "/diskstats", stats));
    LinuxDrivePlatform p(proc.path(), fixture("multidisk/sys"), dev.path());
    DriveInfo info(p);
    info.GetDriveInfo();
    ASSERT_EQ(info.DriveTable.size(), 10u);
    const int home = info.indexOf("/home");
    ASSERT_EQ(home, 2);
    EXPECT_EQ(info.DriveTable[6].DriveTypeText, QStringLiteral("Removable"));
    EXPECT_EQ(info.DriveTable[6].VolumeName, QStringLiteral("USB STICK"));
    EXPECT_EQ(info.DriveTable[7].DriveTypeText, QStringLiteral("CD/DVD-Rom"));
    EXPECT_EQ(info.DriveTable[4].DriveTypeText, QStringLiteral("Remote"));
    EXPECT_DOUBLE_EQ(info.DriveTable[4].TotalBytes, 0.0);

    info.UpdateDriveCounters(home);
    info.UpdateDriveCounters(home);
    const DriveRecord& d = info.DriveTable[size_t(home)];
    EXPECT_TRUE(d.HasPrevious);
    EXPECT_DOUBLE_EQ(d.ReadDelta, 0.0);

    QByteArray moved = stats;
    moved.replace("8       1 sda1 4811 1102 833146 9031 2210 331 401826",
                  "8       1 sda1 4815 1102 833154 9031 2214 331 401866");
    ASSERT_NE(moved, stats);
    ASSERT_TRUE(writeFile(proc.path() + "/diskstats", moved));
    info.UpdateDriveCounters(home);
    EXPECT_DOUBLE_EQ(d.ReadDelta, 8.0 * 512);
    EXPECT_DOUBLE_EQ(d.WriteDelta, 40.0 * 512);

    // the RAM disk has no device: it stays at the baseline
    const int tmp = info.indexOf("/tmp");
    for (int i = 0; i < 3; ++i)
        info.UpdateDriveCounters(tmp);
    EXPECT_FALSE(info.DriveTable[size_t(tmp)].HasPrevious);
    EXPECT_DOUBLE_EQ(info.DriveTable[size_t(tmp)].Performance.QueryTime, -1.0);
}

TEST(RealMachine, RootIsFoundAndItsCountersMove)
{
    LinuxDrivePlatform p;
    DriveInfo info(p);
    info.GetDriveInfo();
    const int root = info.indexOf("/");
    ASSERT_GE(root, 0);
    const DriveRecord& d = info.DriveTable[size_t(root)];
    if (d.DriveTypeText == QStringLiteral("Local Disk")) {
        EXPECT_GT(d.TotalBytes, 0.0);
        EXPECT_LE(d.FreeBytes, d.TotalBytes);
    }
    for (const DriveRecord& r : info.DriveTable) {
        EXPECT_FALSE(r.Name.startsWith("/proc") || r.Name.startsWith("/sys") || r.Name == "/dev/shm")
            << r.Name.toStdString();
    }

    info.UpdateDriveCounters(root);
    info.UpdateDriveCounters(root);
    if (d.Performance.QueryTime == -1.0) {
        EXPECT_FALSE(d.HasPrevious);  // / has no block device here (overlay and the like)
        return;
    }
    EXPECT_NE(d.Performance.StorageDeviceNumber, 0u);
    EXPECT_TRUE(d.HasPrevious);
    EXPECT_GT(d.TotalBytes, 0.0);

    // write and sync a little to a file on the same filesystem, so the
    // device's write counter has to move
    QTemporaryFile file(QDir::tempPath() + "/orm-sys-XXXXXX");
    ASSERT_TRUE(file.open());
    struct stat fileStat {}, rootStat {};
    const bool sameDevice = ::fstat(file.handle(), &fileStat) == 0 && ::stat("/", &rootStat) == 0
        && fileStat.st_dev == rootStat.st_dev;
    file.write(QByteArray(256 * 1024, 'x'));
    file.flush();
    ASSERT_EQ(::fsync(file.handle()), 0);
    info.UpdateDriveCounters(root);
    EXPECT_GE(d.ReadDelta, 0.0);
    if (sameDevice) {
        EXPECT_GT(d.WriteDelta, 0.0);
    }
}
