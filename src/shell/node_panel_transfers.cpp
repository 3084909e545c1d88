// The Node panel's transfer controls: the URL line with its test (lblGen(29),
// txtDownloadURL, imgTestDownload) and the speed test's options, its forced
// test and its endpoint (cmbDownloadOptions, cmdForceTest, txtSpeedTestServer,
// lblGen(32)). The tests and transfers themselves run in the Monitor.
#include "shell/node_panel.h"

#include "display/colors.h"
#include "monitor/monitor.h"
#include "monitor/transfers.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>

namespace orm {

namespace {

const QString WebsiteUrlCaption = QStringLiteral("Download File URL:");
const QString LanFileCaption = QStringLiteral("Transfer LAN File:");
const QString ForceTestText = QStringLiteral("Force 1 Test Now");
const QString RunningText = QStringLiteral("Running...");

}  // namespace

void NodePanel::connectTransfers()
{
    Transfers& t = monitor_.transfers();
    connect(&t, &Transfers::urlStatus, this, &NodePanel::showUrlStatus);
    connect(&t, &Transfers::warning, this, &NodePanel::sensorError);
    connect(&t, &Transfers::setupFailed, lblGen32_, &QLabel::setText);
    connect(&t, &Transfers::optionsLoaded, this, &NodePanel::fillDownloadOptions);
    connect(&t, &Transfers::speedTestEnded, cmdForceTest_, [this] { cmdForceTest_->setText(ForceTestText); });
}

void NodePanel::showUrlStatus(const QString& text, qint32 colour)
{
    lblDownloadURL_->setText(text);
    QPalette p = txtDownloadURL_->palette();
    p.setColor(QPalette::Text, colour < 0 ? QGuiApplication::palette().color(QPalette::Text) : fromBgr(colour));
    txtDownloadURL_->setPalette(p);
}

void NodePanel::loadTransfers(const Node& n)
{
    Transfers& t = monitor_.transfers();
    t.shownGraph = graph_;
    t.shownNode = node_;
    txtDownloadURL_->setText(n.DownloadURL);
    // The colour of the last test of this Node, none while it is untested.
    const qint32 colour = !n.WebsiteTested ? -1 : n.WebsiteReady ? UrlGoodColour : UrlBadColour;
    showUrlStatus(n.NodeType == LanType ? LanFileCaption : WebsiteUrlCaption, colour);
    fillDownloadOptions();
    cmdForceTest_->setText(ForceTestText);
    txtSpeedTestServer_->setText(monitor_.Settings.SpeedTestServer);
}

void NodePanel::fillDownloadOptions()
{
    const QSignalBlocker b(cmbDownloadOptions_);
    cmbDownloadOptions_->clear();
    for (const DownloadOption& o : monitor_.transfers().DownloadOptions)
        cmbDownloadOptions_->addItem(o.text, QVariant::fromValue(o.seconds));
    const Node* n = current();
    const int chosen = n ? n->VDDownloadSize : -1;
    cmbDownloadOptions_->setCurrentIndex(chosen >= 0 && chosen < cmbDownloadOptions_->count() ? chosen : -1);
}

void NodePanel::urlEdited()
{
    Node* n = current();
    if (loading_ || !n || n->DownloadURL == txtDownloadURL_->text())
        return;
    n->DownloadURL = txtDownloadURL_->text();
    // A new address is untested until its test ends.
    n->WebsiteTested = false;
    n->WebsiteReady = false;
    saved(false);
    if (n->NodeType == LanType || (n->NodeType == WebsiteType && n->WebsiteMaster))
        monitor_.transfers().TestDownload(graph_, node_);
}

void NodePanel::testClicked()
{
    if (current())
        monitor_.transfers().TestDownload(graph_, node_);
}

void NodePanel::downloadOptionChosen(int index)
{
    Node* n = current();
    if (loading_ || !n || index < 0)
        return;
    n->VDDownloadSize = index;
    saved(false);
    monitor_.transfers().applyMinimumRule(graph_, *n);
}

void NodePanel::forceTest()
{
    Graph* g = currentGraph();
    if (!g)
        return;
    g->TicksToSample = 0;  // samples on the next tick; not a stored field
    cmdForceTest_->setText(RunningText);
}

void NodePanel::speedTestServerEdited()
{
    const QString server = txtSpeedTestServer_->text().trimmed();
    if (loading_ || server == monitor_.Settings.SpeedTestServer)
        return;
    lblGen32_->clear();
    monitor_.transfers().setSpeedTestServer(server);
    monitor_.SaveSettings();
}

}  // namespace orm
