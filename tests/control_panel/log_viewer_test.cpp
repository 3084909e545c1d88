// The log viewer panel of the control panel on a started Monitor over the
// crafted corpus: a Log Graph from imgViewLogs, the pickers writing the range,
// a column picked for the selected Node, the refresh with its "Stop" caption,
// the export and its refusal, all through the panel's own controls.
#include "../logging/log_corpus.h"
#include "panel_fixture.h"
#include "shell/log_viewer_panel.h"

#include <QDateEdit>
#include <QLabel>
#include <QTimeEdit>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace orm::test {
namespace {

class LogViewerTest : public PanelFixture {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(writeCorpus(dir.filePath(QStringLiteral("data"))));
        startPanel();
        viewer = panel->logViewer();
        viewer->work().pumpEveryMs = 0;  // every block of the reading lets events through
        viewer->openDocument = [this](const QString& path) { opened << path; };
        panel->show();
    }

    template <class W>
    W* w(const char* name) const
    {
        auto* found = panel->findChild<W*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    // Graph 1: a Log Graph from imgViewLogs, its range the corpus's, set with the pickers.
    void logGraphOverTheCorpus()
    {
        click("imgViewLogs");
        w<QDateEdit>("DTPickerDateStart")->setDate(QDate(2026, 3, 4));
        w<QTimeEdit>("DTPickerStart")->setTime(QTime(12, 0));
        w<QDateEdit>("DTPickerDateEnd")->setDate(QDate(2026, 3, 6));
        w<QTimeEdit>("DTPickerEnd")->setTime(QTime(12, 0));
    }
    void pickColumn(int node, const QString& column)
    {
        panel->selectRow(1, node);
        const auto found = w<QTreeWidget>("lstvwLogs")->findItems(column, Qt::MatchExactly, 0);
        ASSERT_EQ(found.size(), 1) << column.toStdString();
        emit w<QTreeWidget>("lstvwLogs")->itemClicked(found.first(), 0);
    }
    QStringList listed() const
    {
        QStringList rows;
        const auto* list = w<QTreeWidget>("lstvwLogs");
        for (int k = 0; k < list->topLevelItemCount(); ++k)
            rows << list->topLevelItem(k)->text(0) + '\t' + list->topLevelItem(k)->text(1);
        return rows;
    }
    QString status() const { return panel->statusLabel()->text(); }
    // The labels of the points on Graph 1's picture, oldest first; "||" stands for no point.
    QStringList pointLabels() const
    {
        QStringList out;
        if (const DisplayedGraph* p = windows->picture(1))
            for (int k = 1; k <= p->history().labels().count(); ++k)
                if (p->history().labels().at(k) != QLatin1String("||"))
                    out << p->history().labels().at(k);
        return out;
    }

    LogViewerPanel* viewer = nullptr;
    QStringList opened;
};

TEST_F(LogViewerTest, ViewLogsMakesALogGraphWhosePickersWriteItsRange)
{
    click("imgViewLogs");  // at 2026-03-05 09:07:41 by the test's clock
    ASSERT_EQ(monitor->Sensors.size(), 2u);
    Graph& g = monitor->Sensors[1];
    EXPECT_TRUE(g.LogGraph);
    EXPECT_TRUE(viewer->isVisible());
    // Its range is the present moment at both ends: no record lies strictly
    // between them, yet the columns of the day's file are there.
    EXPECT_EQ(g.LogStart, 20260305090741.0);
    EXPECT_EQ(status(), QStringLiteral("(0) Records Found"));
    EXPECT_EQ(listed().size(), CorpusColumns.size());

    // The date keeps the time's digits, the time keeps the date's; each change is saved.
    w<QDateEdit>("DTPickerDateStart")->setDate(QDate(2026, 3, 4));
    EXPECT_EQ(g.LogStart, 20260304090741.0);
    w<QTimeEdit>("DTPickerStart")->setTime(QTime(12, 0, 0));
    EXPECT_EQ(g.LogStart, 20260304120000.0);
    EXPECT_EQ(storedValue(QStringLiteral("Settings/Sensor2"), QStringLiteral("LogStart")), "20260304120000");
    // The pickers work on the digits of the number: a moment short of digits misreads, as it always has.
    g.LogEnd = 1234;
    panel->selectRow(1, -1);
    w<QDateEdit>("DTPickerDateEnd")->setDate(QDate(2026, 3, 6));
    EXPECT_EQ(g.LogEnd, 202603061234.0);

    // A live Graph's rows hide the log viewer.
    panel->selectRow(0, -1);
    EXPECT_FALSE(viewer->isVisible());
}

TEST_F(LogViewerTest, RefreshShowsStopWhileItRunsAndTheWindowGetsThePoints)
{
    logGraphOverTheCorpus();
    click("imgRefreshLogList");
    pickColumn(0, QStringLiteral("CPU0"));
    QStringList captions;
    QTimer::singleShot(0, [&] { captions << w<QToolButton>("imgRefreshLogGraph")->text(); });
    click("imgRefreshLogGraph");
    EXPECT_EQ(captions, QStringList{StopCaption});
    EXPECT_EQ(w<QToolButton>("imgRefreshLogGraph")->text(), RefreshLogGraphCaption);
    EXPECT_EQ(status(), QString());
    ASSERT_EQ(pointLabels().size(), 12);
    EXPECT_EQ(pointLabels().first(), QStringLiteral("3/4/26 12:00"));
    EXPECT_EQ(pointLabels().last(), QStringLiteral("3/6/26 11:59"));

    // A click on "Stop" ends the reading with the file it is in.
    QTimer::singleShot(0, [&] { click("imgRefreshLogGraph"); });
    click("imgRefreshLogGraph");
    EXPECT_FALSE(viewer->work().busy() || viewer->work().StopLogWork);
    EXPECT_EQ(pointLabels(), QStringList(5, QStringLiteral("3/4/26 12:00")));
}

TEST_F(LogViewerTest, ColumnsGoToTheSelectedNodeAndTheExportOpensOrSaysWhyNot)
{
    logGraphOverTheCorpus();
    click("imgRefreshLogList");
    EXPECT_EQ(status(), QStringLiteral("(13) Records Found"));
    EXPECT_EQ(listed()[4], QStringLiteral("PING_RTT_10.0.0.1\tPing Round-Trip Time in mSeconds (10.0.0.1)"));
    // With the Graph's own row selected a column goes nowhere.
    const QString before = monitor->Sensors[1].Nodes[0].LogItemView;
    emit w<QTreeWidget>("lstvwLogs")->itemClicked(w<QTreeWidget>("lstvwLogs")->topLevelItem(2), 0);
    EXPECT_EQ(monitor->Sensors[1].Nodes[0].LogItemView, before);

    pickColumn(0, QStringLiteral("CPU0"));
    EXPECT_EQ(storedValue(QStringLiteral("Settings/Sensor2/Node1"), QStringLiteral("LogItemView")), "CPU0");
    EXPECT_EQ(panel->tree()->rows()[1].Children[0].Title, QStringLiteral("CPU Usage 0"));
    click("imgAddNode");
    pickColumn(1, QStringLiteral("PING_RTT_10.0.0.1"));
    EXPECT_EQ(monitor->Sensors[1].LegendUnits, QStringLiteral("Percent"));  // the first Node's column gives the unit
    click("imgExportLog");
    // The file's bytes are the export's business (HeadlessLogCommands); here, that it opens.
    ASSERT_EQ(opened, QStringList{viewer->work().exportPath()});
    EXPECT_TRUE(QFile::exists(opened.first()));
    EXPECT_TRUE(messages.isEmpty());

    // Asked for during a refresh of this Graph: refused through the message window.
    QTimer::singleShot(0, [&] { click("imgExportLog"); });
    click("imgRefreshLogGraph");
    EXPECT_EQ(messages, QStringList{ExportWhileRefreshingGraphText});
}

}  // namespace
}  // namespace orm::test
