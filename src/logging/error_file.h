// The error file beside each day's log (Logs/ex<yyyymmdd>.err): one line for
// each transfer that failed. Nothing in the program reads it back.
#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

namespace orm {

struct TransferErrorEntry {
    int graph = 0;
    int node = 0;
    QString url;
    qint16 number = 0;  // the error number of the event
    int status = 0;     // what the failure mapping kept: 0, 404, 500 or 503
    QString description;
};

// "mm-dd-yyyy Hh:Nn:Ss Graph<i> Node<j> URL=<url> Error - <number>(<status>) - <description>"
QString errorFileLine(const QDateTime& now, const TransferErrorEntry& e);

// <dataDir>/Logs/ex<yyyymmdd>.err
QString errorFileName(const QString& dataDir, const QDate& day);

// Appends the entry's line (CR LF) to the day's error file, making the Logs
// folder when it is missing; the file is opened and closed for the one line.
// False, with `error` saying why, when it cannot be written.
bool appendErrorFileLine(const QString& dataDir, const QDateTime& now, const TransferErrorEntry& e,
                         QString* error = nullptr);

}  // namespace orm
