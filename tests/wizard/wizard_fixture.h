// A started Monitor on a real settings file for the Alert wizard, with one
// more Graph of two Nodes beside the first run's, and the answers to its
// questions.
#pragma once

#include "../monitor/scripted_prompts.h"
#include "../monitor/settings_file_monitor.h"
#include "alerts/alert_store.h"
#include "display/displayed_graph.h"
#include "monitor/alert_wizard.h"
#include "monitor/editing.h"

#include <gtest/gtest.h>

namespace orm::test {

class WizardFixture : public ::testing::Test, protected SettingsFileMonitor {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        restart();
        // A second Graph, "New Graph 2", with the Nodes "New Node 1" and "New Node 2".
        monitor->AddSensor(false);
        AddNode(*monitor, 1);
        monitor->SaveSettings();
    }
    // A new start of the program on the same file.
    void restart()
    {
        ASSERT_TRUE(start(views, [this](SourceSet&, Monitor& m) { views.bind(m.Sensors); }));
    }

    QString stored(const QString& name) const { return storedValue(QStringLiteral("Settings"), name); }
    QString storedAlert(int n, const QString& name) const
    {
        return storedValue(QStringLiteral("Settings/Alert%1").arg(n), name);
    }
    std::vector<Alert>& alerts() { return monitor->alertTester.Alerts; }

    DisplayedGraphFactory views{QString(), dir.filePath(QStringLiteral("data"))};
    ScriptedPrompts answers;
};

}  // namespace orm::test
