#include "model/catalogue.h"

#include <QDateTime>
#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

// "family: label base magnitude legend type"; "-" where the field keeps the Graph's magnitude.
static QString row(const char* field, bool bytesPerSecond = false)
{
    QString family = field;
    const LogFieldInfo i = logFieldLabel(family, bytesPerSecond);
    return family + ": " + i.label + " " + i.base + " " + (i.hasMagnitude ? QString::number(i.magnitude) : "-")
        + " " + i.legend + " " + QString::number(i.nodeType);
}

TEST(LogFieldLabel, RowsOfTheTable)
{
    EXPECT_EQ(row("SAMPLE_LENGTH_MILLI_S"), "SAMPLE_LENGTH_MILLI_S: Sample Time seconds - Seconds 0");
    EXPECT_EQ(row("SYS_TMR"), "SYS_TMR: Sys Uptime seconds 3600 Minutes 21");
    EXPECT_EQ(row("ADPT_DN_0"), "ADPT_DN: Download bps 3 Kbps 12");
    EXPECT_EQ(row("ADPT_ERR_UP_0"), "ADPT_ERR_UP: Upload Err number - Count 16");
    EXPECT_EQ(row("MEM_V_AVA"), "MEM_V_AVA: VRM Avail bytes 20 MBytes 24");
    EXPECT_EQ(row("WIFI_HomeNet"), "WIFI_: WIFI_ percent - Percent 26");
    EXPECT_EQ(row("PING_SIZE_::1"), "PING_SIZE_: Ping Size bytes - Bytes 8");
    EXPECT_EQ(row("RTIME_HTTP://X"), "RTIME_: Website RT seconds 0.001 mSeconds 4");
    EXPECT_EQ(row("RESULTSERVER_DOWNLOAD", true), "RESULTSERVER_DOWNLOAD: Speed Test bps 3 KBps 17");
    EXPECT_EQ(row("DISK_R_/", true), "DISK_R_: Disk Read bytes 10 KBytes 19");
    // Any other name is a process's memory, even one that starts like a table row
    // or a family word in lower case; a family word in front wins over the process.
    EXPECT_EQ(row("chrome"), "chrome: Process Mem bytes 10 KBytes 23");
    EXPECT_EQ(row("MEM_TOT_X"), "MEM_TOT_X: Process Mem bytes 10 KBytes 23");
    EXPECT_EQ(row("cpu0"), "cpu0: Process Mem bytes 10 KBytes 23");
    EXPECT_EQ(row("CPUSTRESS"), "CPU: CPU Usage percent - Percent 5");
}

TEST(ChooseLogField, FirstNodeSetsTheGraphsUnitLaterOnesOnlyThemselves)
{
    std::vector<Graph> sensors = {newGraph(0, true, {}, QDateTime(QDate(2026, 3, 5), QTime(9, 7, 41)))};
    Graph& g = sensors[0];
    g.Nodes.push_back(newNode(1));
    g.DisplayAsBytesPerSecond = true;
    chooseLogField(sensors, 0, 1, "DISK_FREE_/home");
    EXPECT_EQ(g.DataType + " " + QString::number(g.DataMagnitude) + " " + g.LegendUnits, "seconds 0.001 mSeconds");
    EXPECT_EQ(g.Nodes[1].LogItemView, "DISK_FREE_/home");
    EXPECT_EQ(g.Nodes[1].NodeType, DriveSpaceType);
    EXPECT_EQ(g.Nodes[1].Name, "Disk Space /home");
    chooseLogField(sensors, 0, 0, "ADPT_DN_2");
    EXPECT_EQ(g.DataType + " " + QString::number(g.DataMagnitude) + " " + g.LegendUnits, "bps 3 KBps");
    EXPECT_EQ(g.Nodes[0].NodeType, DownloadNodeType);
    EXPECT_EQ(g.Nodes[0].Name, "Download 2");
    // Sample Time gives no type and no magnitude: both stay.
    chooseLogField(sensors, 0, 0, "SAMPLE_LENGTH_MILLI_S");
    EXPECT_EQ(g.DataType + " " + QString::number(g.DataMagnitude) + " " + g.LegendUnits, "seconds 3 Seconds");
    EXPECT_EQ(g.Nodes[0].NodeType, DownloadNodeType);
    // Bad indexes change nothing.
    chooseLogField(sensors, 0, 2, "CPU0");
    chooseLogField(sensors, -1, 0, "CPU0");
    EXPECT_EQ(g.Nodes[0].LogItemView, "SAMPLE_LENGTH_MILLI_S");
}

TEST(ChooseLogField, NamesFromTheKey)
{
    EXPECT_EQ(logNodeName("CPU3"), "CPU Usage 3");
    EXPECT_EQ(logNodeName("PING_RTT_127.0.0.1"), "Ping RTT 127.0.0.1");
    EXPECT_EQ(logNodeName("WIFI_HomeNet"), "WIFI_HomeNet");
    EXPECT_EQ(logNodeName("WIFI"), "WIFI_");
    EXPECT_EQ(logNodeName("firefox-bin"), "Process Mem firefox-bin");
}
