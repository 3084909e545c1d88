// The two clocks of the log viewer panel: the start and the end of the range.
#include "display/colors.h"
#include "display/log_clocks.h"

#include <gtest/gtest.h>

namespace orm::test {
namespace {

TEST(LogClocks, HandsAtTheStartAndTheEnd)
{
    const ClockLook look;
    const QImage clocks = drawLogClocks(QTime(3, 0), QTime(21, 0), look);
    const QPoint a = clockCentre(0, look), b = clockCentre(1, look);
    const QColor white(255, 255, 255), black(0, 0, 0), minute = fromBgr(look.minuteHand);
    // Three o'clock: the minute hand up, the hour hand right; nine in the evening: left.
    EXPECT_EQ(clocks.pixelColor(a + QPoint(0, -8)), minute);
    EXPECT_EQ(clocks.pixelColor(a + QPoint(6, 0)), black);
    EXPECT_EQ(clocks.pixelColor(a + QPoint(-6, 0)), white);
    EXPECT_EQ(clocks.pixelColor(b + QPoint(-6, 0)), black);
    EXPECT_EQ(clocks.pixelColor(b + QPoint(6, 0)), white);
    // Beside a hand the colour is blended, not painted over.
    const QColor beside = clocks.pixelColor(a + QPoint(1, -8));
    EXPECT_NE(beside, white);
    EXPECT_NE(beside, minute);
    // The rim is there; a time that is not valid has no hands.
    EXPECT_NE(clocks.pixelColor(a + QPoint(0, -look.radius)), white);
    const QImage empty = drawLogClocks(QTime(), QTime(), look);
    EXPECT_EQ(empty.pixelColor(a + QPoint(0, -8)), white);
    EXPECT_EQ(empty.pixelColor(a + QPoint(6, 0)), white);
}

}  // namespace
}  // namespace orm::test
