#include "shell/tray_graphs.h"

#include "display/displayed_graph.h"
#include "display/tray_icons.h"
#include "shell/program_tray.h"

#include <QPointer>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// A Line Graph, then a Systray Icon Graph of four Nodes (three to an icon), each with its view.
struct Rig {
    std::vector<Graph> sensors{Graph{}, Graph{}};
    std::vector<std::unique_ptr<GraphView>> forms;
    TrayGraphs tray{sensors, forms, nullptr, programIcon()};

    Rig()
    {
        sensors[1].GraphType = SystrayIcon;
        sensors[1].AutoRange = false;
        sensors[1].LegendMax = 100;
        sensors[1].DataType = QStringLiteral("number");
        sensors[1].DataMagnitude = 0;
        for (Graph& g : sensors)
            std::tie(g.LocWidth, g.LocHeight) = std::make_pair(300, 150);
        for (int i = 0; i < 4; ++i) {
            sensors[1].Nodes.push_back(newNode(i));
            sensors[1].Nodes.back().Name = QStringLiteral("Node %1").arg(i + 1);
        }
        for (int g = 0; g < 2; ++g) {
            forms.push_back(std::make_unique<DisplayedGraph>(sensors, g, QString(), QString()));
            forms.back()->OpenGraph();
        }
    }
    const std::vector<TrayIconPicture>& pictures() const
    {
        return dynamic_cast<const DisplayedGraph&>(*forms[1]).trayIcons();
    }
    void tick(std::vector<double> values)
    {
        forms[1]->WriteGraph(values, QStringLiteral("10:00:00"), 60, 5);
        tray.update();
    }
    QImage shown(int k) { return tray.icon(1, k)->icon().pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32); }
};

}  // namespace

TEST(TrayGraphs, IconsAndTipsFollowThePictures)
{
    Rig rig;
    rig.tray.update();
    EXPECT_EQ(rig.tray.iconCount(0), 0);  // a Line Graph has no icons
    ASSERT_EQ(rig.tray.iconCount(1), 2);
    EXPECT_EQ(rig.tray.icon(1, 0)->toolTip(), notifyTip(firstIconTip()));

    // Each tick's pictures and tips reach the icons, the earlier ones replaced.
    rig.tick({10, 50, 90, 30});
    rig.tick({10, 50, 90, 100});
    ASSERT_EQ(rig.pictures().size(), 2u);
    for (int k = 0; k < 2; ++k) {
        EXPECT_EQ(rig.tray.icon(1, k)->toolTip(), notifyTip(rig.pictures()[size_t(k)].tip));
        EXPECT_EQ(rig.shown(k), icoPicture(rig.pictures()[size_t(k)].picture));
    }

    rig.sensors[1].IconType = 1;  // one Node per icon
    rig.tick({10, 50, 90, 100});
    ASSERT_EQ(rig.tray.iconCount(1), 4);
    EXPECT_TRUE(rig.tray.icon(1, 2)->toolTip().startsWith("Node 3 ("));
}

TEST(TrayGraphs, IconsGoWithTheTrayGraph)
{
    Rig rig;
    rig.tick({1, 2, 3, 4});
    QPointer<QSystemTrayIcon> first = rig.tray.icon(1, 0);
    rig.sensors[1].GraphType = LineGraph;
    rig.tray.update();
    EXPECT_EQ(rig.tray.iconCount(1), 0);
    EXPECT_TRUE(first.isNull());
    rig.sensors[1].GraphType = SystrayIcon;
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
}
