// The daily log of a minute's headless run on the machine's own counters: one
// header block, the columns of every system group in their order, and in each
// of the sixty lines the kind of value each column holds.
#include "log_shape.h"
#include "run_headless.h"

#include <QCoreApplication>
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
