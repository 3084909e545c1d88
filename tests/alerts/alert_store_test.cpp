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
    struct Loaded {
        std::vector<Alert> alerts;
        MailSettings mail;
        AlertOptionTable options;
    };
    Loaded load()
    {
        IniStore store(path);
        Loaded l;
        LoadAlerts(store, l.alerts, l.mail, l.options);
        return l;
    }
};

Alert fullAlert()
{
    Alert a = newAlert(0);
    a.rEnabled = true;
    a.rName = QStringLiteral("Hot, \"very\" hot; = #1");
    a.rAction = SendEmail;
    a.rCondition = InsideRange;
    a.rException = OtherInsideRange;
    a.aEmailAddress = QStringLiteral("ops@example.org");
    a.aApplication = QStringLiteral("/usr/bin/true");
    a.aMessage = QStringLiteral("line one\nline two");
    a.aSound = QStringLiteral("/tmp/ding.wav");
    a.aStartLogging = false;
    a.aSensor = 2;
    a.aNode = 3;
    a.cSensor = 0;
    a.cNode = 1;
    a.cLimit = 0.1 + 0.2;  // needs all 17 digits to come back equal
    a.cRangeStart = 10;
    a.cRangeEnd = 5;
    a.cNumber = 1e-7;
    a.cDateValue = 20260305090741;
    a.cDateType = 4;
    a.cDateExtra = QStringLiteral("extra");
    a.eNumber = 60;
    a.eTimeLengthSeconds = 2.5;
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

void expectSame(const Alert& a, const Alert& b)
{
    EXPECT_EQ(a.rEnabled, b.rEnabled);
    EXPECT_EQ(a.rName, b.rName);
    EXPECT_EQ(a.rAction, b.rAction);
    EXPECT_EQ(a.rCondition, b.rCondition);
    EXPECT_EQ(a.rException, b.rException);
    EXPECT_EQ(a.aEmailAddress, b.aEmailAddress);
    EXPECT_EQ(a.aApplication, b.aApplication);
    EXPECT_EQ(a.aMessage, b.aMessage);
    EXPECT_EQ(a.aSound, b.aSound);
    EXPECT_EQ(a.aStartLogging, b.aStartLogging);
    EXPECT_EQ(a.aSensor, b.aSensor);
    EXPECT_EQ(a.aNode, b.aNode);
    EXPECT_EQ(a.cSensor, b.cSensor);
    EXPECT_EQ(a.cNode, b.cNode);
    EXPECT_EQ(a.cLimit, b.cLimit);
    EXPECT_EQ(a.cRangeStart, b.cRangeStart);
    EXPECT_EQ(a.cRangeEnd, b.cRangeEnd);
    EXPECT_EQ(a.cNumber, b.cNumber);
    EXPECT_EQ(a.cDateValue, b.cDateValue);
    EXPECT_EQ(a.cDateType, b.cDateType);
    EXPECT_EQ(a.cDateExtra, b.cDateExtra);
    EXPECT_EQ(a.eNumber, b.eNumber);
    EXPECT_EQ(a.eTimeLengthSeconds, b.eTimeLengthSeconds);
    EXPECT_EQ(a.eTimeFrameStart, b.eTimeFrameStart);
    EXPECT_EQ(a.eTimeFrameEnd, b.eTimeFrameEnd);
    EXPECT_EQ(a.eTimeFrameMode, b.eTimeFrameMode);
    EXPECT_EQ(a.eSensor, b.eSensor);
    EXPECT_EQ(a.eNode, b.eNode);
    EXPECT_EQ(a.eLimit, b.eLimit);
    EXPECT_EQ(a.eRangeStart, b.eRangeStart);
    EXPECT_EQ(a.eRangeEnd, b.eRangeEnd);
}

}  // namespace

TEST(AlertStore, EveryValueAndEveryMailSettingComesBackFromTheFile)
{
    StoreFile f;
    MailSettings mail;
    mail.SMTPServer = QStringLiteral("127.0.0.1:2525");
    mail.SMTPAuthUser = QStringLiteral("user@example.org");
    // Any character but NUL: quotes, backslashes, separators, line ends, blanks at the ends.
    mail.SMTPAuthPass = QStringLiteral("  p\"a\\s;s=w#o,r[d]%\r\n\t\u00e9\u4e2d\U0001F600 ");
    mail.MailSenderName = QStringLiteral("Build Box");
    mail.MailSenderEMail = QStringLiteral("box@example.org");
    std::vector<Alert> alerts = {fullAlert(), newAlert(1)};
    {
        IniStore store(f.path);
        ASSERT_TRUE(SaveAlerts(store, alerts, mail));
    }
    const auto loaded = f.load();
    ASSERT_EQ(loaded.alerts.size(), 2u);
    expectSame(loaded.alerts[0], alerts[0]);
    expectSame(loaded.alerts[1], alerts[1]);
    EXPECT_EQ(loaded.mail.SMTPServer, mail.SMTPServer);
    EXPECT_EQ(loaded.mail.SMTPAuthUser, mail.SMTPAuthUser);
    EXPECT_EQ(loaded.mail.SMTPAuthPass, mail.SMTPAuthPass);
    EXPECT_EQ(loaded.mail.MailSenderName, mail.MailSenderName);
    EXPECT_EQ(loaded.mail.MailSenderEMail, mail.MailSenderEMail);
}

TEST(AlertStore, NewAlertAndLoadDefaultsDiffer)
{
    const Alert fresh = newAlert(4);
    EXPECT_EQ(fresh.rName, "New Alert 5");
    EXPECT_FALSE(fresh.rEnabled);
    EXPECT_EQ(fresh.rAction, -1);
    EXPECT_EQ(fresh.rCondition, -1);
    EXPECT_EQ(fresh.rException, -1);
    EXPECT_TRUE(fresh.aStartLogging);

    // A key holding only its name comes back armed, with codes 0 and the rest unset.
    StoreFile f;
    f.write("[Settings]\nAlerts=1\nAlert1\\rName=Only a name\n");
    const auto loaded = f.load();
    ASSERT_EQ(loaded.alerts.size(), 1u);
    const Alert& a = loaded.alerts[0];
    EXPECT_EQ(a.rName, "Only a name");
    EXPECT_TRUE(a.rEnabled);
    EXPECT_EQ(a.rAction, 0);
    EXPECT_EQ(a.rCondition, 0);
    EXPECT_EQ(a.rException, 0);
    EXPECT_TRUE(a.aStartLogging);
    EXPECT_EQ(a.cSensor, -1);
    EXPECT_EQ(a.cLimit, -1);
    EXPECT_EQ(a.cDateExtra, "");
    EXPECT_EQ(loaded.mail.SMTPServer, "");
}

TEST(AlertStore, TheCountDecidesWhichKeysLoad)
{
    StoreFile f;
    // Missing count, zero and junk: no Alerts.
    for (const char* count : {"", "Alerts=0\n", "Alerts=none\n", "Alerts=-3\n"}) {
        f.write(QByteArray("[Settings]\n") + count + "Alert1\\rName=a\n");
        EXPECT_TRUE(f.load().alerts.empty()) << count;
    }
    // Alert3 beyond Alerts=2 is not loaded.
    f.write("[Settings]\nAlerts=2\nAlert1\\rName=a\nAlert2\\rName=b\nAlert3\\rName=c\n");
    auto loaded = f.load();
    ASSERT_EQ(loaded.alerts.size(), 2u);
    EXPECT_EQ(loaded.alerts[1].rName, "b");
    // A count larger than the keys present loads the missing ones with the load defaults.
    f.write("[Settings]\nAlerts=3\nAlert1\\rName=a\n");
    loaded = f.load();
    ASSERT_EQ(loaded.alerts.size(), 3u);
    EXPECT_TRUE(loaded.alerts[2].rEnabled);
    EXPECT_EQ(loaded.alerts[2].rAction, 0);
    // A count that cannot be true is not followed: the keys present decide.
    f.write("[Settings]\nAlerts=99999999999\nAlert1\\rName=a\nAlert7\\rName=g\n");
    loaded = f.load();
    ASSERT_EQ(loaded.alerts.size(), 7u);
    EXPECT_EQ(loaded.alerts[6].rName, "g");
}

TEST(AlertStore, TextInNumbersReadsItsLeadingNumberOrTheDefault)
{
    StoreFile f;
    f.write("[Settings]\nAlerts=1\n"
            "Alert1\\rEnabled=maybe\nAlert1\\rAction=3rd\nAlert1\\rCondition=abc\nAlert1\\rException=99999\n"
            "Alert1\\cSensor=2.9\nAlert1\\cNode=-0.5\nAlert1\\cLimit=12abc\nAlert1\\cRangeStart=x1\n"
            "Alert1\\cNumber=.5\nAlert1\\eLimit=1e3\nAlert1\\aStartLogging=FALSE\nAlert1\\eSensor=nan\n");
    const Alert a = f.load().alerts.at(0);
    EXPECT_TRUE(a.rEnabled);            // not a boolean: the default
    EXPECT_EQ(a.rAction, 3);            // leading number
    EXPECT_EQ(a.rCondition, 0);         // no number: the default
    EXPECT_EQ(a.rException, 0);         // beyond 16 bits: the default
    EXPECT_EQ(a.cSensor, 2);            // truncated
    EXPECT_EQ(a.cNode, 0);
    EXPECT_EQ(a.cLimit, 12);
    EXPECT_EQ(a.cRangeStart, -1);
    EXPECT_EQ(a.cNumber, 0.5);
    EXPECT_EQ(a.eLimit, 1000);
    EXPECT_FALSE(a.aStartLogging);
    EXPECT_EQ(a.eSensor, -1);
}

TEST(AlertStore, LoadDropsNulFromTheMailValuesOnly)
{
    MemoryStore store;
    store.writeValue(SettingsKey, QStringLiteral("SMTPAuthPass"), QStringLiteral("se") + QChar(u'\0') + "cret");
    store.writeValue(SettingsKey, QStringLiteral("SMTPServer"), QChar(u'\0') + QStringLiteral("relay"));
    store.writeValue(SettingsKey, QStringLiteral("Alerts"), QStringLiteral("1"));
    store.writeValue(alertKey(0), QStringLiteral("rName"), QStringLiteral("a") + QChar(u'\0'));
    std::vector<Alert> alerts;
    MailSettings mail;
    AlertOptionTable options;
    LoadAlerts(store, alerts, mail, options);
    EXPECT_EQ(mail.SMTPAuthPass, "secret");
    EXPECT_EQ(mail.SMTPServer, "relay");
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
        // Written in the fixed order, every value of every Alert.
        MemoryStore memory;
        SaveAlerts(memory, {fullAlert()}, MailSettings{});
        ASSERT_EQ(memory.writes.size(), 1 + 31 + 5);
        EXPECT_TRUE(memory.writes[1].startsWith("Settings/Alert1/rEnabled="));
        EXPECT_TRUE(memory.writes[31].startsWith("Settings/Alert1/eRangeEnd="));
        EXPECT_TRUE(memory.writes[32].startsWith("Settings/SMTPServer="));
        EXPECT_TRUE(memory.writes[36].startsWith("Settings/MailSenderEMail="));
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
    const auto loaded = f.load();
    ASSERT_EQ(loaded.alerts.size(), 1u);
    expectSame(loaded.alerts[0], fullAlert());
}

TEST(AlertOptions, RowsRangesAndSentences)
{
    const AlertOptionTable t = FillAlertOptions();
    EXPECT_TRUE(t.AlertOptions[0][OptionText].isEmpty());
    EXPECT_EQ(t.AlertOptionRange[0][0], "1");
    EXPECT_EQ(t.AlertOptionRange[0][1], "8");
    EXPECT_EQ(t.AlertOptionRange[1][0], "9");
    EXPECT_EQ(t.AlertOptionRange[1][1], "14");
    EXPECT_EQ(t.AlertOptionRange[2][0], "15");
    EXPECT_EQ(t.AlertOptionRange[2][1], "22");
    EXPECT_EQ(t.AlertOptions[SendEmail][OptionSentence], "Send an email to Email Address (Settings)");
    EXPECT_EQ(t.AlertOptions[ShutDownComputer][OptionText], "ShutDown the computer");
    EXPECT_EQ(t.AlertOptions[ShutDownComputer][OptionLink1], "");
    EXPECT_EQ(t.AlertOptions[AtMoment + ConditionRowOffset][OptionSentence], " at Time or Date");
    EXPECT_EQ(t.AlertOptions[OtherEqualsNumber + ExceptionRowOffset][OptionLink2], "Number2");
    for (int row = 1; row < AlertOptionRows; ++row)
        EXPECT_TRUE(t.AlertOptions[size_t(row)][OptionLink3].isEmpty()) << row;
    // The three sentences join by plain concatenation.
    EXPECT_EQ(t.AlertOptions[ShowMessageAction][OptionSentence] + t.AlertOptions[9][OptionSentence] +
                  t.AlertOptions[15][OptionSentence],
              "Show a message saying Message when Node2 exceeds Limit1 within the last Number2 samples");
}
