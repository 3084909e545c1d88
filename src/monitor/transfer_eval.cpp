// Evaluation of Website, LAN and Speed Test Nodes, and the transfers the tick
// starts: a Node's value always comes from the last finished transfer, and
// its evaluation decides whether the next one is due.
#include "model/debug_log.h"
#include "model/number_text.h"
#include "monitor/editing.h"
#include "monitor/monitor.h"
#include "monitor/transfers.h"

#include <QDir>
#include <algorithm>

namespace orm {

double Transfers::evaluateWebsite(Node& node, int graph, int index)
{
    // A Slave shows another view of its Master's transfer.
    const int mg = node.WebsiteMaster ? graph : node.WebsiteSlaveToSensor;
    const int mn = node.WebsiteMaster ? index : node.WebsiteSlaveToNode;
    Node* master = nodeAt(mg, mn);
    if (debugLog().enabled()) {
        debugLog().log(QStringLiteral("DisplayData WEBSITE -(") + boolText(node.WebsiteMaster) +
                       QStringLiteral(")(%1,%2)(").arg(mg).arg(mn) +
                       (master ? boolText(master->WebsiteTested) + QLatin1Char(',') + boolText(master->WebsiteReady)
                               : QString()) +
                       QStringLiteral(")(") + (master ? master->DownloadURL : QString()) + QLatin1Char(')'));
    }
    if (!master || !master->WebsiteTested || !master->WebsiteReady)
        return 0.0;

    // The evaluating Node's own DownloadType picks, not the Master's.
    const bool busy = master->WebsiteBusy;
    double value = 0.0;
    switch (node.DownloadType) {
    case 0:
        value = busy ? master->PreviousBandwidth : master->Bandwidth;
        break;
    case 1:
        value = busy ? master->PreviousResponseTime : master->ResponseTime;  // never assigned: 0 while busy
        break;
    case 2:
        value = busy ? master->PreviousConnectTime : master->ConnectTime;
        break;
    case 3:
        value = master->ErrorCount;
        break;
    default:
        break;
    }
    if (!busy) {
        if (node.WebsiteMaster)
            node.WebsiteDue = true;
    } else if (node.WebsiteMaster &&
               !DownloaderFiles.IsCurrentlyDownloading(node.DownloadURL, transferName(graph, index))) {
        node.WebsiteDue = true;  // the transfer's end was lost: start it again
    }
    return value;
}

double Transfers::evaluateLan(Node& node, int graph, int index)
{
    trace(QStringLiteral("DisplayData INTERNET_LAN"));
    if (!node.WebsiteTested || !node.WebsiteReady)
        return 0.0;
    if (node.WebsiteBusy)
        return node.PreviousBandwidth;
    AsyncCopySource = node.DownloadURL;
    AsyncCopyDestination = transferName(graph, index);
    m_.AsyncCopyDue = true;
    return node.Bandwidth;
}

double Transfers::evaluateSpeedTest(Node& node, int graph, int index)
{
    trace(QStringLiteral("DisplayData VDSERVER"));
    askForSetup();
    if (node.WebsiteBusy) {
        // A transfer is known by its name alone: no address is made for the question.
        if (!DownloaderFiles.IsCurrentlyDownloading(QString(), transferName(graph, index)))
            node.WebsiteDue = true;
        return node.PreviousBandwidth;
    }
    node.WebsiteDue = true;
    return node.Bandwidth;
}

void Transfers::startDueTransfers()
{
    for (size_t i = 0; i < m_.Sensors.size(); ++i) {
        if (m_.Sensors[i].LogGraph)
            continue;
        for (size_t j = 0; j < m_.Sensors[i].Nodes.size(); ++j) {
            if (m_.Closing)
                return;
            // Re-read at each step: a handler may have changed the model.
            if (i >= m_.Sensors.size() || j >= m_.Sensors[i].Nodes.size())
                return;
            Node& n = m_.Sensors[i].Nodes[j];
            if (n.NodeType == WebsiteType && n.WebsiteMaster && n.WebsiteDue) {
                n.PreviousConnectTime = n.ConnectTime;
                n.TransferConnected = false;
                n.WebsiteDue = false;
                n.ConnectTime = m_.clock().tickCount();
                n.WebsiteBusy = true;
                const QString name = transferName(int(i), int(j));
                fineMarks_[name] = {m_.clock().monotonicNanoseconds(), 0};
                DownloaderFiles.BeginDownload(n.DownloadURL, name);
            } else if (n.NodeType == SpeedTestType) {
                askForSetup();
                if (!n.WebsiteDue)
                    continue;
                n.WebsiteDue = false;
                const QString file = speedTestAddress(m_.Settings.SpeedTestServer,
                                                      QStringLiteral("/serverdownload.asp?s=%1").arg(n.VDDownloadSize));
                if (file.isEmpty())
                    continue;  // no endpoint named: nothing to fetch
                n.WebsiteBusy = true;
                n.TransferConnected = false;
                const QString name = transferName(int(i), int(j));
                fineMarks_[name] = {m_.clock().monotonicNanoseconds(), 0};
                DownloaderFiles.BeginDownload(file, name);
            }
        }
    }
}

void Transfers::countSetupWait()
{
    if (m_.TestSetupLoaded || m_.TestSetupBusy)
        return;
    if (m_.TestSetupWait > 0) {
        --m_.TestSetupWait;
        waitCountedAt_ = m_.TickCount;
        return;
    }
    LoadTestOptions();
    m_.TestSetupWait = 10;
}

void Transfers::askForSetup()
{
    if (m_.TestSetupLoaded || m_.TestSetupBusy || m_.TestSetupWait > 0 || waitCountedAt_ == m_.TickCount)
        return;
    LoadTestOptions();
}

void Transfers::enableAsyncCopy()
{
    tmrAsyncCopy_.start();
}

void Transfers::TimerAsyncCopy()
{
    trace(QStringLiteral("TimerAsyncCopy 1.0"));
    tmrAsyncCopy_.stop();
    QDir().mkpath(tempFolder());
    AsyncCopy.StartAsyncCopy(AsyncCopySource, AsyncCopyDestination);
    trace(QStringLiteral("TimerAsyncCopy 2.0"));
}

int Transfers::speedTestMinimum(qint32 option) const
{
    if (option < 0 || size_t(option) >= DownloadOptions.size())
        return 0;
    return int(std::clamp<qint64>(DownloadOptions[size_t(option)].seconds, 0, 0x7FFFFFFF));
}

void Transfers::applyMinimumRule(int graph, const Node& node)
{
    if (!m_.TestSetupLoaded || m_.TestSetupBusy || DownloadOptions.empty() ||
        m_.commandLineHas(QStringLiteral("VDDebugMode")))
        return;
    if (graph < 0 || size_t(graph) >= m_.Sensors.size())
        return;
    Graph& g = m_.Sensors[size_t(graph)];
    const int least = speedTestMinimum(node.VDDownloadSize);
    if (g.SampleEverySeconds >= least)
        return;
    g.SampleEverySeconds = least;
    emit minimumRaised(graph, least, SpeedTestMinimumText);
    m_.SaveSettings();
}

}  // namespace orm
