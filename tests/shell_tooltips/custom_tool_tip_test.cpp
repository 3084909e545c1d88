#include "shell/custom_tool_tip.h"

#include <QApplication>
#include <QCheckBox>
#include <QEnterEvent>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QToolTip>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>

using namespace orm;

namespace {

// A small form: two helped controls, one with a dynamic (empty) text, one
// without help at all.
struct Form {
    QWidget form;
    QLineEdit* edit;
    QCheckBox* check;
    QLabel* dynamic;
    QLabel* plain;
    QHash<QString, QString> texts{{"txtSampleSeconds", "Seconds between samples."},
                                  {"chkTopMost", "Keeps the window on top."},
                                  {"lblDataRetrieval", ""},
                                  {"notOnThisForm", "Never registered."}};
    Form()
    {
        auto* frame = new QWidget(&form);  // nested: children of children count
        edit = new QLineEdit(frame);
        edit->setObjectName("txtSampleSeconds");
        check = new QCheckBox(&form);
        check->setObjectName("chkTopMost");
        dynamic = new QLabel(&form);
        dynamic->setObjectName("lblDataRetrieval");
        plain = new QLabel(&form);
        plain->setObjectName("lblPlain");
    }
};

// Plain moves reach only widgets that track the mouse (the line edit does);
// entering reaches every widget.
void mouseMove(QWidget* w)
{
    QMouseEvent e(QEvent::MouseMove, QPointF(3, 3), QPointF(3, 3), Qt::NoButton, Qt::NoButton,
                  Qt::NoModifier);
    QApplication::sendEvent(w, &e);
}

void enter(QWidget* w)
{
    QEnterEvent e(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QApplication::sendEvent(w, &e);
}

void toolTipEvent(QWidget* w)
{
    QHelpEvent e(QEvent::ToolTip, QPoint(2, 2), QPoint(2, 2));
    QApplication::sendEvent(w, &e);
}

}  // namespace

TEST(TipText, TitleThenBlankLineThenText)
{
    EXPECT_EQ(tipText("Ormivane", "Help"), QString("Ormivane\n\nHelp"));
    EXPECT_EQ(tipText("", ""), QString("\n\n"));
}

TEST(CustomToolTip, AutoPopIsClampedToTheControlsRange)
{
    EXPECT_EQ(CustomToolTip::SetAutoPop(40000), 32767);
    EXPECT_EQ(CustomToolTip::SetAutoPop(32767), 32767);
    EXPECT_EQ(CustomToolTip::SetAutoPop(15000), 15000);
    EXPECT_EQ(CustomToolTip::SetAutoPop(-5), 0);

    Form f;
    CustomToolTip tip;
    tip.InitToolTips(&f.form, true, "T", f.texts);
    tip.ShowTip(f.edit, "long", 40000);
    EXPECT_EQ(tip.lastMilliseconds(), 32767);
    tip.ShowTip(f.edit, "short", -1);
    EXPECT_EQ(tip.lastMilliseconds(), 0);
    tip.ShowTip(f.edit, "default");
    EXPECT_EQ(tip.lastMilliseconds(), 15000);
}

TEST(CustomToolTip, DisabledRegistersNothingAndShowsNothing)
{
    Form f;
    CustomToolTip tip;
    QSignalSpy shown(&tip, &CustomToolTip::tipShown);
    tip.InitToolTips(&f.form, false, "Ormivane", f.texts);
    EXPECT_FALSE(tip.active());
    EXPECT_EQ(tip.toolCount(), 0);
    mouseMove(f.edit);
    enter(f.check);
    toolTipEvent(f.edit);
    tip.ShowTip(f.edit, "anything");
    EXPECT_EQ(shown.count(), 0);
    EXPECT_TRUE(tip.lastShown().isEmpty());

    // Turning the setting off after it was on drops the registrations too.
    tip.InitToolTips(&f.form, true, "Ormivane", f.texts);
    ASSERT_EQ(tip.toolCount(), 3);
    tip.InitToolTips(&f.form, false, "Ormivane", f.texts);
    EXPECT_EQ(tip.toolCount(), 0);
    mouseMove(f.edit);
    EXPECT_EQ(shown.count(), 0);
}

TEST(CustomToolTip, HoverShowsTitleAndHelpOfTheControl)
{
    Form f;
    CustomToolTip tip;
    QSignalSpy shown(&tip, &CustomToolTip::tipShown);
    tip.InitToolTips(&f.form, true, "Ormivane", f.texts);
    EXPECT_TRUE(tip.active());
    // Every helped child, the empty text included; nothing else.
    EXPECT_EQ(tip.toolCount(), 3);

    mouseMove(f.edit);
    EXPECT_EQ(tip.lastShown(), tipText("Ormivane", "Seconds between samples."));
    EXPECT_EQ(tip.lastMilliseconds(), 15000);
    EXPECT_EQ(shown.count(), 1);

    enter(f.check);
    EXPECT_EQ(tip.lastShown(), tipText("Ormivane", "Keeps the window on top."));
    // The hover help event is taken, so a widget's own tip can't replace ours.
    f.check->setToolTip("own tip");
    toolTipEvent(f.check);
    EXPECT_EQ(tip.lastShown(), tipText("Ormivane", "Keeps the window on top."));
    EXPECT_FALSE(QToolTip::text().contains("own tip"));
    EXPECT_TRUE(QToolTip::text().contains("Keeps the window"));

    // A control without help shows nothing.
    const int before = shown.count();
    enter(f.plain);
    EXPECT_EQ(shown.count(), before);
}

TEST(CustomToolTip, DynamicTextShowsOnlyOnceSet)
{
    Form f;
    CustomToolTip tip;
    QSignalSpy shown(&tip, &CustomToolTip::tipShown);
    tip.InitToolTips(&f.form, true, "Ormivane", f.texts);
    enter(f.dynamic);
    EXPECT_EQ(shown.count(), 0);
    toolTipEvent(f.dynamic);
    EXPECT_EQ(shown.count(), 0);

    tip.SetTip(f.dynamic, "Retrieval Times:\nData: 3 mS");
    enter(f.dynamic);
    EXPECT_EQ(tip.lastShown(), tipText("Ormivane", "Retrieval Times:\nData: 3 mS"));

    // Setting a text on a control that isn't registered changes nothing.
    tip.SetTip(f.plain, "ignored");
    const int before = shown.count();
    enter(f.plain);
    EXPECT_EQ(shown.count(), before);

    // ShowTip shows a one-off text without replacing the registered help.
    tip.ShowTip(f.dynamic, "row text", 15000);
    EXPECT_EQ(tip.lastShown(), QString("row text"));
    enter(f.dynamic);
    EXPECT_EQ(tip.lastShown(), tipText("Ormivane", "Retrieval Times:\nData: 3 mS"));
}

TEST(CustomToolTip, InitTwiceKeepsOneRegistrationPerControl)
{
    Form f;
    CustomToolTip tip;
    QSignalSpy shown(&tip, &CustomToolTip::tipShown);
    tip.InitToolTips(&f.form, true, "Old", f.texts);
    const int count = tip.toolCount();
    tip.InitToolTips(&f.form, true, "New", f.texts);
    EXPECT_EQ(tip.toolCount(), count);

    mouseMove(f.edit);
    EXPECT_EQ(shown.count(), 1);
    EXPECT_EQ(tip.lastShown(), tipText("New", "Seconds between samples."));
}

TEST(CustomToolTip, DestroyStopsEverything)
{
    Form f;
    CustomToolTip tip;
    QSignalSpy shown(&tip, &CustomToolTip::tipShown);
    tip.InitToolTips(&f.form, true, "Ormivane", f.texts);
    tip.DestroyToolTip();
    EXPECT_FALSE(tip.active());
    EXPECT_EQ(tip.toolCount(), 0);
    mouseMove(f.edit);
    toolTipEvent(f.check);
    tip.ShowTip(f.edit, "late");
    EXPECT_EQ(shown.count(), 0);
    tip.DestroyToolTip();  // twice is harmless
}

TEST(CustomToolTip, ControlsThatGoAwayAreForgotten)
{
    Form f;
    auto tip = std::make_unique<CustomToolTip>();
    tip->InitToolTips(&f.form, true, "Ormivane", f.texts);
    ASSERT_EQ(tip->toolCount(), 3);
    delete f.check;
    EXPECT_EQ(tip->toolCount(), 2);
    tip->InitToolTips(&f.form, true, "Ormivane", f.texts);
    EXPECT_EQ(tip->toolCount(), 2);

    // The tip going first leaves the controls clean: hovering them is harmless.
    tip.reset();
    mouseMove(f.edit);
    SUCCEED();
}

TEST(WrapTipLines, KeepsWordsLinesAndWidth)
{
    const QFontMetrics fm(QToolTip::font());
    const QString text =
        "This area shows your data retrieval rates. It is very important to keep these numbers "
        "very low.\nData: 3 mS\n\nAbsurdlylongsinglewordthatcannotbebrokenanywhereatallreally end";
    const QString wrapped = wrapTipLines(text, fm, 150);

    // Only spaces became line ends: the words and the blank line survive.
    EXPECT_GT(wrapped.split('\n').size(), text.split('\n').size());
    EXPECT_TRUE(wrapped.contains("\nData: 3 mS\n\n"));
    EXPECT_EQ(QString(wrapped).replace('\n', ' ').simplified(),
              QString(text).replace('\n', ' ').simplified());

    for (const QString& line : wrapped.split('\n')) {
        if (line.contains(' ')) {
            EXPECT_LE(fm.horizontalAdvance(line), 150) << line.toStdString();
        }
    }
    EXPECT_TRUE(wrapped.contains("\nAbsurdlylongsinglewordthatcannotbebrokenanywhereatallreally\nend"));
}
