#include "autostart.h"

#include "model/version.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <utility>

namespace orm {

namespace {

// The path as one quoted argument of Exec=: inside the quotes \, ", ` and $
// take a backslash, '%' is doubled (field codes), and then every backslash is
// doubled again, as a desktop file's string values require.
QString execArgument(const QString& path)
{
    QString quoted;
    for (const QChar c : path) {
        if (c == u'\\' || c == u'"' || c == u'`' || c == u'$')
            quoted += u'\\';
        if (c == u'%')
            quoted += u'%';
        quoted += c;
    }
    quoted.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

}  // namespace

AutoStartEntry::AutoStartEntry(QString desktopFile) : file_(std::move(desktopFile)) {}

QString autoStartDesktopText(const QString& execPath)
{
    QString s;
    s += QStringLiteral("[Desktop Entry]\n");
    s += QStringLiteral("Type=Application\n");
    s += QStringLiteral("Name=%1\n").arg(QLatin1String(ProductName));
    s += QStringLiteral("Exec=%1\n").arg(execArgument(execPath));
    s += QStringLiteral("Terminal=false\n");
    s += QStringLiteral("X-GNOME-Autostart-enabled=true\n");
    return s;
}

bool AutoStartEntry::enabled() const
{
    QFile f(file_);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    bool inEntry = false, hasExec = false, off = false;
    while (!f.atEnd()) {
        const QString line = QString::fromUtf8(f.readLine()).trimmed();
        if (line.startsWith(u'[')) {
            inEntry = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        if (!inEntry)
            continue;
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0)
            continue;
        const QString key = line.left(eq).trimmed();
        const QString value = line.mid(eq + 1).trimmed();
        if (key == QLatin1String("Exec"))
            hasExec = !value.isEmpty();
        else if (key == QLatin1String("Hidden"))
            off = off || value == QLatin1String("true");
        else if (key == QLatin1String("X-GNOME-Autostart-enabled"))
            off = off || value == QLatin1String("false");
    }
    return hasExec && !off;
}

bool AutoStartEntry::write(const QString& execPath)
{
    if (!QDir().mkpath(QFileInfo(file_).absolutePath())) {
        error_ = QStringLiteral("The folder of %1 could not be made.").arg(file_);
        return false;
    }
    QSaveFile f(file_);
    if (!f.open(QIODevice::WriteOnly) || f.write(autoStartDesktopText(execPath).toUtf8()) < 0 || !f.commit()) {
        error_ = QStringLiteral("%1 could not be written: %2").arg(file_, f.errorString());
        return false;
    }
    error_.clear();
    return true;
}

bool AutoStartEntry::remove()
{
    if (!QFileInfo::exists(file_) && !QFileInfo(file_).isSymLink())
        return true;
    if (!QFile::remove(file_)) {
        error_ = QStringLiteral("%1 could not be removed.").arg(file_);
        return false;
    }
    error_.clear();
    return true;
}

}  // namespace orm
