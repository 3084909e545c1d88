// Alerts and the mail settings in a real settings file: what a load makes of
// missing, odd and stale values, and what a save keeps.
#include "alerts/alert_store.h"
#include "model/autostart.h"
#include "model/ini_store.h"
#include "model/settings_store.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

struct StoreFile {
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("Ormivane.conf"));

    void write(const QByteArray& text)
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    }
    std::vector<Alert> load(MailSettings* mail = nullptr)
    {
        IniStore store(path);
        std::vector<Alert> alerts;
        MailSettings m;
        AlertOptionTable options;
        LoadAlerts(store, alerts, mail ? *mail : m, options);
        return alerts;
    }
};

// Every value away from both sets of defaults, some needing care to come back equal.
Alert fullAlert()
{
    Alert a = newAlert(0);
    a.rEnabled = true;
    a.rName = "Hot, \"very\" hot; = #1";
    a.rAction = SendEmail;
    a.rCondition = InsideRange;
    a.rException = OtherInsideRange;
    a.aEmailAddress = "ops@example.org";
    a.aApplication = "/usr/bin/true";
    a.aMessage = "line one\nline two";
    a.aSound = "/tmp/ding.wav";
    a.aStartLogging = false;
    a.aSensor = 2;
    a.aNode = 3;
    a.cSensor = 0;
    a.cNode = 1;
    a.cLimit = 0.1 + 0.2;  // needs all 17 digits
    a.cRangeStart = 10;
    a.cRangeEnd = 5;
    a.cNumber = 1e-7;
    a.eNumber = 60;
    a.eTimeLengthSeconds = 2.5;
    a.cDateValue = 20260305090741;
    a.cDateType = 4;
    a.cDateExtra = "extra";
    a.eTimeFrameStart = 20260101000000;
    a.eTimeFrameEnd = 20261231235959;
    a.eTimeFrameMode = 1;
    a.eSensor = 1;
    a.eNode = 0;
    a.eLimit = -273.15;
    a.eRangeStart = 1e15;
    a.eRangeEnd = -1e-5;
    return a;
}

// What a save writes, in order: equal lists mean equal Alerts and mail settings.
QStringList saved(const std::vector<Alert>& alerts, const MailSettings& mail)
{
    MemoryStore memory;
    SaveAlerts(memory, alerts, mail);
    return memory.writes;
}

}  // namespace

TEST(AlertStore, EveryValueAndEveryMailSettingComesBackFromTheFile)
{
    StoreFile f;
    MailSettings mail;
    mail.SMTPServer = "127.0.0.1:2525";
    mail.SMTPAuthUser = "user@example.org";
    // Any character but NUL: quotes, backslashes, separators, line ends, blanks at the ends.
    mail.SMTPAuthPass = QStringLiteral("  p\"a\\s;s=w#o,r[d]%\r\n\t\u00e9\u4e2d\U0001F600 ");
    mail.MailSenderName = "Build Box";
    mail.MailSenderEMail = "box@example.org";
    const std::vector<Alert> alerts = {fullAlert(), newAlert(1)};
    {
        IniStore store(f.path);
        ASSERT_TRUE(SaveAlerts(store, alerts, mail));
    }
    MailSettings loadedMail;
    const auto loaded = f.load(&loadedMail);
    EXPECT_EQ(saved(loaded, loadedMail), saved(alerts, mail));
}

TEST(AlertStore, TheCountDecidesWhichKeysLoad)
{
    StoreFile f;
    // Missing count, zero and junk: no Alerts.
    for (const char* count : {"", "Alerts=none\n", "Alerts=-3\n"}) {
        f.write(QByteArray("[Settings]\n") + count + "Alert1\\rName=a\n");
        EXPECT_TRUE(f.load().empty()) << count;
    }
    // Alert3 beyond Alerts=2 is not loaded.
    f.write("[Settings]\nAlerts=2\nAlert1\\rName=a\nAlert2\\rName=b\nAlert3\\rName=c\n");
    EXPECT_EQ(f.load().size(), 2u);
    // A count larger than the keys present loads the missing ones with the load
    // defaults, which are not a new Alert's: armed, codes 0, the rest unset.
    f.write("[Settings]\nAlerts=3\nAlert1\\rName=a\n");
    auto loaded = f.load();
    ASSERT_EQ(loaded.size(), 3u);
    EXPECT_EQ(loaded[0].rName, "a");
    EXPECT_TRUE(loaded[2].rEnabled && loaded[2].aStartLogging && loaded[2].rAction == 0 && loaded[2].rException == 0);
    EXPECT_EQ(loaded[2].cLimit, -1);
    // A count that cannot be true is not followed: the keys present decide.
    f.write("[Settings]\nAlerts=99999999999\nAlert1\\rName=a\nAlert7\\rName=g\n");
    loaded = f.load();
    ASSERT_EQ(loaded.size(), 7u);
    EXPECT_EQ(loaded[6].rName, "g");
}

TEST(AlertStore, TextInNumbersReadsItsLeadingNumberOrTheDefaultAndNulLeavesTheMail)
{
    StoreFile f;
    f.write("[Settings]\nAlerts=1\n"
            "Alert1\\rEnabled=maybe\nAlert1\\rAction=3rd\nAlert1\\rCondition=abc\nAlert1\\rException=99999\n"
            "Alert1\\cSensor=2.9\n"
            "Alert1\\cNumber=.5\nAlert1\\eLimit=1e3\nAlert1\\aStartLogging=FALSE\nAlert1\\eSensor=nan\n");
    const Alert a = f.load().at(0);
    EXPECT_TRUE(a.rEnabled);            // not a boolean: the default
    EXPECT_EQ(a.rAction, 3);            // leading number
    EXPECT_EQ(a.rCondition, 0);         // no number: the default
    EXPECT_EQ(a.rException, 0);         // beyond 16 bits: the default
    EXPECT_EQ(a.cSensor, 2);            // truncated
    EXPECT_EQ(a.cNumber, 0.5);
    EXPECT_EQ(a.eLimit, 1000);
    EXPECT_FALSE(a.aStartLogging);
    EXPECT_EQ(a.eSensor, -1);

    MemoryStore store;
    store.writeValue(SettingsKey, QStringLiteral("SMTPAuthPass"), QStringLiteral("se") + QChar(u'\0') + "cret");
    store.writeValue(SettingsKey, QStringLiteral("Alerts"), QStringLiteral("1"));
    store.writeValue(alertKey(0), QStringLiteral("rName"), QStringLiteral("a") + QChar(u'\0'));
    std::vector<Alert> alerts;
    MailSettings mail;
    AlertOptionTable options;
    LoadAlerts(store, alerts, mail, options);
    EXPECT_EQ(mail.SMTPAuthPass, "secret");
    EXPECT_EQ(alerts.at(0).rName.size(), 2);
}

TEST(AlertStore, SaveKeepsEverythingElseAndStaleKeysAndWritesZeroForNone)
{
    StoreFile f;
    f.write("[Settings]\nSensors=1\nSensor1\\Name=CPU graph\nAlerts=3\nAlert3\\rName=stale\n");
    {
        IniStore store(f.path);
        ASSERT_TRUE(SaveAlerts(store, {}, MailSettings{}));
        EXPECT_EQ(store.readValue(SettingsKey, QStringLiteral("Alerts"), QString()), "0");
        EXPECT_EQ(store.readValue(sensorKey(0), QStringLiteral("Name"), QString()), "CPU graph");
        EXPECT_EQ(store.readValue(alertKey(2), QStringLiteral("rName"), QString()), "stale");
    }
    // Saving the Graphs afterwards leaves the Alerts alone.
    {
        IniStore store(f.path);
        ASSERT_TRUE(SaveAlerts(store, {fullAlert()}, MailSettings{}));
        AutoStartEntry autoStart(f.dir.filePath(QStringLiteral("autostart/ormivane.desktop")));
        ProgramSettings settings;
        std::vector<Graph> sensors{newGraph(0, false, {}, QDateTime::currentDateTime())};
        ASSERT_TRUE(SaveSettings(store, settings, sensors, nullptr, autoStart, QString()));
    }
    EXPECT_EQ(saved(f.load(), MailSettings{}), saved({fullAlert()}, MailSettings{}));
}
