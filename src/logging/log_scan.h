// Reading one daily log line by line, fast: large reads, line ends found with
// memchr, the "#Fields:" blocks taken apart once, and each record's moment
// read from its first 19 characters. What a pass does with a record is up to
// its LogRecordSink.
#pragma once

#include <QString>
#include <QtGlobal>
#include <chrono>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orm {

// A moment as the number yyyymmddhhnnss; -1 for none.
using Moment = qint64;

namespace detail {

inline unsigned digit(const char* s, int i)
{
    return unsigned(static_cast<unsigned char>(s[i])) - unsigned('0');
}

// "yyyy-mm-dd" as yyyymmdd; -1 when it is no real date.
inline qint64 recordDate(const char* s)
{
    const unsigned bad = unsigned(digit(s, 0) > 9) | unsigned(digit(s, 1) > 9) | unsigned(digit(s, 2) > 9) |
                         unsigned(digit(s, 3) > 9) | unsigned(digit(s, 5) > 9) | unsigned(digit(s, 6) > 9) |
                         unsigned(digit(s, 8) > 9) | unsigned(digit(s, 9) > 9) | unsigned(s[4] != '-') |
                         unsigned(s[7] != '-');
    if (bad)
        return -1;
    const unsigned year = digit(s, 0) * 1000 + digit(s, 1) * 100 + digit(s, 2) * 10 + digit(s, 3);
    const unsigned month = digit(s, 5) * 10 + digit(s, 6), day = digit(s, 8) * 10 + digit(s, 9);
    static constexpr unsigned char MonthDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year == 0 || month < 1 || month > 12 || day < 1 || day > MonthDays[month - 1])
        return -1;
    if (month == 2 && day == 29 && !(year % 4 == 0 && (year % 100 != 0 || year % 400 == 0)))
        return -1;
    return (qint64(year) * 100 + month) * 100 + day;
}

// "hh:nn:ss" as hhnnss; -1 when it is no real time.
inline qint64 recordTime(const char* s)
{
    const unsigned bad = unsigned(digit(s, 0) > 9) | unsigned(digit(s, 1) > 9) | unsigned(digit(s, 3) > 9) |
                         unsigned(digit(s, 4) > 9) | unsigned(digit(s, 6) > 9) | unsigned(digit(s, 7) > 9) |
                         unsigned(s[2] != ':') | unsigned(s[5] != ':');
    if (bad)
        return -1;
    const unsigned hour = digit(s, 0) * 10 + digit(s, 1), minute = digit(s, 3) * 10 + digit(s, 4);
    const unsigned second = digit(s, 6) * 10 + digit(s, 7);
    if (hour > 23 || minute > 59 || second > 59)
        return -1;
    return (qint64(hour) * 100 + minute) * 100 + second;
}

}  // namespace detail

// The moment of a record: its first 19 characters as "yyyy-mm-dd hh:nn:ss",
// with a blank or a comma between date and time. -1 when they are no real date
// and time.
inline Moment recordMoment(const char* s, size_t n)
{
    if (n < 19 || (s[10] != ' ' && s[10] != ','))
        return -1;
    const qint64 date = detail::recordDate(s);
    const qint64 time = date < 0 ? -1 : detail::recordTime(s + 11);
    return time < 0 ? -1 : date * 1000000 + time;
}

// A value of a record as a number: its leading number, 0 when it has none.
double logValue(std::string_view text);

namespace detail {

#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
inline constexpr quint64 Zeros = 0x3030303030303030ull;

// Eight bytes as loaded from memory: whether all are digits.
inline bool allDigits(quint64 v)
{
    return (v & 0xF0F0F0F0F0F0F0F0ull) == Zeros && ((v + 0x0606060606060606ull) & 0xF0F0F0F0F0F0F0F0ull) == Zeros;
}

// The number of eight digits, the first the most significant.
inline quint64 eightDigits(quint64 v)
{
    v -= Zeros;
    v = (v * 10 + (v >> 8)) & 0x00FF00FF00FF00FFull;
    v = (v * 100 + (v >> 16)) & 0x0000FFFF0000FFFFull;
    return (v * 10000 + (v >> 32)) & 0xFFFFFFFFull;
}

// 1 to 8 digits at p, read as eight with zeros in front. False when one is no digit.
inline bool someDigits(const char* p, size_t n, quint64& value)
{
    quint64 v;
    std::memcpy(&v, p, 8);
    const unsigned shift = unsigned(8 - n) * 8;
    v = (v << shift) | (shift ? Zeros >> (64 - shift) : 0);
    if (!allDigits(v))
        return false;
    value = eightDigits(v);
    return true;
}
#endif

}  // namespace detail

// logValue for a field of a record in a read block, which may be read up to
// eight bytes past its end: whole numbers of up to 16 digits are read eight
// digits at a time, without a branch for each digit.
inline double recordValue(std::string_view text)
{
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    const size_t n = text.size();
    quint64 high = 0, low = 0;
    if (n >= 1 && n <= 8 && detail::someDigits(text.data(), n, low))
        return double(low);
    if (n > 8 && n <= 16 && detail::someDigits(text.data(), n - 8, high) &&
        detail::someDigits(text.data() + n - 8, 8, low))
        return double(high * 100000000ull + low);
#endif
    return logValue(text);
}


// The columns of the lines below one "#Fields:" line.
struct FieldsBlock {
    char separator = ',';            // "," when the line holds a comma, else one blank
    std::vector<std::string> names;  // the text after its first 9 characters, split
};

namespace detail {

// The set bits of a mask, counted without the processor's own count, which
// the baseline instruction set lacks.
inline unsigned bitCount(quint64 mask)
{
    mask = mask - ((mask >> 1) & 0x5555555555555555ull);
    mask = (mask & 0x3333333333333333ull) + ((mask >> 2) & 0x3333333333333333ull);
    return unsigned((((mask + (mask >> 4)) & 0x0F0F0F0F0F0F0F0Full) * 0x0101010101010101ull) >> 56);
}

}  // namespace detail

// Picks the fields with the indexes `wanted` (ascending, no repeats) out of a
// record. False when the record is too short to hold the last of them. The
// separators are found sixty-four bytes at a time as a mask, and a stretch of
// the mask in which no wanted field ends is passed over whole: a record has
// many short fields, and a call of memchr for each would cost more than the read.
// The walk may begin at field `field0`, which starts at `offset`; the wanted
// fields before it are the caller's to fill (they are the first `w0` of `wanted`).
inline bool pickFields(const char* s, size_t n, char separator, const std::vector<size_t>& wanted,
                       std::string_view* fields, size_t w0 = 0, size_t field0 = 0, size_t offset = 0)
{
    if (w0 >= wanted.size())
        return true;
    size_t w = w0;
    size_t field = field0;       // the field being walked: separators met so far
    const char* start = s + offset;  // where it starts
    // The separators at `base` + the mask's bits; true once the last wanted field is taken.
    const auto walk = [&](quint64 mask, const char* base) {
        while (mask != 0) {
            const unsigned count = detail::bitCount(mask);
            if (field + count <= wanted[w]) {  // the wanted field does not end here
                field += count;
                start = base + (63 - __builtin_clzll(mask)) + 1;
                return false;
            }
            for (; field < wanted[w]; ++field, mask &= mask - 1)
                start = base + __builtin_ctzll(mask) + 1;
            const char* end = base + __builtin_ctzll(mask);
            fields[field] = std::string_view(start, size_t(end - start));
            start = end + 1;
            mask &= mask - 1;
            ++field;
            if (++w == wanted.size())
                return true;
        }
        return false;
    };
    size_t i = offset;
#ifdef __SSE2__
    const __m128i wantedByte = _mm_set1_epi8(separator);
    const auto matches = [&](size_t at) {
        return quint64(unsigned(_mm_movemask_epi8(
            _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s + at)), wantedByte))));
    };
    for (; i + 64 <= n; i += 64)
        if (walk(matches(i) | matches(i + 16) << 16 | matches(i + 32) << 32 | matches(i + 48) << 48, s + i))
            return true;
    for (; i + 16 <= n; i += 16)
        if (walk(matches(i), s + i))
            return true;
#endif
    for (; i < n; ++i)
        if (s[i] == separator && walk(1, s + i))
            return true;
    if (field == wanted[w]) {
        fields[field] = std::string_view(start, size_t(s + n - start));
        ++w;
    }
    return w == wanted.size();
}

// What a read skipped, for the debug trace.
struct LogSkips {
    qint64 notDated = 0;        // records whose first 19 characters are no date and time
    qint64 tooFewFields = 0;    // records without a column that was asked for
    qint64 beforeFields = 0;    // records of a file before its first "#Fields:" line
    qint64 hugeLines = 0;       // lines longer than a read block
    qint64 unreadable = 0;      // files that could not be opened or read
    qint64 otherFiles = 0;      // "*.log" files whose names are no daily log's
    qint64 total() const { return notDated + tooFewFields + beforeFields + hugeLines + unreadable + otherFiles; }
    QString describe() const;
};

class LogRecordSink {
public:
    virtual ~LogRecordSink() = default;
    // A "#Fields:" line: the columns of the records below it.
    virtual void fieldsChanged(const FieldsBlock& block) = 0;
    // A record in range, without its line end.
    virtual void record(const char* line, size_t length, Moment moment) = 0;
};

// Lets window events through every few tens of milliseconds of reading, and
// says when the work is to stop.
class LogPacer {
public:
    LogPacer(std::function<void()> pump = {}, std::function<bool()> stop = {}, int intervalMs = 30);
    // After each block read: pumps when the interval has passed. False when the work must stop.
    bool keepGoing();
    // Pumps now (the sort of a long file list).
    void pump();
    bool stopped() const { return stopped_; }

private:
    std::function<void()> pump_;
    std::function<bool()> stop_;
    std::chrono::steady_clock::duration interval_;
    std::chrono::steady_clock::time_point last_;
    bool stopped_ = false;
};

// Reads files one after another; its block of memory is kept between files.
class LogScanner {
public:
    static constexpr size_t BlockSize = size_t(1) << 18;
    // Bytes the block may be read past its end: a field is copied sixteen bytes at a time.
    static constexpr size_t Slack = 64;

    LogScanner(LogPacer& pacer, LogSkips& skips);
    ~LogScanner();

    // Reads the open file `fd` to its end, handing "#Fields:" blocks and the
    // records strictly between `start` and `end` to the sink. A file begins
    // with no columns. `completeLinesOnly` leaves out a last line without its
    // line end (a line still being written). False when the pacer stopped it
    // or the file could not be read to its end.
    bool scan(int fd, double start, double end, LogRecordSink& sink, bool completeLinesOnly);

private:
    void line(const char* s, size_t n);
    void fieldsLine(const char* s, size_t n);

    LogPacer& pacer_;
    LogSkips& skips_;
    std::unique_ptr<char[]> buffer_;
    FieldsBlock block_;
    bool haveFields_ = false;
    double start_ = 0, end_ = 0;
    LogRecordSink* sink_ = nullptr;
    // The date of the record before: the records of a file mostly share it.
    char lastDate_[10] = {};
    qint64 lastDateValue_ = -1;
};

}  // namespace orm
