// The monitor's own running, as the metrics endpoint reports it: how long the
// ticks take, how many timer firings ran no tick, the log lines written and the
// Alerts that fired. The tick only adds to numbers here; the text is made when
// a scrape asks for it.
#pragma once

#include "alerts/alert.h"

#include <QString>
#include <QtGlobal>
#include <array>
#include <map>
#include <vector>

namespace orm {

class TickHealth {
public:
    // Upper bounds of the tick duration buckets in seconds; one more bucket, +Inf, holds the rest.
    static constexpr std::array<double, 12> Bounds = {0.0005, 0.001, 0.0025, 0.005, 0.01, 0.025,
                                                      0.05,   0.1,   0.25,   0.5,   1,    2.5};
    using Buckets = std::array<quint64, Bounds.size() + 1>;

    // A tick has ended after `nanoseconds`. `tickLength` is the ms from the start
    // of the tick before it: every whole second beyond the first is a firing that
    // ran no tick, because a tick was still busy or the loop was held up.
    void tickEnded(qint64 nanoseconds, double tickLength);
    void logLineWritten() { ++logLines_; }
    void alertFired(const QString& alert) { ++alertsFired_[alert]; }

    // The ticks in each bucket alone, not summed up to it.
    const Buckets& bucketCounts() const { return buckets_; }
    quint64 ticksObserved() const { return observed_; }
    double durationSum() const { return durationSum_; }
    double ticksLost() const { return lost_; }
    double logLines() const { return logLines_; }
    // Firings by Alert name, for every Alert that fired since the start.
    const std::map<QString, double>& alertsFired() const { return alertsFired_; }

private:
    Buckets buckets_{};
    quint64 observed_ = 0;
    double durationSum_ = 0;
    double lost_ = 0;
    double logLines_ = 0;
    std::map<QString, double> alertsFired_;
};

// The name under which an Alert is counted: its rName, or "Alert <n>" (n from
// 1) when it has none.
QString alertMetricName(const std::vector<Alert>& alerts, int index);

}  // namespace orm
