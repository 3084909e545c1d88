#include "monitor/tick_health.h"

#include <algorithm>
#include <cmath>

namespace orm {

void TickHealth::tickEnded(qint64 nanoseconds, double tickLength)
{
    // A clock that went back (a test's, or the tick count across its wrap) gives no span.
    const double seconds = nanoseconds > 0 ? double(nanoseconds) / 1e9 : 0.0;
    const auto bucket = std::lower_bound(Bounds.begin(), Bounds.end(), seconds) - Bounds.begin();
    ++buckets_[size_t(bucket)];
    ++observed_;
    durationSum_ += seconds;
    if (tickLength >= 2000)
        lost_ += std::floor(tickLength / 1000) - 1;
}

QString alertMetricName(const std::vector<Alert>& alerts, int index)
{
    if (index < 0 || size_t(index) >= alerts.size())
        return QString();
    const QString& name = alerts[size_t(index)].rName;
    return name.isEmpty() ? QStringLiteral("Alert %1").arg(index + 1) : name;
}

}  // namespace orm
