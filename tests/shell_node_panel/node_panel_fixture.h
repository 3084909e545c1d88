// A started Monitor on a real settings file, a NodePanel on it and a host that
// records what the panel asked of the windows.
#pragma once

#include "core/clock.h"
#include "core/graph_view.h"
#include "core/ini_store.h"
#include "core/monitor.h"
#include "shell/node_panel.h"
#include "shell/panel_host.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>

namespace orm::test {

class RecordingHost final : public PanelHost {
public:
    DisplayedGraph* picture(int) override { return nullptr; }
    void nodesChanged(int g) override { calls << QStringLiteral("nodesChanged %1").arg(g); }
    void redraw(int g) override { calls << QStringLiteral("redraw %1").arg(g); }
    void graphTypeChanged(int g) override { calls << QStringLiteral("graphTypeChanged %1").arg(g); }
    void visibilityChanged(int g) override { calls << QStringLiteral("visibilityChanged %1").arg(g); }
    void topMostChanged(int g) override { calls << QStringLiteral("topMostChanged %1").arg(g); }
    void transparencyChanged(int g) override { calls << QStringLiteral("transparencyChanged %1").arg(g); }
    void opacityChanged(int g) override { calls << QStringLiteral("opacityChanged %1").arg(g); }
    void captionsChanged(int g) override { calls << QStringLiteral("captionsChanged %1").arg(g); }
    void showMessage(const QString& text) override { messages << text; }
    QStringList calls;
    QStringList messages;
};

class NodePanelTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral("config")).toLocal8Bit());
        settingsFile = dir.filePath(QStringLiteral("Ormivane.conf"));
        store = std::make_unique<IniStore>(settingsFile);
        sources = SourceSet::forLinux();
        MonitorOptions options;
        options.dataDir = dir.filePath(QStringLiteral("data"));
        monitor = std::make_unique<Monitor>(options, clock, *store, *sources, views);
        ASSERT_TRUE(monitor->startUp());
        panel = std::make_unique<NodePanel>(*monitor, host);
        panel->show();
        treeChanged = std::make_unique<QSignalSpy>(panel.get(), &NodePanel::treeChanged);
    }

    // A Node of `type` appended to Graph `g` (made when missing), saved.
    int addNode(int g, int type, const QString& name = {})
    {
        while (int(monitor->Sensors.size()) <= g)
            monitor->AddSensor(false);
        auto& nodes = monitor->Sensors[size_t(g)].Nodes;
        Node n = newNode(int(nodes.size()));
        n.NodeType = type;
        n.Name = name.isEmpty() ? QStringLiteral("Node %1").arg(nodes.size()) : name;
        nodes.push_back(n);
        renumber(monitor->Sensors);
        monitor->SaveSettings();
        return int(nodes.size()) - 1;
    }

    Node& node(int g, int n) { return monitor->Sensors[size_t(g)].Nodes[size_t(n)]; }

    QByteArray fileBytes() const
    {
        QFile f(settingsFile);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    // The file's identity: a save writes a new file and renames it over the old.
    quint64 fileIdentity() const
    {
        struct stat st {};
        return ::stat(settingsFile.toLocal8Bit().constData(), &st) == 0 ? quint64(st.st_ino) : 0;
    }

    // What a fresh read of the settings file holds for a Node value.
    QString stored(int g, int n, const char* name) const
    {
        IniStore fresh(settingsFile);
        return fresh.readValue(QStringLiteral("Settings/Sensor%1/Node%2").arg(g + 1).arg(n + 1),
                               QLatin1String(name), QStringLiteral("<none>"));
    }

    template <typename T>
    T* child(const QString& name)
    {
        T* w = panel->findChild<T*>(name);
        EXPECT_NE(w, nullptr) << name.toStdString();
        return w;
    }
    bool shown(const QString& name) { return child<QWidget>(name)->isVisibleTo(panel.get()); }
    void choose(const QString& comboName, int index)
    {
        QComboBox* c = child<QComboBox>(comboName);
        c->setCurrentIndex(index);
        emit c->activated(index);
    }
    void click(const QString& name) { child<QAbstractButton>(name)->click(); }

    QTemporaryDir dir;
    QString settingsFile;
    ManualClock clock;
    std::unique_ptr<IniStore> store;
    std::unique_ptr<SourceSet> sources;
    HistoryViewFactory views;
    std::unique_ptr<Monitor> monitor;
    RecordingHost host;
    std::unique_ptr<NodePanel> panel;
    std::unique_ptr<QSignalSpy> treeChanged;
};

}  // namespace orm::test
