// The log readers of the control panel on a started Monitor over the crafted
// corpus: status texts, refusals, the stop, and Graphs that change meanwhile.
#include "../logging/log_corpus.h"
#include "../monitor/monitor_fixture.h"
#include "../store/print_qstring.h"
#include "monitor/log_work.h"

namespace orm::test {
namespace {

class LogWorkTest : public MonitorFixture, public LogWorkHost {
protected:
    void SetUp() override
    {
        MonitorFixture::SetUp();
        ASSERT_TRUE(writeCorpus(dataDir()));
        monitor->AddSensor(true);  // Graph 1: a Log Graph over the corpus
        Graph& g = monitor->Sensors[1];
        g.LogStart = CorpusStart;
        g.LogEnd = CorpusEnd;
        g.Nodes[0].LogItemView = QStringLiteral("CPU0");
        g.Nodes.push_back(g.Nodes[0]);
        g.Nodes[1].LogItemView = QStringLiteral("PING_RTT_10.0.0.1");
        work = std::make_unique<LogWork>(*monitor, *this);
        work->pumpEveryMs = 0;  // every block lets events through
    }
    QString dataDir() const { return dir.filePath(QStringLiteral("data")); }
    std::vector<double> points(int node) { return view(1).samples().at(size_t(node)); }

    // LogWorkHost
    void setStatus(const QString& text) override { statuses << text; }
    void showMessage(const QString& text) override { messages << text; }
    void letEventsThrough() override
    {
        ++pumps;
        if (onPump)
            onPump();
    }
    void graphDrawn(int graph) override { drawn << graph; }
    void headersRead(int graph) override { headers << graph; }
    void openExport(const QString& path) override { opened << path; }

    std::unique_ptr<LogWork> work;
    QStringList statuses, messages, opened;
    QList<int> drawn, headers;
    int pumps = 0;
    std::function<void()> onPump;
};

TEST_F(LogWorkTest, GraphRefreshDrawsTheBucketsOnTheLogGraphsView)
{
    // The click reads the headers first: the bucket size needs this range's count.
    work->refreshGraphClicked(1);
    EXPECT_EQ(statuses, (QStringList{RefreshingHeadersText, "(13) Records Found", RedrawingGraphText, ""}));
    EXPECT_EQ(points(0).size(), 12u);
    EXPECT_EQ(std::pair(points(0).back(), points(1).back()), std::pair(70.0, 14.0));  // each Node its own column
    EXPECT_EQ(view(1).labels().front(), "3/4/26 12:00");
    EXPECT_EQ(drawn.last(), 1);
    EXPECT_FALSE(work->busy() || work->StopLogWork);
    EXPECT_EQ(view(0).writes, 0);  // the live Graph is left alone

    // The same range again: no second header refresh; a new range: one.
    statuses.clear();
    work->refreshGraphClicked(1);
    EXPECT_EQ(statuses, (QStringList{RedrawingGraphText, ""}));
    monitor->Sensors[1].LogEnd = 20260305000003.0;
    statuses.clear();
    work->refreshGraphClicked(1);
    EXPECT_EQ(statuses, (QStringList{RefreshingHeadersText, "(9) Records Found", RedrawingGraphText, ""}));
    EXPECT_EQ(points(0).size(), 8u);
}

TEST_F(LogWorkTest, OneReaderAtATime)
{
    work->RefreshLogHeaders(1);
    onPump = [&] {
        onPump = nullptr;
        EXPECT_FALSE(work->ExportLog(1));
        EXPECT_FALSE(work->exportClicked(1));
        EXPECT_FALSE(work->exportClicked(0));
        work->RefreshLogHeaders(1);  // ignored: it would read beside the refresh
    };
    work->RefreshLogGraph(1);
    EXPECT_EQ(messages, (QStringList{ExportWhileRefreshingText, ExportWhileRefreshingGraphText, ExportWhileRefreshingText}));
    EXPECT_EQ(points(0).size(), 12u);

    messages.clear();
    onPump = [&] {
        onPump = nullptr;
        work->RefreshLogGraph(1);
        work->refreshGraphClicked(1);
        work->RefreshLogHeaders(1);
        EXPECT_FALSE(work->ExportLog(1));
    };
    EXPECT_TRUE(work->ExportLog(1));
    EXPECT_EQ(messages, (QStringList{RefreshWhileExportingText, RefreshWhileExportingText, RefreshWhileExportingText,
                                     ExportWhileExportingText}));
    EXPECT_EQ(opened, QStringList{work->exportPath()});
    EXPECT_FALSE(work->busy());
}

TEST_F(LogWorkTest, StopAndClosingEndTheReading)
{
    work->RefreshLogHeaders(1);
    // A click on "Stop" during the refresh: the file being read is the last.
    onPump = [&] {
        onPump = nullptr;
        work->refreshGraphClicked(1);
        EXPECT_TRUE(work->StopLogWork);
    };
    work->RefreshLogGraph(1);
    EXPECT_EQ(points(0).size(), 5u);
    EXPECT_FALSE(work->StopLogWork || work->busy());
    EXPECT_TRUE(workingCopies(dataDir() + "/Logs").isEmpty());

    // The program closing during an export: the file is left as far as it got, and not opened.
    onPump = [&] { monitor->Closing = true; };
    EXPECT_TRUE(work->ExportLog(1));
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_TRUE(QFile::exists(work->exportPath()));
}

TEST_F(LogWorkTest, GraphsThatChangeDuringTheReadingGetNothing)
{
    // A Graph deleted meanwhile: what was read belongs to no Graph any more.
    onPump = [&] { work->graphsChanged(); };
    work->RefreshLogHeaders(1);
    EXPECT_EQ(monitor->Sensors[1].LogRecordCount, 0);
    EXPECT_EQ(work->columnsGraph(), -1);
    EXPECT_TRUE(headers.isEmpty());
    monitor->Sensors[1].LogRecordCount = CorpusRecords;
    work->RefreshLogGraph(1);
    EXPECT_LT(view(1).samples().empty() ? 0 : points(0).size(), 12u);
    EXPECT_FALSE(work->busy());
    // Bad indexes do nothing.
    onPump = nullptr;
    work->RefreshLogHeaders(7);
    work->RefreshLogGraph(-1);
    EXPECT_FALSE(work->ExportLog(9));
    EXPECT_TRUE(messages.isEmpty());
}

}  // namespace
}  // namespace orm::test
