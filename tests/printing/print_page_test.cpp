// PrintGraph into PDF files, read back with poppler-utils: the window's
// picture at the page's origin, the key's squares and texts, the footer, the
// wrapping of a long key, and what does not print.
#include "display/displayed_graph.h"
#include "display/print_graph.h"
#include "poppler.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTemporaryDir>
#include <QTime>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

constexpr qint32 Red = 0x0000FF;  // 0x00BBGGRR
constexpr qint32 Blue = 0xFF0000;
constexpr qint32 Green = 0x00C000;
const QDate Today(2026, 3, 5);
// Half an inch of margin at 96 pixels an inch.
const QPoint Origin(48, 48);

Node node(const QString& name, int type, qint32 colour)
{
    Node n;
    n.Name = name;
    n.NodeType = type;
    n.PenColor = colour;
    n.GraphLineType = 0;
    return n;
}

// One Graph on a white background with its view, drawn for a few ticks.
struct PrintRig {
    std::vector<Graph> sensors{1};
    std::vector<std::unique_ptr<GraphView>> views;
    QTemporaryDir dir;
    QStringList statuses;
    PrintStatus status = [this](const QString& s) { statuses << s; };

    explicit PrintRig(int type = LineGraph, int width = 400, int height = 160)
    {
        Graph& g = sensors[0];
        g.GraphType = type;
        g.Name = QStringLiteral("Machine");
        g.DataType = QStringLiteral("percent");
        g.AutoRange = false;
        g.LegendMax = 100;
        g.LocWidth = width;
        g.LocHeight = height;
        g.GraphBackColor = 0xFFFFFF;
        g.Nodes = {node(QStringLiteral("New Node 1"), CpuType, Red), node(QStringLiteral("New Node 2"), RamType, Blue)};
    }
    DisplayedGraph& open()
    {
        views.clear();
        views.push_back(std::make_unique<DisplayedGraph>(sensors, 0, QString(), QString()));
        auto& view = static_cast<DisplayedGraph&>(*views[0]);
        view.OpenGraph();
        for (int t = 0; t < 40; ++t)
            view.WriteGraph({30.0 + t % 7, 70.0 - t % 5}, QTime(10, 0).addSecs(t).toString(QStringLiteral("hh:mm:ss")),
                            60, 5);
        return view;
    }
    QString path(const QString& name = QStringLiteral("page.pdf")) const { return dir.filePath(name); }
    PrintResult print(int index = 0, const QString& file = {})
    {
        PdfFileTarget target(file.isEmpty() ? path() : file);
        return PrintGraph(sensors, views, index, Today, target, status);
    }
};

// The key's band: from the picture's bottom edge down three lines.
QRect keyBand(const QImage& picture)
{
    return QRect(Origin.x(), Origin.y() + picture.height() + 1, 700, 60);
}

}  // namespace

TEST(PrintedPage, LineGraphPictureKeyAndFooter)
{
    PrintRig rig;
    const QImage picture = rig.open().windowPicture();
    const PrintResult r = rig.print();
    ASSERT_EQ(r.outcome, PrintResult::Printed) << qPrintable(r.error);
    EXPECT_EQ(rig.statuses, QStringList({QStringLiteral("Printing Graph. Please Wait..."), QString()}));

    ASSERT_EQ(pageCount(rig.path()), 1) << "pdfinfo (poppler-utils) cannot read the page";
    // The picture as the window holds it, pixel for pixel, unscaled and lossless.
    const std::vector<PlacedImage> images = placedImages(rig.path());
    ASSERT_EQ(images.size(), 1u);
    EXPECT_EQ(images[0].width, picture.width());
    EXPECT_DOUBLE_EQ(images[0].xPpi, 96);
    EXPECT_NE(images[0].encoding, QStringLiteral("jpeg"));
    const QImage page = pageImage(rig.path());
    ASSERT_FALSE(page.isNull());
    EXPECT_GT(sharedPixels(page, picture, Origin), 0.99);
    EXPECT_GT(countColour(page, QRect(Origin, picture.size()), QColor(255, 0, 0)), 30);

    // Two squares in the pen colours on the key's line; the entries in the Nodes' order.
    const QRect band = keyBand(picture);
    EXPECT_GT(countColour(page, band, QColor(255, 0, 0)), 25);
    EXPECT_GT(countColour(page, band, QColor(0, 0, 255)), 25);

    const QString text = pdfText(rig.path());
    const qsizetype first = text.indexOf(QStringLiteral("New Node 1 (CPU)"));
    EXPECT_GE(first, 0) << qPrintable(text);
    EXPECT_GT(text.indexOf(QStringLiteral("New Node 2 (RAM)")), first);
    EXPECT_TRUE(text.contains(QStringLiteral("Printed by Ormivane ") +
                              QLocale::system().toString(Today, QLocale::ShortFormat)))
        << qPrintable(text);
}

TEST(PrintedPage, BarGraphPrintsItsBarsAlsoWhenHidden)
{
    PrintRig rig(BarGraph);
    rig.sensors[0].Nodes[1].PenColor = Green;
    const QImage picture = rig.open().windowPicture();
    ASSERT_GT(countColour(picture, picture.rect(), QColor(0, 192, 0), 0), 100) << "the bars are drawn";

    // A hidden window prints the last frame it holds.
    rig.sensors[0].Visible = false;
    ASSERT_EQ(rig.print().outcome, PrintResult::Printed);
    const QImage page = pageImage(rig.path());
    EXPECT_GT(sharedPixels(page, picture, Origin), 0.99);
    EXPECT_GT(countColour(page, QRect(Origin, picture.size()), QColor(0, 192, 0)), 100);
    EXPECT_GT(countColour(page, keyBand(picture), QColor(0, 192, 0)), 25);
}

TEST(PrintedPage, WhatCannotBePrintedIsToldAndAnOldPageKept)
{
    // Only Line and Bar Graphs print; the others say nothing.
    for (int type : {SystrayIcon, TextGraph, VistaGadget}) {
        PrintRig other(type);
        other.open();
        EXPECT_EQ(other.print().outcome, PrintResult::NotPrintable) << type;
        EXPECT_TRUE(other.statuses.isEmpty()) << type;
        EXPECT_FALSE(QFile::exists(other.path())) << type;
    }

    PrintRig rig;
    rig.open();
    for (int index : {-1, 1, 70000}) {
        rig.statuses.clear();
        EXPECT_EQ(rig.print(index).outcome, PrintResult::Failed);
        EXPECT_EQ(rig.statuses, QStringList{QStringLiteral("There is no Graph %1 to print").arg(index + 1)});
    }
    const QString missingFolder = rig.path(QStringLiteral("no/such/folder/page.pdf"));
    const PrintResult r = rig.print(0, missingFolder);
    EXPECT_EQ(r.outcome, PrintResult::Failed);
    EXPECT_TRUE(r.error.startsWith(QStringLiteral("Cannot write ") + missingFolder)) << qPrintable(r.error);
    EXPECT_EQ(rig.statuses.last(), r.error);
    // A folder where the file should be: it stays a folder.
    ASSERT_TRUE(QDir().mkpath(rig.path(QStringLiteral("taken.pdf"))));
    EXPECT_EQ(rig.print(0, rig.path(QStringLiteral("taken.pdf"))).outcome, PrintResult::Failed);
    EXPECT_TRUE(QFileInfo(rig.path(QStringLiteral("taken.pdf"))).isDir());

    // Printed again over an older page: the new one replaces it whole.
    ASSERT_EQ(rig.print().outcome, PrintResult::Printed);
    rig.sensors[0].Nodes[0].Name = QStringLiteral("Renamed");
    ASSERT_EQ(rig.print().outcome, PrintResult::Printed);
    EXPECT_TRUE(pdfText(rig.path()).contains(QStringLiteral("Renamed (CPU)")));
}

TEST(PrintedPage, WidePictureAndLongKeyFitThePageAndNulCharactersGo)
{
    PrintRig rig(LineGraph, 1400, 300);
    Graph& g = rig.sensors[0];
    g.Nodes.clear();
    for (int i = 0; i < 14; ++i)
        g.Nodes.push_back(node(QStringLiteral("Adapter load %1").arg(i) + QChar(0) + QChar(0), UpDownType,
                               0x101010 * (i % 8)));
    g.Nodes.push_back(node(QString(120, QLatin1Char('W')), PingType, Red));  // longer than a line
    rig.open();
    ASSERT_EQ(rig.print().outcome, PrintResult::Printed);
    EXPECT_EQ(pageCount(rig.path()), 1);
    // The picture placed across the width inside the margins: (595 - 72) points = 7.26 inches.
    const std::vector<PlacedImage> images = placedImages(rig.path());
    ASSERT_EQ(images.size(), 1u);
    EXPECT_EQ(images[0].width, 1400);
    EXPECT_NEAR(images[0].width / images[0].xPpi, (595.0 - 72) / 72, 0.02);

    // An entry may break where the line ends: compare with single blanks.
    const QString text = pdfText(rig.path()).simplified();
    EXPECT_FALSE(text.contains(QChar(0)));
    for (int i = 0; i < 14; ++i)
        EXPECT_TRUE(text.contains(QStringLiteral("Adapter load %1 (Up/Down)").arg(i))) << i;
    // Every word stays inside the margins (A4 is 595 points wide).
    for (const PlacedWord& w : placedWords(rig.path()))
        EXPECT_LE(w.xMax, 595 - 36 + 1) << qPrintable(w.text);
    EXPECT_EQ(text.count(QLatin1Char('W')), 120);
}
