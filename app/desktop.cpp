#include "desktop.h"

#include "monitor/monitor.h"
#include "monitor/monitor_loop.h"
#include "model/settings_store.h"
#include "model/version.h"
#include "display/displayed_graph.h"
#include "shell/about_box.h"
#include "shell/alerts_window.h"
#include "shell/control_panel.h"
#include "shell/graph_menu.h"
#include "shell/graph_printer.h"
#include "shell/graph_window.h"
#include "shell/graph_windows.h"
#include "shell/log_viewer_panel.h"
#include "shell/message_dialog.h"
#include "shell/program_alert_host.h"
#include "shell/program_tray.h"
#include "shell/splash.h"
#include "shell/tray_graphs.h"
#include "shell/vista_tree.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <QScreen>
#include <cstdio>
#include <memory>

namespace orm {

namespace {

// What the tray menu and the graph menu do to the model and the windows.
class DesktopActions final : public TrayMenuActions, public GraphMenuActions {
public:
    DesktopActions(Monitor& monitor, GraphWindows& windows) : monitor_(monitor), windows_(windows) {}
    void setPanel(ControlPanel* panel) { panel_ = panel; }
    void setPrinter(GraphPrinter* printer) { printer_ = printer; }

    void showMain() override
    {
        panel_->show();
        panel_->raise();
        panel_->activateWindow();
    }
    void showAlerts() override
    {
        // One window at a time; it loads anew each time it is opened after a close.
        if (!alerts_) {
            alerts_ = new AlertsWindow(monitor_);
            alerts_->setAttribute(Qt::WA_DeleteOnClose);
            const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
            alerts_->move(screen.topLeft() + QPoint(40, 40));
        }
        alerts_->show();
        alerts_->raise();
        alerts_->activateWindow();
    }
    void ShowAlerts() override { showAlerts(); }
    void closeAlerts() { delete alerts_; }
    void showAllHiddenGraphs() override
    {
        for (Graph& g : monitor_.Sensors)
            g.Visible = true;
        monitor_.SaveSettings();
        for (int i = 0; i < int(monitor_.Sensors.size()); ++i)
            windows_.visibilityChanged(i);
        panel_->reloadPanel();
    }
    void toggleStartInSystray() override { flip(monitor_.Settings.StartInSystray); }
    void toggleRunAtStartup() override { flip(monitor_.Settings.AutoStart); }
    void toggleDisplayToolTips() override
    {
        flip(monitor_.Settings.DisplayToolTips);
        panel_->InitToolTips();
        if (alerts_)
            alerts_->InitToolTips();
    }
    void toggleShowDataTypeErrors() override { flip(monitor_.Settings.ShowDataTypeErrors); }
    void about() override { showAbout(panel_); }
    void exit() override { monitor_.Closing = true; }

    // The graph menu.
    void RedrawGraph(int graph) override
    {
        if (auto* p = windows_.picture(graph)) {
            p->InitDraw();
            p->RedrawGraph();
        }
        if (auto* w = windows_.window(graph))
            w->refresh();
    }
    void ToggleCrossHair(int graph) override
    {
        if (valid(graph))
            flip(monitor_.Sensors[size_t(graph)].DisableCrossHair);
        panel_->reloadPanel();
    }
    void ToggleAlwaysOnTop(int graph) override
    {
        if (!valid(graph))
            return;
        Graph& g = monitor_.Sensors[size_t(graph)];
        flip(g.TopMost);
        windows_.topMostChanged(graph);
        panel_->reloadPanel();
    }
    void HideGraph(int graph) override
    {
        if (!valid(graph))
            return;
        monitor_.Sensors[size_t(graph)].Visible = false;
        monitor_.SaveSettings();
        windows_.visibilityChanged(graph);
        panel_->reloadPanel();
    }
    void PrintGraph(int graph) override { printer_->printGraph(graph); }
    void AboutOrmivane() override { about(); }

private:
    bool valid(int graph) const { return graph >= 0 && size_t(graph) < monitor_.Sensors.size(); }

    void flip(bool& setting)
    {
        setting = !setting;
        monitor_.SaveSettings();
    }
    Monitor& monitor_;
    GraphWindows& windows_;
    ControlPanel* panel_ = nullptr;
    GraphPrinter* printer_ = nullptr;
    QPointer<AlertsWindow> alerts_;
};

}  // namespace

int runDesktop(Monitor& monitor, KeyValueStore& store, DisplayedGraphFactory& views, long maxTicks,
               ProgramAlertHost& alertHost, const std::function<void()>& afterStartUp)
{
    // Sub Main: a panel that starts in the tray is loaded hidden.
    const bool startInSystray = readFlag(store, SettingsKey, QStringLiteral("StartInSystray"), false);

    // The splash goes once start-up is over, and its window's picture with it.
    auto splash = std::make_unique<SplashWindow>();
    splash->showSplash();
    monitor.onSplash = [&splash](const QString& text) { splash->setStatus(text); };
    const bool started = monitor.startUp();
    monitor.onSplash = nullptr;
    splash->closeSplash();
    splash.reset();
    if (!started) {
        std::fprintf(stderr, "%s\n", qPrintable(monitor.startError()));
        QMessageBox::warning(nullptr, QLatin1String(ProductName), monitor.startError());
        return 3;
    }
    if (afterStartUp)
        afterStartUp();

    GraphWindows windows(monitor);
    DesktopActions actions(monitor, windows);
    windows.setMenuActions(&actions);
    MessageDialog messages;
    windows.setMessenger([&messages](const QString& text) { messages.ShowMessage(text, false, false, false); });
    alertHost.setDialog(&messages);
    ControlPanel panel(monitor, windows);
    actions.setPanel(&panel);
    views.setStatus([&panel](const QString& text) { panel.showStatus(text); });
    GraphPrinter printer(monitor, [&panel](const QString& text) { panel.showStatus(text); }, printerModuleJobs());
    printer.setWindows(&windows);
    actions.setPrinter(&printer);
    alertHost.setPrinter([&printer](int graph) { printer.printGraph(graph); });
    ProgramTray tray(monitor.Settings, actions);
    panel.setTrayIcon(tray.icon());
    TrayGraphs trayGraphs(monitor.Sensors, monitor.GraphForms, tray.menu(), programIcon());
    windows.setTrayGraphs(&trayGraphs);
    // With no tray host the panel is the only way in: it shows whatever the setting says.
    if (!startInSystray || !ProgramTray::available())
        panel.show();
    for (const Notice& n : monitor.notices)
        if (!tray.ShowTrayMessage(n.title, n.text))
            std::fprintf(n.warning ? stderr : stdout, "%s: %s\n", qPrintable(n.title),
                         qPrintable(QString(n.text).replace(QLatin1Char('\n'), QLatin1Char(' '))));
    monitor.notices.clear();
    QObject::connect(&panel, &ControlPanel::hiddenToTray, &tray,
                     [&] { tray.ShowTrayMessage(systrayIconNoticeTitle(), systrayIconNoticeText()); });
    trayGraphs.update();

    // One window per Graph, showing the picture its view draws.
    windows.openAll();
    // A Log Graph loaded at start has its columns read, as a new one has.
    panel.logViewer()->refreshAllHeaders();
    // The start-up tip points at the first Graph's row in the tree: no window may hide it.
    if (monitor.firstStart && panel.isVisible())
        windows.keepClearOf(QRect(panel.tree()->mapToGlobal(QPoint(0, 0)), panel.tree()->size()));
    // The windows go before the views they show.
    auto previousUnload = monitor.onUnload;
    monitor.onUnload = [&, previousUnload] {
        if (previousUnload)
            previousUnload();
        views.setStatus(nullptr);
        actions.closeAlerts();
        windows.clear();
        trayGraphs.clear();
        alertHost.setDialog(nullptr);
        alertHost.setPrinter(nullptr);
        messages.unload();
    };

    MonitorLoop loop(monitor, maxTicks);
    loop.watchStopSignals();
    int status = 0;
    QObject::connect(&loop, &MonitorLoop::ticked, &panel, [&] {
        panel.afterTick();
        windows.refreshAll();
        trayGraphs.update();
    });
    QObject::connect(&loop, &MonitorLoop::finished, qApp, [&](int s) {
        status = s;
        panel.allowClose();
        panel.close();
        QApplication::quit();
    });
    loop.start();
    QApplication::exec();
    if (!monitor.fatalError.isEmpty()) {
        std::fprintf(stderr, "ormivane: %s\n", qPrintable(monitor.fatalError));
        QMessageBox::critical(nullptr, QLatin1String(ProductName), monitor.fatalError);
    }
    return status;
}

}  // namespace orm
