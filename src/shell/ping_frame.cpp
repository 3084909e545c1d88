#include "shell/ping_frame.h"

#include "model/catalogue.h"
#include "monitor/monitor.h"
#include "display/colors.h"
#include "shell/panel_host.h"
#include "sources/host_test.h"
#include "sources/ping.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

namespace orm {

namespace {
const QString ResolveText = QStringLiteral("Test Host");
const QString StopText = QStringLiteral("Stop");
}  // namespace

PingFrame::PingFrame(Monitor& monitor, PanelHost& host, QWidget* parent)
    : QFrame(parent), monitor_(monitor), host_(host)
{
    setObjectName(QStringLiteral("framPingResponse"));
    setFrameShape(QFrame::StyledPanel);
    build();
}

PingFrame::~PingFrame() = default;

void PingFrame::build()
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(6, 4, 6, 4);
    grid->setVerticalSpacing(2);

    lblGen22_ = new QLabel(this);
    lblGen22_->setObjectName(QStringLiteral("lblGen(22)"));
    lblGen22_->setText(QStringLiteral("Host to ping:"));
    grid->addWidget(lblGen22_, 0, 0, 1, 3);

    txtPingIP_ = new QLineEdit(this);
    txtPingIP_->setObjectName(QStringLiteral("txtPingIP"));
    txtPingIP_->setAutoFillBackground(true);
    grid->addWidget(txtPingIP_, 1, 0, 1, 2);

    imgResolve_ = new QPushButton(ResolveText, this);
    imgResolve_->setObjectName(QStringLiteral("imgResolve"));
    grid->addWidget(imgResolve_, 1, 2);

    auto* sizeLabel = new QLabel(QStringLiteral("Packet Size:"), this);
    sizeLabel->setObjectName(QStringLiteral("lblPingPacketSize"));
    grid->addWidget(sizeLabel, 2, 0);
    cmbPingPacketSize_ = new QComboBox(this);
    cmbPingPacketSize_->setObjectName(QStringLiteral("cmbPingPacketSize"));
    for (const PingSizeChoice& c : PingPacketSizeChoices)
        cmbPingPacketSize_->addItem(QString::fromLatin1(c.Text), int(c.Bytes));
    grid->addWidget(cmbPingPacketSize_, 2, 1);

    chkPingTranslate_ = new QCheckBox(QStringLiteral("Show in Kbps"), this);
    chkPingTranslate_->setObjectName(QStringLiteral("chkPingTranslate"));
    grid->addWidget(chkPingTranslate_, 2, 2);

    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName(QStringLiteral("lblStatus"));
    grid->addWidget(lblStatus_, 3, 0, 1, 3);
    for (int k = 0; k < 4; ++k) {
        auto* caption = new QLabel(k < 3 ? QStringLiteral("Trial %1:").arg(k + 1) : QStringLiteral("Average:"), this);
        caption->setObjectName(QStringLiteral("lblPingTrialCaption(%1)").arg(k));
        grid->addWidget(caption, 4 + k, 0);
        auto* l = new QLabel(this);
        l->setObjectName(QStringLiteral("lblPingTrial(%1)").arg(k));
        grid->addWidget(l, 4 + k, 1, 1, 2);
        lblPingTrial_[size_t(k)] = l;
    }

    connect(txtPingIP_, &QLineEdit::editingFinished, this, [this] {
        if (!loading_)
            storePingIP({graph_, node_}, txtPingIP_->text());
    });
    connect(cmbPingPacketSize_, &QComboBox::activated, this, &PingFrame::packetSizeChosen);
    connect(chkPingTranslate_, &QCheckBox::toggled, this, &PingFrame::translateToggled);
    connect(imgResolve_, &QPushButton::clicked, this, &PingFrame::resolveClicked);
}

void PingFrame::load(int graph, int node)
{
    graph_ = graph;
    node_ = node;
    if (graph < 0 || size_t(graph) >= monitor_.Sensors.size() || node < 0 ||
        size_t(node) >= monitor_.Sensors[size_t(graph)].Nodes.size())
        return;
    const Node& n = monitor_.Sensors[size_t(graph)].Nodes[size_t(node)];
    loading_ = true;
    const QSignalBlocker b1(txtPingIP_), b2(cmbPingPacketSize_), b3(chkPingTranslate_);
    txtPingIP_->setText(n.PingIP);
    txtPingIP_->setPalette(QPalette());
    cmbPingPacketSize_->setCurrentIndex(cmbPingPacketSize_->findData(int(n.PingPacketSize)));
    chkPingTranslate_->setChecked(n.PingTranslate);
    loading_ = false;
}

void PingFrame::setHostTestPort(quint16 port)
{
    port_ = port;
    if (test_ && !test_->busy())
        test_.reset();
}

void PingFrame::storePingIP(const Target& at, const QString& text)
{
    if (at.graph < 0 || size_t(at.graph) >= monitor_.Sensors.size())
        return;
    Graph& g = monitor_.Sensors[size_t(at.graph)];
    if (at.node < 0 || size_t(at.node) >= g.Nodes.size())
        return;
    g.Nodes[size_t(at.node)].PingIP = text;
    monitor_.SaveSettings();
}

void PingFrame::packetSizeChosen(int index)
{
    if (loading_ || index < 0 || graph_ < 0 || size_t(graph_) >= monitor_.Sensors.size())
        return;
    Graph& g = monitor_.Sensors[size_t(graph_)];
    if (node_ < 0 || size_t(node_) >= g.Nodes.size())
        return;
    g.Nodes[size_t(node_)].PingPacketSize = qint16(cmbPingPacketSize_->itemData(index).toInt());
    monitor_.SaveSettings();
}

void PingFrame::translateToggled(bool on)
{
    if (loading_ || graph_ < 0 || size_t(graph_) >= monitor_.Sensors.size())
        return;
    Graph& g = monitor_.Sensors[size_t(graph_)];
    if (node_ < 0 || size_t(node_) >= g.Nodes.size())
        return;
    g.Nodes[size_t(node_)].PingTranslate = on;
    unitCheck(monitor_.Sensors, graph_, node_, false);
    monitor_.SaveSettings();
    const QString warning = dataTypeWarning(monitor_.Sensors, graph_, monitor_.Settings.ShowDataTypeErrors);
    if (!warning.isEmpty())
        host_.showMessage(warning);
    host_.redraw(graph_);
}

void PingFrame::setResolveColour(qint32 bgr)
{
    QPalette p = txtPingIP_->palette();
    p.setColor(QPalette::Base, fromBgr(bgr));
    txtPingIP_->setPalette(p);
}

void PingFrame::resolveClicked()
{
    PingService* pings = monitor_.sources().pings.get();
    if (!pings)
        return;
    if (!test_) {
        test_ = std::make_unique<HostTest>(*pings, nullptr, port_);
        HostTest* t = test_.get();
        connect(t, &HostTest::statusChanged, lblGen22_, &QLabel::setText);
        connect(t, &HostTest::checkingChanged, lblStatus_, &QLabel::setText);
        connect(t, &HostTest::trialChanged, this, [this](int k, const QString& text) {
            if (k >= 0 && k < int(lblPingTrial_.size()))
                lblPingTrial_[size_t(k)]->setText(text);
        });
        connect(t, &HostTest::hostTextChanged, this, [this](const QString& text) {
            if (testTarget_.graph == graph_ && testTarget_.node == node_) {
                const QSignalBlocker b(txtPingIP_);
                txtPingIP_->setText(text);
            }
            storePingIP(testTarget_, text);
        });
        connect(t, &HostTest::hostColourChanged, this, [this](qint32 c) {
            if (testTarget_.graph == graph_ && testTarget_.node == node_)
                setResolveColour(c);
        });
        connect(t, &HostTest::finished, this, [this] { imgResolve_->setText(ResolveText); });
    }
    const bool wasBusy = test_->busy();
    if (!wasBusy) {
        testTarget_ = {graph_, node_};
        for (QLabel* l : lblPingTrial_)
            l->clear();
    }
    test_->resolveClicked(0, Qt::LeftButton, txtPingIP_->text());
    imgResolve_->setText(test_->busy() ? StopText : ResolveText);
}

}  // namespace orm
