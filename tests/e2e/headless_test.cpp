// The headless monitor as a user runs it: a first start and later ones on the
// same folders, the ways a run ends, and what it refuses or cuts down.
#include "run_headless.h"

#include <QDir>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <csignal>

using namespace orm::test;

namespace {

// Runs to its end; the exit status, with what it said on stderr in `err`.
int runToEnd(HeadlessRun& r, int ticks, const QStringList& words = {}, QString* err = nullptr)
{
    r.start(ticks, words);
    EXPECT_TRUE(r.process.waitForFinished(30000));
    if (err)
        *err = QString::fromLocal8Bit(r.process.readAllStandardError());
    return r.process.exitStatus() == QProcess::NormalExit ? r.process.exitCode() : -1;
}

std::map<QString, QString> settingsOf(const HeadlessRun& r)
{
    QSettings s(r.config, QSettings::IniFormat);
    std::map<QString, QString> m;
    for (const QString& k : s.allKeys())
        m[k] = s.value(k).toString();
    return m;
}

TEST(Headless, FirstStartLaterStartsAndALeftoverCloseNow)
{
    HeadlessRun r;
    QString err;
    ASSERT_EQ(runToEnd(r, 3, {QStringLiteral("txtDebug")}, &err), 0) << qPrintable(err);
    const auto first = settingsOf(r);
    EXPECT_EQ(first.at(QStringLiteral("Settings/FirstRun")), QStringLiteral("False"));
    EXPECT_EQ(first.at(QStringLiteral("Settings/Sensors")), QStringLiteral("1"));
    EXPECT_EQ(first.at(QStringLiteral("Settings/Sensor1/Node1/NodeType")), QStringLiteral("5"));
    EXPECT_EQ(QFile::permissions(r.config) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    // The log's header and columns are the business of the log tests: here, a line a tick.
    QStringList lines = r.lines();
    ASSERT_EQ(lines.size(), 7);
    EXPECT_TRUE(lines[3].startsWith(QStringLiteral("#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,CPU0")));
    QFile trace(r.dataDir + QStringLiteral("/Ormivane.txt"));
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    const QString text = QString::fromLocal8Bit(trace.readAll());
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d OS=8  \\d+\\.\\d+\\.\\d+\\n"))
                    .match(text).hasMatch()) << qPrintable(text.left(200));
    EXPECT_TRUE(text.contains(QStringLiteral("0 - LoadMain 2.0\n")) && text.contains(QStringLiteral("UnLoadMain 2.0\n")));

    // A second start keeps the settings and appends a header block of the same columns.
    ASSERT_EQ(runToEnd(r, 2), 0);
    EXPECT_EQ(settingsOf(r), first);
    lines = r.lines();
    ASSERT_EQ(lines.size(), 13);
    EXPECT_EQ(lines[10], lines[3]);

    // A CloseNow left in the file from an earlier run does not stop the next start.
    {
        QFile f(r.config);
        ASSERT_TRUE(f.open(QIODevice::Append));
        f.write("CloseNow=True\n");
    }
    ASSERT_EQ(runToEnd(r, 2), 0);
    EXPECT_EQ(r.valueLines().size(), 3 + 2 + 2);
}

TEST(Headless, CloseNowSigtermAndSigintEndTheRunCleanly)
{
    for (int way : {0, SIGTERM, SIGINT}) {
        SCOPED_TRACE(way);
        HeadlessRun r;
        r.start(600, {});
        ASSERT_TRUE(r.waitForValueLines(1));
        if (way == 0) {
            QFile f(r.config);
            ASSERT_TRUE(f.open(QIODevice::Append));
            f.write("CloseNow=True\n");
        } else {
            ::kill(pid_t(r.process.processId()), way);
        }
        ASSERT_TRUE(r.process.waitForFinished(5000));
        EXPECT_EQ(r.process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(r.process.exitCode(), 0);
        EXPECT_TRUE(QDir(r.dataDir + QStringLiteral("/Logs")).entryList({QStringLiteral("*.log1")}).isEmpty());
    }
}

TEST(Headless, ConfigAndLogFoldersThatCannotBeUsedAreRefused)
{
    // A folder as the settings file, one under a plain file, and a file where the Logs folder belongs.
    for (int c = 0; c < 3; ++c) {
        SCOPED_TRACE(c);
        HeadlessRun r;
        const QString folder = r.dir.filePath(QStringLiteral("settings-folder"));
        ASSERT_TRUE(QDir().mkpath(folder) && QDir().mkpath(r.dataDir));
        ASSERT_TRUE(QFile::setPermissions(folder, QFile::Permissions(0x7755)));
        const QFile::Permissions before = QFile::permissions(folder);
        QFile(r.dir.filePath(QStringLiteral("plain-file"))).open(QIODevice::WriteOnly);
        if (c == 0)
            r.config = folder;
        else if (c == 1)
            r.config = r.dir.filePath(QStringLiteral("plain-file/sub/o.conf"));
        else
            QFile(r.dataDir + QStringLiteral("/Logs")).open(QIODevice::WriteOnly);
        QString err;
        const int status = runToEnd(r, 1, {}, &err);
        if (c < 2) {
            EXPECT_EQ(status, 2);
            EXPECT_TRUE(err.contains(r.config)) << qPrintable(err);
            EXPECT_FALSE(QFile::exists(r.dataDir + QStringLiteral("/Logs")));  // refused before anything ran
        } else {
            EXPECT_NE(status, 0);
            EXPECT_TRUE(err.contains(QStringLiteral("Logs"))) << qPrintable(err);
        }
        EXPECT_EQ(QFile::permissions(folder), before);
    }
}

TEST(Headless, HelpAndVersionAnswerWithoutStarting)
{
    QProcess p;
    p.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--version")});
    ASSERT_TRUE(p.waitForFinished(5000));
    EXPECT_EQ(p.exitCode(), 0);
    EXPECT_TRUE(QString::fromLocal8Bit(p.readAllStandardOutput()).startsWith(QStringLiteral("Ormivane ")));
    p.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--help")});
    ASSERT_TRUE(p.waitForFinished(5000));
    EXPECT_TRUE(QString::fromLocal8Bit(p.readAllStandardOutput()).contains(QStringLiteral("--ticks")));
}

TEST(Headless, AWindowSizeNoScreenCanHoldIsCutDownAndTheProgramRuns)
{
    HeadlessRun r;
    r.writeSettings({{QStringLiteral("Sensors"), QStringLiteral("2")},
                     {QStringLiteral("Sensor1/LocWidth"), QStringLiteral("2147483647")},
                     {QStringLiteral("Sensor1/LocHeight"), QStringLiteral("2147483647")},
                     {QStringLiteral("Sensor2/GraphType"), QStringLiteral("2")},
                     {QStringLiteral("Sensor2/LocWidth"), QStringLiteral("900000")},
                     {QStringLiteral("Sensor2/Node1/NodeType"), QStringLiteral("5")}});
    QString err;
    ASSERT_EQ(runToEnd(r, 2, {}, &err), 0) << qPrintable(err);
}

}  // namespace
