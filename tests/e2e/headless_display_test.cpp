// What a headless run draws: the pictures of --snapshot.
#include "run_headless.h"

#include <QGuiApplication>
#include <QImage>
#include <gtest/gtest.h>

using namespace orm::test;

namespace {

std::map<QString, QString> threeGraphs()
{
    std::map<QString, QString> s{{QStringLiteral("Sensors"), QStringLiteral("3")}};
    const QString types[] = {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")};
    for (int g = 1; g <= 3; ++g) {
        const QString k = QStringLiteral("Sensor%1/").arg(g);
        s[k + QStringLiteral("GraphType")] = types[g - 1];
        s[k + QStringLiteral("SampleEverySeconds")] = QStringLiteral("1");
        s[k + QStringLiteral("LocWidth")] = QStringLiteral("568");
        s[k + QStringLiteral("LocHeight")] = QStringLiteral("159");
        s[k + QStringLiteral("GraphBackColor")] = QStringLiteral("16777215");
        s[k + QStringLiteral("DataType")] = QStringLiteral("percent");
        s[k + QStringLiteral("DataMagnitude")] = QStringLiteral("-1");
        s[k + QStringLiteral("Nodes")] = g == 1 ? QStringLiteral("1") : QStringLiteral("3");
        for (int n = 1; n <= 3; ++n) {
            s[k + QStringLiteral("Node%1/NodeType").arg(n)] = QStringLiteral("6");  // RAM: never 0
            s[k + QStringLiteral("Node%1/GraphLineType").arg(n)] = QStringLiteral("0");
            s[k + QStringLiteral("Node%1/PenColor").arg(n)] = QStringLiteral("255");
        }
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

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
