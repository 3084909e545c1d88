// When a rule fires: conditions on the raw history, the exception table with
// its three consequences that are meant, stale indexes, and the notice texts.
#include "alert_world.h"
#include "model/number_text.h"

#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

TEST(AlertConditions, NewestSampleAgainstLimitsRangesAndNumbers)
{
    struct Case { qint16 condition; double limit, start, end, number, value; bool fires; };
    const Case cases[] = {
        {ExceedsLimit, 5, -1, -1, -1, 5, false}, {DropsBelowLimit, 5, -1, -1, -1, 4.9, true},
        // Ranges either way round; an end itself is neither inside nor outside.
        {OutsideRange, -1, 10, 5, -1, 4, true}, {OutsideRange, -1, 10, 5, -1, 10, false},
        {InsideRange, -1, 10, 5, -1, 7, true}, {InsideRange, -1, 5, 10, -1, 5, false},
        // An unset range is the single point -1: every other value is outside.
        {OutsideRange, -1, -1, -1, -1, 0, true},
        // Equality is exact.
        {EqualsNumber, -1, -1, -1, 1, 1.0000001, false},
    };
    for (const Case& c : cases) {
        AlertWorld w;
        w.store(0, {c.value, 0});
        Alert& a = w.add(ShowMessageAction, c.condition);
        a.cLimit = c.limit;
        a.cRangeStart = c.start;
        a.cRangeEnd = c.end;
        a.cNumber = c.number;
        EXPECT_EQ(w.firesOnce(), c.fires) << "condition " << c.condition << " value " << c.value;
    }
}

TEST(AlertConditions, EmptyHistoryReadsZeroNoLatchAndUnsetCodesNeverFire)
{
    AlertWorld w;
    w.add(ShowMessageAction, DropsBelowLimit).cLimit = 5;
    w.add(ShowMessageAction, ExceedsLimit).cLimit = 5;
    w.add(ShowMessageAction, ExceedsLimit).rEnabled = false;
    w.add(ShowMessageAction, 0);   // as a key holding only a name loads
    w.add(ShowMessageAction, -1);  // as a new Alert starts
    w.add(ShowMessageAction, 7);
    EXPECT_EQ(w.fired(), (std::vector<int>{1, 0, 0, 0, 0, 0}));
    // No latch: the next pass fires again.
    EXPECT_EQ(w.fired(), (std::vector<int>{1, 0, 0, 0, 0, 0}));
    w.store(0, {9, 0});
    EXPECT_EQ(w.fired(), (std::vector<int>{0, 1, 0, 0, 0, 0}));
}

TEST(AlertExceptions, SampleWindowsFireOnlyWhileTheyAreEmpty)
{
    // Exceptions 1 and 2 get false from the exception test on each passing
    // sample, so with a window of one sample or more the rule never fires.
    AlertWorld w;
    for (int i = 0; i < 5; ++i)
        w.store(0, {50, 0});
    w.Sensors[0].SampleEverySeconds = 5;
    w.add(ShowMessageAction, ExceedsLimit, WithinLastSamples).eNumber = 3;
    w.add(ShowMessageAction, ExceedsLimit, WithinLastSamples).eNumber = -1;  // unset: no window
    w.add(ShowMessageAction, ExceedsLimit, WithinLastSamples).eNumber = 0.5;
    w.add(ShowMessageAction, ExceedsLimit, ForLengthOfTime).eTimeLengthSeconds = 10;  // 2 samples
    w.add(ShowMessageAction, ExceedsLimit, ForLengthOfTime).eTimeLengthSeconds = 4;   // 0.8: none
    // An empty window fires without looking at the Node at all.
    for (Alert& a : w.tester.Alerts)
        a.cLimit = 10;
    Alert& blind = w.add(ShowMessageAction, ExceedsLimit, ForLengthOfTime);
    blind.eTimeLengthSeconds = 1;
    blind.cLimit = 1000;
    EXPECT_EQ(w.fired(), (std::vector<int>{0, 1, 1, 0, 1, 1}));
}

TEST(AlertExceptions, TimeFrameSilencesInsideAndFiresOutsideWithoutLookingAtTheNode)
{
    AlertWorld w;
    w.store(0, {50, 0});
    const double now = momentNumber(w.clock.now());  // 20260305090741
    Alert& inside = w.add(ShowMessageAction, ExceedsLimit, WithinTimeFrame);
    inside.cLimit = 10;
    inside.eTimeFrameStart = now - 1;
    inside.eTimeFrameEnd = now + 1;
    Alert& outside = w.add(ShowMessageAction, ExceedsLimit, WithinTimeFrame);
    outside.cLimit = 1000;  // the Node is below it, yet the rule fires
    outside.eTimeFrameStart = now;
    outside.eTimeFrameEnd = now + 100;  // the bounds themselves are outside
    EXPECT_EQ(w.fired(), (std::vector<int>{0, 1}));
}

TEST(AlertExceptions, OtherNodeTableAsWritten)
{
    struct Case { qint16 exception; double limit, start, end, number, other; bool fires; };
    const Case cases[] = {
        {OtherExceeds, 20, -1, -1, -1, 20, false}, {OtherDropsBelow, 20, -1, -1, -1, 19, true},
        // Entered high to low: "above the start or below the end".
        {OtherOutsideRange, -1, 10, 5, -1, 7, false}, {OtherOutsideRange, -1, 10, 5, -1, 11, true},
        {OtherInsideRange, -1, 10, 5, -1, 11, false},
        // Low to high joins with "or": true for nearly every value.
        {OtherInsideRange, -1, 5, 10, -1, -100, true}, {OtherInsideRange, -1, 5, 5, -1, 5, false},
        {OtherEqualsNumber, -1, -1, -1, 3, 3.5, false}, {-1, -1, -1, -1, -1, 0, true}, {42, -1, -1, -1, -1, 0, true},
    };
    for (const Case& c : cases) {
        AlertWorld w;
        w.store(0, {50, 0});
        w.store(1, {0, c.other});
        Alert& a = w.add(ShowMessageAction, ExceedsLimit, c.exception);
        a.cLimit = 10;
        a.eSensor = 1;
        a.eNode = 1;
        a.eLimit = c.limit;
        a.eRangeStart = c.start;
        a.eRangeEnd = c.end;
        a.eNumber = c.number;
        EXPECT_EQ(w.firesOnce(), c.fires) << "exception " << c.exception << " other " << c.other;
    }
}

TEST(AlertStaleness, MissingGraphsNodesAndZeroIntervalsPassTheAlertOverAndTheRestGoOn)
{
    AlertWorld w;
    w.store(0, {50, 50});
    w.add(ShowMessageAction, ExceedsLimit).cSensor = 7;
    w.add(ShowMessageAction, ExceedsLimit).cNode = 2;
    Alert& otherGone = w.add(ShowMessageAction, ExceedsLimit, OtherExceeds);
    otherGone.eSensor = 0;
    otherGone.eNode = 9;
    w.add(ShowMessageAction, ExceedsLimit, ForLengthOfTime).eTimeLengthSeconds = 10;
    w.add(ShowMessageAction, ExceedsLimit);  // a plain rule after them all
    Alert& huge = w.add(ShowMessageAction, DropsBelowLimit, WithinLastSamples);
    huge.eNumber = 1e12;
    huge.cSensor = 1;  // bounded by the 16-bit sample index, or it would take hours
    for (Alert& a : w.tester.Alerts)
        a.cLimit = 10;
    w.Sensors[0].SampleEverySeconds = 0;
    EXPECT_EQ(w.fired(), (std::vector<int>{0, 0, 0, 0, 1, 0}));

    // A Graph whose window is gone, and a window list shorter than the Graphs.
    w.GraphForms[0].reset();
    EXPECT_EQ(w.fired(), (std::vector<int>{0, 0, 0, 0, 0, 0}));
    w.GraphForms.clear();
    EXPECT_EQ(w.fired(), (std::vector<int>{0, 0, 0, 0, 0, 0}));
}

TEST(AlertMoments, FiresOnlyAtTheExactSecond)
{
    AlertWorld w;
    Alert& a = w.add(ShowMessageAction, AtMoment, ForLengthOfTime);
    a.cSensor = 99;
    a.cDateValue = 20260305090742;  // neither the Node nor the exception plays a part
    for (const bool fires : {false, true, false}) {
        EXPECT_EQ(w.fired(), std::vector<int>{int(fires)});
        w.clock.advance(1000);
    }
}

TEST(AlertNotices, SubjectAndBodyOfEachCondition)
{
    const QString intro = QStringLiteral("This is an automated email from Ormivane\r\n\r\n");
    struct Case { qint16 condition; QString subject, body; };
    const QString cur = QStringLiteral("\r\n\r\nDisk\u00e9 has a current value of 7.5");
    const Case cases[] = {
        {DropsBelowLimit, "Disk\u00e9 has dropped below 1E+15",
         intro + "Disk\u00e9 has dropped below your limit of 1E+15" + cur},
        {OutsideRange, "Disk\u00e9 has fallen outside of 1E-05 and 2.5",
         intro + "Disk\u00e9 has fallen outside of the range of 1E-05 to 2.5" + cur},
        {InsideRange, "Disk\u00e9 has fallen inside of 10 to 5",
         intro + "Disk\u00e9 has fallen inside of your range of 10 to 5" + cur},
        {EqualsNumber, "Disk\u00e9 has reached 7.5", intro + "Disk\u00e9 has reached 7.5" + cur},
    };
    for (const Case& c : cases) {
        AlertWorld w;
        w.Sensors[0].Nodes[0].Name = QStringLiteral("Disk") + QChar(u'\0') + QStringLiteral("\u00e9");
        w.store(0, {3, 0});
        w.store(0, {7.5, 0});
        Alert& a = w.add(ShowMessageAction, c.condition);
        a.cLimit = 1e15;
        a.cNumber = 7.5;
        a.cRangeStart = c.condition == OutsideRange ? 1e-5 : 10;
        a.cRangeEnd = c.condition == OutsideRange ? 2.5 : 5;
        ASSERT_TRUE(w.firesOnce()) << c.condition;
        EXPECT_EQ(w.tester.AlertMailSubject, c.subject);
        EXPECT_EQ(w.tester.AlertMailBody, c.body);
        EXPECT_EQ(w.Sensors[0].Nodes[0].Name.size(), 6);  // the Node keeps its name
    }

    AlertWorld w;
    w.add(ShowMessageAction, AtMoment).cDateValue = 20260305090741;
    ASSERT_TRUE(w.firesOnce());
    EXPECT_EQ(w.tester.AlertMailSubject, "The time and date has reached 03/05/2026 09:07:41");
    EXPECT_EQ(w.tester.AlertMailBody,
              intro + "The time and date has reached you value of 03/05/2026 09:07:41\r\n\r\n"
                      "The current time and date is " + defaultDateTimeText(w.clock.now()));
}

TEST(AlertPass, ClosingDuringAnActionEndsThePassAndEveryFiringIsReported)
{
    AlertWorld w;
    w.store(0, {50, 0});
    w.add(ShowMessageAction, ExceedsLimit).aMessage = QStringLiteral("first");
    w.add(ShutDownComputer, ExceedsLimit);  // TickCount 500: no question
    w.add(ShowMessageAction, ExceedsLimit).aMessage = QStringLiteral("never");
    std::vector<int> reported;
    w.tester.onAlertFired = [&](int i) { reported.push_back(i); };
    w.tester.TestAlerts();
    EXPECT_EQ(reported, (std::vector<int>{0, 1}));
    EXPECT_EQ(w.host.calls, QStringList({"message:first", "exit:1"}));
    EXPECT_TRUE(w.Closing);
    // Once closing, nothing is tested at all.
    reported.clear();
    w.tester.TestAlerts();
    EXPECT_TRUE(reported.empty());
}
