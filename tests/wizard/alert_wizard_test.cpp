// The Alert wizard's rules without its window: New and Delete with the keys
// they leave, checked in the settings file.
#include "wizard_fixture.h"

namespace orm::test {
namespace {

class Wizard : public WizardFixture {
protected:
    void SetUp() override
    {
        WizardFixture::SetUp();
        reopen();
    }
    void reopen()
    {
        wizard = std::make_unique<AlertWizard>(*monitor, &answers);
        wizard->load();
    }
    std::unique_ptr<AlertWizard> wizard;
};

TEST_F(Wizard, RowsRenameArmAndDeleteWithTheQuestionAsked)
{
    for (int i = 0; i < 3; ++i)
        wizard->cmdNewAlert();
    wizard->selectRow(1);
    wizard->renameSelected(QStringLiteral("Disk full"));
    EXPECT_EQ(storedAlert(2, QStringLiteral("rName")), QStringLiteral("Disk full"));
    wizard->checkRow(2, true);
    EXPECT_EQ(wizard->selectedRow, 2);  // a check selects the row too
    EXPECT_EQ(storedAlert(3, QStringLiteral("rEnabled")), QStringLiteral("True"));

    // No keeps everything.
    answers.answer = false;
    wizard->selectRow(1);
    wizard->cmdDeleteAlert();
    ASSERT_EQ(answers.asked.size(), 1);
    EXPECT_EQ(answers.asked[0], QStringLiteral("Ormivane - Delete Disk full|Are you sure you want to delete this "
                                               "Alert (Disk full)?"));
    EXPECT_EQ(alerts().size(), 3u);

    // Yes: the later rules move down. The keys go only as far as there are
    // Graphs (two), so the third key stays behind, bounded by the count.
    answers.answer = true;
    wizard->selectRow(1);
    wizard->cmdDeleteAlert();
    ASSERT_EQ(alerts().size(), 2u);
    EXPECT_EQ(wizard->rows[1].text, QStringLiteral("New Alert 3"));
    EXPECT_TRUE(wizard->rows[1].checked);
    EXPECT_EQ(stored(QStringLiteral("Alerts")), QStringLiteral("2"));
    EXPECT_EQ(storedAlert(2, QStringLiteral("rName")), QStringLiteral("New Alert 3"));
    EXPECT_EQ(storedAlert(3, QStringLiteral("rName")), QStringLiteral("New Alert 3"));  // stale, ignored
    restart();
    EXPECT_EQ(alerts().size(), 2u);

    // Nothing selected, or nothing at all: no question.
    reopen();
    wizard->cmdDeleteAlert();
    EXPECT_EQ(answers.asked.size(), 2);
    for (int i = 0; i < 2; ++i) {
        wizard->selectRow(0);
        wizard->cmdDeleteAlert();
    }
    EXPECT_EQ(stored(QStringLiteral("Alerts")), QStringLiteral("0"));
    wizard->cmdDeleteAlert();
    EXPECT_EQ(answers.asked.size(), 4);
}

}  // namespace
}  // namespace orm::test
