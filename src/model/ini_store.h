// The store as one INI file: "Settings/Sensor1/Node1" and the name "NodeType"
// are the key "Settings/Sensor1/Node1/NodeType" of the file.
#pragma once

#include "model/key_value_store.h"

#include <QSettings>
#include <memory>

namespace orm {

class IniStore final : public KeyValueStore {
public:
    // Clears what a killed save left beside the file, and keeps a copy of a
    // file that would not come back whole from what is read (keptAside()).
    explicit IniStore(const QString& file);

    QString readValue(const QString& path, const QString& name, const QString& def) const override;
    bool writeValue(const QString& path, const QString& name, const QString& text) override;
    bool deleteValue(const QString& path, const QString& name) override;
    QStringList subKeys(const QString& path) const override;
    QList<QPair<QString, QString>> values(const QString& path) const override;
    // Writes the file through a temporary file and a rename, owner-only (it
    // holds the mail password); also takes in what others wrote meanwhile.
    bool sync() override;
    // Re-reads the file, and writes what is pending, when the file's time,
    // size or identity on disk changed since the store last looked; else
    // nothing, not even a read.
    void reload() override;
    QString lastError() const override { return error_; }
    QString keptAside() const override { return keptAside_; }

    const QString& fileName() const { return file_; }

private:
    bool prepareFile();
    void restrictMode();
    bool checkStatus();
    // What the file on disk looks like: modification time in ns, size, inode; zeros when it is missing.
    struct Stamp {
        qint64 modified = 0, size = 0;
        quint64 inode = 0;
        bool operator==(const Stamp&) const = default;
    };
    Stamp stampNow() const;

    QString file_;
    QByteArray nativeFile_;
    Stamp seen_;
    std::unique_ptr<QSettings> settings_;
    QString error_;
    QString keptAside_;
};

}  // namespace orm
