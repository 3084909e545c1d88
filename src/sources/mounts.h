// The mounted filesystems of /proc/self/mounts, and which of them are drives.
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace orm {

struct MountEntry {
    QString device;      // the source as written: "/dev/sda1", "tmpfs", "host:/export"
    QString mountPoint;
    QString fsType;
    QString options;
};

// "\040"-style octal escapes (blank, tab, newline, backslash) decoded.
QString decodeMountField(const QByteArray& field);

// One entry per line with at least four fields; other lines are skipped.
std::vector<MountEntry> parseMounts(const QByteArray& text);

// Kernel and pseudo filesystems that hold no user data (proc, sysfs, cgroup...).
bool isVirtualFilesystem(const QString& fsType);

// Mount points that are the system's plumbing: under /proc, /sys, /dev, /run
// (but /run/media/...) and /snap.
bool isHiddenMountPoint(const QString& mountPoint);

// The drives among the mounts, in mount order. A mount point seen twice keeps
// its first place, with the data of its last mount, the one in view.
std::vector<MountEntry> driveMounts(const std::vector<MountEntry>& mounts);

}  // namespace orm
