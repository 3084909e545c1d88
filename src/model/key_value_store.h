// The hierarchical key and value store that holds the configuration: keys are
// paths like "Settings/Sensor1/Node1", every value is a string.
#pragma once

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

namespace orm {

// The text that refuses the deletion of a top-level key.
inline const QString RefusedDeleteText = QStringLiteral("Carefull You don't want to delete that!");

class KeyValueStore {
public:
    virtual ~KeyValueStore() = default;
    // The value, or `def` when the key or the value is missing. An empty stored
    // value comes back empty. The name "*" (or "") is the key's default value.
    virtual QString readValue(const QString& path, const QString& name, const QString& def) const = 0;
    // Writing a value makes its key and the keys above it.
    virtual bool writeValue(const QString& path, const QString& name, const QString& text) = 0;
    // With a name: that value only, true when it was there. With an empty name:
    // the key with all its sub-keys; a path with no '/' is refused (lastError()
    // is then RefusedDeleteText).
    virtual bool deleteValue(const QString& path, const QString& name) = 0;
    // Names of the keys just below `path`, sorted.
    virtual QStringList subKeys(const QString& path) const = 0;
    // Name and text of each value of the key itself.
    virtual QList<QPair<QString, QString>> values(const QString& path) const = 0;
    // On disk when it returns; false with a reason in lastError().
    virtual bool sync() = 0;
    // Takes in what another process wrote.
    virtual void reload() = 0;
    virtual QString lastError() const = 0;
    // Where the store kept a copy of what it could not read whole when it was
    // opened, before anything could be saved over it; empty when it did not.
    virtual QString keptAside() const { return QString(); }
};

// The value name that stands for a key's default value.
inline QString storedValueName(const QString& name)
{
    return name.isEmpty() ? QStringLiteral("*") : name;
}

// A store in memory. Values keep the order of their first write; `writes`
// records every write as "path/name=text" and `deletes` every deletion as
// "path/name" (a key as "path/"), both in order.
class MemoryStore final : public KeyValueStore {
public:
    QString readValue(const QString& path, const QString& name, const QString& def) const override;
    bool writeValue(const QString& path, const QString& name, const QString& text) override;
    bool deleteValue(const QString& path, const QString& name) override;
    QStringList subKeys(const QString& path) const override;
    QList<QPair<QString, QString>> values(const QString& path) const override;
    bool sync() override;
    void reload() override {}
    QString lastError() const override { return error_; }

    QStringList writes;
    QStringList deletes;
    int syncCount = 0;
    bool failSync = false;  // makes sync() fail, for tests of the callers

private:
    // Every key that exists, with its values in order; a key exists once a
    // value was written in it or below it.
    QMap<QString, QList<QPair<QString, QString>>> keys_;
    QString error_;
};

}  // namespace orm
