// Loading a Node into the Node panel: the lists, the frames its type shows,
// and every control set from the Node without saving anything.
#include "shell/node_panel.h"

#include "monitor/monitor.h"
#include "display/colors.h"
#include "shell/node_panel_rules.h"
#include "shell/node_type_tiles.h"
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


void fillCombo(QComboBox* box, const QStringList& items)
{
    const QSignalBlocker b(box);
    box->clear();
    box->addItems(items);
}

}  // namespace

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

    loadTransfers(*n);
    cmbWebsiteType_->setCurrentIndex(n->DownloadType >= 0 && n->DownloadType < 4 ? n->DownloadType : -1);
    loadMasters(*n);

    framPingResponse_->load(graph, node);
    if (n->NodeType == ProcessType && !g.LogGraph)
        processes_->load(graph, node);
    showFrames(n->NodeType, g.LogGraph);
    loading_ = false;
}

}  // namespace orm
