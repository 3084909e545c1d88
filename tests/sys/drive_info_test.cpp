// The drive table's rules on a fake platform: enumeration, the type table,
// when space is read, and the run of UpdateDriveCounters.
#include "sources/drive_info.h"
#include "temp_tree.h"

#include <QHash>
#include <gtest/gtest.h>

using namespace orm;

namespace {

struct FakeDrive {
    QString root;
    std::optional<QString> label;
    int type = DriveFixed;
    std::optional<DriveSpaceFigures> space;
    std::optional<DiskPerformance> performance;
};

class FakeDrivePlatform final : public DrivePlatform {
public:
    QStringList driveStrings() override
    {
        QStringList roots;
        for (const FakeDrive& d : drives)
            roots << d.root;
        return roots;
    }
    std::optional<QString> volumeName(const QString& root) override { return find(root) ? find(root)->label : std::nullopt; }
    int driveType(const QString& root) override { return find(root) ? find(root)->type : DriveNoRootDir; }
    std::optional<DriveSpaceFigures> diskFreeSpace(const QString& name) override
    {
        ++spaceCalls[name];
        return find(name) ? find(name)->space : std::nullopt;
    }
    std::optional<DiskPerformance> diskPerformance(const QString& name) override
    {
        return find(name) ? find(name)->performance : std::nullopt;
    }
    FakeDrive* find(const QString& root)
    {
        for (FakeDrive& d : drives) {
            if (d.root == root)
                return &d;
        }
        return nullptr;
    }
    std::vector<FakeDrive> drives;
    QHash<QString, int> spaceCalls;
};

DriveSpaceFigures space(quint64 total, quint64 free)
{
    return {free, total, free};
}

DiskPerformance reading(double read, double written, quint32 device = packDeviceNumber(8, 1))
{
    DiskPerformance p;
    p.BytesRead = read;
    p.BytesWritten = written;
    p.QueryTime = 1;
    p.StorageDeviceNumber = device;
    p.StorageManagerName = QStringLiteral("sda1");
    return p;
}

}  // namespace

TEST(DriveTable, NoDrivesLeavesOneEmptyElement)
{
    FakeDrivePlatform p;
    p.drives = {{"/", QStringLiteral("root"), DriveFixed, space(100, 40), {}}};
    DriveInfo info(p);
    info.GetDriveInfo();
    ASSERT_EQ(info.DriveTable.size(), 1u);
    EXPECT_EQ(info.DriveTable[0].Name, QStringLiteral("/"));

    p.drives.clear();
    info.GetDriveInfo();
    ASSERT_EQ(info.DriveTable.size(), 1u);
    EXPECT_TRUE(info.DriveTable[0].Name.isEmpty());
    EXPECT_TRUE(info.DriveTable[0].VolumeName.isEmpty());
    EXPECT_DOUBLE_EQ(info.DriveTable[0].TotalBytes, 0.0);
    EXPECT_TRUE(info.DriveIndexByName.isEmpty());
    EXPECT_EQ(info.indexOf("/"), -1);
    EXPECT_EQ(info.indexOf(""), -1);
}

TEST(DriveTable, TypesTextsLabelsAndSpaceOnlyForLocalAndRamDisks)
{
    FakeDrivePlatform p;
    p.drives = {
        {"/", QStringLiteral("system"), DriveFixed, space(1000, 400), {}},
        {"/media/usb", QStringLiteral("USB STICK"), DriveRemovable, space(64, 32), {}},
        {"/mnt/nas", std::nullopt, DriveRemote, space(5000, 2500), {}},
        {"/media/cd", std::nullopt, DriveCdRom, std::nullopt, {}},
        {"/tmp", QStringLiteral("tmpfs"), DriveRamDisk, space(300, 299), {}},
        {"/var/lib/x", QStringLiteral("overlay"), DriveUnknown, space(9, 9), {}},
        {"/gone", std::nullopt, DriveNoRootDir, space(9, 9), {}},
        {"/odd", std::nullopt, 17, space(9, 9), {}},
    };
    DriveInfo info(p);
    info.GetDriveInfo();
    ASSERT_EQ(info.DriveTable.size(), 8u);

    const char* texts[] = {"Local Disk", "Removable", "Remote", "CD/DVD-Rom", "RAM Disk", "Unknown", "Unknown", "Unknown"};
    for (size_t i = 0; i < 8; ++i) {
        const DriveRecord& d = info.DriveTable[i];
        EXPECT_EQ(d.Name, p.drives[i].root);
        EXPECT_EQ(info.indexOf(d.Name), int(i));
        EXPECT_EQ(d.DriveTypeText, QString::fromLatin1(texts[i])) << i;
        EXPECT_EQ(d.VolumeName, p.drives[i].label.value_or(QString())) << i;
        EXPECT_FALSE(d.HasPrevious);
        EXPECT_EQ(d.Performance.StorageDeviceNumber, 0u);
    }
    EXPECT_DOUBLE_EQ(info.DriveTable[0].TotalBytes, 1000.0);
    EXPECT_DOUBLE_EQ(info.DriveTable[0].FreeBytes, 400.0);
    EXPECT_DOUBLE_EQ(info.DriveTable[4].TotalBytes, 300.0);
    EXPECT_DOUBLE_EQ(info.DriveTable[4].FreeBytes, 299.0);
    for (size_t i : {1, 2, 3, 5, 6, 7}) {
        EXPECT_DOUBLE_EQ(info.DriveTable[i].TotalBytes, 0.0) << i;
        EXPECT_DOUBLE_EQ(info.DriveTable[i].FreeBytes, 0.0) << i;
        EXPECT_EQ(p.spaceCalls.value(p.drives[i].root), 0) << i;
    }
    // free and total each have their own call
    EXPECT_EQ(p.spaceCalls.value("/"), 2);
}

TEST(DriveTable, SpaceIsTotalThenFreeToTheCaller)
{
    FakeDrivePlatform p;
    DriveSpaceFigures s;
    s.TotalBytes = 0x1'8000'0000ull;       // low part 0x80000000
    s.FreeBytesAvailable = 0x8000'0000ull;
    s.TotalFreeBytes = 0x1'0000'0000ull;   // the volume's own free figure is not used
    p.drives = {{"/", std::nullopt, DriveFixed, s, {}}};
    DriveInfo info(p);
    const auto [total, free] = info.GetDriveSpace("/");
    EXPECT_DOUBLE_EQ(total, 6442450944.0);
    EXPECT_DOUBLE_EQ(free, 2147483648.0);

    const auto failed = info.GetDriveSpace("/nowhere");
    EXPECT_DOUBLE_EQ(failed.first, 0.0);
    EXPECT_DOUBLE_EQ(failed.second, 0.0);
}

TEST(DriveTable, FailedDiskReadingIsZerosWithQueryTimeMinusOne)
{
    FakeDrivePlatform p;
    p.drives = {{"/tmp", std::nullopt, DriveRamDisk, space(1, 1), std::nullopt}};
    DriveInfo info(p);
    const DiskPerformance r = info.GetDiskPerformance("/tmp");
    EXPECT_DOUBLE_EQ(r.QueryTime, -1.0);
    EXPECT_DOUBLE_EQ(r.BytesRead, 0.0);
    EXPECT_DOUBLE_EQ(r.BytesWritten, 0.0);
    EXPECT_EQ(r.StorageDeviceNumber, 0u);
    EXPECT_EQ(r.ReadCount, 0u);
    EXPECT_TRUE(r.StorageManagerName.isEmpty());
}

TEST(DriveCounters, BaselineThenPreviousThenRealDelta)
{
    FakeDrivePlatform p;
    p.drives = {{"/data", std::nullopt, DriveRemovable, space(800, 300), reading(1000, 5000)}};
    DriveInfo info(p);
    info.GetDriveInfo();
    const DriveRecord& d = info.DriveTable[0];
    EXPECT_DOUBLE_EQ(d.TotalBytes, 0.0);  // removable: no space at enumeration

    // first call: only a baseline
    info.UpdateDriveCounters(0);
    EXPECT_FALSE(d.HasPrevious);
    EXPECT_DOUBLE_EQ(d.ReadDelta, 0.0);
    EXPECT_DOUBLE_EQ(d.Performance.BytesRead, 1000.0);
    EXPECT_DOUBLE_EQ(d.TotalBytes, 0.0);
    EXPECT_EQ(p.spaceCalls.value("/data"), 0);

    // second: the previous counters are set and the delta is 0; space is
    // refreshed whatever the type
    p.drives[0].performance = reading(1500, 5200);
    info.UpdateDriveCounters(0);
    EXPECT_TRUE(d.HasPrevious);
    EXPECT_DOUBLE_EQ(d.ReadDelta, 0.0);
    EXPECT_DOUBLE_EQ(d.WriteDelta, 0.0);
    EXPECT_DOUBLE_EQ(d.ReadPrevious, 1500.0);
    EXPECT_DOUBLE_EQ(d.ReadCurrent, 1500.0);
    EXPECT_DOUBLE_EQ(d.TotalBytes, 800.0);
    EXPECT_DOUBLE_EQ(d.FreeBytes, 300.0);

    // third: the first real difference, in bytes, not divided by time
    p.drives[0].performance = reading(1800, 9200);
    p.drives[0].space = space(800, 250);
    info.UpdateDriveCounters(0);
    EXPECT_DOUBLE_EQ(d.ReadDelta, 300.0);
    EXPECT_DOUBLE_EQ(d.WriteDelta, 4000.0);
    EXPECT_DOUBLE_EQ(d.ReadCurrent, 1800.0);
    EXPECT_DOUBLE_EQ(d.WritePrevious, 9200.0);
    EXPECT_DOUBLE_EQ(d.FreeBytes, 250.0);
    EXPECT_DOUBLE_EQ(d.Performance.BytesWritten, 9200.0);

    // a counter that falls gives a negative delta, as it stands
    p.drives[0].performance = reading(1700, 9200);
    info.UpdateDriveCounters(0);
    EXPECT_DOUBLE_EQ(d.ReadDelta, -100.0);
    EXPECT_DOUBLE_EQ(d.WriteDelta, 0.0);
}

TEST(DriveCounters, DriveWithoutDeviceNeverGetsPastTheBaseline)
{
    FakeDrivePlatform p;
    p.drives = {
        {"/tmp", std::nullopt, DriveRamDisk, space(10, 5), std::nullopt},
        {"/zero", std::nullopt, DriveFixed, space(10, 5), reading(100, 100, 0)},
    };
    DriveInfo info(p);
    info.GetDriveInfo();
    for (int call = 0; call < 5; ++call) {
        p.drives[1].performance = reading(100.0 * (call + 2), 7, 0);
        info.UpdateDriveCounters(0);
        info.UpdateDriveCounters(1);
    }
    for (const DriveRecord& d : info.DriveTable) {
        EXPECT_FALSE(d.HasPrevious) << d.Name.toStdString();
        EXPECT_DOUBLE_EQ(d.ReadDelta, 0.0);
        EXPECT_DOUBLE_EQ(d.ReadPrevious, 0.0);
    }
    EXPECT_DOUBLE_EQ(info.DriveTable[0].Performance.QueryTime, -1.0);
    EXPECT_DOUBLE_EQ(info.DriveTable[1].Performance.BytesRead, 600.0);  // the reading is still kept
    EXPECT_EQ(p.spaceCalls.value("/zero"), 2);                          // enumeration only
}

TEST(DriveCounters, IndexOutsideTheTableDoesNothing)
{
    FakeDrivePlatform p;
    p.drives = {{"/", std::nullopt, DriveFixed, space(10, 5), reading(1, 1)}};
    DriveInfo info(p);
    info.UpdateDriveCounters(0);  // before enumeration: the table is empty
    EXPECT_TRUE(info.DriveTable.empty());
    info.GetDriveInfo();
    info.UpdateDriveCounters(-1);
    info.UpdateDriveCounters(1);
    info.UpdateDriveCounters(32767);
    EXPECT_EQ(info.DriveTable[0].Performance.StorageDeviceNumber, 0u);
}

TEST(DriveCounters, CounterTooLargeForTheFixedPointFormIsSkipped)
{
    FakeDrivePlatform p;
    p.drives = {{"/", std::nullopt, DriveFixed, space(10, 5), reading(1000, 1000)}};
    DriveInfo info(p);
    info.GetDriveInfo();
    info.UpdateDriveCounters(0);
    info.UpdateDriveCounters(0);
    p.drives[0].performance = reading(1200, 1000);
    info.UpdateDriveCounters(0);
    ASSERT_DOUBLE_EQ(info.DriveTable[0].ReadDelta, 200.0);

    p.drives[0].performance = reading(LargestDriveCounter, 1000);
    info.UpdateDriveCounters(0);
    EXPECT_DOUBLE_EQ(info.DriveTable[0].ReadDelta, 200.0);
    EXPECT_DOUBLE_EQ(info.DriveTable[0].ReadPrevious, 1200.0);

    // just below the limit the counters stay exact whole numbers
    p.drives[0].performance = reading(LargestDriveCounter - 1, 1000);
    info.UpdateDriveCounters(0);
    EXPECT_DOUBLE_EQ(info.DriveTable[0].ReadDelta, LargestDriveCounter - 1 - 1200);
}
