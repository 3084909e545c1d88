#include "monitor/metrics_feed.h"

#include "model/catalogue.h"
#include "model/version.h"
#include "monitor/monitor.h"

#include <QSet>
#include <charconv>
#include <cmath>

namespace orm {

namespace {

void appendHeader(QByteArray& out, const char* name, const char* type, const char* help)
{
    out.append("# HELP ").append(name).append(' ').append(help).append('\n');
    out.append("# TYPE ").append(name).append(' ').append(type).append('\n');
}

void appendUnsigned(QByteArray& out, quint64 n)
{
    char buffer[24];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, n);
    out.append(buffer, r.ptr - buffer);
}

// A metric without labels.
void appendSample(QByteArray& out, const char* name, double value)
{
    out.append(name).append(' ');
    appendSampleValue(out, value);
    out.append('\n');
}

bool transferNode(const Node& n)
{
    return (n.NodeType == WebsiteType && n.WebsiteMaster) || n.NodeType == LanType || n.NodeType == SpeedTestType;
}

// The graph and node labels of every Node of the sampled Graphs, as
// `graph="…",node="…"`. Two Nodes whose names agree would be one series: the
// later one's node label then says where it stands.
std::vector<std::vector<QByteArray>> identityLabels(const std::vector<Graph>& sensors)
{
    std::vector<std::vector<QByteArray>> labels(sensors.size());
    QSet<QByteArray> seen;
    for (size_t g = 0; g < sensors.size(); ++g) {
        const Graph& graph = sensors[g];
        if (graph.LogGraph)
            continue;
        labels[g].resize(graph.Nodes.size());
        for (size_t n = 0; n < graph.Nodes.size(); ++n) {
            QByteArray start = "graph=\"";
            appendLabelValue(start, graph.Name);
            start.append("\",node=\"");
            appendLabelValue(start, graph.Nodes[n].Name);
            QByteArray& l = labels[g][n];
            l = start + '"';
            if (seen.contains(l)) {
                l = start;
                appendLabelValue(l, QStringLiteral(" (Graph %1, Node %2)").arg(g + 1).arg(n + 1));
                l.append('"');
            }
            seen.insert(l);
        }
    }
    return labels;
}

void appendNodeValues(QByteArray& out, const std::vector<Graph>& sensors,
                      const std::vector<std::vector<QByteArray>>& labels)
{
    appendHeader(out, "ormivane_node_value", "gauge",
                 "Newest raw sample of each Node of the sampled Graphs, in the unit its unit label names "
                 "(milliseconds are given as seconds).");
    for (size_t g = 0; g < sensors.size(); ++g) {
        const Graph& graph = sensors[g];
        if (graph.LogGraph)
            continue;
        for (size_t n = 0; n < graph.Nodes.size(); ++n) {
            const Node& node = graph.Nodes[n];
            if (std::isnan(node.NewestSample))
                continue;  // not sampled yet
            const FeedUnit unit = feedUnitOf(node, graph);
            out.append("ormivane_node_value{").append(labels[g][n]).append(",type=\"");
            appendLabelValue(out, nodeTypeName(node.NodeType));
            out.append("\",unit=\"").append(unit.name).append("\"} ");
            appendSampleValue(out, node.NewestSample * unit.scale);
            out.append('\n');
        }
    }
}

void appendTransferErrors(QByteArray& out, const std::vector<Graph>& sensors,
                          const std::vector<std::vector<QByteArray>>& labels)
{
    appendHeader(out, "ormivane_transfer_errors_total", "counter",
                 "Failed transfers of each Website, LAN and Speed Test Node since the start.");
    for (size_t g = 0; g < sensors.size(); ++g) {
        if (sensors[g].LogGraph)
            continue;
        for (size_t n = 0; n < sensors[g].Nodes.size(); ++n) {
            const Node& node = sensors[g].Nodes[n];
            if (!transferNode(node))
                continue;
            out.append("ormivane_transfer_errors_total{").append(labels[g][n]).append("} ");
            appendSampleValue(out, node.ErrorCount);
            out.append('\n');
        }
    }
}

void appendTickDurations(QByteArray& out, const TickHealth& health)
{
    appendHeader(out, "ormivane_tick_duration_seconds", "histogram",
                 "How long each tick took: reading the sources, the Graphs, the log line and the Alerts.");
    quint64 cumulative = 0;
    const TickHealth::Buckets& counts = health.bucketCounts();
    for (size_t b = 0; b < counts.size(); ++b) {
        cumulative += counts[b];
        out.append("ormivane_tick_duration_seconds_bucket{le=\"");
        if (b < TickHealth::Bounds.size()) {
            char bound[16];  // "0.0005", as bounds are commonly written, not "5e-04"
            const auto r = std::to_chars(bound, bound + sizeof bound, TickHealth::Bounds[b], std::chars_format::fixed);
            out.append(bound, r.ptr - bound);
        } else {
            out.append("+Inf");
        }
        out.append("\"} ");
        appendUnsigned(out, cumulative);
        out.append('\n');
    }
    appendSample(out, "ormivane_tick_duration_seconds_sum", health.durationSum());
    out.append("ormivane_tick_duration_seconds_count ");
    appendUnsigned(out, health.ticksObserved());
    out.append('\n');
}

void appendAlertsFired(QByteArray& out, const std::vector<Alert>& alerts, const TickHealth& health)
{
    appendHeader(out, "ormivane_alerts_fired_total", "counter",
                 "Times each Alert fired since the start, by its name.");
    // Every Alert there is, and those that fired before they were renamed or deleted.
    std::map<QString, double> counts = health.alertsFired();
    for (size_t a = 0; a < alerts.size(); ++a)
        counts.try_emplace(alertMetricName(alerts, int(a)), 0.0);
    for (const auto& [name, count] : counts) {
        out.append("ormivane_alerts_fired_total{alert=\"");
        appendLabelValue(out, name);
        out.append("\"} ");
        appendSampleValue(out, count);
        out.append('\n');
    }
}

}  // namespace

FeedUnit feedUnitOf(const Node& node, const Graph& graph)
{
    static constexpr FeedUnit Percent{"percent", 1}, Bytes{"bytes", 1}, Rate{"bytes_per_second", 1},
        Seconds{"seconds", 0.001}, Count{"count", 1};
    switch (node.NodeType) {
    case WebsiteType:
        return node.DownloadType == 0 ? Rate : node.DownloadType == 3 ? Count : Seconds;
    case CpuType:
    case BatteryType:
    case WifiType:
        return Percent;
    case RamType:
    case DriveSpaceType:
    case PageFileType:
    case VMemoryType:
        return graph.DataType == QLatin1String("percent") ? Percent : Bytes;
    case LanType:
    case UpDownType:
    case DownloadNodeType:
    case UploadType:
    case SpeedTestType:
    case DiskRWType:
    case DiskReadType:
    case DiskWriteType:
        return Rate;
    case PingType:  // a round trip, also when the Graph shows it as a speed
    case SysUptimeType:
        return Seconds;
    case ProcessType:
        return Bytes;
    default:  // adapter error counts, processes, and codes that measure nothing
        return Count;
    }
}

void appendLabelValue(QByteArray& out, const QString& value)
{
    const QByteArray utf8 = value.toUtf8();
    for (const char c : utf8) {
        switch (c) {
        case '\\':
            out.append("\\\\");
            break;
        case '"':
            out.append("\\\"");
            break;
        case '\n':
            out.append("\\n");
            break;
        case '\0':
            break;
        default:
            out.append(c);
        }
    }
}

void appendSampleValue(QByteArray& out, double value)
{
    if (std::isnan(value)) {
        out.append("NaN");
        return;
    }
    if (std::isinf(value)) {
        out.append(value > 0 ? "+Inf" : "-Inf");
        return;
    }
    char buffer[32];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, r.ptr - buffer);
}

void writeMetrics(const Monitor& monitor, QByteArray& out)
{
    out.resize(0);
    static const TickHealth nothingRecorded;
    const TickHealth& health = monitor.health() ? *monitor.health() : nothingRecorded;
    const auto labels = identityLabels(monitor.Sensors);

    appendHeader(out, "ormivane_build_info", "gauge", "The version of Ormivane that runs, as a label; always 1.");
    out.append("ormivane_build_info{version=\"");
    appendLabelValue(out, QStringLiteral(ORMIVANE_VERSION));
    out.append("\"} 1\n");

    appendNodeValues(out, monitor.Sensors, labels);
    appendTransferErrors(out, monitor.Sensors, labels);

    appendHeader(out, "ormivane_ticks_total", "counter", "Ticks begun since the start.");
    appendSample(out, "ormivane_ticks_total", monitor.TickCount);
    appendHeader(out, "ormivane_ticks_lost_total", "counter",
                 "Timer firings that ran no tick, because a tick was still busy or the loop was held up.");
    appendSample(out, "ormivane_ticks_lost_total", health.ticksLost());
    appendTickDurations(out, health);
    appendHeader(out, "ormivane_log_lines_total", "counter", "Value lines written to the daily log since the start.");
    appendSample(out, "ormivane_log_lines_total", health.logLines());
    appendAlertsFired(out, monitor.alertTester.Alerts, health);
}

}  // namespace orm
