// The top of a graph's Y axis: the unit ladders, the legend text, the auto
// range maximum and the label texts down the left edge.
#pragma once

#include "model/model.h"
#include "display/node_history.h"

#include <QString>
#include <vector>

namespace orm {

// LegendUnits from DataType and DataMagnitude; a pair the table lacks leaves
// the text as it is.
void DecideLegendUnits(Graph& graph);

// One run of the unit ladder. `raw` and `oldMax` come out in base units (bytes
// per second, bytes, milliseconds), to be converted back through GetAvg with
// `mult` taken out; the caller does that only when the ladder `settled`.
struct LadderResult {
    bool ran = false;      // "bps", "bytes" or "seconds"
    bool settled = false;  // false: ten passes all changed the unit
    int passes = 0;
    double mult = 1;
    double raw = 0;
    double oldMax = 0;
};
LadderResult runUnitLadder(Graph& graph, double realValue, double oldMax);

// The auto range maximum over the whole stored history and this tick's
// incoming values: rounded to one decimal and at least 1. The unrounded
// maximum goes to realValue.
double autoRangeMaximum(const Graph& graph, const NodeHistory& history, const std::vector<double>& values,
                        double& realValue);

// Label i (0 at the base line to 4 at the top) of a scale topping out at maxValue.
QString scaleLabelText(double maxValue, int i);

}  // namespace orm
