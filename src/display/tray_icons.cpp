#include "display/tray_icons.h"

#include "model/catalogue.h"
#include "model/number_text.h"
#include "model/version.h"
#include "display/bar_meter.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <algorithm>
#include <climits>
#include <cmath>

namespace orm {

namespace {

constexpr qint32 MidGrey = 0x808080;

// The picture before it becomes bytes: rows top first, a colour per pixel and
// whether the pixel is clear.
struct IconPixels {
    std::array<qint32, IconSide * IconSide> colour{};
    std::array<bool, IconSide * IconSide> clear{};

    IconPixels() { clear.fill(true); }
    void set(int x, int y, qint32 c)
    {
        if (x < 0 || y < 0 || x >= IconSide || y >= IconSide)
            return;
        colour[y * IconSide + x] = c;
        clear[y * IconSide + x] = false;
    }
};

void put16(QByteArray& b, int v)
{
    b.append(char(v & 0xFF)).append(char((v >> 8) & 0xFF));
}

void put32(QByteArray& b, quint32 v)
{
    put16(b, int(v & 0xFFFF));
    put16(b, int(v >> 16));
}

constexpr int IconHeaderSize = 62;
constexpr int IconMaskAt = IconHeaderSize + IconSide * IconSide * 3;

QByteArray icoHeader()
{
    QByteArray b;
    // ICONDIR: reserved, type 1 (icon), one image.
    put16(b, 0);
    put16(b, 1);
    put16(b, 1);
    // The one entry: 16 x 16, no palette, 1 plane, 24 bits, 0x368 bytes at 22.
    b.append(char(IconSide)).append(char(IconSide)).append(char(0)).append(char(0));
    put16(b, 1);
    put16(b, 24);
    put32(b, 0x368);
    put32(b, 22);
    // BITMAPINFOHEADER; the height counts the colour rows and the mask rows.
    put32(b, 40);
    put32(b, IconSide);
    put32(b, IconSide * 2);
    put16(b, 1);
    put16(b, 24);
    for (int i = 0; i < 6; ++i)
        put32(b, 0);
    return b;
}

QByteArray icoBytes(const IconPixels& px)
{
    QByteArray b = icoHeader();
    b.reserve(IconFileSize);
    // Colour rows, bottom row first, blue green red; clear pixels are black so
    // that the mask alone decides what shows through.
    for (int y = IconSide - 1; y >= 0; --y)
        for (int x = 0; x < IconSide; ++x) {
            const int i = y * IconSide + x;
            const qint32 c = px.clear[i] ? 0 : px.colour[i];
            b.append(char(RGBBlue(c))).append(char(RGBGreen(c))).append(char(RGBRed(c)));
        }
    // AND mask, bottom row first, a set bit is clear, rows padded to 4 bytes.
    for (int y = IconSide - 1; y >= 0; --y) {
        quint32 bits = 0;
        for (int x = 0; x < IconSide; ++x)
            if (px.clear[y * IconSide + x])
                bits |= 0x8000u >> x;
        b.append(char(bits >> 8)).append(char(bits & 0xFF)).append(char(0)).append(char(0));
    }
    put32(b, 0);
    return b;
}

int roundLevel(double v)
{
    if (std::isnan(v))
        return 0;
    return int(std::clamp(std::nearbyint(v), double(INT_MIN), double(INT_MAX)));
}

double safeMax(double maxValue)
{
    return maxValue == 0 ? 0.1 : maxValue;
}

// A bar `width` columns wide from column x0: lighter sides, the colour in the
// core, lit from the bottom up to `level` rows, mid grey above.
void drawIconBar(IconPixels& px, int x0, int width, int level, qint32 colour)
{
    const qint32 left = shiftLightness(colour, 50);
    const qint32 right = shiftLightness(colour, 35);
    const int lit = std::clamp(level, 0, IconSide);
    for (int x = x0; x < x0 + width; ++x) {
        const qint32 c = x == x0 ? left : x == x0 + width - 1 ? right : colour;
        for (int row = 0; row < IconSide; ++row)
            px.set(x, IconSide - 1 - row, row < lit ? c : MidGrey);
    }
}

// Glyphs four pixels wide and seven high for what an icon can print.
const char* glyph(QChar ch)
{
    switch (ch.unicode()) {
    case '0': return ".##.#..##..##..##..##..#.##.";
    case '1': return "..#..##...#...#...#...#..###";
    case '2': return ".##.#..#...#..#..#..#...####";
    case '3': return "###....#...#.##....#...####.";
    case '4': return "#..##..##..#####...#...#...#";
    case '5': return "#####...###....#...##..#.##.";
    case '6': return ".##.#...#...###.#..##..#.##.";
    case '7': return "####...#..#...#..#...#...#..";
    case '8': return ".##.#..##..#.##.#..##..#.##.";
    case '9': return ".##.#..##..#.###...#...#.##.";
    case 'E': return "#####...#...###.#...#...####";
    case 'X': return "#..##..#.##..##..##.#..##..#";
    case 'P': return "###.#..##..####.#...#...#...";
    default: return nullptr;
    }
}

void printText(IconPixels& px, const QString& text, int x, int y, qint32 colour)
{
    for (int c = 0; c < text.size(); ++c) {
        const char* g = glyph(text[c]);
        if (!g)
            continue;
        for (int row = 0; row < 7; ++row)
            for (int col = 0; col < 4; ++col)
                if (g[row * 4 + col] == '#')
                    px.set(x + 5 * c + col, y + row, colour);
    }
}

bool validGraph(const std::vector<Graph>& sensors, int graph)
{
    return graph >= 0 && graph < int(sensors.size());
}

}  // namespace

QString iconTypeCaption(int iconType)
{
    static const char* const captions[] = {
        "Bars - 3 Nodes per icon",        "Bars - 1 Node per icon",
        "Numbers - 3 Nodes per icon 0-9", "Numbers - 1 Node per icon 0-999",
        "Graph - 3 Nodes per icon",       "Graph - 1 Node per icon",
    };
    return QString::fromLatin1(captions[effectiveIconType(iconType)]);
}

int effectiveIconType(int iconType)
{
    return iconType >= 0 && iconType <= 5 ? iconType : 0;
}

int nodesPerIcon(int iconType)
{
    return effectiveIconType(iconType) % 2 == 0 ? 3 : 1;
}

int iconCount(const Graph& graph)
{
    const int per = nodesPerIcon(graph.IconType);
    return (int(graph.Nodes.size()) + per - 1) / per;
}

int iconLevel(int iconType, double v, double maxValue)
{
    const int type = effectiveIconType(iconType);
    int level = 0;
    if (type == 3)
        level = roundLevel(v);
    else
        level = roundLevel((type == 2 ? 9 : 15) * v / safeMax(maxValue));
    return level < 0 ? 0 : level;
}

QString iconNumberText(double v)
{
    if (v > 999)
        return QStringLiteral("EXP");
    return QString::number(iconLevel(3, v, 1)) + QStringLiteral("  ");
}

std::vector<int> historyLevels(const std::vector<double>& columns, double maxValue)
{
    const int count = int(columns.size());
    std::vector<int> levels;
    if (count == 0)
        return levels;
    const int start = count >= 7 ? count - 7 : 1;
    for (int p = start; p <= count; ++p) {
        // Position 0 reads as the newest column.
        const double v = p == 0 ? columns.back() : columns[p - 1];
        levels.push_back(roundLevel(15 * v / safeMax(maxValue)));
    }
    return levels;
}

QByteArray iconBar1(int level, qint32 colour)
{
    IconPixels px;
    drawIconBar(px, 0, IconSide, level, colour);
    return icoBytes(px);
}

QByteArray iconBars3(const std::vector<int>& levels, const std::vector<qint32>& colours)
{
    IconPixels px;
    for (size_t slot = 0; slot < 3 && slot < levels.size() && slot < colours.size(); ++slot)
        drawIconBar(px, int(slot) * 5, 5, levels[slot], colours[slot]);
    return icoBytes(px);
}

QByteArray iconNumbers(const std::vector<QString>& parts, const std::vector<qint32>& colours)
{
    IconPixels px;
    for (size_t c = 0; c < 3 && c < parts.size() && c < colours.size(); ++c) {
        printText(px, parts[c], 5 * int(c) + 1, 4, MidGrey);
        printText(px, parts[c], 5 * int(c), 3, colours[c]);
    }
    return icoBytes(px);
}

QByteArray iconHistory(const std::vector<std::vector<int>>& strips,
                       const std::vector<qint32>& colours)
{
    IconPixels px;
    const size_t slotCount = std::min<size_t>({strips.size(), colours.size(), 3});
    for (int k = 0; k < IconHistoryColumns; ++k) {
        // Entry k from the right of every strip; the tallest first, so each
        // Node keeps the top of its column in view.
        std::vector<std::pair<int, qint32>> bars;
        for (size_t s = 0; s < slotCount; ++s) {
            const std::vector<int>& strip = strips[s];
            if (k < int(strip.size()))
                bars.emplace_back(std::clamp(strip[strip.size() - 1 - k], 0, IconSide), colours[s]);
        }
        std::stable_sort(bars.begin(), bars.end(),
                         [](const auto& a, const auto& b) { return a.first > b.first; });
        const int x = IconSide - 2 - 2 * k;
        for (const auto& [height, colour] : bars)
            for (int row = 0; row < height; ++row) {
                px.set(x, IconSide - 1 - row, colour);
                px.set(x + 1, IconSide - 1 - row, colour);
            }
    }
    return icoBytes(px);
}

std::vector<int> iconNodes(int iconType, int icon, int nodeCount)
{
    const int per = nodesPerIcon(iconType);
    std::vector<int> nodes;
    for (int i = icon * per; i < (icon + 1) * per && i < nodeCount; ++i)
        if (i >= 0)
            nodes.push_back(i);
    return nodes;
}

QString iconTip(const std::vector<Graph>& sensors, int graph, int icon,
                const std::vector<double>& displayValues)
{
    if (!validGraph(sensors, graph))
        return {};
    const Graph& g = sensors[graph];
    const int count = int(std::min(g.Nodes.size(), displayValues.size()));
    QString tip;
    for (int i : iconNodes(g.IconType, icon, count))
        tip += g.Nodes[i].Name + QStringLiteral(" (") +
               nodeTypeName(g.Nodes[i].NodeType, sensors, graph, i) + QStringLiteral(") ") +
               QStringLiteral("{") + screenNumberText(displayValues[i]) + QStringLiteral(" ") +
               g.LegendUnits + QStringLiteral("}  ");
    return tip;
}

QByteArray iconPicture(const std::vector<Graph>& sensors, int graph, int icon,
                       const TrayInput& input, double maxValue)
{
    if (!validGraph(sensors, graph))
        return {};
    const Graph& g = sensors[graph];
    const int type = effectiveIconType(g.IconType);
    const int count = int(std::min(g.Nodes.size(), input.displayValues.size()));
    const std::vector<int> nodes = iconNodes(type, icon, count);
    if (nodes.empty())
        return {};
    std::vector<int> levels;
    std::vector<qint32> colours;
    for (int i : nodes) {
        levels.push_back(iconLevel(type, input.displayValues[i], maxValue));
        colours.push_back(g.Nodes[i].PenColor);
    }
    switch (type) {
    case 1:
        return iconBar1(levels[0], colours[0]);
    case 2: {
        std::vector<QString> parts;
        for (int level : levels)
            parts.push_back(QString::number(std::min(level, 9)) + QStringLiteral(" "));
        return iconNumbers(parts, colours);
    }
    case 3: {
        const QString text = iconNumberText(input.displayValues[nodes[0]]);
        std::vector<QString> parts;
        for (int c = 0; c < 3; ++c)
            parts.push_back(text.mid(c, 1));
        return iconNumbers(parts, {colours[0], colours[0], colours[0]});
    }
    case 4:
    case 5: {
        std::vector<std::vector<int>> strips;
        for (int i : nodes)
            strips.push_back(i < int(input.columns.size())
                                 ? historyLevels(input.columns[i], maxValue)
                                 : std::vector<int>{});
        return iconHistory(strips, colours);
    }
    default:
        return iconBars3(levels, colours);
    }
}

std::vector<TrayIconPicture> trayTick(const std::vector<Graph>& sensors, int graph,
                                      const TrayInput& input, double maxValue)
{
    std::vector<TrayIconPicture> icons;
    if (!validGraph(sensors, graph))
        return icons;
    for (int k = 0; k < iconCount(sensors[graph]); ++k) {
        QByteArray picture = iconPicture(sensors, graph, k, input, maxValue);
        if (picture.isEmpty())
            break;
        icons.push_back({k, picture, iconTip(sensors, graph, k, input.displayValues)});
    }
    return icons;
}

QString firstIconTip()
{
    return QString::fromLatin1(ProductName) + QStringLiteral(" - ") +
           QString::fromLatin1(CompanyName);
}

QString notifyTip(const QString& tag)
{
    const qsizetype nul = tag.indexOf(QChar(0));
    const QString tip = nul < 0 ? tag : tag.left(nul);
    if (tip.size() <= MaxNotifyTip)
        return tip;
    // Cut after the last Node that fits whole, else at a blank: never in a word.
    const QString cut = tip.left(MaxNotifyTip + 1);
    qsizetype end = cut.lastIndexOf(QLatin1Char('}'));
    if (end >= 0)
        return cut.left(end + 1);
    end = cut.lastIndexOf(QLatin1Char(' '));
    return end > 0 ? cut.left(end).trimmed() : cut.left(MaxNotifyTip);
}

QImage icoPicture(const QByteArray& ico)
{
    if (ico.size() != IconFileSize || !ico.startsWith(icoHeader()))
        return {};
    QImage img(IconSide, IconSide, QImage::Format_ARGB32);
    const auto* bytes = reinterpret_cast<const uchar*>(ico.constData());
    for (int y = 0; y < IconSide; ++y) {
        const int row = IconSide - 1 - y;  // stored bottom row first
        const uchar* colour = bytes + IconHeaderSize + row * IconSide * 3;
        const uchar* mask = bytes + IconMaskAt + row * 4;
        for (int x = 0; x < IconSide; ++x) {
            const bool clear = (mask[x / 8] >> (7 - x % 8)) & 1;
            img.setPixel(x, y, clear ? qRgba(0, 0, 0, 0)
                                     : qRgb(colour[3 * x + 2], colour[3 * x + 1], colour[3 * x]));
        }
    }
    return img;
}

bool writeTempIco(const QString& dataDir, const QByteArray& ico)
{
    QFile f(QDir(dataDir).filePath(QStringLiteral("Temp.ico")));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return f.write(ico) == ico.size();
}

}  // namespace orm
