#include "model/ini_file_care.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSet>
#include <QSysInfo>

#include <cerrno>
#include <csignal>

namespace orm {

namespace {

bool processAlive(qint64 pid)
{
    return pid > 0 && (::kill(pid_t(pid), 0) == 0 || errno == EPERM);
}

// A save's temporary: the settings file's name, a dot and six letters or digits.
bool saveTemporary(const QString& name, const QString& fileName)
{
    const qsizetype dot = fileName.size();
    if (name.size() != dot + 7 || !name.startsWith(fileName) || name.at(dot) != u'.')
        return false;
    for (QChar c : QStringView(name).sliced(dot + 1))
        if (!((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9')))
            return false;
    return true;
}

// The six characters a save's temporary gets are drawn from letters of both
// cases and digits; a word of one case ("backup") is somebody's own file.
bool randomLooking(const QString& six)
{
    bool lower = false, upper = false, digit = false;
    for (QChar c : six) {
        lower = lower || (c >= u'a' && c <= u'z');
        upper = upper || (c >= u'A' && c <= u'Z');
        digit = digit || (c >= u'0' && c <= u'9');
    }
    return int(lower) + int(upper) + int(digit) >= 2;
}

}  // namespace

bool readsWhole(const QString& file, int keysRead)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return true;
    // Each line that holds a value is one key once saved; the reader must have
    // found exactly as many, or some were lost in reading.
    QString section;
    QSet<QString> seen;
    int valueLines = 0;
    for (const QByteArray& raw : f.readAll().split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(';') || line.startsWith('#'))
            continue;
        if (line.startsWith('[')) {
            if (!line.endsWith(']'))
                return false;
            section = QString::fromUtf8(line);
            continue;
        }
        const qsizetype eq = line.indexOf('=');
        if (eq <= 0)
            return false;  // not a value: dropped on reading
        const QString key = section + QLatin1Char('\n') + QString::fromUtf8(line.left(eq).trimmed());
        if (seen.contains(key))
            return false;  // the earlier value is lost
        seen.insert(key);
        ++valueLines;
    }
    return valueLines == keysRead;
}

QString keepAside(const QString& file, const QString& stamp)
{
    const QString copy = file + QStringLiteral(".unreadable-") + stamp;
    if (QFile::exists(copy) || QFile::copy(file, copy))
        return copy;
    return QString();
}

void removeLeftovers(const QString& file)
{
    const QString lock = file + QStringLiteral(".lock");
    if (QFileInfo::exists(lock)) {
        QFile f(lock);
        const bool empty = f.open(QIODevice::ReadOnly) && f.size() == 0;
        qint64 pid = 0;
        QString host, app;
        QLockFile probe(lock);
        const bool named = probe.getLockInfo(&pid, &host, &app);
        // An empty lock is one killed between its making and its writing.
        if (empty || (named && (host.isEmpty() || host == QSysInfo::machineHostName()) && !processAlive(pid)))
            QFile::remove(lock);
    }
    if (QFileInfo::exists(lock))
        return;  // a save runs: its temporary is in use
    QLockFile guard(lock);
    if (!guard.tryLock(0))
        return;
    // Names are matched by hand: a name filter or a pattern would map and run
    // the regular expression library for this one look at the folder.
    const QFileInfo fi(file);
    const QDir folder = fi.dir();
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden))
        if (saveTemporary(name, fi.fileName()) && randomLooking(name.right(6)))
            QFile::remove(folder.filePath(name));
}

QString unusableSettingsPath(const QString& file)
{
    const QFileInfo fi(file);
    if (fi.isDir())
        return QStringLiteral("The settings file %1 is a folder; name a file.").arg(fi.absoluteFilePath());
    if (!QDir().mkpath(fi.absolutePath()))
        return QStringLiteral("The folder of the settings file %1 cannot be made.").arg(fi.absoluteFilePath());
    return QString();
}

}  // namespace orm
