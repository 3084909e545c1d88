#include "logging/log_scan.h"

#include <QStringList>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <unistd.h>

namespace orm {

double logValue(std::string_view text)
{
    const char* p = text.data();
    const char* end = p + text.size();
    while (p < end && *p == ' ')
        ++p;
    if (p < end && *p == '+')
        ++p;
    // Most values are whole numbers: those of up to 15 digits are read directly.
    if (end - p <= 15 && p < end) {
        const bool negative = *p == '-';
        const char* q = p + (negative ? 1 : 0);
        qint64 whole = 0;
        const char* digits = q;
        while (q < end && unsigned(static_cast<unsigned char>(*q)) - unsigned('0') <= 9)
            whole = whole * 10 + (*q++ - '0');
        if (q == end && q != digits)
            return negative ? -double(whole) : double(whole);
    }
    double value = 0;
    const auto [stop, error] = std::from_chars(p, end, value, std::chars_format::general);
    if (error != std::errc() || stop == p || !std::isfinite(value))
        return 0;
    return value;
}

QString LogSkips::describe() const
{
    QStringList parts;
    const auto add = [&parts](qint64 n, const char* what) {
        if (n > 0)
            parts << QString::number(n) + QLatin1Char(' ') + QLatin1String(what);
    };
    add(notDated, "records without a date");
    add(tooFewFields, "records short of a column");
    add(beforeFields, "records before any #Fields: line");
    add(hugeLines, "lines too long to read");
    add(unreadable, "files that could not be read");
    add(otherFiles, "files that are no daily log");
    return parts.join(QStringLiteral(", "));
}

LogPacer::LogPacer(std::function<void()> pump, std::function<bool()> stop, int intervalMs)
    : pump_(std::move(pump)), stop_(std::move(stop)), interval_(std::chrono::milliseconds(intervalMs)),
      last_(std::chrono::steady_clock::now())
{
}

bool LogPacer::keepGoing()
{
    if (stopped_)
        return false;
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ >= interval_) {
        if (pump_)
            pump_();
        last_ = std::chrono::steady_clock::now();
    }
    if (stop_ && stop_())
        stopped_ = true;
    return !stopped_;
}

void LogPacer::pump()
{
    if (pump_)
        pump_();
    last_ = std::chrono::steady_clock::now();
}

LogScanner::LogScanner(LogPacer& pacer, LogSkips& skips)
    : pacer_(pacer), skips_(skips), buffer_(new char[BlockSize + Slack]())
{
}

LogScanner::~LogScanner() = default;

void LogScanner::fieldsLine(const char* s, size_t n)
{
    block_.separator = std::memchr(s, ',', n) ? ',' : ' ';
    block_.names.clear();
    if (n > 9) {
        const char* p = s + 9;
        const char* end = s + n;
        for (;;) {
            const char* stop = static_cast<const char*>(std::memchr(p, block_.separator, size_t(end - p)));
            block_.names.emplace_back(p, stop ? stop : end);
            if (!stop)
                break;
            p = stop + 1;
        }
    }
    haveFields_ = true;
    sink_->fieldsChanged(block_);
}

inline void LogScanner::line(const char* s, size_t n)
{
    if (n > 0 && s[n - 1] == '\r')
        --n;
    if (n == 0)
        return;
    if (s[0] == '#') {
        if (n >= 8 && std::memcmp(s, "#Fields:", 8) == 0)
            fieldsLine(s, n);
        return;
    }
    if (!haveFields_) {
        ++skips_.beforeFields;
        return;
    }
    Moment m = -1;
    if (n >= 19 && (s[10] == ',' || s[10] == ' ')) {
        if (lastDateValue_ < 0 || std::memcmp(s, lastDate_, sizeof lastDate_) != 0) {
            lastDateValue_ = detail::recordDate(s);
            std::memcpy(lastDate_, s, sizeof lastDate_);
        }
        const qint64 time = lastDateValue_ < 0 ? -1 : detail::recordTime(s + 11);
        m = time < 0 ? -1 : lastDateValue_ * 1000000 + time;
    }
    if (m < 0) {
        ++skips_.notDated;
        return;
    }
    const double moment = double(m);
    if (moment > start_ && moment < end_)
        sink_->record(s, n, m);
}

bool LogScanner::scan(int fd, double start, double end, LogRecordSink& sink, bool completeLinesOnly)
{
    start_ = start;
    end_ = end;
    sink_ = &sink;
    haveFields_ = false;
    block_ = FieldsBlock{};
    lastDateValue_ = -1;

    char* const buf = buffer_.get();
    size_t have = 0;          // bytes of an unfinished line at the start of the buffer
    bool skipping = false;    // inside a line too long for the buffer
    for (;;) {
        const ssize_t got = ::read(fd, buf + have, BlockSize - have);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            ++skips_.unreadable;
            return false;
        }
        if (got == 0) {
            if (have > 0 && !skipping && !completeLinesOnly)
                line(buf, have);
            return true;
        }
        const char* p = buf;
        const char* const stop = buf + have + size_t(got);
        if (skipping) {
            const char* nl = static_cast<const char*>(std::memchr(buf + have, '\n', size_t(got)));
            if (!nl) {
                have = 0;
                if (!pacer_.keepGoing())
                    return false;
                continue;
            }
            skipping = false;
            p = nl + 1;
        }
        for (;;) {
            const char* nl = static_cast<const char*>(std::memchr(p, '\n', size_t(stop - p)));
            if (!nl)
                break;
            line(p, size_t(nl - p));
            p = nl + 1;
        }
        have = size_t(stop - p);
        if (have == BlockSize) {
            // One line fills the whole block: it is dropped up to its end.
            ++skips_.hugeLines;
            skipping = true;
            have = 0;
        } else if (have > 0 && p != buf) {
            std::memmove(buf, p, have);
        }
        if (!pacer_.keepGoing())
            return false;
    }
}

}  // namespace orm
