// Reading a kernel text file (/proc, /sys) once: opened, read whole and closed;
// nothing when the file cannot be read. What a tick reads again and again is
// a KernelFile, kept between ticks.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace orm {

std::optional<QByteArray> readPlatformFile(const QString& path);

}  // namespace orm
