// --print G FILE at the end of a headless run: the page in the PDF, and what
// the program says and does when the request cannot be met. An Alert that
// prints a Graph on every tick, with and without a printer.
#include "../printing/cups_daemon.h"
#include "../printing/poppler.h"
#include "run_headless.h"

#include <QGuiApplication>
#include <QTest>
#include <gtest/gtest.h>

using namespace orm::test;

namespace {

// Graph 1: a Line Graph of CPU (red) and RAM (blue); Graph 2: a tray Graph.
std::map<QString, QString> cpuAndRam()
{
    return {{"Sensors", "2"}, {"Sensor1/GraphType", "1"}, {"Sensor1/SampleEverySeconds", "1"},
            {"Sensor1/LocWidth", "500"}, {"Sensor1/LocHeight", "180"}, {"Sensor1/GraphBackColor", "16777215"},
            {"Sensor1/Nodes", "2"}, {"Sensor1/Node1/Name", "New Node 1"}, {"Sensor1/Node1/NodeType", "5"},
            {"Sensor1/Node1/PenColor", "255"}, {"Sensor1/Node1/GraphLineType", "0"},
            {"Sensor1/Node2/Name", "New Node 2"}, {"Sensor1/Node2/NodeType", "6"},
            {"Sensor1/Node2/PenColor", "16711680"}, {"Sensor1/Node2/GraphLineType", "0"},
            {"Sensor2/GraphType", "3"}, {"Sensor2/Nodes", "1"}, {"Sensor2/Node1/NodeType", "6"}};
}

}  // namespace

TEST(HeadlessPrint, LineGraphOfCpuAndRamGoesIntoAOnePagePdf)
{
    HeadlessRun run;
    run.writeSettings(cpuAndRam());
    const QString pdf = run.dir.filePath(QStringLiteral("out.pdf"));
    run.start(3, {QStringLiteral("--print"), QStringLiteral("1"), pdf});
    ASSERT_TRUE(run.finish()) << run.process.readAllStandardError().constData();
    EXPECT_EQ(run.valueLines().size(), 3);

    // The page itself is the printing tests' business: here, the Graph of the settings is on it.
    ASSERT_EQ(pageCount(pdf), 1);
    const std::vector<PlacedImage> images = placedImages(pdf);
    ASSERT_EQ(images.size(), 1u);
    EXPECT_EQ(images[0].width, 500);
    EXPECT_GT(countColour(pageImage(pdf), QRect(48, 48, 500, 180), QColor(0, 0, 255)), 0);  // the RAM line
    EXPECT_TRUE(pdfText(pdf).simplified().contains(QStringLiteral("New Node 1 (CPU) New Node 2 (RAM)")));
}

TEST(HeadlessPrint, RequestsThatCannotBeMetAreToldAndTheRunGoesOn)
{
    // A Graph that is no Line or Bar Graph: told, the run goes on, an older page stays as it was.
    HeadlessRun run;
    run.writeSettings(cpuAndRam());
    const QString pdf = run.dir.filePath(QStringLiteral("out.pdf"));
    QFile old(pdf);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly) && old.write("older page") == 10);
    old.close();
    const Outcome told = run.runToEnd(2, {QStringLiteral("--print"), QStringLiteral("2"), pdf});
    EXPECT_EQ(told.status, 1);
    EXPECT_TRUE(told.err.contains("Graph 2 is not a Line or Bar Graph"));
    EXPECT_EQ(run.valueLines().size(), 2);
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), QByteArray("older page"));

    // An incomplete option stops the program before it starts.
    HeadlessRun early;
    early.writeSettings(cpuAndRam());
    const Outcome stopped = early.runToEnd(2, {QStringLiteral("--print"), QStringLiteral("1")});
    EXPECT_EQ(stopped.status, 2);
    EXPECT_TRUE(stopped.err.contains("--print"));
    EXPECT_TRUE(early.valueLines().isEmpty());
}

namespace {

// Graph 1 of cpuAndRam() printed by a rule that holds on every tick.
std::map<QString, QString> printRule(const QString& graphName)
{
    std::map<QString, QString> s = cpuAndRam();
    s[QStringLiteral("Sensor1/Name")] = graphName;
    for (const auto& [k, v] : std::map<QString, QString>{{"Alerts", "1"}, {"Alert1/rEnabled", "True"},
                                                        {"Alert1/rAction", "5"}, {"Alert1/rCondition", "1"},
                                                        {"Alert1/rException", "0"}, {"Alert1/cSensor", "0"},
                                                        {"Alert1/cNode", "1"}, {"Alert1/cLimit", "-1"},
                                                        {"Alert1/aSensor", "0"}})
        s[k] = v;
    return s;
}

// The program's CUPS server, and its HOME, where the user's own CUPS options live.
void useCups(HeadlessRun& run, const QString& socket)
{
    run.extra.insert(QStringLiteral("CUPS_SERVER"), socket);
    run.extra.insert(QStringLiteral("HOME"), run.dir.path());
}

}  // namespace

TEST(HeadlessPrint, AlertWithoutAPrinterSaysSoOnceAndTheRunGoesOn)
{
    HeadlessRun run;
    useCups(run, run.dir.filePath(QStringLiteral("no-cups.sock")));
    run.writeSettings(printRule(QStringLiteral("Quiet")));
    const Outcome o = run.runToEnd(3);
    ASSERT_EQ(o.status, 0);
    EXPECT_EQ(run.valueLines().size(), 3);
    EXPECT_EQ(o.err.count(QStringLiteral("No printer is set up")), 1) << qPrintable(o.err);
}

TEST(HeadlessPrint, AlertPrintsTheGraphOnTheDefaultPrinterOnEveryTick)
{
    const QString why = CupsDaemon::unavailable();
    if (!why.isEmpty())
        GTEST_SKIP() << qPrintable(why);
    HeadlessRun run;
    QTemporaryDir cupsFolder;  // a folder of its own: the queue's filters must reach into it
    CupsDaemon daemon(cupsFolder.path());
    QString error;
    ASSERT_TRUE(daemon.start(error)) << qPrintable(error);
    ASSERT_TRUE(daemon.addPdfQueue(QStringLiteral("ormivane-pdf"), true, error)) << qPrintable(error);
    useCups(run, daemon.socket());

    const QString name = QStringLiteral("AlertProbe%1").arg(QCoreApplication::applicationPid());
    run.writeSettings(printRule(name));
    run.start(2, {});
    ASSERT_TRUE(run.finish()) << run.process.readAllStandardError().constData();

    // A job for each tick the rule held, done by the default queue; cups-pdf names the page
    // after the job's title, which holds the Graph's name (a later page of the same name replaces it).
    QString jobs;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            daemon.run(QStringLiteral("lpstat"), {QStringLiteral("-W"), QStringLiteral("completed"),
                                                  QStringLiteral("-o"), QStringLiteral("ormivane-pdf")},
                       error, &jobs);
            return jobs.count(QStringLiteral("ormivane-pdf-")) == 2;
        },
        90000))
        << qPrintable(jobs);
    const QString out = CupsDaemon::pdfOutputFolder();
    const QStringList pages = QDir(out).entryList({QStringLiteral("*") + name + QStringLiteral("*.pdf")}, QDir::Files);
    EXPECT_FALSE(pages.isEmpty()) << "no page in " << qPrintable(out);
    for (const QString& p : pages)
        QFile::remove(QDir(out).filePath(p));
}
