// The control panel's controls: the tree with its buttons on the left, the two
// panels in a scrolling stack on the right, and their connections.
#include "shell/control_panel.h"

#include "monitor/monitor.h"
#include "monitor/transfers.h"
#include "model/version.h"
#include "shell/custom_tool_tip.h"
#include "shell/graph_panel.h"
#include "shell/graph_window.h"
#include "shell/graph_windows.h"
#include "shell/log_viewer_panel.h"
#include "shell/node_panel.h"
#include "shell/vista_tree.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace orm {

ControlPanel::ControlPanel(Monitor& monitor, GraphWindows& windows, QWidget* parent)
    : QMainWindow(parent), monitor_(monitor), windows_(windows), boxes_(this), prompts_(&boxes_),
      tips_(std::make_unique<CustomToolTip>())
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QLatin1String(ProductName));
    auto* central = new QWidget(this);
    auto* layout = new QHBoxLayout(central);

    auto* left = new QVBoxLayout;
    tree_ = new VistaTree(central);
    tree_->setObjectName(QStringLiteral("VistaTree"));
    tree_->setMinimumHeight(380);
    left->addWidget(tree_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(makeButton(QStringLiteral("imgAddSensor"), QStringLiteral("+ Graph")));
    buttons->addWidget(makeButton(QStringLiteral("imgDeleteSensor"), QStringLiteral("- Graph")));
    left->addLayout(buttons);
    auto* nodeButtons = new QHBoxLayout;
    nodeButtons->addWidget(makeButton(QStringLiteral("imgAddNode"), QStringLiteral("+ Node")));
    nodeButtons->addWidget(makeButton(QStringLiteral("imgDeleteNode"), QStringLiteral("- Node")));
    left->addLayout(nodeButtons);
    left->addWidget(makeButton(QStringLiteral("imgViewLogs"), QStringLiteral("View Logs")));
    lblDataRetrieval_ = new QLabel(central);
    lblDataRetrieval_->setObjectName(QStringLiteral("lblDataRetrieval"));
    lblDataRetrieval_->installEventFilter(this);
    left->addWidget(lblDataRetrieval_);
    lblStatus_ = new QLabel(central);
    lblStatus_->setObjectName(QStringLiteral("lblStatus"));
    lblStatus_->setWordWrap(true);
    left->addWidget(lblStatus_);
    layout->addLayout(left);

    auto* right = new QVBoxLayout;
    lblSensorError_ = new QLabel(central);
    lblSensorError_->setObjectName(QStringLiteral("lblSensorError"));
    lblSensorError_->setWordWrap(true);
    lblSensorError_->setStyleSheet(QStringLiteral("color: rgb(255, 0, 0);"));
    right->addWidget(lblSensorError_);
    stack_ = new QStackedWidget(central);
    graphPanel_ = new GraphPanel(monitor_, windows_, stack_);
    graphPanel_->setObjectName(QStringLiteral("pctOptionFrame(0)"));
    nodePanel_ = new NodePanel(monitor_, windows_, stack_);
    nodePanel_->setObjectName(QStringLiteral("pctOptionFrame(1)"));
    stack_->addWidget(graphPanel_);
    stack_->addWidget(nodePanel_);
    // A tall Node panel scrolls rather than push the window off a small screen.
    auto* scroller = new QScrollArea(central);
    scroller->setObjectName(QStringLiteral("pctOptionScroller"));
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setWidgetResizable(true);
    scroller->setWidget(stack_);
    right->addWidget(scroller, 1);
    logViewer_ = new LogViewerPanel(monitor_, windows_, central);
    logViewer_->hide();
    logViewer_->showStatus = [this](const QString& text) { showStatus(text); };
    logViewer_->repaintGraph = [this](int graph) {
        if (GraphWindow* w = windows_.window(graph))
            w->refresh();
    };
    right->addWidget(logViewer_);
    layout->addLayout(right, 1);
    setCentralWidget(central);

    treeMenu_ = makeTreeMenu(this);
    connect(graphPanel_, &GraphPanel::treeChanged, this, &ControlPanel::rebuildTree);
    connect(nodePanel_, &NodePanel::treeChanged, this, &ControlPanel::rebuildTree);
    connect(graphPanel_, &GraphPanel::sensorError, this, &ControlPanel::setSensorError);
    connect(nodePanel_, &NodePanel::sensorError, this, &ControlPanel::setSensorError);
    // The Speed Test's minimum interval, from the option list the endpoint gave.
    graphPanel_->speedTestMinimum = [this](qint32 option) { return monitor_.transfers().speedTestMinimum(option); };
    connect(&monitor_.transfers(), &Transfers::minimumRaised, this, [this](int graph, int, const QString& text) {
        if (stack_->currentWidget() == graphPanel_ && graphPanel_->graph() == graph)
            graphPanel_->load(graph);  // txtSampleSeconds shows the new interval
        setSensorError(text);
    });
    connect(logViewer_, &LogViewerPanel::nodeChanged, this, [this](int graph, int node) {
        rebuildTree();
        showRow(false, graph, node);
    });

    connect(tree_, &VistaTree::addClicked, this, [this](int graph) {
        if (tree_->selectedParent() != graph || tree_->selectedChild() != -1)
            selectRow(graph, -1);
        addNode(graph);
    });
    connect(tree_, &VistaTree::closeClicked, this, [this](bool isParent, int graph, int node) {
        selectRow(graph, isParent ? -1 : node);
        if (isParent)
            deleteGraph(graph);
        else
            deleteNode(graph, node);
    });
    connect(tree_, &VistaTree::itemSelected, this,
            [this](bool isParent, const QString&, const QString&, int graph, int node) { showRow(isParent, graph, node); });
    connect(tree_, &VistaTree::mouseOver, this,
            [this](Qt::MouseButtons buttons, Qt::KeyboardModifiers, int x, int y, bool nothing, int graph, int node) {
                treeMouse(buttons, x, y, nothing, graph, node);
            });
    connect(tree_, &VistaTree::renameCommitted, this, &ControlPanel::renamed);
    connect(tree_, &VistaTree::settled, this, [this] {
        settle();
        updateWidgetMap();
    });
    connect(tree_, &VistaTree::collapseChanged, this,
            [this](const QString&, const QString& tag, bool c) { collapsed(tag, c); });

    resize(900, 660);
    if (monitor_.Settings.XLoc > 0 || monitor_.Settings.YLoc > 0)
        move(monitor_.Settings.XLoc, monitor_.Settings.YLoc);
    rebuildTree();
    if (!monitor_.Sensors.empty())
        selectRow(0, -1);
    InitToolTips();
}

QToolButton* ControlPanel::makeButton(const QString& name, const QString& text)
{
    auto* b = new QToolButton(this);
    b->setObjectName(name);
    b->setText(text);
    b->setToolButtonStyle(Qt::ToolButtonTextOnly);
    b->setMinimumWidth(70);
    connect(b, &QToolButton::clicked, this, [this, name] {
        int graph = -1, node = -1;
        selectedGraphAndNode(graph, node);
        if (name == QLatin1String("imgAddSensor"))
            addGraph();
        else if (name == QLatin1String("imgViewLogs"))
            addLogGraph();
        else if (graph < 0)
            return;
        else if (name == QLatin1String("imgDeleteSensor"))
            deleteGraph(graph);
        else if (name == QLatin1String("imgAddNode"))
            addNode(graph);
        else if (node >= 0)
            deleteNode(graph, node);
    });
    return b;
}

}  // namespace orm
