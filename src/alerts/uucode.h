// uuencoding of mail attachments.
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace orm {

// Four characters for each three bytes; `text` is first padded with NUL bytes
// to a multiple of three. A value of 0 is written as "`", not as a blank.
QByteArray UUEncode(QByteArray& text);

// Error numbers of UUEncodeFile.
inline constexpr qint16 UUFileNotFound = 53;
inline constexpr qint16 UUFileAccessError = 75;

// Writes the whole source file as one block, "begin 600 <name>" to "end",
// every line ending in CR LF, appending (after one empty line) when `append`.
// The name is what follows the last "/" of the path (a trailing "/" does not
// count); a path without one gives an empty name. 0, or an error number.
qint16 UUEncodeFile(const QString& sourcePath, const QString& targetPath, bool append);

}  // namespace orm
