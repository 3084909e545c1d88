#include "monitor/monitor.h"

#include <gtest/gtest.h>

using namespace orm;

TEST(RateRule, FirstSampleIsZeroThenDeltaOverSecondsAndZeroRestartsTheBaseline)
{
    Node n;
    EXPECT_EQ(rateRule(n, 5000, 0), 0);
    EXPECT_EQ(rateRule(n, 7000, 2), 1000);
    EXPECT_EQ(rateRule(n, 1000, 1), -6000);  // a falling counter passes on
    EXPECT_EQ(rateRule(n, 601000, 60), 10000);  // a slow Graph gets the mean over its interval
    Node z;
    EXPECT_EQ(rateRule(z, 0, 1), 0);
    EXPECT_EQ(rateRule(z, 4000, 1), 0);  // LastRawValue 0 counts as never read
    EXPECT_EQ(rateRule(z, 6000, 1), 2000);
}

TEST(PercentageRule, ByMeasuringAndDataTypeAndATotalOfZero)
{
    const QString pct = QStringLiteral("percent"), bytes = QStringLiteral("bytes");
    EXPECT_EQ(percentageRule(1, bytes, 8000, 2000), 6000);
    EXPECT_EQ(percentageRule(2, bytes, 8000, 2000), 2000);
    EXPECT_EQ(percentageRule(1, pct, 8000, 2000), 75);
    EXPECT_EQ(percentageRule(2, pct, 8000, 2000), 25);
    EXPECT_EQ(percentageRule(3, pct, 8000, 2000), 0);
    EXPECT_EQ(percentageRule(-1, bytes, 8000, 2000), 0);
    EXPECT_EQ(percentageRule(1, pct, 0, 0), 0);
}
