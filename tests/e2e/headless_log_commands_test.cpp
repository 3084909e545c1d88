// The log commands of build/ormivane on the crafted corpus: --log-headers and
// --export-log cell for cell, the Log Graph's picture with --snapshot, what
// they refuse, and a reading beside a monitor that goes on writing today's log.
#include "run_headless.h"
#include "../logging/log_corpus.h"

#include <QDir>
#include <QImage>
#include <gtest/gtest.h>

using namespace orm::test;

namespace {

// A CPU Graph that logs, then Log Graph 2 over the corpus showing CPU0 (red)
// and PING_RTT_10.0.0.1 (blue), and Log Graph 3 over today.
std::map<QString, QString> logGraphs()
{
    const QString today = QDate::currentDate().toString(QStringLiteral("yyyyMMdd"));
    std::map<QString, QString> s{{"Sensors", "3"}, {"Sensor1/Nodes", "1"}, {"Sensor1/Node1/NodeType", "5"},
                                 {"Sensor1/Node1/LogData", "True"}};
    for (const char* k : {"Sensor2/", "Sensor3/"}) {
        const QString key = QLatin1String(k);
        s[key + "LogGraph"] = "True";
        s[key + "LocWidth"] = "568";
        s[key + "LocHeight"] = "159";
        s[key + "GraphBackColor"] = "16777215";
        s[key + "Node1/NodeType"] = "5";
        s[key + "Node1/LogItemView"] = "CPU0";
        s[key + "Node1/PenColor"] = "255";
    }
    s["Sensor2/LogStart"] = "20260304120000";
    s["Sensor2/LogEnd"] = "20260306120000";
    s["Sensor2/Nodes"] = "2";
    s["Sensor2/Node2/NodeType"] = "8";
    s["Sensor2/Node2/LogItemView"] = "PING_RTT_10.0.0.1";
    s["Sensor2/Node2/PenColor"] = "16711680";
    s["Sensor3/LogStart"] = today + "000000";
    s["Sensor3/LogEnd"] = today + "235959";
    s["Sensor3/Nodes"] = "1";
    return s;
}

class HeadlessLogCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        run.writeSettings(logGraphs());
        ASSERT_TRUE(writeCorpus(run.dataDir));
    }

    QByteArray exported() const
    {
        QFile f(run.dataDir + QStringLiteral("/LogExport.csv"));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QStringList dataFiles() const
    {
        QStringList all;
        for (const QString& sub : {QString(), QStringLiteral("/Logs")})
            for (const QString& f : QDir(run.dataDir + sub).entryList(QDir::Files | QDir::Hidden | QDir::Dirs |
                                                                        QDir::NoDotAndDotDot))
                all << sub + QLatin1Char('/') + f;
        all.sort();
        return all;
    }
    QByteArray config() const
    {
        QFile f(run.config);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    HeadlessRun run;
};

TEST_F(HeadlessLogCommands, HeadersAndExportOfTheCorpusWriteNothingElse)
{
    const QStringList before = dataFiles();
    const QByteArray settings = config();

    const Outcome headers = run.command({QStringLiteral("--log-headers"), QStringLiteral("2")});
    ASSERT_EQ(headers.status, 0) << headers.err.toStdString();
    // The count, then each column with its description (the descriptions are the column list's own tests).
    const QStringList out = headers.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(out.size(), 1 + CorpusColumns.size()) << headers.out.toStdString();
    EXPECT_EQ(out[0], "(13) Records Found");
    for (int c = 0; c < CorpusColumns.size(); ++c)
        EXPECT_TRUE(out[c + 1].startsWith(CorpusColumns[c] + QLatin1Char('\t'))) << out[c + 1].toStdString();
    EXPECT_EQ(out[3], "CPU0\tTotal CPU usage percentage");
    EXPECT_EQ(dataFiles(), before);

    const Outcome csv = run.command({QStringLiteral("--export-log"), QStringLiteral("2")});
    ASSERT_EQ(csv.status, 0) << csv.err.toStdString();
    EXPECT_TRUE(csv.out.trimmed().isEmpty());
    // CR LF before each record: the last line has no line end.
    EXPECT_EQ(exported(), CorpusCsv.join(QStringLiteral("\r\n")).toLocal8Bit());
    QStringList withCsv = QStringList(before) << "/LogExport.csv";
    withCsv.sort();
    EXPECT_EQ(dataFiles(), withCsv);
    EXPECT_EQ(config(), settings);
}

TEST_F(HeadlessLogCommands, RefusalsAndAnExportThatCannotBeWritten)
{
    Outcome o = run.command({QStringLiteral("--log-headers"), QStringLiteral("1")});
    EXPECT_EQ(o.status, 2);
    EXPECT_EQ(o.said(), QStringList{"ormivane: Graph 1 (New Graph 1) is not a Log Graph"});
    o = run.command({QStringLiteral("--export-log"), QStringLiteral("4")});
    EXPECT_EQ(o.status, 2);
    EXPECT_EQ(o.said(), QStringList{"ormivane: there is no Graph 4 (the settings hold 3)"});
    o = run.command({QStringLiteral("--export-log"), QStringLiteral("two")});
    EXPECT_EQ(o.status, 2);
    EXPECT_TRUE(o.out.trimmed().isEmpty());

    ASSERT_TRUE(QDir().mkpath(run.dataDir + QStringLiteral("/LogExport.csv")));
    o = run.command({QStringLiteral("--export-log"), QStringLiteral("2")});
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.said(), QStringList{"ormivane: Cannot write LogExport.csv: Is a directory"});
    EXPECT_TRUE(run.noWorkingCopies());
}

TEST_F(HeadlessLogCommands, SnapshotShowsTheRefreshedLogGraph)
{
    const QString snap = run.dir.filePath(QStringLiteral("S"));
    const Outcome o = run.command({QStringLiteral("--log-headers"), QStringLiteral("2"), QStringLiteral("--snapshot"), snap});
    ASSERT_EQ(o.status, 0) << o.err.toStdString();
    const QImage picture(snap + QStringLiteral("/Graph2.png"));
    ASSERT_EQ(picture.size(), QSize(568, 159));
    // Twelve points at the right end of the plot, in both pens; nothing to their left.
    int red = 0, blue = 0, leftOfThem = 0;
    for (int y = 30; y < 159; ++y)
        for (int x = 55; x < 568; ++x) {
            const QColor c = picture.pixelColor(x, y);
            const bool pen = c == QColor(255, 0, 0) || c == QColor(0, 0, 255);
            red += c == QColor(255, 0, 0);
            blue += c == QColor(0, 0, 255);
            leftOfThem += pen && x < 568 - 60;
        }
    EXPECT_GT(red, 5);
    EXPECT_GT(blue, 5);
    EXPECT_EQ(leftOfThem, 0);
}

TEST_F(HeadlessLogCommands, ExportBesideAMonitorWritingTodaysLog)
{
    run.start(8);
    ASSERT_TRUE(run.waitForValueLines(3));
    const Outcome o = run.command({QStringLiteral("--export-log"), QStringLiteral("3")});
    ASSERT_EQ(o.status, 0) << o.err.toStdString();
    ASSERT_TRUE(run.finish());

    // Every line exported is a whole record of today's log, and the monitor lost none of its own.
    const QStringList lines = QString::fromLocal8Bit(exported()).split(QStringLiteral("\r\n"));
    ASSERT_GE(lines.size(), 4);
    EXPECT_EQ(lines.first(), QStringLiteral("DATE,TIME,CPU0"));
    const QStringList written = run.valueLines();
    EXPECT_EQ(written.size(), 8);
    const QStringList cpu = run.column(QStringLiteral("CPU0"));
    for (int i = 1; i < lines.size(); ++i) {
        const QStringList cells = lines[i].split(QLatin1Char(','));
        ASSERT_EQ(cells.size(), 3) << lines[i].toStdString();
        EXPECT_EQ(cells[2], cpu.value(i - 1)) << i;
        EXPECT_TRUE(written.value(i - 1).startsWith(cells[0] + QLatin1Char(',') + cells[1]));
    }
    EXPECT_TRUE(run.noWorkingCopies());
}

}  // namespace
