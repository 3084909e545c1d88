#include "monitor/monitor.h"

#include "model/debug_log.h"
#include "model/number_text.h"
#include "model/paths.h"
#include "model/version.h"
#include "monitor/transfers.h"

#include <QDir>

namespace orm {

Monitor::Monitor(MonitorOptions options, const Clock& clock, KeyValueStore& store, SourceSet& sources,
                 GraphViewFactory& views)
    : alertTester(AlertModel{Sensors, GraphForms, Closing, TickCount}, clock),
      options_(std::move(options)),
      clock_(clock),
      store_(store),
      sources_(sources),
      views_(views)
{
    autoStart_ = std::make_unique<AutoStartEntry>(autostartFile());
    alertTester.VDSMTPRelay1.tempFolder = options_.dataDir;
    alertTester.saveSettings = [this] { SaveSettings(); };
    if (!sources_.shares)
        sources_.shares = std::make_unique<ShareResolver>();
    transfers_ = std::make_unique<Transfers>(*this, options_.dataDir, *sources_.shares);
}

Monitor::~Monitor() = default;

bool Monitor::commandLineHas(const QString& word) const
{
    return options_.commandLine.contains(word);
}

QString Monitor::debugLogPath() const
{
    return options_.dataDir + QLatin1Char('/') + QLatin1String(ProductName) + QStringLiteral(".txt");
}

void Monitor::addNotice(const QString& title, const QString& text, bool warning)
{
    notices.push_back({title, text, warning});
}

void Monitor::SaveSettings()
{
    orm::SaveSettings(store_, Settings, Sensors, sources_.adapterMap(), *autoStart_, options_.execPath);
}

void Monitor::AddSensor(bool logGraph)
{
    // Pause: no tick may see a half-grown array. With one thread and the timer
    // off, a tick can only be running if this was called from inside one.
    const bool wasEnabled = tmrDataEnabled;
    tmrDataEnabled = false;

    const int index = int(Sensors.size());
    Graph g = newGraph(index, logGraph, cascade, clock_.now());
    g.Nodes[0].AdapterIndex = sources_.defaultAdapterSlot();
    cascade.x += 17;
    cascade.y += 17;
    Sensors.push_back(std::move(g));
    GraphForms.resize(Sensors.size());
    SaveSettings();
    refreshGadgetFeed();
    GraphForms[size_t(index)] = views_.make(index);
    GraphForms[size_t(index)]->OpenGraph();

    tmrDataEnabled = wasEnabled;
}

void Monitor::recordHealth()
{
    if (health_)
        return;
    health_ = std::make_unique<TickHealth>();
    auto earlier = alertTester.onAlertFired;
    alertTester.onAlertFired = [this, earlier](int alertIndex) {
        health_->alertFired(alertMetricName(alertTester.Alerts, alertIndex));
        if (earlier)
            earlier(alertIndex);
    };
}

bool Monitor::CloseTimer()
{
    // Another program may have written the stop signal into the file. (The product's name
    // has no blanks: the key under the name without blanks is this same key.)
    store_.reload();
    const bool closeNow = readFlag(store_, SettingsKey, QStringLiteral("CloseNow"), false);
    if (closeNow)
        Closing = true;
    return Closing;
}

void Monitor::unload()
{
    if (!Closing || unloaded_)
        return;
    unloaded_ = true;
    trace(QStringLiteral("UnLoadMain 1.0"));
    if (onUnload)
        onUnload();
    tmrDataEnabled = false;
    transfers_->stop();
    sources_.cpu->GetCpuUsage(false, true, 0);
    sources_.processes->erase();
    LogWriter::removeWorkingCopies(options_.dataDir);
    GraphForms.clear();
    // Only a panel that moved is saved: an exit never rewrites the file for nothing.
    bool moved = false;
    const std::pair<QString, qint32> place[] = {{QStringLiteral("XLoc"), Settings.XLoc},
                                                {QStringLiteral("YLoc"), Settings.YLoc}};
    for (const auto& [name, value] : place) {
        const QString text = QString::number(value);
        if (store_.readValue(SettingsKey, name, QString()) != text) {
            store_.writeValue(SettingsKey, name, text);
            moved = true;
        }
    }
    if (moved)
        store_.sync();
    trace(QStringLiteral("UnLoadMain 2.0"));
    instanceLock_.release();
}

}  // namespace orm
