// The daily log: one line of values a tick in <data>/Logs/ex<yyyymmdd>.log, with
// a header block whenever a file starts or its columns change.
#pragma once

#include "logging/log_line.h"

#include <QDate>
#include <QString>
#include <QtGlobal>

namespace orm {

class Clock;

class LogWriter {
public:
    LogWriter(QString dataDir, const Clock& clock, qint32 logType);

    // Writes one line (and a header block when due). False when the folder or
    // file cannot be made or written; error() then says what and where, and the
    // caller ends the program. Nothing is retried or held back.
    bool LogData(const LogFlags& flags, const LogInputs& in);
    QString error() const { return error_; }

    // The "#Fields: " line of the previous call; empty at each start.
    QString LastLogFields;

    QString logFolder() const;                  // <dataDir>/Logs
    QString fileName(const QDate& day) const;   // <dataDir>/Logs/ex<yyyymmdd>.log
    static QString dayFileName(const QDate& day);  // ex<yyyymmdd>.log

    // Deletes the readers' working copies Logs/ex*.log1 (shut-down).
    static void removeWorkingCopies(const QString& dataDir);

private:
    bool ensureFolder();
    // Opens the day's file for appending; a file that is not there yet is
    // made (and `made` set). -1 with error_ set when it can't be.
    int openDayFile(const QString& path, bool& made);

    QString dataDir_;
    const Clock& clock_;
    qint32 logType_;
    QString error_;
    // Kept from one tick to the next: the line's text, the last column set as
    // written, and the day's file name.
    LogLineText line_;
    std::string lastFields_;
    std::string output_;
    QDate pathDay_;
    QString path_;
    QByteArray nativePath_;
};

}  // namespace orm
