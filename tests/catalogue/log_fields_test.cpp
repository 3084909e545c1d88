#include "core/catalogue.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace orm;

namespace {

const QDateTime Now(QDate(2026, 3, 5), QTime(9, 7, 41));

LogFieldInfo labelOf(QString field, bool bytesPerSecond = false)
{
    return logFieldLabel(field, bytesPerSecond);
}

}  // namespace

TEST(LogFieldFamily, ColumnsCarryingANameAfterTheFamilyWord)
{
    EXPECT_EQ(logFieldFamily("CPU3"), "CPU");
    EXPECT_EQ(logFieldFamily("CPU"), "CPU");
    EXPECT_EQ(logFieldFamily("ADPT_DN_0"), "ADPT_DN");
    EXPECT_EQ(logFieldFamily("ADPT_UP_12"), "ADPT_UP");
    EXPECT_EQ(logFieldFamily("ADPT_ERR_DN_3"), "ADPT_ERR_DN");
    EXPECT_EQ(logFieldFamily("ADPT_ERR_UP_3"), "ADPT_ERR_UP");
    EXPECT_EQ(logFieldFamily("DISK_FREE_/"), "DISK_FREE_");
    EXPECT_EQ(logFieldFamily("DISK_R_/home"), "DISK_R_");
    EXPECT_EQ(logFieldFamily("DISK_W_/home"), "DISK_W_");
    EXPECT_EQ(logFieldFamily("PING_SIZE_127.0.0.1"), "PING_SIZE_");
    EXPECT_EQ(logFieldFamily("PING_RTT_127.0.0.1"), "PING_RTT_");
    EXPECT_EQ(logFieldFamily("RESULT_HTTP://127.0.0.1/A.BIN"), "RESULT_");
    EXPECT_EQ(logFieldFamily("RCONNECTTIME_HTTP://X"), "RCONNECTTIME_");
    EXPECT_EQ(logFieldFamily("RTIME_HTTP://X"), "RTIME_");
    EXPECT_EQ(logFieldFamily("RERROR_HTTP://X"), "RERROR_");
    EXPECT_EQ(logFieldFamily("WIFI_HomeNet"), "WIFI_");
}

TEST(LogFieldFamily, WholeNamesAreLeftAlone)
{
    for (const char* name : {"SAMPLE_LENGTH_MILLI_S", "SYS_TMR", "BATTERY", "WIFI", "MEM_TOT",
                             "MEM_P_AVA", "PROCS", "RESULTSERVER_DOWNLOAD", "firefox", ""})
        EXPECT_EQ(logFieldFamily(name), name);
    // The family words are matched as written, in upper case.
    EXPECT_EQ(logFieldFamily("cpu0"), "cpu0");
}

TEST(LogFieldFamily, FamiliesAreTriedBeforeTheProcessFallback)
{
    // A process column whose name begins with a family word is taken for that
    // family: the patterns come first and the process row is only the rest.
    QString field = "CPUSTRESS";
    EXPECT_EQ(logFieldLabel(field).label, "CPU Usage");
    EXPECT_EQ(field, "CPU");
    // An error column is its own family, not the plain adapter traffic.
    field = "ADPT_ERR_DN_3";
    const LogFieldInfo err = logFieldLabel(field);
    EXPECT_EQ(field, "ADPT_ERR_DN");
    EXPECT_EQ(err.label, "Down Err");
    EXPECT_EQ(err.nodeType, DownErrType);
    // RESULTSERVER_DOWNLOAD is not a RESULT_ column.
    field = "RESULTSERVER_DOWNLOAD";
    EXPECT_EQ(logFieldLabel(field).label, "Speed Test");
}

TEST(LogFieldLabel, TheTableRows)
{
    struct Expect {
        const char* field;
        const char* family;
        const char* label;
        const char* base;
        bool hasMagnitude;
        double magnitude;
        const char* legend;
        int type;
    };
    const Expect rows[] = {
        {"SAMPLE_LENGTH_MILLI_S", "SAMPLE_LENGTH_MILLI_S", "Sample Time", "seconds", false, 0,
         "Seconds", 0},
        {"SYS_TMR", "SYS_TMR", "Sys Uptime", "seconds", true, 3600, "Minutes", 21},
        {"BATTERY", "BATTERY", "Battery", "percent", false, 0, "Percent", 25},
        {"WIFI", "WIFI", "WIFI_", "percent", false, 0, "Percent", 26},
        {"WIFI_Home", "WIFI_", "WIFI_", "percent", false, 0, "Percent", 26},
        {"ADPT_DN_0", "ADPT_DN", "Download", "bps", true, 3, "Kbps", 12},
        {"ADPT_UP_0", "ADPT_UP", "Upload", "bps", true, 3, "Kbps", 13},
        {"ADPT_ERR_DN_0", "ADPT_ERR_DN", "Down Err", "number", false, 0, "Count", 15},
        {"ADPT_ERR_UP_0", "ADPT_ERR_UP", "Upload Err", "number", false, 0, "Count", 16},
        {"MEM_TOT", "MEM_TOT", "RAM Total", "bytes", true, 20, "MBytes", 6},
        {"MEM_AVA", "MEM_AVA", "RAM Avail", "bytes", true, 20, "MBytes", 6},
        {"MEM_V_TOT", "MEM_V_TOT", "VRM Total", "bytes", true, 20, "MBytes", 24},
        {"MEM_V_AVA", "MEM_V_AVA", "VRM Avail", "bytes", true, 20, "MBytes", 24},
        {"MEM_P_TOT", "MEM_P_TOT", "Page Total", "bytes", true, 20, "MBytes", 10},
        {"MEM_P_AVA", "MEM_P_AVA", "Page Avail", "bytes", true, 20, "MBytes", 10},
        {"CPU1", "CPU", "CPU Usage", "percent", false, 0, "Percent", 5},
        {"DISK_FREE_/", "DISK_FREE_", "Disk Space", "bytes", true, 20, "MBytes", 9},
        {"DISK_R_/", "DISK_R_", "Disk Read", "bytes", true, 10, "KBytes", 19},
        {"DISK_W_/", "DISK_W_", "Disk Write", "bytes", true, 10, "KBytes", 20},
        {"PROCS", "PROCS", "Processes", "number", false, 0, "Count", 22},
        {"PING_SIZE_::1", "PING_SIZE_", "Ping Size", "bytes", false, 0, "Bytes", 8},
        {"PING_RTT_::1", "PING_RTT_", "Ping RTT", "seconds", true, 0.001, "mSeconds", 8},
        {"RESULT_HTTP://X", "RESULT_", "Website BW", "bps", true, 3, "Kbps", 4},
        {"RCONNECTTIME_HTTP://X", "RCONNECTTIME_", "Website CT", "seconds", true, 0.001,
         "mSeconds", 4},
        {"RTIME_HTTP://X", "RTIME_", "Website RT", "seconds", true, 0.001, "mSeconds", 4},
        {"RERROR_HTTP://X", "RERROR_", "Website ERR", "number", false, 0, "Count", 4},
        {"RESULTSERVER_DOWNLOAD", "RESULTSERVER_DOWNLOAD", "Speed Test", "bps", true, 3, "Kbps",
         17},
        {"chrome", "chrome", "Process Mem", "bytes", true, 10, "KBytes", 23},
        {"MEM_TOT_X", "MEM_TOT_X", "Process Mem", "bytes", true, 10, "KBytes", 23},
    };
    for (const Expect& r : rows) {
        SCOPED_TRACE(r.field);
        QString field = r.field;
        const LogFieldInfo info = logFieldLabel(field);
        EXPECT_EQ(field, r.family);
        EXPECT_EQ(info.label, r.label);
        EXPECT_EQ(info.base, r.base);
        EXPECT_EQ(info.hasMagnitude, r.hasMagnitude);
        if (r.hasMagnitude) {
            EXPECT_DOUBLE_EQ(info.magnitude, r.magnitude);
        }
        EXPECT_EQ(info.legend, r.legend);
        EXPECT_EQ(info.nodeType, r.type);
    }
}

TEST(LogFieldLabel, BandwidthLegendInBytesPerSecond)
{
    EXPECT_EQ(labelOf("ADPT_DN_1", true).legend, "KBps");
    EXPECT_EQ(labelOf("ADPT_UP_1", true).legend, "KBps");
    EXPECT_EQ(labelOf("RESULT_X", true).legend, "KBps");
    EXPECT_EQ(labelOf("RESULTSERVER_DOWNLOAD", true).legend, "KBps");
    EXPECT_EQ(labelOf("DISK_R_/", true).legend, "KBytes");
}

TEST(ChooseLogField, FirstNodeSetsTheGraphsUnit)
{
    std::vector<Graph> sensors = {newGraph(0, true, {}, Now)};
    sensors[0].DisplayAsBytesPerSecond = true;
    chooseLogField(sensors, 0, 0, "ADPT_DN_2");
    const Graph& g = sensors[0];
    EXPECT_EQ(g.Nodes[0].LogItemView, "ADPT_DN_2");
    EXPECT_EQ(g.Nodes[0].NodeType, DownloadNodeType);
    EXPECT_EQ(g.Nodes[0].Name, "Download 2");
    EXPECT_EQ(g.DataType, "bps");
    EXPECT_DOUBLE_EQ(g.DataMagnitude, 3);
    EXPECT_EQ(g.LegendUnits, "KBps");
}

TEST(ChooseLogField, LaterNodesLeaveTheGraphAlone)
{
    std::vector<Graph> sensors = {newGraph(0, true, {}, Now)};
    sensors[0].Nodes.push_back(newNode(1));
    chooseLogField(sensors, 0, 1, "DISK_FREE_/home");
    const Graph& g = sensors[0];
    EXPECT_EQ(g.DataType, "seconds");
    EXPECT_DOUBLE_EQ(g.DataMagnitude, 0.001);
    EXPECT_EQ(g.LegendUnits, "mSeconds");
    EXPECT_EQ(g.Nodes[1].LogItemView, "DISK_FREE_/home");
    EXPECT_EQ(g.Nodes[1].NodeType, DriveSpaceType);
    EXPECT_EQ(g.Nodes[1].Name, "Disk Space /home");
}

TEST(ChooseLogField, FieldsWithoutAMagnitudeOrTypeKeepTheirs)
{
    std::vector<Graph> sensors = {newGraph(0, true, {}, Now)};
    // Sample Time gives no type and no magnitude.
    chooseLogField(sensors, 0, 0, "SAMPLE_LENGTH_MILLI_S");
    EXPECT_EQ(sensors[0].Nodes[0].NodeType, SysUptimeType);
    EXPECT_EQ(sensors[0].Nodes[0].Name, "Sample Time");
    EXPECT_EQ(sensors[0].DataType, "seconds");
    EXPECT_DOUBLE_EQ(sensors[0].DataMagnitude, 0.001);
    EXPECT_EQ(sensors[0].LegendUnits, "Seconds");

    chooseLogField(sensors, 0, 0, "PROCS");
    EXPECT_EQ(sensors[0].DataType, "number");
    EXPECT_DOUBLE_EQ(sensors[0].DataMagnitude, 0.001);
    EXPECT_EQ(sensors[0].LegendUnits, "Count");
}

TEST(ChooseLogField, NamesFromTheKey)
{
    EXPECT_EQ(logNodeName("CPU3"), "CPU Usage 3");
    EXPECT_EQ(logNodeName("ADPT_ERR_UP_1"), "Upload Err 1");
    EXPECT_EQ(logNodeName("PING_RTT_127.0.0.1"), "Ping RTT 127.0.0.1");
    EXPECT_EQ(logNodeName("RTIME_HTTP://127.0.0.1/A"), "Website RT HTTP://127.0.0.1/A");
    EXPECT_EQ(logNodeName("WIFI_HomeNet"), "WIFI_HomeNet");
    EXPECT_EQ(logNodeName("WIFI"), "WIFI_");
    EXPECT_EQ(logNodeName("SYS_TMR"), "Sys Uptime");
    EXPECT_EQ(logNodeName("MEM_V_AVA"), "VRM Avail");
    EXPECT_EQ(logNodeName("RESULTSERVER_DOWNLOAD"), "Speed Test");
    EXPECT_EQ(logNodeName("firefox-bin"), "Process Mem firefox-bin");
}

TEST(ChooseLogField, BadIndexesChangeNothing)
{
    std::vector<Graph> sensors = {newGraph(0, true, {}, Now)};
    chooseLogField(sensors, 0, 1, "CPU0");
    chooseLogField(sensors, 1, 0, "CPU0");
    chooseLogField(sensors, -1, 0, "CPU0");
    EXPECT_EQ(sensors[0].Nodes[0].LogItemView, "SYS_TMR");
    EXPECT_EQ(sensors[0].DataType, "seconds");
}
