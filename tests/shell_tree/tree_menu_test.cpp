#include "shell/tree_menu.h"
#include "shell/banner_menu.h"

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QPixmap>
#include <gtest/gtest.h>
#include <memory>

using namespace orm;

namespace {

std::vector<Graph> sample()
{
    Graph g;
    g.Name = QStringLiteral("CPU");
    Node n;
    n.Name = QStringLiteral("Core 1");
    n.NodeVisible = false;
    g.Nodes.push_back(n);
    return {g};
}

struct Recorder : TreeMenuActions {
    QStringList calls;
    void AddGraph() override { calls << "AddGraph"; }
    void DeleteGraph(int g) override { calls << QStringLiteral("DeleteGraph %1").arg(g); }
    void AddNode(int g) override { calls << QStringLiteral("AddNode %1").arg(g); }
    void DeleteNode(int g, int n) override { calls << QStringLiteral("DeleteNode %1 %2").arg(g).arg(n); }
    void ToggleVisible(int g, int n) override { calls << QStringLiteral("Visible %1 %2").arg(g).arg(n); }
    void Rename(int g, int n) override { calls << QStringLiteral("Rename %1 %2").arg(g).arg(n); }
    void AboutOrmivane() override { calls << "About"; }
};

QString textOf(const QMenu& m, int id)
{
    QAction* a = treeMenuAction(m, id);
    return a ? a->text() : QString();
}

}  // namespace

TEST(TreeMenu, TextsFollowTheRowUnderTheMouse)
{
    const auto graphs = sample();
    std::unique_ptr<QMenu> m(makeTreeMenu(nullptr));

    refreshTreeMenu(*m, graphs, 0, -1);
    EXPECT_EQ(textOf(*m, AddNodeId), "Add &Node to (CPU)");
    EXPECT_EQ(textOf(*m, DeleteGraphId), "&Delete Graph (CPU)");
    EXPECT_EQ(textOf(*m, ShowNodeId), "&Hide  Graph (CPU)");
    EXPECT_EQ(textOf(*m, RenameNodeId), "Rena&me Graph (CPU)");
    EXPECT_EQ(textOf(*m, DeleteNodeId), "De&lete Node");
    EXPECT_FALSE(treeMenuAction(*m, DeleteNodeId)->isEnabled());

    refreshTreeMenu(*m, graphs, 0, 0);
    EXPECT_EQ(textOf(*m, ShowNodeId), "Sho&w Node (Core 1)");
    EXPECT_EQ(textOf(*m, RenameNodeId), "Rena&me Node (Core 1)");
    EXPECT_EQ(textOf(*m, DeleteNodeId), "De&lete Node (Core 1)");
    EXPECT_TRUE(treeMenuAction(*m, DeleteNodeId)->isEnabled());
}

TEST(TreeMenu, EmptySpaceLeavesOnlyAddUsable)
{
    const auto graphs = sample();
    for (int g : {-1, 5}) {  // below the rows, or a stale index
        for (const TreeMenuEntry& e : treeMenuEntries(graphs, g, -1)) {
            if (e.id != 0 && e.id != TreeAboutId) {
                EXPECT_EQ(e.enabled, e.id == AddGraphId) << e.id;
            }
        }
    }
}

TEST(TreeMenu, ActionsRouteWithTheRowAndIgnoreDismissal)
{
    const auto graphs = sample();
    Recorder r;
    actOnTreeMenu(0, graphs, 0, 0, r);  // Escape
    actOnTreeMenu(DeleteNodeId, graphs, 0, -1, r);  // greyed on a Graph row
    actOnTreeMenu(RenameNodeId, graphs, 3, -1, r);  // stale row
    EXPECT_TRUE(r.calls.isEmpty());
    actOnTreeMenu(AddGraphId, graphs, -1, -1, r);
    actOnTreeMenu(DeleteNodeId, graphs, 0, 0, r);
    actOnTreeMenu(ShowNodeId, graphs, 0, -1, r);
    actOnTreeMenu(RenameNodeId, graphs, 0, 0, r);
    EXPECT_EQ(r.calls, QStringList({"AddGraph", "DeleteNode 0 0", "Visible 0 -1", "Rename 0 0"}));
}

namespace orm {
namespace {

TEST(BannerMenu, EntriesStandRightOfTheBand)
{
    std::unique_ptr<QMenu> menu(makeTreeMenu(nullptr));
    menu->ensurePolished();
    menu->adjustSize();
    const QList<QAction*> actions = menu->actions();
    ASSERT_FALSE(actions.isEmpty());
    EXPECT_GE(menu->actionGeometry(actions.first()).left(), BannerMenu::BandWidth);
    const QImage shown = menu->grab().toImage();
    // The band is dark blue from top to bottom.
    for (int y : {2, shown.height() / 2, shown.height() - 3})
        EXPECT_LT(shown.pixelColor(2, y).red(), 0x40) << y;
}

}  // namespace
}  // namespace orm
