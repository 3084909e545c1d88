// The structural edits of the control panel (add and delete of Nodes and
// Graphs, the type tiles, the sampling interval) on the Monitor's model. The
// windows' own work (SetUpNodes, InitDraw, shapes, the tree) stays with the
// caller; these functions say what happened so it can follow.
#pragma once

#include "model/key_value_store.h"
#include "monitor/monitor.h"

#include <QString>
#include <functional>

namespace orm {

// The questions and stop boxes of an edit; tests answer them.
class EditPrompts {
public:
    virtual ~EditPrompts() = default;
    // A Yes/No question; true for Yes.
    virtual bool askYesNo(const QString& title, const QString& text) = 0;
    // A stop box: the user can only acknowledge it.
    virtual void stop(const QString& title, const QString& text) = 0;
};

inline const QString OnlyOneNodeOfTypeText =
    QStringLiteral("Sorry, only 1 Node of this type is allowed. You are already using this Node type.");
inline const QString SpeedTestMinimumText =
    QStringLiteral("The minimum data retrieval time for this graph is determined by the \"Speed Test\" Node settings");

// Switches tmrData off for a structural edit and back to what it was after.
// There is one thread: a tick cannot be running unless the edit was called
// from inside one, so there is nothing to wait for.
class PauseTicks {
public:
    explicit PauseTicks(Monitor& m) : m_(m), was_(m.tmrDataEnabled) { m_.tmrDataEnabled = false; }
    ~PauseTicks() { m_.tmrDataEnabled = was_; }
    PauseTicks(const PauseTicks&) = delete;
    PauseTicks& operator=(const PauseTicks&) = delete;

private:
    Monitor& m_;
    bool was_;
};

enum class EditResult {
    Done,          // the model changed and was saved
    Refused,       // a stop box or message said no; nothing changed
    Declined,      // the user answered No; nothing changed
    GraphDeleted,  // delete Node removed the whole Graph (its last Node)
    Invalid,       // bad Graph or Node index; nothing changed
};

// AddNode: a new Node at the end of the Graph, saved. Its index, or -1 for a
// bad Graph index. The caller then calls SetUpNodes (and InitDraw for a Bar Graph).
int AddNode(Monitor& m, int graph);

// Delete Node with its three cases: the last Node of the only Graph is refused,
// the last Node of a Graph among others deletes the Graph after one question,
// otherwise one question and the Node goes. The Graph's store key is deleted
// and written anew. `rebind` as for DeleteGraph.
EditResult DeleteNode(Monitor& m, KeyValueStore& store, EditPrompts& prompts, int graph, int node,
                      const std::function<void(GraphView&, int)>& rebind = {});

// Delete Graph: the last Graph is refused. Later Graphs move down one place
// with their views, so each window keeps its curves; `rebind` is called for
// each moved view with its new index. Their store keys are deleted first since
// the save writes them anew under the new numbers.
EditResult DeleteGraph(Monitor& m, KeyValueStore& store, EditPrompts& prompts, int graph,
                       const std::function<void(GraphView&, int)>& rebind = {});

struct TypeChange {
    EditResult result = EditResult::Invalid;
    bool graphTypeChanged = false;  // a display tile: the caller runs UnMakeClear and ChangeGraphType
    QString message;                // for ShowMessage, when refused
    QString warning;                // the data type warning, empty when the Nodes agree
};

// A type tile with code c (display codes 1, 2, 3, 28, 29 change the Graph,
// the others the Node). Saved unless refused.
TypeChange ChangeType(Monitor& m, int graph, int node, int code);

// The seconds the interval box's text gives: int(text), below 1 is 1.
int sampleSecondsOf(const QString& text);

// The fewest seconds the Speed Test's download option allows between tests
// (the option list's item data), or 0 when the list has no such option.
using SpeedTestMinimum = std::function<int(qint32 option)>;

struct IntervalChange {
    int seconds = 1;             // what the box shows now
    QString sensorError;         // for lblSensorError when the minimum rule raised it
};

// txtSampleSeconds: sets SampleEverySeconds and restarts the count-down, then
// applies the Speed Test's minimum rule when the Graph has a Speed Test Node.
// Saved.
IntervalChange setSampleSeconds(Monitor& m, int graph, const QString& text,
                                const SpeedTestMinimum& minimum = {});

}  // namespace orm
