// GetAvg: the one conversion of a stored sample into the value on screen, by
// the Node's averaging mode and the Graph's unit.
#pragma once

#include "model/model.h"
#include "display/node_history.h"

namespace orm {

// What a Graph's unit does to a raw sample: divide by `mag`, then multiply by
// `mult`; "seconds" samples are milliseconds first. A DataType without a unit
// leaves `mag` at 0, and any division by it gives 0.
struct UnitFactors {
    double mag = 0;
    double mult = 1;
    bool seconds = false;
};
UnitFactors unitFactors(const Graph& graph);

// The averaging modes as `Averaging` holds them.
enum AveragingMode : int { PeakCapture = 0, Average = 1, LullCapture = 2, RealTime = 3 };

// Rounded to one decimal, halves to even.
double roundTenth(double value);

// useThisIndex > 0: that list position; 0: the newest; -1: one past the end,
// whose sample is useThisValue. Returns 0 for a Node outside the Graph and
// where the arithmetic would divide by zero.
double GetAvg(const Graph& graph, const NodeHistory& history, int nodeFrom1, int useThisIndex,
              double useThisValue, bool onlyCurrent, bool round, bool pingTranslation);

// The same on one Node's list with the unit worked out beforehand, for scans.
double GetAvg(const UnitFactors& unit, const Node& node, const SampleList& list, int useThisIndex,
              double useThisValue, bool onlyCurrent, bool round, bool pingTranslation);

}  // namespace orm
