// The Alert wizard's rules without its window: the pages, New and Delete, the
// links and the values that come back by tmrAlerts, each checked in the
// settings file as it is after the step.
#include "monitor/alert_sentence.h"
#include "wizard_fixture.h"

namespace orm::test {
namespace {

class Wizard : public WizardFixture {
protected:
    void SetUp() override
    {
        WizardFixture::SetUp();
        wizard = std::make_unique<AlertWizard>(*monitor, &answers);
        wizard->load();
    }
    QString sentence() const { return shownSentence(wizard->richAlertDesc); }
    // A link clicked and its dialog ended with OK after `type` filled the transfer.
    void setLink(const QString& word, const std::function<void(AlertSetting&)>& type)
    {
        auto request = wizard->ClickLink(word);
        ASSERT_TRUE(request.has_value()) << qPrintable(word);
        wizard->settingOpened();
        type(wizard->setting);
        wizard->setting.Open = false;
        wizard->linkDone();
        wizard->tmrAlerts_Timer();
    }
    std::unique_ptr<AlertWizard> wizard;
};

TEST_F(Wizard, PagesWalkFromActionToExceptionAndBackToRest)
{
    EXPECT_EQ(wizard->AlertPage, 0);
    EXPECT_FALSE(wizard->nextEnabled);
    EXPECT_EQ(wizard->nextText, QStringLiteral("Next >"));
    EXPECT_FALSE(wizard->editorsEnabled);
    EXPECT_TRUE(wizard->rows.empty());

    wizard->cmdNewAlert();
    EXPECT_EQ(wizard->AlertPage, 1);
    EXPECT_TRUE(wizard->editorsEnabled);
    EXPECT_TRUE(wizard->nextEnabled);
    EXPECT_EQ(wizard->alertName, QStringLiteral("New Alert 1"));
    EXPECT_EQ(wizard->options.size(), 8);
    EXPECT_EQ(wizard->optionIndex, -1);  // nothing chosen yet
    EXPECT_EQ(stored(QStringLiteral("Alerts")), QStringLiteral("1"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("rName")), QStringLiteral("New Alert 1"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("rEnabled")), QStringLiteral("False"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("rAction")), QStringLiteral("-1"));

    // Next on a page with nothing chosen takes its first option.
    wizard->cmdNext();
    EXPECT_EQ(alerts()[0].rAction, SendEmail);
    EXPECT_EQ(storedAlert(1, QStringLiteral("rAction")), QStringLiteral("1"));
    EXPECT_EQ(wizard->AlertPage, 2);
    EXPECT_EQ(wizard->options.value(0), QStringLiteral("when a Node exceeds a limit"));
    wizard->lstAlertOptions_Click(5);  // at a specific time or date
    EXPECT_EQ(storedAlert(1, QStringLiteral("rCondition")), QStringLiteral("6"));
    EXPECT_EQ(sentence(), QStringLiteral("Send an email to Email Address (Settings) at Time or Date"));

    wizard->cmdNext();
    EXPECT_EQ(wizard->AlertPage, 3);
    EXPECT_EQ(wizard->nextText, QStringLiteral("Finish"));
    EXPECT_EQ(wizard->options.last(), QStringLiteral("[NONE]"));
    wizard->lstAlertOptions_Click(1);  // for a length of time
    EXPECT_EQ(sentence(), QStringLiteral("Send an email to Email Address (Settings) at Time or Date for Length of Time"));
    wizard->lstAlertOptions_Click(8);  // [NONE]
    EXPECT_EQ(alerts()[0].rException, 0);
    EXPECT_EQ(storedAlert(1, QStringLiteral("rException")), QStringLiteral("0"));
    EXPECT_EQ(sentence(), QStringLiteral("Send an email to Email Address (Settings) at Time or Date"));

    // Back shows the page's choice again and draws its sentence.
    wizard->cmdBack();
    EXPECT_EQ(wizard->AlertPage, 2);
    EXPECT_EQ(wizard->optionIndex, 5);
    EXPECT_EQ(wizard->nextText, QStringLiteral("Next >"));
    wizard->cmdNext();
    EXPECT_EQ(wizard->optionIndex, -1);  // "[NONE]" is code 0: nothing selected, and Next keeps it
    wizard->cmdNext();
    EXPECT_EQ(alerts()[0].rException, 0);
    EXPECT_EQ(wizard->AlertPage, 0);  // Finish ends the edit
    EXPECT_FALSE(wizard->nextEnabled);
    EXPECT_FALSE(wizard->editorsEnabled);
    EXPECT_TRUE(wizard->focusToList);
    EXPECT_TRUE(sentence().isEmpty());
    EXPECT_TRUE(wizard->options.isEmpty());

    // Back from page 1 rests on page 0; there is nothing before it.
    wizard->selectRow(0);
    EXPECT_EQ(wizard->optionIndex, 0);
    wizard->cmdBack();
    wizard->cmdBack();
    EXPECT_EQ(wizard->AlertPage, 0);
    EXPECT_FALSE(wizard->nextEnabled);
}

TEST_F(Wizard, LinksTakeTheirValuesBackAndCancelLeavesThem)
{
    wizard->cmdNewAlert();
    wizard->lstAlertOptions_Click(2);  // Show a message
    wizard->cmdNext();
    wizard->cmdNext();  // exceeds a limit
    ASSERT_EQ(alerts()[0].rCondition, ExceedsLimit);

    setLink(QStringLiteral("Message"), [](AlertSetting& s) {
        EXPECT_EQ(s.Kind, MessageKind);
        EXPECT_TRUE(s.Text.isEmpty());
        s.Text = QStringLiteral("Hot");
    });
    EXPECT_EQ(storedAlert(1, QStringLiteral("aMessage")), QStringLiteral("Hot"));
    setLink(QStringLiteral("Node2"), [](AlertSetting& s) {
        EXPECT_EQ(s.Kind, Node2Kind);
        s.Value1 = 1;
        s.Value2 = 1;
    });
    EXPECT_EQ(sentence(), QStringLiteral("Show a message saying Hot when Graph (New Graph 2), Node (New Node 2) exceeds Limit1"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("cSensor")), QStringLiteral("1"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("cNode")), QStringLiteral("1"));

    // A value behind its tag is clicked by its text: the tag names the link.
    setLink(QStringLiteral("cHot"), [](AlertSetting& s) {
        EXPECT_EQ(s.Text, QStringLiteral("Hot"));
        s.Text = QStringLiteral("Too hot");
    });
    EXPECT_EQ(alerts()[0].aMessage, QStringLiteral("Too hot"));

    // While the dialog is open each tick saves; Cancel then leaves the field and the sentence.
    ASSERT_TRUE(wizard->ClickLink(QStringLiteral("Limit1")).has_value());
    wizard->settingOpened();
    wizard->setting.Text = QStringLiteral("99");
    const quint64 before = fileIdentity();
    wizard->tmrAlerts_Timer();
    EXPECT_NE(fileIdentity(), before);  // written again
    EXPECT_TRUE(wizard->tmrAlertsEnabled);
    wizard->richAlertDesc.setPlainText(QStringLiteral("as drawn"));
    wizard->setting.Cancelled = true;
    wizard->setting.Open = false;
    wizard->tmrAlerts_Timer();
    EXPECT_FALSE(wizard->tmrAlertsEnabled);
    EXPECT_EQ(alerts()[0].cLimit, -1);
    EXPECT_EQ(wizard->richAlertDesc.toPlainText(), QStringLiteral("as drawn"));  // not redrawn

    // A word that is no link and whose first letter is no tag does nothing.
    EXPECT_FALSE(wizard->ClickLink(QStringLiteral("zebra")).has_value());
    EXPECT_FALSE(wizard->ClickLink(QString()).has_value());
}

TEST_F(Wizard, StartTogglesAndFilesAreTakenOnlyWhenChosen)
{
    wizard->cmdNewAlert();
    wizard->lstAlertOptions_Click(3);  // Start or Stop logging
    EXPECT_EQ(sentence(), QStringLiteral(" Start logging Node1"));
    auto r = wizard->ClickLink(QStringLiteral("rStart"));
    ASSERT_TRUE(r.has_value());
    EXPECT_EQ(r->action, LinkAction::ToggleStart);
    EXPECT_EQ(sentence(), QStringLiteral(" Stop logging Node1"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("aStartLogging")), QStringLiteral("False"));

    wizard->lstAlertOptions_Click(1);  // Play a sound
    r = wizard->ClickLink(QStringLiteral("Sound"));
    ASSERT_TRUE(r.has_value());
    EXPECT_EQ(r->action, LinkAction::SoundFile);
    wizard->fileChosen(r->action, QString());  // the picker was cancelled
    EXPECT_TRUE(alerts()[0].aSound.isEmpty());
    wizard->fileChosen(r->action, QStringLiteral("/tmp/bell.wav"));
    EXPECT_EQ(storedAlert(1, QStringLiteral("aSound")), QStringLiteral("/tmp/bell.wav"));
    EXPECT_EQ(sentence(), QStringLiteral("Play /tmp/bell.wav"));
}

TEST_F(Wizard, RowsRenameArmAndDeleteWithTheQuestionAsked)
{
    wizard->cmdNewAlert();
    wizard->cmdNewAlert();
    wizard->cmdNewAlert();
    ASSERT_EQ(wizard->rows.size(), 3u);
    EXPECT_EQ(wizard->rows[2].text, QStringLiteral("New Alert 3"));
    EXPECT_EQ(wizard->selectedRow, 2);

    wizard->selectRow(1);
    wizard->renameSelected(QStringLiteral("Disk full"));
    EXPECT_EQ(storedAlert(2, QStringLiteral("rName")), QStringLiteral("Disk full"));
    wizard->checkRow(2, true);
    EXPECT_EQ(wizard->selectedRow, 2);  // a check selects the row too
    EXPECT_EQ(wizard->AlertPage, 1);
    EXPECT_EQ(storedAlert(3, QStringLiteral("rEnabled")), QStringLiteral("True"));

    // No keeps everything.
    answers.answer = false;
    wizard->selectRow(1);
    wizard->cmdDeleteAlert();
    ASSERT_EQ(answers.asked.size(), 1);
    EXPECT_EQ(answers.asked[0], QStringLiteral("Ormivane - Delete Disk full | Are you sure you want to delete this "
                                               "Alert (Disk full)?"));
    EXPECT_EQ(alerts().size(), 3u);
    EXPECT_EQ(wizard->AlertPage, 0);

    // Yes: the later rules move down. The keys go only as far as there are
    // Graphs (two), so the third key stays behind, bounded by the count.
    answers.answer = true;
    wizard->selectRow(1);
    wizard->cmdDeleteAlert();
    ASSERT_EQ(alerts().size(), 2u);
    EXPECT_EQ(wizard->rows[1].text, QStringLiteral("New Alert 3"));
    EXPECT_TRUE(wizard->rows[1].checked);
    EXPECT_EQ(wizard->selectedRow, -1);
    EXPECT_EQ(stored(QStringLiteral("Alerts")), QStringLiteral("2"));
    EXPECT_EQ(storedAlert(2, QStringLiteral("rName")), QStringLiteral("New Alert 3"));
    EXPECT_EQ(storedAlert(3, QStringLiteral("rName")), QStringLiteral("New Alert 3"));  // stale, ignored
    restart();
    EXPECT_EQ(alerts().size(), 2u);

    // Nothing selected, or nothing at all: no question.
    wizard = std::make_unique<AlertWizard>(*monitor, &answers);
    wizard->load();
    wizard->cmdDeleteAlert();
    EXPECT_EQ(answers.asked.size(), 2);
    for (int i = 0; i < 2; ++i) {
        wizard->selectRow(0);
        wizard->cmdDeleteAlert();
    }
    EXPECT_TRUE(alerts().empty());
    EXPECT_EQ(stored(QStringLiteral("Alerts")), QStringLiteral("0"));
    wizard->cmdDeleteAlert();
    EXPECT_EQ(answers.asked.size(), 4);
}

TEST_F(Wizard, ARestartListsTheRuleAsItWasLeft)
{
    wizard->cmdNewAlert();
    wizard->lstAlertOptions_Click(2);
    setLink(QStringLiteral("Message"), [](AlertSetting& s) { s.Text = QStringLiteral("Hot"); });
    wizard->cmdNext();
    wizard->cmdNext();
    setLink(QStringLiteral("Node2"), [](AlertSetting& s) {
        s.Value1 = 0;
        s.Value2 = 0;
    });
    ASSERT_EQ(wizard->AlertPage, 3);
    wizard->lstAlertOptions_Click(8);  // [NONE]
    wizard->cmdNext();
    wizard->checkRow(0, true);
    // The mail settings go with the rules.
    wizard->selectRow(0);
    wizard->lstAlertOptions_Click(0);
    setLink(QStringLiteral("(Settings)"), [](AlertSetting& s) {
        EXPECT_EQ(s.Kind, SmtpSettingsKind);
        s.smtp.SMTPServer = QStringLiteral("127.0.0.1:2525");
        s.smtp.MailSenderEMail = QStringLiteral("me@example.org");
    });
    EXPECT_EQ(monitor->alertTester.VDSMTPRelay1.SMTPServer, QStringLiteral("127.0.0.1:2525"));
    wizard->lstAlertOptions_Click(2);

    restart();
    AlertWizard again(*monitor, &answers);
    again.load();
    ASSERT_EQ(again.rows.size(), 1u);
    EXPECT_EQ(again.rows[0].text, QStringLiteral("New Alert 1"));
    EXPECT_TRUE(again.rows[0].checked);
    EXPECT_EQ(monitor->alertTester.mail.SMTPServer, QStringLiteral("127.0.0.1:2525"));
    again.selectRow(0);
    EXPECT_EQ(shownSentence(again.richAlertDesc),
              QStringLiteral("Show a message saying Hot when Graph (New Graph 1), Node (New Node 1) exceeds Limit1"));
}

}  // namespace
}  // namespace orm::test
