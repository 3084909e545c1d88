// Starting with the desktop session: an XDG autostart entry
// ($XDG_CONFIG_HOME/autostart/ormivane.desktop).
#pragma once

#include <QString>

namespace orm {

class AutoStartEntry {
public:
    explicit AutoStartEntry(QString desktopFile);

    const QString& fileName() const { return file_; }
    // The entry exists with a non-empty Exec= line and is not switched off
    // (Hidden=true, X-GNOME-Autostart-enabled=false).
    bool enabled() const;
    // Writes the entry atomically, starting `execPath`.
    bool write(const QString& execPath);
    // True when no entry is left.
    bool remove();
    QString lastError() const { return error_; }

private:
    QString file_;
    QString error_;
};

// The text of the entry that starts `execPath`.
QString autoStartDesktopText(const QString& execPath);

}  // namespace orm
