// The three reads of the daily logs over a Log Graph's range: the header pass
// (columns and record count), the graph pass (one point per bucket of records)
// and the export to CSV. Each reads every file once, front to back, and keeps
// no more than one bucket of records.
#pragma once

#include "logging/log_scan.h"

#include <QString>
#include <vector>

namespace orm {

// What a pass reads: the files of <data>/Logs whose day lies in the range, and
// in them the records strictly between the two moments.
struct LogReadRange {
    QString logsFolder;
    QString todayName;  // "ex<yyyymmdd>.log" of today: read through its working copy
    double logStart = 0;
    double logEnd = 0;
};

// Walks the files in range in date order and hands their lines to the sink.
// A file that cannot be opened is skipped. False when the pacer stopped it.
bool readLogs(const LogReadRange& range, LogRecordSink& sink, LogPacer& pacer, LogSkips& skips);

struct LogHeaders {
    double recordCount = 0;        // LogRecordCount
    std::vector<QString> columns;  // every column met but DATE and TIME, once each, in order
};
LogHeaders readLogHeaders(const LogReadRange& range, LogPacer& pacer, LogSkips& skips);

// The label of a point: the moment's date as "m/d/yy", a blank, its time as "h:Nn".
QString logPointLabel(Moment moment);

class LogGraphPoints {
public:
    virtual ~LogGraphPoints() = default;
    // One point: each Node's mean over the bucket, in the order of the Nodes.
    virtual void point(const std::vector<double>& values, Moment moment, const QString& label) = 0;
};

// The graph pass for Nodes showing the columns `itemViews`. A bucket holds
// B + 1 records, B being the whole part of recordCount / pWidth; a record
// short of a Node's column is skipped. The records of a last, unfinished
// bucket make no point. The number of points made.
qint64 readLogGraph(const LogReadRange& range, const std::vector<QString>& itemViews, double recordCount,
                    int pWidth, LogGraphPoints& points, LogPacer& pacer, LogSkips& skips);

struct LogExportResult {
    bool written = false;
    QString error;       // why the file could not be written
    qint64 records = 0;  // record lines written
};

// Writes the CSV of the columns `itemViews` to `csvPath`: "DATE,TIME" and the
// columns, then one line per record, CR LF before each, "," always.
LogExportResult exportLogCsv(const LogReadRange& range, const std::vector<QString>& itemViews,
                             const QString& csvPath, LogPacer& pacer, LogSkips& skips);

}  // namespace orm
