// The Graph panel on a started Monitor whose settings live in a real INI file;
// the widgets are driven by their object names, the window's follow-up is
// recorded.
#include "../shell_common/panel_test.h"
#include "model/settings_store.h"
#include "monitor/editing.h"
#include "shell/graph_panel.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <QToolButton>

namespace orm::test {
namespace {

class GraphPanelTest : public PanelTest<GraphPanel> {
protected:
    Graph& graph(int g) { return monitor->Sensors.at(size_t(g)); }
    template <typename W>
    W* w(const char* name) { return child<W>(QString::fromLatin1(name)); }
    QString stored(int g, const char* name) { return storedValue(sensorKey(g), QString::fromLatin1(name)); }
    // Types into a line edit and presses Return, as a user does.
    void enter(const char* name, const QString& text)
    {
        auto* edit = w<QLineEdit>(name);
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    void pick(const char* combo, const QString& text) { choose(QString::fromLatin1(combo), w<QComboBox>(combo)->findText(text)); }
    void press(const char* name) { QTest::mouseClick(w<QWidget>(name), Qt::LeftButton); }
};

TEST_F(GraphPanelTest, LoadFillsControlsAndWritesNothing)
{
    monitor->AddSensor(false);
    ASSERT_EQ(ChangeType(*monitor, 1, 0, RamType).result, EditResult::Done);  // MBytes on a bytes Graph
    Graph& g = graph(1);
    g.GraphType = SystrayIcon;
    g.IconType = 4;
    g.AutoRange = false;
    g.LegendMax = 250.5;
    monitor->AddSensor(true);
    monitor->SaveSettings();
    const QByteArray before = fileBytes();

    panel->load(1);
    EXPECT_TRUE(w<QToolButton>("imgGraphType(2)")->isChecked());
    EXPECT_EQ(w<QLineEdit>("txtMaxLimits")->text(), QStringLiteral("250.5"));
    EXPECT_EQ(w<QComboBox>("cmbDataMagnitude")->currentText(), QStringLiteral("Mbytes"));
    EXPECT_EQ(w<QComboBox>("cmbIconType")->currentText(), QStringLiteral("Graph - 3 Nodes per icon"));
    panel->load(2);  // a Log Graph
    EXPECT_FALSE(w<QComboBox>("cmbIconType")->isVisible());
    panel->load(0);
    EXPECT_EQ(w<QComboBox>("cmbDataMagnitude")->currentText(), QStringLiteral("0-100%"));
    EXPECT_EQ(fileBytes(), before);
    EXPECT_TRUE(host.calls.isEmpty()) << host.calls.join(QLatin1Char(' ')).toStdString();
    panel->load(7);  // a Graph that is gone: nothing to edit
    EXPECT_FALSE(panel->isEnabled());
}

TEST_F(GraphPanelTest, SampleSecondsAreCorrectedInTheBoxAndRaisedToTheSpeedTestsMinimum)
{
    graph(0).SampleEverySeconds = 0;  // a bad stored value: loading shows it, Return corrects it
    panel->load(0);
    EXPECT_EQ(w<QLineEdit>("txtSampleSeconds")->text(), QStringLiteral("0"));
    QSignalSpy errors(panel.get(), &GraphPanel::sensorError);
    enter("txtSampleSeconds", QStringLiteral("abc"));
    EXPECT_EQ(w<QLineEdit>("txtSampleSeconds")->text(), QStringLiteral("1"));
    EXPECT_EQ(stored(0, "SampleEverySeconds"), QStringLiteral("1"));
    enter("txtSampleSeconds", QStringLiteral("12"));
    EXPECT_EQ(w<QScrollBar>("vscSeconds")->value(), 12);
    w<QScrollBar>("vscSeconds")->triggerAction(QAbstractSlider::SliderSingleStepAdd);  // the up arrow
    EXPECT_EQ(stored(0, "SampleEverySeconds"), QStringLiteral("13"));

    // A shorter interval than the Speed Test option's minimum is raised, and the error label says why.
    ASSERT_EQ(ChangeType(*monitor, 0, 0, SpeedTestType).result, EditResult::Done);
    monitor->TestSetupLoaded = true;
    graph(0).Nodes[0].VDDownloadSize = 2;
    panel->speedTestMinimum = [](qint32 option) { return option == 2 ? 30 : 0; };
    enter("txtSampleSeconds", QStringLiteral("5"));
    EXPECT_EQ(w<QLineEdit>("txtSampleSeconds")->text(), QStringLiteral("30"));
    EXPECT_EQ(stored(0, "SampleEverySeconds"), QStringLiteral("30"));
    ASSERT_EQ(errors.count(), 1);
    EXPECT_EQ(errors.takeFirst().at(0).toString(), SpeedTestMinimumText);
    EXPECT_TRUE(host.calls.isEmpty());
}

TEST_F(GraphPanelTest, AutoRangeFreesTheMaximumAndUnitsSetTheMagnitude)
{
    panel->load(0);
    const auto freeMaximum = [&] {
        return w<QWidget>("txtMaxLimits")->isEnabled() + w<QWidget>("vscMaximum")->isEnabled() +
               w<QWidget>("cmbDataMagnitude")->isEnabled();
    };
    EXPECT_EQ(freeMaximum(), 0);
    press("chkAutoLimits");
    EXPECT_EQ(freeMaximum(), 3);
    EXPECT_EQ(stored(0, "AutoRange"), QStringLiteral("False"));
    EXPECT_EQ(host.calls, QStringList{QStringLiteral("redraw:0")});
    enter("txtMaxLimits", QStringLiteral("250abc"));
    EXPECT_EQ(w<QLineEdit>("txtMaxLimits")->text(), QStringLiteral("250"));
    EXPECT_EQ(w<QScrollBar>("vscMaximum")->value(), 250);
    enter("txtMaxLimits", QStringLiteral("xyz"));
    EXPECT_EQ(stored(0, "LegendMax"), QStringLiteral("0"));
    press("chkAutoLimits");
    EXPECT_EQ(freeMaximum(), 0);

    ASSERT_EQ(ChangeType(*monitor, 0, 0, PingType).result, EditResult::Done);
    panel->load(0);
    pick("cmbDataMagnitude", QStringLiteral("Hours"));
    EXPECT_EQ(stored(0, "DataMagnitude"), QStringLiteral("3600"));
    EXPECT_EQ(stored(0, "LegendUnits"), QStringLiteral("Hours"));
    ASSERT_EQ(ChangeType(*monitor, 0, 0, RamType).result, EditResult::Done);
    panel->load(0);
    pick("cmbDataMagnitude", QStringLiteral("0-100%"));
    EXPECT_EQ(stored(0, "DataType"), QStringLiteral("percent"));
    EXPECT_EQ(graph(0).DataMagnitude, -1.0);
    EXPECT_EQ(host.calls.last(), QStringLiteral("redraw:0"));
}

TEST_F(GraphPanelTest, ColourPickStoresBgrAndCancelStoresNothing)
{
    monitor->AddSensor(false);
    panel->load(1);
    QColor offered;
    panel->chooseColour = [&](const QColor& initial) -> std::optional<QColor> {
        offered = initial;
        return QColor(0x12, 0x34, 0x56);
    };
    press("lblGraphColors(6)");
    EXPECT_EQ(offered, QColor(255, 0, 0));  // the cross-hair's 255 is red
    EXPECT_EQ(stored(1, "GraphCrossHairColor"), QString::number(0x563412));
    EXPECT_EQ(host.calls, QStringList{QStringLiteral("redraw:1")});
    const QByteArray before = fileBytes();
    panel->chooseColour = [](const QColor&) -> std::optional<QColor> { return std::nullopt; };
    press("lblGraphColors(3)");
    panel->chooseColour = [](const QColor&) -> std::optional<QColor> { return QColor(); };
    press("lblGraphColors(3)");
    EXPECT_EQ(fileBytes(), before);
    EXPECT_EQ(host.calls.size(), 1);
}

TEST_F(GraphPanelTest, DisplayTilesChangeGraphType)
{
    panel->load(0);
    press("imgGraphType(1)");
    EXPECT_EQ(stored(0, "GraphType"), QStringLiteral("2"));
    EXPECT_FALSE(w<QToolButton>("imgGraphType(0)")->isChecked());
    press("imgGraphType(1)");  // the Graph's own kind: nothing, and it stays checked
    EXPECT_TRUE(w<QToolButton>("imgGraphType(1)")->isChecked());
    EXPECT_EQ(host.calls, QStringList{QStringLiteral("type:0")});
    EXPECT_EQ(treeChanged->count(), 1);

    // Systray Icons brings the icon layout, whose pick lays the icons out again.
    press("imgGraphType(2)");
    ASSERT_TRUE(w<QComboBox>("cmbIconType")->isVisible());
    pick("cmbIconType", QStringLiteral("Numbers - 1 Node per icon 0-999"));
    EXPECT_EQ(stored(0, "IconType"), QStringLiteral("3"));
    EXPECT_EQ(host.calls.last(), QStringLiteral("nodes:0"));
}

TEST_F(GraphPanelTest, WindowFlagsOpacityAndDescriptionAreSavedAndReachTheWindow)
{
    panel->load(0);
    struct Flag {
        const char* control;
        const char* key;
        const char* follow;
    };
    for (const Flag& f : {Flag{"chkTopMost", "TopMost", "topmost:0"}, Flag{"chkTrans", "Transparent", "trans:0"},
                          Flag{"chkTransUnits", "TransLegend", "trans:0"}, Flag{"chkTransGrid", "TransGrid", "trans:0"},
                          Flag{"chkDisableCrossHair", "DisableCrossHair", nullptr}}) {
        host.calls.clear();
        press(f.control);
        EXPECT_EQ(stored(0, f.key), w<QCheckBox>(f.control)->isChecked() ? "True" : "False") << f.control;
        EXPECT_EQ(host.calls, f.follow ? QStringList{QString::fromLatin1(f.follow)} : QStringList{}) << f.control;
    }
    host.calls.clear();
    w<QSlider>("sldOpacity")->triggerAction(QAbstractSlider::SliderPageStepSub);
    EXPECT_EQ(stored(0, "Opacity"), QString::number(255 - 16));
    press("imgVisibleSensor");
    EXPECT_EQ(stored(0, "Visible"), QStringLiteral("False"));
    enter("txtGraphDescription", QStringLiteral("Load of both cores"));
    EXPECT_EQ(stored(0, "Description"), QStringLiteral("Load of both cores"));
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("opacity:0"), QStringLiteral("visible:0"),
                                       QStringLiteral("captions:0")}));
}

TEST_F(GraphPanelTest, StaleGraphIndexWritesNothing)
{
    monitor->AddSensor(false);
    panel->load(1);
    const Graph gone = graph(1);
    monitor->Sensors.pop_back();  // as a structural edit elsewhere would leave it
    const QByteArray before = fileBytes();
    press("chkTopMost");
    press("imgGraphType(1)");
    enter("txtSampleSeconds", QStringLiteral("9"));
    EXPECT_EQ(fileBytes(), before);
    EXPECT_TRUE(host.calls.isEmpty());
    EXPECT_TRUE(host.messages.isEmpty());
    monitor->Sensors.push_back(gone);
}

}  // namespace
}  // namespace orm::test
