#include "ini_store.h"

#include "model/ini_file_care.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace orm {

namespace {

QString cleanPath(const QString& path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts).join(QLatin1Char('/'));
}

QString fullKey(const QString& path, const QString& name)
{
    return cleanPath(path) + QLatin1Char('/') + storedValueName(name);
}

// Keeps a group open for the length of a scope.
class GroupScope {
public:
    GroupScope(QSettings& s, const QString& group) : s_(s) { s_.beginGroup(group); }
    ~GroupScope() { s_.endGroup(); }
    GroupScope(const GroupScope&) = delete;
    GroupScope& operator=(const GroupScope&) = delete;

private:
    QSettings& s_;
};

QString valueText(const QVariant& v)
{
    // A hand-written line "a,b" reads as a list.
    if (v.typeId() == QMetaType::QStringList)
        return v.toStringList().join(QLatin1Char(','));
    return v.toString();
}

constexpr QFileDevice::Permissions OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions OthersBits = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                                                QFileDevice::ExeGroup | QFileDevice::ReadOther |
                                                QFileDevice::WriteOther | QFileDevice::ExeOther;

}  // namespace

IniStore::IniStore(const QString& file)
    : file_(QFileInfo(file).absoluteFilePath()), nativeFile_(QFile::encodeName(file_))
{
    removeLeftovers(file_);
    settings_ = std::make_unique<QSettings>(file_, QSettings::IniFormat);
    if (settings_->status() == QSettings::FormatError)
        error_ = QStringLiteral("Some lines of the settings file %1 could not be read.").arg(file_);
    // Every save writes the file anew from what was read: what was not read
    // whole is kept as it stands first.
    if (!readsWhole(file_, int(settings_->allKeys().size()))) {
        keptAside_ = keepAside(file_, QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss")));
        if (keptAside_.isEmpty())
            error_ = QStringLiteral("The settings file %1 could not be read whole, and no copy of it could be made.")
                         .arg(file_);
    }
    seen_ = stampNow();
}

QString IniStore::readValue(const QString& path, const QString& name, const QString& def) const
{
    const QVariant v = settings_->value(fullKey(path, name));
    return v.isValid() ? valueText(v) : def;
}

bool IniStore::writeValue(const QString& path, const QString& name, const QString& text)
{
    if (cleanPath(path).isEmpty())
        return false;
    settings_->setValue(fullKey(path, name), text);
    return true;
}

bool IniStore::deleteValue(const QString& path, const QString& name)
{
    const QString p = cleanPath(path);
    if (name.isEmpty()) {
        if (!p.contains(QLatin1Char('/'))) {
            error_ = RefusedDeleteText;
            return false;
        }
        // QSettings takes a value of the same name as the key along with it: keep it.
        const QVariant beside = settings_->value(p);
        bool found = false;
        {
            GroupScope group(*settings_, p);
            found = !settings_->allKeys().isEmpty();
            settings_->remove(QString());
        }
        if (beside.isValid())
            settings_->setValue(p, beside);
        return found;
    }
    const QString key = fullKey(p, name);
    if (!settings_->contains(key))
        return false;
    // QSettings would take a sub-key of the same name with the value: keep it.
    QList<QPair<QString, QVariant>> below;
    {
        GroupScope group(*settings_, key);
        for (const QString& k : settings_->allKeys())
            below.append({key + QLatin1Char('/') + k, settings_->value(k)});
    }
    settings_->remove(key);
    for (const auto& kv : below)
        settings_->setValue(kv.first, kv.second);
    return true;
}

QStringList IniStore::subKeys(const QString& path) const
{
    GroupScope group(*settings_, cleanPath(path));
    QStringList out = settings_->childGroups();
    out.sort();
    return out;
}

QList<QPair<QString, QString>> IniStore::values(const QString& path) const
{
    GroupScope group(*settings_, cleanPath(path));
    QList<QPair<QString, QString>> out;
    for (const QString& k : settings_->childKeys())
        out.append({k, valueText(settings_->value(k))});
    return out;
}

bool IniStore::prepareFile()
{
    if (!QFileInfo::exists(file_)) {
        if (!QDir().mkpath(QFileInfo(file_).absolutePath())) {
            error_ = QStringLiteral("The folder of the settings file %1 could not be made.").arg(file_);
            return false;
        }
        // Made owner-only before anything is in it; the atomic rewrite keeps the mode.
        QFile f(file_);
        if (!f.open(QIODevice::WriteOnly | QIODevice::NewOnly, OwnerOnly) && !QFileInfo::exists(file_)) {
            error_ = QStringLiteral("The settings file %1 could not be made: %2").arg(file_, f.errorString());
            return false;
        }
    }
    restrictMode();
    return true;
}

void IniStore::restrictMode()
{
    if (QFileInfo(file_).isFile() && QFile::permissions(file_) & OthersBits)
        QFile::setPermissions(file_, OwnerOnly);
}

// QSettings keeps the first error it meets for the life of the object, so a
// failed save would be reported for ever. A second object on the same file
// shares the pending data and repeats the write on construction; its status
// tells how the file stands now.
bool IniStore::checkStatus()
{
    QSettings::Status status = QSettings(file_, QSettings::IniFormat).status();
    QString note;
    if (status == QSettings::FormatError) {
        // Unreadable lines were dropped; a failed write would hide behind that error.
        note = QStringLiteral("Some lines of the settings file %1 could not be read and were dropped.").arg(file_);
        status = QSettings(file_, QSettings::IniFormat).status();
    }
    if (status == QSettings::AccessError) {
        error_ = QStringLiteral("The settings file %1 could not be written.").arg(file_);
        return false;
    }
    if (status == QSettings::FormatError) {
        error_ = QStringLiteral("The settings file %1 could not be read.").arg(file_);
        return false;
    }
    error_ = note;
    return true;
}

bool IniStore::sync()
{
    const bool prepared = prepareFile();
    const QString prepareError = error_;
    settings_->sync();
    const bool ok = checkStatus();
    restrictMode();
    if (!ok && !prepared)
        error_ = prepareError;  // the cause, not its consequence
    seen_ = stampNow();
    return ok;
}

IniStore::Stamp IniStore::stampNow() const
{
    struct stat st {};
    if (::stat(nativeFile_.constData(), &st) != 0)
        return {};
    return {qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec, qint64(st.st_size), quint64(st.st_ino)};
}

void IniStore::reload()
{
    const Stamp now = stampNow();
    if (now == seen_)
        return;
    settings_->sync();
    checkStatus();
    seen_ = stampNow();
}

}  // namespace orm
