// A Monitor on a hand-driven clock, an in-memory store and a CPU source whose
// readings the test sets; memory and drives are the machine's own.
#pragma once

#include "model/graph_view.h"
#include "model/key_value_store.h"
#include "monitor/monitor.h"

#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

namespace orm::test {

class ScriptedCpu final : public CpuCounters {
public:
    int processorCount() override { return count; }
    std::vector<double> collect() override
    {
        ++collections;
        if (onCollect)
            onCollect();
        return std::vector<double>(size_t(count), percent);
    }
    int count = 2;
    double percent = 42.4;
    int collections = 0;
    std::function<void()> onCollect;
};

// Keeps what every WriteGraph handed over.
class RecordingView final : public SampleHistoryView {
public:
    void WriteGraph(const std::vector<double>& values, const QString& label, int a, int b) override
    {
        ++writes;
        SampleHistoryView::WriteGraph(values, label, a, b);
    }
    int writes = 0;
};

class RecordingViews final : public GraphViewFactory {
public:
    std::unique_ptr<GraphView> make(int) override
    {
        auto v = std::make_unique<RecordingView>();
        made.push_back(v.get());
        return v;
    }
    std::vector<RecordingView*> made;
};

class MonitorFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral("config")).toLocal8Bit());
        sourcesOwner = SourceSet::forLinux();
        sourcesOwner->cpuCounters = std::make_unique<ScriptedCpu>();
        cpu = static_cast<ScriptedCpu*>(sourcesOwner->cpuCounters.get());
        sourcesOwner->cpu = std::make_unique<CpuUsage>(*sourcesOwner->cpuCounters);
        configure();
        MonitorOptions options;
        options.dataDir = dir.filePath(QStringLiteral("data"));
        monitor = std::make_unique<Monitor>(options, clock, store, *sourcesOwner, views);
        ASSERT_TRUE(monitor->startUp());
    }

    // Runs before start-up: replace sources, fill the store.
    virtual void configure() {}

    // One tick, the clock having moved on by a second first.
    void tick(int ms = 1000)
    {
        clock.advance(ms);
        monitor->TimerData();
    }

    RecordingView& view(int graph) { return *views.made.at(size_t(graph)); }

    QStringList logLines()
    {
        QFile f(monitor->logWriter().fileName(clock.now().date()));
        if (!f.open(QIODevice::ReadOnly))
            return {};
        return QString::fromLocal8Bit(f.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    }

    QTemporaryDir dir;
    ManualClock clock;
    MemoryStore store;
    std::unique_ptr<SourceSet> sourcesOwner;
    SourceSet& sources() { return *sourcesOwner; }
    ScriptedCpu* cpu = nullptr;
    RecordingViews views;
    std::unique_ptr<Monitor> monitor;
};

}  // namespace orm::test
