// The life of one tick: decide which sources are needed, read each once,
// evaluate the Graphs that are due, write the log line, test the Alerts.
#include "model/debug_log.h"
#include "monitor/monitor.h"
#include "monitor/transfers.h"

namespace orm {

namespace {

// Sets the flag that a Node type names in one flag set; `drive` is the row of
// the Node's drive, -1 when the drive table has no such name.
void setTypeFlag(LogFlags& f, int nodeType, int drive, bool forLog)
{
    switch (nodeType) {
    case WebsiteType:
    case LanType:
        if (forLog)
            f.logWebsite = true;
        break;
    case CpuType:
        f.logCPU = true;
        break;
    case RamType:
    case PageFileType:
    case VMemoryType:
        f.logMemory = true;
        break;
    case PingType:
        if (forLog)
            f.logPing = true;
        break;
    case DriveSpaceType:
    case DiskRWType:
    case DiskReadType:
    case DiskWriteType:
        if (drive >= 0 && size_t(drive) < f.logDrives.size())
            f.logDrives[size_t(drive)] = true;
        break;
    case UpDownType:
    case DownloadNodeType:
    case UploadType:
        f.logAdapters = true;
        break;
    case ProcessesType:
        if (forLog)
            f.logProcesses = true;
        break;
    case ProcessType:
        if (forLog)
            f.logProcess = true;
        break;
    case BatteryType:
        if (forLog)
            f.logBattery = true;
        break;
    case WifiType:
        if (forLog)
            f.logWifi = true;
        break;
    default:  // error Nodes, uptime: no source read, no column
        break;
    }
}

}  // namespace

void Monitor::setFlags(TickFlags& flags)
{
    DriveInfo& drives = *sources_.drives;
    for (size_t i = 0; i < Sensors.size(); ++i) {
        Graph& g = Sensors[i];
        if (g.LogGraph)
            continue;
        for (Node& n : g.Nodes) {
            const bool isDriveType = n.NodeType == DriveSpaceType || (n.NodeType >= DiskRWType && n.NodeType <= DiskWriteType);
            const int drive = isDriveType ? drives.indexOf(n.DriveMonitoring) : -1;
            if (g.TicksToSample == 0) {
                setTypeFlag(flags.read, n.NodeType, drive, false);
                if (n.NodeType == SpeedTestType)
                    transfers_->applyMinimumRule(int(i), n);
            }
            if (n.LogData) {
                if (n.NodeType == SpeedTestType) {
                    if (TestSetupLoaded || TestSetupBusy) {
                        flags.log.logTestDownload = true;
                    } else {
                        transfers_->countSetupWait();
                    }
                } else {
                    setTypeFlag(flags.log, n.NodeType, drive, true);
                }
            }
        }
    }
}

void Monitor::readSources(const TickFlags& f)
{
    const LogFlags& r = f.read;
    const LogFlags& l = f.log;
    if (r.logAdapters || l.logAdapters)
        sources_.adapters->GetAdapters(false);
    if (r.logMemory || l.logMemory)
        sources_.memory->GetMemoryStatus();
    if (r.logCPU || l.logCPU)
        sources_.cpu->GetCpuUsage(false, false, 0);
    DriveInfo& drives = *sources_.drives;
    for (size_t d = 0; d < drives.DriveTable.size() && d < r.logDrives.size(); ++d) {
        if (r.logDrives[d] || l.logDrives[d])
            drives.UpdateDriveCounters(int(d));
    }
}

void Monitor::TimerData()
{
    // 1. A firing during a tick is lost, not queued.
    if (TickBusy)
        return;
    TickBusy = true;
    const qint64 startedNanoseconds = health_ ? clock_.monotonicNanoseconds() : 0;
    debugLog().enter(QStringLiteral("TimerData"));

    // 2.
    TickStart = clock_.tickCount();
    tickUptime_ = clock_.uptimeTickCount();
    TickCount += 1;
    if (LastTick == 0)
        LastTick = qint32(quint32(TickStart) - 1000u);
    TickLength = tickDiff(TickStart, LastTick);
    LastTick = TickStart;

    auto finish = [this, startedNanoseconds] {
        debugLog().leave(QStringLiteral("TimerData"));
        endTick(startedNanoseconds);
    };

    // 3.
    TickFlags& flags = tickFlags_;
    const size_t driveRows = sources_.drives->DriveTable.size();
    flags.read.reset(driveRows);
    flags.log.reset(driveRows);
    if (Closing)
        return finish();

    // 4.
    setFlags(flags);
    if (Closing)
        return finish();

    // 6. and 7.
    readSources(flags);
    DataTime = tickDiff(clock_.tickCount(), TickStart);
    if (Closing)
        return finish();

    // 8.
    qint32 mark = clock_.tickCount();
    DisplayData();
    DisplayTime = tickDiff(clock_.tickCount(), mark);
    if (Closing)
        return finish();

    // 9.
    mark = clock_.tickCount();
    logData(flags.log);
    LogsTime = tickDiff(clock_.tickCount(), mark);
    if (Closing)
        return finish();

    // 10.
    const qint32 total = tickDiff(clock_.tickCount(), TickStart);
    // The total is the same whole millisecond tick after tick: the text is made anew only when it changes.
    if (total != retrievalMs_ || retrievalText.isEmpty()) {
        retrievalMs_ = total;
        retrievalText = QStringLiteral("Data Retrieval Rate = ") + QString::number(total) + QStringLiteral(" mS");
    }
    if (total > 1000)
        retrievalRed = true;

    // 11.
    mark = clock_.tickCount();
    alertTester.TestAlerts();
    AlertsTime = tickDiff(clock_.tickCount(), mark);

    // 12. and 13.
    transfers_->startDueTransfers();
    if (Closing)
        return finish();

    // 14.
    if (AsyncCopyDue) {
        AsyncCopyDue = false;
        transfers_->enableAsyncCopy();
    }

    if (debugLog().enabled()) {
        debugLog().leaveTag(QStringLiteral("TimerData 2.0 (") +
                            QString::number(tickDiff(clock_.tickCount(), TickStart)) + QStringLiteral(")"));
    }
    endTick(startedNanoseconds);
}

void Monitor::endTick(qint64 startedNanoseconds)
{
    if (health_)
        health_->tickEnded(clock_.monotonicNanoseconds() - startedNanoseconds, TickLength);
    TickBusy = false;
}

QString Monitor::retrievalToolTip() const
{
    const double totalTime = DataTime + DisplayTime + LogsTime + AlertsTime;
    return QStringLiteral("Retrieval Times:\n"
                          "This area shows your data retrieval rates. It is very important to keep these numbers "
                          "very low, preferably under 1 second total. If it turns Red, then you have exceeded 1 "
                          "second previously.\n") +
           QStringLiteral("Data: ") + QString::number(DataTime) + QStringLiteral(" mS\n") +
           QStringLiteral("Display: ") + QString::number(DisplayTime) + QStringLiteral(" mS\n") +
           QStringLiteral("Logs: ") + QString::number(LogsTime) + QStringLiteral(" mS\n") +
           QStringLiteral("Alerts: ") + QString::number(AlertsTime) + QStringLiteral(" mS\n") +
           QStringLiteral("Total: ") + QString::number(totalTime) + QStringLiteral(" mS");
}

void Monitor::logData(const LogFlags& flags)
{
    // Filled anew each tick; the lists keep their room.
    LogInputs& in = logInputs_;
    in.SampleLength = TickLength;
    in.SysTmr = tickUptime_;
    in.sensors = &Sensors;
    in.memory = {};
    if (flags.logMemory) {
        const MemoryFigures& m = sources_.memory->figures;
        in.memory = {m.MemTotalPhys, m.MemTotalVirtual, m.MemTotalPageFile,
                     m.MemAvailPhys, m.MemAvailVirtual, m.MemAvailPageFile};
    }
    in.adapters.clear();
    if (flags.logAdapters) {
        for (const AdapterRecord& a : sources_.adapters->AdapterTable)
            in.adapters.push_back({a.InDelta, a.OutDelta, a.InErrors, a.OutErrors});
    }
    in.battery = flags.logBattery ? sources_.battery->BatteryLifePercent() : qint16(0);
    in.cpu.clear();
    if (flags.logCPU)
        in.cpu.assign(sources_.cpu->CpuUsageValues.begin(), sources_.cpu->CpuUsageValues.end());
    in.wifi.clear();
    if (flags.logWifi) {
        for (const WifiRow& w : sources_.wifi->WifiNetworks())
            in.wifi.push_back({w.SSID, double(w.Signal)});
    }
    in.processUpperBound = flags.logProcesses ? sources_.processes->upperBound() : -1;
    in.processMemory.clear();
    if (flags.logProcess) {
        linkProcessNodes();  // a Node unlinked has no column: never another process's figure
        // Only the rows that logged Process Nodes watch are read.
        const ProcessTable& table = *sources_.processes;
        in.processMemory.assign(table.rows().size(), 0.0);
        for (const Graph& g : Sensors)
            for (const Node& n : g.Nodes)
                if (n.NodeType == ProcessType && n.LogData && n.ProcessIndex >= 0 &&
                    size_t(n.ProcessIndex) < in.processMemory.size())
                    in.processMemory[size_t(n.ProcessIndex)] = double(table.memoryAt(n.ProcessIndex));
    }
    const auto& table = sources_.drives->DriveTable;
    in.drives.assign(flags.logDrives.size(), DriveLogRow{});
    for (size_t d = 0; d < flags.logDrives.size() && d < table.size(); ++d) {
        if (flags.logDrives[d])
            in.drives[d] = {table[d].Name, table[d].FreeBytes, table[d].ReadDelta, table[d].WriteDelta};
    }
    if (!logWriter_->LogData(flags, in)) {
        fatalError = logWriter_->error();
        Closing = true;
    } else if (health_) {
        health_->logLineWritten();
    }
}

}  // namespace orm
