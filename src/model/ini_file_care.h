// What the settings file needs around QSettings: a check that the file can be
// read whole, the clearing of what a killed save left behind, and the test of
// a path before it is used as the file.
#pragma once

#include <QString>

namespace orm {

// False when saving what QSettings read from `file` would not give the file
// back: a line that is not a value, a value given twice, or lines swallowed by
// an unclosed quote or joined by a trailing backslash. `keysRead` is the
// number of keys QSettings found in it. A missing file reads whole.
bool readsWhole(const QString& file, int keysRead);

// Copies `file` to "<file>.unreadable-<yyyyMMddHHmmss>" (the time is `stamp`);
// the copy's path, or empty when it could not be made.
QString keepAside(const QString& file, const QString& stamp);

// Removes the lock of a save whose process is gone (an empty lock, or one
// naming a dead process of this host), then, when no save runs, the
// temporaries "<file>.XXXXXX" of saves killed before their rename (six
// letters and digits of at least two kinds, as the save draws them).
void removeLeftovers(const QString& file);

// Empty when `file` can serve as the settings file; otherwise why not: it is
// a folder, or its folder cannot be made.
QString unusableSettingsPath(const QString& file);

}  // namespace orm
