// The daily logs as the readers find them: the listing of <data>/Logs in date
// order, the range test of a file name, and the working copy through which
// today's file is read while the writer goes on.
#pragma once

#include <QString>
#include <QtGlobal>
#include <functional>
#include <vector>

namespace orm {

// The names of the files matching "*.log" in the folder, sorted with NitroSort.
// A missing folder lists nothing.
std::vector<QString> listLogFiles(const QString& logsFolder, const std::function<void()>& pump = {});

// The day a daily log's name stands for ("ex20260305.log" gives 20260305):
// the name without "ex", ".log1" and ".log". -1 when what is left is not a
// whole number, as for a file that is no daily log.
qint64 logFileDay(const QString& fileName);

// The day part of a moment: the number its first 8 digits make (20260305 for
// 20260305090741). A moment written with fewer digits gives what they make.
qint64 momentDay(double moment);

// Whether the file's day lies between the days of LogStart and LogEnd, both
// ends included.
bool logFileInRange(const QString& fileName, double logStart, double logEnd);

// One log opened for reading. Today's file is copied to the same name with the
// extension ".log1" and read from there; the copy goes when this closes.
class OpenedLog {
public:
    OpenedLog() = default;
    // `workingCopy`: the file is today's and must not be read in place.
    OpenedLog(const QString& path, bool workingCopy);
    ~OpenedLog();
    OpenedLog(const OpenedLog&) = delete;
    OpenedLog& operator=(const OpenedLog&) = delete;

    bool isOpen() const { return fd_ >= 0; }
    int fd() const { return fd_; }
    // Why the file could not be opened (or copied).
    const QString& error() const { return error_; }
    // The path read from: the working copy for today's file.
    const QString& readPath() const { return readPath_; }

private:
    bool copyToWorkingFile(const QString& path);
    void close();

    int fd_ = -1;
    QString error_;
    QString readPath_;
    bool ownsCopy_ = false;
    quint64 copyDevice_ = 0, copyInode_ = 0;
};

}  // namespace orm
