// The columns and values of one log line: groups, their order, names and number forms.
#include "logging/log_line.h"

#include <gtest/gtest.h>

using namespace orm;

namespace {

const QString Start = QStringLiteral("2026-03-05,09:07:41,1000,0");

LogLine build(const LogFlags& f, const LogInputs& in)
{
    return buildLogLine(f, in, QStringLiteral("2026-03-05"), QStringLiteral("09:07:41"), QLatin1Char(','));
}

Node loggedNode(int type)
{
    Node n;
    n.NodeType = type;
    n.LogData = true;
    return n;
}

Graph graphOf(std::vector<Node> nodes)
{
    Graph g;
    g.Nodes = std::move(nodes);
    return g;
}

}  // namespace

TEST(LogLine, GroupsInTableOrderWithTheirNumberForms)
{
    LogFlags f;
    f.logAdapters = f.logMemory = f.logCPU = f.logProcesses = f.logBattery = f.logWifi = true;
    f.logDrives = {false, true};
    LogInputs in;
    in.SampleLength = 1e15;
    in.SysTmr = -2147483000;  // a tick count past 24.8 days turns negative
    in.adapters = {{10, 20, 1, 2}, {30, 40, 0, 0}};
    in.memory = {0.5, 1000, 123456789012345.0, 1e-5, 2.25, 0};
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
              "2026-03-05,09:07:41,1E+15,-2147483000,10,20,1,2,30,40,0,0,"
              "0.5,1000,123456789012345,1E-05,2.25,0,87,12,7,66,4096,512,0,211");

    // Empty tables give no columns; more drive flags than rows is no fault.
    LogFlags g;
    g.logAdapters = g.logWifi = g.logCPU = true;
    g.logDrives = {true, true, true};
    in = LogInputs{};
    in.drives = {{QStringLiteral("/"), 1, 2, 3}};
    in.battery = 50;
    in.processUpperBound = 9;  // flags off: not written
    EXPECT_EQ(build(g, in).fields, "#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,DISK_FREE_/,DISK_R_/,DISK_W_/");
    EXPECT_EQ(build(g, in).values, Start + ",1,2,3");
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
    Node quiet = loggedNode(PingType);
    quiet.LogData = false;
    Graph replay = graphOf({loggedNode(PingType)});
    replay.LogGraph = true;
    // CPU reaches the log by its group; up/down errors never.
    std::vector<Graph> sensors{replay, graphOf({web, slave, lan, loggedNode(CpuType), loggedNode(UpDnErrType), quiet}),
                               graphOf({ping, speed})};

    LogFlags f;
    f.logWebsite = true;
    LogInputs in;
    in.sensors = &sensors;
    const LogLine l = build(f, in);
    EXPECT_EQ(l.fields,
              "#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,"
              "RESULT_HTTP://EXAMPLE.COM/ABC,RTIME_HTTP://EXAMPLE.COM/ABC,"
              "RCONNECTTIME_HTTP://EXAMPLE.COM/ABC,RERROR_HTTP://EXAMPLE.COM/ABC,"
              "RESULT_//SERVER/SHARE/FILE.BIN,"
              "PING_SIZE_Local Host,1,PING_RTT_Local Host,1,"
              "RESULTSERVER_DOWNLOAD");
    EXPECT_EQ(l.values, Start + ",812.25,340,41,2,1E+15,1472,3,0.5");

    // Any one of the four Node flags brings all Node columns; the group flags none.
    std::vector<Graph> one{graphOf({ping})};
    in.sensors = &one;
    LogFlags groups;
    groups.logMemory = groups.logBattery = groups.logProcesses = groups.logCPU = true;
    EXPECT_EQ(build(groups, in).fields.count(QStringLiteral("PING_")), 0);
    for (bool LogFlags::*flag : {&LogFlags::logProcess, &LogFlags::logPing, &LogFlags::logTestDownload}) {
        LogFlags g;
        g.*flag = true;
        EXPECT_TRUE(build(g, in).fields.endsWith(",PING_RTT_Local Host,1"));
    }
}

TEST(LogLine, ProcessBeyondTheTableHasNoColumn)
{
    Node proc = loggedNode(ProcessType);
    proc.ProcessMonitoring = QStringLiteral("my app.exe");  // no cleaning
    proc.ProcessIndex = 1;
    std::vector<Graph> sensors{graphOf({proc, proc})};
    LogFlags f;
    f.logProcess = true;
    LogInputs in;
    in.sensors = &sensors;
    in.processMemory = {1, 4096};
    // Any LogType but 0 separates by blanks; a name may repeat.
    const LogLine l = buildLogLine(f, in, "d", "t", QLatin1Char(' '));
    EXPECT_EQ(l.fields, "#Fields: DATE TIME SAMPLE_LENGTH_MILLI_S SYS_TMR my app.exe my app.exe");
    EXPECT_EQ(l.values, "d t 1000 0 4096 4096");
    in.processMemory = {1};  // the process ended
    EXPECT_EQ(build(f, in).values, Start);
    sensors[0].Nodes[0].ProcessIndex = -1;
    in.processMemory = {};
    EXPECT_EQ(build(f, in).values, Start);
    in.processMemory = {7, 8};
    sensors[0].TicksToSample = 1;  // not due: the column stays, the value is "-"
    EXPECT_EQ(build(f, in).values, Start + ",-");
}
