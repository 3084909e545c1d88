#include "logging/log_columns.h"

#include "model/number_text.h"

namespace orm {

namespace {

QString after(const QString& column, const char* prefix)
{
    return column.mid(int(qstrlen(prefix)));
}

struct ColumnText {
    const char* column;
    const char* text;
};

// Columns known by their whole name.
constexpr ColumnText WholeNames[] = {
    {"SAMPLE_LENGTH_MILLI_S", "Length of Time Elapsed during this sample in mSeconds"},
    {"SYS_TMR", "System Uptime in mSeconds"},
    {"MEM_TOT", "Total Memory in bytes"},
    {"MEM_V_TOT", "Total Virtual Memory in bytes"},
    {"MEM_P_TOT", "Total Page File size in bytes"},
    {"MEM_AVA", "Total Available Memory in bytes"},
    {"MEM_V_AVA", "Total Available Virtual Memory in bytes"},
    {"MEM_P_AVA", "Total Available Page File size in bytes"},
    {"PROCS", "Total number of Proccesses running"},
};

// Columns known by how they begin; what follows names the thing, in brackets.
constexpr ColumnText Prefixes[] = {
    {"DISK_FREE_", "Disk Free Space in bytes ("},
    {"DISK_R_", "Disk Data Read in bytes ("},
    {"DISK_W_", "Disk Data Written in bytes ("},
    {"PING_SIZE_", "Size of the Ping Packet in bytes ("},
    {"PING_RTT_", "Ping Round-Trip Time in mSeconds ("},
};

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

    for (const ColumnText& c : WholeNames)
        if (column == QLatin1String(c.column))
            return QLatin1String(c.text);
    for (const ColumnText& c : Prefixes)
        if (starts(c.column))
            return QLatin1String(c.text) + after(column, c.column) + QLatin1Char(')');
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
    if (starts("CPU"))
        return QStringLiteral("Total CPU usage percentage");
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
