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
    for (const char* name : {"Core 1", "Core 2"}) {
        Node n;
        n.Name = QString::fromLatin1(name);
        gs[0].Nodes.push_back(n);
    }
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

struct Tree : ::testing::Test {
    VistaTree tree;
    void SetUp() override
    {
        tree.resize(G::RowWidth + G::ScrollWidth, 400);
        tree.show();
        tree.rebuild(sample());
    }
    QPoint body(int parent, int child) { return {90, tree.rowTop(parent, child) + 4}; }
};

}  // namespace

TEST_F(Tree, ReadsGiveEmptyOutOfRangeAndTagsAreModelIndexes)
{
    EXPECT_EQ(tree.GetSelectedTag(true), QString());
    EXPECT_EQ(tree.GetTag(false, 1, 0), QString());  // Network has no Nodes
    EXPECT_EQ(tree.GetTag(true, -1, 0), QString());
    EXPECT_EQ(tree.GetTag(true, 1, -1), "1");
    EXPECT_EQ(tree.GetTag(false, 0, 1), "1");
    EXPECT_EQ(tree.GetTitle(false, 0, 1), "Core 2");

    tree.Add(false, 1, QString(), QString::fromUtf8("Up\0link", 7), QString(), 999, "0", "k", false, false);
    ASSERT_EQ(tree.rows()[1].Children.size(), 1u);
    EXPECT_EQ(tree.GetTitle(false, 1, 0), "Uplink");

    tree.Clear();
    EXPECT_TRUE(tree.rows().empty());
    EXPECT_EQ(tree.GetSelectedTag(false), QString());
}

TEST_F(Tree, ClicksSelectCollapseCloseAndAdd)
{
    QStringList seen;
    QObject::connect(&tree, &VistaTree::itemSelected,
                     [&](bool isParent, const QString&, const QString& tag, int p, int c) {
                         seen << QStringLiteral("select %1 %2 %3 %4").arg(isParent).arg(tag).arg(p).arg(c);
                     });
    QObject::connect(&tree, &VistaTree::collapseChanged,
                     [&](const QString&, const QString& tag, bool collapsed) {
                         seen << QStringLiteral("collapse %1 %2").arg(tag).arg(collapsed);
                     });
    QObject::connect(&tree, &VistaTree::closeClicked, [&](bool isParent, int p, int c) {
        seen << QStringLiteral("close %1 %2 %3").arg(isParent).arg(p).arg(c);
    });
    QObject::connect(&tree, &VistaTree::addClicked, [&](int p) { seen << QStringLiteral("add %1").arg(p); });

    click(tree, body(0, 1));
    click(tree, body(0, 1));  // already selected: no second event
    EXPECT_EQ(tree.GetSelectedTag(false), "1");

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
    EXPECT_FALSE(tree.animating());
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
    QStringList renames;
    QObject::connect(&tree, &VistaTree::renameCommitted,
                     [&](bool isParent, int p, int c, const QString& t) {
                         renames << QStringLiteral("%1 %2 %3 %4").arg(isParent).arg(p).arg(c).arg(t);
                     });
    mouse(tree, QEvent::MouseButtonPress, body(0, 1));
    mouse(tree, QEvent::MouseButtonDblClick, body(0, 1));
    ASSERT_TRUE(tree.editing());
    EXPECT_EQ(tree.renameBox()->selectedText(), "Core 2");
    tree.renameBox()->setText(QStringLiteral("Die"));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    QCoreApplication::sendEvent(tree.renameBox(), &enter);
    EXPECT_FALSE(tree.editing());
    EXPECT_EQ(tree.GetTitle(false, 0, 1), "Die");

    tree.ForceTitleEdit(true, 1, 0);
    tree.renameBox()->setText(QStringLiteral("LAN"));
    click(tree, {90, 390});  // away from the box: still the text as typed
    EXPECT_EQ(tree.GetTitle(true, 1, -1), "LAN");
    EXPECT_EQ(renames, QStringList({"0 0 1 Die", "1 1 -1 LAN"}));

    tree.ForceTitleEdit(true, 0, -1);
    tree.rebuild(sample());  // the rows went: nothing to commit to
    EXPECT_FALSE(tree.editing());
    EXPECT_EQ(renames.size(), 2);
}

TEST_F(Tree, ADeletedRowShrinksAwayAndTakesNoClicksMeanwhile)
{
    const int network = tree.rowTop(1, -1);
    tree.MarkSelected(0, 0);
    tree.DeleteSelectedItem();
    EXPECT_EQ(tree.selectedParent(), -1);
    ASSERT_TRUE(tree.removing());
    tree.animationStep();
    EXPECT_LT(tree.rowTop(1, -1), network);  // the rows below move up as it shrinks
    EXPECT_EQ(tree.rows()[0].Children.size(), 2u);
    int selections = 0;
    QObject::connect(&tree, &VistaTree::itemSelected, [&] { ++selections; });
    click(tree, {50, tree.rowTop(1, -1) + 10});
    EXPECT_EQ(selections, 0);
    tree.finishAnimations();
    EXPECT_EQ(tree.rows()[0].Children.size(), 1u);
    EXPECT_EQ(tree.rowTop(1, -1), network - G::RowHeight);
}

TEST_F(Tree, ScrollsOnlyWhenRowsExceedTheHeight)
{
    std::vector<Graph> many(20);
    tree.rebuild(many);
    // The new rows grow in from nothing, a few pixels a frame.
    ASSERT_TRUE(tree.animating());
    const int growing = tree.contentHeight();
    tree.animationStep();
    EXPECT_GT(tree.contentHeight(), growing);
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

TEST(TreeTip, TextsByRowKind)
{
    Graph g;
    g.Name = QStringLiteral("Disk log");
    g.LogGraph = true;
    g.LegendUnits = QStringLiteral("MB");
    g.Nodes.resize(1);
    const TreeTip t = treeToolTip(g, -1);
    EXPECT_EQ(t.title, "Disk log");
    EXPECT_TRUE(t.text.startsWith("This is called a Log Graph"));
    EXPECT_TRUE(t.text.endsWith("first Log Node type within this Graph.\nUnits: {MB}"));
    EXPECT_TRUE(treeToolTip(g, 0).text.startsWith("This is called a Log Node"));
    EXPECT_TRUE(treeToolTip(g, 1).title.isEmpty());
}
