#include "number_text.h"

#include <QLocale>

#include <charconv>
#include <cmath>
#include <limits>

namespace orm {

int numberTextTo(double value, char* out)
{
    if (std::isnan(value) || std::isinf(value) || value == 0) {
        out[0] = '0';  // also folds -0
        return 1;
    }
    // Whole numbers below 1E+15, which are most of what is logged, are every
    // digit and no point.
    if (std::fabs(value) < 1e15 && value == std::trunc(value))
        return int(std::to_chars(out, out + NumberTextSize, qint64(value)).ptr - out);
    // The general form switches to the exponent exactly where the runtime's
    // shortest form does: below 1E-04 and from 1E+15 on. to_chars, unlike
    // printf, never takes the decimal separator from the C locale.
    char* end = std::to_chars(out, out + NumberTextSize, value, std::chars_format::general, 15).ptr;
    for (char* c = out; c < end; ++c)
        if (*c == 'e')
            *c = 'E';
    return int(end - out);
}

QString numberText(double value)
{
    char buf[NumberTextSize];
    return QString::fromLatin1(buf, numberTextTo(value, buf));
}

QString screenNumberText(double value)
{
    QString text = numberText(value);
    const QString point = QLocale().decimalPoint();
    if (point != QLatin1String("."))
        text.replace(QLatin1Char('.'), point);
    return text;
}

double typedNumber(const QString& text)
{
    const QString point = QLocale().decimalPoint();
    if (point == QLatin1String("."))
        return leadingNumber(text);
    return leadingNumber(QString(text).replace(point, QStringLiteral(".")));
}

double leadingNumber(const QString& text)
{
    QString digits;
    int i = 0;
    const int n = int(text.size());
    auto skipBlanks = [&] {
        while (i < n && (text[i] == u' ' || text[i] == u'\t'))
            ++i;
    };
    skipBlanks();
    if (i < n && (text[i] == u'-' || text[i] == u'+'))
        digits += text[i++];
    bool seenDigit = false, seenPoint = false;
    for (; i < n; ++i) {
        const QChar c = text[i];
        if (c.isDigit() && c.unicode() < 128) {
            digits += c;
            seenDigit = true;
        } else if (c == u'.' && !seenPoint) {
            digits += c;
            seenPoint = true;
        } else {
            break;
        }
    }
    if (!seenDigit)
        return 0;
    // An exponent counts only when digits follow it.
    if (i < n && (text[i] == u'e' || text[i] == u'E')) {
        int k = i + 1;
        QString exp = QStringLiteral("e");
        if (k < n && (text[k] == u'-' || text[k] == u'+'))
            exp += text[k++];
        int start = k;
        while (k < n && text[k].isDigit() && text[k].unicode() < 128)
            exp += text[k++];
        if (k > start)
            digits += exp;
    }
    bool ok = false;
    const double v = digits.toDouble(&ok);
    return ok && std::isfinite(v) ? v : 0;
}

QString boolText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

std::optional<bool> parseBool(const QString& text)
{
    const QString t = text.trimmed();
    if (t.compare(QStringLiteral("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QStringLiteral("False"), Qt::CaseInsensitive) == 0)
        return false;
    return std::nullopt;
}

int countAtLeastOne(const QString& text)
{
    const double v = std::floor(leadingNumber(text));
    if (!(v >= 1))  // also NaN
        return 1;
    if (v > double(std::numeric_limits<qint32>::max()))
        return std::numeric_limits<qint32>::max();
    return int(v);
}

}  // namespace orm
