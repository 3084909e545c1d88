// The columns and values of one line of the daily log, built from what the
// tick read. Pure: no files, no clock.
#pragma once

#include <QString>
#include <QtGlobal>
#include <string>
#include <string_view>
#include <vector>

#include "model/model.h"

namespace orm {

// The Log flag set of a tick; it also tells LogData which groups to write.
struct LogFlags {
    bool logAdapters = false, logMemory = false, logCPU = false;
    std::vector<bool> logDrives;  // indexed as the drive table
    bool logProcesses = false, logProcess = false, logBattery = false, logPing = false,
         logWebsite = false, logTestDownload = false, logWifi = false;

    // Every flag off, with one drive flag per row; the drive list keeps its room.
    void reset(size_t driveRows)
    {
        std::vector<bool> drives = std::move(logDrives);
        *this = LogFlags{};
        logDrives = std::move(drives);
        logDrives.assign(driveRows, false);
    }
};

struct AdapterLogRow {
    double DownDelta = 0, UpDelta = 0, InErrors = 0, OutErrors = 0;
};
struct DriveLogRow {
    QString Name;
    double FreeBytes = 0, ReadDelta = 0, WriteDelta = 0;
};
struct WifiLogRow {
    QString SSID;
    double Signal = 0;
};
struct MemoryLogFigures {
    double TotalPhys = 0, TotalVirtual = 0, TotalPageFile = 0,
           AvailPhys = 0, AvailVirtual = 0, AvailPageFile = 0;
};

// What the tick read; the tick fills only the groups whose flags are set.
struct LogInputs {
    double SampleLength = 1000;  // SAMPLE_LENGTH_MILLI_S
    qint32 SysTmr = 0;           // SYS_TMR
    std::vector<AdapterLogRow> adapters;
    MemoryLogFigures memory;
    qint16 battery = 0;
    std::vector<qint32> cpu;  // one per processor
    std::vector<WifiLogRow> wifi;
    std::vector<DriveLogRow> drives;  // indexed as the drive table, same size as logDrives
    int processUpperBound = -1;       // PROCS
    std::vector<double> processMemory;  // the process memory table, by process row
    const std::vector<Graph>* sensors = nullptr;  // for the Node columns
};

struct LogLine {
    QString fields;  // "#Fields: DATE" and the other names, each behind a separator
    QString values;  // the values in the same order, the first without a separator
};

// The same line as the bytes that go into the file.
struct LogLineText {
    std::string fields;
    std::string values;
};

// "," for LogType 0, one blank for anything else.
QChar logSeparator(qint32 logType);

// Builds the column string and the value string of one line. `date` and `time`
// are the texts of the DATE and TIME columns, read by the caller.
LogLine buildLogLine(const LogFlags& flags, const LogInputs& in, const QString& date,
                     const QString& time, QChar separator);
// The same into `line`, whose strings keep their room from one tick to the next.
void writeLogLine(const LogFlags& flags, const LogInputs& in, std::string_view date, std::string_view time,
                  char separator, LogLineText& line);

}  // namespace orm
