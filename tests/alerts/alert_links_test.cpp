// The links of a rule's sentence: which word edits which field, what each shows
// once set, and the bad values that fall back.
#include "alerts/alert_links.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace orm;

namespace {

TEST(AlertLinks, ReplacementsShowTagAndValueOnceSet)
{
    std::vector<Graph> sensors(2);
    sensors[0].Nodes.resize(1);
    sensors[1].Name = "Net", sensors[1].Nodes.resize(2);
    sensors[1].Nodes[0].Name = "In";
    sensors[1].Nodes[1].Name = "Out";

    Alert a;
    // Unset fields leave the word, "Start" always shows its state.
    EXPECT_EQ(linkReplacement(QStringLiteral("Limit1"), a, sensors), QStringLiteral("Limit1"));
    EXPECT_EQ(linkReplacement(QStringLiteral("Time Frame"), a, sensors), QStringLiteral("Time Frame"));
    EXPECT_EQ(linkReplacement(QStringLiteral("Start"), a, sensors), QStringLiteral("rStart"));

    a.aSensor = 1;
    a.aNode = 1;
    a.cSensor = 0;
    a.cNode = 0;
    a.cLimit = 0.5;
    a.eTimeLengthSeconds = 90;
    a.eRangeStart = -1;
    a.eRangeEnd = 3;  // one end unset is still a range
    a.eTimeFrameStart = 20240101000000.0;
    a.eTimeFrameEnd = 20241231235959.0;
    const std::pair<const char*, const char*> expected[] = {
        {"Node1", "dGraph (Net), Node (Out)"}, {"Graph", "eGraph (Net)"}, {"Limit1", "h0.5"},
        {"Range2", "n-1 to 3"}, {"Length of Time", "p90 Seconds"}, {"(Settings)", "(Settings)"},
        {"Time Frame", "q01/01/2024 00:00:00 to 12/31/2024 23:59:59"},
    };
    for (const auto& [word, shown] : expected)
        EXPECT_EQ(linkReplacement(QLatin1String(word), a, sensors), QLatin1String(shown)) << word;

    // A Graph or Node that is gone leaves the word.
    a.aNode = 2;
    a.cSensor = 7;
    EXPECT_EQ(linkReplacement(QStringLiteral("Node1"), a, sensors), QStringLiteral("Node1"));
    EXPECT_EQ(linkReplacement(QStringLiteral("Graph"), a, sensors), QStringLiteral("eGraph (Net)"));
    EXPECT_EQ(linkReplacement(QStringLiteral("Node2"), a, sensors), QStringLiteral("Node2"));
}

TEST(AlertLinks, MomentsThatAreNoDateFallBackToThePresent)
{
    const QDateTime present(QDate(2024, 6, 1), QTime(12, 0, 0));
    EXPECT_EQ(momentNumber(QDate(2024, 2, 29), QTime(7, 8, 9)), 20240229070809.0);
    EXPECT_EQ(momentDateTime(20240229070809.0, present), QDateTime(QDate(2024, 2, 29), QTime(7, 8, 9)));
    EXPECT_EQ(momentDateTime(-1, present), present);  // unset
    EXPECT_EQ(momentDateTime(20231399000000.0, present), present);  // no such month
    EXPECT_EQ(momentDateTime(12345, present), present);              // too few digits for a year
}

TEST(AlertLinks, TheExecutableFilterAlsoTakesFilesWithTheExecutableBit)
{
    EXPECT_TRUE(fileMatchesFilter(QStringLiteral("Bell.WAV"), false, QStringLiteral("*.wav")));
    EXPECT_FALSE(fileMatchesFilter(QStringLiteral("bell.wav.txt"), false, QStringLiteral("*.wav")));
    EXPECT_TRUE(fileMatchesFilter(QStringLiteral("README"), false, QStringLiteral("*.*")));  // every file
    EXPECT_TRUE(fileMatchesFilter(QStringLiteral("backup"), true, QStringLiteral("*.exe")));
    EXPECT_FALSE(fileMatchesFilter(QStringLiteral("notes.txt"), false, QStringLiteral("*.exe")));
    EXPECT_FALSE(fileMatchesFilter(QStringLiteral("tool"), true, QStringLiteral("*.wav")));
}

TEST(AlertLinks, CodesBeyondTheTableGiveNoClause)
{
    const AlertOptionTable table = FillAlertOptions();
    Alert a;
    EXPECT_EQ(clauseRows(a, table), (std::array<int, 3>{0, 0, 0}));
    a.rAction = 9;
    a.rCondition = 6;
    a.rException = 0;  // "[NONE]"
    EXPECT_EQ(clauseRows(a, table), (std::array<int, 3>{0, 14, 0}));
    a.rAction = 3;
    a.rException = 8;
    EXPECT_EQ(clauseRows(a, table), (std::array<int, 3>{3, 14, 22}));
}

}  // namespace
