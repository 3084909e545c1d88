#include "paths.h"

#include <QDir>

namespace orm {

static QString xdgDir(const char* var, const char* fallback)
{
    const QString v = qEnvironmentVariable(var);
    if (!v.isEmpty())
        return v;
    return QDir::homePath() + QLatin1Char('/') + QLatin1String(fallback);
}

QString defaultDataDir()
{
    const QString home = qEnvironmentVariable("ORMIVANE_HOME");
    if (!home.isEmpty())
        return home;
    return xdgDir("XDG_DATA_HOME", ".local/share") + QStringLiteral("/Ormivane");
}

QString defaultConfigFile()
{
    return xdgDir("XDG_CONFIG_HOME", ".config") + QStringLiteral("/Vendrake/Ormivane.conf");
}

QString autostartFile()
{
    return xdgDir("XDG_CONFIG_HOME", ".config") + QStringLiteral("/autostart/ormivane.desktop");
}

}  // namespace orm
