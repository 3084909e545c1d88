// Files for the store tests, read and written behind the stores' backs.
#pragma once

#include "print_qstring.h"

#include <QFile>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orm::test {

inline QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void writeFile(const QString& path, const QByteArray& text)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(text);
}

inline struct stat statOf(const QString& file)
{
    struct stat st {};
    ::stat(QFile::encodeName(file).constData(), &st);
    return st;
}

}  // namespace orm::test
