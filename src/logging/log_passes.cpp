#include "logging/log_passes.h"

#include "logging/log_files.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <unordered_set>
#include <unistd.h>

namespace orm {

namespace {

std::vector<std::string> byteNames(const std::vector<QString>& itemViews)
{
    std::vector<std::string> out;
    out.reserve(itemViews.size());
    for (const QString& v : itemViews)
        out.push_back(v.toLocal8Bit().toStdString());
    return out;
}

// Where a block's records hold what the Nodes show: for each Node in order,
// each column whose name is the Node's, in the order of the columns. Matched
// once per "#Fields:" line, not once per record.
struct NodeCells {
    struct Cell {
        int node;
        size_t column;
    };
    std::vector<Cell> cells;
    std::vector<size_t> wanted;  // the columns read, ascending
    size_t wantedBeforeValues = 0;  // how many of them are DATE and TIME (columns 0 and 1)
    char separator = ',';
    std::vector<std::string_view> fields;  // by column; only the wanted ones are set

    // `always`: columns read whatever the Nodes show (DATE and TIME for the export).
    void match(const FieldsBlock& block, const std::vector<std::string>& views, size_t always)
    {
        cells.clear();
        wanted.clear();
        separator = block.separator;
        for (size_t column = 0; column < always; ++column)
            wanted.push_back(column);
        for (size_t node = 0; node < views.size(); ++node)
            for (size_t column = 0; column < block.names.size(); ++column)
                if (block.names[column] == views[node]) {
                    cells.push_back({int(node), column});
                    wanted.push_back(column);
                }
        std::sort(wanted.begin(), wanted.end());
        wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
        wantedBeforeValues = size_t(std::count_if(wanted.begin(), wanted.end(), [](size_t c) { return c < 2; }));
        fields.assign(std::max<size_t>(wanted.empty() ? 0 : wanted.back() + 1, 2), std::string_view());
    }
    // True when the record has every wanted field.
    bool split(const char* s, size_t n)
    {
        // The date and the time stand where the record's moment was read: when
        // the separator follows each, the walk starts behind them.
        if (n > 19 && s[10] == separator && s[19] == separator) {
            fields[0] = std::string_view(s, 10);
            fields[1] = std::string_view(s + 11, 8);
            return pickFields(s, n, separator, wanted, fields.data(), wantedBeforeValues, 2, 20);
        }
        return pickFields(s, n, separator, wanted, fields.data());
    }
};

class HeaderSink final : public LogRecordSink {
public:
    void fieldsChanged(const FieldsBlock& block) override
    {
        for (const std::string& name : block.names)
            if (name != "DATE" && name != "TIME" && seen_.insert(name).second)
                headers.columns.push_back(QString::fromLocal8Bit(name.data(), qsizetype(name.size())));
    }
    void record(const char*, size_t, Moment) override { headers.recordCount += 1; }

    LogHeaders headers;

private:
    std::unordered_set<std::string> seen_;
};

// The bucket: B + 1 rows of one cell per Node, filled from row B down to row
// 0; then each Node's cells are added up from row 0 and divided by B + 1.
class GraphSink final : public LogRecordSink {
public:
    GraphSink(const std::vector<QString>& itemViews, qint64 b, LogGraphPoints& points, LogSkips& skips)
        : views_(byteNames(itemViews)), nodes_(views_.size()), b_(b), counter_(b), points_(points), skips_(skips),
          last_(nodes_, 0.0), values_(nodes_, 0.0)
    {
        // A table too big to keep (a very narrow window over years of logs) is
        // added up as it fills instead; the means may then differ in the last digit.
        summing_ = double(b_ + 1) * double(nodes_) > double(MaxCells);
        table_.assign(summing_ ? nodes_ : size_t(b_ + 1) * nodes_, 0.0);
        if (summing_)
            row_.assign(nodes_, 0.0);
    }
    void fieldsChanged(const FieldsBlock& block) override { cells_.match(block, views_, 0); }
    void record(const char* s, size_t n, Moment moment) override
    {
        if (!cells_.split(s, n)) {
            ++skips_.tooFewFields;
            return;
        }
        double* row = summing_ ? row_.data() : table_.data() + size_t(counter_) * nodes_;
        for (const NodeCells::Cell& c : cells_.cells) {
            const std::string_view text = cells_.fields[c.column];
            if (text.size() == 1 && text[0] == '-') {
                row[c.node] = last_[size_t(c.node)];
            } else {
                row[c.node] = recordValue(text);
                last_[size_t(c.node)] = row[c.node];
            }
        }
        if (summing_) {
            for (size_t node = 0; node < nodes_; ++node)
                table_[node] += row_[node];
            std::fill(row_.begin(), row_.end(), 0.0);
        }
        if (counter_ == 0) {
            flush(moment);
            counter_ = b_;
        } else {
            --counter_;
        }
    }
    qint64 made = 0;

private:
    static constexpr qint64 MaxCells = qint64(1) << 22;

    void flush(Moment moment)
    {
        const double rows = double(b_ + 1);
        for (size_t node = 0; node < nodes_; ++node) {
            double sum = summing_ ? table_[node] : 0.0;
            if (!summing_)
                for (qint64 r = 0; r <= b_; ++r)
                    sum += table_[size_t(r) * nodes_ + node];
            values_[node] = sum / rows;
        }
        std::fill(table_.begin(), table_.end(), 0.0);
        points_.point(values_, moment, logPointLabel(moment));
        ++made;
    }

    std::vector<std::string> views_;
    size_t nodes_;
    qint64 b_;
    qint64 counter_;
    LogGraphPoints& points_;
    LogSkips& skips_;
    NodeCells cells_;
    bool summing_ = false;
    std::vector<double> table_;
    std::vector<double> row_;
    std::vector<double> last_;
    std::vector<double> values_;
};

// The output of the export, gathered in a block and written a block at a time.
class CsvOut {
public:
    explicit CsvOut(int fd) : fd_(fd), buffer_(new char[Size + 64]), at_(buffer_.get()) {}
    // Short texts go sixteen bytes at a time: the source is a line of a read
    // block with slack behind it, and the block here has slack too.
    void put(std::string_view text)
    {
        if (text.size() <= 16)
            std::memcpy(at_, text.data(), 16);
        else
            std::memcpy(at_, text.data(), text.size());
        at_ += text.size();
    }
    void put(char c) { *at_++ = c; }
    void putDateTime(const char* s)
    {
        std::memcpy(at_, s, 32);
        at_[10] = ',';
        at_ += 19;
    }
    void putWhole(std::string_view text)  // a text with no slack behind it
    {
        while (!text.empty()) {
            const size_t n = std::min(text.size(), size_t(Size) - used());
            std::memcpy(at_, text.data(), n);
            at_ += n;
            text.remove_prefix(n);
            if (used() >= Size)
                flush();
        }
    }
    // Room for a line of `length` bytes, put piece by piece; false for a
    // line longer than the block, which goes by putWhole.
    bool reserve(size_t length)
    {
        if (length + 64 > Size)
            return false;
        if (used() + length + 64 > Size)
            flush();
        return true;
    }
    bool flush()
    {
        const char* p = buffer_.get();
        while (error == 0 && p < at_) {
            const ssize_t n = ::write(fd_, p, size_t(at_ - p));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                error = n < 0 ? errno : ENOSPC;
            else
                p += n;
        }
        at_ = buffer_.get();
        return error == 0;
    }
    int error = 0;

private:
    static constexpr size_t Size = size_t(1) << 20;
    size_t used() const { return size_t(at_ - buffer_.get()); }
    int fd_;
    std::unique_ptr<char[]> buffer_;
    char* at_;
};

class CsvSink final : public LogRecordSink {
public:
    CsvSink(const std::vector<QString>& itemViews, int fd, LogSkips& skips)
        : out(fd), views_(byteNames(itemViews)), skips_(skips)
    {
        out.putWhole("DATE,TIME");
        for (const std::string& v : views_) {
            out.putWhole(",");
            out.putWhole(v);
        }
    }
    void fieldsChanged(const FieldsBlock& block) override { cells_.match(block, views_, 2); }
    void record(const char* s, size_t n, Moment) override
    {
        if (!cells_.split(s, n)) {
            ++skips_.tooFewFields;
            return;
        }
        size_t length = 3 + cells_.fields[0].size() + cells_.fields[1].size();
        for (const NodeCells::Cell& c : cells_.cells)
            length += 1 + cells_.fields[c.column].size();
        // The line end goes before each record, so the file's last line has none.
        if (out.reserve(length)) {
            out.put('\r');
            out.put('\n');
            if (cells_.fields[0].size() == 10 && cells_.fields[1].data() == s + 11 && cells_.fields[1].size() == 8) {
                out.putDateTime(s);  // the record's own first 19 characters, a comma between
            } else {
                out.put(cells_.fields[0]);
                out.put(',');
                out.put(cells_.fields[1]);
            }
            for (const NodeCells::Cell& c : cells_.cells) {
                const std::string_view text = cells_.fields[c.column];
                out.put(',');
                if (!(text.size() == 1 && text[0] == '-'))
                    out.put(text);
            }
        } else {  // a line longer than the block: piece by piece
            out.putWhole("\r\n");
            out.putWhole(cells_.fields[0]);
            out.putWhole(",");
            out.putWhole(cells_.fields[1]);
            for (const NodeCells::Cell& c : cells_.cells) {
                const std::string_view text = cells_.fields[c.column];
                out.putWhole(",");
                if (!(text.size() == 1 && text[0] == '-'))
                    out.putWhole(text);
            }
        }
        ++records;
    }
    qint64 records = 0;
    CsvOut out;

private:
    std::vector<std::string> views_;
    LogSkips& skips_;
    NodeCells cells_;
};

}  // namespace

bool readLogs(const LogReadRange& range, LogRecordSink& sink, LogPacer& pacer, LogSkips& skips)
{
    const std::vector<QString> files = listLogFiles(range.logsFolder, [&pacer] { pacer.pump(); });
    LogScanner scanner(pacer, skips);
    for (const QString& name : files) {
        if (logFileDay(name) < 0) {
            ++skips.otherFiles;
            continue;
        }
        if (!logFileInRange(name, range.logStart, range.logEnd))
            continue;
        const bool today = name == range.todayName;
        const OpenedLog log(range.logsFolder + QLatin1Char('/') + name, today);
        if (!log.isOpen()) {
            ++skips.unreadable;  // gone since the listing, or no file to read
            continue;
        }
        scanner.scan(log.fd(), range.logStart, range.logEnd, sink, today);
        if (pacer.stopped())
            return false;
    }
    return true;
}

LogHeaders readLogHeaders(const LogReadRange& range, LogPacer& pacer, LogSkips& skips)
{
    HeaderSink sink;
    readLogs(range, sink, pacer, skips);
    return std::move(sink.headers);
}

QString logPointLabel(Moment moment)
{
    const qint64 second = moment % 100, minute = moment / 100 % 100, hour = moment / 10000 % 100;
    const qint64 day = moment / 1000000 % 100, month = moment / 100000000 % 100, year = moment / 10000000000;
    Q_UNUSED(second);
    return QStringLiteral("%1/%2/%3 %4:%5")
        .arg(month)
        .arg(day)
        .arg(year % 100, 2, 10, QLatin1Char('0'))
        .arg(hour)
        .arg(minute, 2, 10, QLatin1Char('0'));
}

qint64 readLogGraph(const LogReadRange& range, const std::vector<QString>& itemViews, double recordCount,
                    int pWidth, LogGraphPoints& points, LogPacer& pacer, LogSkips& skips)
{
    // With no width to divide by, every record is a point of its own.
    const double b = pWidth > 0 ? std::floor(recordCount / double(pWidth)) : 0.0;
    GraphSink sink(itemViews, b > 0 ? qint64(b) : 0, points, skips);
    readLogs(range, sink, pacer, skips);
    return sink.made;
}

LogExportResult exportLogCsv(const LogReadRange& range, const std::vector<QString>& itemViews,
                             const QString& csvPath, LogPacer& pacer, LogSkips& skips)
{
    LogExportResult result;
    int fd = -1;
    do
        fd = ::open(QFile::encodeName(csvPath).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        result.error = QString::fromLocal8Bit(std::strerror(errno));
        return result;
    }
    CsvSink sink(itemViews, fd, skips);
    readLogs(range, sink, pacer, skips);
    sink.out.flush();
    int error = sink.out.error;
    if (::close(fd) != 0 && error == 0)
        error = errno;
    result.records = sink.records;
    result.written = error == 0;
    if (error != 0)
        result.error = QString::fromLocal8Bit(std::strerror(error));
    return result;
}

}  // namespace orm
