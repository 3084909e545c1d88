#include "monitor/monitor.h"

#include <gtest/gtest.h>

using namespace orm;

TEST(RateRule, FirstSampleIsZeroThenDeltaOverSeconds)
{
    Node n;
    EXPECT_EQ(rateRule(n, 5000, 0), 0);
    EXPECT_EQ(n.LastRawValue, 5000);
    EXPECT_EQ(rateRule(n, 7000, 2), 1000);
    EXPECT_EQ(rateRule(n, 7000, 1), 0);
}

TEST(RateRule, AFallingCounterGivesANegativeRate)
{
    Node n;
    rateRule(n, 9000, 1);
    EXPECT_EQ(rateRule(n, 1000, 1), -8000);
}

TEST(RateRule, ACounterAtZeroRestartsTheBaseline)
{
    Node n;
    EXPECT_EQ(rateRule(n, 0, 1), 0);
    EXPECT_EQ(rateRule(n, 4000, 1), 0);  // LastRawValue 0 counts as never read
    EXPECT_EQ(rateRule(n, 6000, 1), 2000);
}

TEST(RateRule, ASlowGraphGetsTheMeanOverItsInterval)
{
    Node n;
    rateRule(n, 1e6, 0);
    EXPECT_EQ(rateRule(n, 1e6 + 600000, 60), 10000);
}

TEST(PercentageRule, ByMeasuringAndDataType)
{
    const QString pct = QStringLiteral("percent"), bytes = QStringLiteral("bytes");
    EXPECT_EQ(percentageRule(0, bytes, 8000, 2000), 8000);
    EXPECT_EQ(percentageRule(1, bytes, 8000, 2000), 6000);
    EXPECT_EQ(percentageRule(2, bytes, 8000, 2000), 2000);
    EXPECT_EQ(percentageRule(0, pct, 8000, 2000), 100);
    EXPECT_EQ(percentageRule(1, pct, 8000, 2000), 75);
    EXPECT_EQ(percentageRule(2, pct, 8000, 2000), 25);
    EXPECT_EQ(percentageRule(3, pct, 8000, 2000), 0);
    EXPECT_EQ(percentageRule(-1, bytes, 8000, 2000), 0);
}

TEST(PercentageRule, ATotalOfZeroReadsZero)
{
    EXPECT_EQ(percentageRule(1, QStringLiteral("percent"), 0, 0), 0);
    EXPECT_EQ(percentageRule(2, QStringLiteral("percent"), 0, 0), 0);
}
