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

}  // namespace orm
