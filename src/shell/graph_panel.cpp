// The Graph panel: loading a Graph into the controls, and what each user
// change writes. The controls are made in graph_panel_build.cpp.
#include "shell/graph_panel.h"

#include "model/catalogue.h"
#include "monitor/editing.h"
#include "monitor/monitor.h"
#include "model/number_text.h"
#include "display/colors.h"
#include "shell/panel_host.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <cmath>
#include <limits>

namespace orm {

namespace {

// The Graph colours in the order of lblGraphColors(k).
constexpr qint32 Graph::*ColourFields[7] = {
    &Graph::GraphBackColor,      &Graph::GraphExteriorGridColor,      &Graph::GraphInteriorGridColor,
    &Graph::GraphNameColor,      &Graph::GraphGridLabelColor,         &Graph::GraphInteriorGridColorLight,
    &Graph::GraphCrossHairColor,
};

// A scale maximum as the scroll bar can hold it.
int scrollValue(double v)
{
    if (!(v > 0))
        return 0;
    if (v >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    return int(std::lround(v));
}

// Sets a control from the model without its signals reaching the handlers.
class Quiet {
public:
    explicit Quiet(bool& flag) : flag_(flag), was_(flag) { flag_ = true; }
    ~Quiet() { flag_ = was_; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    bool& flag_;
    bool was_;
};

}  // namespace

Graph* GraphPanel::current()
{
    if (loading_ || graph_ < 0 || graph_ >= int(monitor_.Sensors.size()))
        return nullptr;
    return &monitor_.Sensors[size_t(graph_)];
}

int GraphPanel::saved()
{
    if (graph_ < 0 || graph_ >= int(monitor_.Sensors.size()))
        return -1;
    monitor_.SaveSettings();
    return graph_;
}

void GraphPanel::load(int graph)
{
    graph_ = graph;
    Quiet quiet(loading_);
    const bool valid = graph >= 0 && graph < int(monitor_.Sensors.size());
    setEnabled(valid);
    if (!valid) {
        lblPanelTitle_->clear();
        return;
    }
    const Graph& g = monitor_.Sensors[size_t(graph)];

    lblPanelTitle_->setText(g.Name);
    for (size_t i = 0; i < displayTiles_.size(); ++i)
        displayTiles_[i]->setChecked(displayCodes_[i] == g.GraphType);

    showSeconds(g.SampleEverySeconds);

    chkAutoLimits_->setChecked(g.AutoRange);
    setMaxControlsEnabled(!g.AutoRange);
    showMaximum(g.LegendMax);
    cmbDataMagnitude_->clear();
    for (const MagnitudeEntry& e : magnitudeEntries(g.DataType))
        cmbDataMagnitude_->addItem(e.text, e.itemData);
    selectMagnitude(g);
    chkDisplayAsBytesPerSecond_->setChecked(g.DisplayAsBytesPerSecond);

    chkTopMost_->setChecked(g.TopMost);
    chkTrans_->setChecked(g.Transparent);
    chkTransUnits_->setChecked(g.TransLegend);
    chkTransGrid_->setChecked(g.TransGrid);
    chkDisableCrossHair_->setChecked(g.DisableCrossHair);
    sldOpacity_->setValue(qBound(0, int(g.Opacity), 255));

    const bool icons = g.GraphType == SystrayIcon;
    lblIconType_->setVisible(icons);
    cmbIconType_->setVisible(icons);
    cmbIconType_->setCurrentIndex(g.IconType >= 0 && g.IconType < cmbIconType_->count() ? g.IconType : -1);

    for (int k = 0; k < 7; ++k)
        showColour(k, g.*ColourFields[k]);
    txtGraphDescription_->setText(g.Description);
    imgVisibleSensor_->setChecked(g.Visible);
}

void GraphPanel::setMaxControlsEnabled(bool enabled)
{
    for (QWidget* w : std::initializer_list<QWidget*>{lblMaxLimits_, txtMaxLimits_, vscMaximum_, cmbDataMagnitude_})
        w->setEnabled(enabled);
}

void GraphPanel::showSeconds(int seconds)
{
    Quiet quiet(loading_);
    txtSampleSeconds_->setText(QString::number(seconds));
    vscSeconds_->setValue(seconds);
}

void GraphPanel::showMaximum(double max)
{
    Quiet quiet(loading_);
    txtMaxLimits_->setText(screenNumberText(max));
    vscMaximum_->setValue(scrollValue(max));
}

void GraphPanel::showColour(int k, qint32 bgr)
{
    QPixmap swatch(lblGraphColors_[size_t(k)]->iconSize());
    swatch.fill(fromBgr(bgr));
    lblGraphColors_[size_t(k)]->setIcon(QIcon(swatch));
}

void GraphPanel::selectMagnitude(const Graph& g)
{
    int found = -1;
    // The legend names the entry ("MBytes" is the "Mbytes" entry, "KBps" the "Kbps" one)...
    for (int i = 0; i < cmbDataMagnitude_->count() && found < 0; ++i)
        if (cmbDataMagnitude_->itemText(i).compare(g.LegendUnits, Qt::CaseInsensitive) == 0)
            found = i;
    // ...and where it does not, the stored magnitude does.
    const std::vector<MagnitudeEntry> entries = magnitudeEntries(g.DataType);
    for (size_t i = 0; i < entries.size() && found < 0; ++i)
        if (storedMagnitude(entries[i].itemData) == g.DataMagnitude)
            found = int(i);
    // A unit with one entry ("0-100%", "# of") has nothing else to show.
    if (found < 0 && entries.size() == 1)
        found = 0;
    cmbDataMagnitude_->setCurrentIndex(found);
}

void GraphPanel::displayTileClicked(int code)
{
    const int g = graph_;
    if (!current())
        return;
    const TypeChange r = ChangeType(monitor_, g, 0, code);
    if (r.result == EditResult::Done) {
        if (!r.warning.isEmpty())
            host_.showMessage(r.warning);
        if (r.graphTypeChanged)
            host_.graphTypeChanged(g);
        emit treeChanged();
    } else if (!r.message.isEmpty()) {
        host_.showMessage(r.message);
    }
    load(g);  // the checked tile follows the model, refused or not
}

void GraphPanel::sampleSecondsEntered()
{
    const Graph* graph = current();
    // Leaving the box untouched is no change.
    if (!graph || (graph->SampleEverySeconds >= 1 && txtSampleSeconds_->text() == QString::number(graph->SampleEverySeconds)))
        return;
    const int g = graph_;
    // Saves by itself.
    const IntervalChange r = setSampleSeconds(monitor_, g, txtSampleSeconds_->text(), speedTestMinimum);
    showSeconds(r.seconds);
    if (!r.sensorError.isEmpty())
        emit sensorError(r.sensorError);
}

void GraphPanel::secondsScrolled(int value)
{
    if (!current())
        return;
    txtSampleSeconds_->setText(QString::number(value));
    sampleSecondsEntered();
}

void GraphPanel::autoLimitsToggled(bool on)
{
    // The maximum is typed only when the scale does not follow the data.
    setMaxControlsEnabled(!on);
    Graph* g = current();
    if (!g)
        return;
    g->AutoRange = on;
    if (const int gi = saved(); gi >= 0)
        host_.redraw(gi);
}

void GraphPanel::maximumEntered()
{
    Graph* g = current();
    if (!g)
        return;
    const double max = typedNumber(txtMaxLimits_->text());
    showMaximum(max);
    if (max == g->LegendMax)
        return;
    g->LegendMax = max;
    if (const int gi = saved(); gi >= 0)
        host_.redraw(gi);
}

void GraphPanel::maximumScrolled(int value)
{
    Graph* g = current();
    if (!g)
        return;
    showMaximum(value);
    g->LegendMax = value;
    if (const int gi = saved(); gi >= 0)
        host_.redraw(gi);
}

void GraphPanel::magnitudePicked(int index)
{
    Graph* g = current();
    if (!g)
        return;
    const std::vector<MagnitudeEntry> entries = magnitudeEntries(g->DataType);
    if (index < 0 || index >= int(entries.size()))
        return;
    applyMagnitude(*g, entries[size_t(index)]);
    if (const int gi = saved(); gi >= 0)
        host_.redraw(gi);
}

void GraphPanel::boolToggled(bool Graph::*field, bool on, void (PanelHost::*follow)(int))
{
    Graph* g = current();
    if (!g)
        return;
    g->*field = on;
    const int gi = saved();
    if (gi >= 0 && follow)
        (host_.*follow)(gi);
}

void GraphPanel::opacityMoved(int value)
{
    Graph* g = current();
    if (!g)
        return;
    g->Opacity = qint16(value);
    // While dragging the window follows at once; the store is written on release.
    if (sldOpacity_->isSliderDown()) {
        host_.opacityChanged(graph_);
        return;
    }
    if (const int gi = saved(); gi >= 0)
        host_.opacityChanged(gi);
}

void GraphPanel::opacityReleased()
{
    if (current())
        saved();
}

void GraphPanel::colourClicked(int k)
{
    Graph* g = current();
    if (!g || !chooseColour)
        return;
    const int gi = graph_;
    const std::optional<QColor> chosen = chooseColour(fromBgr(g->*ColourFields[k]));
    // The dialog is modal: the Graph may have gone meanwhile.
    g = current();
    if (!chosen || !chosen->isValid() || !g || graph_ != gi)
        return;
    g->*ColourFields[k] = toBgr(*chosen);
    showColour(k, g->*ColourFields[k]);
    if (saved() >= 0)
        host_.redraw(gi);
}

void GraphPanel::descriptionEntered()
{
    Graph* g = current();
    if (!g || g->Description == txtGraphDescription_->text())
        return;
    g->Description = txtGraphDescription_->text();
    if (const int gi = saved(); gi >= 0)
        host_.captionsChanged(gi);
}

void GraphPanel::visibleClicked(bool on)
{
    Graph* g = current();
    if (!g)
        return;
    g->Visible = on;
    if (const int gi = saved(); gi >= 0)
        host_.visibilityChanged(gi);
}

}  // namespace orm
