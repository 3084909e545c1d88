#include "logging/log_line.h"

#include "model/number_text.h"

#include <algorithm>

namespace orm {

namespace {

// Appends one column and its value, each behind the separator.
class LineBuilder {
public:
    LineBuilder(QChar sep, LogLine& line) : sep_(sep), line_(line) {}

    void add(const QString& name, const QString& value)
    {
        line_.fields += sep_;
        line_.fields += name;
        line_.values += sep_;
        line_.values += value;
    }
    void add(const QString& name, double value) { add(name, numberText(value)); }
    void addInt(const QString& name, qint64 value) { add(name, QString::number(value)); }

private:
    QChar sep_;
    LogLine& line_;
};

QString withoutBlanksAndCommas(QString s)
{
    s.remove(QLatin1Char(' '));
    s.remove(QLatin1Char(','));
    return s;
}

void addGroups(const LogFlags& flags, const LogInputs& in, LineBuilder& b)
{
    if (flags.logAdapters) {
        for (size_t i = 0; i < in.adapters.size(); ++i) {
            const AdapterLogRow& a = in.adapters[i];
            const QString n = QString::number(i);
            b.add(QStringLiteral("ADPT_DN_") + n, a.DownDelta);
            b.add(QStringLiteral("ADPT_UP_") + n, a.UpDelta);
            b.add(QStringLiteral("ADPT_ERR_DN_") + n, a.InErrors);
            b.add(QStringLiteral("ADPT_ERR_UP_") + n, a.OutErrors);
        }
    }
    if (flags.logMemory) {
        const MemoryLogFigures& m = in.memory;
        b.add(QStringLiteral("MEM_TOT"), m.TotalPhys);
        b.add(QStringLiteral("MEM_V_TOT"), m.TotalVirtual);
        b.add(QStringLiteral("MEM_P_TOT"), m.TotalPageFile);
        b.add(QStringLiteral("MEM_AVA"), m.AvailPhys);
        b.add(QStringLiteral("MEM_V_AVA"), m.AvailVirtual);
        b.add(QStringLiteral("MEM_P_AVA"), m.AvailPageFile);
    }
    if (flags.logBattery)
        b.addInt(QStringLiteral("BATTERY"), in.battery);
    if (flags.logCPU) {
        for (size_t i = 0; i < in.cpu.size(); ++i)
            b.addInt(QStringLiteral("CPU") + QString::number(i), in.cpu[i]);
    }
    if (flags.logWifi) {
        // An empty table simply gives no columns.
        for (const WifiLogRow& w : in.wifi)
            b.add(QStringLiteral("WIFI_") + withoutBlanksAndCommas(w.SSID), w.Signal);
    }
    // A flag without a drive row behind it (the table shrank) writes nothing.
    const size_t drives = std::min(flags.logDrives.size(), in.drives.size());
    for (size_t i = 0; i < drives; ++i) {
        if (!flags.logDrives[i])
            continue;
        const DriveLogRow& d = in.drives[i];
        b.add(QStringLiteral("DISK_FREE_") + d.Name, d.FreeBytes);
        b.add(QStringLiteral("DISK_R_") + d.Name, d.ReadDelta);
        b.add(QStringLiteral("DISK_W_") + d.Name, d.WriteDelta);
    }
    if (flags.logProcesses)
        b.addInt(QStringLiteral("PROCS"), in.processUpperBound);
}

// The Node columns read the Node's own result fields: Bandwidth, ResponseTime,
// ConnectTime and ErrorCount for transfers, PingPacketSize and PingState4 for a
// ping, and the process memory table for a Process Node.
void addNodeColumns(const std::vector<Graph>& sensors, const std::vector<double>& processMemory,
                    LineBuilder& b)
{
    const QString notDue = QStringLiteral("-");
    for (const Graph& g : sensors) {
        if (g.LogGraph)
            continue;
        const bool due = g.TicksToSample == 0;
        auto value = [&](double v) { return due ? numberText(v) : notDue; };
        auto intValue = [&](qint64 v) { return due ? QString::number(v) : notDue; };
        for (const Node& n : g.Nodes) {
            if (!n.LogData)
                continue;
            switch (n.NodeType) {
            case WebsiteType:
                if (n.WebsiteMaster) {
                    const QString u = logUrlName(n.DownloadURL);
                    b.add(QStringLiteral("RESULT_") + u, value(n.Bandwidth));
                    b.add(QStringLiteral("RTIME_") + u, value(n.ResponseTime));
                    b.add(QStringLiteral("RCONNECTTIME_") + u, value(n.ConnectTime));
                    b.add(QStringLiteral("RERROR_") + u, value(n.ErrorCount));
                }
                break;
            case LanType:
                b.add(QStringLiteral("RESULT_") + logUrlName(n.DownloadURL), value(n.Bandwidth));
                break;
            case PingType:
                b.add(QStringLiteral("PING_SIZE_") + n.PingIP, intValue(n.PingPacketSize));
                b.add(QStringLiteral("PING_RTT_") + n.PingIP, intValue(n.PingState4));
                break;
            case SpeedTestType:
                b.add(QStringLiteral("RESULTSERVER_DOWNLOAD"), value(n.Bandwidth));
                break;
            case ProcessType:
                // A process that ended leaves its index beyond the table: the column
                // goes, and the changed column set brings a new header block.
                if (n.ProcessIndex >= 0 && size_t(n.ProcessIndex) < processMemory.size())
                    b.add(n.ProcessMonitoring, value(processMemory[size_t(n.ProcessIndex)]));
                break;
            default:
                break;  // the other types reach the log through their group
            }
        }
    }
}

}  // namespace

QChar logSeparator(qint32 logType)
{
    return logType == 0 ? QLatin1Char(',') : QLatin1Char(' ');
}

QString logUrlName(const QString& url)
{
    return withoutBlanksAndCommas(url.toUpper());
}

LogLine buildLogLine(const LogFlags& flags, const LogInputs& in, const QString& date,
                     const QString& time, QChar separator)
{
    LogLine line;
    line.fields = QStringLiteral("#Fields: DATE");
    line.values = date;
    LineBuilder b(separator, line);
    b.add(QStringLiteral("TIME"), time);
    b.add(QStringLiteral("SAMPLE_LENGTH_MILLI_S"), in.SampleLength);
    b.addInt(QStringLiteral("SYS_TMR"), in.SysTmr);

    addGroups(flags, in, b);

    if (in.sensors && (flags.logProcess || flags.logPing || flags.logWebsite || flags.logTestDownload))
        addNodeColumns(*in.sensors, in.processMemory, b);
    return line;
}

}  // namespace orm
