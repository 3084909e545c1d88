// The metrics feed: each sampled Node's newest value and the monitor's own
// running as Prometheus text (exposition format 0.0.4). It reads only what
// the last tick left in the model and in TickHealth: never a source, and it
// never waits for a tick.
#pragma once

#include "model/model.h"

#include <QByteArray>
#include <QString>

namespace orm {

class Monitor;

// The unit of a Node's raw sample as the feed gives it: a Prometheus base unit
// ("seconds", "bytes", "bytes_per_second") or "percent" or "count", and the
// factor that turns the raw sample into it (milliseconds become seconds).
struct FeedUnit {
    const char* name;
    double scale;
};
FeedUnit feedUnitOf(const Node& node, const Graph& graph);

// A label value as the format writes it between its quotes: UTF-8 with
// backslash, double quote and line feed escaped; NULs are dropped.
void appendLabelValue(QByteArray& out, const QString& value);
// A sample value: the shortest text that reads back as the same double, or
// NaN, +Inf, -Inf.
void appendSampleValue(QByteArray& out, double value);

// Replaces `out` with the whole exposition.
void writeMetrics(const Monitor& monitor, QByteArray& out);

}  // namespace orm
