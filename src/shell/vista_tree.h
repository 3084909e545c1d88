// The two-level tree on the left of the control panel: Graph rows with their
// Node rows under them. It keeps copies of the texts and tags only; the model
// stays the truth, and edits go out as signals for the control panel to apply.
#pragma once

#include "model/model.h"

#include <QString>
#include <QWidget>
#include <vector>

class QLineEdit;
class QTimer;

namespace orm {

// A row's animation: it grows in when added; a branch's Nodes slide away or back.
enum class RowState { None, Added, Delete, Collapse, Expand };

struct TreeChild {
    QString Title;
    QString SubText;
    QString Text;
    int Icon = 999;
    bool Extra = false;
    QString Key;
    QString Tag;  // the Node index as decimal text when filled from the model
    int Height = 32;
    RowState State = RowState::None;
};

struct TreeParent {
    QString Title;
    QString SubText;
    QString Text;
    std::vector<TreeChild> Children;
    int Icon = 999;
    bool Extra = false;
    bool Collapsed = false;
    QString Key;
    QString Tag;  // the Graph index as decimal text when filled from the model
    int Height = 32;
    RowState State = RowState::None;  // Collapse and Expand move its Nodes
};

// What lies under a point of the tree.
struct TreeHit {
    enum Part { Nothing, Body, CollapseGlyph, CloseGlyph, AddGlyph, ScrollUp, ScrollDown };
    Part part = Nothing;
    int parent = -1;
    int child = -1;  // -1 on a Graph row
};

// Row geometry in pixels.
struct TreeGeometry {
    static constexpr int RowWidth = 157;
    static constexpr int RowHeight = 32;
    static constexpr int ChildX = 33;
    static constexpr int CapHeight = 11;  // the foot under an open branch
    static constexpr int GlyphWidth = 16;
    static constexpr int GlyphHeight = 15;
    static constexpr int CollapseX = 2;
    static constexpr int CloseX = 139;
    static constexpr int AddX = 121;
    static constexpr int GlyphY = 8;  // within the row
    static constexpr int ScrollWidth = 15;
    static constexpr int ArrowHeight = 11;
    static constexpr int ScrollStep = 16;
    static constexpr int AnimationStep = 8;        // pixels per frame
    static constexpr int AnimationInterval = 15;   // milliseconds per frame
};

// The hover help for a Graph row (`node` -1) or a Node row; an index out of
// range gives empty texts.
struct TreeTip {
    QString title;
    QString text;
};
TreeTip treeToolTip(const Graph& graph, int node);
constexpr int TreeTipMilliseconds = 15000;

class VistaTree : public QWidget {
    Q_OBJECT
public:
    explicit VistaTree(QWidget* parent = nullptr);

    // Refills from the model: one row per Graph (tag = its index), one per
    // Node (tag = its index), collapse state from the Graph. Keeps the
    // selection when it is still in range.
    void rebuild(const std::vector<Graph>& graphs);

    void Add(bool isParent, int parentIndex, const QString& text, const QString& title,
             const QString& subText, int icon, const QString& tag, const QString& key,
             bool collapsed, bool extra);
    void Clear();
    // The selected row shrinks away and is then removed; the selection is cleared.
    void DeleteSelectedItem();

    // Reads; an index out of range gives an empty text.
    QString GetTag(bool isParent, int parent, int child) const;
    QString GetTitle(bool isParent, int parent, int child) const;
    QString GetText(bool isParent, int parent, int child) const;
    QString GetSelectedTag(bool isParent) const;
    QString GetSelectedText(bool isParent) const;
    int GetSelectedIcon() const;

    void SetSelectedItemTitle(const QString& title);
    void SetSelectedItemText(const QString& text);
    void SetSelectedItemTag(const QString& tag);
    void SetSelectedItemIcon(int icon);

    // Sets the selection without raising itemSelected.
    void MarkSelected(int parent, int child);
    void SelectItem(int parent, int child, bool silent, bool scrollIntoView);
    int selectedParent() const { return m_selParent; }
    int selectedChild() const { return m_selChild; }

    // Opens the rename box on the row.
    void ForceTitleEdit(bool isParent, int parent, int child);
    bool editing() const;
    QLineEdit* renameBox() const { return m_edit; }

    const std::vector<TreeParent>& rows() const { return m_rows; }
    TreeHit hitTest(QPoint p) const;
    // Top of the row in widget pixels (after scrolling); -1 when hidden or out of range.
    int rowTop(int parent, int child) const;
    int contentHeight() const;
    int scrollOffset() const { return m_scroll; }

    // Rows growing in or Nodes sliding; one frame of it, and all frames at once.
    bool animating() const;
    bool removing() const;
    void animationStep();
    void finishAnimations();

    QSize sizeHint() const override;

signals:
    void addClicked(int parent);                                        // 1
    void closeClicked(bool isParent, int parent, int child);            // 2
    void itemSelected(bool isParent, const QString& key, const QString& tag, int parent,
                      int child);                                       // 3
    void mouseOver(Qt::MouseButtons buttons, Qt::KeyboardModifiers mods, int x, int y,
                   bool overNothing, int parent, int child);            // 4
    void mouseDown(Qt::MouseButton button, Qt::KeyboardModifiers mods, int x, int y,
                   bool overNothing, int parent, int child);            // 5
    void mouseUp(Qt::MouseButton button, Qt::KeyboardModifiers mods, int x, int y,
                 bool overNothing, int parent, int child);              // 6
    void renameCommitted(bool isParent, int parent, int child, const QString& text);  // 7
    void collapseChanged(const QString& key, const QString& tag, bool collapsed);      // 8
    // The rows stand still again after an animation.
    void settled();

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool validParent(int parent) const;
    bool validChild(int parent, int child) const;
    void commitRename();
    void scrollBy(int step);
    bool scrollable() const;
    int branchHeight(const TreeParent& r) const;
    bool branchShown(const TreeParent& r) const;
    void startAnimation();
    void drawRow(QPainter& p, int x, int y, int width, const QString& title, const QString& sub,
                 bool selected, bool isParent, bool collapsed) const;

    std::vector<TreeParent> m_rows;
    int m_selParent = -1;
    int m_selChild = -1;
    int m_scroll = 0;
    int m_scrollStep = 0;
    QTimer* m_scrollTimer = nullptr;
    QTimer* m_animTimer = nullptr;
    QLineEdit* m_edit = nullptr;
    QString m_editTag;  // "parent|child|True/False" while a rename is open
};

}  // namespace orm
