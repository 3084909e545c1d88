// A Monitor started on a real settings file in a temporary folder. start()
// again reads the same file anew, as a new start of the program does.
#pragma once

#include "model/clock.h"
#include "model/graph_view.h"
#include "model/ini_store.h"
#include "monitor/monitor.h"
#include "monitor/source_set.h"

#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <sys/stat.h>

namespace orm::test {

class SettingsFileMonitor {
public:
    SettingsFileMonitor() : settingsFile(dir.filePath(QStringLiteral("Ormivane.conf")))
    {
        qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral("config")).toLocal8Bit());
    }

    // `prepare` may replace sources or bind the views before start-up runs.
    bool start(GraphViewFactory& views, const std::function<void(SourceSet&, Monitor&)>& prepare = {})
    {
        monitor.reset();
        store = std::make_unique<IniStore>(settingsFile);
        sources = SourceSet::forLinux();
        MonitorOptions options;
        options.dataDir = dir.filePath(QStringLiteral("data"));
        monitor = std::make_unique<Monitor>(options, clock, *store, *sources, views);
        if (prepare)
            prepare(*sources, *monitor);
        return monitor->startUp();
    }

    QByteArray fileBytes() const
    {
        QFile f(settingsFile);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    // The file's identity: a save writes a new file and renames it over the old.
    quint64 fileIdentity() const
    {
        struct stat st {};
        return ::stat(settingsFile.toLocal8Bit().constData(), &st) == 0 ? quint64(st.st_ino) : 0;
    }
    // What a fresh read of the file holds, "<none>" when nothing.
    QString storedValue(const QString& path, const QString& name) const
    {
        return IniStore(settingsFile).readValue(path, name, QStringLiteral("<none>"));
    }

    QTemporaryDir dir;
    QString settingsFile;
    ManualClock clock;
    std::unique_ptr<IniStore> store;
    std::unique_ptr<SourceSet> sources;
    std::unique_ptr<Monitor> monitor;  // last, so it goes first
};

}  // namespace orm::test
