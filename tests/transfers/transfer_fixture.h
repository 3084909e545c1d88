// A Monitor with Website, LAN and Speed Test Nodes on a hand-driven clock and
// an in-memory store, its data folder in a path without "-" (a "-" there
// misreads the transfer names), its LAN shares in a mount table of the test's.
#pragma once

#include "../monitor/monitor_fixture.h"
#include "local_servers.h"
#include "monitor/transfers.h"

#include <QDir>
#include <QFile>
#include <map>

namespace orm::test {

using NodeValues = std::map<QString, QString>;

class TransferFixture : public ::testing::Test {
protected:
    TransferFixture() : root(QDir::tempPath() + QStringLiteral("/ormtransfersXXXXXX")) {}

    void SetUp() override
    {
        ASSERT_TRUE(root.isValid());
        ASSERT_FALSE(root.path().contains(QLatin1Char('-')));
        qputenv("XDG_CONFIG_HOME", root.filePath(QStringLiteral("config")).toLocal8Bit());
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("FirstRun"), QStringLiteral("False"));
        QDir().mkpath(shareDir());
        ASSERT_TRUE(writeFile(mountTable(), "//testhost/share " + shareDir().toUtf8() + " cifs rw 0 0\n"));
    }

    // Graph g (from 0) samples every `seconds` and holds these Nodes.
    void graph(int g, int seconds, const std::vector<NodeValues>& nodes)
    {
        const QString key = QStringLiteral("Settings/Sensor%1").arg(g + 1);
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("Sensors"), QString::number(g + 1));
        store.writeValue(key, QStringLiteral("SampleEverySeconds"), QString::number(seconds));
        store.writeValue(key, QStringLiteral("Nodes"), QString::number(nodes.size()));
        for (size_t j = 0; j < nodes.size(); ++j)
            for (const auto& [name, value] : nodes[j])
                store.writeValue(key + QStringLiteral("/Node%1").arg(j + 1), name, value);
    }

    bool start(const QString& words = QString())
    {
        sources = SourceSet::forLinux();
        sources->shares = std::make_unique<ShareResolver>(mountTable(), root.filePath(QStringLiteral("gvfs")));
        MonitorOptions options;
        options.dataDir = dataDir();
        options.commandLine = words;
        monitor = std::make_unique<Monitor>(options, clock, store, *sources, views);
        QObject::connect(&transfers(), &Transfers::urlStatus, [this](const QString& text, qint32 colour) {
            urlTexts << text;
            urlColour = colour < 0 ? urlColour : colour;
        });
        QObject::connect(&transfers(), &Transfers::warning, [this](const QString& text) { warnings << text; });
        QObject::connect(&transfers(), &Transfers::setupFailed, [this](const QString& text) { warnings << text; });
        if (onBeforeStart)
            onBeforeStart();
        return monitor->startUp();
    }

    void tick(int ms = 1000)
    {
        clock.advance(ms);
        monitor->TimerData();
    }

    Transfers& transfers() { return monitor->transfers(); }
    Node& node(int g, int n) { return monitor->Sensors.at(size_t(g)).Nodes.at(size_t(n)); }
    void show(int g, int n)
    {
        transfers().shownGraph = g;
        transfers().shownNode = n;
    }
    // Runs the event loop until no transfer, test or copy of the Monitor runs.
    bool settle(int ms = 20000)
    {
        return waitUntil(
            [&] {
                Transfers& t = transfers();
                return t.DownloaderFiles.TransferNames.size() <= 1 && t.DownloaderTest.TransferNames.size() <= 1 &&
                       !t.AsyncCopy.running() && !t.asyncCopyPending();
            },
            ms);
    }

    QString dataDir() const { return root.filePath(QStringLiteral("data")); }
    QString shareDir() const { return root.filePath(QStringLiteral("share")); }
    QString mountTable() const { return root.filePath(QStringLiteral("mounts")); }
    QStringList errLines() const
    {
        return linesOf(dataDir() + QStringLiteral("/Logs/ex") + clock.now().toString(QStringLiteral("yyyyMMdd")) +
                       QStringLiteral(".err"));
    }
    QStringList logLines() const { return linesOf(monitor->logWriter().fileName(clock.now().date())); }
    static QStringList linesOf(const QString& file)
    {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(f.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts)
                                          : QStringList();
    }

    QTemporaryDir root;
    ManualClock clock;
    MemoryStore store;
    std::unique_ptr<SourceSet> sources;
    RecordingViews views;
    std::unique_ptr<Monitor> monitor;
    std::function<void()> onBeforeStart;
    QStringList urlTexts;
    qint32 urlColour = -1;
    QStringList warnings;
};

inline NodeValues website(const QString& url, int downloadType = 0)
{
    return {{QStringLiteral("NodeType"), QStringLiteral("4")}, {QStringLiteral("DownloadURL"), url},
            {QStringLiteral("DownloadType"), QString::number(downloadType)}};
}

inline NodeValues lanFile(const QString& path)
{
    return {{QStringLiteral("NodeType"), QStringLiteral("7")}, {QStringLiteral("DownloadURL"), path}};
}

inline NodeValues slave(int masterGraph, int masterNode, int downloadType)
{
    return {{QStringLiteral("NodeType"), QStringLiteral("4")}, {QStringLiteral("WebsiteMaster"), QStringLiteral("False")},
            {QStringLiteral("WebsiteSlaveToSensor"), QString::number(masterGraph)},
            {QStringLiteral("WebsiteSlaveToNode"), QString::number(masterNode)},
            {QStringLiteral("DownloadType"), QString::number(downloadType)}};
}

}  // namespace orm::test
