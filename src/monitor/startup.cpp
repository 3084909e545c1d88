// Start-up without windows: the steps of the control panel's load that need
// no window, in their order.
#include "model/debug_log.h"
#include "monitor/gadget_feed.h"
#include "alerts/alert_store.h"
#include "monitor/monitor.h"
#include "monitor/transfers.h"
#include "model/number_text.h"
#include "model/version.h"

#include <QDir>

namespace orm {

bool Monitor::startUp()
{
    // 1.
    if (Closing)
        return false;

    // 2. One instance per data folder.
    QDir().mkpath(options_.dataDir);
    switch (instanceLock_.take(options_.dataDir + QStringLiteral("/Ormivane.lock"))) {
    case InstanceLock::Taken:
        break;
    case InstanceLock::HeldByAnother:
        startError_ = QLatin1String(ProductName) +
                      QStringLiteral(" is already running, please look for the icon in the Systray");
        Closing = true;
        return false;
    case InstanceLock::Unusable:
        startError_ = instanceLock_.error();
        Closing = true;
        return false;
    }

    if (!store_.keptAside().isEmpty())
        addNotice(QLatin1String(ProductName),
                  QStringLiteral("The settings file could not be read whole (a quote or a line edited by hand?). "
                                 "It was kept as it stood in %1 before anything was saved over it.")
                      .arg(store_.keptAside()),
                  true);

    // 3. A stop signal left from an earlier session must not close this one. (The product's
    // name has no blanks, so the second key the name without blanks would give is this one.)
    if (store_.deleteValue(SettingsKey, QStringLiteral("CloseNow")))
        store_.sync();

    // 4.
    if (commandLineHas(QStringLiteral("txtDebug"))) {
        DebugMode = true;
        debugLog().enable(debugLogPath(), &clock_);
    }

    // 6.
    splash(QStringLiteral("Initializing...."));
    if (DebugMode) {
        debugLog().log(QStringLiteral("ClearData"));
        const QString dump = settingsDump(store_, storedAlertCount(store_));
        for (const QString& line : dump.split(QLatin1Char('\n')))
            debugLog().log(line);
        trace(QStringLiteral("LoadMain 1.0"));
    }

    // 7. Every system this runs on has the wireless queries.
    Settings.wmi = true;

    // 8.
    Settings.XLoc = readInt(store_, SettingsKey, QStringLiteral("XLoc"), 0);
    Settings.YLoc = readInt(store_, SettingsKey, QStringLiteral("YLoc"), 0);

    // 9. The pen table is a constant (model.cpp); Qt's random source seeds itself.

    // 12. to 16.
    splash(QStringLiteral("Adaptor info...."));
    sources_.adapters->GetAdapters(true);
    if (!sources_.adapters->initError.isEmpty())
        addNotice(sources_.adapters->initErrorTitle.isEmpty() ? QString::fromLatin1(ProductName)
                                                              : sources_.adapters->initErrorTitle,
                  sources_.adapters->initError);
    trace(QStringLiteral("LoadMain 1.11"));
    splash(QStringLiteral("Memory setup...."));
    sources_.memory->GetMemoryStatus();
    trace(QStringLiteral("LoadMain 1.12"));
    splash(QStringLiteral("Gathering processes...."));
    sources_.processes->RefreshProcessList();
    trace(QStringLiteral("LoadMain 1.13"));
    splash(QStringLiteral("Processor setup...."));
    sources_.cpu->GetCpuUsage(true, false, 0);
    trace(QStringLiteral("LoadMain 1.14"));
    splash(QStringLiteral("Drive info...."));
    sources_.drives->GetDriveInfo();
    trace(QStringLiteral("LoadMain 1.15"));
    lists.cmbDriveList.clear();
    for (const DriveRecord& d : sources_.drives->DriveTable) {
        if (d.Name.isEmpty())
            continue;
        lists.cmbDriveList << d.Name + QStringLiteral(" [") +
                                  QString::number(qRound64(d.TotalBytes / 1073741824.0)) + QStringLiteral(" GB]") +
                                  QStringLiteral(" [") + d.VolumeName + QStringLiteral("]");
    }
    trace(QStringLiteral("LoadMain 1.16"));

    // 17.
    lists.cmbCPU.clear();
    for (int c = 0; c < sources_.cpu->ProcessorCount; ++c)
        lists.cmbCPU << QStringLiteral("CPU %1").arg(c);
    trace(QStringLiteral("LoadMain 1.1"));

    // 18.
    splash(QStringLiteral("Adaptor setup...."));
    trace(QStringLiteral("LoadMain 1.2"));
    lists.cmbNetCard = sources_.adapters->descriptions();
    trace(QStringLiteral("LoadMain 1.3"));

    // 19.
    firstRunOrLoad();

    // 20. to 23. A failing wireless query leaves the list empty.
    splash(QStringLiteral("Locating WIFI adaptors...."));
    trace(QStringLiteral("LoadMain 1.4"));
    lists.cmbSSID.clear();
    if (sources_.wifi->Wifi()) {
        trace(QStringLiteral("LoadMain 1.41"));
        for (const WifiRow& row : sources_.wifi->WifiScan())
            if (!row.SSID.isEmpty() && !lists.cmbSSID.contains(row.SSID))
                lists.cmbSSID << row.SSID;
        trace(QStringLiteral("LoadMain 1.42"));
    }
    trace(QStringLiteral("LoadMain 1.5"));
    trace(QStringLiteral("LoadMain 1.55"));
    splash(QStringLiteral("Initializing ToolTips...."));
    trace(QStringLiteral("LoadMain 1.6"));
    splash(QStringLiteral("Indexes...."));
    ProcessIndexes(Sensors, *sources_.processes);
    linkedProcessGeneration_ = sources_.processes->generation();
    trace(QStringLiteral("LoadMain 1.7"));

    // 24.
    lists.cmbLineType = {QStringLiteral("Solid Line"), QStringLiteral("Dashes"), QStringLiteral("Dots"),
                         QStringLiteral("Dash-Dot"), QStringLiteral("Dash-Dot-Dot")};
    lists.cmbLineWidth = {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4"),
                          QStringLiteral("5")};

    // 25. to 30.
    splash(QStringLiteral("List setup...."));
    trace(QStringLiteral("LoadMain 1.75"));
    trace(QStringLiteral("LoadMain 1.8"));
    splash(QStringLiteral("Menu setup...."));
    splash(QStringLiteral("Testing URLs...."));
    for (size_t i = 0; i < Sensors.size(); ++i)
        for (size_t j = 0; j < Sensors[i].Nodes.size(); ++j) {
            const Node& n = Sensors[i].Nodes[j];
            if (!Sensors[i].LogGraph && ((n.NodeType == WebsiteType && n.WebsiteMaster) || n.NodeType == LanType))
                transfers_->TestDownload(int(i), int(j));
        }
    splash(QStringLiteral("Retrieving setup from server...."));
    transfers_->LoadTestOptions();
    trace(QStringLiteral("LoadMain 1.85"));
    splash(QStringLiteral("Loading Alerts...."));
    LoadAlerts(store_, alertTester.Alerts, alertTester.mail, alertTester.AlertOptions);
    trace(QStringLiteral("LoadMain 1.9"));
    PanelReady = true;
    splash(QStringLiteral("Finalizing...."));
    trace(QStringLiteral("LoadMain 1.95"));

    // 31.
    logWriter_ = std::make_unique<LogWriter>(options_.dataDir, clock_, Settings.LogType);
    tmrDataEnabled = true;
    trace(QStringLiteral("LoadMain 2.0"));
    return true;
}

void Monitor::firstRunOrLoad()
{
    // Only a missing value or "True" is a first start: anything else a hand left
    // there must not cost the user the Graphs of the file.
    const bool firstRun =
        parseBool(store_.readValue(SettingsKey, QStringLiteral("FirstRun"), QStringLiteral("True"))).value_or(false);
    if (firstRun) {
        store_.writeValue(SettingsKey, QStringLiteral("FirstRun"), QStringLiteral("False"));
        Settings.FirstRun = false;
        firstStart = true;
        Settings.DisplayToolTips = true;
        Settings.ShowDataTypeErrors = true;
        Settings.AutoStart = true;
        AddSensor(false);
        addNotice(QLatin1String(ProductName) + QStringLiteral(" Startup Tip"),
                  QStringLiteral("To help you get started;\n"
                                 "Click on the (New Graph 1) item on the left of the main control panel to change "
                                 "options for the graph.\n"
                                 "Click on the (New Node 1) just under New Graph 1 to change its options or data "
                                 "type.\n"
                                 "Node = A Line/Bar on a Graph"));
        return;
    }
    Settings.FirstRun = false;
    AutoStartEntry& autoStart = *autoStart_;
    LoadSensors(store_, Settings, Sensors, sources_.adapterMap(), autoStart, clock_.now());
    refreshGadgetFeed();
    GraphForms.clear();
    for (size_t i = 0; i < Sensors.size(); ++i) {
        splash(QStringLiteral("Loading Graphs...."));
        GraphForms.push_back(views_.make(int(i)));
        GraphForms.back()->OpenGraph();
        cascade.x += 17;
        cascade.y += 17;
    }
}

void Monitor::loadWithoutStart(int viewGraph)
{
    sources_.adapters->GetAdapters(true);
    LoadSensors(store_, Settings, Sensors, sources_.adapterMap(), *autoStart_, clock_.now());
    GraphForms.clear();
    GraphForms.resize(Sensors.size());
    if (viewGraph >= 0 && size_t(viewGraph) < Sensors.size()) {
        GraphForms[size_t(viewGraph)] = views_.make(viewGraph);
        GraphForms[size_t(viewGraph)]->OpenGraph();
    }
}

}  // namespace orm

namespace orm {

void Monitor::refreshGadgetFeed()
{
    bool anyGadget = false;
    for (size_t i = 0; i < Sensors.size(); ++i) {
        anyGadget = anyGadget || Sensors[i].GraphType == VistaGadget;
        for (size_t j = 0; j < Sensors[i].Nodes.size(); ++j)
            NodeCatalogueEntry(Sensors, int(i), int(j));
    }
    if (anyGadget && gadgetFolder.isEmpty())
        gadgetFolder = findGadgetFolder(defaultGadgetBases());
    WriteAvail(Sensors, gadgetFolder);
}

}  // namespace orm
