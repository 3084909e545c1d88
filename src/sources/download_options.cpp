#include "sources/download_options.h"

#include "model/number_text.h"

#include <QList>

namespace orm {

namespace {

constexpr qint64 LargestTestFile = 10LL * 1000 * 1000 * 1000;

QList<QByteArray> listLines(const QByteArray& text)
{
    QList<QByteArray> lines = text.split('\n');
    for (QByteArray& l : lines)
        if (l.endsWith('\r'))
            l.chop(1);
    return lines;
}

// A whole decimal number of 0 or more, blanks around it allowed.
std::optional<qint64> wholeNumber(const QByteArray& field)
{
    const QByteArray f = field.trimmed();
    if (f.isEmpty() || f.size() > 18)
        return std::nullopt;
    for (char c : f)
        if (c < '0' || c > '9')
            return std::nullopt;
    return f.toLongLong();
}

}  // namespace

QString downloadSizeLabel(qint64 size)
{
    if (size >= 1000000)
        return numberText(double(size) / 1000000.0) + QLatin1Char('M');
    if (size >= 1000)
        return QString::number(size).remove(QStringLiteral("000")) + QLatin1Char('K');
    return QString();
}

QString downloadPeriodText(qint64 seconds)
{
    if (seconds >= 3600)
        return numberText(double(seconds) / 3600.0) + QStringLiteral(" hours");
    if (seconds >= 60)
        return numberText(double(seconds) / 60.0) + QStringLiteral(" minutes");
    return QString::number(seconds) + QStringLiteral(" seconds");
}

QString downloadOptionText(qint64 size, qint64 seconds)
{
    return downloadSizeLabel(size).leftJustified(6, QLatin1Char(' ')) + QStringLiteral(" every ") +
           downloadPeriodText(seconds);
}

std::optional<std::vector<DownloadOption>> parseDownloadOptions(const QByteArray& text)
{
    QByteArray kept = text.left(DownloadOptionsCap);
    if (text.size() > DownloadOptionsCap) {
        // A line cut by the cap is not an option.
        const qsizetype lastEnd = kept.lastIndexOf('\n');
        kept.truncate(lastEnd < 0 ? 0 : lastEnd + 1);
    }
    if (kept.isEmpty() || !kept.contains('|'))
        return std::nullopt;
    std::vector<DownloadOption> options;
    for (const QByteArray& line : listLines(kept)) {
        if (line.isEmpty())
            continue;
        const qsizetype bar = line.indexOf('|');
        DownloadOption o;
        o.size = wholeNumber(bar < 0 ? line : line.left(bar)).value_or(0);
        o.seconds = bar < 0 ? 0 : wholeNumber(line.mid(bar + 1)).value_or(0);
        o.text = downloadOptionText(o.size, o.seconds);
        options.push_back(std::move(o));
    }
    return options;
}

DownloadOptionsCheck checkDownloadOptions(const QByteArray& text)
{
    DownloadOptionsCheck r;
    if (text.size() > DownloadOptionsCap) {
        r.error = QStringLiteral("the list is larger than %1 bytes").arg(DownloadOptionsCap);
        return r;
    }
    const QList<QByteArray> lines = listLines(text);
    for (qsizetype k = 0; k < lines.size(); ++k) {
        const QByteArray& line = lines[k];
        if (line.isEmpty())
            continue;
        const QList<QByteArray> fields = line.split('|');
        const std::optional<qint64> size = fields.size() == 2 ? wholeNumber(fields[0]) : std::nullopt;
        const std::optional<qint64> seconds = fields.size() == 2 ? wholeNumber(fields[1]) : std::nullopt;
        if (!size || !seconds || *size < 1 || *size > LargestTestFile) {
            r.options.clear();
            r.error = QStringLiteral("line %1 is not SIZE|SECONDS with a size from 1 byte to 10 GB: \"%2\"")
                          .arg(k + 1)
                          .arg(QString::fromUtf8(line.left(80)));
            return r;
        }
        r.options.push_back({*size, *seconds, downloadOptionText(*size, *seconds)});
    }
    if (r.options.empty())
        r.error = QStringLiteral("the list holds no option");
    return r;
}

}  // namespace orm
