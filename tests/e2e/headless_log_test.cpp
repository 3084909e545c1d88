// The daily log of a minute's headless run on the machine's own counters: one
// header block, the columns of every system group in their order, and in each
// of the sixty lines the kind of value each column holds.
#include "log_shape.h"
#include "run_headless.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

using namespace orm::test;

namespace {

TEST(HeadlessLog, SixtyTicksOfSystemNodesKeepTheirColumnsAndKindsOfValue)
{
    int argc = 0;
    QCoreApplication app(argc, nullptr);
    HeadlessRun run;
    run.writeSettings(systemLogSettings());
    run.start(60, {});
    ASSERT_TRUE(run.finish(90000)) << run.process.readAllStandardError().toStdString();
    expectSystemLogShape(run.lines(), QDate::currentDate(), 60);
}

}  // namespace

// What the running program has mapped: its libraries, plugins and font caches.
QString mapsOf(const QProcess& process)
{
    QFile f(QStringLiteral("/proc/%1/maps").arg(process.processId()));
    return f.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(f.readAll()) : QString();
}

TEST(HeadlessLog, OnlyARunThatDrawsLoadsAPlatformPluginAndFonts)
{
    int argc = 0;
    QCoreApplication app(argc, nullptr);
    // Nothing to draw; a Gadget Graph; an Alert that prints a Graph.
    const std::vector<std::map<QString, QString>> configs = {
        {}, {{"Sensors", "2"}, {"Sensor2/GraphType", "29"}}, {{"Alerts", "1"}, {"Alert1/rName", "print"}, {"Alert1/rAction", "5"}}};
    for (size_t c = 0; c < configs.size(); ++c) {
        SCOPED_TRACE(c);
        HeadlessRun run;
        auto settings = systemLogSettings();
        for (const auto& [key, value] : configs[c])
            settings[key] = value;
        run.writeSettings(settings);
        run.start(60, {});
        ASSERT_TRUE(run.waitForValueLines(2)) << run.process.readAllStandardError().toStdString();
        const QString maps = mapsOf(run.process);
        ASSERT_FALSE(maps.isEmpty());
        const bool draws = c > 0;
        EXPECT_EQ(maps.contains(QStringLiteral("/platforms/")), draws);
        if (!draws) {
            // The libraries are linked in; their caches and the fonts are not read.
            EXPECT_FALSE(maps.contains(QStringLiteral("/fontconfig/")));
            EXPECT_FALSE(maps.contains(QStringLiteral("/fonts/")));
        }
        run.process.terminate();
        EXPECT_TRUE(run.finish()) << run.process.readAllStandardError().toStdString();
    }
}
