// The shape of a daily log written on the machine's own counters: its header
// block, its columns in order, and the kind of value each column holds. Times
// and counters change from run to run; the shape does not.
#pragma once

#include <QDate>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <QTime>
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include <sys/statvfs.h>

namespace orm::test {

inline QString loopbackIfIndex()
{
    QFile f(QStringLiteral("/sys/class/net/lo/ifindex"));
    return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll()).trimmed() : QStringLiteral("1");
}

// The first-run Graph with its CPU Node and a Graph of ten system Nodes, all
// sampled every second and logged: every group of the log but the ones that
// need hardware (battery, Wi-Fi) or a transfer.
inline std::map<QString, QString> systemLogSettings()
{
    std::map<QString, QString> v{{QStringLiteral("Sensors"), QStringLiteral("2")},
                                 {QStringLiteral("Sensor1/Nodes"), QStringLiteral("1")},
                                 {QStringLiteral("Sensor1/Node1/NodeType"), QStringLiteral("5")},
                                 {QStringLiteral("Sensor2/Name"), QStringLiteral("Ten")},
                                 {QStringLiteral("Sensor2/Nodes"), QStringLiteral("10")}};
    // CPU, RAM, Page File, Drive Space, Disk R/W, Download, Upload, Ping, Processes, Sys Uptime.
    const int types[] = {5, 6, 10, 9, 18, 12, 13, 8, 22, 21};
    for (int g = 1; g <= 2; ++g) {
        v[QStringLiteral("Sensor%1/SampleEverySeconds").arg(g)] = QStringLiteral("1");
        for (int n = 1; n <= (g == 1 ? 1 : 10); ++n) {
            const QString key = QStringLiteral("Sensor%1/Node%2/").arg(g).arg(n);
            if (g == 2)
                v[key + QStringLiteral("NodeType")] = QString::number(types[n - 1]);
            v[key + QStringLiteral("LogData")] = QStringLiteral("True");
            v[key + QStringLiteral("DriveMonitoring")] = QStringLiteral("/");
            v[key + QStringLiteral("AdapterMonitoring")] = loopbackIfIndex();
            v[key + QStringLiteral("PingIP")] = QStringLiteral("127.0.0.1");
        }
    }
    return v;
}

// cpuN lines of /proc/stat.
inline int processorLines()
{
    QFile f(QStringLiteral("/proc/stat"));
    int n = 0;
    if (f.open(QIODevice::ReadOnly))
        for (const QByteArray& line : f.readAll().split('\n'))
            n += QRegularExpression(QStringLiteral("^cpu\\d+ ")).match(QString::fromLatin1(line)).hasMatch();
    return n;
}

// Interfaces that hold an IPv4 address, as iproute2 lists them: each is one adapter row.
inline int ipv4Interfaces()
{
    QProcess ip;
    ip.start(QStringLiteral("ip"), {QStringLiteral("-o"), QStringLiteral("-4"), QStringLiteral("addr"), QStringLiteral("show")});
    ip.waitForFinished(5000);
    QSet<QString> names;
    for (const QString& line : QString::fromLocal8Bit(ip.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        names.insert(line.split(QLatin1Char(' '), Qt::SkipEmptyParts).value(1));
    return int(names.size());
}

inline int runningProcesses()
{
    return int(QDir(QStringLiteral("/proc")).entryList(QDir::Dirs).filter(QRegularExpression(QStringLiteral("^\\d+$"))).size());
}

// Checks a log written from systemLogSettings() over `ticks` ticks of `day`.
inline void expectSystemLogShape(const QStringList& lines, const QDate& day, int ticks)
{
    ASSERT_GE(lines.size(), 4);
    EXPECT_EQ(lines[0], QStringLiteral("#Software: Vendrake - Ormivane"));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^#Version: \\d+\\.\\d+\\.\\d+$")).match(lines[1]).hasMatch()) << lines[1].toStdString();
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^#Date: \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$")).match(lines[2]).hasMatch()) << lines[2].toStdString();

    // One header block and no other: the columns stay the same all run long.
    const QStringList values = lines.mid(4);
    for (const QString& l : values)
        ASSERT_FALSE(l.startsWith(QLatin1Char('#'))) << l.toStdString();
    EXPECT_EQ(values.size(), ticks);

    const QRegularExpression columns(QStringLiteral(
        "^#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR"
        "((,ADPT_DN_\\d+,ADPT_UP_\\d+,ADPT_ERR_DN_\\d+,ADPT_ERR_UP_\\d+)+)"
        ",MEM_TOT,MEM_V_TOT,MEM_P_TOT,MEM_AVA,MEM_V_AVA,MEM_P_AVA"
        "((,CPU\\d+)+)"
        ",DISK_FREE_/,DISK_R_/,DISK_W_/,PROCS,PING_SIZE_127\\.0\\.0\\.1,PING_RTT_127\\.0\\.0\\.1$"));
    ASSERT_TRUE(columns.match(lines[3]).hasMatch()) << lines[3].toStdString();
    const QStringList fields = lines[3].mid(9).split(QLatin1Char(','));

    // Adapters and processors numbered from 0 without a gap, one group each.
    int adapters = 0, cpus = 0;
    for (const QString& f : fields) {
        if (f.startsWith(QStringLiteral("ADPT_DN_"))) {
            EXPECT_EQ(f, QStringLiteral("ADPT_DN_%1").arg(adapters++));
        }
        if (QRegularExpression(QStringLiteral("^CPU\\d+$")).match(f).hasMatch()) {
            EXPECT_EQ(f, QStringLiteral("CPU%1").arg(cpus++));
        }
    }
    EXPECT_EQ(adapters, ipv4Interfaces());
    EXPECT_EQ(cpus, processorLines());

    struct statvfs root {};
    ASSERT_EQ(statvfs("/", &root), 0);
    const double rootSize = double(root.f_blocks) * double(root.f_frsize);
    const QRegularExpression whole(QStringLiteral("^-?\\d+$"));
    const QRegularExpression number(QStringLiteral("^\\d+(\\.\\d+)?$"));
    for (int line = 0; line < values.size(); ++line) {
        const QStringList v = values[line].split(QLatin1Char(','));
        ASSERT_EQ(v.size(), fields.size()) << values[line].toStdString();
        std::map<QString, double> at;
        for (int c = 0; c < fields.size(); ++c) {
            const QString& f = fields[c];
            const std::string where = f.toStdString() + " in line " + std::to_string(line + 1) + ": " + v[c].toStdString();
            if (f == QStringLiteral("DATE")) {
                EXPECT_EQ(v[c], day.toString(QStringLiteral("yyyy-MM-dd"))) << where;
            } else if (f == QStringLiteral("TIME")) {
                EXPECT_TRUE(QTime::fromString(v[c], QStringLiteral("HH:mm:ss")).isValid()) << where;
            } else if (f == QStringLiteral("SAMPLE_LENGTH_MILLI_S")) {
                EXPECT_TRUE(number.match(v[c]).hasMatch()) << where;
                if (line == 0) {
                    EXPECT_EQ(v[c], QStringLiteral("1000")) << where;
                }
            } else {
                // Every other column is a whole number, written without a point or an exponent.
                EXPECT_TRUE(whole.match(v[c]).hasMatch()) << where;
                const double x = v[c].toDouble();
                at[f] = x;
                if (f.startsWith(QStringLiteral("CPU"))) {
                    EXPECT_TRUE(x >= 0 && x <= 100) << where;
                }
                if (f.startsWith(QStringLiteral("MEM_"))) {
                    EXPECT_TRUE(x >= 0 && std::fmod(x, 1024) == 0) << where;
                }
                if (f.startsWith(QStringLiteral("ADPT_ERR_")) || f.startsWith(QStringLiteral("DISK_")) ||
                    f.startsWith(QStringLiteral("PING_RTT"))) {
                    EXPECT_GE(x, 0) << where;
                }
            }
        }
        EXPECT_GT(at[QStringLiteral("MEM_TOT")], 0);
        EXPECT_LE(at[QStringLiteral("MEM_AVA")], at[QStringLiteral("MEM_TOT")]);
        EXPECT_LE(at[QStringLiteral("MEM_P_AVA")], at[QStringLiteral("MEM_P_TOT")]);
        EXPECT_LE(at[QStringLiteral("MEM_V_AVA")], at[QStringLiteral("MEM_V_TOT")]);
        EXPECT_GT(at[QStringLiteral("DISK_FREE_/")], 0);
        EXPECT_LE(at[QStringLiteral("DISK_FREE_/")], rootSize);
        EXPECT_EQ(at[QStringLiteral("PING_SIZE_127.0.0.1")], 100);
        // The count less one, give or take what other processes did meanwhile.
        EXPECT_NEAR(at[QStringLiteral("PROCS")], runningProcesses() - 1, 25);
    }
}

}  // namespace orm::test
