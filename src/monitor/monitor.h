// The monitor: the model, the sources, the tick and the start and stop of the
// program, everything the control panel owns except its widgets.
#pragma once

#include "alerts/alert_tester.h"
#include "model/autostart.h"
#include "model/clock.h"
#include "model/graph_view.h"
#include "model/key_value_store.h"
#include "model/model.h"
#include "model/settings_store.h"
#include "monitor/instance_lock.h"
#include "monitor/source_set.h"
#include "monitor/tick_health.h"
#include "logging/log_writer.h"

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

namespace orm {

class Transfers;

struct MonitorOptions {
    QString dataDir;
    QString commandLine;   // the words given to the program, searched for "txtDebug" and "VDDebugMode"
    QString execPath;      // written into the autostart entry
};

// The panel's lists that start-up fills; the windows show them later.
struct PanelLists {
    QStringList cmbDriveList;
    QStringList cmbCPU;
    QStringList cmbNetCard;
    QStringList cmbSSID;
    QStringList cmbLineType;
    QStringList cmbLineWidth;
};

// Something the user must be told: a tray balloon or a message box.
struct Notice {
    QString title;
    QString text;
    bool warning = false;  // headless, on the error output
};

class Monitor {
public:
    Monitor(MonitorOptions options, const Clock& clock, KeyValueStore& store, SourceSet& sources,
            GraphViewFactory& views);
    ~Monitor();

    // Start-up without windows, in the fixed order. False when the program must not run on
    // (another instance holds the data folder); startError() says why.
    bool startUp();
    // Shut-down: only when Closing is set.
    void unload();
    // The Graphs as stored, with the adapter table and a view for `viewGraph`,
    // for a reader beside a running monitor: no lock, no start-up, nothing written.
    void loadWithoutStart(int viewGraph);

    // One tick of tmrData.
    void TimerData();
    // CloseTimer: re-reads the stop signal; true when the program should unload now.
    bool CloseTimer();

    // Structural edits.
    void AddSensor(bool logGraph);
    void SaveSettings();
    // Gadget keys of every Node, the gadget's folder when a gadget Graph exists, avail.txt.
    void refreshGadgetFeed();

    // Model.
    std::vector<Graph> Sensors;
    std::vector<std::unique_ptr<GraphView>> GraphForms;
    ProgramSettings Settings;
    PanelLists lists;
    std::vector<Notice> notices;   // shown by the shell, printed when headless
    bool PanelReady = false;
    bool firstStart = false;  // this start made the first Graph and showed the start-up tip
    bool DebugMode = false;
    CascadePosition cascade{100, 100};
    QString gadgetFolder;  // the sidebar gadget's folder, once found

    // Loop state.
    bool TickBusy = false;
    bool Closing = false;
    double TickCount = 0;
    qint32 TickStart = 0;
    qint32 LastTick = 0;
    double TickLength = 0;
    double DataTime = 0, DisplayTime = 0, LogsTime = 0, AlertsTime = 0;
    bool TestSetupLoaded = false;
    bool TestSetupBusy = false;
    qint16 TestSetupWait = 0;
    bool AsyncCopyDue = false;
    bool tmrDataEnabled = false;

    // The Alerts, their mail settings and mail client; TestAlerts runs in the tick.
    AlertTester alertTester;

    // lblDataRetrieval and its red state; the red stays until the user clicks it.
    QString retrievalText;
    bool retrievalRed = false;
    QString retrievalToolTip() const;
    void clearRetrievalRed() { retrievalRed = false; }

    // Shows a start-up step's text (the splash window); nothing when headless.
    std::function<void(const QString&)> onSplash;

    // Runs as shut-down begins, while every view still stands (the headless snapshot).
    std::function<void()> onUnload;

    // Set when the program must end with a failure (a log that cannot be written).
    QString fatalError;

    // What the metrics endpoint reads of the monitor's own running; null until
    // recordHealth(), so that a monitor without the endpoint records nothing.
    // From then on the tick also keeps each Node's NewestSample.
    void recordHealth();
    const TickHealth* health() const { return health_.get(); }

    bool commandLineHas(const QString& word) const;
    const Clock& clock() const { return clock_; }
    SourceSet& sources() { return sources_; }
    KeyValueStore& store() { return store_; }
    LogWriter& logWriter() { return *logWriter_; }
    // The Website, LAN and Speed Test transfers (the two Downloaders, the LAN copy).
    Transfers& transfers() { return *transfers_; }
    QString startError() const { return startError_; }
    const QString& dataDir() const { return options_.dataDir; }
    QString debugLogPath() const;

    // Evaluation (exposed for tests of the rules).
    void DisplayData();
    double evaluateNode(Graph& graph, Node& node, int graphIndex, int nodeIndex, double seconds);
    double evaluateAdapterNode(Node& node, double seconds);

private:
    struct TickFlags {
        LogFlags read;
        LogFlags log;
    };
    void setFlags(TickFlags& flags);
    void readSources(const TickFlags& flags);
    void logData(const LogFlags& flags);
    void linkProcessNodes();
    void firstRunOrLoad();
    void addNotice(const QString& title, const QString& text, bool warning = false);
    void splash(const QString& text)
    {
        if (onSplash)
            onSplash(text);
    }
    void endTick(qint64 startedNanoseconds);

    MonitorOptions options_;
    const Clock& clock_;
    KeyValueStore& store_;
    SourceSet& sources_;
    GraphViewFactory& views_;
    std::unique_ptr<LogWriter> logWriter_;
    std::unique_ptr<Transfers> transfers_;
    std::unique_ptr<AutoStartEntry> autoStart_;
    InstanceLock instanceLock_;
    std::unique_ptr<TickHealth> health_;
    QString startError_;
    qint32 tickUptime_ = 0;  // up-time clock at this tick's start (SYS_TMR, uptime Node)
    // Refilled each tick, so that their lists keep their room: the flags of
    // what is read and logged, what the log line is made of, and the values
    // of the Graph being evaluated.
    TickFlags tickFlags_;
    LogInputs logInputs_;
    std::vector<double> graphValues_;
    qint32 retrievalMs_ = 0;  // the total that retrievalText says
    bool unloaded_ = false;
    quint64 linkedProcessGeneration_ = 0;  // the process table's rebuild the Nodes were linked to
    // The process folders are listed, and a row's working set read, once an
    // evaluation pass however many Nodes ask. 0 outside a pass: every call reads.
    bool processReadInPass(quint64& readInPass);
    quint64 evaluationPass_ = 0;
    quint64 passCount_ = 0;
    quint64 processListPass_ = 0;
    std::vector<quint64> processMemoryPass_;
};

// The rules shared by several Node types.
double percentageRule(qint16 measuring, const QString& dataType, double total, double available);
double rateRule(Node& node, double counter, double seconds);

}  // namespace orm
