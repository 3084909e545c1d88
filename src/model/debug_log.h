// The debug trace: one line per tag, the file opened and closed for each line so
// that the last line shows where a failure happened.
#pragma once

#include <QString>

namespace orm {

class Clock;

class DebugLog {
public:
    // Turns the trace on, writing to `path` (the product name with ".txt").
    void enable(const QString& path, const Clock* clock);
    bool enabled() const { return enabled_; }

    // Writes the tag as it stands. "ClearData" starts a new file.
    void log(const QString& tag);
    // The procedure's name with " 1.0", then one level deeper.
    void enter(const QString& procedure);
    // One level up, then the procedure's name with " 2.0".
    void leave(const QString& procedure);
    // One level up, then a closing tag of the caller's own wording.
    void leaveTag(const QString& tag);

    int depth() const { return depth_; }

private:
    void append(const QString& line);
    bool enabled_ = false;
    int depth_ = 0;
    QString path_;
    const Clock* clock_ = nullptr;
};

// The program's one debug trace.
DebugLog& debugLog();

// Logs only when the trace is on; cheap when it is off.
inline void trace(const QString& tag)
{
    if (debugLog().enabled())
        debugLog().log(tag);
}

}  // namespace orm
