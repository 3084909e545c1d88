#include "shell/node_panel.h"

#include "model/catalogue.h"
#include "monitor/editing.h"
#include "monitor/monitor.h"
#include "display/colors.h"
#include "shell/colour_choice.h"
#include "shell/node_panel_rules.h"
#include "shell/panel_host.h"

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
