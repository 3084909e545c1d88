#include "shell/vista_tree.h"

#include "model/catalogue.h"

#include <QSet>
#include <QLineEdit>
#include <QTimer>

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

}  // namespace orm
