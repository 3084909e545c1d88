// The graph window's pop-up menu: its entries, their check marks from the
// Graph, and what each chosen entry does. The control panel does the work
// through GraphMenuActions.
#pragma once

#include "model/model.h"

#include <QString>
#include <vector>

class QAction;
class QMenu;
class QWidget;

namespace orm {

enum GraphMenuId : int {
    RedrawGraphId = 1001,
    ShowAlertsId = 1002,
    CrossHairId = 1003,
    AlwaysOnTopId = 1004,
    HideGraphId = 1005,
    PrintGraphId = 1006,
    AboutOrmivaneId = 1010,
};

// What the entries ask of the control panel, for the Graph at `graph`.
class GraphMenuActions {
public:
    virtual ~GraphMenuActions() = default;
    virtual void RedrawGraph(int graph) = 0;       // "&Redraw Graph"
    virtual void ToggleCrossHair(int graph) = 0;   // "&Cross-Hair": flips DisableCrossHair
    virtual void ToggleAlwaysOnTop(int graph) = 0; // "Always On &Top": flips TopMost, applies, saves
    virtual void HideGraph(int graph) = 0;         // "&Hide Graph": hides, saves
    virtual void PrintGraph(int graph) = 0;        // "&Print Graph": on the default printer
    virtual void ShowAlerts() = 0;                 // "Show &Alerts": open frmAlerts
    virtual void AboutOrmivane() = 0;              // "About Ormivane"
};

struct GraphMenuEntry {
    int id = 0;        // 0 for a separator
    QString text;
    bool enabled = true;
    bool checkable = false;
};

// The entries in order, separators included.
std::vector<GraphMenuEntry> graphMenuEntries();

// The menu with every entry; each action carries its id as data.
QMenu* makeGraphMenu(QWidget* parent);
// Check marks of the Cross-Hair and Always On Top entries from the Graph; Print
// Graph is open to Line and Bar Graphs only.
void refreshGraphMenu(QMenu& menu, const Graph& graph);
// The entry of the given id; null when the menu has none.
QAction* graphMenuAction(const QMenu& menu, int id);

// Does what the chosen entry says; 0 (dismissed) and the disabled entries do nothing.
void actOnGraphMenu(int id, int graph, GraphMenuActions& actions);

}  // namespace orm
