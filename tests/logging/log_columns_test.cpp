// The column list's descriptions and the pickers' arithmetic on moments.
#include "logging/log_columns.h"

#include <gtest/gtest.h>

using namespace orm;

namespace {

TEST(LogColumns, DescriptionsByPattern)
{
    LogColumnContext c;
    c.adapterDescription = [](int slot) { return slot == 1 ? QStringLiteral("eth0") : QString(); };
    c.speedTestServer = QStringLiteral("speed.example:8080");
    const auto d = [&c](const char* column) { return logColumnDescription(QString::fromLatin1(column), c); };
    EXPECT_EQ(d("ADPT_DN_1"), "Download Data Transfer in Kbps (eth0)");
    EXPECT_EQ(d("ADPT_UP_7"), "Upload Data Transfer in Kbps ()");  // no such slot in this run
    EXPECT_EQ(d("CPU11"), "Total CPU usage percentage");
    EXPECT_EQ(d("DISK_W_/home"), "Disk Data Written in bytes (/home)");
    EXPECT_EQ(d("PROCS"), "Total number of Proccesses running");
    c.bytesPerSecond = true;
    EXPECT_EQ(d("RESULTSERVER_DOWNLOAD"), "Your bandwidth speed in KBps (Downloaded from speed.example:8080)");
    EXPECT_EQ(d("ADPT_DN_1"), "Download Data Transfer in KBps (eth0)");
    // The table's gaps: the other website columns, Wi-Fi and battery read as process memory.
    EXPECT_EQ(d("RTIME_HTTP://X"), "Process memory usage in bytes (RTIME_HTTP://X)");
    EXPECT_EQ(d("firefox-esr"), "Process memory usage in bytes (firefox-esr)");
}

TEST(LogColumns, PickersRewriteTheTextOfTheMoment)
{
    const double m = 20260305090741.0;
    EXPECT_EQ(momentWithDate(m, QDate(2025, 12, 31)), 20251231090741.0);
    EXPECT_EQ(momentWithTime(m, QTime(23, 59, 58)), 20260305235958.0);
    // A moment of fewer digits misreads, as it always has.
    EXPECT_EQ(momentWithDate(0, QDate(2026, 3, 5)), 202603050.0);
    EXPECT_EQ(momentWithTime(0, QTime(12, 34, 56)), 123456.0);
    EXPECT_FALSE(momentDate(0).isValid());
    EXPECT_FALSE(momentTime(20260305996100.0).isValid());
}

}  // namespace
