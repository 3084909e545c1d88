// What a person sees of a Log Graph: the refreshed picture with the cross-hair
// on its points, and the two clocks of the log viewer panel.
#include "../logging/log_corpus.h"
#include "display/colors.h"
#include "display/cross_hair.h"
#include "display/displayed_graph.h"
#include "display/log_clocks.h"
#include "model/catalogue.h"
#include "model/key_value_store.h"
#include "monitor/log_work.h"
#include "monitor/monitor.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace orm::test {
namespace {

struct QuietHost final : LogWorkHost {
    void setStatus(const QString&) override {}
    void showMessage(const QString&) override {}
    void letEventsThrough() override {}
};

TEST(LogGraphPicture, TheRefreshedCurveAndTheCrossHairOnItsPoints)
{
    QTemporaryDir dir;
    qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral("config")).toLocal8Bit());
    ASSERT_TRUE(writeCorpus(dir.path()));
    ManualClock clock;
    MemoryStore store;
    auto sources = SourceSet::forLinux();
    DisplayedGraphFactory views(QString(), dir.path());
    MonitorOptions options;
    options.dataDir = dir.path();
    Monitor monitor(options, clock, store, *sources, views);
    views.bind(monitor.Sensors);
    ASSERT_TRUE(monitor.startUp());
    monitor.AddSensor(true);
    Graph& g = monitor.Sensors[1];
    g.LogStart = CorpusStart;
    g.LogEnd = CorpusEnd;
    g.Nodes.push_back(g.Nodes[0]);
    g.Nodes[1].PenColor = 0x0000FF;  // red
    chooseLogField(monitor.Sensors, 1, 0, QStringLiteral("CPU0"));
    chooseLogField(monitor.Sensors, 1, 1, QStringLiteral("PING_RTT_10.0.0.1"));
    QuietHost host;
    LogWork work(monitor, host);
    work.refreshGraphClicked(1);

    auto* picture = dynamic_cast<DisplayedGraph*>(monitor.GraphForms[1].get());
    ASSERT_NE(picture, nullptr);
    // The points stand at the right end of the history (positions from 1), as the newest of a live Graph do.
    const LabelList& labels = picture->history().labels();
    const int count = labels.count();
    ASSERT_EQ(labels.at(count - 11), QStringLiteral("3/4/26 12:00"));
    EXPECT_EQ(labels.at(count - 12), QStringLiteral("||"));
    // Over the third point, in the top rows: the higher of the two values there, 7, and its moment.
    const int third = count - 9;
    const CrossHairPoint p = crossHairAt(monitor.Sensors, 1, *picture, third + 55 - 2, 36);
    ASSERT_TRUE(p.shown);
    EXPECT_EQ(p.column, third);
    EXPECT_EQ(p.node, 1);
    EXPECT_EQ(p.value, 7);
    EXPECT_TRUE(p.dataText.contains(QStringLiteral("3/4/26 12:00"))) << p.dataText.toStdString();
    EXPECT_EQ(p.nameText, QStringLiteral("Ping RTT 10.0.0.1 (Ping)"));
    // The curve is on the picture in the second Node's pen.
    const QImage shot = picture->windowPicture();
    int red = 0;
    for (int y = 35; y < shot.height(); ++y)
        for (int x = 55; x < shot.width(); ++x)
            red += shot.pixelColor(x, y) == fromBgr(0x0000FF) ? 1 : 0;
    EXPECT_GT(red, 5);
}

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
