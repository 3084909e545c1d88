// The columns and values of one log line: groups, their order, names and number forms.
#include "logging/log_line.h"

#include <gtest/gtest.h>

using namespace orm;

namespace {

const QString Date = QStringLiteral("2026-03-05");
const QString Time = QStringLiteral("09:07:41");

LogLine build(const LogFlags& f, const LogInputs& in, QChar sep = QLatin1Char(','))
{
    return buildLogLine(f, in, Date, Time, sep);
}

Node loggedNode(int type)
{
    Node n;
    n.NodeType = type;
    n.LogData = true;
    return n;
}

Graph graphOf(std::vector<Node> nodes, qint32 ticksToSample = 0)
{
    Graph g;
    g.Nodes = std::move(nodes);
    g.TicksToSample = ticksToSample;
    return g;
}

}  // namespace

TEST(LogLine, GroupsComeInTableOrder)
{
    LogFlags f;
    f.logAdapters = f.logMemory = f.logCPU = f.logProcesses = f.logBattery = f.logWifi = true;
    f.logDrives = {false, true};
    LogInputs in;
    in.SampleLength = 1002;
    in.SysTmr = 5000;
    in.adapters = {{10, 20, 1, 2}, {30, 40, 0, 0}};
    in.memory = {8e9, 16e9, 2e9, 4e9, 12e9, 1.5e9};
    in.battery = 87;
    in.cpu = {12, 7};
    in.wifi = {{QStringLiteral("My Home, Net"), 66}};
    in.drives = {{QStringLiteral("/"), 1, 2, 3}, {QStringLiteral("/home"), 4096, 512, 0}};
    in.processUpperBound = 211;

    const LogLine l = build(f, in);
    EXPECT_EQ(l.fields,
              "#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,"
              "ADPT_DN_0,ADPT_UP_0,ADPT_ERR_DN_0,ADPT_ERR_UP_0,"
              "ADPT_DN_1,ADPT_UP_1,ADPT_ERR_DN_1,ADPT_ERR_UP_1,"
              "MEM_TOT,MEM_V_TOT,MEM_P_TOT,MEM_AVA,MEM_V_AVA,MEM_P_AVA,"
              "BATTERY,CPU0,CPU1,WIFI_MyHomeNet,"
              "DISK_FREE_/home,DISK_R_/home,DISK_W_/home,PROCS");
    EXPECT_EQ(l.values,
              "2026-03-05,09:07:41,1002,5000,10,20,1,2,30,40,0,0,"
              "8000000000,16000000000,2000000000,4000000000,12000000000,1500000000,"
              "87,12,7,66,4096,512,0,211");
}

TEST(LogLine, EmptyTablesAndUnsetFlagsGiveNoColumns)
{
    LogFlags f;
    f.logAdapters = f.logWifi = f.logCPU = true;  // tables empty: nothing, no fault
    f.logDrives = {true, true, true};             // more flags than drive rows
    LogInputs in;
    in.drives = {{QStringLiteral("/"), 1, 2, 3}};
    in.battery = 50;         // flag off: not written
    in.processUpperBound = 9;  // flag off: not written
    const LogLine l = build(f, in);
    EXPECT_EQ(l.fields, "#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,DISK_FREE_/,DISK_R_/,DISK_W_/");
    EXPECT_EQ(l.values, "2026-03-05,09:07:41,1000,0,1,2,3");
}

TEST(LogLine, NumberForms)
{
    LogFlags f;
    f.logMemory = true;
    LogInputs in;
    in.SampleLength = 1e15;
    in.SysTmr = -2147483000;  // GetTickCount-like value past 24.8 days turns negative
    in.memory = {0.5, 1000, 123456789012345.0, 1e-5, 2.25, 0};
    const LogLine l = build(f, in);
    EXPECT_EQ(l.values, "2026-03-05,09:07:41,1E+15,-2147483000,0.5,1000,123456789012345,1E-05,2.25,0");
}

TEST(LogLine, NodeColumnsByType)
{
    Node web = loggedNode(WebsiteType);
    web.DownloadURL = QStringLiteral("http://ex ample.com/a,b c");
    web.Bandwidth = 812.25;
    web.ResponseTime = 340;
    web.ConnectTime = 41;
    web.ErrorCount = 2;
    Node slave = loggedNode(WebsiteType);
    slave.WebsiteMaster = false;
    Node lan = loggedNode(LanType);
    lan.DownloadURL = QStringLiteral("//server/share/file.bin");
    lan.Bandwidth = 1e15;
    Node ping = loggedNode(PingType);
    ping.PingIP = QStringLiteral("Local Host,1");  // used as typed
    ping.PingPacketSize = 1472;
    ping.PingState4 = 3;
    Node speed = loggedNode(SpeedTestType);
    speed.Bandwidth = 0.5;
    Node proc = loggedNode(ProcessType);
    proc.ProcessMonitoring = QStringLiteral("my app.exe");  // no cleaning
    proc.ProcessIndex = 1;
    Node cpu = loggedNode(CpuType);        // reaches the log by its group
    Node err = loggedNode(UpDnErrType);    // never logged
    Node quiet = loggedNode(PingType);
    quiet.LogData = false;

    std::vector<Graph> sensors{graphOf({web, slave, lan, cpu, err, quiet}), graphOf({ping, speed, proc})};
    Graph replay = graphOf({loggedNode(PingType)});
    replay.LogGraph = true;
    sensors.insert(sensors.begin(), replay);

    LogFlags f;
    f.logWebsite = true;
    LogInputs in;
    in.sensors = &sensors;
    in.processMemory = {1, 52428800};

    const LogLine l = build(f, in);
    EXPECT_EQ(l.fields,
              "#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,"
              "RESULT_HTTP://EXAMPLE.COM/ABC,RTIME_HTTP://EXAMPLE.COM/ABC,"
              "RCONNECTTIME_HTTP://EXAMPLE.COM/ABC,RERROR_HTTP://EXAMPLE.COM/ABC,"
              "RESULT_//SERVER/SHARE/FILE.BIN,"
              "PING_SIZE_Local Host,1,PING_RTT_Local Host,1,"
              "RESULTSERVER_DOWNLOAD,my app.exe");
    EXPECT_EQ(l.values, "2026-03-05,09:07:41,1000,0,812.25,340,41,2,1E+15,1472,3,0.5,52428800");
}

TEST(LogLine, NodeColumnsOnlyWhenANodeFlagIsSet)
{
    Node ping = loggedNode(PingType);
    ping.PingIP = QStringLiteral("127.0.0.1");
    std::vector<Graph> sensors{graphOf({ping})};
    LogInputs in;
    in.sensors = &sensors;

    LogFlags f;
    f.logMemory = f.logBattery = f.logProcesses = f.logWifi = f.logCPU = f.logAdapters = true;
    EXPECT_EQ(build(f, in).fields.count(QStringLiteral("PING_")), 0);
    for (bool LogFlags::*flag : {&LogFlags::logProcess, &LogFlags::logPing, &LogFlags::logWebsite,
                                 &LogFlags::logTestDownload}) {
        LogFlags g;
        g.*flag = true;
        EXPECT_TRUE(build(g, in).fields.endsWith(",PING_SIZE_127.0.0.1,PING_RTT_127.0.0.1"));
    }
}

TEST(LogLine, SameNamesRepeatAndNotDueGraphsGiveDashes)
{
    Node a = loggedNode(WebsiteType);
    a.DownloadURL = QStringLiteral("http://a");
    Node b = a;
    Node p1 = loggedNode(PingType);
    p1.PingIP = QStringLiteral("::1");
    p1.PingState4 = 9;
    Node p2 = p1;
    std::vector<Graph> sensors{graphOf({a, b}, 2), graphOf({p1, p2}, 0)};
    LogFlags f;
    f.logPing = true;
    LogInputs in;
    in.sensors = &sensors;
    const LogLine l = build(f, in);
    EXPECT_EQ(l.fields.count(QStringLiteral(",RESULT_HTTP://A,")), 2);
    EXPECT_EQ(l.fields.count(QStringLiteral(",PING_RTT_::1")), 2);
    EXPECT_EQ(l.values, "2026-03-05,09:07:41,1000,0,-,-,-,-,-,-,-,-,100,9,100,9");
}

TEST(LogLine, ProcessBeyondTheTableHasNoColumn)
{
    Node proc = loggedNode(ProcessType);
    proc.ProcessMonitoring = QStringLiteral("bash");
    std::vector<Graph> sensors{graphOf({proc})};
    LogFlags f;
    f.logProcess = true;
    LogInputs in;
    in.sensors = &sensors;
    const QString base = QStringLiteral("#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR");

    in.processMemory = {};  // the table is empty
    EXPECT_EQ(build(f, in).fields, base);
    sensors[0].Nodes[0].ProcessIndex = -1;
    in.processMemory = {4096};
    EXPECT_EQ(build(f, in).fields, base);
    sensors[0].Nodes[0].ProcessIndex = 0;
    EXPECT_EQ(build(f, in).fields, base + QStringLiteral(",bash"));
    sensors[0].TicksToSample = 1;  // not due: the column stays, the value is "-"
    EXPECT_EQ(build(f, in).values, "2026-03-05,09:07:41,1000,0,-");
}
