#include "sources/share_paths.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <unistd.h>

namespace orm {

namespace {

QStringList pathParts(const QString& path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

bool sameName(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// "smb-share:domain=D,server=host,share=share,user=u" as its keys and values.
QHash<QString, QString> gvfsKeys(const QString& entry)
{
    QHash<QString, QString> keys;
    const QString prefix = QStringLiteral("smb-share:");
    if (!entry.startsWith(prefix))
        return keys;
    for (const QString& pair : entry.mid(prefix.size()).split(QLatin1Char(','))) {
        const qsizetype eq = pair.indexOf(QLatin1Char('='));
        if (eq > 0)
            keys.insert(pair.left(eq).toLower(), pair.mid(eq + 1));
    }
    return keys;
}

// How many leading parts of `path` the mount's own parts take, or -1 when the
// mount does not lead to it. SMB names ignore letter case, NFS paths don't.
int leadingParts(const QStringList& mountParts, const QStringList& path, Qt::CaseSensitivity cs)
{
    if (mountParts.size() > path.size())
        return -1;
    for (qsizetype k = 0; k < mountParts.size(); ++k)
        if (mountParts[k].compare(path[k], cs) != 0)
            return -1;
    return int(mountParts.size());
}

QString joined(const QString& base, const QStringList& parts, qsizetype from)
{
    QString out = base;
    for (qsizetype k = from; k < parts.size(); ++k)
        out += QLatin1Char('/') + parts[k];
    return out;
}

}  // namespace

std::optional<UncPath> parseUncPath(const QString& text)
{
    QString t = text;
    t.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (!t.startsWith(QStringLiteral("//")))
        return std::nullopt;
    const QStringList parts = pathParts(t.mid(2));
    // A path that climbs out of its share is not on the share.
    if (parts.size() < 2 || parts.contains(QStringLiteral("..")))
        return std::nullopt;
    UncPath u;
    u.host = parts[0];
    u.share = parts[1];
    u.rest = parts.mid(2).join(QLatin1Char('/'));
    return u;
}

QString resolveShare(const UncPath& unc, const std::vector<MountEntry>& mounts, const QString& gvfsFolder,
                     const QStringList& gvfsEntries)
{
    const QStringList rest = pathParts(unc.rest);
    for (const QString& entry : gvfsEntries) {
        const QHash<QString, QString> keys = gvfsKeys(entry);
        if (sameName(keys.value(QStringLiteral("server")), unc.host) &&
            sameName(keys.value(QStringLiteral("share")), unc.share))
            return joined(gvfsFolder + QLatin1Char('/') + entry, rest, 0);
    }

    // The share and the path inside it, as one list of parts.
    const QStringList full = QStringList{unc.share} + rest;
    QString best;
    int bestTaken = -1;
    for (const MountEntry& m : mounts) {
        int taken = -1;
        if (m.fsType == QLatin1String("cifs") || m.fsType == QLatin1String("smb3") ||
            m.fsType == QLatin1String("smbfs")) {
            const std::optional<UncPath> source = parseUncPath(m.device);
            if (!source || !sameName(source->host, unc.host))
                continue;
            taken = leadingParts(QStringList{source->share} + pathParts(source->rest), full, Qt::CaseInsensitive);
        } else if (m.fsType.startsWith(QLatin1String("nfs"))) {
            const qsizetype colon = m.device.indexOf(QStringLiteral(":/"));
            if (colon <= 0)
                continue;
            QString host = m.device.left(colon);
            if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')))
                host = host.mid(1, host.size() - 2);
            if (!sameName(host, unc.host))
                continue;
            taken = leadingParts(pathParts(m.device.mid(colon + 1)), full, Qt::CaseSensitive);
        }
        if (taken > bestTaken) {
            bestTaken = taken;
            best = joined(m.mountPoint == QLatin1String("/") ? QString() : m.mountPoint, full, taken);
            if (best.isEmpty())
                best = QStringLiteral("/");
        }
    }
    return best;
}

ShareResolver::ShareResolver()
    : ShareResolver(QStringLiteral("/proc/self/mounts"), QStringLiteral("/run/user/%1/gvfs").arg(::getuid()))
{
}

ShareResolver::ShareResolver(QString mountTable, QString gvfsFolder)
    : mountTable_(std::move(mountTable)), gvfsFolder_(std::move(gvfsFolder))
{
}

QString ShareResolver::resolve(const QString& text) const
{
    const std::optional<UncPath> unc = parseUncPath(text);
    if (!unc)
        return QString();
    const QStringList gvfs = QDir(gvfsFolder_).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    std::vector<MountEntry> mounts;
    QFile table(mountTable_);
    if (table.open(QIODevice::ReadOnly))
        mounts = parseMounts(table.readAll());
    return resolveShare(*unc, mounts, gvfsFolder_, gvfs);
}

}  // namespace orm
