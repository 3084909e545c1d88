// The control panel and its graph windows on a started Monitor with real
// graph pictures and a real settings file; prompts and messages are the test's.
#pragma once

#include "../monitor/scripted_prompts.h"
#include "../monitor/settings_file_monitor.h"
#include "../store/print_qstring.h"
#include "display/displayed_graph.h"
#include "model/catalogue.h"
#include "monitor/monitor.h"
#include "shell/control_panel.h"
#include "shell/graph_window.h"
#include "shell/graph_windows.h"
#include "shell/vista_tree.h"

#include <QToolButton>
#include <gtest/gtest.h>

namespace orm::test {

class PanelFixture : public ::testing::Test, protected SettingsFileMonitor {
protected:
    void TearDown() override
    {
        panel.reset();
        windows.reset();
        monitor.reset();
    }
    // Starts the program's model, windows and panel anew on the same settings file.
    void startPanel()
    {
        panel.reset();
        windows.reset();
        ASSERT_TRUE(start(views, [this](SourceSet&, Monitor& m) { views.bind(m.Sensors); }));
        windows = std::make_unique<GraphWindows>(*monitor);
        windows->setMessenger([this](const QString& t) { messages << t; });
        windows->openAll();
        panel = std::make_unique<ControlPanel>(*monitor, *windows);
        panel->setPrompts(&prompts);
    }
    // Clicks a button and lets the tree's animation run out.
    void click(const char* name)
    {
        auto* b = panel->findChild<QToolButton*>(QLatin1String(name));
        ASSERT_NE(b, nullptr) << name;
        b->click();
        panel->tree()->finishAnimations();
    }
    void tick()
    {
        clock.advance(1000);
        monitor->TimerData();
        windows->refreshAll();
    }

    DisplayedGraphFactory views{QString(), dir.filePath(QStringLiteral("data"))};
    std::unique_ptr<GraphWindows> windows;
    std::unique_ptr<ControlPanel> panel;
    ScriptedPrompts prompts;
    QStringList messages;
};

}  // namespace orm::test
