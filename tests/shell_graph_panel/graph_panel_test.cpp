// The Graph panel on a started Monitor whose settings live in a real INI file;
// the widgets are driven by their object names, the window's follow-up is
// recorded.
#include "../monitor/monitor_fixture.h"
#include "../monitor/settings_file_monitor.h"
#include "../shell_common/recording_host.h"
#include "monitor/editing.h"
#include "model/ini_store.h"
#include "model/settings_store.h"
#include "display/colors.h"
#include "shell/graph_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

namespace orm::test {
namespace {

class GraphPanelTest : public ::testing::Test, protected SettingsFileMonitor {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(start(views, [](SourceSet& sources, Monitor&) {
            sources.cpuCounters = std::make_unique<ScriptedCpu>();
            sources.cpu = std::make_unique<CpuUsage>(*sources.cpuCounters);
        }));
        panel = std::make_unique<GraphPanel>(*monitor, host);
        panel->show();
    }
    // The panel and the monitor go while the views they use still stand.
    void TearDown() override
    {
        panel.reset();
        monitor.reset();
    }

    Graph& graph(int g) { return monitor->Sensors.at(size_t(g)); }
    template <typename W>
    W* w(const char* name)
    {
        W* found = panel->findChild<W*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    QString stored(int g, const char* name) { return storedValue(sensorKey(g), QString::fromLatin1(name)); }
    // Types into a line edit and presses Return, as a user does.
    void enter(const char* name, const QString& text)
    {
        auto* edit = w<QLineEdit>(name);
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    void pick(const char* combo, const QString& text)
    {
        auto* c = w<QComboBox>(combo);
        const int i = c->findText(text);
        ASSERT_GE(i, 0) << text.toStdString();
        c->setCurrentIndex(i);
        emit c->activated(i);
    }

    RecordingViews views;
    RecordingHost host;
    std::unique_ptr<GraphPanel> panel;
};

TEST_F(GraphPanelTest, LoadFillsControlsAndWritesNothing)
{
    EXPECT_EQ(panel->graph(), -1);
    monitor->AddSensor(false);
    ASSERT_EQ(ChangeType(*monitor, 1, 0, RamType).result, EditResult::Done);  // MBytes on a bytes Graph
    Graph& g = graph(1);
    g.GraphType = SystrayIcon;
    g.IconType = 4;
    g.AutoRange = false;
    g.LegendMax = 250.5;
    g.Opacity = 128;
    g.Description = QStringLiteral("Memory");
    g.Visible = false;
    monitor->AddSensor(true);
    monitor->SaveSettings();
    const QByteArray before = fileBytes();

    panel->load(1);
    EXPECT_EQ(panel->graph(), 1);
    EXPECT_EQ(w<QLabel>("lblPanelTitle")->text(), g.Name);
    EXPECT_TRUE(w<QToolButton>("imgGraphType(2)")->isChecked());
    EXPECT_FALSE(w<QCheckBox>("chkAutoLimits")->isChecked());
    EXPECT_TRUE(w<QLineEdit>("txtMaxLimits")->isEnabled());
    EXPECT_EQ(w<QLineEdit>("txtMaxLimits")->text(), QStringLiteral("250.5"));
    EXPECT_EQ(w<QComboBox>("cmbDataMagnitude")->currentText(), QStringLiteral("Mbytes"));
    EXPECT_EQ(w<QSlider>("sldOpacity")->value(), 128);
    EXPECT_TRUE(w<QComboBox>("cmbIconType")->isVisible());
    EXPECT_EQ(w<QComboBox>("cmbIconType")->currentText(), QStringLiteral("Graph - 3 Nodes per icon"));
    EXPECT_EQ(w<QLineEdit>("txtGraphDescription")->text(), QStringLiteral("Memory"));
    EXPECT_FALSE(w<QToolButton>("imgVisibleSensor")->isChecked());

    panel->load(2);  // a Log Graph
    EXPECT_FALSE(w<QComboBox>("cmbIconType")->isVisible());
    EXPECT_EQ(w<QComboBox>("cmbDataMagnitude")->currentText(), QStringLiteral("mSeconds"));

    panel->load(0);
    EXPECT_TRUE(w<QToolButton>("imgGraphType(0)")->isChecked());
    EXPECT_TRUE(w<QCheckBox>("chkAutoLimits")->isChecked());
    EXPECT_FALSE(w<QComboBox>("cmbDataMagnitude")->isEnabled());
    EXPECT_EQ(w<QComboBox>("cmbDataMagnitude")->currentText(), QStringLiteral("0-100%"));

    EXPECT_EQ(fileBytes(), before);
    EXPECT_TRUE(host.calls.isEmpty()) << host.calls.join(QLatin1Char(' ')).toStdString();
    EXPECT_TRUE(host.messages.isEmpty());

    // A Graph index that is gone leaves the panel with nothing to edit.
    panel->load(7);
    EXPECT_FALSE(panel->isEnabled());
}

TEST_F(GraphPanelTest, SampleSecondsBoxAndArrows)
{
    graph(0).SampleEverySeconds = 0;  // a bad stored value: loading shows it, Return corrects it
    panel->load(0);
    EXPECT_EQ(w<QLineEdit>("txtSampleSeconds")->text(), QStringLiteral("0"));
    QSignalSpy errors(panel.get(), &GraphPanel::sensorError);
    enter("txtSampleSeconds", QStringLiteral("0"));
    EXPECT_EQ(w<QLineEdit>("txtSampleSeconds")->text(), QStringLiteral("1"));
    EXPECT_EQ(graph(0).SampleEverySeconds, 1);
    enter("txtSampleSeconds", QStringLiteral("12"));
    EXPECT_EQ(stored(0, "SampleEverySeconds"), QStringLiteral("12"));
    EXPECT_EQ(w<QScrollBar>("vscSeconds")->value(), 12);
    enter("txtSampleSeconds", QStringLiteral("abc"));
    EXPECT_EQ(w<QLineEdit>("txtSampleSeconds")->text(), QStringLiteral("1"));
    EXPECT_EQ(stored(0, "SampleEverySeconds"), QStringLiteral("1"));

    // The up arrow raises the interval.
    auto* arrows = w<QScrollBar>("vscSeconds");
    arrows->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(w<QLineEdit>("txtSampleSeconds")->text(), QStringLiteral("2"));
    EXPECT_EQ(stored(0, "SampleEverySeconds"), QStringLiteral("2"));

    // Without an option list the Speed Test sets no minimum.
    ASSERT_EQ(ChangeType(*monitor, 0, 0, SpeedTestType).result, EditResult::Done);
    monitor->TestSetupLoaded = true;
    enter("txtSampleSeconds", QStringLiteral("3"));
    EXPECT_EQ(graph(0).SampleEverySeconds, 3);
    EXPECT_EQ(errors.count(), 0);

    // With one, a shorter interval is raised to the option's minimum and the error label says why.
    graph(0).Nodes[0].VDDownloadSize = 2;
    panel->speedTestMinimum = [](qint32 option) { return option == 2 ? 30 : 0; };
    enter("txtSampleSeconds", QStringLiteral("5"));
    EXPECT_EQ(w<QLineEdit>("txtSampleSeconds")->text(), QStringLiteral("30"));
    EXPECT_EQ(stored(0, "SampleEverySeconds"), QStringLiteral("30"));
    ASSERT_EQ(errors.count(), 1);
    EXPECT_EQ(errors.takeFirst().at(0).toString(), SpeedTestMinimumText);
    EXPECT_TRUE(host.calls.isEmpty());
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(GraphPanelTest, ScaleControls)
{
    panel->load(0);
    auto* autoLimits = w<QCheckBox>("chkAutoLimits");
    const char* maxControls[] = {"lblMaxLimits", "txtMaxLimits", "vscMaximum", "cmbDataMagnitude"};
    ASSERT_TRUE(autoLimits->isChecked());
    for (const char* name : maxControls)
        EXPECT_FALSE(w<QWidget>(name)->isEnabled()) << name;
    QTest::mouseClick(autoLimits, Qt::LeftButton);
    for (const char* name : maxControls)
        EXPECT_TRUE(w<QWidget>(name)->isEnabled()) << name;
    EXPECT_EQ(stored(0, "AutoRange"), QStringLiteral("False"));
    EXPECT_EQ(host.calls, QStringList{QStringLiteral("redraw:0")});

    enter("txtMaxLimits", QStringLiteral("250abc"));
    EXPECT_EQ(graph(0).LegendMax, 250.0);
    EXPECT_EQ(w<QLineEdit>("txtMaxLimits")->text(), QStringLiteral("250"));
    EXPECT_EQ(w<QScrollBar>("vscMaximum")->value(), 250);
    enter("txtMaxLimits", QStringLiteral("xyz"));
    EXPECT_EQ(stored(0, "LegendMax"), QStringLiteral("0"));
    w<QScrollBar>("vscMaximum")->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(stored(0, "LegendMax"), QStringLiteral("1"));

    QTest::mouseClick(autoLimits, Qt::LeftButton);
    for (const char* name : maxControls)
        EXPECT_FALSE(w<QWidget>(name)->isEnabled()) << name;
    EXPECT_TRUE(graph(0).AutoRange);

    // Units: a seconds Graph and a bytes Graph.
    ASSERT_EQ(ChangeType(*monitor, 0, 0, PingType).result, EditResult::Done);
    panel->load(0);
    pick("cmbDataMagnitude", QStringLiteral("mSeconds"));
    pick("cmbDataMagnitude", QStringLiteral("Hours"));
    EXPECT_EQ(stored(0, "DataMagnitude"), QStringLiteral("3600"));
    EXPECT_EQ(stored(0, "LegendUnits"), QStringLiteral("Hours"));
    pick("cmbDataMagnitude", QStringLiteral("mSeconds"));
    EXPECT_EQ(graph(0).DataMagnitude, 0.001);
    ASSERT_EQ(ChangeType(*monitor, 0, 0, RamType).result, EditResult::Done);
    panel->load(0);
    pick("cmbDataMagnitude", QStringLiteral("Kbytes"));
    EXPECT_EQ(stored(0, "DataMagnitude"), QStringLiteral("10"));
    EXPECT_EQ(stored(0, "LegendUnits"), QStringLiteral("Kbytes"));
    pick("cmbDataMagnitude", QStringLiteral("0-100%"));
    EXPECT_EQ(stored(0, "DataType"), QStringLiteral("percent"));
    EXPECT_EQ(graph(0).DataMagnitude, -1.0);
    EXPECT_EQ(host.calls.count(QStringLiteral("redraw:0")), 10);

    QTest::mouseClick(w<QCheckBox>("chkDisplayAsBytesPerSecond"), Qt::LeftButton);
    EXPECT_EQ(stored(0, "DisplayAsBytesPerSecond"), QStringLiteral("True"));
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
    QTest::mouseClick(w<QToolButton>("lblGraphColors(0)"), Qt::LeftButton);
    EXPECT_EQ(offered, QColor(255, 255, 255));  // a new Graph's white background
    EXPECT_EQ(graph(1).GraphBackColor, 0x563412);
    EXPECT_EQ(stored(1, "GraphBackColor"), QString::number(0x563412));
    QTest::mouseClick(w<QToolButton>("lblGraphColors(6)"), Qt::LeftButton);
    EXPECT_EQ(offered, QColor(255, 0, 0));  // the cross-hair's 255 is red
    EXPECT_EQ(graph(1).GraphCrossHairColor, 0x563412);
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("redraw:1"), QStringLiteral("redraw:1")}));

    const QByteArray before = fileBytes();
    panel->chooseColour = [](const QColor&) -> std::optional<QColor> { return std::nullopt; };
    QTest::mouseClick(w<QToolButton>("lblGraphColors(3)"), Qt::LeftButton);
    panel->chooseColour = [](const QColor&) -> std::optional<QColor> { return QColor(); };
    QTest::mouseClick(w<QToolButton>("lblGraphColors(3)"), Qt::LeftButton);
    EXPECT_EQ(graph(1).GraphNameColor, 0xFF0000);
    EXPECT_EQ(fileBytes(), before);
    EXPECT_EQ(host.calls.size(), 2);
}

TEST_F(GraphPanelTest, DisplayTilesChangeGraphType)
{
    panel->load(0);
    QSignalSpy tree(panel.get(), &GraphPanel::treeChanged);
    QTest::mouseClick(w<QToolButton>("imgGraphType(1)"), Qt::LeftButton);
    EXPECT_EQ(stored(0, "GraphType"), QStringLiteral("2"));
    EXPECT_EQ(host.calls, QStringList{QStringLiteral("type:0")});
    EXPECT_EQ(tree.count(), 1);
    EXPECT_TRUE(w<QToolButton>("imgGraphType(1)")->isChecked());
    EXPECT_FALSE(w<QToolButton>("imgGraphType(0)")->isChecked());

    // The tile of the Graph's own kind changes nothing and stays checked.
    QTest::mouseClick(w<QToolButton>("imgGraphType(1)"), Qt::LeftButton);
    EXPECT_TRUE(w<QToolButton>("imgGraphType(1)")->isChecked());
    EXPECT_EQ(host.calls.size(), 1);
    EXPECT_EQ(tree.count(), 1);

    // Systray Icons brings the icon layout, whose pick lays the icons out again.
    QTest::mouseClick(w<QToolButton>("imgGraphType(2)"), Qt::LeftButton);
    EXPECT_EQ(graph(0).GraphType, int(SystrayIcon));
    ASSERT_TRUE(w<QComboBox>("cmbIconType")->isVisible());
    pick("cmbIconType", QStringLiteral("Numbers - 1 Node per icon 0-999"));
    EXPECT_EQ(stored(0, "IconType"), QStringLiteral("3"));
    EXPECT_EQ(host.calls.last(), QStringLiteral("nodes:0"));

    for (int k : {27, 28}) {
        QTest::mouseClick(w<QToolButton>(QStringLiteral("imgGraphType(%1)").arg(k).toLatin1().constData()),
                          Qt::LeftButton);
        EXPECT_EQ(graph(0).GraphType, k + 1);
    }
    EXPECT_FALSE(w<QComboBox>("cmbIconType")->isVisible());
}

TEST_F(GraphPanelTest, WindowFlagsVisibilityAndDescriptionAreSaved)
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
        auto* box = w<QCheckBox>(f.control);
        const QString was = stored(0, f.key);
        host.calls.clear();
        QTest::mouseClick(box, Qt::LeftButton);
        EXPECT_NE(stored(0, f.key), was) << f.control;
        EXPECT_EQ(stored(0, f.key), box->isChecked() ? QStringLiteral("True") : QStringLiteral("False")) << f.control;
        EXPECT_EQ(host.calls, f.follow ? QStringList{QString::fromLatin1(f.follow)} : QStringList{}) << f.control;
    }

    host.calls.clear();
    w<QSlider>("sldOpacity")->triggerAction(QAbstractSlider::SliderPageStepSub);
    EXPECT_EQ(graph(0).Opacity, 255 - 16);
    EXPECT_EQ(stored(0, "Opacity"), QString::number(255 - 16));
    EXPECT_EQ(host.calls, QStringList{QStringLiteral("opacity:0")});

    host.calls.clear();
    QTest::mouseClick(w<QToolButton>("imgVisibleSensor"), Qt::LeftButton);
    EXPECT_EQ(stored(0, "Visible"), QStringLiteral("False"));
    QTest::mouseClick(w<QToolButton>("imgVisibleSensor"), Qt::LeftButton);
    EXPECT_TRUE(graph(0).Visible);
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("visible:0"), QStringLiteral("visible:0")}));

    host.calls.clear();
    enter("txtGraphDescription", QStringLiteral("Load of both cores"));
    EXPECT_EQ(stored(0, "Description"), QStringLiteral("Load of both cores"));
    EXPECT_EQ(host.calls, QStringList{QStringLiteral("captions:0")});
}

TEST_F(GraphPanelTest, StaleGraphIndexWritesNothing)
{
    monitor->AddSensor(false);
    panel->load(1);
    const Graph gone = graph(1);
    monitor->Sensors.pop_back();  // as a structural edit elsewhere would leave it
    const QByteArray before = fileBytes();
    QTest::mouseClick(w<QCheckBox>("chkTopMost"), Qt::LeftButton);
    QTest::mouseClick(w<QToolButton>("imgGraphType(1)"), Qt::LeftButton);
    enter("txtSampleSeconds", QStringLiteral("9"));
    EXPECT_EQ(fileBytes(), before);
    EXPECT_TRUE(host.calls.isEmpty());
    EXPECT_TRUE(host.messages.isEmpty());
    monitor->Sensors.push_back(gone);
}

}  // namespace
}  // namespace orm::test
