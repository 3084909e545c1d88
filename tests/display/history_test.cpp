#include "display/node_history.h"

#include <gtest/gtest.h>

using namespace orm;

TEST(NodeHistory, TrimsToWidthWithLabelsFollowingTheFirstNode)
{
    NodeHistory h;
    h.reset(2);
    for (int t = 1; t <= 5; ++t) {
        h.addSample(1, t, QString::number(t), 3);
        h.addSample(2, 10 * t, QString::number(t), 3);
    }
    ASSERT_EQ(h.labels().count(), 3);
    EXPECT_EQ(h.labels().at(1), "3");
    EXPECT_EQ(h.samples(1).at(1), 3);
    EXPECT_EQ(h.nodeValue(1, 0), 50);
    EXPECT_EQ(h.nodeValue(1, 2), 30);
    EXPECT_EQ(h.nodeValue(1, 3), 0.0);  // equal to Count
    EXPECT_EQ(h.nodeValue(7, 0), 0.0);  // no such Node
    EXPECT_EQ(h.samples(9).count(), 0);  // an absent list reads empty

    // A long run keeps its order through the compaction of the lists.
    h.reset(1);
    for (int t = 0; t < 5000; ++t)
        h.addSample(1, t, {}, 490);
    ASSERT_EQ(h.samples(1).count(), 490);
    for (int p = 1; p <= 490; ++p)
        ASSERT_EQ(h.samples(1).at(p), 5000 - 490 + p - 1);
}

TEST(NodeHistory, LevellingPadsInFrontOrDropsTheOldest)
{
    NodeHistory h;
    h.reset(2);
    for (int t = 1; t <= 4; ++t)
        h.addSample(1, t, "x", 10);
    h.addSample(2, 7, "x", 10);  // a Node added later is shorter

    h.level(6);
    ASSERT_EQ(h.labels().count(), 6);
    EXPECT_EQ(h.labels().at(1), "||");
    EXPECT_EQ(h.labels().at(3), "x");
    EXPECT_EQ(h.samples(1).at(2), -1);
    EXPECT_EQ(h.samples(1).at(6), 4);
    EXPECT_EQ(h.samples(2).count(), 3);  // stays as much shorter
    EXPECT_EQ(h.samples(2).at(3), 7);
    h.level(2);
    EXPECT_EQ(h.labels().count(), 2);
    EXPECT_EQ(h.samples(1).at(1), 3);
}
