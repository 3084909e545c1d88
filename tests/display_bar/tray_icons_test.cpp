#include "display/tray_icons.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

// An icon picture as the test expects it: colours 0x00BBGGRR, -1 for clear, rows top first.
struct Expected {
    qint32 colour[16][16] = {};

    // Columns x0 to x1 - 1, `rows` high from the bottom.
    void fill(int x0, int x1, int rows, qint32 c)
    {
        for (int x = x0; x < x1; ++x)
            for (int r = 0; r < rows; ++r)
                colour[15 - r][x] = c;
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
                const quint32 c = colour[y][x] < 0 ? 0 : quint32(colour[y][x]);
                b.append(char(c >> 16)).append(char(c >> 8)).append(char(c));
            }
        for (int y = 15; y >= 0; --y) {
            unsigned bits = 0;
            for (int x = 0; x < 16; ++x)
                bits |= colour[y][x] < 0 ? 0x8000u >> x : 0;
            b.append(char(bits >> 8)).append(char(bits)).append(2, char(0));
        }
        return b.append(4, char(0));
    }
};

// Ping Nodes drawn in red.
std::vector<Graph> trayGraph(int iconType, int nodes)
{
    Graph g;
    g.IconType = qint16(iconType);
    Node n;
    n.NodeType = PingType;
    n.PenColor = 0x0000FF;
    g.Nodes.assign(size_t(nodes), n);
    return {g};
}

}  // namespace

TEST(TrayIcons, BarPicturesMatchTheFileLayoutByteForByte)
{
    Expected one;
    one.fill(0, 16, 16, 0x808080);
    one.fill(1, 15, 5, 0x646464);
    one.fill(0, 1, 5, 0x969696);    // lightness + 50
    one.fill(15, 16, 5, 0x878787);  // lightness + 35
    EXPECT_EQ(iconBar1(5, 0x646464), one.ico());

    // Two Nodes on a three-bar icon: the third slot and the last column stay clear.
    Expected three;
    three.fill(0, 10, 16, 0x808080);
    three.fill(10, 16, 16, -1);
    three.fill(1, 4, 15, 0x646464);
    three.fill(0, 1, 15, 0x969696);
    three.fill(4, 5, 15, 0x878787);
    EXPECT_EQ(iconBars3({15, 0}, {0x646464, 0x323232}), three.ico());
}

TEST(TrayIcons, NumberPicturesPrintTextOverAShadowAndMaskTheRest)
{
    EXPECT_EQ(iconLevel(0, 50, 100), 8);   // 7.5 goes to even
    EXPECT_EQ(iconLevel(1, 30, 100), 4);   // 4.5 goes to even
    EXPECT_EQ(iconNumberText(1000), "EXP");
    EXPECT_EQ(iconNumberText(7.2), "7  ");

    std::vector<Graph> sensors = trayGraph(3, 1);
    const QByteArray exp = trayTick(sensors, 0, {{1000}, {}}, 100).at(0).picture;
    const QImage e = icoPicture(exp);
    EXPECT_EQ(e.pixelColor(0, 3), QColor(255, 0, 0));      // E, top left
    EXPECT_EQ(e.pixelColor(1, 4), QColor(128, 128, 128));  // its shadow
    EXPECT_EQ(quint8(exp[830 + 15 * 4 + 1]) & 1, 1);  // mask bit of (15, 0)
    // The platform's own reader agrees on the colours.
    EXPECT_EQ(QImage::fromData(exp, "ICO").pixelColor(0, 3), QColor(255, 0, 0));
    EXPECT_TRUE(icoPicture(exp.left(897)).isNull());

    // Type 2 at the top of the scale shows 9 for each of three Nodes.
    sensors = trayGraph(2, 3);
    sensors[0].Nodes[1].PenColor = 0x00FF00;
    const QByteArray nines = trayTick(sensors, 0, {{100, 100, 100}, {}}, 100).at(0).picture;
    EXPECT_EQ(nines, iconNumbers({"9 ", "9 ", "9 "}, {0x0000FF, 0x00FF00, 0x0000FF}));
    EXPECT_EQ(icoPicture(nines).pixelColor(6, 3), QColor(0, 255, 0));  // top of the middle 9
}

TEST(TrayIcons, HistoryStripTakesTheLastColumnsFromTheRight)
{
    EXPECT_EQ(historyLevels({10, 20, 100}, 100), (std::vector<int>{2, 3, 15}));  // 1.5, 3
    // From Count - 7, where position 0 reads as the newest column.
    EXPECT_EQ(historyLevels({0, 0, 0, 0, 0, 0, 100}, 100), (std::vector<int>{15, 0, 0, 0, 0, 0, 0, 15}));

    // Two-pixel columns from the right edge: 15 high at 12-13, 8 high at 14-15.
    const QImage strip = icoPicture(iconHistory({{15, 8}}, {0x0000FF}));
    EXPECT_EQ(strip.pixelColor(12, 1), QColor(255, 0, 0));
    EXPECT_EQ(strip.pixelColor(15, 8), QColor(255, 0, 0));
    EXPECT_EQ(strip.pixelColor(13, 0).alpha() + strip.pixelColor(14, 7).alpha() + strip.pixelColor(11, 15).alpha(), 0);

    const QByteArray viaTick = trayTick(trayGraph(5, 1), 0, {{50}, {{100, 100, 53.3}}}, 100).at(0).picture;
    EXPECT_EQ(viaTick, iconHistory({{15, 15, 8}}, {0x0000FF}));  // 7.995 rounds to 8
}

TEST(TrayIcons, FourNodesOnThreeBarIconsMakeTwoIconsWithTheirTips)
{
    const auto icons = trayTick(trayGraph(0, 4), 0, {{100, 0, 50, 33.3}, {}}, 100);
    ASSERT_EQ(icons.size(), 2u);
    EXPECT_EQ(icons[0].tip, "New Node (Ping) {100 Kbps}  New Node (Ping) {0 Kbps}  New Node (Ping) {50 Kbps}  ");
    EXPECT_EQ(icons[1].tip, "New Node (Ping) {33.3 Kbps}  ");
    EXPECT_EQ(icons[1].picture, iconBars3({5}, {0x0000FF}));

    // The tip the tray keeps ends after the last whole Node, never in a word.
    EXPECT_EQ(notifyTip(icons[0].tip), "New Node (Ping) {100 Kbps}  New Node (Ping) {0 Kbps}");
    EXPECT_EQ(notifyTip(icons[1].tip), icons[1].tip);
    EXPECT_EQ(notifyTip(QString(40, 'a') + " " + QString(40, 'b')), QString(40, 'a'));
    EXPECT_EQ(notifyTip(QString(80, 'c')), QString(63, 'c'));
    EXPECT_EQ(notifyTip(QString("ab") + QChar(0) + "cd"), "ab");
    EXPECT_EQ(firstIconTip(), "Ormivane - Vendrake");
}

TEST(TrayIcons, TempIcoHoldsTheWholePicture)
{
    QTemporaryDir dir;
    const QByteArray ico = iconBar1(16, 0x00FF00);
    ASSERT_TRUE(writeTempIco(dir.path(), ico));
    QFile f(dir.filePath("Temp.ico"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), ico);
    EXPECT_FALSE(writeTempIco(dir.filePath("missing/deeper"), ico));
}
