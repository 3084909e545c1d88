#include "display/tray_icons.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// An icon picture as the test expects it: colours 0x00BBGGRR, rows top first.
struct Expected {
    qint32 colour[16][16] = {};
    bool clear[16][16] = {};

    void fillColumn(int x, int fromBottom, int rows, qint32 c)
    {
        for (int r = fromBottom; r < fromBottom + rows; ++r)
            colour[15 - r][x] = c;
    }
    void clearColumn(int x)
    {
        for (int y = 0; y < 16; ++y)
            clear[y][x] = true;
    }

    // The file laid out by hand from the ICO format.
    QByteArray ico() const
    {
        static const unsigned char head[62] = {
            0, 0, 1, 0, 1, 0,                                        // directory
            16, 16, 0, 0, 1, 0, 24, 0, 0x68, 3, 0, 0, 22, 0, 0, 0,   // entry
            40, 0, 0, 0, 16, 0, 0, 0, 32, 0, 0, 0, 1, 0, 24, 0};     // header, rest 0
        QByteArray b(reinterpret_cast<const char*>(head), 62);
        for (int y = 15; y >= 0; --y)
            for (int x = 0; x < 16; ++x) {
                const quint32 c = clear[y][x] ? 0 : quint32(colour[y][x]);
                b.append(char(c >> 16)).append(char(c >> 8)).append(char(c));
            }
        for (int y = 15; y >= 0; --y) {
            unsigned bits = 0;
            for (int x = 0; x < 16; ++x)
                bits |= clear[y][x] ? 0x8000u >> x : 0;
            b.append(char(bits >> 8)).append(char(bits)).append(2, char(0));
        }
        return b.append(4, char(0));
    }
};

Graph trayGraph(int iconType, int nodes)
{
    Graph g;
    g.GraphType = SystrayIcon;
    g.IconType = qint16(iconType);
    g.LegendUnits = "Kbps";
    for (int i = 0; i < nodes; ++i) {
        Node n;
        n.Name = QString("Node %1").arg(i + 1);
        n.NodeType = PingType;
        n.PenColor = 0x0000FF;
        g.Nodes.push_back(n);
    }
    return g;
}

QColor pixel(const QByteArray& ico, int x, int y)
{
    return icoPicture(ico).pixelColor(x, y);
}

}  // namespace

TEST(TrayIcons, BarPicturesMatchTheFileLayoutByteForByte)
{
    Expected one;
    for (int x = 0; x < 16; ++x)
        one.fillColumn(x, 0, 16, 0x808080);
    one.fillColumn(0, 0, 5, 0x969696);  // lightness + 50
    for (int x = 1; x < 15; ++x)
        one.fillColumn(x, 0, 5, 0x646464);
    one.fillColumn(15, 0, 5, 0x878787);  // lightness + 35
    const QByteArray bar = iconBar1(5, 0x646464);
    EXPECT_EQ(bar.size(), IconFileSize);
    EXPECT_EQ(bar, one.ico());

    // Two Nodes on a three-bar icon: the third slot and the last column stay clear.
    Expected three;
    for (int x = 0; x < 10; ++x)
        three.fillColumn(x, 0, 16, 0x808080);
    three.fillColumn(0, 0, 15, 0x969696);
    for (int x = 1; x < 4; ++x)
        three.fillColumn(x, 0, 15, 0x646464);
    three.fillColumn(4, 0, 15, 0x878787);
    for (int x = 10; x < 16; ++x)
        three.clearColumn(x);
    EXPECT_EQ(iconBars3({15, 0}, {0x646464, 0x323232}), three.ico());
}

TEST(TrayIcons, LevelsAndNumberTexts)
{
    EXPECT_EQ(iconLevel(0, 50, 100), 8);   // 7.5 goes to even
    EXPECT_EQ(iconLevel(1, 30, 100), 4);   // 4.5 goes to even
    EXPECT_EQ(iconLevel(2, 100, 100), 9);  // top of the scale
    EXPECT_EQ(iconLevel(1, -3, 100), 0);
    EXPECT_EQ(iconLevel(3, 12.5, 100), 12);
    EXPECT_EQ(iconNumberText(1000), "EXP");
    EXPECT_EQ(iconNumberText(999), "999  ");
    EXPECT_EQ(iconNumberText(7.2), "7  ");
    EXPECT_EQ(iconTypeCaption(3), "Numbers - 1 Node per icon 0-999");
}

TEST(TrayIcons, NumberPicturesPrintTextOverAShadowAndMaskTheRest)
{
    std::vector<Graph> sensors{trayGraph(3, 1)};
    const std::vector<TrayIconPicture> icons = trayTick(sensors, 0, {{1000}, {}}, 100);
    ASSERT_EQ(icons.size(), 1u);
    const QByteArray exp = icons[0].picture;
    ASSERT_EQ(exp.size(), IconFileSize);
    EXPECT_EQ(pixel(exp, 0, 3), QColor(255, 0, 0));      // E, top left
    EXPECT_EQ(pixel(exp, 1, 4), QColor(128, 128, 128));  // its shadow
    EXPECT_EQ(pixel(exp, 10, 3), QColor(255, 0, 0));     // P at x = 10
    EXPECT_EQ(pixel(exp, 15, 0).alpha(), 0);
    EXPECT_EQ(quint8(exp[830 + 15 * 4 + 1]) & 1, 1);     // mask bit of (15, 0)
    // The platform's own reader agrees on the colours.
    EXPECT_EQ(QImage::fromData(exp, "ICO").pixelColor(0, 3), QColor(255, 0, 0));
    EXPECT_TRUE(icoPicture(exp.left(897)).isNull());

    // Type 2 at the top of the scale shows 9 for each of three Nodes.
    sensors = {trayGraph(2, 3)};
    sensors[0].Nodes[1].PenColor = 0x00FF00;
    const QByteArray nines = trayTick(sensors, 0, {{100, 100, 100}, {}}, 100).at(0).picture;
    EXPECT_EQ(nines, iconNumbers({"9 ", "9 ", "9 "}, {0x0000FF, 0x00FF00, 0x0000FF}));
    EXPECT_EQ(pixel(nines, 6, 3), QColor(0, 255, 0));  // top of the middle 9
    EXPECT_EQ(pixel(nines, 5, 3).alpha(), 0);
}

TEST(TrayIcons, HistoryStripTakesTheLastColumnsFromTheRight)
{
    EXPECT_EQ(historyLevels({10, 20, 100}, 100), (std::vector<int>{2, 3, 15}));  // 1.5, 3
    const std::vector<double> seven{0, 0, 0, 0, 0, 0, 100};
    EXPECT_EQ(historyLevels(seven, 100), (std::vector<int>{15, 0, 0, 0, 0, 0, 0, 15}));
    std::vector<double> twenty(20, 0);
    twenty[12] = 100;
    EXPECT_EQ(historyLevels(twenty, 100), (std::vector<int>{15, 0, 0, 0, 0, 0, 0, 0}));

    Expected strip;
    for (int x = 0; x < 12; ++x)
        strip.clearColumn(x);
    for (int x = 12; x < 16; ++x) {
        const int rows = x < 14 ? 15 : 8;
        for (int y = 0; y < 16 - rows; ++y)
            strip.clear[y][x] = true;
        strip.fillColumn(x, 0, rows, 0x0000FF);
    }
    EXPECT_EQ(iconHistory({{15, 8}}, {0x0000FF}), strip.ico());

    std::vector<Graph> sensors{trayGraph(5, 1)};
    const TrayInput input{{50}, {{100, 100, 53.3}}};
    const QByteArray viaTick = trayTick(sensors, 0, input, 100).at(0).picture;
    EXPECT_EQ(viaTick, iconHistory({{15, 15, 8}}, {0x0000FF}));  // 7.995 rounds to 8
}

TEST(TrayIcons, FourNodesOnThreeBarIconsMakeTwoIconsWithTheirTips)
{
    std::vector<Graph> sensors{trayGraph(0, 4)};
    EXPECT_EQ(iconCount(sensors[0]), 2);
    sensors[0].IconType = 1;
    EXPECT_EQ(iconCount(sensors[0]), 4);
    sensors[0].IconType = 0;

    const auto icons = trayTick(sensors, 0, {{100, 0, 50, 33.3}, {}}, 100);
    ASSERT_EQ(icons.size(), 2u);
    EXPECT_EQ(icons[0].tip,
              "Node 1 (Ping) {100 Kbps}  Node 2 (Ping) {0 Kbps}  Node 3 (Ping) {50 Kbps}  ");
    EXPECT_EQ(icons[1].tip, "Node 4 (Ping) {33.3 Kbps}  ");
    EXPECT_EQ(icons[1].picture, iconBars3({5}, {0x0000FF}));

    EXPECT_EQ(notifyTip(icons[0].tip).size(), 63);
    EXPECT_EQ(notifyTip(QString("ab") + QChar(0) + "cd"), "ab");
    EXPECT_EQ(firstIconTip(), "Ormivane - Vendrake");
}

TEST(TrayIcons, TempIcoHoldsTheWholePicture)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QByteArray ico = iconBar1(16, 0x00FF00);
    ASSERT_TRUE(writeTempIco(dir.path(), iconBar1(3, 0)));
    ASSERT_TRUE(writeTempIco(dir.path(), ico));
    QFile f(dir.filePath("Temp.ico"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), ico);
    EXPECT_FALSE(writeTempIco(dir.filePath("missing/deeper"), ico));
}
