// zDriveInfo: the table of the machine's drives with their space and their
// raw read and write byte counters.
#pragma once

#include "sources/drive_platform.h"

#include <QHash>
#include <QString>
#include <utility>
#include <vector>

namespace orm {

// The counters are whole bytes kept as doubles, exact far beyond any disk.
struct DriveRecord {
    QString Name, VolumeName, DriveTypeText;
    double FreeBytes = 0, TotalBytes = 0;
    DiskPerformance Performance;
    double ReadDelta = 0, WriteDelta = 0, ReadCurrent = 0, WriteCurrent = 0, ReadPrevious = 0, WritePrevious = 0;
    bool HasPrevious = false;
};

// The drive-type table: "Removable", "Local Disk", "Remote", "CD/DVD-Rom",
// "RAM Disk", anything else "Unknown".
QString driveTypeText(int driveType);

// A counter this large no longer fits the fixed-point form the counters have
// always been held in.
constexpr double LargestDriveCounter = 922337203685477.0;

class DriveInfo {
public:
    explicit DriveInfo(DrivePlatform& platform);

    // Rebuilds the table; with no drives it holds a single empty element.
    void GetDriveInfo();
    // One drive's refresh; an index outside the table does nothing.
    void UpdateDriveCounters(int index);
    // Total first, free to the caller second; 0 and 0 on failure.
    std::pair<double, double> GetDriveSpace(const QString& name);
    // A failed reading is all zeros with QueryTime -1.
    DiskPerformance GetDiskPerformance(const QString& name);
    // The row of a drive name, -1 when missing.
    int indexOf(const QString& name) const;

    std::vector<DriveRecord> DriveTable;
    QHash<QString, int> DriveIndexByName;

private:
    DrivePlatform& platform_;
};

}  // namespace orm
