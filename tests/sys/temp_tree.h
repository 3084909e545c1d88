// Small helpers for tests that point a reader at a folder of their own.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <ostream>

namespace orm::test {

inline QString fixture(const QString& relative) { return QStringLiteral(ORM_FIXTURES "/sys/") + relative; }

inline QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline bool writeFile(const QString& path, const QByteArray& text)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(text) == text.size();
}

}  // namespace orm::test

// Readable QStrings in failure messages.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
