#include "shell/node_panel.h"

#include "model/catalogue.h"
#include "monitor/editing.h"
#include "monitor/monitor.h"
#include "display/colors.h"
#include "shell/colour_choice.h"
#include "shell/node_panel_rules.h"
#include "shell/node_type_tiles.h"
#include "shell/panel_host.h"
#include "shell/ping_frame.h"
#include "shell/process_list.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QToolButton>

namespace orm {

namespace {

const QString WebsiteUrlCaption = QStringLiteral("Download File URL:");
const QString LanFileCaption = QStringLiteral("Transfer LAN File:");
const QString RunningText = QStringLiteral("Running...");
const QString ForceTestText = QStringLiteral("Force 1 Test Now");

void fillCombo(QComboBox* box, const QStringList& items)
{
    const QSignalBlocker b(box);
    box->clear();
    box->addItems(items);
}

}  // namespace

NodePanel::NodePanel(Monitor& monitor, PanelHost& host, QWidget* parent)
    : QWidget(parent), monitor_(monitor), host_(host)
{
    setObjectName(QStringLiteral("pctOptionFrame(1)"));
    chooseColour = [this](const QColor& initial) { return askColour(initial, this); };
    build();
}

Graph* NodePanel::currentGraph()
{
    if (graph_ < 0 || size_t(graph_) >= monitor_.Sensors.size())
        return nullptr;
    return &monitor_.Sensors[size_t(graph_)];
}

Node* NodePanel::current()
{
    Graph* g = currentGraph();
    if (!g || node_ < 0 || size_t(node_) >= g->Nodes.size())
        return nullptr;
    return &g->Nodes[size_t(node_)];
}

void NodePanel::saved(bool redraw)
{
    monitor_.SaveSettings();
    if (redraw)
        host_.redraw(graph_);
}

// ---- loading ----

void NodePanel::fillLists()
{
    fillCombo(cmbLineType_, monitor_.lists.cmbLineType);
    fillCombo(cmbLineWidth_, monitor_.lists.cmbLineWidth);
    fillCombo(cmbNetCard_, monitor_.lists.cmbNetCard);
    fillCombo(cmbDriveList_, monitor_.lists.cmbDriveList);
    fillCombo(cmbCPU_, monitor_.lists.cmbCPU);
    fillCombo(cmbSSID_, monitor_.lists.cmbSSID);
}

void NodePanel::showFrames(int nodeType, bool logGraph)
{
    const NodeFrames f = logGraph ? NodeFrames{} : framesFor(nodeType);
    pctLook_->setVisible(!logGraph);
    pctAveraging_->setVisible(!logGraph);
    pctMeasureOptions_->setVisible(f.measure);
    pctNetCard_->setVisible(f.netCard);
    pctDriveList_->setVisible(f.drive);
    pctCPU_->setVisible(f.cpu);
    pctSSID_->setVisible(f.ssid);
    pctDownloadURL_->setVisible(f.downloadUrl);
    // Their common frame takes no room when none of them applies.
    pctDownloadURL_->parentWidget()->setVisible(f.netCard || f.drive || f.cpu || f.ssid || f.downloadUrl);
    pctWebsite_->setVisible(f.website);
    framPingResponse_->setVisible(f.ping);
    processes_->setVisible(f.processes);
    pctSpeedTest_->setVisible(f.speedTest);
    tiles_->setTilesEnabled(!logGraph);
}

void NodePanel::loadColour(qint32 bgr)
{
    const QColor c = fromBgr(bgr);
    lblNodeColor_->setStyleSheet(QStringLiteral("QToolButton { background-color: %1; border: 1px solid black; }")
                                     .arg(c.name()));
}

void NodePanel::loadMasters(const Node& n)
{
    const QSignalBlocker b(cmbMasterSlave_);
    cmbMasterSlave_->clear();
    for (const MasterChoice& m : websiteMasters(monitor_.Sensors, graph_, node_))
        cmbMasterSlave_->addItem(m.text, QVariantList{m.graph, m.node});
    optMasterSlave_[0]->setChecked(n.WebsiteMaster);
    optMasterSlave_[1]->setChecked(!n.WebsiteMaster);
    cmbMasterSlave_->setEnabled(!n.WebsiteMaster);
    if (n.WebsiteMaster) {
        cmbMasterSlave_->setCurrentIndex(cmbMasterSlave_->count() > 0 ? 0 : -1);
        return;
    }
    const QVariantList stored{int(n.WebsiteSlaveToSensor), int(n.WebsiteSlaveToNode)};
    int at = cmbMasterSlave_->findData(stored);
    if (at < 0) {
        // A Master that moved or went: its indices are shown as stored.
        const MasterChoice stale = slaveTarget(monitor_.Sensors, n.WebsiteSlaveToSensor, n.WebsiteSlaveToNode);
        cmbMasterSlave_->addItem(stale.text, stored);
        at = cmbMasterSlave_->count() - 1;
    }
    cmbMasterSlave_->setCurrentIndex(at);
}

void NodePanel::load(int graph, int node)
{
    graph_ = graph;
    node_ = node;
    const Node* n = current();
    if (!n)
        return;
    const Graph& g = *currentGraph();
    loading_ = true;

    lblPanelTitle_->setText(n->Name);
    if (MemoryStatus* mem = monitor_.sources().memory.get()) {
        mem->GetMemoryStatus();
        lblTotalPhysical_->setText(memoryTotalText(TotalPhysicalCaption, mem->figures.MemTotalPhys));
        lblTotalVirtual_->setText(memoryTotalText(TotalVirtualCaption, mem->figures.MemTotalVirtual));
        lblTotalPagefile_->setText(memoryTotalText(TotalPagefileCaption, mem->figures.MemTotalPageFile));
    }
    tiles_->setCurrent(n->NodeType);
    fillLists();

    cmbLineDisplayType_->setCurrentIndex(n->GraphLineType >= 0 && n->GraphLineType < 3 ? n->GraphLineType : -1);
    cmbLineType_->setCurrentIndex(n->PenType >= 0 && n->PenType < cmbLineType_->count() ? n->PenType : -1);
    const int width = g.GraphType == BarGraph ? n->BarWidth : n->PenWidth;
    cmbLineWidth_->setCurrentIndex(cmbLineWidth_->findText(QString::number(width)));
    loadColour(n->PenColor);
    imgVisibleNode_->setChecked(n->NodeVisible);
    imgLog_->setChecked(n->LogData);

    for (int k = 0; k < 4; ++k)
        optAveraging_[size_t(k)]->setChecked(k == n->Averaging);
    txtAveragingSamples_->setText(QString::number(n->AveragingSamples));
    vscAveragingSample_->setValue(n->AveragingSamples);
    for (int k = 0; k < 3; ++k)
        optMeasure_[size_t(k)]->setChecked(k == n->Measuring);

    cmbNetCard_->setCurrentIndex(n->AdapterIndex >= 0 && n->AdapterIndex < cmbNetCard_->count() ? n->AdapterIndex
                                                                                                 : -1);
    int drive = -1;
    QStringList driveNames;
    if (const DriveInfo* drives = monitor_.sources().drives.get())
        for (const DriveRecord& d : drives->DriveTable)
            driveNames << d.Name;
    for (int k = 0; k < cmbDriveList_->count(); ++k)
        if (driveOfEntry(cmbDriveList_->itemText(k), driveNames) == n->DriveMonitoring)
            drive = k;
    cmbDriveList_->setCurrentIndex(drive);
    cmbCPU_->setCurrentIndex(n->CPUNumber >= 0 && n->CPUNumber < cmbCPU_->count() ? n->CPUNumber : -1);
    if (!n->SSID.isEmpty() && cmbSSID_->findText(n->SSID) < 0) {
        const QSignalBlocker b(cmbSSID_);
        cmbSSID_->addItem(n->SSID);  // a network out of reach now stays chosen
    }
    cmbSSID_->setCurrentIndex(n->SSID.isEmpty() ? -1 : cmbSSID_->findText(n->SSID));

    lblDownloadURL_->setText(n->NodeType == LanType ? LanFileCaption : WebsiteUrlCaption);
    txtDownloadURL_->setText(n->DownloadURL);
    cmbWebsiteType_->setCurrentIndex(n->DownloadType >= 0 && n->DownloadType < 4 ? n->DownloadType : -1);
    loadMasters(*n);

    cmbDownloadOptions_->setCurrentIndex(
        n->VDDownloadSize >= 0 && n->VDDownloadSize < cmbDownloadOptions_->count() ? n->VDDownloadSize : -1);
    cmdForceTest_->setText(ForceTestText);

    framPingResponse_->load(graph, node);
    if (n->NodeType == ProcessType && !g.LogGraph)
        processes_->load(graph, node);
    showFrames(n->NodeType, g.LogGraph);
    loading_ = false;
}

// ---- edits ----

void NodePanel::typeChosen(int code)
{
    if (!current())
        return;
    const int g = graph_, n = node_;
    const TypeChange change = ChangeType(monitor_, g, n, code);
    if (change.result == EditResult::Refused) {
        host_.showMessage(change.message);
        return;
    }
    if (change.result != EditResult::Done)
        return;
    if (!change.warning.isEmpty())
        host_.showMessage(change.warning);
    host_.nodesChanged(g);
    host_.redraw(g);
    emit treeChanged();
    load(g, n);
}

void NodePanel::lineDisplayChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    n->GraphLineType = index;
    saved(true);
}

void NodePanel::lineTypeChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    n->PenType = index;
    saved(true);
}

void NodePanel::lineWidthChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    bool ok = false;
    const int width = cmbLineWidth_->itemText(index).toInt(&ok);
    if (!ok)
        return;
    if (currentGraph()->GraphType == BarGraph)
        n->BarWidth = qint16(width);
    else
        n->PenWidth = qint16(width);
    saved(true);
}

void NodePanel::colourClicked()
{
    Node* n = current();
    if (!n || !chooseColour)
        return;
    const std::optional<QColor> c = chooseColour(fromBgr(n->PenColor));
    n = current();  // the dialog runs events; the Node may be gone
    if (!c || !c->isValid() || !n)
        return;
    n->PenColor = toBgr(*c);
    loadColour(n->PenColor);
    saved(true);
}

void NodePanel::averagingChosen(int mode)
{
    Node* n = current();
    if (loading_ || !n)
        return;
    n->Averaging = mode;
    saved(true);
}

void NodePanel::averagingTyped()
{
    Node* n = current();
    if (loading_ || !n)
        return;
    const int samples = averagingSamplesOf(txtAveragingSamples_->text());
    txtAveragingSamples_->setText(QString::number(samples));
    {
        const QSignalBlocker b(vscAveragingSample_);
        vscAveragingSample_->setValue(samples);
    }
    if (n->AveragingSamples == samples)
        return;
    n->AveragingSamples = samples;
    saved(true);
}

void NodePanel::averagingScrolled(int value)
{
    Node* n = current();
    if (loading_ || !n)
        return;
    const int samples = std::max(1, value);
    txtAveragingSamples_->setText(QString::number(samples));
    n->AveragingSamples = samples;
    saved(true);
}

void NodePanel::measureChosen(int k)
{
    Node* n = current();
    if (loading_ || !n)
        return;
    n->Measuring = qint16(k);
    saved(true);
}

void NodePanel::netCardChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    n->AdapterIndex = index;
    n->LastRawValue = 0;  // the counter of another adapter is no base for a rate
    n->LastSampleTime = 0;
    saved(true);
}

void NodePanel::driveChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0 || !monitor_.PanelReady)
        return;
    QStringList driveNames;
    if (const DriveInfo* drives = monitor_.sources().drives.get())
        for (const DriveRecord& d : drives->DriveTable)
            driveNames << d.Name;
    n->DriveMonitoring = driveOfEntry(cmbDriveList_->itemText(index), driveNames);
    n->LastRawValue = 0;
    n->LastSampleTime = 0;
    saved(true);
    emit treeChanged();
}

void NodePanel::cpuChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    n->CPUNumber = qint16(index);
    saved(true);
    emit treeChanged();
}

void NodePanel::ssidChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    n->SSID = cmbSSID_->itemText(index);
    saved(true);
}

void NodePanel::urlEdited()
{
    Node* n = current();
    if (loading_ || !n || n->DownloadURL == txtDownloadURL_->text())
        return;
    n->DownloadURL = txtDownloadURL_->text();
    saved(false);
}

void NodePanel::websiteTypeChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0 || !monitor_.PanelReady)
        return;
    n->DownloadType = qint16(index);
    unitCheck(monitor_.Sensors, graph_, node_, false);
    saved(true);
}

void NodePanel::masterChosen()
{
    Node* n = current();
    if (loading_ || !n)
        return;
    n->WebsiteMaster = true;
    cmbMasterSlave_->setEnabled(false);
    saved(false);
}

void NodePanel::slaveChosen()
{
    Node* n = current();
    if (loading_ || !n)
        return;
    if (websiteMasters(monitor_.Sensors, graph_, node_).empty()) {
        optMasterSlave_[0]->setChecked(true);
        host_.showMessage(NoWebsiteMasterText);
        return;
    }
    if (!n->WebsiteMaster)
        return;
    int at = cmbMasterSlave_->currentIndex();
    if (at < 0)
        at = 0;
    const QVariantList target = cmbMasterSlave_->itemData(at).toList();
    cmbMasterSlave_->setCurrentIndex(at);
    cmbMasterSlave_->setEnabled(true);
    n->WebsiteMaster = false;
    if (target.size() == 2) {
        n->WebsiteSlaveToSensor = qint16(target[0].toInt());
        n->WebsiteSlaveToNode = qint16(target[1].toInt());
    }
    saved(false);
}

void NodePanel::masterEntryChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    const QVariantList target = cmbMasterSlave_->itemData(index).toList();
    if (target.size() != 2)
        return;
    n->WebsiteSlaveToSensor = qint16(target[0].toInt());
    n->WebsiteSlaveToNode = qint16(target[1].toInt());
    saved(false);
}

void NodePanel::downloadOptionChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    n->VDDownloadSize = index;
    saved(false);
}

void NodePanel::forceTest()
{
    Graph* g = currentGraph();
    if (!g)
        return;
    g->TicksToSample = 0;  // samples on the next tick; not a stored field
    cmdForceTest_->setText(RunningText);
}

void NodePanel::visibleToggled(bool on)
{
    Node* n = current();
    if (loading_ || !n)
        return;
    n->NodeVisible = on;
    monitor_.SaveSettings();
    host_.nodesChanged(graph_);
    host_.redraw(graph_);
}

void NodePanel::logToggled(bool on)
{
    Node* n = current();
    if (loading_ || !n)
        return;
    n->LogData = on;
    saved(false);
}

}  // namespace orm
