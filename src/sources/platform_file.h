// Reading the kernel's text files (/proc, /sys): whole, opened and closed at
// once; nothing when the file cannot be read.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <optional>

namespace orm {

inline std::optional<QByteArray> readPlatformFile(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    return f.readAll();  // /proc files claim size 0; readAll reads to the end
}

}  // namespace orm
