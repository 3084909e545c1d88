// A rule's sentence in a rich text document: the clauses it joins, the look
// of its links and tags, and the link found under a character by format alone.
#include "alerts/alert_links.h"
#include "monitor/alert_sentence.h"

#include <QTextCharFormat>
#include <gtest/gtest.h>

namespace orm::test {
namespace {

class Sentence : public ::testing::Test {
protected:
    void SetUp() override
    {
        sensors.resize(1);
        sensors[0].Name = "New Graph 1";
        sensors[0].Nodes.resize(1);
        sensors[0].Nodes[0].Name = QStringLiteral("New ") + QChar(u'\0') + QStringLiteral("Node 1");
    }
    void draw() { drawSentence(doc, alert, table, sensors); }
    QTextCharFormat at(int position) const
    {
        QTextCursor c(const_cast<QTextDocument*>(&doc));
        c.setPosition(position + 1);
        return c.charFormat();
    }
    int indexOf(const QString& text) const { return doc.toPlainText().indexOf(text); }
    // The texts of all links, found by walking the sentence one character at a time.
    QStringList links() const
    {
        QStringList found;
        for (int i = 0; i < doc.characterCount(); ++i) {
            const QString l = linkAtCharacter(doc, i);
            if (!l.isEmpty() && !found.contains(l))
                found << l;
        }
        return found;
    }

    AlertOptionTable table = FillAlertOptions();
    std::vector<Graph> sensors;
    Alert alert;
    QTextDocument doc;
};

TEST_F(Sentence, SetValuesShowBehindWhiteTagsAndEveryLinkIsBlueAndUnderlined)
{
    alert.rAction = ShowMessageAction;
    alert.aMessage = "Hot";
    alert.rCondition = ExceedsLimit;
    alert.cSensor = 0;
    alert.cNode = 0;
    alert.rException = NoException;
    draw();
    EXPECT_EQ(shownSentence(doc),
              QStringLiteral("Show a message saying Hot when Graph (New Graph 1), Node (New Node 1) exceeds Limit1"));
    EXPECT_EQ(doc.toPlainText(),
              QStringLiteral("Show a message sayingcHot whengGraph (New Graph 1), Node (New Node 1) exceeds Limit1"));

    const int tag = indexOf(QStringLiteral("cHot"));
    EXPECT_EQ(at(tag).foreground().color(), TagColour);
    EXPECT_FALSE(at(tag).fontUnderline());
    for (int i = tag + 1; i < tag + 4; ++i) {
        EXPECT_EQ(at(i).foreground().color(), LinkColour);
        EXPECT_TRUE(at(i).fontUnderline());
    }
    // An unset word is a link too; its blank stays plain.
    const int limit = indexOf(QStringLiteral("Limit1"));
    EXPECT_EQ(at(limit - 1).foreground().color(), TextColour);
    EXPECT_FALSE(at(limit - 1).fontUnderline());
    EXPECT_TRUE(at(limit).fontUnderline());
    // The lower-case "message" before the link is plain text.
    EXPECT_FALSE(at(indexOf(QStringLiteral("message"))).fontUnderline());
    EXPECT_EQ(links(), QStringList({QStringLiteral("cHot"), QStringLiteral("gGraph (New Graph 1), Node (New Node 1)"),
                                    QStringLiteral("Limit1")}));
}

TEST_F(Sentence, TheLinkUnderACharacterIncludesItsTag)
{
    alert.rAction = SwitchLogging;
    alert.aStartLogging = false;
    alert.rCondition = InsideRange;
    alert.cRangeStart = 1;
    alert.cRangeEnd = 9;
    draw();
    const QString text = doc.toPlainText();
    EXPECT_EQ(shownSentence(doc), QStringLiteral(" Stop logging Node1 when Node2 falls inside of 1 to 9"));
    const int range = indexOf(QStringLiteral("i1 to 9"));
    for (int i = range; i < range + 7; ++i)  // the white tag counts as the link
        EXPECT_EQ(linkAtCharacter(doc, i), QStringLiteral("i1 to 9")) << i;
    EXPECT_EQ(linkAtCharacter(doc, range - 1), QString());  // "of"
    EXPECT_EQ(linkAtCharacter(doc, indexOf(QStringLiteral("logging"))), QString());
    EXPECT_EQ(linkAtCharacter(doc, indexOf(QStringLiteral("Node1")) + 2), QStringLiteral("Node1"));
    // "Start" has no blank in front: its tag is the very first character, which never counts.
    EXPECT_EQ(linkAtCharacter(doc, 0), QString());
    EXPECT_EQ(linkAtCharacter(doc, 1), QStringLiteral("rStop"));
    EXPECT_EQ(linkAtCharacter(doc, -5), QString());
    EXPECT_EQ(linkAtCharacter(doc, text.size()), QString());
    EXPECT_EQ(linkSpanAt(doc, 1), std::make_pair(0, 5));
}

TEST_F(Sentence, AMomentHasOneLinkAndNoneAddsNoThirdClause)
{
    alert.rAction = RestartComputer;
    alert.rCondition = AtMoment;
    alert.rException = NoException;
    draw();
    EXPECT_EQ(shownSentence(doc), QStringLiteral("Restart this computer at Time or Date"));
    EXPECT_EQ(links(), QStringList{QStringLiteral("Time or Date")});

    alert.cDateValue = 20240131080000.0;
    alert.rException = OtherExceeds;
    alert.eSensor = 0;
    alert.eNode = 0;
    alert.eLimit = 0;
    draw();
    EXPECT_EQ(shownSentence(doc), QStringLiteral("Restart this computer at 01/31/2024 08:00:00 if Graph (New Graph 1), "
                                                 "Node (New Node 1) exceeds 0"));
    EXPECT_EQ(links().size(), 3);
}

TEST_F(Sentence, MailHasTheSettingsLinkAndAnEmptyRowGivesNoSentence)
{
    alert.rAction = SendEmail;
    draw();
    const QStringList mailLinks{"Email Address", "(Settings)"};
    EXPECT_EQ(links(), mailLinks);
    SetLinkText(doc, QStringLiteral("Sound"), QStringLiteral("bx.wav"));  // not in the sentence
    EXPECT_EQ(links(), mailLinks);

    alert = Alert();
    draw();
    EXPECT_TRUE(doc.toPlainText().isEmpty());
}

}  // namespace
}  // namespace orm::test
