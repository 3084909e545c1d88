// The headless monitor as a user runs it: a first start and later ones on the
// same folders, the ways a run ends, and what it refuses or cuts down.
#include "run_headless.h"

#include <QDir>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <csignal>

using namespace orm::test;

namespace {

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
    const Outcome o = r.runToEnd(3, {QStringLiteral("txtDebug")});
    ASSERT_EQ(o.status, 0) << qPrintable(o.err);
    const auto first = settingsOf(r);
    EXPECT_EQ(first.at("Settings/FirstRun"), "False");
    EXPECT_EQ(first.at("Settings/Sensor1/Node1/NodeType"), "5");

    // The log's header and columns are the business of the log tests: here, a line a tick.
    QStringList lines = r.lines();
    ASSERT_EQ(lines.size(), 7);
    QFile trace(r.dataDir + QStringLiteral("/Ormivane.txt"));
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    const QString text = QString::fromLocal8Bit(trace.readAll());
    EXPECT_TRUE(text.contains(QStringLiteral("0 - LoadMain 2.0\n")) && text.contains(QStringLiteral("UnLoadMain 2.0\n")));

    // A second start keeps the settings and appends a header block of the same columns.
    ASSERT_EQ(r.runToEnd(2).status, 0);
    EXPECT_EQ(settingsOf(r), first);
    lines = r.lines();
    ASSERT_EQ(lines.size(), 13);
    EXPECT_EQ(lines[10], lines[3]);

    // A CloseNow left in the file from an earlier run does not stop the next start.
    ASSERT_TRUE(r.appendCloseNow());
    ASSERT_EQ(r.runToEnd(2).status, 0);
    EXPECT_EQ(r.valueLines().size(), 3 + 2 + 2);
}

TEST(Headless, CloseNowSigtermAndSigintEndTheRunCleanly)
{
    for (int way : {0, SIGTERM, SIGINT}) {
        SCOPED_TRACE(way);
        HeadlessRun r;
        r.start(600, {});
        ASSERT_TRUE(r.waitForValueLines(1));
        if (way == 0)
            ASSERT_TRUE(r.appendCloseNow());
        else
            ::kill(pid_t(r.process.processId()), way);
        EXPECT_EQ(finished(r.process, 5000).status, 0);
        EXPECT_TRUE(r.noWorkingCopies());
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
        const Outcome o = r.runToEnd(1);
        if (c < 2) {
            EXPECT_EQ(o.status, 2);
            EXPECT_TRUE(o.err.contains(r.config)) << qPrintable(o.err);
            EXPECT_FALSE(QFile::exists(r.dataDir + QStringLiteral("/Logs")));  // refused before anything ran
        } else {
            EXPECT_NE(o.status, 0);
            EXPECT_TRUE(o.err.contains(r.dataDir + QStringLiteral("/Logs: Not a directory"))) << qPrintable(o.err);
        }
        EXPECT_EQ(QFile::permissions(folder), before);
    }
}

TEST(Headless, HelpAndVersionAnswerWithoutStarting)
{
    QProcess p;
    p.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--version")});
    const Outcome version = finished(p, 5000);
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(version.out.startsWith(QStringLiteral("Ormivane ")));
    p.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--help")});
    EXPECT_TRUE(finished(p, 5000).out.contains(QStringLiteral("--ticks")));
}

TEST(Headless, AWindowSizeNoScreenCanHoldIsCutDownAndTheProgramRuns)
{
    HeadlessRun r;
    r.writeSettings({{"Sensors", "2"}, {"Sensor1/LocWidth", "2147483647"}, {"Sensor1/LocHeight", "2147483647"},
                     {"Sensor2/GraphType", "2"}, {"Sensor2/LocWidth", "900000"}, {"Sensor2/Node1/NodeType", "5"}});
    const Outcome o = r.runToEnd(2);
    ASSERT_EQ(o.status, 0) << qPrintable(o.err);
}

}  // namespace
