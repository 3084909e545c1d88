#include "shell/graph_menu.h"

#include "shell/banner_menu.h"
#include "shell/menu_entries.h"

#include <QAction>
#include <QMenu>

namespace orm {

std::vector<GraphMenuEntry> graphMenuEntries()
{
    return {
        {RedrawGraphId, QStringLiteral("&Redraw Graph"), true, false},
        {PrintGraphId, QStringLiteral("&Print Graph"), true, false},
        {0, {}, true, false},
        {ShowAlertsId, QStringLiteral("Show &Alerts"), true, false},
        {0, {}, true, false},
        {CrossHairId, QStringLiteral("&Cross-Hair"), true, true},
        {0, {}, true, false},
        {AlwaysOnTopId, QStringLiteral("Always On &Top"), true, true},
        {HideGraphId, QStringLiteral("&Hide Graph"), true, false},
        {0, {}, true, false},
        {AboutOrmivaneId, QStringLiteral("About Ormivane"), true, false},
    };
}

QMenu* makeGraphMenu(QWidget* parent)
{
    auto* menu = new BannerMenu(parent);
    for (const GraphMenuEntry& e : graphMenuEntries())
        addMenuEntry(*menu, e.id, e.text, e.enabled, e.checkable);
    return menu;
}

QAction* graphMenuAction(const QMenu& menu, int id)
{
    return menuActionWithId(menu, id);
}

void refreshGraphMenu(QMenu& menu, const Graph& graph)
{
    if (QAction* a = graphMenuAction(menu, CrossHairId))
        a->setChecked(!graph.DisableCrossHair);
    if (QAction* a = graphMenuAction(menu, AlwaysOnTopId))
        a->setChecked(graph.TopMost);
    if (QAction* a = graphMenuAction(menu, PrintGraphId))
        a->setEnabled(graph.GraphType == LineGraph || graph.GraphType == BarGraph);
}

void actOnGraphMenu(int id, int graph, GraphMenuActions& actions)
{
    switch (id) {
    case RedrawGraphId:
        actions.RedrawGraph(graph);
        break;
    case CrossHairId:
        actions.ToggleCrossHair(graph);
        break;
    case AlwaysOnTopId:
        actions.ToggleAlwaysOnTop(graph);
        break;
    case HideGraphId:
        actions.HideGraph(graph);
        break;
    case PrintGraphId:
        actions.PrintGraph(graph);
        break;
    case ShowAlertsId:
        actions.ShowAlerts();
        break;
    case AboutOrmivaneId:
        actions.AboutOrmivane();
        break;
    default:  // dismissed
        break;
    }
}

}  // namespace orm
