#include "shell/progress_bar.h"
#include "shell/splash.h"

#include <QLabel>
#include <QTimer>
#include <gtest/gtest.h>

using namespace orm;

TEST(SplashFade, StepsOfFourEndingAtExactly255)
{
    SplashFade f;
    f.start();
    int ticks = 0, last = 0;
    while (f.running && ticks < 1000) {
        const int a = f.step();
        ++ticks;
        if (f.running) {
            ASSERT_EQ(a, last + 4);
        }
        last = a;
    }
    EXPECT_EQ(ticks, 64);
    EXPECT_EQ(last, 255);
}

TEST(SplashWindow, StatusFadeAndRoundShape)
{
    SplashWindow s;
    EXPECT_EQ(s.windowTitle(), "Ormivane - Initialization");
    s.showSplash();
    EXPECT_LT(s.appliedOpacity(), 255);  // fading in from clear
    EXPECT_TRUE(s.fadeTimer()->isActive());
    EXPECT_EQ(s.fadeTimer()->interval(), 10);
    s.setStatus("Adaptor info....");
    EXPECT_EQ(s.status(), "Adaptor info....");

    // Corners are cut away, the middle kept.
    EXPECT_FALSE(s.mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(s.mask().contains(s.rect().center()));

    for (int i = 0; i < 64 && s.fading(); ++i)
        s.tmrFade_Timer();
    EXPECT_EQ(s.appliedOpacity(), 255);
    EXPECT_DOUBLE_EQ(s.windowOpacity(), 1.0);
    EXPECT_FALSE(s.fadeTimer()->isActive());

    s.closeSplash();
    EXPECT_FALSE(s.isVisible());
}

TEST(ProgressBar, FillWidthFollowsValue)
{
    EXPECT_EQ(progressFillWidth(0, 60, 0, 120), 0);
    EXPECT_EQ(progressFillWidth(0, 60, 30, 120), 60);
    EXPECT_EQ(progressFillWidth(0, 60, 60, 120), 120);
    EXPECT_EQ(progressFillWidth(10, 20, 15, 100), 50);
    EXPECT_EQ(progressFillWidth(0, 60, 90, 120), 120);  // beyond Max: full
    EXPECT_EQ(progressFillWidth(10, 20, 5, 100), 0);
    EXPECT_EQ(progressFillWidth(5, 5, 5, 100), 0);      // empty range
    EXPECT_EQ(progressFillWidth(0, 2000000000, 1999999999, 1000), 999);

    ProgressBar bar;
    bar.resize(104, 16);
    bar.setMax(60);
    bar.setValue(15);
    EXPECT_EQ(bar.innerWidth(), 100);
    EXPECT_EQ(bar.fillWidth(), 25);
    // It paints without fault in both looks and styles.
    for (int look : {0, 1})
        for (int style : {0, 1}) {
            bar.setProgressLook(look);
            bar.setStyle(style);
            EXPECT_FALSE(bar.grab().isNull());
        }
}

TEST(ProgressBar, RangeSettersRefuseAndKeepValues)
{
    ProgressBar bar;
    QStringList errors;
    bar.setErrorHandler([&](const QString& e) { errors << e; });
    EXPECT_TRUE(bar.setMin(10));
    EXPECT_FALSE(bar.setMin(101));
    EXPECT_FALSE(bar.setMin(-1));
    EXPECT_FALSE(bar.setMax(9));
    EXPECT_EQ(bar.Min(), 10);
    EXPECT_EQ(bar.Max(), 100);
    EXPECT_EQ(errors, QStringList({"Minimum can NOT be biger than maximum !", "Minimum can NOT be smaller then 0 !",
                                   "Maximum can NOT be smaller than minimum !"}));
    EXPECT_TRUE(bar.setMax(10));  // equal is allowed
}

TEST(ProgressBar, AutoBlockMovesAndStartsOver)
{
    ProgressBar bar;
    bar.resize(25, 10);
    bar.setAuto(true);
    EXPECT_TRUE(bar.timer()->isActive());
    bar.Timer1_Timer();
    EXPECT_EQ(bar.animationPosition(), 5 * ProgressAutoStep);
    bar.Timer1_Timer();
    EXPECT_EQ(bar.animationPosition(), 20);
    bar.Timer1_Timer();  // 30 is past the width: start over
    EXPECT_EQ(bar.animationPosition(), 0);
    bar.setAuto(false);
    EXPECT_FALSE(bar.timer()->isActive());
}
