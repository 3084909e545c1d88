#include "key_value_store.h"

namespace orm {

namespace {

// "Settings//Sensor1/" and "Settings/Sensor1" name one key.
QString cleanPath(const QString& path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts).join(QLatin1Char('/'));
}

bool isBelow(const QString& key, const QString& path)
{
    return key.size() > path.size() && key.startsWith(path) && key[path.size()] == QLatin1Char('/');
}

}  // namespace

QString MemoryStore::readValue(const QString& path, const QString& name, const QString& def) const
{
    const auto key = keys_.constFind(cleanPath(path));
    if (key == keys_.cend())
        return def;
    const QString n = storedValueName(name);
    for (const auto& v : *key)
        if (v.first == n)
            return v.second;
    return def;
}

bool MemoryStore::writeValue(const QString& path, const QString& name, const QString& text)
{
    const QString p = cleanPath(path);
    if (p.isEmpty())
        return false;
    const QString n = storedValueName(name);
    writes << p + QLatin1Char('/') + n + QLatin1Char('=') + text;
    // Make the keys above it, as creating a registry key does.
    const QStringList parts = p.split(QLatin1Char('/'));
    for (int i = 1; i < parts.size(); ++i) {
        const QString above = parts.mid(0, i).join(QLatin1Char('/'));
        if (!keys_.contains(above))
            keys_.insert(above, {});
    }
    auto& vals = keys_[p];
    for (auto& v : vals) {
        if (v.first == n) {
            v.second = text;
            return true;
        }
    }
    vals.append({n, text});
    return true;
}

bool MemoryStore::deleteValue(const QString& path, const QString& name)
{
    const QString p = cleanPath(path);
    if (name.isEmpty()) {
        if (!p.contains(QLatin1Char('/'))) {
            error_ = RefusedDeleteText;
            return false;
        }
        deletes << p + QLatin1Char('/');
        bool found = false;
        for (auto it = keys_.begin(); it != keys_.end();) {
            if (it.key() == p || isBelow(it.key(), p)) {
                it = keys_.erase(it);
                found = true;
            } else {
                ++it;
            }
        }
        return found;
    }
    const QString n = storedValueName(name);
    deletes << p + QLatin1Char('/') + n;
    const auto key = keys_.find(p);
    if (key == keys_.end())
        return false;
    for (int i = 0; i < key->size(); ++i) {
        if (key->at(i).first == n) {
            key->removeAt(i);
            return true;
        }
    }
    return false;
}

QStringList MemoryStore::subKeys(const QString& path) const
{
    const QString p = cleanPath(path);
    QStringList out;
    for (auto it = keys_.cbegin(); it != keys_.cend(); ++it) {
        if (!p.isEmpty() && !isBelow(it.key(), p))
            continue;
        const QString rest = p.isEmpty() ? it.key() : it.key().mid(p.size() + 1);
        if (!rest.contains(QLatin1Char('/')))
            out << rest;
    }
    return out;  // QMap keeps them sorted
}

QList<QPair<QString, QString>> MemoryStore::values(const QString& path) const
{
    return keys_.value(cleanPath(path));
}

bool MemoryStore::sync()
{
    ++syncCount;
    if (failSync) {
        error_ = QStringLiteral("The store could not be written.");
        return false;
    }
    error_.clear();
    return true;
}

}  // namespace orm
