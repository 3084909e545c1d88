#include "logging/log_writer.h"

#include "model/clock.h"
#include "model/debug_log.h"
#include "model/version.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace orm {

namespace {

const QString Crlf = QStringLiteral("\r\n");

QString headerBlock(const QDateTime& now, const QString& fields)
{
    return QStringLiteral("#Software: ") + QLatin1String(CompanyName) + QStringLiteral(" - ") +
           QLatin1String(ProductName) + Crlf + QStringLiteral("#Version: ") +
           QStringLiteral(ORMIVANE_VERSION) + Crlf + QStringLiteral("#Date: ") +
           now.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + Crlf + fields + Crlf;
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
    return logFolder() + QStringLiteral("/ex") + day.toString(QStringLiteral("yyyyMMdd")) +
           QStringLiteral(".log");
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

// Opens, writes the text in one call, closes: nothing stays open between ticks,
// so that a reader may copy the file at any moment.
bool LogWriter::writeText(const QString& path, const QString& text, bool overwrite)
{
    QFile f(path);
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Unbuffered |
                                     (overwrite ? QIODevice::Truncate : QIODevice::Append);
    if (!f.open(mode)) {
        error_ = QStringLiteral("Cannot open the log file %1: %2").arg(path, f.errorString());
        return false;
    }
    const QByteArray bytes = text.toLocal8Bit();
    if (f.write(bytes) != bytes.size() || !f.flush()) {
        error_ = QStringLiteral("Cannot write the log file %1: %2").arg(path, f.errorString());
        return false;
    }
    f.close();
    if (f.error() != QFileDevice::NoError) {
        error_ = QStringLiteral("Cannot write the log file %1: %2").arg(path, f.errorString());
        return false;
    }
    return true;
}

bool LogWriter::LogData(const LogFlags& flags, const LogInputs& in)
{
    debugLog().enter(QStringLiteral("LogData"));
    error_.clear();
    // On a failure the trace ends at "LogData 1.0": the program stops there.
    if (!ensureFolder())
        return false;

    // Date, time and file name are three readings of the clock, so a line
    // written at the stroke of midnight may carry a date other than its file's.
    const QString date = clock_.now().toString(QStringLiteral("yyyy-MM-dd"));
    const QString time = clock_.now().toString(QStringLiteral("HH:mm:ss"));
    const LogLine line = buildLogLine(flags, in, date, time, logSeparator(logType_));

    const QString path = fileName(clock_.now().date());
    if (!QFileInfo::exists(path)) {
        if (!writeText(path, headerBlock(clock_.now(), line.fields), true))
            return false;
    } else if (line.fields != LastLogFields) {
        // Also on the first call of a run, so a restart shows in the file.
        if (!writeText(path, headerBlock(clock_.now(), line.fields), false))
            return false;
    }
    LastLogFields = line.fields;

    if (!writeText(path, line.values + Crlf, false))
        return false;
    debugLog().leave(QStringLiteral("LogData"));
    return true;
}

void LogWriter::removeWorkingCopies(const QString& dataDir)
{
    QDir logs(QDir(dataDir).filePath(QStringLiteral("Logs")));
    const QStringList copies =
        logs.entryList({QStringLiteral("ex*.log1")}, QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : copies)
        QFile::remove(logs.filePath(name));
}

}  // namespace orm
