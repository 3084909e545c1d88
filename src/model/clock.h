// The one clock of the program: every reading of time goes through it, so that
// tests can set the hour and move time without sleeping.
#pragma once

#include <QDateTime>
#include <QtGlobal>

namespace orm {

// The local wall-clock time in the fields that the log and the graphs write.
struct LocalTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    QDate date() const { return QDate(year, month, day); }
    static LocalTime of(const QDateTime& t);
};

// "yyyy-MM-dd", "HH:mm:ss", "yyyyMMdd" into `out`, which holds at least 11
// characters; the length written, without a NUL.
int dateText(const LocalTime& t, char* out);
int timeText(const LocalTime& t, char* out);
int compactDateText(const LocalTime& t, char* out);

class Clock {
public:
    virtual ~Clock() = default;
    // Monotonic milliseconds cut to 32 bits and read as signed: differences stay
    // right across the wrap.
    virtual qint32 tickCount() const = 0;
    // Milliseconds since boot, including suspend, cut the same way (up-time).
    virtual qint32 uptimeTickCount() const = 0;
    // The local wall-clock time.
    virtual QDateTime now() const = 0;
    // The same, broken into its fields; what each tick reads.
    virtual LocalTime localTime() const { return LocalTime::of(now()); }
    // Monotonic nanoseconds, for spans shorter than a millisecond (a tick's own
    // length). Clocks without a finer reading give tickCount() in nanoseconds.
    virtual qint64 monotonicNanoseconds() const { return qint64(tickCount()) * 1000000; }
};

// The local time comes from the C library's own conversion. The zone file is
// looked at again only when the minute changes, so that a change of zone is
// seen within a minute and a tick reads no file for it.
class SystemClock final : public Clock {
public:
    qint32 tickCount() const override;
    qint32 uptimeTickCount() const override;
    QDateTime now() const override;
    LocalTime localTime() const override;
    qint64 monotonicNanoseconds() const override;

private:
    mutable qint64 zoneMinute_ = -1;
};

// A clock that stands still until told to move.
class ManualClock final : public Clock {
public:
    explicit ManualClock(QDateTime start = QDateTime(QDate(2026, 3, 5), QTime(9, 7, 41)), qint32 tick = 48215203)
        : wall_(start), tick_(tick), uptime_(tick) {}
    qint32 tickCount() const override { return tick_; }
    qint32 uptimeTickCount() const override { return uptime_; }
    QDateTime now() const override { return wall_; }
    qint64 monotonicNanoseconds() const override { return nanoseconds_; }
    void advance(qint32 ms)
    {
        tick_ = qint32(quint32(tick_) + quint32(ms));
        uptime_ = qint32(quint32(uptime_) + quint32(ms));
        wall_ = wall_.addMSecs(ms);
        nanoseconds_ += qint64(ms) * 1000000;
    }
    void setNow(const QDateTime& t) { wall_ = t; }
    void setTick(qint32 t) { tick_ = t; uptime_ = t; }

private:
    QDateTime wall_;
    qint32 tick_;
    qint32 uptime_;
    qint64 nanoseconds_ = 0;
};

// Elapsed milliseconds between two tick counts, right across the 32-bit wrap.
inline qint32 tickDiff(qint32 later, qint32 earlier)
{
    return qint32(quint32(later) - quint32(earlier));
}

}  // namespace orm
