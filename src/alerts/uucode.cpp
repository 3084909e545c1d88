#include "alerts/uucode.h"

#include <QFile>

namespace orm {

namespace {

char uuChar(int value)
{
    const int c = value + 32;
    return c == 32 ? char(96) : char(c);
}

QString headerName(const QString& path)
{
    if (path.size() < 2)
        return QString();
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'), path.size() - 2);
    return slash < 0 ? QString() : path.mid(slash + 1);
}

}  // namespace

QByteArray UUEncode(QByteArray& text)
{
    while (text.size() % 3 != 0)
        text.append('\0');
    QByteArray out;
    out.reserve(text.size() / 3 * 4);
    for (qsizetype i = 0; i < text.size(); i += 3) {
        const int a = quint8(text[i]), b = quint8(text[i + 1]), c = quint8(text[i + 2]);
        out.append(uuChar(a / 4));
        out.append(uuChar((a & 3) * 16 + b / 16));
        out.append(uuChar((b & 15) * 4 + c / 64));
        out.append(uuChar(c & 63));
    }
    return out;
}

qint16 UUEncodeFile(const QString& sourcePath, const QString& targetPath, bool append)
{
    QFile source(sourcePath);
    if (!source.open(QIODevice::ReadOnly))
        return UUFileNotFound;
    QFile target(targetPath);
    if (!target.open(append ? QIODevice::Append : (QIODevice::WriteOnly | QIODevice::Truncate)))
        return UUFileAccessError;

    static const QByteArray lineEnd("\r\n");
    QByteArray block;
    bool written = true;
    auto put = [&](const QByteArray& line, bool last) {
        block += line + lineEnd;
        if (last || block.size() >= 65536) {
            written = written && target.write(block) == block.size();
            block.clear();
        }
    };
    if (append)
        put(QByteArray(), false);
    put("begin 600 " + headerName(sourcePath).toUtf8(), false);

    const qint64 length = source.size();
    for (qint64 whole = length / 45; whole > 0; --whole) {
        QByteArray group = source.read(45);
        if (group.size() != 45)
            return UUFileAccessError;
        put('M' + UUEncode(group), false);
    }
    // The rest, however short; a length that is a multiple of 45 still writes
    // a line, holding a single blank.
    const int rest = int(length % 45);
    QByteArray tail = source.read(rest);
    if (tail.size() != rest)
        return UUFileAccessError;
    put(char(rest + 32) + UUEncode(tail), false);
    put(QByteArray(1, char(96)), false);
    put("end", true);
    return written && target.flush() ? 0 : UUFileAccessError;
}

}  // namespace orm
