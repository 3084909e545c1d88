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

namespace orm {

// A moment as the number yyyymmddhhnnss; -1 for none.
using Moment = qint64;

// The moment of a record: its first 19 characters as "yyyy-mm-dd hh:nn:ss",
// with a blank or a comma between date and time. -1 when they are no real date
// and time.
inline Moment recordMoment(const char* s, size_t n)
{
    if (n < 19)
        return -1;
    const auto d = [s](int i) { return unsigned(static_cast<unsigned char>(s[i])) - '0'; };
    for (int i : {0, 1, 2, 3, 5, 6, 8, 9, 11, 12, 14, 15, 17, 18})
        if (d(i) > 9)
            return -1;
    if (s[4] != '-' || s[7] != '-' || (s[10] != ' ' && s[10] != ',') || s[13] != ':' || s[16] != ':')
        return -1;
    const unsigned year = d(0) * 1000 + d(1) * 100 + d(2) * 10 + d(3);
    const unsigned month = d(5) * 10 + d(6), day = d(8) * 10 + d(9);
    const unsigned hour = d(11) * 10 + d(12), minute = d(14) * 10 + d(15), second = d(17) * 10 + d(18);
    static constexpr unsigned char MonthDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year == 0 || month < 1 || month > 12 || day < 1 || day > MonthDays[month - 1] || hour > 23 ||
        minute > 59 || second > 59)
        return -1;
    if (month == 2 && day == 29 && !(year % 4 == 0 && (year % 100 != 0 || year % 400 == 0)))
        return -1;
    return ((((qint64(year) * 100 + month) * 100 + day) * 100 + hour) * 100 + minute) * 100 + second;
}

// A value of a record as a number: its leading number, 0 when it has none.
double logValue(std::string_view text);

// The columns of the lines below one "#Fields:" line.
struct FieldsBlock {
    char separator = ',';            // "," when the line holds a comma, else one blank
    std::vector<std::string> names;  // the text after its first 9 characters, split
};

// Splits a record by the separator into its first `count` fields. False when
// the record has fewer.
inline bool splitRecord(const char* s, size_t n, char separator, size_t count, std::string_view* fields)
{
    const char* p = s;
    const char* end = s + n;
    for (size_t i = 0; i < count; ++i) {
        const char* stop = static_cast<const char*>(std::memchr(p, separator, size_t(end - p)));
        if (!stop) {
            fields[i] = std::string_view(p, size_t(end - p));
            return i + 1 == count;
        }
        fields[i] = std::string_view(p, size_t(stop - p));
        p = stop + 1;
    }
    return true;
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
    static constexpr size_t BlockSize = size_t(1) << 20;

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
};

}  // namespace orm
