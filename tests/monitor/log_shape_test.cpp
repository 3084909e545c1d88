// Sixty ticks of the system Nodes on the machine's own counters, in this
// process on a hand-driven clock: the log keeps its shape.
#include "../e2e/log_shape.h"

#include "model/key_value_store.h"
#include "monitor/monitor.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

TEST(LogShape, SixtyTicksOfSystemNodesKeepTheirColumnsAndKindsOfValue)
{
    int argc = 0;
    QCoreApplication app(argc, nullptr);
    QTemporaryDir dir;
    qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral("config")).toLocal8Bit());
    MemoryStore store;
    store.writeValue(QStringLiteral("Settings"), QStringLiteral("FirstRun"), QStringLiteral("False"));
    for (const auto& [key, value] : systemLogSettings()) {
        const qsizetype slash = key.lastIndexOf(QLatin1Char('/'));
        store.writeValue(QStringLiteral("Settings") + (slash < 0 ? QString() : QLatin1Char('/') + key.left(slash)),
                         key.mid(slash + 1), value);
    }
    ManualClock clock;
    auto sources = SourceSet::forLinux();
    HistoryViewFactory views;
    MonitorOptions options;
    options.dataDir = dir.filePath(QStringLiteral("data"));
    Monitor monitor(options, clock, store, *sources, views);
    ASSERT_TRUE(monitor.startUp());
    ASSERT_EQ(monitor.Sensors.size(), 2u);
    for (int t = 0; t < 60; ++t) {
        QCoreApplication::processEvents();  // the echo replies
        clock.advance(1000);
        monitor.TimerData();
    }
    ASSERT_TRUE(monitor.fatalError.isEmpty()) << monitor.fatalError.toStdString();
    QFile log(monitor.logWriter().fileName(clock.now().date()));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    expectSystemLogShape(QString::fromLocal8Bit(log.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts),
                         clock.now().date(), 60);
}

}  // namespace
