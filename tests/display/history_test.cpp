#include "display/node_history.h"

#include <gtest/gtest.h>

using namespace orm;

TEST(NodeHistory, TrimsLevelsAndKeepsOrder)
{
    NodeHistory h;
    h.reset(2);
    for (int t = 1; t <= 5; ++t) {
        h.addSample(1, t, QString::number(t), 3);
        if (t > 3)  // a Node added later is shorter
            h.addSample(2, 10 * t, QString::number(t), 3);
    }
    EXPECT_EQ(h.nodeValue(0, 2), 3);
    EXPECT_EQ(h.nodeValue(0, 3), 0.0);  // equal to Count

    h.level(5);  // fillers in front of each list, so that the newest stay side by side
    EXPECT_EQ(h.labels().at(2), "||");
    EXPECT_EQ(h.samples(1).at(2), -1);
    ASSERT_EQ(h.samples(2).count(), 5);
    EXPECT_EQ(h.samples(2).at(3), -1);
    EXPECT_EQ(h.samples(2).at(5), 50);

    // A long run keeps its order through the compaction of the lists.
    h.reset(1);
    for (int t = 0; t < 5000; ++t)
        h.addSample(1, t, {}, 490);
    ASSERT_EQ(h.samples(1).count(), 490);
    for (int p = 1; p <= 490; ++p)
        ASSERT_EQ(h.samples(1).at(p), 5000 - 490 + p - 1);
}
