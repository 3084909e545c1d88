// The tree's answers to the mouse, the wheel and the rename box.
#include "shell/vista_tree.h"

#include <QEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStringList>
#include <QTimer>
#include <QWheelEvent>

namespace orm {

using G = TreeGeometry;

namespace {

QString noNul(QString s)
{
    return s.remove(QChar(0));
}

bool inGlyph(int x, int yInRow, int glyphX)
{
    return x >= glyphX && x < glyphX + G::GlyphWidth && yInRow >= G::GlyphY &&
           yInRow < G::GlyphY + G::GlyphHeight;
}

}  // namespace

TreeHit VistaTree::hitTest(QPoint p) const
{
    TreeHit hit;
    const int x = p.x();
    if (x >= G::RowWidth) {
        if (scrollable()) {
            if (p.y() < G::ArrowHeight)
                hit.part = TreeHit::ScrollUp;
            else if (p.y() >= height() - G::ArrowHeight)
                hit.part = TreeHit::ScrollDown;
        }
        return hit;
    }
    if (x < 0)
        return hit;
    int y = -m_scroll;
    for (int i = 0; i < int(m_rows.size()); ++i) {
        const TreeParent& r = m_rows[size_t(i)];
        if (p.y() >= y && p.y() < y + r.Height) {
            const int inRow = p.y() - y;
            hit.parent = i;
            if (inGlyph(x, inRow, G::CollapseX))
                hit.part = TreeHit::CollapseGlyph;
            else if (inGlyph(x, inRow, G::CloseX))
                hit.part = TreeHit::CloseGlyph;
            else if (inGlyph(x, inRow, G::AddX))
                hit.part = TreeHit::AddGlyph;
            else
                hit.part = TreeHit::Body;
            return hit;
        }
        y += r.Height;
        if (!branchShown(r))
            continue;
        for (int j = 0; j < int(r.Children.size()); ++j) {
            const int h = r.Children[size_t(j)].Height;
            if (p.y() >= y && p.y() < y + h) {
                if (x < G::ChildX)
                    return hit;  // the margin left of a Node is nothing
                hit.parent = i;
                hit.child = j;
                hit.part = inGlyph(x, p.y() - y, G::CloseX) ? TreeHit::CloseGlyph : TreeHit::Body;
                return hit;
            }
            y += h;
        }
        y += G::CapHeight;
    }
    return hit;
}

void VistaTree::mousePressEvent(QMouseEvent* e)
{
    // While a row shrinks away the places below it are about to change.
    if (removing())
        return;
    if (!m_editTag.isEmpty())
        commitRename();  // a click on the surface ends the rename
    const QPoint p = e->position().toPoint();
    const TreeHit hit = hitTest(p);
    const bool nothing = hit.part == TreeHit::Nothing;
    emit mouseDown(e->button(), e->modifiers(), p.x(), p.y(), nothing, hit.parent, hit.child);
    switch (hit.part) {
    case TreeHit::CollapseGlyph: {
        TreeParent& r = m_rows[size_t(hit.parent)];
        r.Collapsed = !r.Collapsed;
        // The Nodes slide away, or back in from nothing.
        r.State = r.Collapsed ? RowState::Collapse : RowState::Expand;
        if (!r.Collapsed)
            for (TreeChild& c : r.Children)
                c.Height = 0;
        startAnimation();
        if (r.Collapsed && m_selParent == hit.parent && m_selChild >= 0)
            SelectItem(hit.parent, -1, false, false);  // the selected Node is folded away
        scrollBy(0);
        update();
        emit collapseChanged(r.Key, r.Tag, r.Collapsed);
        break;
    }
    case TreeHit::CloseGlyph:
        emit closeClicked(hit.child < 0, hit.parent, hit.child);
        break;
    case TreeHit::AddGlyph:
        emit addClicked(hit.parent);
        break;
    case TreeHit::Body:
        if (hit.parent != m_selParent || hit.child != m_selChild)
            SelectItem(hit.parent, hit.child, false, false);
        break;
    case TreeHit::ScrollUp:
    case TreeHit::ScrollDown:
        m_scrollStep = hit.part == TreeHit::ScrollUp ? -G::ScrollStep : G::ScrollStep;
        scrollBy(m_scrollStep);
        m_scrollTimer->start();
        break;
    case TreeHit::Nothing:
        break;
    }
    // The control panel opens the menu from here on a right press.
    emit mouseOver(e->buttons() | e->button(), e->modifiers(), p.x(), p.y(), nothing, hit.parent,
                   hit.child);
}

void VistaTree::mouseReleaseEvent(QMouseEvent* e)
{
    m_scrollTimer->stop();
    const QPoint p = e->position().toPoint();
    const TreeHit hit = hitTest(p);
    emit mouseUp(e->button(), e->modifiers(), p.x(), p.y(), hit.part == TreeHit::Nothing,
                 hit.parent, hit.child);
}

void VistaTree::mouseMoveEvent(QMouseEvent* e)
{
    const QPoint p = e->position().toPoint();
    const TreeHit hit = hitTest(p);
    emit mouseOver(e->buttons(), e->modifiers(), p.x(), p.y(), hit.part == TreeHit::Nothing,
                   hit.parent, hit.child);
}

void VistaTree::mouseDoubleClickEvent(QMouseEvent* e)
{
    if (removing())
        return;
    const TreeHit hit = hitTest(e->position().toPoint());
    if (hit.part == TreeHit::Body && e->button() == Qt::LeftButton)
        ForceTitleEdit(hit.child < 0, hit.parent, hit.child);
}

void VistaTree::wheelEvent(QWheelEvent* e)
{
    scrollBy(-e->angleDelta().y() / 120 * G::RowHeight);
    e->accept();
}

void VistaTree::ForceTitleEdit(bool isParent, int parent, int child)
{
    if (isParent)
        child = -1;
    if (!validParent(parent) || (!isParent && !validChild(parent, child)))
        return;
    if (!m_editTag.isEmpty())
        commitRename();
    SelectItem(parent, child, true, true);
    const int top = rowTop(parent, child);
    const int left = isParent ? 56 : G::ChildX + 23;
    m_editTag = QStringLiteral("%1|%2|%3")
                    .arg(parent)
                    .arg(child)
                    .arg(isParent ? QStringLiteral("True") : QStringLiteral("False"));
    m_edit->setGeometry(left, top + 16, G::CloseX - left - 2, 16);
    m_edit->setText(GetTitle(isParent, parent, child));
    m_edit->selectAll();
    m_edit->show();
    m_edit->setFocus();
}

bool VistaTree::editing() const
{
    return !m_editTag.isEmpty();
}

void VistaTree::commitRename()
{
    if (m_editTag.isEmpty())
        return;
    const QStringList parts = m_editTag.split(QLatin1Char('|'));
    m_editTag.clear();  // first: hiding the box takes its focus and comes back here
    m_edit->hide();
    if (parts.size() < 3)
        return;
    const int parent = parts[0].toInt();
    const int child = parts[1].toInt();
    const bool isParent = parts[2] == QLatin1String("True");
    const QString text = noNul(m_edit->text());
    if (isParent && validParent(parent))
        m_rows[size_t(parent)].Title = text;
    else if (!isParent && validChild(parent, child))
        m_rows[size_t(parent)].Children[size_t(child)].Title = text;
    else
        return;
    update();
    emit renameCommitted(isParent, parent, isParent ? -1 : child, text);
}

bool VistaTree::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_edit && event->type() == QEvent::FocusOut)
        commitRename();
    return QWidget::eventFilter(watched, event);
}

}  // namespace orm
