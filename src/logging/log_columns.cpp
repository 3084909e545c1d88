#include "logging/log_columns.h"

#include "model/number_text.h"

namespace orm {

namespace {

QString after(const QString& column, const char* prefix)
{
    return column.mid(int(qstrlen(prefix)));
}

}  // namespace

QString logColumnDescription(const QString& column, const LogColumnContext& context)
{
    const QString unit = context.bytesPerSecond ? QStringLiteral("KBps") : QStringLiteral("Kbps");
    // The number behind an adapter column is a slot of this run's adapter table,
    // so a log of another machine names whatever stands there now.
    const auto adapter = [&](const char* prefix) {
        QString rest = after(column, prefix);
        if (rest.startsWith(QLatin1Char('_')))
            rest.remove(0, 1);
        const double slot = leadingNumber(rest);
        return context.adapterDescription && slot >= 0 && slot < 1e9 ? context.adapterDescription(int(slot))
                                                                     : QString();
    };
    const auto starts = [&column](const char* prefix) { return column.startsWith(QLatin1String(prefix)); };

    if (column == QLatin1String("SAMPLE_LENGTH_MILLI_S"))
        return QStringLiteral("Length of Time Elapsed during this sample in mSeconds");
    if (column == QLatin1String("SYS_TMR"))
        return QStringLiteral("System Uptime in mSeconds");
    if (starts("ADPT_DN"))
        return QStringLiteral("Download Data Transfer in ") + unit + QStringLiteral(" (") + adapter("ADPT_DN") +
               QLatin1Char(')');
    if (starts("ADPT_UP"))
        return QStringLiteral("Upload Data Transfer in ") + unit + QStringLiteral(" (") + adapter("ADPT_UP") +
               QLatin1Char(')');
    if (starts("ADPT_ERR_DN"))
        return QStringLiteral("Download Error Packet count (") + adapter("ADPT_ERR_DN") + QLatin1Char(')');
    if (starts("ADPT_ERR_UP"))
        return QStringLiteral("Upload Error Packet count (") + adapter("ADPT_ERR_UP") + QLatin1Char(')');
    if (column == QLatin1String("MEM_TOT"))
        return QStringLiteral("Total Memory in bytes");
    if (column == QLatin1String("MEM_V_TOT"))
        return QStringLiteral("Total Virtual Memory in bytes");
    if (column == QLatin1String("MEM_P_TOT"))
        return QStringLiteral("Total Page File size in bytes");
    if (column == QLatin1String("MEM_AVA"))
        return QStringLiteral("Total Available Memory in bytes");
    if (column == QLatin1String("MEM_V_AVA"))
        return QStringLiteral("Total Available Virtual Memory in bytes");
    if (column == QLatin1String("MEM_P_AVA"))
        return QStringLiteral("Total Available Page File size in bytes");
    if (starts("CPU"))
        return QStringLiteral("Total CPU usage percentage");
    if (starts("DISK_FREE_"))
        return QStringLiteral("Disk Free Space in bytes (") + after(column, "DISK_FREE_") + QLatin1Char(')');
    if (starts("DISK_R_"))
        return QStringLiteral("Disk Data Read in bytes (") + after(column, "DISK_R_") + QLatin1Char(')');
    if (starts("DISK_W_"))
        return QStringLiteral("Disk Data Written in bytes (") + after(column, "DISK_W_") + QLatin1Char(')');
    if (column == QLatin1String("PROCS"))
        return QStringLiteral("Total number of Proccesses running");
    if (starts("PING_SIZE_"))
        return QStringLiteral("Size of the Ping Packet in bytes (") + after(column, "PING_SIZE_") + QLatin1Char(')');
    if (starts("PING_RTT_"))
        return QStringLiteral("Ping Round-Trip Time in mSeconds (") + after(column, "PING_RTT_") + QLatin1Char(')');
    if (starts("RESULT_"))
        return QStringLiteral("Website bandwidth speed in ") + unit + QStringLiteral(" (") + after(column, "RESULT_") +
               QLatin1Char(')');
    if (column == QLatin1String("RESULTSERVER_DOWNLOAD"))
        return QStringLiteral("Your bandwidth speed in ") + unit + QStringLiteral(" (Downloaded from ") +
               context.speedTestServer + QLatin1Char(')');
    return QStringLiteral("Process memory usage in bytes (") + column + QLatin1Char(')');
}

double momentWithDate(double moment, const QDate& date)
{
    const QString text = numberText(moment);
    return leadingNumber(date.toString(QStringLiteral("yyyyMMdd")) + text.right(6));
}

double momentWithTime(double moment, const QTime& time)
{
    const QString text = numberText(moment);
    return leadingNumber(text.left(8) + time.toString(QStringLiteral("HHmmss")));
}

QDate momentDate(double moment)
{
    const QString text = numberText(moment);
    return text.size() == 14 ? QDate::fromString(text.left(8), QStringLiteral("yyyyMMdd")) : QDate();
}

QTime momentTime(double moment)
{
    const QString text = numberText(moment);
    return text.size() == 14 ? QTime::fromString(text.right(6), QStringLiteral("HHmmss")) : QTime();
}

}  // namespace orm
