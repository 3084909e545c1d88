#include "display/tray_icons.h"

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

TEST(TrayIcons, FourNodesOnThreeBarIconsMakeTwoIconsWithTheirTips)
{
    const auto icons = trayTick(trayGraph(0, 4), 0, {{100, 0, 50, 33.3}, {}}, 100);
    ASSERT_EQ(icons.size(), 2u);
    EXPECT_EQ(icons[0].tip, "New Node (Ping) {100 Kbps}  New Node (Ping) {0 Kbps}  New Node (Ping) {50 Kbps}  ");
    EXPECT_EQ(icons[1].tip, "New Node (Ping) {33.3 Kbps}  ");
    EXPECT_EQ(icons[1].picture, iconBars3({5}, {0x0000FF}));

    // The tip the tray keeps ends after the last whole Node, never in a word.
    EXPECT_EQ(notifyTip(icons[0].tip), "New Node (Ping) {100 Kbps}  New Node (Ping) {0 Kbps}");
    EXPECT_EQ(notifyTip(QString(40, 'a') + " " + QString(40, 'b')), QString(40, 'a'));
    EXPECT_EQ(notifyTip(QString(80, 'c')), QString(63, 'c'));
}
