// The tree's pop-up menu: its entries, their texts for the row under the
// mouse, and what a chosen entry asks of the control panel.
#pragma once

#include "model/model.h"

#include <QString>
#include <vector>

class QAction;
class QMenu;
class QWidget;

namespace orm {

enum TreeMenuId : int {
    AddGraphId = 1200,
    DeleteGraphId = 1201,
    AddNodeId = 1202,
    DeleteNodeId = 1203,
    ShowNodeId = 1204,
    RenameNodeId = 1205,
    TreeAboutId = 1210,
};

// What the entries ask of the control panel. `node` is -1 for a Graph row.
class TreeMenuActions {
public:
    virtual ~TreeMenuActions() = default;
    virtual void AddGraph() = 0;
    virtual void DeleteGraph(int graph) = 0;
    virtual void AddNode(int graph) = 0;
    virtual void DeleteNode(int graph, int node) = 0;
    virtual void ToggleVisible(int graph, int node) = 0;  // hide or show the row's Graph or Node
    virtual void Rename(int graph, int node) = 0;         // starts the tree's rename of the row
    virtual void AboutOrmivane() = 0;
};

struct TreeMenuEntry {
    int id = 0;  // 0 for a separator
    QString text;
    bool enabled = true;
};

// The entries in order for the row under the mouse: `graph` -1 is empty space,
// `node` -1 a Graph row. Indexes outside `graphs` count as empty space.
std::vector<TreeMenuEntry> treeMenuEntries(const std::vector<Graph>& graphs, int graph, int node);

// The menu with every entry (texts for empty space); each action carries its id as data.
QMenu* makeTreeMenu(QWidget* parent);
// Rewrites texts and greying for the row.
void refreshTreeMenu(QMenu& menu, const std::vector<Graph>& graphs, int graph, int node);
QAction* treeMenuAction(const QMenu& menu, int id);

// Does what the chosen entry says for the row; 0 (dismissed) does nothing, and
// an entry that needs a row does nothing on empty space.
void actOnTreeMenu(int id, const std::vector<Graph>& graphs, int graph, int node,
                   TreeMenuActions& actions);

}  // namespace orm
