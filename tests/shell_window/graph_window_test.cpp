// The graph window offscreen: size and stored rectangle, the fades stepped by
// hand, the shape of a see-through Bar Graph, the cross-hair and the menu.
#include "model/clock.h"
#include "model/key_value_store.h"
#include "monitor/monitor.h"
#include "monitor/source_set.h"
#include "display/bar_graph.h"
#include "display/cross_hair.h"
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
    void make()
    {
        monitor = std::make_unique<Monitor>(MonitorOptions{}, clock, store, sources, views);
        monitor->Sensors.push_back(graph);
        picture = std::make_unique<DisplayedGraph>(monitor->Sensors, 0, QString(), QString());
        window = std::make_unique<GraphWindow>(*monitor, 0, picture.get());
        window->setSaveCallback([this] { ++saves; });
    }
    Graph& g() { return monitor->Sensors[0]; }
    void runOut(QTimer& timer, void (GraphWindow::*tick)())
    {
        for (int i = 0; timer.isActive() && i < 100; ++i)
            (window.get()->*tick)();
    }

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

TEST_F(GraphWindowTest, OpensAtTheStoredPlaceNoSmallerThanTheMinimumAndSavesAGestureOnce)
{
    graph.LocX = 40;
    graph.LocY = 50;
    graph.LocWidth = 120;
    graph.LocHeight = 60;
    make();
    window->OpenGraph();
    EXPECT_EQ(window->size(), QSize(180, 100));
    EXPECT_EQ(window->pos(), QPoint(40, 50));
    window->gripReleased(300, 200);
    EXPECT_EQ(picture->windowWidth(), 300);
    window->move(70, 80);
    QApplication::processEvents();
    window->saveNow();
    EXPECT_EQ(QRect(g().LocX, g().LocY, g().LocWidth, g().LocHeight), QRect(70, 80, 300, 200));
    EXPECT_EQ(saves, 1);
}

TEST_F(GraphWindowTest, OpeningFadesInAndHoverFadesUpAndBack)
{
    graph.Opacity = 95;
    make();
    window->OpenGraph();
    EXPECT_EQ(window->fade().alpha(), 0);
    runOut(window->openingFadeTimer(), &GraphWindow::openingFadeTick);
    EXPECT_EQ(window->fade().alpha(), 95);  // 10, 20 ... 90, then 95

    const QPoint inside = window->frameGeometry().center();
    window->mouseFocusTick(inside);
    window->hotFadeTick();
    window->mouseFocusTick(inside);  // still fading: no extra step
    EXPECT_EQ(window->fade().alpha(), 115);
    runOut(window->hotFadeTimer(), &GraphWindow::hotFadeTick);
    EXPECT_EQ(window->fade().alpha(), 255);
    window->mouseFocusTick(window->frameGeometry().topLeft());  // on the edge counts as outside
    runOut(window->hotFadeTimer(), &GraphWindow::hotFadeTick);
    EXPECT_EQ(window->fade().alpha(), 95);
}

TEST_F(GraphWindowTest, BarGraphTakesTheShapeOfItsBarsAndTipsTheBarUnderThePointer)
{
    graph.GraphType = BarGraph;
    graph.Transparent = true;
    graph.LocWidth = 278;
    graph.LocHeight = 163;
    graph.Nodes = {Node{}, Node{}};
    graph.Nodes[1].Name = QStringLiteral("second");
    make();
    window->OpenGraph();
    EXPECT_TRUE(window->shaped());  // the bars stand from the start, before any sample
    picture->WriteGraph({10, 20}, QStringLiteral("t"), 60, 5);
    window->refresh();
    EXPECT_FALSE(window->mask().contains(QPoint(5, 5)));
    EXPECT_FALSE(window->mask().contains(QPoint(54, 80)));
    g().TransGrid = true;
    window->MakeClear();
    EXPECT_TRUE(window->mask().contains(QPoint(54, 80)));  // the frame's left side
    window->UnMakeClear(true);
    EXPECT_TRUE(window->mask().isEmpty());
    g().Transparent = false;
    window->MakeClear();
    EXPECT_FALSE(window->shaped());

    window->show();
    const QPoint at = barRects(g(), picture->geometry().pHeight)[1].center();
    QMouseEvent move(QEvent::MouseMove, QPointF(at), QPointF(window->mapToGlobal(at)), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(window.get(), &move);
    EXPECT_EQ(QToolTip::text(), barToolTips(picture->bars())[1]);
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("second")));
    EXPECT_TRUE(window->lblCrossHairData()->isHidden());  // bars take no cross-hair

    g().GraphType = LineGraph;  // a Line Graph is never shaped
    g().Transparent = true;
    window->MakeClear();
    EXPECT_FALSE(window->shaped());
}

TEST_F(GraphWindowTest, CrossHairPicksTheNearestNodeAndItsLabelsFollowThePointer)
{
    // A 200 x 100 plot from (55, 35) on a 0..100 scale: value v lies at y = 135 - v.
    graph.AutoRange = false;
    graph.LegendMax = 100;
    graph.DataType = QStringLiteral("percent");
    graph.LegendUnits = QStringLiteral("%");
    graph.LocWidth = 278;
    graph.LocHeight = 163;
    graph.Nodes.resize(2);
    graph.Nodes[1].Name = QString::fromUtf8("Be\0ta", 5);
    graph.Nodes[1].NodeType = RamType;
    graph.Nodes[1].PenColor = 0x00FF00;
    make();
    window->OpenGraph();
    const auto at = [&](int x, int y) { return crossHairAt(monitor->Sensors, 0, *picture, x, y); };
    EXPECT_FALSE(at(253, 100).shown);  // no history yet
    picture->WriteGraph({20, 70}, QStringLiteral("t1"), 60, 5);
    picture->WriteGraph({20, 70}, QStringLiteral("12:00"), 60, 5);
    EXPECT_EQ(at(253, 112).node, 0);
    EXPECT_EQ(at(253, 90).node, 0);  // 25 from each: the first seen stays
    EXPECT_EQ(at(253, 36).node, 1);  // top two rows: the highest value
    EXPECT_EQ(at(254, 65).swatchColor, 0x00FF00);  // one past the newest column: held at it
    EXPECT_FALSE(at(251, 100).shown);  // a filler column before the history
    EXPECT_FALSE(at(253, 34).shown);

    window->crossHairMove(253, 65);
    EXPECT_TRUE(window->crossHairShown());
    EXPECT_EQ(window->lblCrossHairName()->text(), QStringLiteral("Beta (RAM)"));
    EXPECT_EQ(window->lblCrossHairData()->text(), QStringLiteral("70 % - 12:00"));
    window->refresh();  // the tick's picture covers the lines, the labels stay
    EXPECT_FALSE(window->crossHairShown());
    EXPECT_FALSE(window->lblCrossHairName()->text().isEmpty());
    window->crossHairMove(253, 65);
    window->crossHairMove(20, 95);  // left of the plot: erased, nothing new
    EXPECT_TRUE(window->lblCrossHairName()->text().isEmpty());

    picture->WriteGraph({150, 0}, QStringLiteral("t"), 60, 5);
    EXPECT_EQ(at(253, 36).y, 35);  // above the scale: the line holds at the top, the text tells
    EXPECT_TRUE(at(253, 36).dataText.startsWith(QStringLiteral("150 % - ")));
    g().DisableCrossHair = true;
    EXPECT_FALSE(at(253, 100).shown);
    EXPECT_EQ(crossHairDecimals(0.05), 3);  // small values keep their digits
    EXPECT_EQ(crossHairDecimals(0), 10);
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
        texts << (a->isSeparator() ? QStringLiteral("-") : a->text() + (a->isChecked() ? "+" : ""));
    EXPECT_EQ(texts.join(QLatin1Char('|')), QStringLiteral("&Redraw Graph|&Print Graph|-|Show &Alerts|-|&Cross-Hair|-|"
                                                           "Always On &Top+|&Hide Graph|-|About Ormivane"));
    for (int id : {RedrawGraphId, PrintGraphId, ShowAlertsId, CrossHairId, AlwaysOnTopId, HideGraphId, AboutOrmivaneId})
        graphMenuAction(*menu, id)->trigger();
    actOnGraphMenu(0, 0, actions);  // dismissed
    EXPECT_EQ(actions.calls.join(QLatin1Char(',')), QStringLiteral("redraw 0,print 0,alerts,cross 0,top 0,hide 0,about"));
}

// Only a Line or a Bar Graph shows a window, and only theirs can be printed.
TEST_F(GraphWindowTest, PrintGraphIsOpenToLineAndBarGraphsOnly)
{
    graph.GraphType = SystrayIcon;
    make();
    window->OpenGraph();
    for (int type : {SystrayIcon, BarGraph, TextGraph, LineGraph, VistaGadget}) {
        g().GraphType = type;
        window->ChangeGraphType();
        const bool drawn = type == LineGraph || type == BarGraph;
        EXPECT_EQ(window->isVisible(), drawn) << "type " << type;
        EXPECT_EQ(graphMenuAction(*window->graphMenu(), PrintGraphId)->isEnabled(), drawn) << "type " << type;
    }
}

}  // namespace
}  // namespace orm
