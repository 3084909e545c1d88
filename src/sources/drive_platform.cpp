#include "sources/drive_platform.h"
#include "sources/platform_file.h"

#include <algorithm>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <algorithm>
#include <utility>

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace orm {

namespace {

bool isNetworkFilesystem(const QString& fsType)
{
    static const QSet<QString> names = {
        QStringLiteral("nfs"),   QStringLiteral("nfs4"),  QStringLiteral("cifs"),       QStringLiteral("smb3"),
        QStringLiteral("smbfs"), QStringLiteral("sshfs"), QStringLiteral("fuse.sshfs"),
    };
    return names.contains(fsType);
}

// udev writes a blank in a label link's name as "\x20".
QString decodeLabel(const QString& name)
{
    QByteArray raw = QFile::encodeName(name);
    QByteArray out;
    for (int i = 0; i < raw.size(); ++i) {
        if (raw[i] == '\\' && i + 3 < raw.size() && raw[i + 1] == 'x') {
            bool ok = false;
            const int c = raw.mid(i + 2, 2).toInt(&ok, 16);
            if (ok) {
                out.append(char(c));
                i += 3;
                continue;
            }
        }
        out.append(raw[i]);
    }
    return QString::fromUtf8(out);
}

QString linkTargetName(const QString& link)
{
    char buf[4096];
    const ssize_t n = ::readlink(QFile::encodeName(link).constData(), buf, sizeof buf - 1);
    if (n <= 0)
        return {};
    return QFileInfo(QFile::decodeName(QByteArray(buf, int(n)))).fileName();
}

// Windows counts disk times in 100 ns units and stamps a query with the time
// since 1601 in the same units.
constexpr double HundredNsPerMs = 10000.0;
constexpr double EpochOf1601In100Ns = 116444736000000000.0;

}  // namespace

quint32 packDeviceNumber(quint32 major, quint32 minor)
{
    return (major << 20) | (minor & 0xFFFFFu);
}

LinuxDrivePlatform::LinuxDrivePlatform(QString procRoot, QString sysRoot, QString devRoot)
    : procRoot_(std::move(procRoot))
    , sysRoot_(std::move(sysRoot))
    , devRoot_(std::move(devRoot))
    , diskstats_(procRoot_ + QStringLiteral("/diskstats"))
{
}

QStringList LinuxDrivePlatform::driveStrings()
{
    drives_.clear();
    mountedDevices_.clear();
    if (const auto text = readPlatformFile(procRoot_ + QStringLiteral("/self/mounts")))
        drives_ = driveMounts(parseMounts(*text));
    QStringList roots;
    for (const MountEntry& m : drives_) {
        roots << m.mountPoint;
        struct stat st {};
        if (::stat(QFile::encodeName(m.mountPoint).constData(), &st) == 0)
            mountedDevices_.emplace_back(m.mountPoint, quint64(st.st_dev));
    }
    return roots;
}

std::optional<MountEntry> LinuxDrivePlatform::mountOf(const QString& mountPoint)
{
    for (int pass = 0; pass < 2; ++pass) {
        for (const MountEntry& m : drives_) {
            if (m.mountPoint == mountPoint)
                return m;
        }
        if (pass == 0)
            driveStrings();  // mounted since the last look
    }
    return std::nullopt;
}

std::vector<DiskStatsRow> LinuxDrivePlatform::readDiskstats()
{
    const auto text = diskstats_.read();
    return text ? parseDiskstats(*text) : std::vector<DiskStatsRow>{};
}

std::optional<DiskStatsRow> LinuxDrivePlatform::diskstatsRowOfMount(const MountEntry& mount)
{
    auto known = std::find_if(knownDevices_.begin(), knownDevices_.end(), [&](const KnownDevice& k) {
        return k.mountPoint == mount.mountPoint && k.device == mount.device;
    });
    if (known != knownDevices_.end()) {
        const auto text = diskstats_.read();
        if (!text)
            return std::nullopt;
        if (auto row = diskstatsRowOf(*text, known->major, known->minor)) {
            row->name = known->name;
            return row;
        }
        knownDevices_.erase(known);  // the device went: looked for afresh
    }
    auto row = blockDeviceOf(mount, readDiskstats());
    if (row)
        knownDevices_.push_back({mount.mountPoint, mount.device, row->major, row->minor, row->name});
    return row;
}

QString LinuxDrivePlatform::devPath(const QString& path) const
{
    if (path.startsWith(QStringLiteral("/dev/")))
        return devRoot_ + path.mid(4);
    return path;
}

std::optional<DiskStatsRow> LinuxDrivePlatform::blockDeviceOf(const MountEntry& mount,
                                                              const std::vector<DiskStatsRow>& rows) const
{
    if (!mount.device.startsWith(QLatin1Char('/')))
        return std::nullopt;  // tmpfs, host:/export, a pool name: no block device
    auto byNumber = [&](dev_t number) -> std::optional<DiskStatsRow> {
        for (const DiskStatsRow& r : rows) {
            if (r.major == ::major(number) && r.minor == ::minor(number))
                return r;
        }
        return std::nullopt;
    };
    const QString path = devPath(mount.device);
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) == 0 && S_ISBLK(st.st_mode)) {
        if (auto r = byNumber(st.st_rdev))
            return r;
    }
    if (!mount.device.startsWith(QStringLiteral("/dev/")))
        return std::nullopt;
    // /dev/mapper/x and /dev/disk/by-uuid/... are links to the kernel's name.
    const QString canonical = QFileInfo(path).canonicalFilePath();
    const QString name = QFileInfo(canonical.isEmpty() ? path : canonical).fileName();
    for (const DiskStatsRow& r : rows) {
        if (r.name == name)
            return r;
    }
    // "/dev/root" and the like: the filesystem's own device number.
    if (::stat(QFile::encodeName(mount.mountPoint).constData(), &st) == 0)
        return byNumber(st.st_dev);
    return std::nullopt;
}

bool LinuxDrivePlatform::isRemovable(const QString& deviceName) const
{
    const QString block = sysRoot_ + QStringLiteral("/block/");
    auto flag = [&](const QString& disk) {
        const auto text = readPlatformFile(block + disk + QStringLiteral("/removable"));
        return text && text->trimmed() == "1";
    };
    if (deviceName.isEmpty())
        return false;
    if (QFileInfo::exists(block + deviceName))
        return flag(deviceName);
    const QStringList disks = QDir(block).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& disk : disks) {
        if (QFileInfo::exists(block + disk + QLatin1Char('/') + deviceName))
            return flag(disk);
    }
    return false;
}

QString LinuxDrivePlatform::labelOf(const QString& deviceName) const
{
    if (deviceName.isEmpty())
        return {};
    const QString dir = devRoot_ + QStringLiteral("/disk/by-label/");
    const QStringList links = QDir(dir).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& link : links) {
        if (linkTargetName(dir + link) == deviceName)
            return decodeLabel(link);
    }
    return {};
}

std::optional<QString> LinuxDrivePlatform::volumeName(const QString& root)
{
    const auto mount = mountOf(root);
    if (!mount)
        return std::nullopt;
    QString deviceName;
    if (const auto row = blockDeviceOf(*mount, readDiskstats()))
        deviceName = row->name;
    else if (mount->device.startsWith(QStringLiteral("/dev/")))
        deviceName = QFileInfo(mount->device).fileName();
    const QString label = labelOf(deviceName);
    return label.isEmpty() ? mount->device : label;
}

int LinuxDrivePlatform::driveType(const QString& root)
{
    const auto mount = mountOf(root);
    if (!mount)
        return DriveNoRootDir;
    const QString& fs = mount->fsType;
    if (isNetworkFilesystem(fs))
        return DriveRemote;
    if (fs == QStringLiteral("iso9660") || fs == QStringLiteral("udf"))
        return DriveCdRom;
    if (fs == QStringLiteral("tmpfs") || fs == QStringLiteral("ramfs"))
        return DriveRamDisk;
    if (const auto row = blockDeviceOf(*mount, readDiskstats()))
        return isRemovable(row->name) ? DriveRemovable : DriveFixed;
    return DriveUnknown;
}

std::optional<DriveSpaceFigures> LinuxDrivePlatform::diskFreeSpace(const QString& name)
{
    if (name.isEmpty())
        return std::nullopt;
    const QByteArray path = QFile::encodeName(name);
    struct stat st {};
    if (::stat(path.constData(), &st) != 0)
        return std::nullopt;
    const auto mounted = std::find_if(mountedDevices_.begin(), mountedDevices_.end(),
                                      [&](const auto& m) { return m.first == name; });
    if (mounted == mountedDevices_.end() || mounted->second != quint64(st.st_dev))
        return std::nullopt;  // not (or no longer) a mounted drive
    struct statvfs vfs {};
    if (::statvfs(path.constData(), &vfs) != 0)
        return std::nullopt;
    DriveSpaceFigures s;
    s.TotalBytes = quint64(vfs.f_blocks) * vfs.f_frsize;
    s.FreeBytesAvailable = quint64(vfs.f_bavail) * vfs.f_frsize;
    s.TotalFreeBytes = quint64(vfs.f_bfree) * vfs.f_frsize;
    return s;
}

std::optional<DiskPerformance> LinuxDrivePlatform::diskPerformance(const QString& name)
{
    const auto mount = mountOf(name);
    if (!mount)
        return std::nullopt;
    const auto row = diskstatsRowOfMount(*mount);
    if (!row)
        return std::nullopt;
    DiskPerformance p;
    p.BytesRead = double(row->sectorsRead) * 512.0;
    p.BytesWritten = double(row->sectorsWritten) * 512.0;
    p.ReadTime = double(row->msReading) * HundredNsPerMs;
    p.WriteTime = double(row->msWriting) * HundredNsPerMs;
    p.ReadCount = quint32(row->readsCompleted);
    p.WriteCount = quint32(row->writesCompleted);
    p.QueueDepth = quint32(row->ioInProgress);
    p.QueryTime = double(QDateTime::currentMSecsSinceEpoch()) * HundredNsPerMs + EpochOf1601In100Ns;
    p.StorageDeviceNumber = packDeviceNumber(row->major, row->minor);
    p.StorageManagerName = row->name.left(8);
    return p;
}

}  // namespace orm
