#include "clock.h"

#include <ctime>

namespace orm {

static qint32 clockMs(clockid_t id)
{
    timespec ts{};
    clock_gettime(id, &ts);
    const quint64 ms = quint64(ts.tv_sec) * 1000u + quint64(ts.tv_nsec) / 1000000u;
    return qint32(quint32(ms));
}

qint32 SystemClock::tickCount() const { return clockMs(CLOCK_MONOTONIC); }
qint32 SystemClock::uptimeTickCount() const { return clockMs(CLOCK_BOOTTIME); }
QDateTime SystemClock::now() const { return QDateTime::currentDateTime(); }

}  // namespace orm
