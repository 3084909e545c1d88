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

LocalTime SystemClock::localTime() const
{
    timespec ts{};
    clock_gettime(CLOCK_REALTIME, &ts);
    const qint64 minute = qint64(ts.tv_sec) / 60;
    if (minute != zoneMinute_) {
        tzset();
        zoneMinute_ = minute;
    }
    const time_t seconds = ts.tv_sec;
    tm parts{};
    localtime_r(&seconds, &parts);
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

LocalTime LocalTime::of(const QDateTime& t)
{
    const QDate d = t.date();
    const QTime c = t.time();
    return {d.year(), d.month(), d.day(), c.hour(), c.minute(), c.second()};
}

namespace {

// Two digits, or four for a year; `out` moves on past them.
void digits(char*& out, int value, int width)
{
    for (int i = width - 1; i >= 0; --i) {
        out[i] = char('0' + value % 10);
        value /= 10;
    }
    out += width;
}

// A four-digit year or two digits, then two and two, with `separator`
// between them (none when it is 0).
int threeNumbers(char* out, int first, int firstWidth, int second, int third, char separator)
{
    char* p = out;
    digits(p, first, firstWidth);
    if (separator)
        *p++ = separator;
    digits(p, second, 2);
    if (separator)
        *p++ = separator;
    digits(p, third, 2);
    return int(p - out);
}

}  // namespace

int dateText(const LocalTime& t, char* out)
{
    return threeNumbers(out, t.year, 4, t.month, t.day, '-');
}

int timeText(const LocalTime& t, char* out)
{
    return threeNumbers(out, t.hour, 2, t.minute, t.second, ':');
}

int compactDateText(const LocalTime& t, char* out)
{
    return threeNumbers(out, t.year, 4, t.month, t.day, 0);
}

qint64 SystemClock::monotonicNanoseconds() const
{
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return qint64(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

}  // namespace orm
