#include "display/graph_page.h"

#include "model/catalogue.h"
#include "model/version.h"
#include "display/colors.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>
#include <algorithm>

namespace orm {

std::vector<GraphKeyEntry> graphKey(const Graph& graph)
{
    std::vector<GraphKeyEntry> key;
    key.reserve(graph.Nodes.size());
    for (const Node& n : graph.Nodes) {
        QString name = n.Name;
        name.remove(QChar(0));
        key.push_back({fromBgr(n.PenColor), name + QStringLiteral(" (") + nodeTypeName(n.NodeType) +
                                                QStringLiteral(")   ")});
    }
    return key;
}

QString printedByLine(const QDate& today)
{
    return QStringLiteral("Printed by ") + QLatin1String(ProductName) + QLatin1Char(' ') +
           QLocale::system().toString(today, QLocale::ShortFormat);
}

QFont printFont(int pointSize)
{
    // Not a named face: whatever the desktop calls its sans-serif.
    QFont font(QStringLiteral("Sans Serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSize(pointSize);
    return font;
}

PageTextFlow::PageTextFlow(QPainter& painter, QPagedPaintDevice& device)
    : painter_(painter), device_(device), pageWidth_(device.width()), pageHeight_(device.height())
{
    setFont(painter.font());
}

void PageTextFlow::setFont(const QFont& font)
{
    painter_.setFont(font);
    const QFontMetricsF fm(font, &device_);
    lineHeight_ = fm.lineSpacing();
    ascent_ = fm.ascent();
}

void PageTextFlow::nextPageIfFull()
{
    if (y_ + lineHeight_ <= pageHeight_ || y_ == 0)
        return;
    device_.newPage();
    y_ = 0;
}

void PageTextFlow::endLine()
{
    x_ = 0;
    y_ += lineHeight_;
    nextPageIfFull();
}

void PageTextFlow::makeRoom(double width)
{
    nextPageIfFull();
    if (x_ > 0 && x_ + width > pageWidth_)
        endLine();
}

void PageTextFlow::drawRun(const QString& run)
{
    painter_.setPen(color_);
    painter_.drawText(QPointF(x_, y_ + ascent_), run);
    x_ += QFontMetricsF(painter_.font(), &device_).horizontalAdvance(run);
}

void PageTextFlow::print(const QString& text)
{
    const QFontMetricsF fm(painter_.font(), &device_);
    int at = 0;
    while (at < text.size()) {
        // One word with the blanks after it; only the word itself must fit.
        int end = at;
        while (end < text.size() && text[end] != QLatin1Char(' '))
            ++end;
        const int wordEnd = end;
        while (end < text.size() && text[end] == QLatin1Char(' '))
            ++end;
        QString word = text.mid(at, wordEnd - at);
        makeRoom(fm.horizontalAdvance(word));
        // A word longer than a whole line is cut where the edge falls.
        while (!word.isEmpty() && x_ + fm.horizontalAdvance(word) > pageWidth_) {
            int fits = 0;
            while (fits < word.size() && x_ + fm.horizontalAdvance(word.left(fits + 1)) <= pageWidth_)
                ++fits;
            fits = std::max(fits, 1);
            drawRun(word.left(fits));
            word = word.mid(fits);
            endLine();
        }
        drawRun(word + text.mid(wordEnd, end - wordEnd));
        at = end;
    }
}

void PageTextFlow::printSquare()
{
    const double side = ascent_ * 0.7;
    const double advance = side * 1.25;
    makeRoom(advance);
    painter_.fillRect(QRectF(x_, y_ + ascent_ - side, side, side), color_);
    x_ += advance;
}

void composeGraphPage(QPainter& painter, QPagedPaintDevice& device, const QImage& picture,
                      const std::vector<GraphKeyEntry>& key, const QString& footer)
{
    // The picture keeps the size it has on screen, unless the page is smaller.
    double scale = device.logicalDpiX() / PictureDpi;
    if (!picture.isNull()) {
        scale = std::min({scale, double(device.width()) / picture.width(),
                          double(device.height()) / picture.height()});
        // Without loss: a graph's thin lines would blur as JPEG.
        painter.setRenderHint(QPainter::LosslessImageRendering);
        painter.drawImage(QRectF(0, 0, picture.width() * scale, picture.height() * scale), picture);
    }

    PageTextFlow flow(painter, device);
    flow.setFont(printFont(10));
    const double pictureBottom = picture.isNull() ? 0 : picture.height() * scale;
    flow.setCurrentY(pictureBottom + flow.lineHeight());

    const QColor textColor = flow.color();
    for (const GraphKeyEntry& entry : key) {
        flow.setColor(entry.color);
        flow.printSquare();
        flow.setColor(textColor);
        flow.print(entry.text);
    }
    flow.endLine();
    flow.endLine();
    flow.print(footer);
}

}  // namespace orm
