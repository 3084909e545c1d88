#include "shell/progress_bar.h"
#include "shell/splash.h"

#include <QTimer>
#include <gtest/gtest.h>

using namespace orm;

TEST(SplashWindow, FadesInToSolidAndIsRound)
{
    SplashWindow s;
    s.showSplash();
    EXPECT_LT(s.appliedOpacity(), 255);  // fading in from clear
    EXPECT_FALSE(s.mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(s.mask().contains(s.rect().center()));
    int ticks = 0;
    for (; ticks < 100 && s.fading(); ++ticks)
        s.tmrFade_Timer();
    EXPECT_LE(ticks, 64);
    EXPECT_EQ(s.appliedOpacity(), 255);  // exactly, though the steps are of four
    EXPECT_FALSE(s.fadeTimer()->isActive());
    s.closeSplash();
    EXPECT_FALSE(s.isVisible());
}

TEST(ProgressBar, FillStaysInsideAndBadRangesAreRefused)
{
    EXPECT_EQ(progressFillWidth(0, 60, 90, 120), 120);  // beyond Max: full
    EXPECT_EQ(progressFillWidth(10, 20, 5, 100), 0);
    EXPECT_EQ(progressFillWidth(5, 5, 5, 100), 0);  // empty range
    EXPECT_EQ(progressFillWidth(0, 2000000000, 1999999999, 1000), 999);

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
