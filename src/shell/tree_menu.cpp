#include "shell/tree_menu.h"

#include "shell/banner_menu.h"
#include "shell/menu_entries.h"

#include <QAction>
#include <QMenu>

namespace orm {

namespace {

bool validRow(const std::vector<Graph>& graphs, int graph, int node)
{
    if (graph < 0 || graph >= int(graphs.size()))
        return false;
    return node < 0 || node < int(graphs[size_t(graph)].Nodes.size());
}

QString inBrackets(const QString& head, const QString& name)
{
    return head + QStringLiteral(" (") + name + QStringLiteral(")");
}

}  // namespace

std::vector<TreeMenuEntry> treeMenuEntries(const std::vector<Graph>& graphs, int graph, int node)
{
    if (!validRow(graphs, graph, node)) {
        // Empty space: only adding a Graph makes sense.
        return {
            {AddGraphId, QStringLiteral("&Add Graph"), true},
            {AddNodeId, QStringLiteral("Add &Node"), false},
            {ShowNodeId, QStringLiteral("Sho&w Node"), false},
            {RenameNodeId, QStringLiteral("Rena&me Node"), false},
            {0, {}, true},
            {DeleteGraphId, QStringLiteral("&Delete Graph"), false},
            {DeleteNodeId, QStringLiteral("De&lete Node"), false},
            {0, {}, true},
            {TreeAboutId, QStringLiteral("About Ormivane"), true},
        };
    }
    const Graph& g = graphs[size_t(graph)];
    const bool onNode = node >= 0;
    QString show, rename, deleteNode;
    bool deleteNodeEnabled = false;
    if (onNode) {
        const Node& n = g.Nodes[size_t(node)];
        show = inBrackets(n.NodeVisible ? QStringLiteral("&Hide Node") : QStringLiteral("Sho&w Node"),
                          n.Name);
        rename = inBrackets(QStringLiteral("Rena&me Node"), n.Name);
        deleteNode = inBrackets(QStringLiteral("De&lete Node"), n.Name);
        deleteNodeEnabled = true;
    } else {
        // The two spaces are the menu's own.
        show = inBrackets(g.Visible ? QStringLiteral("&Hide  Graph") : QStringLiteral("Sho&w  Graph"),
                          g.Name);
        rename = inBrackets(QStringLiteral("Rena&me Graph"), g.Name);
        deleteNode = QStringLiteral("De&lete Node");
    }
    return {
        {AddGraphId, QStringLiteral("&Add Graph"), true},
        {AddNodeId, inBrackets(QStringLiteral("Add &Node to"), g.Name), true},
        {ShowNodeId, show, true},
        {RenameNodeId, rename, true},
        {0, {}, true},
        {DeleteGraphId, inBrackets(QStringLiteral("&Delete Graph"), g.Name), true},
        {DeleteNodeId, deleteNode, deleteNodeEnabled},
        {0, {}, true},
        {TreeAboutId, QStringLiteral("About Ormivane"), true},
    };
}

QMenu* makeTreeMenu(QWidget* parent)
{
    auto* menu = new BannerMenu(parent);
    for (const TreeMenuEntry& e : treeMenuEntries({}, -1, -1))
        addMenuEntry(*menu, e.id, e.text, e.enabled);
    return menu;
}

QAction* treeMenuAction(const QMenu& menu, int id)
{
    return menuActionWithId(menu, id);
}

void refreshTreeMenu(QMenu& menu, const std::vector<Graph>& graphs, int graph, int node)
{
    for (const TreeMenuEntry& e : treeMenuEntries(graphs, graph, node)) {
        if (e.id == 0)
            continue;
        if (QAction* a = treeMenuAction(menu, e.id)) {
            a->setText(e.text);
            a->setEnabled(e.enabled);
        }
    }
}

void actOnTreeMenu(int id, const std::vector<Graph>& graphs, int graph, int node,
                   TreeMenuActions& actions)
{
    if (id == AddGraphId) {
        actions.AddGraph();
        return;
    }
    if (id == TreeAboutId) {
        actions.AboutOrmivane();
        return;
    }
    if (!validRow(graphs, graph, node))
        return;
    switch (id) {
    case DeleteGraphId:
        actions.DeleteGraph(graph);
        break;
    case AddNodeId:
        actions.AddNode(graph);
        break;
    case DeleteNodeId:
        if (node >= 0)
            actions.DeleteNode(graph, node);
        break;
    case ShowNodeId:
        actions.ToggleVisible(graph, node);
        break;
    case RenameNodeId:
        actions.Rename(graph, node);
        break;
    default:
        break;
    }
}

}  // namespace orm
