// What the control panel and the graph windows show each other: the status
// line during long work, a rename that redraws nothing, the cross-hair after a
// Node goes, the first window beside the tree row the start-up tip names, and
// a collapsed Graph that stays so.
#include "panel_fixture.h"
#include "shell/about_box.h"

#include <QEvent>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <gtest/gtest.h>

namespace orm::test {
namespace {

// Keeps the text of a label each time it is painted.
class PaintedTexts final : public QObject {
public:
    explicit PaintedTexts(QLabel* label) : label_(label) { label->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* e) override
    {
        if (e->type() == QEvent::Paint && !label_->text().isEmpty() && (seen.isEmpty() || seen.last() != label_->text()))
            seen << label_->text();
        return false;
    }
    QStringList seen;

private:
    QLabel* label_;
};

class PanelWindows : public PanelFixture {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        startPanel();
        views.setStatus([this](const QString& text) {
            statuses << text;
            panel->showStatus(text);
        });
    }
    void TearDown() override
    {
        views.setStatus(nullptr);
        PanelFixture::TearDown();
    }
    Graph& graph() { return monitor->Sensors[0]; }

    QStringList statuses;
};

TEST_F(PanelWindows, OpeningAndRedrawingSayTheyAreBusyInTheStatusLine)
{
    panel->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(panel.get()));
    PaintedTexts painted(panel->statusLabel());
    for (int t = 0; t < 3; ++t)
        tick();
    windows->redraw(0);
    windows->visibilityChanged(0);  // opens the Graph's window again
    EXPECT_EQ(painted.seen, QStringList({QStringLiteral("Redrawing Graph. Please Wait..."),
                                         QStringLiteral("Opening Graph. Please Wait...")}));
    EXPECT_TRUE(panel->statusLabel()->text().isEmpty());  // cleared when done
}

TEST_F(PanelWindows, RenamingANodeRedrawsNothingAndTheCrossHairForgetsAGoneNode)
{
    graph().Nodes.push_back(newNode(1));
    graph().Nodes[1].NodeType = ProcessesType;  // far above the CPU's line
    windows->nodesChanged(0);
    for (int t = 0; t < 5; ++t)
        tick();
    statuses.clear();
    panel->tree()->SelectItem(0, 1, true, false);
    emit panel->tree()->renameCommitted(false, 0, 1, QStringLiteral("Renamed"));
    EXPECT_FALSE(statuses.contains(QStringLiteral("Redrawing Graph. Please Wait..."))) << statuses.join('|').toStdString();

    // Point at the second Node's newest sample, then delete that Node.
    GraphWindow* w = windows->window(0);
    const PlotGeometry geo = windows->picture(0)->geometry();
    bool named = false;
    for (int y = 35; y <= geo.pHeight + 35 && !named; ++y) {
        w->crossHairMove(geo.pWidth + 53, y);
        named = w->crossHair().shown && w->crossHair().nameText.contains(QStringLiteral("Renamed"));
    }
    ASSERT_TRUE(named);
    tick();  // a tick paints over the cross-hair; its labels stay until the next move
    graph().Nodes.erase(graph().Nodes.begin() + 1);
    windows->nodeRemoved(0, 1);
    for (QLabel* l : w->findChildren<QLabel*>())
        EXPECT_FALSE(l->text().contains(QStringLiteral("Renamed"))) << l->text().toStdString();
}

TEST_F(PanelWindows, TheWindowsLookLikeTheirSettings)
{
    Graph& g = graph();
    g.GraphNameColor = 0x0000FF;  // red, as 0x00BBGGRR
    g.GraphBackColor = 0xFFFFFF;
    windows->captionsChanged(0);
    GraphWindow* w = windows->window(0);
    ASSERT_NE(w, nullptr);
    const auto* name = w->findChild<QLabel*>(QStringLiteral("lblGraphName"));
    ASSERT_TRUE(name);
    EXPECT_EQ(name->palette().color(QPalette::WindowText), QColor(255, 0, 0));

    // The grip in the bottom-right corner stands out from the back colour.
    const QImage shot = w->grab().toImage();
    int grip = 0;
    for (int y = shot.height() - 10; y < shot.height(); ++y)
        for (int x = shot.width() - 10; x < shot.width(); ++x)
            grip += shot.pixelColor(x, y) != QColor(255, 255, 255);
    EXPECT_GE(grip, 6);
}

TEST_F(PanelWindows, TheFirstWindowLeavesTheTipsTreeRowInSight)
{
    ASSERT_TRUE(monitor->firstStart);
    panel->move(0, 0);
    panel->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(panel.get()));
    VistaTree* tree = panel->tree();
    const QRect treeArea(tree->mapToGlobal(QPoint(0, 0)), tree->size());
    GraphWindow* w = windows->window(0);
    ASSERT_TRUE(w && w->isVisible());
    w->move(treeArea.topLeft() + QPoint(20, 10));  // where the cascade put it
    windows->keepClearOf(treeArea);
    const QRect row(tree->mapToGlobal(QPoint(0, tree->rowTop(0, -1))), QSize(TreeGeometry::RowWidth, TreeGeometry::RowHeight));
    EXPECT_FALSE(w->frameGeometry().intersects(row));
    EXPECT_EQ(graph().LocX, w->x());
    EXPECT_EQ(storedValue(sensorKey(0), QStringLiteral("LocX")), QString::number(w->x()));
}

TEST_F(PanelWindows, ACollapsedGraphStaysSoAfterANewStart)
{
    emit panel->tree()->collapseChanged(QStringLiteral("G0"), QStringLiteral("0"), true);
    views.setStatus(nullptr);  // it points at the panel that goes
    startPanel();
    EXPECT_TRUE(panel->tree()->rows()[0].Collapsed);
}

TEST(AboutBox, IsWideEnoughForItsTitle)
{
    auto box = makeAboutBox(nullptr);
    box->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(box.get()));
    QFont bold = box->font();
    bold.setBold(true);
    EXPECT_GE(box->width(), QFontMetrics(bold).horizontalAdvance(box->windowTitle()) + 150);
    box->close();
}

}  // namespace
}  // namespace orm::test
