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
    // The same as sync(): writes what is pending and re-reads the file when it
    // changed on disk.
    void reload() override;
    QString lastError() const override { return error_; }
    QString keptAside() const override { return keptAside_; }

    const QString& fileName() const { return file_; }

private:
    bool prepareFile();
    void restrictMode();
    bool checkStatus();

    QString file_;
    std::unique_ptr<QSettings> settings_;
    QString error_;
    QString keptAside_;
};

}  // namespace orm
