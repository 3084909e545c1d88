#include "sources/mounts.h"

#include <QHash>
#include <QList>
#include <QSet>

namespace orm {

QString decodeMountField(const QByteArray& field)
{
    QByteArray out;
    out.reserve(field.size());
    for (int i = 0; i < field.size(); ++i) {
        const char c = field[i];
        if (c == '\\' && i + 3 < field.size()) {
            const QByteArray oct = field.mid(i + 1, 3);
            bool ok = oct.size() == 3;
            for (char d : oct)
                ok = ok && d >= '0' && d <= '7';
            if (ok) {
                out.append(char(oct.toInt(nullptr, 8)));
                i += 3;
                continue;
            }
        }
        out.append(c);
    }
    return QString::fromUtf8(out);
}

std::vector<MountEntry> parseMounts(const QByteArray& text)
{
    std::vector<MountEntry> entries;
    for (const QByteArray& line : text.split('\n')) {
        const QList<QByteArray> f = line.simplified().split(' ');
        if (f.size() < 4)
            continue;
        entries.push_back({decodeMountField(f[0]), decodeMountField(f[1]), decodeMountField(f[2]),
                           decodeMountField(f[3])});
    }
    return entries;
}

bool isVirtualFilesystem(const QString& fsType)
{
    static const QSet<QString> names = {
        QStringLiteral("proc"),       QStringLiteral("sysfs"),       QStringLiteral("cgroup"),
        QStringLiteral("cgroup2"),    QStringLiteral("devpts"),      QStringLiteral("devtmpfs"),
        QStringLiteral("mqueue"),     QStringLiteral("debugfs"),     QStringLiteral("tracefs"),
        QStringLiteral("securityfs"), QStringLiteral("pstore"),      QStringLiteral("bpf"),
        QStringLiteral("configfs"),   QStringLiteral("fusectl"),     QStringLiteral("hugetlbfs"),
        QStringLiteral("autofs"),     QStringLiteral("binfmt_misc"), QStringLiteral("rpc_pipefs"),
        QStringLiteral("nsfs"),       QStringLiteral("efivarfs"),    QStringLiteral("selinuxfs"),
        QStringLiteral("rootfs"),     QStringLiteral("pipefs"),      QStringLiteral("sockfs"),
        QStringLiteral("nfsd"),       QStringLiteral("cpuset"),      QStringLiteral("devfs"),
    };
    return names.contains(fsType);
}

bool isHiddenMountPoint(const QString& mountPoint)
{
    auto within = [&](const QString& dir) {
        return mountPoint == dir || mountPoint.startsWith(dir + QLatin1Char('/'));
    };
    if (within(QStringLiteral("/run/media")))
        return mountPoint == QStringLiteral("/run/media");
    return within(QStringLiteral("/proc")) || within(QStringLiteral("/sys")) || within(QStringLiteral("/dev"))
        || within(QStringLiteral("/run")) || within(QStringLiteral("/snap"));
}

std::vector<MountEntry> driveMounts(const std::vector<MountEntry>& mounts)
{
    std::vector<MountEntry> drives;
    QHash<QString, size_t> at;
    for (const MountEntry& m : mounts) {
        if (m.mountPoint.isEmpty() || isVirtualFilesystem(m.fsType) || isHiddenMountPoint(m.mountPoint))
            continue;
        const auto found = at.constFind(m.mountPoint);
        if (found != at.constEnd()) {
            drives[*found] = m;
            continue;
        }
        at.insert(m.mountPoint, drives.size());
        drives.push_back(m);
    }
    return drives;
}

}  // namespace orm
