// The log commands of build/ormivane on the crafted corpus: --log-headers and
// --export-log cell for cell, and what they refuse.
#include "run_headless.h"
#include "../logging/log_corpus.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace orm::test;

namespace {

struct Outcome {
    int status = -1;
    QStringList out, err;
};

// A CPU Graph, then Log Graph 2 over the corpus showing CPU0 and PING_RTT_10.0.0.1.
std::map<QString, QString> logGraph()
{
    return {{"Sensors", "2"}, {"Sensor1/Node1/NodeType", "5"}, {"Sensor2/LogGraph", "True"},
            {"Sensor2/LogStart", "20260304120000"}, {"Sensor2/LogEnd", "20260306120000"}, {"Sensor2/Nodes", "2"},
            {"Sensor2/Node1/NodeType", "5"}, {"Sensor2/Node1/LogItemView", "CPU0"}, {"Sensor2/Node2/NodeType", "8"},
            {"Sensor2/Node2/LogItemView", "PING_RTT_10.0.0.1"}};
}

class HeadlessLogCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        run.writeSettings(logGraph());
        ASSERT_TRUE(writeCorpus(run.dataDir));
    }

    Outcome command(const QStringList& args)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), run.dir.filePath(QStringLiteral("xdg")));
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(ORM_BINARY),
                QStringList{QStringLiteral("--headless"), QStringLiteral("--data-dir"), run.dataDir,
                            QStringLiteral("--config"), run.config} + args);
        Outcome o;
        if (!p.waitForFinished(60000))
            return o;
        o.status = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
        o.out = QString::fromLocal8Bit(p.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        // The program's own lines; Qt may add its warnings about the environment.
        for (const QString& line : QString::fromLocal8Bit(p.readAllStandardError()).split(QLatin1Char('\n')))
            if (line.startsWith(QLatin1String("ormivane: ")))
                o.err << line;
        return o;
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

    const Outcome headers = command({QStringLiteral("--log-headers"), QStringLiteral("2")});
    ASSERT_EQ(headers.status, 0) << headers.err.join('\n').toStdString();
    EXPECT_EQ(headers.out, (QStringList{"(13) Records Found",
                                        "SAMPLE_LENGTH_MILLI_S\tLength of Time Elapsed during this sample in mSeconds",
                                        "SYS_TMR\tSystem Uptime in mSeconds", "CPU0\tTotal CPU usage percentage",
                                        "PING_SIZE_10.0.0.1\tSize of the Ping Packet in bytes (10.0.0.1)",
                                        "PING_RTT_10.0.0.1\tPing Round-Trip Time in mSeconds (10.0.0.1)",
                                        "CPU1\tTotal CPU usage percentage",
                                        "MEM_AVA\tTotal Available Memory in bytes"}));
    EXPECT_EQ(dataFiles(), before);

    const Outcome csv = command({QStringLiteral("--export-log"), QStringLiteral("2")});
    ASSERT_EQ(csv.status, 0) << csv.err.join('\n').toStdString();
    EXPECT_TRUE(csv.out.isEmpty());
    // CR LF before each record: the last line has no line end.
    EXPECT_EQ(exported(), CorpusCsv.join(QStringLiteral("\r\n")).toLocal8Bit());
    QStringList withCsv = QStringList(before) << "/LogExport.csv";
    withCsv.sort();
    EXPECT_EQ(dataFiles(), withCsv);
    EXPECT_EQ(config(), settings);
}

TEST_F(HeadlessLogCommands, RefusalsAndAnExportThatCannotBeWritten)
{
    Outcome o = command({QStringLiteral("--log-headers"), QStringLiteral("1")});
    EXPECT_EQ(o.status, 2);
    EXPECT_EQ(o.err, QStringList{"ormivane: Graph 1 (New Graph 1) is not a Log Graph"});
    o = command({QStringLiteral("--export-log"), QStringLiteral("4")});
    EXPECT_EQ(o.status, 2);
    EXPECT_EQ(o.err, QStringList{"ormivane: there is no Graph 4 (the settings hold 2)"});
    o = command({QStringLiteral("--export-log"), QStringLiteral("two")});
    EXPECT_EQ(o.status, 2);
    EXPECT_TRUE(o.out.isEmpty());

    ASSERT_TRUE(QDir().mkpath(run.dataDir + QStringLiteral("/LogExport.csv")));
    o = command({QStringLiteral("--export-log"), QStringLiteral("2")});
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.err, QStringList{"ormivane: Cannot write LogExport.csv: Is a directory"});
    EXPECT_TRUE(QDir(run.dataDir + QStringLiteral("/Logs")).entryList({QStringLiteral("*.log1")}).isEmpty());
}

}  // namespace
