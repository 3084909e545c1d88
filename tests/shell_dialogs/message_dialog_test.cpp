#include "shell/message_dialog.h"
#include "shell/progress_bar.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

using namespace orm;

TEST(MessageDialog, NoticesGatherInOneWindowUntilOk)
{
    MessageDialog d;
    d.ShowMessage("one", false, false, false);
    const int firstHeight = d.height();
    d.ShowMessage("two", false, false, false);
    EXPECT_EQ(d.label()->text(), "one\ntwo\n");
    EXPECT_GT(d.height(), firstHeight);
    EXPECT_FALSE(d.yesButton()->isVisible());
    EXPECT_FALSE(d.timeOutBar()->isVisible());
    d.okButton()->click();
    EXPECT_FALSE(d.isVisible());
    d.ShowMessage("fresh", false, false, false);
    EXPECT_EQ(d.text(), "fresh\r\n");
}

TEST(MessageDialog, QuestionAnsweredByButtonsByCloseAndByTheSixtySecondCount)
{
    MessageDialog d;
    QList<int> answers;
    QObject::connect(&d, &MessageDialog::answered, [&](int a) { answers << a; });
    d.ShowMessage("Yes?", true, true, false);
    EXPECT_FALSE(d.okButton()->isVisible());
    d.ShowMessage("dropped", false, false, false);  // a held question takes nothing else
    d.ShowMessage("dropped too", true, false, false);
    EXPECT_EQ(d.text(), "Yes?\r\n");
    d.yesButton()->click();
    EXPECT_FALSE(d.isVisible());
    d.ShowMessage("No?", true, true, false);
    d.noButton()->click();
    d.ShowMessage("Close me", true, true, false);
    d.close();  // the window's own close button counts as No

    d.ShowMessage("Wait", true, true, false);
    for (int i = 1; i < 60; ++i)
        d.tmrTimeOut_Timer();
    EXPECT_EQ(d.timeOutBar()->Value(), 59);
    EXPECT_TRUE(d.AwaitingAnswer());
    d.tmrTimeOut_Timer();
    EXPECT_FALSE(d.AwaitingAnswer());
    EXPECT_FALSE(d.isVisible());
    EXPECT_FALSE(d.timeOutTimer()->isActive());
    EXPECT_EQ(answers, QList<int>({AnswerYes, AnswerNo, AnswerNo, AnswerNo}));
    d.ShowMessage("Again", true, true, false);  // a new question starts the count over
    d.tmrTimeOut_Timer();
    EXPECT_EQ(d.timeOutBar()->Value(), 1);
}
