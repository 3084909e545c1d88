// A line of text for the person at the terminal, flushed at once so that it
// shows in order beside the other stream.
#pragma once

#include <QString>
#include <cstdio>

namespace orm {

inline void printLine(FILE* to, const QString& text)
{
    std::fputs(text.toLocal8Bit().constData(), to);
    std::fputc('\n', to);
    std::fflush(to);
}

// A complaint of the program on standard error, after its name.
inline void errorLine(const QString& text)
{
    printLine(stderr, QStringLiteral("ormivane: ") + text);
}

// A command line that cannot run: said on standard error, and 2 to end with.
inline int usageError(const QString& text)
{
    errorLine(text);
    return 2;
}

}  // namespace orm
