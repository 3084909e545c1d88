#include "shell/tray_graphs.h"

#include "display/displayed_graph.h"
#include "display/tray_icons.h"
#include "shell/program_tray.h"

#include <QPointer>
#include <gtest/gtest.h>

using namespace orm;

namespace {

Graph graphOf(int type, int nodes, int iconType = 0)
{
    Graph g;
    g.GraphType = type;
    g.IconType = qint16(iconType);
    g.DataType = QStringLiteral("number");
    g.DataMagnitude = 0;
    g.AutoRange = false;
    g.LegendMax = 100;
    g.LocWidth = 300;
    g.LocHeight = 150;
    for (int i = 0; i < nodes; ++i) {
        Node n = newNode(i);
        n.Name = QStringLiteral("Node %1").arg(i + 1);
        g.Nodes.push_back(n);
    }
    return g;
}

// A Line Graph, then a Systray Icon Graph of four Nodes, each with its view.
struct Rig {
    std::vector<Graph> sensors{graphOf(LineGraph, 1), graphOf(SystrayIcon, 4)};
    std::vector<std::unique_ptr<GraphView>> forms;
    TrayGraphs tray{sensors, forms, nullptr, programIcon()};

    Rig()
    {
        for (int g = 0; g < 2; ++g) {
            forms.push_back(std::make_unique<DisplayedGraph>(sensors, g, QString(), QString()));
            forms.back()->OpenGraph();
        }
    }
    const DisplayedGraph& trayView() const { return dynamic_cast<const DisplayedGraph&>(*forms[1]); }
    void tick(std::vector<double> values)
    {
        forms[1]->WriteGraph(values, QStringLiteral("10:00:00"), 60, 5);
        tray.update();
    }
};

QImage shown(const QSystemTrayIcon* icon)
{
    return icon->icon().pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
}

}  // namespace

TEST(TrayGraphs, IconsAndTipsFollowThePictures)
{
    Rig rig;
    rig.tray.update();
    EXPECT_EQ(rig.tray.iconCount(0), 0);  // a Line Graph has no icons
    ASSERT_EQ(rig.tray.iconCount(1), 2);  // four Nodes, three to an icon
    EXPECT_EQ(rig.tray.icon(1, 0)->toolTip(), notifyTip(firstIconTip()));

    rig.tick({10, 50, 90, 30});
    const auto& pictures = rig.trayView().trayIcons();
    ASSERT_EQ(pictures.size(), 2u);
    for (int k = 0; k < 2; ++k) {
        const QSystemTrayIcon* icon = rig.tray.icon(1, k);
        EXPECT_EQ(icon->toolTip(), notifyTip(pictures[size_t(k)].tip));
        EXPECT_EQ(shown(icon), icoPicture(pictures[size_t(k)].picture));
    }
    // The second icon holds the fourth Node alone.
    EXPECT_TRUE(rig.tray.icon(1, 1)->toolTip().startsWith("Node 4 ("));
    EXPECT_FALSE(rig.tray.icon(1, 1)->toolTip().contains("Node 3"));

    // New values give a new picture on the same icon.
    const QImage before = shown(rig.tray.icon(1, 1));
    rig.tick({10, 50, 90, 100});
    EXPECT_NE(shown(rig.tray.icon(1, 1)), before);
    EXPECT_EQ(shown(rig.tray.icon(1, 1)), icoPicture(rig.trayView().trayIcons()[1].picture));

    // One Node per icon: four icons, each picture of the next tick on its own icon.
    rig.sensors[1].IconType = 1;
    rig.tick({10, 50, 90, 100});
    ASSERT_EQ(rig.tray.iconCount(1), 4);
    EXPECT_TRUE(rig.tray.icon(1, 2)->toolTip().startsWith("Node 3 ("));
    EXPECT_EQ(rig.tray.icon(1, 4), nullptr);
}

TEST(TrayGraphs, IconsGoWhenTheGraphIsNoLongerATrayGraph)
{
    Rig rig;
    rig.tick({1, 2, 3, 4});
    ASSERT_EQ(rig.tray.iconCount(1), 2);
    QPointer<QSystemTrayIcon> first = rig.tray.icon(1, 0);

    rig.sensors[1].GraphType = LineGraph;
    rig.tray.update();
    EXPECT_EQ(rig.tray.iconCount(1), 0);
    EXPECT_TRUE(first.isNull());

    rig.sensors[1].GraphType = SystrayIcon;
    rig.tray.update();
    EXPECT_EQ(rig.tray.iconCount(1), 2);

    rig.sensors[1].Visible = false;
    rig.tray.update();
    EXPECT_EQ(rig.tray.iconCount(1), 0);
    rig.sensors[1].Visible = true;
    rig.tray.update();

    // The Line Graph before it is deleted: the tray Graph moves up to index 0.
    first = rig.tray.icon(1, 0);
    rig.sensors.erase(rig.sensors.begin());
    rig.forms.erase(rig.forms.begin());
    rig.tray.update();
    EXPECT_EQ(rig.tray.iconCount(0), 2);
    EXPECT_EQ(rig.tray.iconCount(1), 0);
    EXPECT_TRUE(first.isNull());

    // The tray Graph itself deleted.
    rig.sensors.clear();
    rig.forms.clear();
    rig.tray.update();
    EXPECT_EQ(rig.tray.iconCount(0), 0);
}
