// What the column list of the log viewer says about each column of the log,
// and how the date and time pickers write a Log Graph's range.
#pragma once

#include <QDate>
#include <QString>
#include <QTime>
#include <functional>

namespace orm {

struct LogColumnContext {
    bool bytesPerSecond = false;  // the Graph's DisplayAsBytesPerSecond: "KBps", else "Kbps"
    // The description of the adapter in this slot of this run's adapter table; empty for none.
    std::function<QString(int slot)> adapterDescription;
    QString speedTestServer;  // the name of the speed test server
};

// The description of a column by the pattern its name matches; anything the
// table does not know is a process's memory.
QString logColumnDescription(const QString& column, const LogColumnContext& context);

// A date picker: the moment's text with its first 8 digits replaced by the date.
double momentWithDate(double moment, const QDate& date);
// A time picker: the first 8 digits of the moment's text and the time as "HhNnSs".
// Both work on the text of the number, so a moment with fewer digits misreads.
double momentWithTime(double moment, const QTime& time);

// What the pickers show for a moment; invalid when its digits are no date or time.
QDate momentDate(double moment);
QTime momentTime(double moment);

}  // namespace orm
