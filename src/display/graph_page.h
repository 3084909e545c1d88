// The printed page of a Graph: the window's picture at the page's origin, the
// key of its Nodes in one flowing line, and the footer. Drawn with a QPainter
// on any paged device (a printer, a PDF file).
#pragma once

#include "model/model.h"

#include <QColor>
#include <QDate>
#include <QFont>
#include <QImage>
#include <QString>
#include <vector>

class QPagedPaintDevice;
class QPainter;

namespace orm {

// One Node in the key: a filled square in its pen colour, then its text.
struct GraphKeyEntry {
    QColor color;
    QString text;
};

// Every Node in order: the name without NUL characters, " (", the type name, ")   ".
std::vector<GraphKeyEntry> graphKey(const Graph& graph);
// "Printed by Ormivane " and the date as the desktop writes it short.
QString printedByLine(const QDate& today);
// The desktop's sans-serif font at a point size.
QFont printFont(int pointSize);

// Screen pixels per inch that the picture is printed at.
inline constexpr double PictureDpi = 96.0;

// Text that runs on from left to right and wraps at the page's right edge,
// word by word; the next page begins when the bottom is reached. Positions are
// in device pixels.
class PageTextFlow {
public:
    PageTextFlow(QPainter& painter, QPagedPaintDevice& device);

    void setFont(const QFont& font);
    void setColor(const QColor& color) { color_ = color; }
    const QColor& color() const { return color_; }
    // CurrentY: the top of the line that is printed next.
    void setCurrentY(double y) { y_ = y; }
    double lineHeight() const { return lineHeight_; }

    // Text without a line end; wraps where it does not fit.
    void print(const QString& text);
    // A filled square the size of a capital, in the current colour.
    void printSquare();
    // Ends the line: the next text begins at the left on the line below.
    void endLine();

private:
    // Room for `width` on this line, or a new line (and page) for it.
    void makeRoom(double width);
    void drawRun(const QString& run);
    void nextPageIfFull();

    QPainter& painter_;
    QPagedPaintDevice& device_;
    double pageWidth_;
    double pageHeight_;
    double x_ = 0;
    double y_ = 0;
    double lineHeight_ = 0;
    double ascent_ = 0;
    QColor color_ = Qt::black;
};

// Paints the page: the picture at the origin, at PictureDpi (made smaller to
// fit a page too narrow or short for it), then the key a gap below and the
// footer after a blank line. The painter is active on `device`.
void composeGraphPage(QPainter& painter, QPagedPaintDevice& device, const QImage& picture,
                      const std::vector<GraphKeyEntry>& key, const QString& footer);

}  // namespace orm
