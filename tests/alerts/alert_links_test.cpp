// The links of a rule's sentence: which word edits which field, what each shows
// once set, and the values that travel to the settings dialog and back.
#include "alerts/alert_links.h"

#include <QDateTime>
#include <functional>
#include <gtest/gtest.h>

using namespace orm;

namespace {

std::vector<Graph> twoGraphs()
{
    Graph cpu;
    cpu.Name = QStringLiteral("Machine");
    Node load;
    load.Name = QStringLiteral("Lo") + QChar(u'\0') + QStringLiteral("ad");
    cpu.Nodes = {load};
    Graph net;
    net.Name = QStringLiteral("Net");
    Node in, out;
    in.Name = QStringLiteral("In");
    out.Name = QStringLiteral("Out");
    net.Nodes = {in, out};
    return {cpu, net};
}

TEST(AlertLinks, EveryLinkWordOfTheTableIsKnownWithItsTagAndKind)
{
    const AlertOptionTable table = FillAlertOptions();
    for (int row = 1; row < AlertOptionRows; ++row) {
        for (int column : {OptionLink1, OptionLink2, OptionLink3}) {
            const QString& word = table.AlertOptions[size_t(row)][size_t(column)];
            if (!word.isEmpty()) {
                EXPECT_NE(findAlertLink(word), nullptr) << qPrintable(word);
            }
        }
    }
    QString tags;
    for (const AlertLink& l : alertLinks())
        tags += l.tag;
    EXPECT_EQ(tags, QStringLiteral("abcdefghijklmnopqrs"));
    EXPECT_EQ(alertLinkOfTag(QLatin1Char('k'))->word, QStringLiteral("Time or Date"));
    EXPECT_EQ(alertLinkOfTag(QLatin1Char('t')), nullptr);
    EXPECT_EQ(alertLinkOfTag(QLatin1Char('A')), nullptr);
    EXPECT_EQ(findAlertLink(QStringLiteral("message")), nullptr);  // whole words, letter case included

    // The prompts as the dialog shows them, odd ones included.
    EXPECT_EQ(findAlertLink(QStringLiteral("Time or Date"))->prompt, QStringLiteral("Please a Time and Date"));
    EXPECT_EQ(findAlertLink(QStringLiteral("Length of Time"))->prompt, QStringLiteral("Please enter a a length of time"));
    EXPECT_EQ(findAlertLink(QStringLiteral("Node1"))->prompt, QStringLiteral("Please select an available Node"));
    EXPECT_EQ(findAlertLink(QStringLiteral("Node2"))->prompt, QStringLiteral("Please enter a value"));
    EXPECT_TRUE(findAlertLink(QStringLiteral("(Settings)"))->prompt.isEmpty());
    EXPECT_EQ(findAlertLink(QStringLiteral("(Settings)"))->kind, SmtpSettingsKind);
    EXPECT_EQ(findAlertLink(QStringLiteral("Range2"))->kind, Range2Kind);
    EXPECT_EQ(findAlertLink(QStringLiteral("Sound"))->action, LinkAction::SoundFile);
    EXPECT_EQ(findAlertLink(QStringLiteral("Application"))->action, LinkAction::ApplicationFile);
    EXPECT_EQ(findAlertLink(QStringLiteral("Start"))->action, LinkAction::ToggleStart);
}

TEST(AlertLinks, ReplacementsShowTagAndValueOnceSet)
{
    const auto sensors = twoGraphs();
    Alert a;
    // Unset fields leave the word, "Start" always shows its state.
    for (const AlertLink& l : alertLinks()) {
        if (l.word != QLatin1String("Start")) {
            EXPECT_EQ(linkReplacement(l.word, a, sensors), l.word) << qPrintable(l.word);
        }
    }
    EXPECT_EQ(linkReplacement(QStringLiteral("Start"), a, sensors), QStringLiteral("rStart"));

    a.aEmailAddress = QStringLiteral("ops@example.org");
    a.aSound = QStringLiteral("/tmp/bell.wav");
    a.aMessage = QStringLiteral("Hot");
    a.aSensor = 1;
    a.aNode = 1;
    a.aApplication = QStringLiteral("/usr/bin/true");
    a.cSensor = 0;
    a.cNode = 0;
    a.cLimit = 0.5;
    a.cRangeStart = 10;
    a.cRangeEnd = 5;
    a.cNumber = 0;
    a.cDateValue = 20240229235958.0;
    a.eSensor = 1;
    a.eNode = 0;
    a.eLimit = -2;
    a.eRangeStart = -1;  // one end unset is still a range
    a.eRangeEnd = 3;
    a.eNumber = 12;
    a.eTimeLengthSeconds = 90;
    a.eTimeFrameStart = 20240101000000.0;
    a.eTimeFrameEnd = 20241231235959.0;
    a.aStartLogging = false;
    const std::pair<const char*, const char*> expected[] = {
        {"Email Address", "aops@example.org"},
        {"Sound", "b/tmp/bell.wav"},
        {"Message", "cHot"},
        {"Node1", "dGraph (Net), Node (Out)"},
        {"Graph", "eGraph (Net)"},
        {"Application", "f/usr/bin/true"},
        {"Node2", "gGraph (Machine), Node (Load)"},  // the NUL of the name is gone
        {"Limit1", "h0.5"},
        {"Range1", "i10 to 5"},
        {"Number1", "j0"},
        {"Time or Date", "k02/29/2024 23:59:58"},
        {"Node3", "lGraph (Net), Node (In)"},
        {"Limit2", "m-2"},
        {"Range2", "n-1 to 3"},
        {"Number2", "o12"},
        {"Length of Time", "p90 Seconds"},
        {"Time Frame", "q01/01/2024 00:00:00 to 12/31/2024 23:59:59"},
        {"Start", "rStop"},
        {"(Settings)", "(Settings)"},
    };
    for (const auto& [word, shown] : expected)
        EXPECT_EQ(linkReplacement(QLatin1String(word), a, sensors), QLatin1String(shown)) << word;

    // A Graph or Node that is gone leaves the word.
    a.aNode = 2;
    a.cSensor = 7;
    EXPECT_EQ(linkReplacement(QStringLiteral("Node1"), a, sensors), QStringLiteral("Node1"));
    EXPECT_EQ(linkReplacement(QStringLiteral("Graph"), a, sensors), QStringLiteral("eGraph (Net)"));
    EXPECT_EQ(linkReplacement(QStringLiteral("Node2"), a, sensors), QStringLiteral("Node2"));
}

// Each kind carries the value of its own field there and back, and touches no other.
TEST(AlertLinks, EachKindTakesAndStoresItsOwnFields)
{
    struct Case {
        qint16 kind;
        AlertSetting typed;
        std::function<bool(const Alert&)> stored;
    };
    auto text = [](qint16 kind, const char* t) {
        AlertSetting s;
        s.Kind = kind;
        s.Text = QLatin1String(t);
        return s;
    };
    auto values = [](qint16 kind, double v1, double v2) {
        AlertSetting s;
        s.Kind = kind;
        s.Value1 = v1;
        s.Value2 = v2;
        return s;
    };
    const std::vector<Case> cases = {
        {EmailAddressKind, text(EmailAddressKind, "a@b"), [](const Alert& a) { return a.aEmailAddress == "a@b"; }},
        {MessageKind, text(MessageKind, "Hot"), [](const Alert& a) { return a.aMessage == "Hot"; }},
        {Limit1Kind, text(Limit1Kind, "12.5"), [](const Alert& a) { return a.cLimit == 12.5; }},
        {Number1Kind, text(Number1Kind, "abc"), [](const Alert& a) { return a.cNumber == 0; }},  // no number reads 0
        {Limit2Kind, text(Limit2Kind, "-3"), [](const Alert& a) { return a.eLimit == -3; }},
        {Number2Kind, text(Number2Kind, "7"), [](const Alert& a) { return a.eNumber == 7; }},
        {Node1Kind, values(Node1Kind, 1, 2), [](const Alert& a) { return a.aSensor == 1 && a.aNode == 2; }},
        {GraphKind, values(GraphKind, 3, 9), [](const Alert& a) { return a.aSensor == 3 && a.aNode == -1; }},
        {Range1Kind, values(Range1Kind, 5, 1), [](const Alert& a) { return a.cRangeStart == 5 && a.cRangeEnd == 1; }},
        {TimeOrDateKind, values(TimeOrDateKind, 20250102030405.0, 0),
         [](const Alert& a) { return a.cDateValue == 20250102030405.0; }},
        {LengthOfTimeKind, values(LengthOfTimeKind, 3600, 0), [](const Alert& a) { return a.eTimeLengthSeconds == 3600; }},
        {TimeFrameKind, values(TimeFrameKind, 1, 2), [](const Alert& a) { return a.eTimeFrameStart == 1 && a.eTimeFrameEnd == 2; }},
        {Node2Kind, values(Node2Kind, 0, 1), [](const Alert& a) { return a.cSensor == 0 && a.cNode == 1; }},
        {Node3Kind, values(Node3Kind, 1, 0), [](const Alert& a) { return a.eSensor == 1 && a.eNode == 0; }},
        {Range2Kind, values(Range2Kind, 2, 8), [](const Alert& a) { return a.eRangeStart == 2 && a.eRangeEnd == 8; }},
    };
    for (const Case& c : cases) {
        Alert a;
        MailSettings mail;
        storeSetting(c.typed, a, mail);
        EXPECT_TRUE(c.stored(a)) << "kind " << c.kind;
        // Back out again: the dialog starts from what was stored.
        const AlertSetting back = currentSetting(c.kind, a, mail);
        Alert again;
        storeSetting(back, again, mail);
        EXPECT_TRUE(c.stored(again)) << "kind " << c.kind;
        // Nothing else moved: clearing the stored field by a default's value gives a default Alert.
        Alert fresh;
        storeSetting(currentSetting(c.kind, fresh, mail), a, mail);
        EXPECT_TRUE(a.aEmailAddress.isEmpty() && a.aMessage.isEmpty() && a.cLimit == -1 && a.cNumber == -1 &&
                    a.aSensor == -1 && a.cSensor == -1 && a.eSensor == -1 && a.cRangeStart == -1 &&
                    a.eRangeEnd == -1 && a.cDateValue == -1 && a.eTimeLengthSeconds == -1 &&
                    a.eTimeFrameEnd == -1 && a.eLimit == -1 && a.eNumber == -1)
            << "kind " << c.kind;
    }
    // Kind 17 is the mail settings, shared by every Alert.
    Alert a;
    MailSettings mail;
    mail.SMTPServer = QStringLiteral("old");
    AlertSetting s = currentSetting(SmtpSettingsKind, a, mail);
    EXPECT_EQ(s.smtp.SMTPServer, QStringLiteral("old"));
    s.smtp = {QStringLiteral("127.0.0.1:2525"), QStringLiteral("u"), QStringLiteral("p|=;\"x"), QStringLiteral("Me"),
              QStringLiteral("me@x")};
    storeSetting(s, a, mail);
    EXPECT_EQ(mail.SMTPServer, QStringLiteral("127.0.0.1:2525"));
    EXPECT_EQ(mail.SMTPAuthPass, QStringLiteral("p|=;\"x"));
    EXPECT_EQ(mail.MailSenderEMail, QStringLiteral("me@x"));
    EXPECT_TRUE(isTextKind(PlainTextKind) && !isTextKind(Range1Kind) && !isTextKind(SmtpSettingsKind));
}

TEST(AlertLinks, LengthsOfTimeSplitByWholeDivisionAndClamp)
{
    const TimeLength t = splitSeconds(2 * 86400 + 3 * 3600 + 4 * 60 + 5);
    EXPECT_EQ(t.days, 2);
    EXPECT_EQ(t.hours, 3);
    EXPECT_EQ(t.minutes, 4);
    EXPECT_EQ(t.seconds, 5);
    EXPECT_EQ(joinSeconds(t), 2 * 86400 + 3 * 3600 + 4 * 60 + 5);
    EXPECT_EQ(joinSeconds({0, 0, 0, 0}), 0);
    const TimeLength unset = splitSeconds(-1);
    EXPECT_EQ(joinSeconds(unset), -1);

    EXPECT_EQ(clampTimeLength(0, -4), 0);
    EXPECT_EQ(clampTimeLength(0, 400), 400);  // days have no top
    EXPECT_EQ(clampTimeLength(1, 24), 23);
    EXPECT_EQ(clampTimeLength(1, -1), -1);   // only the tops of hours, minutes, seconds
    EXPECT_EQ(clampTimeLength(2, 60), 59);
    EXPECT_EQ(clampTimeLength(3, 75), 59);
    EXPECT_EQ(clampTimeLength(3, 59), 59);
}

TEST(AlertLinks, MomentsGoByTheirDigits)
{
    const QDateTime present(QDate(2024, 6, 1), QTime(12, 0, 0));
    EXPECT_EQ(momentNumber(QDate(2024, 2, 29), QTime(7, 8, 9)), 20240229070809.0);
    EXPECT_EQ(momentDateTime(20240229070809.0, present), QDateTime(QDate(2024, 2, 29), QTime(7, 8, 9)));
    EXPECT_EQ(momentDateTime(-1, present), present);  // unset
    EXPECT_EQ(momentDateTime(0, present), present);
    EXPECT_EQ(momentDateTime(20231399000000.0, present), present);  // no such month
    EXPECT_EQ(momentDateTime(12345, present), present);              // too few digits for a year
}

TEST(AlertLinks, FilePickerFiltersTakeTheirPatterns)
{
    const auto sound = fileFilters(SoundFileFilter);
    ASSERT_EQ(sound.size(), 3u);
    EXPECT_EQ(sound[0].text, QStringLiteral("Wave (*.wav)"));
    EXPECT_EQ(sound[1].pattern, QStringLiteral("*.mp3"));
    EXPECT_EQ(sound[2].text, QStringLiteral("All Files (*.*)"));
    const auto programs = fileFilters(ApplicationFileFilter);
    ASSERT_EQ(programs.size(), 2u);
    EXPECT_EQ(programs[0].text, QStringLiteral("Excecutable Files (*.exe)"));

    EXPECT_TRUE(fileMatchesFilter(QStringLiteral("Bell.WAV"), false, QStringLiteral("*.wav")));
    EXPECT_FALSE(fileMatchesFilter(QStringLiteral("bell.wav.txt"), false, QStringLiteral("*.wav")));
    EXPECT_TRUE(fileMatchesFilter(QStringLiteral("README"), false, QStringLiteral("*.*")));  // every file
    EXPECT_TRUE(fileMatchesFilter(QStringLiteral("backup"), true, QStringLiteral("*.exe")));
    EXPECT_TRUE(fileMatchesFilter(QStringLiteral("setup.exe"), false, QStringLiteral("*.exe")));
    EXPECT_FALSE(fileMatchesFilter(QStringLiteral("notes.txt"), false, QStringLiteral("*.exe")));
    EXPECT_FALSE(fileMatchesFilter(QStringLiteral("tool"), true, QStringLiteral("*.wav")));
}

TEST(AlertLinks, ClausesAndPagesFollowTheTable)
{
    const AlertOptionTable table = FillAlertOptions();
    Alert a;
    EXPECT_EQ(clauseRows(a, table), (std::array<int, 3>{0, 0, 0}));
    a.rAction = 3;
    a.rCondition = 6;
    a.rException = 8;
    EXPECT_EQ(clauseRows(a, table), (std::array<int, 3>{3, 14, 22}));
    a.rAction = 9;       // beyond the actions: no clause
    a.rException = 0;    // "[NONE]"
    EXPECT_EQ(clauseRows(a, table), (std::array<int, 3>{0, 14, 0}));

    EXPECT_EQ(pageOptions(1, table).size(), 8);
    EXPECT_EQ(pageOptions(2, table).value(5), QStringLiteral("at a specific time or date"));
    const QStringList exceptions = pageOptions(3, table);
    ASSERT_EQ(exceptions.size(), 9);
    EXPECT_EQ(exceptions.last(), QStringLiteral("[NONE]"));
    EXPECT_TRUE(pageOptions(0, table).isEmpty());

    Alert b;
    EXPECT_FALSE(optionListIndex(1, b).has_value());  // -1: nothing selected
    b.rException = 0;
    EXPECT_EQ(optionListIndex(3, b), -1);
    b.rCondition = 2;
    EXPECT_EQ(optionListIndex(2, b), 1);
    chooseOption(3, 8, QStringLiteral("[NONE]"), b);
    EXPECT_EQ(b.rException, 0);
    chooseOption(3, 3, QStringLiteral("if this other Node exceeds a limit"), b);
    EXPECT_EQ(b.rException, 4);
    chooseOption(1, 0, QString(), b);
    EXPECT_EQ(b.rAction, 1);
}

}  // namespace
