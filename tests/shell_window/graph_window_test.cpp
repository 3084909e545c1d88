// The graph window offscreen: size and stored rectangle, the fades stepped by
// hand, the shape of a see-through Bar Graph, and the menu.
#include "model/clock.h"
#include "model/key_value_store.h"
#include "monitor/monitor.h"
#include "monitor/source_set.h"
#include "display/bar_graph.h"
#include "display/displayed_graph.h"
#include "shell/graph_menu.h"
#include "shell/graph_window.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QToolTip>
#include <gtest/gtest.h>

namespace orm {
namespace {

class GraphWindowTest : public ::testing::Test {
protected:
    void make(const QString& commandLine = {})
    {
        MonitorOptions options;
        options.commandLine = commandLine;
        monitor = std::make_unique<Monitor>(options, clock, store, sources, views);
        monitor->Sensors.push_back(graph);
        picture = std::make_unique<DisplayedGraph>(monitor->Sensors, 0, commandLine, QString());
        window = std::make_unique<GraphWindow>(*monitor, 0, picture.get());
        window->setSaveCallback([this] { ++saves; });
    }
    Graph& g() { return monitor->Sensors[0]; }

    ManualClock clock;
    MemoryStore store;
    SourceSet sources;
    DisplayedGraphFactory views{QString(), QString()};
    Graph graph;
    std::unique_ptr<Monitor> monitor;
    std::unique_ptr<DisplayedGraph> picture;
    std::unique_ptr<GraphWindow> window;
    int saves = 0;
};

TEST_F(GraphWindowTest, OpensAtTheStoredPlaceNoSmallerThanTheMinimum)
{
    graph.Name = QStringLiteral("Traffic");
    graph.Description = QStringLiteral("eth0");
    graph.LocX = 40;
    graph.LocY = 50;
    graph.LocWidth = 120;
    graph.LocHeight = 60;
    make();
    window->OpenGraph();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->size(), QSize(180, 100));
    EXPECT_EQ(window->pos(), QPoint(40, 50));
    EXPECT_EQ(window->lblGraphName()->text(), QStringLiteral("Traffic"));
    EXPECT_EQ(window->lblGraphDescription()->geometry().x(), 55);
    EXPECT_EQ(window->lblGraphDescription()->width(), 102);

    window->resize(100, 50);
    EXPECT_EQ(window->size(), QSize(180, 100));
    window->gripReleased(300, 200);
    EXPECT_EQ(picture->windowWidth(), 300);
    window->move(70, 80);
    QApplication::processEvents();
    window->saveNow();
    EXPECT_EQ(g().LocX, 70);
    EXPECT_EQ(g().LocY, 80);
    EXPECT_EQ(g().LocWidth, 300);
    EXPECT_EQ(g().LocHeight, 200);
    EXPECT_EQ(saves, 1);  // one save for the whole gesture
}

TEST_F(GraphWindowTest, DebugSwitchLeavesTheWindowWithoutMinimum)
{
    make(QStringLiteral("VDDebugMode"));
    EXPECT_EQ(window->minimumSize(), QSize(0, 0));
}

TEST_F(GraphWindowTest, HiddenTypesShowNoWindow)
{
    graph.GraphType = SystrayIcon;
    make();
    window->OpenGraph();
    EXPECT_FALSE(window->isVisible());
    g().GraphType = LineGraph;
    window->ChangeGraphType();
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->lblCrossHairData()->isHidden());
    g().GraphType = BarGraph;
    window->ChangeGraphType();
    EXPECT_TRUE(window->lblCrossHairData()->isHidden());
    g().GraphType = TextGraph;
    window->ChangeGraphType();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(GraphWindowTest, OpeningFadesInAndHoverFadesUpAndBack)
{
    graph.Opacity = 95;
    make();
    window->OpenGraph();
    EXPECT_EQ(window->fade().alpha(), 0);
    int steps = 0;
    while (window->openingFadeTimer().isActive() && steps < 100) {
        window->openingFadeTick();
        ++steps;
    }
    EXPECT_EQ(steps, 10);  // 10, 20 ... 90, then 95
    EXPECT_EQ(window->fade().alpha(), 95);

    const QPoint inside = window->frameGeometry().center();
    window->mouseFocusTick(inside);
    EXPECT_EQ(window->fade().alpha(), 105);
    EXPECT_TRUE(window->hotFadeTimer().isActive());
    window->hotFadeTick();
    EXPECT_EQ(window->fade().alpha(), 115);
    window->mouseFocusTick(inside);  // still fading: no extra step
    EXPECT_EQ(window->fade().alpha(), 115);
    while (window->hotFadeTimer().isActive())
        window->hotFadeTick();
    EXPECT_EQ(window->fade().alpha(), 255);

    window->mouseFocusTick(window->frameGeometry().topLeft());  // on the edge counts as outside
    EXPECT_FALSE(window->fade().mouseOver());
    while (window->hotFadeTimer().isActive())
        window->hotFadeTick();
    EXPECT_EQ(window->fade().alpha(), 95);
}

TEST_F(GraphWindowTest, SolidWindowIgnoresTheHover)
{
    make();
    window->OpenGraph();
    while (window->openingFadeTimer().isActive())
        window->openingFadeTick();
    window->mouseFocusTick(window->frameGeometry().center());
    EXPECT_FALSE(window->hotFadeTimer().isActive());
    EXPECT_EQ(window->fade().alpha(), 255);
    EXPECT_DOUBLE_EQ(window->windowOpacity(), 1.0);
}

TEST_F(GraphWindowTest, TransparentBarGraphTakesTheShapeOfItsParts)
{
    graph.GraphType = BarGraph;
    graph.Transparent = true;
    graph.LocWidth = 278;
    graph.LocHeight = 163;
    graph.Nodes = {Node{}};
    make();
    window->OpenGraph();
    EXPECT_TRUE(window->shaped());  // the bars stand from the start, before any sample
    picture->WriteGraph({50}, QStringLiteral("t"), 60, 5);
    window->refresh();
    ASSERT_TRUE(window->shaped());
    const QRegion bars = window->mask();
    EXPECT_FALSE(bars.contains(QPoint(5, 5)));
    EXPECT_FALSE(bars.contains(QPoint(54, 80)));

    g().TransGrid = true;
    window->MakeClear();
    EXPECT_TRUE(window->mask().contains(QPoint(54, 80)));  // the frame's left side
    EXPECT_GT(window->mask().rectCount(), bars.rectCount());

    window->UnMakeClear(true);
    EXPECT_TRUE(window->mask().isEmpty());
    g().Transparent = false;
    window->MakeClear();
    EXPECT_FALSE(window->shaped());

    // A Line Graph is never shaped.
    g().GraphType = LineGraph;
    g().Transparent = true;
    window->MakeClear();
    EXPECT_FALSE(window->shaped());
}

TEST_F(GraphWindowTest, PointingAtABarShowsItsNodeAndValue)
{
    graph.GraphType = BarGraph;
    graph.Transparent = false;
    graph.Name = QStringLiteral("Bars");
    graph.Nodes = {Node{}, Node{}};
    graph.Nodes[1].Name = QStringLiteral("second");
    make();
    window->OpenGraph();
    window->show();
    picture->WriteGraph({10, 20}, QStringLiteral("t"), 60, 5);
    window->refresh();
    const QRect second = barRects(g(), picture->geometry().pHeight)[1];
    QMouseEvent move(QEvent::MouseMove, QPointF(second.center()), QPointF(window->mapToGlobal(second.center())),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &move);
    EXPECT_EQ(QToolTip::text(), barToolTips(picture->bars())[1]);
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("second")));
}

class RecordingActions final : public GraphMenuActions {
public:
    void RedrawGraph(int g) override { calls << QStringLiteral("redraw %1").arg(g); }
    void ToggleCrossHair(int g) override { calls << QStringLiteral("cross %1").arg(g); }
    void ToggleAlwaysOnTop(int g) override { calls << QStringLiteral("top %1").arg(g); }
    void HideGraph(int g) override { calls << QStringLiteral("hide %1").arg(g); }
    void PrintGraph(int g) override { calls << QStringLiteral("print %1").arg(g); }
    void ShowAlerts() override { calls << QStringLiteral("alerts"); }
    void AboutOrmivane() override { calls << QStringLiteral("about"); }
    QStringList calls;
};

TEST_F(GraphWindowTest, MenuEntriesChecksAndActions)
{
    graph.TopMost = true;
    graph.DisableCrossHair = true;
    make();
    RecordingActions actions;
    window->setMenuActions(&actions);
    QMenu* menu = window->graphMenu();
    QStringList texts;
    for (QAction* a : menu->actions())
        texts << (a->isSeparator() ? QStringLiteral("-") : a->text());
    EXPECT_EQ(texts.join(QLatin1Char('|')),
              QStringLiteral("&Redraw Graph|&Print Graph|-|Show &Alerts|-|&Cross-Hair|-|Always On &Top|"
                             "&Hide Graph|-|About Ormivane"));
    EXPECT_TRUE(graphMenuAction(*menu, PrintGraphId)->isEnabled());
    EXPECT_TRUE(graphMenuAction(*menu, ShowAlertsId)->isEnabled());
    EXPECT_FALSE(graphMenuAction(*menu, CrossHairId)->isChecked());
    EXPECT_TRUE(graphMenuAction(*menu, AlwaysOnTopId)->isChecked());

    g().DisableCrossHair = false;
    menu = window->graphMenu();
    EXPECT_TRUE(graphMenuAction(*menu, CrossHairId)->isChecked());

    for (int id : {RedrawGraphId, PrintGraphId, ShowAlertsId, CrossHairId, AlwaysOnTopId, HideGraphId, AboutOrmivaneId})
        graphMenuAction(*menu, id)->trigger();
    actOnGraphMenu(0, 0, actions);  // dismissed
    EXPECT_EQ(actions.calls.join(QLatin1Char(',')),
              QStringLiteral("redraw 0,print 0,alerts,cross 0,top 0,hide 0,about"));
}

TEST_F(GraphWindowTest, PrintGraphIsOpenToLineAndBarGraphsOnly)
{
    make();
    for (int type : {LineGraph, BarGraph, SystrayIcon, TextGraph, VistaGadget}) {
        g().GraphType = type;
        EXPECT_EQ(graphMenuAction(*window->graphMenu(), PrintGraphId)->isEnabled(),
                  type == LineGraph || type == BarGraph)
            << "type " << type;
    }
}

TEST_F(GraphWindowTest, CrossHairLabelsFollowThePointerAndClear)
{
    graph.AutoRange = false;
    graph.LegendMax = 100;
    graph.DataType = QStringLiteral("percent");
    graph.LegendUnits = QStringLiteral("%");
    graph.LocWidth = 278;
    graph.LocHeight = 163;
    Node n;
    n.Name = QStringLiteral("Load");
    n.NodeType = RamType;
    graph.Nodes = {n};
    make();
    window->OpenGraph();
    for (int i = 0; i < 20; ++i)
        picture->WriteGraph({40}, QStringLiteral("12:00"), 60, 5);
    window->crossHairMove(240, 95);
    EXPECT_TRUE(window->crossHairShown());
    EXPECT_EQ(window->lblCrossHairName()->text(), QStringLiteral("Load (RAM)"));
    EXPECT_EQ(window->lblCrossHairData()->text(), QStringLiteral("40 % - 12:00"));
    EXPECT_EQ(window->crossHair().y, 95);

    window->refresh();  // the tick's picture covers the lines, the labels stay
    EXPECT_FALSE(window->crossHairShown());
    EXPECT_FALSE(window->lblCrossHairName()->text().isEmpty());

    window->crossHairMove(240, 95);
    window->crossHairMove(20, 95);  // left of the plot: erased, nothing new
    EXPECT_FALSE(window->crossHairShown());
    EXPECT_TRUE(window->lblCrossHairName()->text().isEmpty());
}

}  // namespace
}  // namespace orm
