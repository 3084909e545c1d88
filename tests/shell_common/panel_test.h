// A started Monitor on a real settings file, a panel of type P on it, and a
// host that records what the panel asked of the windows. Controls are found by
// their object names, as the panel's tool-tips and the desktop walk know them.
#pragma once

#include "../monitor/settings_file_monitor.h"
#include "recording_host.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QSignalSpy>
#include <gtest/gtest.h>
#include <memory>

namespace orm::test {

template <typename P>
class PanelTest : public ::testing::Test, protected SettingsFileMonitor {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(start(views));
        panel = std::make_unique<P>(*monitor, host);
        panel->show();
        treeChanged = std::make_unique<QSignalSpy>(panel.get(), &P::treeChanged);
    }
    // The panel and the monitor go while the views they use still stand.
    void TearDown() override
    {
        treeChanged.reset();
        panel.reset();
        monitor.reset();
    }

    template <typename T>
    T* child(const QString& name)
    {
        T* w = panel->template findChild<T*>(name);
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
    std::unique_ptr<P> panel;
    std::unique_ptr<QSignalSpy> treeChanged;
};

}  // namespace orm::test
