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
    std::map<QString, QString> s{{QStringLiteral("Sensors"), QStringLiteral("2")},
                                 {QStringLiteral("Sensor1/GraphType"), QStringLiteral("1")},
                                 {QStringLiteral("Sensor1/SampleEverySeconds"), QStringLiteral("1")},
                                 {QStringLiteral("Sensor1/LocWidth"), QStringLiteral("500")},
                                 {QStringLiteral("Sensor1/LocHeight"), QStringLiteral("180")},
                                 {QStringLiteral("Sensor1/GraphBackColor"), QStringLiteral("16777215")},
                                 {QStringLiteral("Sensor1/Nodes"), QStringLiteral("2")},
                                 {QStringLiteral("Sensor2/GraphType"), QStringLiteral("3")},
                                 {QStringLiteral("Sensor2/Nodes"), QStringLiteral("1")},
                                 {QStringLiteral("Sensor2/Node1/NodeType"), QStringLiteral("6")}};
    const QString types[] = {QStringLiteral("5"), QStringLiteral("6")};
    const QString colours[] = {QStringLiteral("255"), QStringLiteral("16711680")};
    for (int n = 1; n <= 2; ++n) {
        const QString k = QStringLiteral("Sensor1/Node%1/").arg(n);
        s[k + QStringLiteral("Name")] = QStringLiteral("New Node %1").arg(n);
        s[k + QStringLiteral("NodeType")] = types[n - 1];
        s[k + QStringLiteral("PenColor")] = colours[n - 1];
        s[k + QStringLiteral("GraphLineType")] = QStringLiteral("0");
    }
    return s;
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

    ASSERT_EQ(pageCount(pdf), 1);
    const std::vector<PlacedImage> images = placedImages(pdf);
    ASSERT_EQ(images.size(), 1u);
    EXPECT_EQ(images[0].width, 500);
    // The picture: its frame and labels in black on white, and the RAM line in blue.
    const QImage page = pageImage(pdf);
    const QRect picture(48, 48, 500, 180);
    EXPECT_GT(countColour(page, picture, QColor(0, 0, 0)), 500);
    EXPECT_GT(countColour(page, picture, QColor(0, 0, 255)), 0);
    // The key's squares below it.
    const QRect key(48, 48 + 180, 500, 60);
    EXPECT_GT(countColour(page, key, QColor(255, 0, 0)), 25);
    EXPECT_GT(countColour(page, key, QColor(0, 0, 255)), 25);

    const QString text = pdfText(pdf).simplified();
    EXPECT_TRUE(text.contains(QStringLiteral("New Node 1 (CPU) New Node 2 (RAM)"))) << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("Printed by Ormivane "))) << qPrintable(text);
}

TEST(HeadlessPrint, RequestsThatCannotBeMetAreToldAndTheRunGoesOn)
{
    struct Case {
        QString graph;
        QString file;  // relative to the run's folder
        QString says;
    };
    const Case cases[] = {
        {QStringLiteral("3"), QStringLiteral("out.pdf"), QStringLiteral("There is no Graph 3 to print")},
        {QStringLiteral("2"), QStringLiteral("out.pdf"), QStringLiteral("Graph 2 is not a Line or Bar Graph")},
        {QStringLiteral("1"), QStringLiteral("no/folder/out.pdf"), QStringLiteral("Cannot write ")},
    };
    for (const Case& c : cases) {
        HeadlessRun run;
        run.writeSettings(cpuAndRam());
        // A page from before stays as it was.
        QFile old(run.dir.filePath(QStringLiteral("out.pdf")));
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("older page");
        old.close();
        run.start(2, {QStringLiteral("--print"), c.graph, run.dir.filePath(c.file)});
        ASSERT_TRUE(run.process.waitForFinished(30000));
        EXPECT_EQ(run.process.exitCode(), 1) << qPrintable(c.says);
        EXPECT_TRUE(QString::fromLocal8Bit(run.process.readAllStandardError()).contains(c.says)) << qPrintable(c.says);
        EXPECT_EQ(run.valueLines().size(), 2) << qPrintable(c.says);
        ASSERT_TRUE(old.open(QIODevice::ReadOnly));
        EXPECT_EQ(old.readAll(), QByteArray("older page"));
    }

    // An incomplete option stops the program before it starts.
    for (const QStringList& words : {QStringList{QStringLiteral("--print"), QStringLiteral("1")},
                                     QStringList{QStringLiteral("--print"), QStringLiteral("0"), QStringLiteral("x.pdf")},
                                     QStringList{QStringLiteral("--print=1"), QStringLiteral("x.pdf")}}) {
        HeadlessRun run;
        run.writeSettings(cpuAndRam());
        run.start(2, words);
        ASSERT_TRUE(run.process.waitForFinished(30000));
        EXPECT_EQ(run.process.exitCode(), 2) << qPrintable(words.join(QLatin1Char(' ')));
        EXPECT_TRUE(QString::fromLocal8Bit(run.process.readAllStandardError()).contains(QStringLiteral("--print")));
        EXPECT_TRUE(run.valueLines().isEmpty());
    }
}

namespace {

// Graph 1 of cpuAndRam() printed by a rule that holds on every tick.
std::map<QString, QString> printRule(const QString& graphName)
{
    std::map<QString, QString> s = cpuAndRam();
    s[QStringLiteral("Sensor1/Name")] = graphName;
    s[QStringLiteral("Alerts")] = QStringLiteral("1");
    s[QStringLiteral("Alert1/rEnabled")] = QStringLiteral("True");
    s[QStringLiteral("Alert1/rAction")] = QStringLiteral("5");
    s[QStringLiteral("Alert1/rCondition")] = QStringLiteral("1");
    s[QStringLiteral("Alert1/rException")] = QStringLiteral("0");
    s[QStringLiteral("Alert1/cSensor")] = QStringLiteral("0");
    s[QStringLiteral("Alert1/cNode")] = QStringLiteral("1");
    s[QStringLiteral("Alert1/cLimit")] = QStringLiteral("-1");
    s[QStringLiteral("Alert1/aSensor")] = QStringLiteral("0");
    return s;
}

// The program's CUPS_SERVER and HOME (where the user's own CUPS options live) for the runs of a test.
struct CupsEnvironment {
    explicit CupsEnvironment(const QString& socket, const QString& home)
        : server(qgetenv("CUPS_SERVER")), oldHome(qgetenv("HOME"))
    {
        qputenv("CUPS_SERVER", QFile::encodeName(socket));
        qputenv("HOME", QFile::encodeName(home));
    }
    ~CupsEnvironment()
    {
        qputenv("CUPS_SERVER", server);
        qputenv("HOME", oldHome);
    }
    QByteArray server, oldHome;
};

}  // namespace

TEST(HeadlessPrint, AlertWithoutAPrinterSaysSoOnceAndTheRunGoesOn)
{
    HeadlessRun run;
    CupsEnvironment cups(run.dir.filePath(QStringLiteral("no-cups.sock")), run.dir.path());
    run.writeSettings(printRule(QStringLiteral("Quiet")));
    run.start(3, {});
    ASSERT_TRUE(run.finish());
    EXPECT_EQ(run.valueLines().size(), 3);
    const QString said = QString::fromLocal8Bit(run.process.readAllStandardError());
    EXPECT_EQ(said.count(QStringLiteral("No printer is set up")), 1) << qPrintable(said);
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
    CupsEnvironment cups(daemon.socket(), run.dir.path());

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
