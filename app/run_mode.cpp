#include "run_mode.h"

#include "alerts/alert.h"
#include "model/model.h"
#include "model/paths.h"
#include "model/settings_store.h"

#include <QByteArray>
#include <QFile>
#include <QSettings>

namespace orm {

namespace {

bool isOption(const char* argument, const char* option)
{
    return qstrcmp(argument, option) == 0 || QByteArray(argument).startsWith(QByteArray(option) + '=');
}

bool hasOption(int argc, char* argv[], const char* option)
{
    for (int i = 1; i < argc; ++i)
        if (isOption(argv[i], option))
            return true;
    return false;
}

QString configFile(int argc, char* argv[])
{
    for (int i = 1; i < argc; ++i) {
        if (qstrcmp(argv[i], "--config") == 0 && i + 1 < argc)
            return QFile::decodeName(argv[i + 1]);
        if (isOption(argv[i], "--config"))
            return QFile::decodeName(argv[i] + qstrlen("--config="));
    }
    return defaultConfigFile();
}

// A Gadget Graph, or an Alert that prints, in the settings file.
bool settingsDraw(const QString& file)
{
    if (!QFile::exists(file))
        return false;
    QSettings settings(file, QSettings::IniFormat);
    settings.beginGroup(SettingsKey);
    for (const QString& group : settings.childGroups()) {
        if (group.startsWith(QLatin1String("Sensor")) &&
            settings.value(group + QStringLiteral("/GraphType")).toInt() == VistaGadget)
            return true;
        if (group.startsWith(QLatin1String("Alert")) &&
            settings.value(group + QStringLiteral("/rAction")).toInt() == PrintGraphAction)
            return true;
    }
    return false;
}

}  // namespace

RunMode runMode(int argc, char* argv[])
{
    bool windows = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    // The log commands never open a window either.
    for (const char* option : {"--headless", "--log-headers", "--export-log"})
        windows = windows && !hasOption(argc, argv, option);
    if (windows)
        return RunMode::Windows;
    if (hasOption(argc, argv, "--snapshot") || hasOption(argc, argv, "--print") || settingsDraw(configFile(argc, argv)))
        return RunMode::Drawing;
    return RunMode::Counting;
}

}  // namespace orm
