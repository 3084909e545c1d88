// The cross-hair of a Line Graph: the column under the pointer, the Node
// nearest to it there, the three label texts, and the lines and dot drawn on
// the window over the finished picture. No widget here: the window passes the
// pointer in pixels and draws what it gets back.
#pragma once

#include "model/model.h"

#include <QLine>
#include <QSize>
#include <QString>
#include <vector>

class QPainter;

namespace orm {

class GraphPicture;

struct CrossHairPoint {
    bool shown = false;   // false: erase only, draw nothing
    int x = 0;            // the pointer's column on the window
    int y = 0;            // the horizontal line, held inside the plot
    int column = 0;       // list position, 1 the oldest
    int node = -1;        // the chosen Node, from 0
    double value = 0;     // its display value, rounded by crossHairDecimals
    QString dataText;     // lblCrossHairData
    QString nameText;     // lblCrossHairName
    qint32 swatchColor = 0;  // lblCrossHairGridColor's back colour
};

// Decimals kept for a display value, so small values keep their significant digits.
int crossHairDecimals(double v);
// v to crossHairDecimals(v) places, halves to even.
double crossHairRound(double v);

// The list position under window column x, for a list of `count` labels:
// x + 2 - 55, no more than count, at least 1. 0 when the list is empty.
int crossHairColumn(int x, int count);

// The horizontal line's y for display value v, kept between 35 and pHeight + 34.
int crossHairLineY(double v, int pHeight, double maxValue);

// True in the bottom-right 10 x 10 pixels, where a press resizes.
bool inSizingCorner(int x, int y, int windowWidth, int windowHeight);
// The grip (imgResize) in that corner: three diagonal strokes in the label
// colour, or in a colour that stands out when that is the back colour.
void drawResizeGrip(QPainter& painter, QSize windowSize, const Graph& graph);

// The whole choice for the pointer at (x, y) on the window of Graph `graph`.
CrossHairPoint crossHairAt(const std::vector<Graph>& sensors, int graph, const GraphPicture& picture, int x,
                           int y);

// The two lines and the seven strokes of the round dot.
std::vector<QLine> crossHairStrokes(const CrossHairPoint& point, int pWidth, int pHeight);

// Draws the strokes with the dash-dot-dot pen in GraphCrossHairColor.
void drawCrossHair(QPainter& painter, const Graph& graph, const CrossHairPoint& point, int pWidth, int pHeight);

}  // namespace orm
