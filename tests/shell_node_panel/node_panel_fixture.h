// A started Monitor on a real settings file, a NodePanel on it and a host that
// records what the panel asked of the windows.
#pragma once

#include "../monitor/settings_file_monitor.h"
#include "../shell_common/recording_host.h"
#include "shell/node_panel.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QSignalSpy>
#include <gtest/gtest.h>
#include <memory>

namespace orm::test {

class NodePanelTest : public ::testing::Test, protected SettingsFileMonitor {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(start(views));
        panel = std::make_unique<NodePanel>(*monitor, host);
        panel->show();
        treeChanged = std::make_unique<QSignalSpy>(panel.get(), &NodePanel::treeChanged);
    }
    // The panel and the monitor go while the views they use still stand.
    void TearDown() override
    {
        treeChanged.reset();
        panel.reset();
        monitor.reset();
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

    // What a fresh read of the settings file holds for a Node value.
    QString stored(int g, int n, const char* name) const
    {
        return storedValue(QStringLiteral("Settings/Sensor%1/Node%2").arg(g + 1).arg(n + 1), QLatin1String(name));
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

    HistoryViewFactory views;
    RecordingHost host;
    std::unique_ptr<NodePanel> panel;
    std::unique_ptr<QSignalSpy> treeChanged;
};

}  // namespace orm::test
