#include "debug_log.h"

#include "clock.h"
#include "version.h"

#include <QFile>

namespace orm {

DebugLog& debugLog()
{
    static DebugLog log;
    return log;
}

void DebugLog::enable(const QString& path, const Clock* clock)
{
    enabled_ = true;
    path_ = path;
    clock_ = clock;
}

void DebugLog::append(const QString& line)
{
    QFile f(path_);
    if (f.open(QIODevice::Append | QIODevice::Text))  // a trace never stops the program
        f.write((line + QLatin1Char('\n')).toLocal8Bit());
}

void DebugLog::log(const QString& tag)
{
    if (!enabled_)
        return;
    if (tag == QStringLiteral("ClearData")) {
        QFile::remove(path_);
        const QDateTime now = clock_ ? clock_->now() : QDateTime::currentDateTime();
        append(now.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QStringLiteral(" OS=") +
               QString::number(SystemVersionCode) + QStringLiteral("  ") + QStringLiteral(ORMIVANE_VERSION));
        return;
    }
    append(QString(depth_, QLatin1Char(' ')) + QString::number(depth_) + QStringLiteral(" - ") + tag);
}

void DebugLog::enter(const QString& procedure)
{
    if (!enabled_)
        return;
    log(procedure + QStringLiteral(" 1.0"));
    ++depth_;
}

void DebugLog::leave(const QString& procedure)
{
    if (enabled_)  // the tag is made only for the trace: this runs on every tick
        leaveTag(procedure + QStringLiteral(" 2.0"));
}

void DebugLog::leaveTag(const QString& tag)
{
    if (!enabled_)
        return;
    if (depth_ > 0)
        --depth_;
    log(tag);
}

}  // namespace orm
