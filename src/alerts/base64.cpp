#include "alerts/base64.h"

namespace orm {

QString Base64Encode(const QByteArray& bytes, int lineLength)
{
    QString out = QString::fromLatin1(bytes.toBase64());
    if (lineLength >= 1) {
        // Positions count from 1: a line end goes before the character at p,
        // then p moves past it and the next line.
        for (qsizetype p = lineLength + 1; p < out.size(); p += lineLength + 2)
            out.insert(p - 1, QStringLiteral("\r\n"));
    }
    return out;
}

QString Base64Encode(const QString& text, int lineLength)
{
    return Base64Encode(text.toUtf8(), lineLength);
}

}  // namespace orm
