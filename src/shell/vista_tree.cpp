#include "shell/vista_tree.h"

#include "model/catalogue.h"

#include <QEvent>
#include <QSet>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStringList>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>

namespace orm {

using G = TreeGeometry;

TreeTip treeToolTip(const Graph& graph, int node)
{
    if (node >= int(graph.Nodes.size()))
        return {};
    if (node >= 0) {
        const QString body = graph.LogGraph
            ? QStringLiteral("This is called a Log Node which represents a Line or item of data on "
                             "the Log Graph. Click here to change the Log Node type.")
            : QStringLiteral("This is called a Node which represents a Line or item on the "
                             "associated graph. Click here to change its settings or to change the "
                             "type of Node and data that is displayed on the Graph.");
        return {graph.Nodes[size_t(node)].Name, body};
    }
    QString body = graph.LogGraph
        ? QStringLiteral("This is called a Log Graph and represents an entire Graph containing any "
                         "number of Log Nodes. Click here to change its settings or to change the "
                         "Log Viewing settings.")
        : QStringLiteral("This represents an entire Graph which contains any number of Nodes. "
                         "Click here to change its settings or to change it to another type of "
                         "Graph.");
    body += QStringLiteral("\n\n");
    body += graph.LogGraph
        ? QStringLiteral("Legend units are determined by the first Log Node type within this Graph.")
        : QStringLiteral("Legend units are determined by the first Node type within this Graph.");
    body += QStringLiteral("\nUnits: {") + graph.LegendUnits + QStringLiteral("}");
    return {graph.Name, body};
}

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

VistaTree::VistaTree(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    QFont f = font();  // the original asked for a face that does not exist: the default it is
    f.setPointSize(8);
    setFont(f);

    m_scrollTimer = new QTimer(this);
    m_scrollTimer->setInterval(30);
    connect(m_scrollTimer, &QTimer::timeout, this, [this] { scrollBy(m_scrollStep); });
    m_animTimer = new QTimer(this);
    m_animTimer->setInterval(G::AnimationInterval);
    connect(m_animTimer, &QTimer::timeout, this, &VistaTree::animationStep);

    m_edit = new QLineEdit(this);
    m_edit->hide();
    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::returnPressed, this, [this] {
        setFocus();
        commitRename();  // setFocus may not reach us when the window is inactive
    });
}

QSize VistaTree::sizeHint() const
{
    return {G::RowWidth + G::ScrollWidth, 300};
}

bool VistaTree::validParent(int parent) const
{
    return parent >= 0 && parent < int(m_rows.size());
}

bool VistaTree::validChild(int parent, int child) const
{
    return validParent(parent) && child >= 0 &&
           child < int(m_rows[size_t(parent)].Children.size());
}

void VistaTree::rebuild(const std::vector<Graph>& graphs)
{
    m_editTag.clear();  // an open rename refers to rows that are going
    m_edit->hide();
    // The rows there were, by place: a row removed before moved the later ones up.
    QSet<QString> before;
    for (size_t i = 0; i < m_rows.size(); ++i) {
        before.insert(QStringLiteral("G%1").arg(i));
        for (size_t j = 0; j < m_rows[i].Children.size(); ++j)
            before.insert(QStringLiteral("G%1N%2").arg(i).arg(j));
    }
    m_rows.clear();
    for (size_t i = 0; i < graphs.size(); ++i) {
        const Graph& g = graphs[i];
        // The sub-text names the kind: the Graph's display type, the Node's data type.
        Add(true, 0, QString(), g.Name, g.LogGraph ? QStringLiteral("Log Graph") : nodeTypeName(g.GraphType), 999,
            QString::number(i),
            QStringLiteral("G%1").arg(i), g.Collapsed, g.LogGraph);
        for (size_t j = 0; j < g.Nodes.size(); ++j)
            Add(false, int(i), QString(), g.Nodes[j].Name, nodeTypeName(g.Nodes[j].NodeType, graphs, int(i), int(j)),
                999, QString::number(j),
                QStringLiteral("G%1N%2").arg(i).arg(j), false, false);
    }
    if (!validParent(m_selParent) || (m_selChild >= 0 && !validChild(m_selParent, m_selChild))) {
        m_selParent = -1;
        m_selChild = -1;
    }
    // Rows that were not there before grow in (not on the first fill).
    if (!before.isEmpty()) {
        for (TreeParent& r : m_rows) {
            if (!before.contains(r.Key)) {
                r.Height = 0;
                r.State = RowState::Added;
            }
            for (TreeChild& c : r.Children)
                if (!before.contains(c.Key)) {
                    c.Height = 0;
                    c.State = RowState::Added;
                }
        }
        startAnimation();
    }
    scrollBy(0);
    update();
}

void VistaTree::Add(bool isParent, int parentIndex, const QString& text, const QString& title,
                    const QString& subText, int icon, const QString& tag, const QString& key,
                    bool collapsed, bool extra)
{
    if (isParent) {
        TreeParent r;
        r.Title = noNul(title);
        r.SubText = noNul(subText);
        r.Text = noNul(text);
        r.Icon = icon;
        r.Extra = extra;
        r.Collapsed = collapsed;
        r.Key = noNul(key);
        r.Tag = noNul(tag);
        m_rows.push_back(std::move(r));
    } else {
        if (!validParent(parentIndex))
            return;
        TreeChild c;
        c.Title = noNul(title);
        c.SubText = noNul(subText);
        c.Text = noNul(text);
        c.Icon = icon;
        c.Extra = extra;
        c.Key = noNul(key);
        c.Tag = noNul(tag);
        m_rows[size_t(parentIndex)].Children.push_back(std::move(c));
    }
    update();
}

void VistaTree::Clear()
{
    m_editTag.clear();
    m_edit->hide();
    m_rows.clear();
    m_selParent = -1;
    m_selChild = -1;
    m_scroll = 0;
    update();
}

void VistaTree::DeleteSelectedItem()
{
    if (m_selChild >= 0) {
        if (!validChild(m_selParent, m_selChild))
            return;
        m_rows[size_t(m_selParent)].Children[size_t(m_selChild)].State = RowState::Delete;
    } else {
        if (!validParent(m_selParent))
            return;
        TreeParent& r = m_rows[size_t(m_selParent)];
        r.State = RowState::Delete;
        r.Collapsed = true;  // its Nodes go with it at once
    }
    m_selParent = -1;
    m_selChild = -1;
    startAnimation();
    update();
}

QString VistaTree::GetTag(bool isParent, int parent, int child) const
{
    if (isParent)
        return validParent(parent) ? m_rows[size_t(parent)].Tag : QString();
    return validChild(parent, child) ? m_rows[size_t(parent)].Children[size_t(child)].Tag
                                     : QString();
}

QString VistaTree::GetTitle(bool isParent, int parent, int child) const
{
    if (isParent)
        return validParent(parent) ? m_rows[size_t(parent)].Title : QString();
    return validChild(parent, child) ? m_rows[size_t(parent)].Children[size_t(child)].Title
                                     : QString();
}

QString VistaTree::GetText(bool isParent, int parent, int child) const
{
    if (isParent)
        return validParent(parent) ? m_rows[size_t(parent)].Text : QString();
    return validChild(parent, child) ? m_rows[size_t(parent)].Children[size_t(child)].Text
                                     : QString();
}

QString VistaTree::GetSelectedTag(bool isParent) const
{
    return GetTag(isParent, m_selParent, m_selChild);
}

QString VistaTree::GetSelectedText(bool isParent) const
{
    return GetText(isParent, m_selParent, m_selChild);
}

int VistaTree::GetSelectedIcon() const
{
    if (validChild(m_selParent, m_selChild))
        return m_rows[size_t(m_selParent)].Children[size_t(m_selChild)].Icon;
    if (m_selChild < 0 && validParent(m_selParent))
        return m_rows[size_t(m_selParent)].Icon;
    return 0;
}

#define ORM_SELECTED_SET(field, value)                                        \
    if (validChild(m_selParent, m_selChild))                                  \
        m_rows[size_t(m_selParent)].Children[size_t(m_selChild)].field = value; \
    else if (m_selChild < 0 && validParent(m_selParent))                      \
        m_rows[size_t(m_selParent)].field = value;                            \
    update();

void VistaTree::SetSelectedItemTitle(const QString& title) { ORM_SELECTED_SET(Title, noNul(title)) }
void VistaTree::SetSelectedItemText(const QString& text) { ORM_SELECTED_SET(Text, noNul(text)) }
void VistaTree::SetSelectedItemTag(const QString& tag) { ORM_SELECTED_SET(Tag, noNul(tag)) }
void VistaTree::SetSelectedItemIcon(int icon) { ORM_SELECTED_SET(Icon, icon) }

#undef ORM_SELECTED_SET

void VistaTree::MarkSelected(int parent, int child)
{
    if (!validParent(parent) || (child >= 0 && !validChild(parent, child)))
        return;
    m_selParent = parent;
    m_selChild = child < 0 ? -1 : child;
    update();
}

void VistaTree::SelectItem(int parent, int child, bool silent, bool scrollIntoView)
{
    if (!validParent(parent) || (child >= 0 && !validChild(parent, child)))
        return;
    MarkSelected(parent, child);
    if (scrollIntoView) {
        if (child >= 0 && m_rows[size_t(parent)].Collapsed) {
            // A hidden Node must show to be seen; the model learns it as a collapse change.
            m_rows[size_t(parent)].Collapsed = false;
            emit collapseChanged(m_rows[size_t(parent)].Key, m_rows[size_t(parent)].Tag, false);
        }
        const int top = rowTop(parent, child);
        if (top < 0)
            scrollBy(top);
        else if (top + G::RowHeight > height())
            scrollBy(top + G::RowHeight - height());
    }
    if (!silent) {
        const bool isParent = m_selChild < 0;
        emit itemSelected(isParent,
                          isParent ? m_rows[size_t(parent)].Key
                                   : m_rows[size_t(parent)].Children[size_t(child)].Key,
                          GetTag(isParent, parent, child), parent, m_selChild);
    }
}

bool VistaTree::branchShown(const TreeParent& r) const
{
    return !r.Children.empty() && (!r.Collapsed || r.State == RowState::Collapse);
}

int VistaTree::branchHeight(const TreeParent& r) const
{
    if (!branchShown(r))
        return 0;
    int h = G::CapHeight;
    for (const TreeChild& c : r.Children)
        h += c.Height;
    return h;
}

int VistaTree::contentHeight() const
{
    int h = 0;
    for (const TreeParent& r : m_rows)
        h += r.Height + branchHeight(r);
    return h;
}

bool VistaTree::animating() const
{
    for (const TreeParent& r : m_rows) {
        if (r.State != RowState::None)
            return true;
        for (const TreeChild& c : r.Children)
            if (c.State != RowState::None)
                return true;
    }
    return false;
}

bool VistaTree::removing() const
{
    for (const TreeParent& r : m_rows) {
        if (r.State == RowState::Delete)
            return true;
        for (const TreeChild& c : r.Children)
            if (c.State == RowState::Delete)
                return true;
    }
    return false;
}

void VistaTree::startAnimation()
{
    if (animating() && !m_animTimer->isActive())
        m_animTimer->start();
}

void VistaTree::animationStep()
{
    const auto grow = [](int& h, RowState& state) {
        h = std::min(G::RowHeight, h + G::AnimationStep);
        if (h == G::RowHeight)
            state = RowState::None;
    };
    const auto shrink = [](int& h) { h = std::max(0, h - G::AnimationStep); };
    for (TreeParent& r : m_rows) {
        if (r.State == RowState::Added)
            grow(r.Height, r.State);
        else if (r.State == RowState::Delete)
            shrink(r.Height);
        for (TreeChild& c : r.Children)
            if (c.State == RowState::Added)
                grow(c.Height, c.State);
            else if (c.State == RowState::Delete)
                shrink(c.Height);
        // Rows that have shrunk to nothing leave.
        std::erase_if(r.Children, [](const TreeChild& c) { return c.State == RowState::Delete && c.Height == 0; });
        if (r.State == RowState::Collapse || r.State == RowState::Expand) {
            const int step = r.State == RowState::Collapse ? -G::AnimationStep : G::AnimationStep;
            bool done = true;
            for (TreeChild& c : r.Children) {
                c.Height = std::clamp(c.Height + step, 0, int(G::RowHeight));
                done = done && (c.Height == 0 || c.Height == G::RowHeight);
            }
            if (done) {
                for (TreeChild& c : r.Children)
                    c.Height = G::RowHeight;  // ready for the next opening
                r.State = RowState::None;
            }
        }
    }
    std::erase_if(m_rows, [](const TreeParent& r) { return r.State == RowState::Delete && r.Height == 0; });
    scrollBy(0);
    update();
    if (!animating()) {
        m_animTimer->stop();
        emit settled();
    }
}

void VistaTree::finishAnimations()
{
    for (int i = 0; i < 2 * G::RowHeight && animating(); ++i)
        animationStep();
}

int VistaTree::rowTop(int parent, int child) const
{
    if (!validParent(parent) || (child >= 0 && !validChild(parent, child)))
        return -1;
    int y = -m_scroll;
    for (int i = 0; i < parent; ++i)
        y += m_rows[size_t(i)].Height + branchHeight(m_rows[size_t(i)]);
    if (child < 0)
        return y;
    const TreeParent& r = m_rows[size_t(parent)];
    if (!branchShown(r))
        return -1;
    y += r.Height;
    for (int j = 0; j < child; ++j)
        y += r.Children[size_t(j)].Height;
    return y;
}

bool VistaTree::scrollable() const
{
    return contentHeight() > height();
}

void VistaTree::scrollBy(int step)
{
    const int most = std::max(0, contentHeight() - height());
    const int next = std::clamp(m_scroll + step, 0, most);
    if (next != m_scroll) {
        m_scroll = next;
        update();
    }
}

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
