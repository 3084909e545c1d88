// The metrics feed of a Monitor on a hand-driven clock: which Nodes it names
// and how, the values against what the Alerts read, the tick's own numbers,
// and the text checked by promtool.
#include "alert_world.h"
#include "exposition_reader.h"
#include "monitor_fixture.h"

#include "alerts/alert_store.h"
#include "monitor/metrics_feed.h"

using namespace orm;
using namespace orm::test;

namespace {

const QString OddGraph = QStringLiteral("Host \"A\" \\ Zürich\nsecond line");
const QString OddNode = QStringLiteral("CPU \"zero\" \\ ü");

class RecordingFeed : public MonitorFixture {
protected:
    void SetUp() override
    {
        MonitorFixture::SetUp();
        monitor->recordHealth();
    }

    void configure() override
    {
        set(QStringLiteral("Settings"), QStringLiteral("FirstRun"), QStringLiteral("False"));
        set(QStringLiteral("Settings"), QStringLiteral("Sensors"), QStringLiteral("3"));
        // Two Graphs of one name, and Node names that meet again: each Node stays a series of its own.
        graph(1, OddGraph, QStringLiteral("bps"), false,
              {{CpuType, OddNode}, {RamType, QStringLiteral("RAM")}, {PingType, QStringLiteral("Ping")},
               {ProcessesType, QStringLiteral("RAM")}});
        graph(2, OddGraph, QStringLiteral("percent"), false,
              {{RamType, OddNode}, {SpeedTestType, QStringLiteral("Speed")}, {WebsiteType, QStringLiteral("Site")}});
        graph(3, QStringLiteral("Replay"), QStringLiteral("seconds"), true, {{SysUptimeType, QStringLiteral("Log")}});
        set(QStringLiteral("Settings/Sensor1/Node3"), QStringLiteral("PingIP"), QStringLiteral("127.0.0.1"));
        // A Slave: its Master's transfers are not its own.
        set(QStringLiteral("Settings/Sensor2/Node3"), QStringLiteral("WebsiteMaster"), QStringLiteral("False"));
        set(QStringLiteral("Settings/Sensor2/Node3"), QStringLiteral("DownloadType"), QStringLiteral("1"));
    }

    void set(const QString& path, const QString& name, const QString& value) { store.writeValue(path, name, value); }

    void graph(int number, const QString& name, const QString& dataType, bool logGraph,
               const std::vector<std::pair<int, QString>>& nodes)
    {
        const QString g = QStringLiteral("Settings/Sensor%1").arg(number);
        set(g, QStringLiteral("Name"), name);
        set(g, QStringLiteral("DataType"), dataType);
        set(g, QStringLiteral("LogGraph"), logGraph ? QStringLiteral("True") : QStringLiteral("False"));
        set(g, QStringLiteral("SampleEverySeconds"), QStringLiteral("1"));
        set(g, QStringLiteral("Nodes"), QString::number(nodes.size()));
        for (size_t n = 0; n < nodes.size(); ++n) {
            const QString key = g + QStringLiteral("/Node%1").arg(n + 1);
            set(key, QStringLiteral("NodeType"), QString::number(nodes[n].first));
            set(key, QStringLiteral("Name"), nodes[n].second);
        }
    }

    QByteArray scrape()
    {
        QByteArray text;
        writeMetrics(*monitor, text);
        return text;
    }

    std::vector<Sample> samples() { return readExposition(scrape()); }
};

TEST_F(RecordingFeed, EachNodeOfTheSampledGraphsIsOneSeriesOfTheRawSampleTheAlertsRead)
{
    // Nothing is sampled before the first tick: no Node is reported as 0.
    EXPECT_TRUE(samplesOf(samples(), QStringLiteral("ormivane_node_value")).empty());

    tick();
    cpu->percent = 17;
    tick();
    const QByteArray text = scrape();
    const PromtoolVerdict verdict = promtoolCheck(text);
    EXPECT_TRUE(verdict.passed) << verdict.output.toStdString() << "\n" << text.toStdString();

    const auto nodes = samplesOf(readExposition(text), QStringLiteral("ormivane_node_value"));
    ASSERT_EQ(nodes.size(), 7u) << text.toStdString();  // the Log Graph is not sampled
    // Names with quotes, backslashes, a newline and non-ASCII come back whole;
    // a name met twice is marked with its place.
    QStringList names;
    for (const Sample& s : nodes)
        names << s.labels.at(QStringLiteral("node"));
    EXPECT_EQ(names, QStringList({OddNode, QStringLiteral("RAM"), QStringLiteral("Ping"), QStringLiteral("RAM (Graph 1, Node 4)"),
                                  OddNode + QStringLiteral(" (Graph 2, Node 1)"), QStringLiteral("Speed"), QStringLiteral("Site")}));
    size_t k = 0;
    for (int g = 0; g < 2; ++g) {
        for (size_t n = 0; n < monitor->Sensors[size_t(g)].Nodes.size(); ++n, ++k) {
            EXPECT_EQ(nodes[k].labels.at(QStringLiteral("graph")), OddGraph);
            const double scale = nodes[k].labels.at(QStringLiteral("unit")) == QLatin1String("seconds") ? 0.001 : 1;
            EXPECT_DOUBLE_EQ(nodes[k].value, view(g).GetNodeValue(int(n), 0) * scale) << g << "/" << n;
        }
    }
    EXPECT_EQ(nodes[0].value, 17);
    // Memory in a bytes Graph is used bytes, in a percent Graph the used share.
    EXPECT_GT(nodes[1].value, 1e6);
    EXPECT_GT(nodes[4].value, 0);
    EXPECT_LE(nodes[4].value, 100);
}

TEST_F(RecordingFeed, TicksLostFiringsDurationsAndLogLinesAreCounted)
{
    for (int i = 0; i < 3; ++i)
        tick();
    // One tick that takes 2.6 s, during which the timer fires into it.
    bool once = true;
    cpu->onCollect = [&] {
        if (!once)
            return;
        once = false;
        clock.advance(2600);
        monitor->TimerData();  // found busy: no tick
    };
    tick();
    tick();  // begins 3.6 s after the long one began: two firings ran no tick

    const auto all = samples();
    EXPECT_EQ(valueOf(all, QStringLiteral("ormivane_ticks_total")), 5);
    EXPECT_EQ(valueOf(all, QStringLiteral("ormivane_ticks_lost_total")), 2);
    EXPECT_EQ(valueOf(all, QStringLiteral("ormivane_log_lines_total")), 5);
    EXPECT_EQ(valueOf(all, QStringLiteral("ormivane_tick_duration_seconds_count")), 5);
    EXPECT_DOUBLE_EQ(*valueOf(all, QStringLiteral("ormivane_tick_duration_seconds_sum")), 2.6);
    const auto bucket = [&](const char* le) {
        return valueOf(all, QStringLiteral("ormivane_tick_duration_seconds_bucket"), {{QStringLiteral("le"), QLatin1String(le)}});
    };
    EXPECT_EQ(bucket("0.0005"), 4);
    EXPECT_EQ(bucket("2.5"), 4);
    EXPECT_EQ(bucket("+Inf"), 5);
    EXPECT_EQ(logLines().size(), 4u + 5u);  // the header block and the five lines
}

TEST_F(RecordingFeed, AlertsAreCountedByNameAndTransferErrorsByNode)
{
    auto addAlert = [&](const QString& name, double limit) {
        Alert a = armedAlert(int(monitor->alertTester.Alerts.size()), ShowMessageAction, ExceedsLimit);
        a.rName = name;
        a.cLimit = limit;
        monitor->alertTester.Alerts.push_back(a);
    };
    addAlert(QStringLiteral("Hot \"CPU\""), 10);
    addAlert(QString(), 10);
    addAlert(QStringLiteral("Never"), 1000);
    tick();
    tick();
    tick();
    monitor->Sensors[1].Nodes[1].ErrorCount = 3;  // the Speed Test
    monitor->Sensors[1].Nodes[2].ErrorCount = 9;  // a Slave reports none of its own

    const auto all = samples();
    const auto fired = [&](const QString& alert) {
        return valueOf(all, QStringLiteral("ormivane_alerts_fired_total"), {{QStringLiteral("alert"), alert}});
    };
    EXPECT_EQ(fired(QStringLiteral("Hot \"CPU\"")), 3);
    EXPECT_EQ(fired(QStringLiteral("Alert 2")), 3);
    EXPECT_EQ(fired(QStringLiteral("Never")), 0);

    const auto errors = samplesOf(all, QStringLiteral("ormivane_transfer_errors_total"));
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0].labels.at(QStringLiteral("node")), QStringLiteral("Speed"));
    EXPECT_EQ(errors[0].value, 3);

    // A renamed Alert keeps what it counted under its old name.
    monitor->alertTester.Alerts[0].rName = QStringLiteral("Renamed");
    const auto after = samples();
    EXPECT_EQ(valueOf(after, QStringLiteral("ormivane_alerts_fired_total"), {{QStringLiteral("alert"), QStringLiteral("Hot \"CPU\"")}}), 3);
    EXPECT_EQ(valueOf(after, QStringLiteral("ormivane_alerts_fired_total"), {{QStringLiteral("alert"), QStringLiteral("Renamed")}}), 0);
}

}  // namespace
