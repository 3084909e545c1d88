// Systray Icon Graphs: each Node, or each group of three, shown as a live 16 x 16
// icon. The picture is built as the bytes of an ICO file, always 898 long,
// which is written to Temp.ico and loaded back for the tray.
#pragma once

#include "model/model.h"

#include <QByteArray>
#include <QImage>
#include <QString>
#include <array>
#include <vector>

namespace orm {

inline constexpr int IconFileSize = 898;
inline constexpr int IconSide = 16;
// Columns of history an IconHistory picture keeps per Node.
inline constexpr int IconHistoryColumns = 8;

// The captions of cmbIconType, by IconType 0 to 5.
QString iconTypeCaption(int iconType);
// A stored IconType outside 0..5 counts as 0.
int effectiveIconType(int iconType);
// 3 for types 0, 2 and 4; 1 for the others.
int nodesPerIcon(int iconType);
// The Node count divided by 3 and rounded up for three-Node types, else one per Node.
int iconCount(const Graph& graph);

// The level of a display value: round(15 * v / max) for types 0 and 1,
// round(9 * v / max) for type 2, v itself rounded for type 3; never below 0.
int iconLevel(int iconType, double v, double maxValue);
// What a type 3 icon shows: the number and two blanks, or "EXP" above 999.
QString iconNumberText(double v);
// The strip of a Node for types 4 and 5, oldest first. `columns` holds the
// display value of each stored column, oldest first; the strip starts at
// Count - 7 when Count is at least 7 (position 0 being the newest column),
// otherwise at the first; each entry is round(15 * value / max).
std::vector<int> historyLevels(const std::vector<double>& columns, double maxValue);

// The picture routines. Colours are 0x00BBGGRR; slots beyond the colours given
// are left clear.
QByteArray iconBar1(int level, qint32 colour);
QByteArray iconBars3(const std::vector<int>& levels, const std::vector<qint32>& colours);
// parts[c] is printed from x = 5 * c, y = 3 in colours[c], over a grey shadow
// one pixel down and right; all that is not drawn is clear.
QByteArray iconNumbers(const std::vector<QString>& parts, const std::vector<qint32>& colours);
// One strip per slot, drawn as two-pixel columns from the right edge.
QByteArray iconHistory(const std::vector<std::vector<int>>& strips,
                       const std::vector<qint32>& colours);

// What one tick needs per Node: its display value, and for types 4 and 5 the
// display values of its stored columns, oldest first.
struct TrayInput {
    std::vector<double> displayValues;
    std::vector<std::vector<double>> columns;
};

// The Node indexes shown by icon `icon` among the first `nodeCount` Nodes.
std::vector<int> iconNodes(int iconType, int icon, int nodeCount);

// The tip of one icon: for each of its Nodes "<name> (<type>) {<v> <units>}  ".
QString iconTip(const std::vector<Graph>& sensors, int graph, int icon,
                const std::vector<double>& displayValues);
// The picture of one icon; empty when the icon has no Node with a value.
QByteArray iconPicture(const std::vector<Graph>& sensors, int graph, int icon,
                       const TrayInput& input, double maxValue);

struct TrayIconPicture {
    int icon = 0;
    QByteArray picture;
    QString tip;
};

// One tick of a Systray Icon Graph: every icon whose Nodes have values.
std::vector<TrayIconPicture> trayTick(const std::vector<Graph>& sensors, int graph,
                                      const TrayInput& input, double maxValue);

// The first tip of a new icon: product name, " - ", company name.
QString firstIconTip();
// The tip as the shell keeps it: up to a NUL, at most 63 characters, cut
// after the last Node's entry that fits whole (or at a blank), never in a word.
inline constexpr int MaxNotifyTip = 63;
QString notifyTip(const QString& tag);

// The picture read back from the bytes, clear pixels fully transparent (the
// Qt ICO reader ignores the mask of a 24-bit icon). Null for anything but an
// icon laid out as above.
QImage icoPicture(const QByteArray& ico);

// Rewrites Temp.ico in the data folder with the whole picture.
bool writeTempIco(const QString& dataDir, const QByteArray& ico);

}  // namespace orm
