// GraphPrinter on the default printer, through a CUPS daemon that the test
// starts with cups-pdf queues: the page reaches the default queue and comes
// out as a PDF; a queue that refuses it is reported; with no printer at all
// the status says so. Where the daemon cannot run, the tests that need it are
// skipped and say why.
#include "cups_daemon.h"
#include "model/clock.h"
#include "model/key_value_store.h"
#include "monitor/monitor.h"
#include "monitor/source_set.h"
#include "display/displayed_graph.h"
#include "poppler.h"
#include "shell/graph_printer.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QTime>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

// The daemon's folder; CUPS_SERVER names its socket before anything asks CUPS.
QTemporaryDir* cupsFolder = nullptr;

class DefaultPrinterTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        monitor = std::make_unique<Monitor>(MonitorOptions{}, clock, store, sources, views);
        Graph g;
        g.GraphType = LineGraph;
        g.Name = QStringLiteral("Probe%1").arg(QCoreApplication::applicationPid());
        g.LocWidth = 400;
        g.LocHeight = 160;
        g.GraphBackColor = 0xFFFFFF;
        for (qint32 colour : {0x0000FF, 0xFF0000}) {
            Node n;
            n.NodeType = colour == 0x0000FF ? CpuType : RamType;
            n.Name = QStringLiteral("New Node %1").arg(g.Nodes.size() + 1);
            n.PenColor = colour;
            g.Nodes.push_back(n);
        }
        monitor->Sensors.push_back(g);
        monitor->GraphForms.push_back(std::make_unique<DisplayedGraph>(monitor->Sensors, 0, QString(), QString()));
        monitor->GraphForms[0]->OpenGraph();
        for (int t = 0; t < 30; ++t)
            monitor->GraphForms[0]->WriteGraph({20.0 + t % 3, 60.0}, QTime(9, 0).addSecs(t).toString(), 60, 5);
        printer = std::make_unique<GraphPrinter>(*monitor, [this](const QString& s) { statuses << s; });
    }

    // Starts a daemon for this test; says why none runs, empty when one does.
    QString startDaemon()
    {
        const QString why = CupsDaemon::unavailable();
        QString error;
        EXPECT_TRUE(!why.isEmpty() || daemon.start(error)) << qPrintable(error);
        return why;
    }

    ManualClock clock;
    MemoryStore store;
    SourceSet sources;
    DisplayedGraphFactory views{QString(), QString()};
    std::unique_ptr<Monitor> monitor;
    std::unique_ptr<GraphPrinter> printer;
    QStringList statuses;
    CupsDaemon daemon{cupsFolder->path()};
};

TEST_F(DefaultPrinterTest, NoPrinterAtAllIsTold)
{
    // With the daemon up but no queue, or with no daemon at all: no printer either way.
    startDaemon();
    const PrintResult r = printer->printGraph(0);
    EXPECT_EQ(r.outcome, PrintResult::Failed);
    EXPECT_EQ(statuses, QStringList({QStringLiteral("Printing Graph. Please Wait..."),
                                     QStringLiteral("No printer is set up")}));
}

TEST_F(DefaultPrinterTest, PageGoesToTheDefaultQueueAndComesOutAsPdf)
{
    if (const QString why = startDaemon(); !why.isEmpty())
        GTEST_SKIP() << qPrintable(why);
    QString error;
    // The first queue by name is not the default: the default must be the one used.
    ASSERT_TRUE(daemon.addPdfQueue(QStringLiteral("a-other"), false, error)) << qPrintable(error);
    ASSERT_TRUE(daemon.addPdfQueue(QStringLiteral("ormivane-pdf"), true, error)) << qPrintable(error);
    const QString outFolder = CupsDaemon::pdfOutputFolder();
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);

    ASSERT_EQ(printer->printGraph(0).outcome, PrintResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return statuses.size() >= 2; }, 60000));
    EXPECT_EQ(statuses, QStringList({QStringLiteral("Printing Graph. Please Wait..."), QString()}));

    // cups-pdf names the file after the job's title, which holds the Graph's name.
    QString written;
    (void)QTest::qWaitFor(
        [&] {
            for (const QFileInfo& f : QDir(outFolder).entryInfoList({QStringLiteral("*.pdf")}, QDir::Files))
                if (f.fileName().contains(monitor->Sensors[0].Name) && f.lastModified() >= before && f.size() > 0)
                    written = f.absoluteFilePath();
            return !written.isEmpty();
        },
        90000);
    QString jobs;
    daemon.run(QStringLiteral("lpstat"), {QStringLiteral("-W"), QStringLiteral("all"), QStringLiteral("-o")}, error,
               &jobs);
    ASSERT_FALSE(written.isEmpty()) << "no PDF from the queue in " << qPrintable(outFolder) << "; jobs: "
                                    << qPrintable(jobs);
    EXPECT_TRUE(jobs.contains(QStringLiteral("ormivane-pdf-"))) << qPrintable(jobs);
    EXPECT_FALSE(jobs.contains(QStringLiteral("a-other-"))) << qPrintable(jobs);

    // The queue's converter keeps the look of the text but not its letters: the page is read as a picture.
    EXPECT_EQ(pageCount(written), 1);
    const QImage page = pageImage(written);
    EXPECT_GT(countColour(page, page.rect(), QColor(255, 0, 0), 24), 25);
    EXPECT_GT(countColour(page, page.rect(), QColor(0, 0, 255), 24), 25);
    QFile::remove(written);

    // A queue that refuses the job is reported.
    ASSERT_TRUE(daemon.run(QStringLiteral("cupsreject"), {QStringLiteral("ormivane-pdf")}, error)) << qPrintable(error);
    statuses.clear();
    ASSERT_EQ(printer->printGraph(0).outcome, PrintResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return statuses.size() >= 2; }, 60000));
    EXPECT_TRUE(statuses[1].startsWith(QStringLiteral("The printer ormivane-pdf did not take the Graph: ")))
        << qPrintable(statuses[1]);
    EXPECT_TRUE(statuses[1].contains(QStringLiteral("not accepting"))) << qPrintable(statuses[1]);
}

}  // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir folder;
    cupsFolder = &folder;
    // Only the test's own daemon, and no default printer named by the environment.
    qputenv("CUPS_SERVER", QFile::encodeName(folder.filePath(QStringLiteral("cups.sock"))));
    qunsetenv("PRINTER");
    qunsetenv("LPDEST");
    // Nor one named in the user's own CUPS options.
    qputenv("HOME", QFile::encodeName(folder.filePath(QStringLiteral("home"))));
    // The headless program prints without widgets: so does the test.
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
