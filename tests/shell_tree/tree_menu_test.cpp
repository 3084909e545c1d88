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

// One Graph, "CPU", with one hidden Node, "Core 1".
std::vector<Graph> sample()
{
    std::vector<Graph> gs(1);
    gs[0].Name = QStringLiteral("CPU");
    gs[0].Nodes.resize(1);
    gs[0].Nodes[0].Name = QStringLiteral("Core 1");
    gs[0].Nodes[0].NodeVisible = false;
    return gs;
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

QString textOf(const QMenu& m, int id) { return treeMenuAction(m, id)->text(); }

}  // namespace

TEST(TreeMenu, TextsAndGreyingFollowTheRowUnderTheMouse)
{
    const auto graphs = sample();
    std::unique_ptr<QMenu> m(makeTreeMenu(nullptr));
    refreshTreeMenu(*m, graphs, 0, -1);
    EXPECT_EQ(textOf(*m, AddNodeId), "Add &Node to (CPU)");
    EXPECT_EQ(textOf(*m, ShowNodeId), "&Hide  Graph (CPU)");
    EXPECT_EQ(textOf(*m, DeleteNodeId), "De&lete Node");
    EXPECT_FALSE(treeMenuAction(*m, DeleteNodeId)->isEnabled());
    refreshTreeMenu(*m, graphs, 0, 0);
    EXPECT_EQ(textOf(*m, ShowNodeId), "Sho&w Node (Core 1)");  // a hidden Node
    EXPECT_EQ(textOf(*m, RenameNodeId), "Rena&me Node (Core 1)");
    EXPECT_TRUE(treeMenuAction(*m, DeleteNodeId)->isEnabled());

    for (int g : {-1, 5})  // below the rows, or a stale index: only Add (and About)
        for (const TreeMenuEntry& e : treeMenuEntries(graphs, g, -1))
            if (e.id != 0 && e.id != TreeAboutId)
                EXPECT_EQ(e.enabled, e.id == AddGraphId) << e.id;
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

TEST(BannerMenu, EntriesStandRightOfTheDarkBand)
{
    std::unique_ptr<QMenu> menu(makeTreeMenu(nullptr));
    menu->adjustSize();
    EXPECT_GE(menu->actionGeometry(menu->actions().first()).left(), BannerMenu::BandWidth);
    const QImage shown = menu->grab().toImage();
    for (int y : {2, shown.height() / 2, shown.height() - 3})
        EXPECT_LT(shown.pixelColor(2, y).red(), 0x40) << y;
}
