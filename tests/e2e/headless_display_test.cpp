// What a headless run draws: the pictures of --snapshot.
#include "run_headless.h"

#include <QImage>
#include <gtest/gtest.h>

using namespace orm::test;

namespace {

// A Line, a Bar and a tray Graph of RAM Nodes (never 0) in red.
std::map<QString, QString> threeGraphs()
{
    std::map<QString, QString> s{{"Sensors", "3"}};
    for (int g = 1; g <= 3; ++g) {
        const QString k = QStringLiteral("Sensor%1/").arg(g);
        for (const auto& [key, value] : std::map<QString, QString>{
                 {"GraphType", QString::number(g)}, {"SampleEverySeconds", "1"}, {"LocWidth", "568"}, {"LocHeight", "159"},
                 {"GraphBackColor", "16777215"}, {"DataType", "percent"}, {"DataMagnitude", "-1"}, {"Nodes", g == 1 ? "1" : "3"}})
            s[k + key] = value;
        for (int n = 1; n <= 3; ++n)
            for (const auto& [key, value] : std::map<QString, QString>{{"NodeType", "6"}, {"GraphLineType", "0"}, {"PenColor", "255"}})
                s[k + QStringLiteral("Node%1/").arg(n) + key] = value;
    }
    return s;
}

TEST(HeadlessDisplay, SnapshotHoldsTheLineBarAndTrayPictures)
{
    HeadlessRun run;
    run.writeSettings(threeGraphs());
    const QString snap = run.dir.filePath(QStringLiteral("S"));
    run.start(13, {QStringLiteral("--snapshot"), snap});
    ASSERT_TRUE(run.finish());

    const QImage line(snap + QStringLiteral("/Graph1.png"));
    ASSERT_EQ(line.size(), QSize(568, 159));
    // The newest column holds the red line somewhere between the top and the base line.
    bool red = false;
    for (int x = 520; x < 568 && !red; ++x)
        for (int y = 35; y < 159 && !red; ++y)
            red = line.pixelColor(x, y) == QColor(255, 0, 0);
    EXPECT_TRUE(red);
    EXPECT_EQ(QImage(snap + QStringLiteral("/Graph2.png")).size(), QSize(568, 159));
    QFile icon(snap + QStringLiteral("/Graph3-icon1.ico"));
    ASSERT_TRUE(icon.open(QIODevice::ReadOnly));
    EXPECT_EQ(icon.size(), 898);
    EXPECT_TRUE(QFile::exists(run.dataDir + QStringLiteral("/Temp.ico")));
}

}  // namespace
