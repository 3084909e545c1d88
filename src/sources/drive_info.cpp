#include "sources/drive_info.h"

#include "sources/unsigned_double.h"

#include <tuple>

namespace orm {

QString driveTypeText(int driveType)
{
    switch (driveType) {
    case DriveRemovable:
        return QStringLiteral("Removable");
    case DriveFixed:
        return QStringLiteral("Local Disk");
    case DriveRemote:
        return QStringLiteral("Remote");
    case DriveCdRom:
        return QStringLiteral("CD/DVD-Rom");
    case DriveRamDisk:
        return QStringLiteral("RAM Disk");
    default:
        return QStringLiteral("Unknown");
    }
}

DriveInfo::DriveInfo(DrivePlatform& platform)
    : platform_(platform)
{
}

void DriveInfo::GetDriveInfo()
{
    DriveIndexByName.clear();
    DriveTable.assign(1, DriveRecord{});
    int index = -1;
    const QStringList roots = platform_.driveStrings();
    for (const QString& root : roots) {
        if (root.isEmpty())
            continue;
        ++index;
        DriveTable.resize(size_t(index) + 1);
        DriveRecord& d = DriveTable[size_t(index)];
        // A mount point names the drive as its root does.
        d.Name = root;
        DriveIndexByName.insert(d.Name, index);

        if (const auto label = platform_.volumeName(root))
            d.VolumeName = *label;

        const int type = platform_.driveType(root);
        d.DriveTypeText = driveTypeText(type);
        if (type == DriveFixed || type == DriveRamDisk)
            std::tie(d.TotalBytes, d.FreeBytes) = GetDriveSpace(d.Name);
    }
}

std::pair<double, double> DriveInfo::GetDriveSpace(const QString& name)
{
    const auto s = platform_.diskFreeSpace(name);
    if (!s)
        return {0.0, 0.0};
    return {LargeIntegerToDouble(s->TotalBytes), LargeIntegerToDouble(s->FreeBytesAvailable)};
}

DiskPerformance DriveInfo::GetDiskPerformance(const QString& name)
{
    if (auto p = platform_.diskPerformance(name))
        return *p;
    DiskPerformance failed;
    failed.QueryTime = -1;
    return failed;
}

void DriveInfo::UpdateDriveCounters(int index)
{
    if (index < 0 || size_t(index) >= DriveTable.size())
        return;
    DriveRecord& d = DriveTable[size_t(index)];

    const DiskPerformance reading = GetDiskPerformance(d.Name);
    // The stored device number, not HasPrevious, decides: the first reading
    // is only a baseline, and a drive that never gives a device number never
    // gets past it.
    if (d.Performance.StorageDeviceNumber == 0) {
        d.Performance = reading;
        return;
    }
    // Beyond the fixed-point form the counters can't be held; skip the reading.
    if (reading.BytesRead >= LargestDriveCounter || reading.BytesWritten >= LargestDriveCounter)
        return;
    if (!d.HasPrevious) {
        d.ReadPrevious = reading.BytesRead;
        d.WritePrevious = reading.BytesWritten;
        d.HasPrevious = true;
    }
    // Bytes per tick; a falling counter gives a negative delta, as it stands.
    d.ReadDelta = reading.BytesRead - d.ReadPrevious;
    d.WriteDelta = reading.BytesWritten - d.WritePrevious;
    d.ReadCurrent = d.ReadPrevious = reading.BytesRead;
    d.WriteCurrent = d.WritePrevious = reading.BytesWritten;

    // One query gives both figures.
    const auto [total, free] = GetDriveSpace(d.Name);
    d.FreeBytes = free;
    d.TotalBytes = total;
    d.Performance = reading;
}

int DriveInfo::indexOf(const QString& name) const
{
    return DriveIndexByName.value(name, -1);
}

}  // namespace orm
