// A crafted set of daily logs around the range 2026-03-04 12:00:00 to
// 2026-03-06 12:00:00: a day before it and a day after, the day of each end
// with records on both sides of the bound and one exactly on it, "-" values at
// the start, a value that is no number, a line without a date, a short line, a
// header change midway, a block with the blank separator, a file that is no
// daily log and an error file.
#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

namespace orm::test {

inline constexpr double CorpusStart = 20260304120000.0;
inline constexpr double CorpusEnd = 20260306120000.0;

inline bool writeLog(const QString& path, const QStringList& lines, const char* ending = "\r\n")
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    for (const QString& l : lines)
        f.write(l.toLocal8Bit() + ending);
    return true;
}

inline QStringList logHeader(const char* date, const QString& fields)
{
    return {QStringLiteral("#Software: Vendrake - Ormivane"), QStringLiteral("#Version: 1.0.0"),
            QStringLiteral("#Date: ") + QLatin1String(date), QStringLiteral("#Fields: ") + fields};
}

// The working copies the readers left behind in a Logs folder.
inline QStringList workingCopies(const QString& logsFolder)
{
    return QDir(logsFolder).entryList({QStringLiteral("*.log1")}, QDir::Files);
}

// Writes the corpus into <data>/Logs; false when a file could not be written.
inline bool writeCorpus(const QString& dataDir)
{
    const QString logs = dataDir + QStringLiteral("/Logs/");
    QDir().mkpath(logs);
    const QString ping = QStringLiteral("DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,CPU0,PING_SIZE_10.0.0.1,PING_RTT_10.0.0.1");
    bool ok = writeLog(logs + "ex20260303.log", logHeader("2026-03-03 10:00:00", ping) +
                                                    QStringList{"2026-03-03,10:00:00,1000,1,50,100,1"});
    ok = writeLog(logs + "ex20260304.log",
                  logHeader("2026-03-04 11:59:59", ping) +
                      QStringList{"2026-03-04,11:59:59,1000,100,1,100,5",
                                  "2026-03-04,12:00:00,1000,101,2,100,6",
                                  "2026-03-04,12:00:01,1000,102,3,-,-",
                                  "2026-03-04,12:00:02,1000,103,4,-,-",
                                  "2026-03-04,12:00:03,1000,104,5,100,7",
                                  "",
                                  "2026-03-04,12:00:04,1000,105,6,100,-",
                                  "this line has no date at its start",
                                  "2026-03-04,12:00:05,1000,106,abc,100,9",
                                  "2026-03-04,12:00:06,1000"}) && ok;
    ok = writeLog(logs + "ex20260305.log",
                  logHeader("2026-03-05 00:00:00", ping) +
                      QStringList{"2026-03-05,00:00:00,1000,200,10,100,11", "2026-03-05,00:00:01,1000,201,20,100,12"} +
                      logHeader("2026-03-05 00:00:02", "DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,CPU0,CPU1,MEM_AVA") +
                      QStringList{"2026-03-05,00:00:02,1000,202,30,31,4096", "2026-03-05,00:00:03,1000,203,40,41,4097",
                                  "#Fields: DATE TIME SAMPLE_LENGTH_MILLI_S SYS_TMR CPU0 PING_RTT_10.0.0.1",
                                  "2026-03-05 00:00:04 1000 204 50 13", "2026-03-05 00:00:05 1000 205 60 -"}) && ok;
    ok = writeLog(logs + "ex20260306.log",
                  logHeader("2026-03-06 11:59:59", "DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR,CPU0,PING_RTT_10.0.0.1") +
                      QStringList{"2026-03-06,11:59:59,1000,300,70,14", "2026-03-06,12:00:00,1000,301,80,15"}) && ok;
    ok = writeLog(logs + "ex20260307.log", logHeader("2026-03-07 00:00:00", ping) +
                                                QStringList{"2026-03-07,00:00:00,1000,400,90,100,16"}) && ok;
    ok = writeLog(logs + "notes.log", {"2026-03-05,00:00:00,these are no records"}) && ok;
    ok = writeLog(logs + "ex20260305.err", {"03-05-2026 00:00:00 Graph0 Node0 URL=http://x Error - 1(0) - x"}) && ok;
    return ok;
}

// What the readers make of the corpus.
inline constexpr double CorpusRecords = 13;
inline const QStringList CorpusColumns = {"SAMPLE_LENGTH_MILLI_S", "SYS_TMR", "CPU0", "PING_SIZE_10.0.0.1",
                                          "PING_RTT_10.0.0.1", "CPU1", "MEM_AVA"};
// The export of CPU0 and PING_RTT_10.0.0.1, line by line.
inline const QStringList CorpusCsv = {
    "DATE,TIME,CPU0,PING_RTT_10.0.0.1",
    "2026-03-04,12:00:01,3,", "2026-03-04,12:00:02,4,", "2026-03-04,12:00:03,5,7", "2026-03-04,12:00:04,6,",
    "2026-03-04,12:00:05,abc,9",
    "2026-03-05,00:00:00,10,11", "2026-03-05,00:00:01,20,12", "2026-03-05,00:00:02,30", "2026-03-05,00:00:03,40",
    "2026-03-05,00:00:04,50,13", "2026-03-05,00:00:05,60,",
    "2026-03-06,11:59:59,70,14"};

}  // namespace orm::test
