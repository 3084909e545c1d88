// DisplayData: one value for each Node of each Graph whose turn has come,
// handed to the Graph's view.
#include "model/debug_log.h"
#include "monitor/gadget_feed.h"
#include "monitor/monitor.h"
#include "model/number_text.h"
#include "monitor/transfers.h"


namespace orm {

double percentageRule(qint16 measuring, const QString& dataType, double total, double available)
{
    const bool percent = dataType == QStringLiteral("percent");
    switch (measuring) {
    case 0:
        return percent ? 100.0 : total;
    case 1:
        if (!percent)
            return total - available;
        return total != 0 ? (total - available) / total * 100.0 : 0.0;  // a total of 0 reads 0
    case 2:
        if (!percent)
            return available;
        return total != 0 ? available / total * 100.0 : 0.0;
    default:
        return 0.0;
    }
}

double rateRule(Node& node, double counter, double seconds)
{
    if (node.LastRawValue == 0)
        node.LastRawValue = counter;
    const double delta = counter - node.LastRawValue;
    node.LastRawValue = counter;
    return seconds != 0 ? delta / seconds : 0.0;
}

double Monitor::evaluateNode(Graph& graph, Node& node, int graphIndex, int nodeIndex, double seconds)
{
    const MemoryFigures& mem = sources_.memory->figures;
    DriveInfo& drives = *sources_.drives;
    auto drive = [&]() -> DriveRecord* {
        const int d = drives.indexOf(node.DriveMonitoring);
        // A drive that is not in the table reads 0: the panel only offers drives that exist.
        return d >= 0 && size_t(d) < drives.DriveTable.size() ? &drives.DriveTable[size_t(d)] : nullptr;
    };

    switch (node.NodeType) {
    case WebsiteType:
        return transfers_->evaluateWebsite(node, graphIndex, nodeIndex);
    case LanType:
        return transfers_->evaluateLan(node, graphIndex, nodeIndex);
    case SpeedTestType:
        return transfers_->evaluateSpeedTest(node, graphIndex, nodeIndex);
    case CpuType:
        trace(QStringLiteral("DisplayData CPU"));
        return sources_.cpu->value(node.CPUNumber);
    case RamType:
        trace(QStringLiteral("DisplayData RAM"));
        return percentageRule(node.Measuring, graph.DataType, mem.MemTotalPhys, mem.MemAvailPhys);
    case DriveSpaceType: {
        trace(QStringLiteral("DisplayData HDD"));
        const DriveRecord* d = drive();
        return d ? percentageRule(node.Measuring, graph.DataType, d->TotalBytes, d->FreeBytes) : 0.0;
    }
    case PageFileType:
        trace(QStringLiteral("DisplayData PAGE_FILE"));
        return percentageRule(node.Measuring, graph.DataType, mem.MemTotalPageFile, mem.MemAvailPageFile);
    case DiskRWType: {
        trace(QStringLiteral("DisplayData DISK_ACTIVITY"));
        const DriveRecord* d = drive();
        return d ? rateRule(node, d->Performance.BytesRead + d->Performance.BytesWritten, seconds) : 0.0;
    }
    case DiskReadType: {
        trace(QStringLiteral("DisplayData DISK_READ"));
        const DriveRecord* d = drive();
        return d ? rateRule(node, d->Performance.BytesRead, seconds) : 0.0;
    }
    case DiskWriteType: {
        trace(QStringLiteral("DisplayData DISK_WRITE"));
        const DriveRecord* d = drive();
        return d ? rateRule(node, d->Performance.BytesWritten, seconds) : 0.0;
    }
    case PingType:
        // The echo sent at the last evaluation is read now and the next one goes out.
        trace(QStringLiteral("DisplayData PING"));
        return sources_.pings->evaluate(node, graph.SampleEverySeconds);
    case UpDownType:
    case DownloadNodeType:
    case UploadType:
    case UpDnErrType:
    case DownErrType:
    case UpErrType:
        return evaluateAdapterNode(node, seconds);
    case ProcessesType:
        trace(QStringLiteral("DisplayData PROCESSES"));
        if (!processReadInPass(processListPass_))
            sources_.processes->RefreshProcessList();
        return sources_.processes->upperBound();  // one less than the count: kept so
    case ProcessType: {
        trace(QStringLiteral("DisplayData SINGLE_PROCESS"));
        ProcessTable& table = *sources_.processes;
        linkProcessNodes();
        if (!linkedToItsProcess(node, table))
            return 0.0;  // never another process's memory
        // A row listed anew since it was read reads again through memoryAt.
        processMemoryPass_.resize(table.rows().size());
        if (!processReadInPass(processMemoryPass_[size_t(node.ProcessIndex)]))
            table.RefreshProcessMemory(node.ProcessIndex);
        return double(table.memoryAt(node.ProcessIndex));
    }
    case BatteryType:
        trace(QStringLiteral("DisplayData BATTERY"));
        return sources_.battery->BatteryLifePercent();
    case WifiType: {
        trace(QStringLiteral("DisplayData WIFI_SIGNAL"));
        if (!sources_.wifi->WifiStrength())
            return 0.0;
        double value = 0.0;
        for (const WifiRow& row : sources_.wifi->WifiNetworks())  // a later row of the name wins
            if (row.SSID == node.SSID)
                value = row.Signal;
        return value;
    }
    case SysUptimeType:
        trace(QStringLiteral("DisplayData SYSTEM_UPTIME"));
        return double(quint32(tickUptime_));  // restarts from 0 every 49.7 days
    case VMemoryType:
        trace(QStringLiteral("DisplayData VIRTUAL_MEMORY"));
        return percentageRule(node.Measuring, graph.DataType, mem.MemTotalVirtual, mem.MemAvailVirtual);
    default:
        return 0.0;
    }
}

bool Monitor::processReadInPass(quint64& readInPass)
{
    if (evaluationPass_ != 0 && readInPass == evaluationPass_)
        return true;
    readInPass = evaluationPass_;
    return false;
}

// A Process Node's row must hold a process of its name. Rows move with every
// rebuild of the table, whoever asked for it, and the panel may change what a
// Node watches: then every Node is linked again. A Node that found no row
// stays unlinked until the next rebuild.
void Monitor::linkProcessNodes()
{
    const ProcessTable& table = *sources_.processes;
    bool stale = table.generation() != linkedProcessGeneration_;
    for (size_t g = 0; g < Sensors.size() && !stale; ++g)
        for (const Node& node : Sensors[g].Nodes)
            if (node.NodeType == ProcessType && node.ProcessIndex >= 0 && !linkedToItsProcess(node, table))
                stale = true;
    if (!stale)
        return;
    ProcessIndexes(Sensors, table);
    linkedProcessGeneration_ = table.generation();
}

double Monitor::evaluateAdapterNode(Node& node, double seconds)
{
    const auto& table = sources_.adapters->AdapterTable;
    if (node.AdapterIndex < 0 || size_t(node.AdapterIndex) >= table.size())
        return 0.0;  // LastRawValue stays as it was
    const AdapterRecord& a = table[size_t(node.AdapterIndex)];
    switch (node.NodeType) {
    case UpDownType:
        trace(QStringLiteral("DisplayData BANDWIDTH"));
        return rateRule(node, a.InOctets + a.OutOctets, seconds);
    case DownloadNodeType:
        if (debugLog().enabled())  // the text is made only for the trace
            debugLog().log(QStringLiteral("DisplayData DOWNLOAD - ") + QString::number(node.AdapterIndex));
        return rateRule(node, a.InOctets, seconds);
    case UploadType:
        trace(QStringLiteral("DisplayData UPLOAD"));
        return rateRule(node, a.OutOctets, seconds);
    case UpDnErrType:
        trace(QStringLiteral("DisplayData ERROR_TOTAL"));
        return a.InErrors + a.OutErrors;
    case DownErrType:
        trace(QStringLiteral("DisplayData ERROR_DOWNLOAD"));
        return a.InErrors;
    default:
        trace(QStringLiteral("DisplayData ERROR_UPLOAD"));
        return a.OutErrors;
    }
}

void Monitor::DisplayData()
{
    debugLog().enter(QStringLiteral("DisplayData"));
    evaluationPass_ = ++passCount_;
    QString gadgetText;
    QString clockText;  // the time of day, read once a tick when a Graph is due
    bool gadgetDue = false;
    std::vector<double>& values = graphValues_;

    const size_t upper = Sensors.size();
    for (size_t i = 0; i < upper; ++i) {
        // A Graph may have gone while an event ran: the bound is read again each step.
        if (Closing || i >= Sensors.size())
            break;
        Graph& g = Sensors[i];
        if (g.LogGraph)
            continue;
        if (g.TicksToSample != 0) {  // -1 after a stored 0 counts as not due, for good
            --g.TicksToSample;
            continue;
        }
        g.TicksToSample = g.SampleEverySeconds - 1;
        values.assign(g.Nodes.size(), 0.0);
        for (size_t j = 0; j < g.Nodes.size(); ++j) {
            if (Closing)
                break;
            Node& n = g.Nodes[j];
            if (n.LastSampleTime == 0)
                n.LastSampleTime = LastTick;
            const double seconds = tickDiff(LastTick, qint32(qint64(n.LastSampleTime))) / 1000.0;
            n.LastSampleTime = LastTick;
            if (n.NodeType >= WebsiteType && n.NodeType <= WifiType)
                values[j] = evaluateNode(g, n, int(i), int(j), seconds);
            if (debugLog().enabled())
                debugLog().log(QStringLiteral("DisplayData WriteVal-%1|%2|").arg(i).arg(j) + numberText(values[j]));
        }
        if (Closing)
            break;
        if (health_) {
            for (size_t j = 0; j < g.Nodes.size(); ++j)
                g.Nodes[j].NewestSample = values[j];
        }
        trace(QStringLiteral("DisplayData Writing"));
        if (g.GraphType == VistaGadget) {
            gadgetDue = true;
            for (size_t j = 0; j < g.Nodes.size(); ++j)
                gadgetText += gadgetUpdateLine(g.Nodes[j], values[j]);
            continue;
        }
        if (clockText.isEmpty()) {
            char text[16];
            clockText = QString::fromLatin1(text, timeText(clock_.localTime(), text));
        }
        if (i < GraphForms.size() && GraphForms[i])
            GraphForms[i]->WriteGraph(values, clockText, 60, 5);
    }
    if (gadgetDue)
        writeGadgetUpdate(gadgetFolder, gadgetText);
    evaluationPass_ = 0;
    debugLog().leave(QStringLiteral("DisplayData"));
}

}  // namespace orm
