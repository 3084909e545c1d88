// The Node side of the control panel (pctOptionFrame(1)): the type tiles, the
// pen, averaging and logging of the Node selected in the tree, and the frames
// that belong to its type. Each control writes its field into the model at
// once, saves, and asks the window to follow through PanelHost.
#pragma once

#include "model/model.h"

#include <QColor>
#include <QWidget>
#include <array>
#include <functional>
#include <optional>

class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;
class QToolButton;

namespace orm {

class Monitor;
class NodeTypeTiles;
class PanelHost;
class PingFrame;
class ProcessList;

class NodePanel : public QWidget {
    Q_OBJECT
public:
    NodePanel(Monitor& monitor, PanelHost& host, QWidget* parent = nullptr);

    // Fills every control from the Node; writes nothing, saves nothing.
    void load(int graph, int node);
    // The Node shown; -1 before the first load.
    int graph() const { return graph_; }
    int node() const { return node_; }

    // The colour dialog; an empty result (or an invalid colour) is a cancel.
    std::function<std::optional<QColor>(const QColor& initial)> chooseColour;

signals:
    void treeChanged();
    void sensorError(const QString& text);

private:
    // Building (node_panel_build.cpp).
    void build();
    QWidget* buildLook();
    QWidget* buildAveraging();
    QWidget* buildMeasure();
    QWidget* buildChoosers();
    QWidget* buildWebsite();
    QWidget* buildSpeedTest();
    void connectControls();

    // The Node being edited, or null when the indexes went stale.
    Node* current();
    Graph* currentGraph();
    // After a field was written: save, then the window follows.
    void saved(bool redraw);

    void fillLists();
    void showFrames(int nodeType, bool logGraph);
    void loadMasters(const Node& n);
    void loadColour(qint32 bgr);

    void typeChosen(int code);
    void lineDisplayChosen(int index);
    void lineTypeChosen(int index);
    void lineWidthChosen(int index);
    void colourClicked();
    void averagingChosen(int mode);
    void averagingTyped();
    void averagingScrolled(int value);
    void measureChosen(int k);
    void netCardChosen(int index);
    void driveChosen(int index);
    void cpuChosen(int index);
    void ssidChosen(int index);
    void urlEdited();
    void websiteTypeChosen(int index);
    void masterChosen();
    void slaveChosen();
    void masterEntryChosen(int index);
    void downloadOptionChosen(int index);
    void forceTest();
    // The URL test and the speed test's controls (node_panel_transfers.cpp).
    void connectTransfers();
    void loadTransfers(const Node& n);
    void fillDownloadOptions();
    void showUrlStatus(const QString& text, qint32 colour);
    void testClicked();
    void speedTestServerEdited();
    void visibleToggled(bool on);
    void logToggled(bool on);

    Monitor& monitor_;
    PanelHost& host_;
    int graph_ = -1;
    int node_ = -1;
    bool loading_ = false;

    QLabel* lblPanelTitle_ = nullptr;
    QLabel* lblTotalPhysical_ = nullptr;
    QLabel* lblTotalVirtual_ = nullptr;
    QLabel* lblTotalPagefile_ = nullptr;
    NodeTypeTiles* tiles_ = nullptr;

    QWidget* pctLook_ = nullptr;
    QComboBox* cmbLineDisplayType_ = nullptr;
    QComboBox* cmbLineType_ = nullptr;
    QComboBox* cmbLineWidth_ = nullptr;
    QToolButton* lblNodeColor_ = nullptr;
    QToolButton* imgVisibleNode_ = nullptr;
    QToolButton* imgLog_ = nullptr;

    QWidget* pctAveraging_ = nullptr;
    std::array<QRadioButton*, 4> optAveraging_{};
    QLineEdit* txtAveragingSamples_ = nullptr;
    QScrollBar* vscAveragingSample_ = nullptr;

    QFrame* pctMeasureOptions_ = nullptr;
    std::array<QRadioButton*, 3> optMeasure_{};

    QWidget* pctNetCard_ = nullptr;
    QComboBox* cmbNetCard_ = nullptr;
    QWidget* pctDriveList_ = nullptr;
    QComboBox* cmbDriveList_ = nullptr;
    QWidget* pctCPU_ = nullptr;
    QComboBox* cmbCPU_ = nullptr;
    QWidget* pctSSID_ = nullptr;
    QComboBox* cmbSSID_ = nullptr;

    QWidget* pctDownloadURL_ = nullptr;
    QLabel* lblDownloadURL_ = nullptr;
    QLineEdit* txtDownloadURL_ = nullptr;
    QToolButton* imgTestDownload_ = nullptr;
    QWidget* pctWebsite_ = nullptr;
    QComboBox* cmbWebsiteType_ = nullptr;
    QFrame* pctMasterSlave_ = nullptr;
    std::array<QRadioButton*, 2> optMasterSlave_{};
    QComboBox* cmbMasterSlave_ = nullptr;

    QWidget* pctSpeedTest_ = nullptr;
    QComboBox* cmbDownloadOptions_ = nullptr;
    QPushButton* cmdForceTest_ = nullptr;
    QLineEdit* txtSpeedTestServer_ = nullptr;
    QLabel* lblGen32_ = nullptr;

    PingFrame* framPingResponse_ = nullptr;
    ProcessList* processes_ = nullptr;
};

}  // namespace orm
