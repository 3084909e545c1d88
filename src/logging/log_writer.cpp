#include "logging/log_writer.h"

#include "model/clock.h"
#include "model/debug_log.h"
#include "model/version.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace orm {

namespace {

const char Crlf[] = "\r\n";

void appendHeaderBlock(std::string& out, const LocalTime& now, const std::string& fields)
{
    char date[16], time[16];
    const int dateLength = dateText(now, date);
    const int timeLength = timeText(now, time);
    out += "#Software: ";
    out += CompanyName;
    out += " - ";
    out += ProductName;
    out += Crlf;
    out += "#Version: " ORMIVANE_VERSION;
    out += Crlf;
    out += "#Date: ";
    out.append(date, size_t(dateLength));
    out += ' ';
    out.append(time, size_t(timeLength));
    out += Crlf;
    out += fields;
    out += Crlf;
}

QString systemError(int number)
{
    return QString::fromLocal8Bit(std::strerror(number));
}

}  // namespace

LogWriter::LogWriter(QString dataDir, const Clock& clock, qint32 logType)
    : dataDir_(std::move(dataDir)), clock_(clock), logType_(logType)
{
}

QString LogWriter::logFolder() const
{
    return QDir(dataDir_).filePath(QStringLiteral("Logs"));
}

QString LogWriter::fileName(const QDate& day) const
{
    return logFolder() + QLatin1Char('/') + dayFileName(day);
}

QString LogWriter::dayFileName(const QDate& day)
{
    return QStringLiteral("ex") + day.toString(QStringLiteral("yyyyMMdd")) + QStringLiteral(".log");
}

bool LogWriter::ensureFolder()
{
    const QString folder = logFolder();
    if (QFileInfo(folder).isDir())
        return true;
    std::error_code ec;
    const std::filesystem::path native(QFile::encodeName(folder).toStdString());
    std::filesystem::create_directories(native, ec);
    if (!ec && !QFileInfo(folder).isDir())
        ec = std::make_error_code(std::errc::not_a_directory);
    if (ec) {
        error_ = QStringLiteral("Cannot create the log folder %1: %2")
                     .arg(folder, QString::fromLocal8Bit(ec.message()));
        return false;
    }
    return true;
}

int LogWriter::openDayFile(const QString& path, bool& made)
{
    made = false;
    int fd = ::open(nativePath_.constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd >= 0)
        return fd;
    // Not there: the folder may be missing too, on any tick.
    if (!ensureFolder())
        return -1;
    fd = ::open(nativePath_.constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd < 0 && errno == ENOENT) {
        fd = ::open(nativePath_.constData(), O_WRONLY | O_APPEND | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        made = fd >= 0;
    }
    if (fd < 0)
        error_ = QStringLiteral("Cannot open the log file %1: %2").arg(path, systemError(errno));
    return fd;
}

bool LogWriter::LogData(const LogFlags& flags, const LogInputs& in)
{
    debugLog().enter(QStringLiteral("LogData"));
    if (!error_.isEmpty())
        error_.clear();

    // Date, time and file name are three readings of the clock, so a line
    // written at the stroke of midnight may carry a date other than its file's.
    char date[16], time[16];
    const int dateLength = dateText(clock_.localTime(), date);
    const int timeLength = timeText(clock_.localTime(), time);
    writeLogLine(flags, in, std::string_view(date, size_t(dateLength)), std::string_view(time, size_t(timeLength)),
                 char(logSeparator(logType_).toLatin1()), line_);

    const QDate day = clock_.localTime().date();
    if (day != pathDay_) {
        pathDay_ = day;
        path_ = fileName(day);
        nativePath_ = QFile::encodeName(path_);
    }
    // On a failure the trace ends at "LogData 1.0": the program stops there.
    bool made = false;
    const int fd = openDayFile(path_, made);
    if (fd < 0)
        return false;

    // A new file starts with the header block; so does a changed column set,
    // and the first line of a run, so that a restart shows in the file.
    output_.clear();
    if (made || line_.fields != lastFields_) {
        appendHeaderBlock(output_, clock_.localTime(), line_.fields);
        if (line_.fields != lastFields_) {
            lastFields_ = line_.fields;
            LastLogFields = QString::fromStdString(lastFields_);
        }
    }
    output_ += line_.values;
    output_ += Crlf;

    // One write, and the file is closed again: nothing stays open between
    // ticks, so that a reader may copy the file at any moment.
    size_t done = 0;
    while (done < output_.size()) {
        const ssize_t n = ::write(fd, output_.data() + done, output_.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            error_ = QStringLiteral("Cannot write the log file %1: %2").arg(path_, systemError(n < 0 ? errno : ENOSPC));
            ::close(fd);
            return false;
        }
        done += size_t(n);
    }
    if (::close(fd) != 0) {
        error_ = QStringLiteral("Cannot write the log file %1: %2").arg(path_, systemError(errno));
        return false;
    }
    debugLog().leave(QStringLiteral("LogData"));
    return true;
}

void LogWriter::removeWorkingCopies(const QString& dataDir)
{
    // ex*.log1 in any case, matched by hand: a name filter would map and run
    // the regular expression library for this one look at the folder.
    QDir logs(QDir(dataDir).filePath(QStringLiteral("Logs")));
    for (const QString& name : logs.entryList(QDir::Files | QDir::Hidden | QDir::System))
        if (name.startsWith(QLatin1String("ex"), Qt::CaseInsensitive) &&
            name.endsWith(QLatin1String(".log1"), Qt::CaseInsensitive))
            QFile::remove(logs.filePath(name));
}

}  // namespace orm
