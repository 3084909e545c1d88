// What the drive table needs from the system: the drives, their labels and
// kinds, their space and their disk counters.
#pragma once

#include "sources/diskstats.h"
#include "sources/kernel_file.h"
#include "sources/mounts.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace orm {

// The disk counters of a drive's device, as the drive table keeps them.
// QueryTime -1 marks a failed reading.
struct DiskPerformance {
    double BytesRead = 0, BytesWritten = 0, ReadTime = 0, WriteTime = 0, IdleTime = 0;
    quint32 ReadCount = 0, WriteCount = 0, QueueDepth = 0, SplitCount = 0;
    double QueryTime = 0;
    quint32 StorageDeviceNumber = 0;
    QString StorageManagerName;
};

// Drive type codes, as the drive-type table knows them.
enum DriveTypeCode : int {
    DriveUnknown = 0,
    DriveNoRootDir = 1,
    DriveRemovable = 2,
    DriveFixed = 3,
    DriveRemote = 4,
    DriveCdRom = 5,
    DriveRamDisk = 6,
};

// The three figures of a free-space query, in bytes.
struct DriveSpaceFigures {
    quint64 FreeBytesAvailable = 0;  // free to the caller
    quint64 TotalBytes = 0;
    quint64 TotalFreeBytes = 0;
};

class DrivePlatform {
public:
    virtual ~DrivePlatform() = default;
    // The root of every drive, in the system's order.
    virtual QStringList driveStrings() = 0;
    // The volume label; no value when the volume can't be read.
    virtual std::optional<QString> volumeName(const QString& root) = 0;
    // One of DriveTypeCode.
    virtual int driveType(const QString& root) = 0;
    virtual std::optional<DriveSpaceFigures> diskFreeSpace(const QString& name) = 0;
    // No value when the drive has no device to read.
    virtual std::optional<DiskPerformance> diskPerformance(const QString& name) = 0;
};

// Drives are the real mounted filesystems of <procRoot>/self/mounts, named by
// mount point; disk counters come from <procRoot>/diskstats, the removable flag
// from <sysRoot>/block, labels from <devRoot>/disk/by-label.
class LinuxDrivePlatform final : public DrivePlatform {
public:
    explicit LinuxDrivePlatform(QString procRoot = QStringLiteral("/proc"), QString sysRoot = QStringLiteral("/sys"),
                                QString devRoot = QStringLiteral("/dev"));

    QStringList driveStrings() override;
    std::optional<QString> volumeName(const QString& root) override;
    int driveType(const QString& root) override;
    // Nothing for a name that is no longer a mounted drive, as for a failed query.
    std::optional<DriveSpaceFigures> diskFreeSpace(const QString& name) override;
    std::optional<DiskPerformance> diskPerformance(const QString& name) override;

    // The diskstats row of the mount's block device: by the device node's
    // number, else by its name, else by the number of the filesystem the
    // mount point lives on. Filesystems without a device have none.
    std::optional<DiskStatsRow> blockDeviceOf(const MountEntry& mount, const std::vector<DiskStatsRow>& rows) const;
    // The removable flag of the device or of the disk holding the partition.
    bool isRemovable(const QString& deviceName) const;
    // The label whose by-label link points at the device; empty when none.
    QString labelOf(const QString& deviceName) const;

private:
    // The block device found for a mount, by number, so that a tick finds its
    // row again without looking at the device node.
    struct KnownDevice {
        QString mountPoint, device;
        quint32 major = 0, minor = 0;
        QString name;
    };
    std::optional<MountEntry> mountOf(const QString& mountPoint);
    std::vector<DiskStatsRow> readDiskstats();
    std::optional<DiskStatsRow> diskstatsRowOfMount(const MountEntry& mount);
    QString devPath(const QString& path) const;

    QString procRoot_, sysRoot_, devRoot_;
    std::vector<MountEntry> drives_;  // as of the last look at the mounts
    // The filesystem each mount point showed at that look: once unmounted, the
    // folder shows the filesystem beneath, whose space is not the drive's.
    std::vector<std::pair<QString, quint64>> mountedDevices_;

    KernelFile diskstats_;
    std::vector<KnownDevice> knownDevices_;
};

// The major:minor pair packed the kernel's way; never 0 for a real device.
quint32 packDeviceNumber(quint32 major, quint32 minor);

}  // namespace orm
