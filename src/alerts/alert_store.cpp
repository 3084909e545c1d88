#include "alerts/alert_store.h"

#include "model/number_text.h"
#include "model/settings_store.h"

#include <cmath>
#include <limits>
#include <optional>

namespace orm {

namespace {

// A value holds a number when its text starts with one ("12abc" is 12);
// anything else ("abc", blank) takes the default.
std::optional<double> storedNumber(const QString& text)
{
    const QString t = text.trimmed();
    int i = 0;
    if (i < t.size() && (t[i] == u'-' || t[i] == u'+'))
        ++i;
    if (i < t.size() && t[i] == u'.')
        ++i;
    if (i >= t.size() || !t[i].isDigit() || t[i].unicode() >= 128)
        return std::nullopt;
    return leadingNumber(t);
}

// A code or index: the stored double truncated to 16 bits; out of range is unset.
std::optional<qint16> storedShort(const QString& text)
{
    const auto v = storedNumber(text);
    if (!v)
        return std::nullopt;
    const double t = std::trunc(*v);
    if (t < std::numeric_limits<qint16>::min() || t > std::numeric_limits<qint16>::max())
        return std::nullopt;
    return qint16(t);
}

// Shortest text that reads back as the same double.
QString exactNumberText(double v)
{
    const QString text = numberText(v);
    if (leadingNumber(text) == v)
        return text;
    return QString::number(v, 'g', 17);
}

class AlertReader {
public:
    AlertReader(const KeyValueStore& store, const QString& path) : store_(store), path_(path) {}
    QString text(const char* name, const QString& def = QString()) const
    {
        return store_.readValue(path_, QLatin1String(name), def);
    }
    bool flag(const char* name, bool def) const { return parseBool(text(name)).value_or(def); }
    double number(const char* name, double def) const { return storedNumber(text(name)).value_or(def); }
    qint16 code(const char* name, qint16 def) const { return storedShort(text(name)).value_or(def); }

private:
    const KeyValueStore& store_;
    const QString& path_;
};

class AlertWriter {
public:
    AlertWriter(KeyValueStore& store, const QString& path) : store_(store), path_(path) {}
    void text(const char* name, const QString& value) { store_.writeValue(path_, QLatin1String(name), value); }
    void flag(const char* name, bool value) { text(name, boolText(value)); }
    void number(const char* name, double value) { text(name, exactNumberText(value)); }
    void code(const char* name, qint16 value) { text(name, QString::number(value)); }

private:
    KeyValueStore& store_;
    const QString& path_;
};

Alert loadAlert(const KeyValueStore& store, int index)
{
    const QString path = alertKey(index);
    const AlertReader r(store, path);
    Alert a;
    a.rEnabled = r.flag("rEnabled", true);
    a.rName = r.text("rName");
    a.rAction = r.code("rAction", 0);
    a.rCondition = r.code("rCondition", 0);
    a.rException = r.code("rException", 0);
    a.aEmailAddress = r.text("aEmailAddress");
    a.aSound = r.text("aSound");
    a.aApplication = r.text("aApplication");
    a.aMessage = r.text("aMessage");
    a.aStartLogging = r.flag("aStartLogging", true);
    a.aSensor = r.code("aSensor", -1);
    a.aNode = r.code("aNode", -1);
    a.cSensor = r.code("cSensor", -1);
    a.cNode = r.code("cNode", -1);
    a.cLimit = r.number("cLimit", -1);
    a.cRangeStart = r.number("cRangeStart", -1);
    a.cRangeEnd = r.number("cRangeEnd", -1);
    a.cNumber = r.number("cNumber", -1);
    a.cDateValue = r.number("cDateValue", -1);
    a.cDateType = r.code("cDateType", -1);
    a.cDateExtra = r.text("cDateExtra");
    a.eNumber = r.number("eNumber", -1);
    a.eTimeLengthSeconds = r.number("eTimeLengthSeconds", -1);
    a.eTimeFrameStart = r.number("eTimeFrameStart", -1);
    a.eTimeFrameEnd = r.number("eTimeFrameEnd", -1);
    a.eTimeFrameMode = r.code("eTimeFrameMode", -1);
    a.eSensor = r.code("eSensor", -1);
    a.eNode = r.code("eNode", -1);
    a.eLimit = r.number("eLimit", -1);
    a.eRangeStart = r.number("eRangeStart", -1);
    a.eRangeEnd = r.number("eRangeEnd", -1);
    return a;
}

void saveAlert(KeyValueStore& store, int index, const Alert& a)
{
    const QString path = alertKey(index);
    AlertWriter w(store, path);
    w.flag("rEnabled", a.rEnabled);
    w.text("rName", a.rName);
    w.code("rAction", a.rAction);
    w.code("rCondition", a.rCondition);
    w.code("rException", a.rException);
    w.text("aEmailAddress", a.aEmailAddress);
    w.text("aSound", a.aSound);
    w.text("aApplication", a.aApplication);
    w.text("aMessage", a.aMessage);
    w.flag("aStartLogging", a.aStartLogging);
    w.code("aSensor", a.aSensor);
    w.code("aNode", a.aNode);
    w.code("cSensor", a.cSensor);
    w.code("cNode", a.cNode);
    w.number("cLimit", a.cLimit);
    w.number("cRangeStart", a.cRangeStart);
    w.number("cRangeEnd", a.cRangeEnd);
    w.number("cNumber", a.cNumber);
    w.number("cDateValue", a.cDateValue);
    w.code("cDateType", a.cDateType);
    w.text("cDateExtra", a.cDateExtra);
    w.number("eNumber", a.eNumber);
    w.number("eTimeLengthSeconds", a.eTimeLengthSeconds);
    w.number("eTimeFrameStart", a.eTimeFrameStart);
    w.number("eTimeFrameEnd", a.eTimeFrameEnd);
    w.code("eTimeFrameMode", a.eTimeFrameMode);
    w.code("eSensor", a.eSensor);
    w.code("eNode", a.eNode);
    w.number("eLimit", a.eLimit);
    w.number("eRangeStart", a.eRangeStart);
    w.number("eRangeEnd", a.eRangeEnd);
}

QString withoutNul(QString text)
{
    return text.remove(QChar(u'\0'));
}

}  // namespace

QString alertKey(int alertIndex)
{
    return SettingsKey + QStringLiteral("/Alert") + QString::number(alertIndex + 1);
}

int storedAlertCount(const KeyValueStore& store)
{
    const auto count = storedNumber(store.readValue(SettingsKey, QStringLiteral("Alerts"), QStringLiteral("0")));
    if (!count || !(*count >= 1))
        return 0;
    if (*count <= MaxStoredAlerts)
        return int(*count);
    // Not followed into millions of empty records: the keys present decide.
    return highestNumberedKey(store, SettingsKey, QStringLiteral("Alert"), MaxStoredAlerts);
}

void LoadAlerts(const KeyValueStore& store, std::vector<Alert>& alerts, MailSettings& mail,
                AlertOptionTable& options)
{
    alerts.clear();
    const int count = storedAlertCount(store);
    alerts.reserve(size_t(count));
    for (int i = 0; i < count; ++i)
        alerts.push_back(loadAlert(store, i));

    auto mailValue = [&](const char* name) {
        return withoutNul(store.readValue(SettingsKey, QLatin1String(name), QString()));
    };
    mail.SMTPServer = mailValue("SMTPServer");
    mail.SMTPAuthUser = mailValue("SMTPAuthUser");
    mail.SMTPAuthPass = mailValue("SMTPAuthPass");
    mail.MailSenderName = mailValue("MailSenderName");
    mail.MailSenderEMail = mailValue("MailSenderEMail");

    options = FillAlertOptions();
}

bool SaveAlerts(KeyValueStore& store, const std::vector<Alert>& alerts, const MailSettings& mail)
{
    store.writeValue(SettingsKey, QStringLiteral("Alerts"), QString::number(alerts.size()));
    for (size_t i = 0; i < alerts.size(); ++i)
        saveAlert(store, int(i), alerts[i]);
    store.writeValue(SettingsKey, QStringLiteral("SMTPServer"), mail.SMTPServer);
    store.writeValue(SettingsKey, QStringLiteral("SMTPAuthUser"), mail.SMTPAuthUser);
    store.writeValue(SettingsKey, QStringLiteral("SMTPAuthPass"), mail.SMTPAuthPass);
    store.writeValue(SettingsKey, QStringLiteral("MailSenderName"), mail.MailSenderName);
    store.writeValue(SettingsKey, QStringLiteral("MailSenderEMail"), mail.MailSenderEMail);
    return store.sync();
}

}  // namespace orm
