#include "logging/log_line.h"

#include "model/number_text.h"

#include <algorithm>

namespace orm {

namespace {

// The names in columns (drives, hosts, processes, URLs) are nearly always
// ASCII: those go straight in, without a temporary copy each tick.
void appendUtf8(std::string& to, const QString& text)
{
    qsizetype i = 0;
    for (; i < text.size() && text[i].unicode() < 0x80; ++i)
        to += char(text[i].unicode());
    if (i < text.size()) {
        const QByteArray rest = QStringView(text).mid(i).toUtf8();
        to.append(rest.constData(), size_t(rest.size()));
    }
}

QString withoutBlanksAndCommas(QString s)
{
    s.remove(QLatin1Char(' '));
    s.remove(QLatin1Char(','));
    return s;
}

// A name that goes into a column without its blanks and commas (a Wi-Fi
// network, a URL in upper case). ASCII goes straight in, as above; anything
// else takes the long way, which case rules beyond ASCII need.
void appendWithoutBlanksAndCommas(std::string& to, const QString& text, bool upper)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x80) {
            appendUtf8(to, withoutBlanksAndCommas(upper ? text.toUpper() : text));
            return;
        }
    }
    for (const QChar c : text) {
        char a = char(c.unicode());
        if (a == ' ' || a == ',')
            continue;
        if (upper && a >= 'a' && a <= 'z')
            a = char(a - 'a' + 'A');
        to += a;
    }
}

// Appends one column and its value, each behind the separator.
class LineBuilder {
public:
    LineBuilder(char sep, LogLineText& line) : sep_(sep), line_(line) {}

    // The column's name: a fixed part, and a number or a text after it.
    void name(std::string_view base) { line_.fields += sep_; line_.fields += base; }
    void name(std::string_view base, qint64 number)
    {
        name(base);
        appendNumber(line_.fields, double(number));
    }
    void name(std::string_view base, const QString& text)
    {
        name(base);
        appendUtf8(line_.fields, text);
    }
    // The same with blanks and commas left out of the text, and in upper case when `upper`.
    void cleanName(std::string_view base, const QString& text, bool upper)
    {
        name(base);
        appendWithoutBlanksAndCommas(line_.fields, text, upper);
    }
    void value(double v)
    {
        line_.values += sep_;
        appendNumber(line_.values, v);
    }
    void value(std::string_view text)
    {
        line_.values += sep_;
        line_.values += text;
    }
    static void appendNumber(std::string& to, double v)
    {
        char buf[NumberTextSize];
        to.append(buf, size_t(numberTextTo(v, buf)));
    }

private:
    char sep_;
    LogLineText& line_;
};

void addGroups(const LogFlags& flags, const LogInputs& in, LineBuilder& b)
{
    if (flags.logAdapters) {
        for (size_t i = 0; i < in.adapters.size(); ++i) {
            const AdapterLogRow& a = in.adapters[i];
            const qint64 n = qint64(i);
            b.name("ADPT_DN_", n);
            b.value(a.DownDelta);
            b.name("ADPT_UP_", n);
            b.value(a.UpDelta);
            b.name("ADPT_ERR_DN_", n);
            b.value(a.InErrors);
            b.name("ADPT_ERR_UP_", n);
            b.value(a.OutErrors);
        }
    }
    if (flags.logMemory) {
        const MemoryLogFigures& m = in.memory;
        const std::pair<const char*, double> columns[] = {
            {"MEM_TOT", m.TotalPhys},  {"MEM_V_TOT", m.TotalVirtual}, {"MEM_P_TOT", m.TotalPageFile},
            {"MEM_AVA", m.AvailPhys}, {"MEM_V_AVA", m.AvailVirtual}, {"MEM_P_AVA", m.AvailPageFile}};
        for (const auto& [name, value] : columns) {
            b.name(name);
            b.value(value);
        }
    }
    if (flags.logBattery) {
        b.name("BATTERY");
        b.value(double(in.battery));
    }
    if (flags.logCPU) {
        for (size_t i = 0; i < in.cpu.size(); ++i) {
            b.name("CPU", qint64(i));
            b.value(double(in.cpu[i]));
        }
    }
    if (flags.logWifi) {
        // An empty table simply gives no columns.
        for (const WifiLogRow& w : in.wifi) {
            b.cleanName("WIFI_", w.SSID, false);
            b.value(w.Signal);
        }
    }
    // A flag without a drive row behind it (the table shrank) writes nothing.
    const size_t drives = std::min(flags.logDrives.size(), in.drives.size());
    for (size_t i = 0; i < drives; ++i) {
        if (!flags.logDrives[i])
            continue;
        const DriveLogRow& d = in.drives[i];
        b.name("DISK_FREE_", d.Name);
        b.value(d.FreeBytes);
        b.name("DISK_R_", d.Name);
        b.value(d.ReadDelta);
        b.name("DISK_W_", d.Name);
        b.value(d.WriteDelta);
    }
    if (flags.logProcesses) {
        b.name("PROCS");
        b.value(double(in.processUpperBound));
    }
}

// The Node columns read the Node's own result fields: Bandwidth, ResponseTime,
// ConnectTime and ErrorCount for transfers, PingPacketSize and PingState4 for a
// ping, and the process memory table for a Process Node.
void addNodeColumns(const std::vector<Graph>& sensors, const std::vector<double>& processMemory,
                    LineBuilder& b)
{
    for (const Graph& g : sensors) {
        if (g.LogGraph)
            continue;
        const bool due = g.TicksToSample == 0;
        auto value = [&](double v) {
            if (due)
                b.value(v);
            else
                b.value("-");
        };
        for (const Node& n : g.Nodes) {
            if (!n.LogData)
                continue;
            switch (n.NodeType) {
            case WebsiteType:
                if (n.WebsiteMaster) {
                    // The address in upper case, without blanks and commas.
                    const QString& u = n.DownloadURL;
                    b.cleanName("RESULT_", u, true);
                    value(n.Bandwidth);
                    b.cleanName("RTIME_", u, true);
                    value(n.ResponseTime);
                    b.cleanName("RCONNECTTIME_", u, true);
                    value(n.ConnectTime);
                    b.cleanName("RERROR_", u, true);
                    value(n.ErrorCount);
                }
                break;
            case LanType:
                b.cleanName("RESULT_", n.DownloadURL, true);
                value(n.Bandwidth);
                break;
            case PingType:
                b.name("PING_SIZE_", n.PingIP);
                value(double(n.PingPacketSize));
                b.name("PING_RTT_", n.PingIP);
                value(double(n.PingState4));
                break;
            case SpeedTestType:
                b.name("RESULTSERVER_DOWNLOAD");
                value(n.Bandwidth);
                break;
            case ProcessType:
                // A process that ended leaves its index beyond the table: the column
                // goes, and the changed column set brings a new header block.
                if (n.ProcessIndex >= 0 && size_t(n.ProcessIndex) < processMemory.size()) {
                    b.name("", n.ProcessMonitoring);
                    value(processMemory[size_t(n.ProcessIndex)]);
                }
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

void writeLogLine(const LogFlags& flags, const LogInputs& in, std::string_view date, std::string_view time,
                  char separator, LogLineText& line)
{
    line.fields.assign("#Fields: DATE");
    line.values.assign(date);
    LineBuilder b(separator, line);
    b.name("TIME");
    b.value(time);
    b.name("SAMPLE_LENGTH_MILLI_S");
    b.value(in.SampleLength);
    b.name("SYS_TMR");
    b.value(double(in.SysTmr));

    addGroups(flags, in, b);

    if (in.sensors && (flags.logProcess || flags.logPing || flags.logWebsite || flags.logTestDownload))
        addNodeColumns(*in.sensors, in.processMemory, b);
}

LogLine buildLogLine(const LogFlags& flags, const LogInputs& in, const QString& date,
                     const QString& time, QChar separator)
{
    LogLineText text;
    writeLogLine(flags, in, date.toStdString(), time.toStdString(), char(separator.toLatin1()), text);
    return {QString::fromStdString(text.fields), QString::fromStdString(text.values)};
}

}  // namespace orm
