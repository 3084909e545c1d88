// Painting the tree: the rows with their glyphs, the foot of each open branch,
// and the scroll bar when the rows do not fit.
#include "shell/vista_tree.h"

#include <QPainter>

#include <algorithm>

namespace orm {

using G = TreeGeometry;

void VistaTree::drawRow(QPainter& p, int x, int y, int width, const QString& title,
                        const QString& sub, bool selected, bool isParent, bool collapsed) const
{
    const QRect r(x + 1, y + 1, width - 2, G::RowHeight - 2);
    p.setPen(QColor(0x8c, 0xa6, 0xc8));
    p.setBrush(selected ? QColor(0xc4, 0xdc, 0xf6) : QColor(0xf4, 0xf7, 0xfb));
    p.drawRoundedRect(r, 4, 4);

    const QPen glyphPen(QColor(0x40, 0x50, 0x68));
    auto box = [&](int gx) { return QRect(gx, y + G::GlyphY, G::GlyphWidth - 1, G::GlyphHeight - 1); };
    p.setBrush(Qt::NoBrush);
    p.setPen(glyphPen);
    const QRect close = box(G::CloseX);
    p.drawLine(close.topLeft() + QPoint(4, 3), close.bottomRight() - QPoint(4, 3));
    p.drawLine(close.topRight() + QPoint(-4, 3), close.bottomLeft() + QPoint(4, -3));
    int textLeft = x + 8;
    if (isParent) {
        const QRect fold = box(G::CollapseX);
        p.drawRect(fold.adjusted(2, 2, -2, -2));
        p.drawLine(fold.left() + 5, fold.center().y(), fold.right() - 5, fold.center().y());
        if (collapsed)
            p.drawLine(fold.center().x(), fold.top() + 5, fold.center().x(), fold.bottom() - 5);
        const QRect add = box(G::AddX);
        p.drawLine(add.left() + 3, add.center().y(), add.right() - 3, add.center().y());
        p.drawLine(add.center().x(), add.top() + 3, add.center().x(), add.bottom() - 3);
        textLeft = G::CollapseX + G::GlyphWidth + 4;
    }
    const int textRight = (isParent ? G::AddX : G::CloseX) - 2;
    const QFontMetrics fm(font());
    p.setPen(Qt::black);
    p.drawText(QRect(textLeft, y + 2, textRight - textLeft, 14), Qt::AlignLeft | Qt::AlignVCenter,
               fm.elidedText(title, Qt::ElideRight, textRight - textLeft));
    if (!sub.isEmpty()) {
        p.setPen(QColor(0x60, 0x60, 0x60));
        p.drawText(QRect(textLeft, y + 16, textRight - textLeft, 14),
                   Qt::AlignLeft | Qt::AlignVCenter,
                   fm.elidedText(sub, Qt::ElideRight, textRight - textLeft));
    }
}

void VistaTree::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), QColor(0xe6, 0xec, 0xf4));
    p.setRenderHint(QPainter::Antialiasing, true);
    int y = -m_scroll;
    for (int i = 0; i < int(m_rows.size()) && y < height(); ++i) {
        const TreeParent& r = m_rows[size_t(i)];
        // A row shorter than its full height (growing in) shows only its top.
        if (y + r.Height > 0 && r.Height > 0) {
            p.setClipRect(0, y, G::RowWidth, r.Height);
            drawRow(p, 0, y, G::RowWidth, r.Title, r.SubText, m_selParent == i && m_selChild < 0,
                    true, r.Collapsed);
            p.setClipping(false);
        }
        y += r.Height;
        if (!branchShown(r))
            continue;
        for (int j = 0; j < int(r.Children.size()); ++j) {
            const TreeChild& c = r.Children[size_t(j)];
            if (y + c.Height > 0 && y < height() && c.Height > 0) {
                p.setClipRect(G::ChildX, y, G::RowWidth - G::ChildX, c.Height);
                drawRow(p, G::ChildX, y, G::RowWidth - G::ChildX, c.Title, c.SubText,
                        m_selParent == i && m_selChild == j, false, false);
                p.setClipping(false);
            }
            y += c.Height;
        }
        // The foot that closes the branch.
        p.setPen(QColor(0x8c, 0xa6, 0xc8));
        p.drawLine(G::ChildX + 4, y + G::CapHeight / 2, G::RowWidth - 4, y + G::CapHeight / 2);
        y += G::CapHeight;
    }
    if (scrollable()) {
        const int x = G::RowWidth;
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xc8, 0xd2, 0xe0));
        p.drawRect(x, 0, G::ScrollWidth, height());
        p.setBrush(QColor(0x40, 0x50, 0x68));
        const int cx = x + G::ScrollWidth / 2;
        p.drawPolygon(QPolygon({QPoint(cx, 2), QPoint(x + 3, G::ArrowHeight - 2),
                                QPoint(x + G::ScrollWidth - 3, G::ArrowHeight - 2)}));
        const int b = height() - 1;
        p.drawPolygon(QPolygon({QPoint(cx, b - 2), QPoint(x + 3, b - G::ArrowHeight + 2),
                                QPoint(x + G::ScrollWidth - 3, b - G::ArrowHeight + 2)}));
        const int track = height() - 2 * G::ArrowHeight - 17;
        const int most = std::max(1, contentHeight() - height());
        const int thumb = G::ArrowHeight + track * m_scroll / most;
        p.setBrush(QColor(0x70, 0x84, 0xa0));
        p.drawRoundedRect(QRect(x + 1, thumb, G::ScrollWidth - 2, 17), 3, 3);
    }
}

}  // namespace orm
