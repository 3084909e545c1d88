#include "shell/custom_tool_tip.h"

#include <QApplication>
#include <QCheckBox>
#include <QEnterEvent>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QToolTip>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// Two helped controls (one nested), one whose text is set at run time, one without help.
struct Form {
    QWidget form;
    QLineEdit* edit = new QLineEdit(new QWidget(&form));
    QCheckBox* check = new QCheckBox(&form);
    QLabel* dynamic = new QLabel(&form);
    QLabel* plain = new QLabel(&form);
    QHash<QString, QString> texts{{"txtSampleSeconds", "Seconds between samples."},
                                  {"chkTopMost", "Keeps the window on top."},
                                  {"lblDataRetrieval", ""},
                                  {"notOnThisForm", "Never registered."}};
    Form()
    {
        edit->setObjectName("txtSampleSeconds");
        check->setObjectName("chkTopMost");
        dynamic->setObjectName("lblDataRetrieval");
    }
};

void hover(QWidget* w)
{
    QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QApplication::sendEvent(w, &enter);
    QHelpEvent help(QEvent::ToolTip, QPoint(2, 2), QPoint(2, 2));
    QApplication::sendEvent(w, &help);
}

}  // namespace

TEST(CustomToolTip, TheSettingSwitchesTipsOnAndOff)
{
    Form f;
    CustomToolTip tip;
    QSignalSpy shown(&tip, &CustomToolTip::tipShown);
    tip.InitToolTips(&f.form, false, "Ormivane", f.texts);
    hover(f.edit);
    tip.ShowTip(f.edit, "anything");
    EXPECT_EQ(shown.count(), 0);

    // On twice: one registration per helped control, the empty text included, the newest title.
    tip.InitToolTips(&f.form, true, "Old", f.texts);
    tip.InitToolTips(&f.form, true, "Ormivane", f.texts);
    EXPECT_EQ(tip.toolCount(), 3);
    f.check->setToolTip("own tip");  // taken over: a widget's own tip can't replace ours
    hover(f.check);
    EXPECT_EQ(tip.lastShown(), QString("Ormivane\n\nKeeps the window on top."));
    EXPECT_FALSE(QToolTip::text().contains("own tip"));
    const int before = shown.count();
    hover(f.plain);
    hover(f.dynamic);  // registered, but nothing to say yet
    EXPECT_EQ(shown.count(), before);

    tip.SetTip(f.dynamic, "Retrieval Times:\nData: 3 mS");
    tip.ShowTip(f.dynamic, "row text");  // a one-off text leaves the registered one in place
    hover(f.dynamic);
    EXPECT_EQ(tip.lastShown(), QString("Ormivane\n\nRetrieval Times:\nData: 3 mS"));

    // Destroyed (twice does no harm), it shows nothing more.
    const int on = shown.count();
    tip.DestroyToolTip();
    tip.DestroyToolTip();
    hover(f.check);
    tip.ShowTip(f.edit, "late");
    EXPECT_EQ(shown.count(), on);
}

TEST(CustomToolTip, ShowTimeIsClampedAndGoneControlsAreForgotten)
{
    EXPECT_EQ(CustomToolTip::SetAutoPop(40000), 32767);
    EXPECT_EQ(CustomToolTip::SetAutoPop(-5), 0);
    Form f;
    auto tip = std::make_unique<CustomToolTip>();
    tip->InitToolTips(&f.form, true, "T", f.texts);
    tip->ShowTip(f.edit, "long", 40000);
    EXPECT_EQ(tip->lastMilliseconds(), 32767);

    delete f.check;
    EXPECT_EQ(tip->toolCount(), 2);
    tip.reset();  // the tip going first leaves the controls clean
    hover(f.edit);
}

TEST(WrapTipLines, BreaksOnlyAtSpacesWithinTheWidth)
{
    const QFontMetrics fm(QToolTip::font());
    const QString text = "This area shows your data retrieval rates. It is very important to keep these numbers "
                         "very low.\nData: 3 mS\n\nAbsurdlylongsinglewordthatcannotbebrokenanywhereatallreally end";
    const QString wrapped = wrapTipLines(text, fm, 150);
    EXPECT_EQ(QString(wrapped).replace('\n', ' ').simplified(), QString(text).replace('\n', ' ').simplified());
    EXPECT_TRUE(wrapped.contains("\nData: 3 mS\n\n"));
    for (const QString& line : wrapped.split('\n'))
        if (line.contains(' '))
            EXPECT_LE(fm.horizontalAdvance(line), 150) << line.toStdString();
    EXPECT_TRUE(wrapped.contains("\nAbsurdlylongsinglewordthatcannotbebrokenanywhereatallreally\nend"));
}
