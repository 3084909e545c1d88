// The Graph side of the control panel (pctOptionFrame(0)): display kind,
// sampling interval, scale and unit, window look and colours of the Graph
// selected in the tree. Each control writes its field into the model at once,
// saves, and asks the window to follow through PanelHost.
#pragma once

#include "model/model.h"

#include <QColor>
#include "monitor/editing.h"

#include <QWidget>
#include <array>
#include <functional>
#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QScrollBar;
class QSlider;
class QToolButton;

namespace orm {

class Monitor;
class PanelHost;

class GraphPanel : public QWidget {
    Q_OBJECT
public:
    GraphPanel(Monitor& monitor, PanelHost& host, QWidget* parent = nullptr);

    // Fills every control from Sensors[graph]; writes nothing, saves nothing.
    void load(int graph);
    // The Graph shown; -1 before the first load.
    int graph() const { return graph_; }

    // The colour dialog; an empty result (or an invalid colour) is a cancel.
    std::function<std::optional<QColor>(const QColor& initial)> chooseColour;
    // The fewest seconds the Speed Test's download option allows; empty while
    // no option list has been fetched.
    SpeedTestMinimum speedTestMinimum;

signals:
    void treeChanged();
    void sensorError(const QString& text);

private:
    // Building (graph_panel_build.cpp).
    void build();
    QWidget* buildDisplayTiles();
    QWidget* buildSampling();
    QWidget* buildScale();
    QWidget* buildLook();
    QWidget* buildColours();
    void connectControls();

    // The Graph being edited, or null when the index went stale.
    Graph* current();
    // Saves and returns the index for the host call, or -1 when stale.
    int saved();
    void setMaxControlsEnabled(bool enabled);
    void showSeconds(int seconds);
    void showMaximum(double max);
    void showColour(int k, qint32 bgr);
    void selectMagnitude(const Graph& g);

    // User changes.
    void displayTileClicked(int code);
    void sampleSecondsEntered();
    void secondsScrolled(int value);
    void autoLimitsToggled(bool on);
    void maximumEntered();
    void maximumScrolled(int value);
    void magnitudePicked(int index);
    void opacityMoved(int value);
    void opacityReleased();
    void colourClicked(int k);
    void descriptionEntered();
    void visibleClicked(bool on);
    // A check box bound to one bool field; `follow` is the host call.
    void boolToggled(bool Graph::*field, bool on, void (PanelHost::*follow)(int));

    Monitor& monitor_;
    PanelHost& host_;
    int graph_ = -1;
    bool loading_ = false;

    QLabel* lblPanelTitle_ = nullptr;
    std::vector<QToolButton*> displayTiles_;
    std::vector<int> displayCodes_;
    QLineEdit* txtSampleSeconds_ = nullptr;
    QScrollBar* vscSeconds_ = nullptr;
    QCheckBox* chkAutoLimits_ = nullptr;
    QLabel* lblMaxLimits_ = nullptr;
    QLineEdit* txtMaxLimits_ = nullptr;
    QScrollBar* vscMaximum_ = nullptr;
    QComboBox* cmbDataMagnitude_ = nullptr;
    QCheckBox* chkDisplayAsBytesPerSecond_ = nullptr;
    QCheckBox* chkTopMost_ = nullptr;
    QCheckBox* chkTrans_ = nullptr;
    QCheckBox* chkTransUnits_ = nullptr;
    QCheckBox* chkTransGrid_ = nullptr;
    QCheckBox* chkDisableCrossHair_ = nullptr;
    QLabel* lblOpacity_ = nullptr;
    QSlider* sldOpacity_ = nullptr;
    QLabel* lblIconType_ = nullptr;
    QComboBox* cmbIconType_ = nullptr;
    std::array<QToolButton*, 7> lblGraphColors_{};
    QLineEdit* txtGraphDescription_ = nullptr;
    QToolButton* imgVisibleSensor_ = nullptr;
};

}  // namespace orm
