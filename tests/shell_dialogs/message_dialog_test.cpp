#include "shell/message_dialog.h"
#include "shell/progress_bar.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

using namespace orm;

TEST(MessageState, NoticesGatherAndHeldQuestionDropsThem)
{
    MessageState s;
    EXPECT_TRUE(s.show("first", false, false, false));
    EXPECT_TRUE(s.show("second", false, false, false));
    EXPECT_EQ(s.caption, "first\r\nsecond\r\n");
    EXPECT_FALSE(s.timed);
    EXPECT_FALSE(s.AwaitingAnswer);

    int stops = 0;
    s.stopSound = [&] { ++stops; };
    s.ok();
    EXPECT_TRUE(s.caption.isEmpty());
    EXPECT_EQ(stops, 1);  // Ok ends a looping alert sound

    EXPECT_TRUE(s.show("Restart?", true, true, false));
    EXPECT_TRUE(s.Held);
    EXPECT_FALSE(s.show("late notice", false, false, false));
    EXPECT_FALSE(s.show("another question", true, false, false));
    EXPECT_EQ(s.caption, "Restart?\r\n");
}

TEST(MessageState, CountDownAnswersNoOnTheSixtiethTick)
{
    MessageState s;
    s.Answer = AnswerYes;
    s.show("q", true, true, false);
    for (int i = 1; i < TimeOutLimit; ++i)
        ASSERT_FALSE(s.timeOutTick()) << i;
    EXPECT_TRUE(s.AwaitingAnswer);
    EXPECT_EQ(s.TimeOutTicks, 59);
    EXPECT_TRUE(s.timeOutTick());
    EXPECT_EQ(s.Answer, AnswerNo);
    EXPECT_FALSE(s.AwaitingAnswer);
    EXPECT_FALSE(s.Held);
    EXPECT_FALSE(s.timerRunning);
    EXPECT_FALSE(s.timeOutTick());  // the stopped count stays at 60
    EXPECT_EQ(s.TimeOutTicks, 60);

    // A new question starts the count over.
    s.show("again", true, false, false);
    EXPECT_EQ(s.TimeOutTicks, 0);
    s.timeOutTick();
    s.answerWith(AnswerYes);
    EXPECT_EQ(s.Answer, AnswerYes);
    EXPECT_FALSE(s.timerRunning);
}

TEST(MessageState, GraphicalShowsPictureByNumberAndKeepsText)
{
    MessageState s;
    s.show("line", false, false, false);
    s.show("0", false, false, true);
    EXPECT_EQ(s.graphicalIndex, 0);
    EXPECT_EQ(s.caption, "line\r\n");
    s.show("junk", false, false, true);
    EXPECT_EQ(s.graphicalIndex, 0);
    s.show("next", false, false, false);
    EXPECT_EQ(s.graphicalIndex, -1);
}

TEST(MessageLayout, ButtonsAndBarSitUnderTheLabel)
{
    const QRect label(720, 120, 3000, 600);
    const QSize button(1215, 375);
    const MessageLayout l = messageLayout(label, button);
    EXPECT_EQ(l.client.width(), 3000 + 720 + 300);
    EXPECT_EQ(l.client.height(), 720 + 375 + 210);
    EXPECT_EQ(l.ok.top(), 720 + 90);
    EXPECT_EQ(l.ok.center().x() / 10, (720 + 1500) / 10);
    EXPECT_EQ(l.no.left() - (l.yes.right() + 1), 60);
    EXPECT_EQ(l.yes.top(), l.ok.top());
    EXPECT_EQ(l.progress.top(), l.ok.top() - 300);
    EXPECT_EQ(l.progress.width(), l.client.width() - 360);
    // A narrow label: the button sets the width.
    EXPECT_EQ(messageLayout(QRect(720, 120, 100, 200), button).client.width(), 1215 + 720 + 300);
}

TEST(MessageDialog, NoticesMakeOneWindowWithLines)
{
    MessageDialog d;
    int stops = 0;
    d.setStopSound([&] { ++stops; });
    EXPECT_EQ(d.windowTitle(), "Ormivane Notification Message");
    d.ShowMessage("one", false, false, false);
    const int firstHeight = d.height();
    d.ShowMessage("two", false, false, false);
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(d.label()->text(), "one\ntwo\n");
    EXPECT_GT(d.height(), firstHeight);
    EXPECT_TRUE(d.okButton()->isVisible());
    EXPECT_FALSE(d.yesButton()->isVisible());
    EXPECT_FALSE(d.timeOutBar()->isVisible());
    d.okButton()->click();
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(stops, 1);
    d.ShowMessage("fresh", false, false, false);
    EXPECT_EQ(d.text(), "fresh\r\n");
}

TEST(MessageDialog, QuestionAnsweredByButtonsAndByTheCount)
{
    MessageDialog d;
    QList<int> spy;
    QObject::connect(&d, &MessageDialog::answered, [&](int a) { spy << a; });

    d.ShowMessage("Yes?", true, true, false);
    EXPECT_TRUE(d.AwaitingAnswer());
    EXPECT_TRUE(d.timeOutTimer()->isActive());
    EXPECT_EQ(d.timeOutTimer()->interval(), 1000);
    EXPECT_TRUE(d.yesButton()->isVisible());
    EXPECT_TRUE(d.timeOutBar()->isVisible());
    EXPECT_FALSE(d.okButton()->isVisible());
    d.ShowMessage("dropped", false, false, false);
    EXPECT_EQ(d.text(), "Yes?\r\n");
    d.yesButton()->click();
    EXPECT_EQ(d.Answer(), AnswerYes);
    EXPECT_FALSE(d.isVisible());

    d.ShowMessage("No?", true, true, false);
    d.noButton()->click();
    EXPECT_EQ(d.Answer(), AnswerNo);

    d.ShowMessage("Wait", true, true, false);
    for (int i = 0; i < 30; ++i)
        d.tmrTimeOut_Timer();
    EXPECT_EQ(d.timeOutBar()->Value(), 30);
    EXPECT_TRUE(d.AwaitingAnswer());
    for (int i = 0; i < 30; ++i)
        d.tmrTimeOut_Timer();
    EXPECT_FALSE(d.AwaitingAnswer());
    EXPECT_EQ(d.Answer(), AnswerNo);
    EXPECT_FALSE(d.Held());
    EXPECT_FALSE(d.isVisible());
    EXPECT_FALSE(d.timeOutTimer()->isActive());
    ASSERT_EQ(spy.count(), 3);
    EXPECT_EQ(spy, QList<int>({AnswerYes, AnswerNo, AnswerNo}));

    // The window's own close button on a question counts as No.
    d.ShowMessage("Close me", true, true, false);
    d.close();
    EXPECT_FALSE(d.AwaitingAnswer());
    EXPECT_EQ(d.Answer(), AnswerNo);
    EXPECT_EQ(spy.count(), 4);
}
