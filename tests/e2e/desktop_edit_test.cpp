// A person's walk through the control panel with mouse and keyboard only,
// played with xdotool on the real windows: add a Graph, add a RAM and a Ping
// Node, set the ping target, make it a Bar Graph, rename a Node, hide and show
// the Graph, delete a Node; after a restart all of it is still there. And a
// Log Graph over stored logs: its range, two columns, the refresh, the export.
#include "desktop_session.h"
#include "../logging/log_corpus.h"

using namespace orm::test;

namespace {

class DesktopEditing : public DesktopWalk {
protected:
    DesktopEditing() { failureShot = QStringLiteral("desktop-edit-failure.png"); }

    // Graph windows may stand over the panel: as a person would, bring it to the front first.
    void bringToFront(const QString& control) override
    {
        if (control == QLatin1String("cmdOk"))
            return;
        const QString panel = windowsNamed(QStringLiteral("Ormivane")).value(0);
        if (!panel.isEmpty())
            xdo({QStringLiteral("windowactivate"), QStringLiteral("--sync"), panel});
        pause(250);  // the map follows a moved panel
    }
    // A date or time picker: its first field clicked and, stepped up and back
    // down, selected; then the digits typed (each field moves on to the next
    // when full), and Return.
    void typeIntoPicker(WidgetMap& map, const QString& name, const QString& digits)
    {
        if (!click(map, name, 1, QPoint(8, 10)))
            return;
        key(QStringLiteral("Up"));
        key(QStringLiteral("Down"));
        type(digits);
        key(QStringLiteral("Return"));
    }
    static QImage screen() { return QGuiApplication::primaryScreen()->grabWindow(0).toImage(); }
};

TEST_F(DesktopEditing, AWalkThroughThePanelSurvivesARestart)
{
    HeadlessRun r;
    WidgetMap map(mapPath(r));
    ASSERT_TRUE(startWithPanel(r, map)) << "no control panel";

    // A new Graph, with two new Nodes: a RAM Node and a Ping Node.
    ASSERT_TRUE(clickFor(map, QStringLiteral("imgAddSensor"), QStringLiteral("row(1,0)")));
    ASSERT_TRUE(click(map, QStringLiteral("imgAddNode")));
    ASSERT_TRUE(shown(map, QStringLiteral("row(1,1)")));
    ASSERT_TRUE(click(map, QStringLiteral("imgCategory(1)")));
    ASSERT_TRUE(click(map, QStringLiteral("imgGraphType(5)")));  // RAM
    acknowledgeNotices(map);
    ASSERT_TRUE(click(map, QStringLiteral("imgAddNode")));
    ASSERT_TRUE(shown(map, QStringLiteral("row(1,2)")));
    ASSERT_TRUE(click(map, QStringLiteral("imgCategory(0)")));
    ASSERT_TRUE(click(map, QStringLiteral("imgGraphType(7)")));  // Ping
    acknowledgeNotices(map);

    // The ping target, typed into its box.
    ASSERT_TRUE(click(map, QStringLiteral("txtPingIP")));
    retype(QStringLiteral("127.0.0.1"));
    EXPECT_TRUE(settingBecomes(r, QStringLiteral("Sensor2/Node3/PingIP"), QStringLiteral("127.0.0.1")));

    // The Graph becomes a Bar Graph.
    ASSERT_TRUE(click(map, QStringLiteral("row(1)")));
    ASSERT_TRUE(click(map, QStringLiteral("imgGraphType(1)")));
    EXPECT_TRUE(settingBecomes(r, QStringLiteral("Sensor2/GraphType"), QStringLiteral("2")));

    // The RAM Node is renamed in the tree.
    ASSERT_TRUE(click(map, QStringLiteral("row(1,1)"), 1, {-1, -1}, 2));
    retype(QStringLiteral("Memory"));
    EXPECT_TRUE(settingBecomes(r, QStringLiteral("Sensor2/Node2/Name"), QStringLiteral("Memory")));

    // Hidden, then shown again.
    ASSERT_TRUE(click(map, QStringLiteral("row(1)")));
    ASSERT_TRUE(click(map, QStringLiteral("imgVisibleSensor")));
    EXPECT_TRUE(waitFor([&] { return !map.has(QStringLiteral("graph(1)")); }, 3000));
    EXPECT_EQ(r.setting(QStringLiteral("Sensor2/Visible")), QStringLiteral("False"));
    ASSERT_TRUE(click(map, QStringLiteral("imgVisibleSensor")));
    EXPECT_TRUE(waitFor([&] { return map.has(QStringLiteral("graph(1)")); }, 3000));

    // The first (CPU) Node goes, after its question is answered Yes.
    ASSERT_TRUE(click(map, QStringLiteral("row(1,0)")));
    ASSERT_TRUE(click(map, QStringLiteral("imgDeleteNode")));
    ASSERT_TRUE(shown(map, QStringLiteral("QMessageBox")));
    key(QStringLiteral("Return"));
    EXPECT_TRUE(waitFor([&] { return !map.has(QStringLiteral("row(1,2)")); }, 3000));

    // The panel as the person left it.
    pause(1200);
    const QRect panel = map.rect(QStringLiteral("frmMain"));
    ASSERT_FALSE(panel.isEmpty());
    snapshot(QStringLiteral("control-panel.png"), panel);
    ASSERT_TRUE(stop(r));

    // After a restart everything is as it was left.
    start(r);
    WidgetMap map2(mapPath(r));
    ASSERT_TRUE(waitFor([&] { return map2.has(QStringLiteral("row(1,1)")); }, 6000));
    EXPECT_FALSE(map2.has(QStringLiteral("row(1,2)")));
    EXPECT_TRUE(map2.has(QStringLiteral("graph(1)")));
    const std::map<QString, QString> left{{"GraphType", "2"}, {"Visible", "True"}, {"Node1/Name", "Memory"},
                                          {"Node1/NodeType", "6"}, {"Node2/NodeType", "8"}, {"Node2/PingIP", "127.0.0.1"}};
    for (const auto& [key, expected] : left)
        EXPECT_EQ(r.setting(QStringLiteral("Sensor2/") + key), expected) << qPrintable(key);
    EXPECT_TRUE(stop(r));
}

TEST_F(DesktopEditing, ALogGraphFromThePanelIsRefreshedAndExported)
{
    HeadlessRun r;
    ASSERT_TRUE(writeCorpus(r.dataDir));
    // The desktop's opener of documents, standing in for a spreadsheet: it notes what it was asked to open.
    const QString bin = r.dir.filePath(QStringLiteral("bin"));
    const QString opened = r.dir.filePath(QStringLiteral("opened.txt"));
    QDir().mkpath(bin);
    QFile opener(bin + QStringLiteral("/xdg-open"));
    ASSERT_TRUE(opener.open(QIODevice::WriteOnly));
    opener.write(QStringLiteral("#!/bin/sh\nprintf '%s\\n' \"$@\" >> '%1'\n").arg(opened).toLocal8Bit());
    opener.close();
    opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    r.extra.insert(QStringLiteral("PATH"), bin + QLatin1Char(':') + qEnvironmentVariable("PATH"));
    r.extra.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("X-Generic"));
    WidgetMap map(mapPath(r));
    ASSERT_TRUE(startWithPanel(r, map)) << "no control panel";

    // A Log Graph from the panel, its window beside it.
    ASSERT_TRUE(clickFor(map, QStringLiteral("imgViewLogs"), QStringLiteral("row(1,0)")));
    ASSERT_TRUE(shown(map, QStringLiteral("graph(1)")));
    ASSERT_TRUE(shown(map, QStringLiteral("picClock")));
    // The panel to the top left and the Log Graph's window below it on the right, so both show.
    const QString panelWindow = windowsNamed(QStringLiteral("Ormivane")).value(0);
    const QString graphWindow = windowsNamed(QStringLiteral("Log View Graph 2")).value(0);
    if (!panelWindow.isEmpty())
        xdo({QStringLiteral("windowmove"), QStringLiteral("--sync"), panelWindow, QStringLiteral("0"), QStringLiteral("0")});
    if (!graphWindow.isEmpty())
        xdo({QStringLiteral("windowmove"), QStringLiteral("--sync"), graphWindow, QStringLiteral("706"), QStringLiteral("596")});
    pause(1500);  // the map follows the moves

    // The range, typed into the pickers.
    typeIntoPicker(map, QStringLiteral("DTPickerDateStart"), QStringLiteral("20260304"));
    typeIntoPicker(map, QStringLiteral("DTPickerStart"), QStringLiteral("120000"));
    typeIntoPicker(map, QStringLiteral("DTPickerDateEnd"), QStringLiteral("20260306"));
    typeIntoPicker(map, QStringLiteral("DTPickerEnd"), QStringLiteral("120000"));
    EXPECT_TRUE(settingBecomes(r, QStringLiteral("Sensor2/LogStart"), QStringLiteral("20260304120000")));
    EXPECT_TRUE(settingBecomes(r, QStringLiteral("Sensor2/LogEnd"), QStringLiteral("20260306120000")));

    // The columns of the range; CPU0 for the first Node, the ping's round trip for a second.
    ASSERT_TRUE(click(map, QStringLiteral("imgRefreshLogList")));
    ASSERT_TRUE(shown(map, QStringLiteral("lstvwLogs(6)")));
    ASSERT_TRUE(click(map, QStringLiteral("row(1,0)")));
    ASSERT_TRUE(click(map, QStringLiteral("lstvwLogs(2)")));
    EXPECT_TRUE(settingBecomes(r, QStringLiteral("Sensor2/Node1/LogItemView"), QStringLiteral("CPU0")));
    ASSERT_TRUE(click(map, QStringLiteral("imgAddNode")));
    ASSERT_TRUE(shown(map, QStringLiteral("row(1,1)")));
    ASSERT_TRUE(click(map, QStringLiteral("row(1,1)")));
    ASSERT_TRUE(click(map, QStringLiteral("lstvwLogs(4)")));
    EXPECT_TRUE(settingBecomes(r, QStringLiteral("Sensor2/Node2/LogItemView"), QStringLiteral("PING_RTT_10.0.0.1")));

    // The refresh: the window's plot gets its points at the right end.
    const QRect window = map.rect(QStringLiteral("graph(1)"));
    const QRect plotEnd(window.right() - 70, window.top() + 40, 60, window.height() - 80);
    const QImage before = screen().copy(plotEnd);
    ASSERT_TRUE(click(map, QStringLiteral("imgRefreshLogGraph")));
    if (!graphWindow.isEmpty())
        xdo({QStringLiteral("windowactivate"), QStringLiteral("--sync"), graphWindow});
    EXPECT_TRUE(waitFor([&] { return screen().copy(plotEnd) != before; }, 5000)) << "the window shows no new points";

    // The export, opened by the desktop's opener.
    ASSERT_TRUE(click(map, QStringLiteral("imgExportLog")));
    const QString csv = r.dataDir + QStringLiteral("/LogExport.csv");
    EXPECT_TRUE(waitFor([&] {
        QFile f(opened);
        return f.open(QIODevice::ReadOnly) && QString::fromLocal8Bit(f.readAll()).contains(csv);
    }, 5000));
    QFile exported(csv);
    ASSERT_TRUE(exported.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromLocal8Bit(exported.readAll()).split(QStringLiteral("\r\n")), CorpusCsv);

    // The panel with its clocks and the Log Graph, as the person sees them.
    if (!graphWindow.isEmpty())
        xdo({QStringLiteral("windowactivate"), QStringLiteral("--sync"), graphWindow});
    pause(800);
    snapshot(QStringLiteral("log-graph-desktop.png"));
    ASSERT_TRUE(stop(r));
    EXPECT_TRUE(r.noWorkingCopies());
}

}  // namespace

int main(int argc, char** argv)
{
    return orm::test::runOnVirtualDesktop(argc, argv);
}
