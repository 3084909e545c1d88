#include "shell/vista_tree.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <gtest/gtest.h>

using namespace orm;
using G = TreeGeometry;

namespace {

std::vector<Graph> sample()
{
    std::vector<Graph> gs(2);
    gs[0].Name = QStringLiteral("CPU");
    gs[1].Name = QStringLiteral("Network");
    gs[0].Nodes.resize(2);
    gs[0].Nodes[0].Name = QStringLiteral("Core 1");
    gs[0].Nodes[1].Name = QStringLiteral("Core 2");
    return gs;
}

void mouse(QWidget& w, QEvent::Type type, QPoint p, Qt::MouseButton b = Qt::LeftButton)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(b);
    QMouseEvent e(type, QPointF(p), QPointF(w.mapToGlobal(p)), b, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&w, &e);
}

void click(QWidget& w, QPoint p)
{
    mouse(w, QEvent::MouseButtonPress, p);
    mouse(w, QEvent::MouseButtonRelease, p);
}

// The tree of sample() with every event it sends written into `seen`.
struct Tree : ::testing::Test {
    VistaTree tree;
    QStringList seen;
    void SetUp() override
    {
        tree.resize(G::RowWidth + G::ScrollWidth, 400);
        tree.show();
        tree.rebuild(sample());
        QObject::connect(&tree, &VistaTree::itemSelected, [&](bool parent, const QString&, const QString& tag, int p, int c) {
            seen << QStringLiteral("select %1 %2 %3 %4").arg(parent).arg(tag).arg(p).arg(c);
        });
        QObject::connect(&tree, &VistaTree::collapseChanged, [&](const QString&, const QString& tag, bool collapsed) {
            seen << QStringLiteral("collapse %1 %2").arg(tag).arg(collapsed);
        });
        QObject::connect(&tree, &VistaTree::closeClicked, [&](bool parent, int p, int c) {
            seen << QStringLiteral("close %1 %2 %3").arg(parent).arg(p).arg(c);
        });
        QObject::connect(&tree, &VistaTree::addClicked, [&](int p) { seen << QStringLiteral("add %1").arg(p); });
        QObject::connect(&tree, &VistaTree::renameCommitted, [&](bool parent, int p, int c, const QString& t) {
            seen << QStringLiteral("rename %1 %2 %3 %4").arg(parent).arg(p).arg(c).arg(t);
        });
    }
    QPoint body(int parent, int child) { return {90, tree.rowTop(parent, child) + 4}; }
};

}  // namespace

TEST_F(Tree, ClicksSelectCollapseCloseAndAdd)
{
    EXPECT_EQ(tree.GetTag(true, -1, 0), QString());  // out of range: empty, no fault
    click(tree, body(0, 1));
    click(tree, body(0, 1));  // already selected: no second event
    const int network = tree.rowTop(1, -1);
    click(tree, {G::CloseX + 3, tree.rowTop(0, 0) + G::GlyphY + 3});
    click(tree, {G::AddX + 3, network + G::GlyphY + 3});
    click(tree, {G::CollapseX + 3, tree.rowTop(0, -1) + G::GlyphY + 3});
    // The Nodes slide away over a few frames, then the row below has moved up.
    ASSERT_TRUE(tree.animating());
    tree.animationStep();
    const int sliding = tree.rowTop(1, -1);
    EXPECT_LT(sliding, network);
    tree.finishAnimations();
    EXPECT_EQ(tree.rowTop(0, 0), -1);
    EXPECT_LT(tree.rowTop(1, -1), sliding);
    EXPECT_EQ(seen, QStringList({"select 0 1 0 1", "close 0 0 0", "add 1",
                                 // folding away the selected Node selects its Graph
                                 "select 1 0 0 -1", "collapse 0 1"}));

    // Clicking below the rows is nothing, but still reports where the mouse is.
    bool overNothing = false;
    QObject::connect(&tree, &VistaTree::mouseOver,
                     [&](Qt::MouseButtons, Qt::KeyboardModifiers, int, int, bool n, int, int) { overNothing = n; });
    mouse(tree, QEvent::MouseButtonPress, {90, 380}, Qt::RightButton);
    EXPECT_TRUE(overNothing);
}

TEST_F(Tree, RenameCommitsOnEnterAndOnClickingAway)
{
    mouse(tree, QEvent::MouseButtonPress, body(0, 1));
    mouse(tree, QEvent::MouseButtonDblClick, body(0, 1));
    ASSERT_TRUE(tree.editing());
    EXPECT_EQ(tree.renameBox()->selectedText(), "Core 2");
    tree.renameBox()->setText(QString::fromUtf8("D\0ie", 4));  // a NUL typed in is dropped
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    QCoreApplication::sendEvent(tree.renameBox(), &enter);
    EXPECT_FALSE(tree.editing());
    EXPECT_EQ(tree.GetTitle(false, 0, 1), "Die");

    tree.ForceTitleEdit(true, 1, 0);
    tree.renameBox()->setText(QStringLiteral("LAN"));
    click(tree, {90, 390});  // away from the box: still the text as typed
    EXPECT_EQ(tree.GetTitle(true, 1, -1), "LAN");
    tree.ForceTitleEdit(true, 0, -1);
    tree.rebuild(sample());  // the rows went: nothing to commit to
    EXPECT_FALSE(tree.editing());
    EXPECT_EQ(seen, QStringList({"select 0 1 0 1", "rename 0 0 1 Die", "rename 1 1 -1 LAN"}));
}

TEST_F(Tree, ADeletedRowShrinksAwayAndTakesNoClicksMeanwhile)
{
    const int network = tree.rowTop(1, -1);
    tree.MarkSelected(0, 0);
    tree.DeleteSelectedItem();
    EXPECT_EQ(tree.selectedParent(), -1);
    tree.animationStep();
    EXPECT_LT(tree.rowTop(1, -1), network);  // the rows below move up as it shrinks
    click(tree, {50, tree.rowTop(1, -1) + 10});
    EXPECT_TRUE(seen.isEmpty());
    tree.finishAnimations();
    EXPECT_EQ(tree.rows()[0].Children.size(), 1u);
    EXPECT_EQ(tree.rowTop(1, -1), network - G::RowHeight);
}

TEST_F(Tree, ScrollsOnlyWhenRowsExceedTheHeight)
{
    tree.rebuild(std::vector<Graph>(20));
    tree.finishAnimations();
    ASSERT_GT(tree.contentHeight(), tree.height());
    EXPECT_FALSE(tree.grab().isNull());  // paints rows, caps and the scroll bar
    click(tree, {G::RowWidth + 5, tree.height() - 3});
    EXPECT_EQ(tree.scrollOffset(), G::ScrollStep);
    tree.SelectItem(19, -1, true, true);
    EXPECT_EQ(tree.scrollOffset(), tree.contentHeight() - tree.height());
    tree.rebuild(sample());
    EXPECT_EQ(tree.scrollOffset(), 0);
}
