// The setup test, the option list and the handlers of finished transfers.
#include "monitor/transfers.h"

#include "logging/error_file.h"
#include "model/debug_log.h"
#include "model/number_text.h"
#include "monitor/monitor.h"
#include "sources/transfer_errors.h"

#include <QDir>
#include <QFile>
#include <cmath>

namespace orm {

namespace {

// Tags of a handler: " 1.0" on entry and " 2.0" on every way out.
class Traced {
public:
    explicit Traced(QString name) : name_(std::move(name)) { debugLog().enter(name_); }
    ~Traced()
    {
        if (!closing_.isEmpty())
            debugLog().leaveTag(closing_);
        else
            debugLog().leave(name_);
    }
    void closeWith(const QString& tag) { closing_ = tag; }

private:
    QString name_;
    QString closing_;
};

int wholeValue(const QString& text)
{
    const double v = leadingNumber(text);
    return v >= 0 && v < 32768 ? int(v) : -1;
}

double roundedTo2(double v)
{
    return std::round(v * 100.0) / 100.0;
}

}  // namespace

std::pair<int, int> transferIndices(const QString& name)
{
    const QStringList parts = name.split(QLatin1Char('-'));
    if (parts.size() < 2)
        return {-1, -1};
    const QString& first = parts[0];
    return {wholeValue(first.mid(first.lastIndexOf(QLatin1Char('/')) + 1)), wholeValue(parts[1])};
}

std::pair<int, int> testIndices(const QString& name)
{
    const qsizetype s = name.lastIndexOf(QLatin1Char('s'));
    const qsizetype n = name.lastIndexOf(QLatin1Char('n'));
    if (s < 0 || n < s)
        return {-1, -1};
    return {wholeValue(name.mid(s + 1, n - s - 1)), wholeValue(name.mid(n + 1))};
}

QString speedTestAddress(const QString& server, const QString& path)
{
    QString base = server.trimmed();
    if (base.isEmpty())
        return QString();
    const QString lower = base.toLower();
    if (!lower.startsWith(QLatin1String("http://")) && !lower.startsWith(QLatin1String("https://")))
        base.prepend(QStringLiteral("http://"));
    while (base.endsWith(QLatin1Char('/')))
        base.chop(1);
    return base + path;
}

UrlCheck checkWebsiteUrl(const QString& url)
{
    // https passes as http does: every site is served over TLS today.
    const QString lower = url.toLower();
    const QString prefix = lower.startsWith(QLatin1String("https://")) ? QStringLiteral("https://")
                                                                        : QStringLiteral("http://");
    UrlCheck c;
    if (!lower.startsWith(prefix))
        c.failure = MustBeginHttpText;
    else if (lower == prefix)
        c.failure = BadUrlText;
    if (!c.failure.isEmpty())
        return c;
    // The site's root address, not the file: a large file is not fetched for a mere check.
    const qsizetype slash = url.indexOf(QLatin1Char('/'), prefix.size());
    c.root = slash < 0 ? url : url.left(slash + 1);
    return c;
}

Transfers::Transfers(Monitor& monitor, QString dataDir, const ShareResolver& shares, QObject* parent)
    : QObject(parent), AsyncCopy(shares, *this), m_(monitor), dataDir_(std::move(dataDir)),
      tempFolder_(QDir(dataDir_).filePath(QStringLiteral("Temp")))
{
    DownloaderFiles.SaveFiles = false;
    connect(&DownloaderFiles, &Downloader::DownloadStart, this, &Transfers::FileDownloadStart);
    connect(&DownloaderFiles, &Downloader::DownloadComplete, this, &Transfers::FileDownloadComplete);
    connect(&DownloaderFiles, &Downloader::DownloadError, this, &Transfers::FileDownloadError);
    connect(&DownloaderTest, &Downloader::DownloadComplete, this, &Transfers::TestDownloadComplete);
    connect(&DownloaderTest, &Downloader::DownloadError, this, &Transfers::TestDownloadError);
    tmrAsyncCopy_.setSingleShot(true);
    tmrAsyncCopy_.setInterval(1);
    connect(&tmrAsyncCopy_, &QTimer::timeout, this, &Transfers::TimerAsyncCopy);
}

Transfers::~Transfers() = default;

QString Transfers::tempFolder() const
{
    return tempFolder_;
}

QString Transfers::transferName(int graph, int node) const
{
    return tempFolder() + QStringLiteral("/%1-%2").arg(graph).arg(node);
}

QString Transfers::testName(int graph, int node) const
{
    return tempFolder() + QStringLiteral("/s%1n%2").arg(graph).arg(node);
}

QString Transfers::optionsName() const
{
    return tempFolder() + QStringLiteral("/downvariations.txt");
}

Node* Transfers::nodeAt(int graph, int node)
{
    if (graph < 0 || size_t(graph) >= m_.Sensors.size())
        return nullptr;
    Graph& g = m_.Sensors[size_t(graph)];
    return node >= 0 && size_t(node) < g.Nodes.size() ? &g.Nodes[size_t(node)] : nullptr;
}

Transfers::NamedNode Transfers::nodeNamed(std::pair<int, int> at)
{
    return {at.first, at.second, nodeAt(at.first, at.second)};
}

void Transfers::tellUrl(int graph, int node, const QString& text, qint32 colour)
{
    if (shown(graph, node))
        emit urlStatus(text, colour);
}

void Transfers::TestDownload(int graph, int node)
{
    Node* n = nodeAt(graph, node);
    if (!n || (n->NodeType != WebsiteType && n->NodeType != LanType))
        return;
    tellUrl(graph, node, n->NodeType == WebsiteType ? TestingLinkText : TestingFileText, -1);
    const QString name = testName(graph, node);
    QDir().mkpath(tempFolder());

    if (n->NodeType == WebsiteType) {
        const UrlCheck c = checkWebsiteUrl(n->DownloadURL);
        if (!c.failure.isEmpty()) {
            tellUrl(graph, node, c.failure, UrlBadColour);
            return;
        }
        DownloaderTest.BeginDownload(c.root, name);
        return;
    }
    if (!n->DownloadURL.startsWith(QLatin1String("\\\\"))) {
        tellUrl(graph, node, MustBeginUncText, UrlBadColour);
        return;
    }
    if (n->DownloadURL == QLatin1String("\\\\")) {
        tellUrl(graph, node, BadFileText, UrlBadColour);
        return;
    }
    if (n->WebsiteBusy) {
        emit warning(LanBusyText);
        return;
    }
    AsyncCopy.AsyncCopyIsTest = true;
    AsyncCopySource = n->DownloadURL;
    AsyncCopyDestination = name;
    AsyncCopy.StartAsyncCopy(AsyncCopySource, AsyncCopyDestination);  // refused while a test copy runs
}

void Transfers::LoadTestOptions()
{
    const QString address = speedTestAddress(m_.Settings.SpeedTestServer, QStringLiteral("/downvariations.txt"));
    if (address.isEmpty())
        return;  // no endpoint named: Speed Test Nodes read 0
    m_.TestSetupBusy = true;
    QDir().mkpath(tempFolder());
    // A shorter list is saved over the start of the old one: the old one goes first.
    if (!DownloaderTest.IsCurrentlyDownloading(address, optionsName()))
        QFile::remove(optionsName());
    DownloaderTest.BeginDownload(address, optionsName());
}

void Transfers::setSpeedTestServer(const QString& server)
{
    m_.Settings.SpeedTestServer = server.trimmed();
    DownloaderTest.CancelAllDownload();
    DownloadOptions.clear();
    m_.TestSetupLoaded = false;
    m_.TestSetupBusy = false;
    m_.TestSetupWait = 0;
    emit optionsLoaded();
    LoadTestOptions();
}

void Transfers::TestDownloadComplete(double, const QString& name)
{
    if (m_.Closing)
        return;
    Traced traced(QStringLiteral("TestDownloadComplete"));
    if (name == optionsName()) {
        QFile f(name);
        const QByteArray text = f.open(QIODevice::ReadOnly) ? f.read(DownloadOptionsCap + 1) : QByteArray();
        const std::optional<std::vector<DownloadOption>> options = parseDownloadOptions(text);
        if (!options) {
            m_.TestSetupLoaded = false;  // asked for again at the tick's rhythm
            m_.TestSetupBusy = false;
            return;
        }
        DownloadOptions = *options;
        emit optionsLoaded();
        m_.TestSetupBusy = false;
        m_.TestSetupLoaded = true;
        traced.closeWith(QStringLiteral("TestDownloadComplete (Exit variations) 2.0"));
        return;
    }
    const auto [graph, node, n] = nodeNamed(testIndices(name));
    if (!n)
        return;
    n->WebsiteTested = true;
    if (n->NodeType == LanType) {
        n->WebsiteReady = true;
        AsyncCopy.AsyncCopyIsTest = false;
        tellUrl(graph, node, FileTestPassedText, UrlGoodColour);
    } else if (n->NodeType == WebsiteType) {
        n->WebsiteReady = true;
        tellUrl(graph, node, LinkTestPassedText, UrlGoodColour);
    }
    QFile::remove(name);
}

void Transfers::TestDownloadError(const QString& name, const QString&, qint16, const QString&)
{
    if (m_.Closing)
        return;
    Traced traced(QStringLiteral("TestDownloadError"));
    if (name == optionsName()) {
        m_.TestSetupLoaded = false;
        m_.TestSetupBusy = false;
        emit setupFailed(SetupFailedText);
        return;
    }
    const auto [graph, node, n] = nodeNamed(testIndices(name));
    if (!n)
        return;
    n->WebsiteTested = true;
    n->WebsiteReady = false;
    if (n->NodeType == WebsiteType) {
        tellUrl(graph, node, LinkTestFailedText, UrlBadColour);
    } else if (n->NodeType == LanType) {
        AsyncCopy.AsyncCopyIsTest = false;
        tellUrl(graph, node, FileTestFailedText, UrlBadColour);
    }
}

bool Transfers::copyClosing() const
{
    return m_.Closing;
}

void Transfers::FileDownloadStart(const QString& name, qint64)
{
    if (m_.Closing)
        return;
    Traced traced(QStringLiteral("FileDownloadStart"));
    const auto [graph, node, n] = nodeNamed(transferIndices(name));
    if (!n)
        return;
    const qint32 now = m_.clock().tickCount();
    n->ConnectTime = tickDiff(now, qint32(qint64(n->ConnectTime)));
    n->PreviousBandwidth = n->Bandwidth;
    n->Bandwidth = 0;
    n->TransferStart = now;
    fineMarks_[name].startNs = m_.clock().monotonicNanoseconds();
    n->TransferConnected = true;
    n->WebsiteBusy = true;
}

namespace {

struct TransferTime {
    qint32 ms = 0;        // whole milliseconds, as ResponseTime shows them
    double seconds = 0;   // what the bandwidth divides by
};

// The end of a measured transfer, good or not: the ms it took, from its first
// byte, or from the request when the start never came (and then the connect
// time goes back to the one before), go into ResponseTime, 1 for none.
template <typename Marks>
TransferTime endTransfer(Node& n, const Clock& clock, const Marks& marks)
{
    const qint32 now = clock.tickCount();
    const qint64 nowNs = clock.monotonicNanoseconds();
    TransferTime t;
    qint64 spanNs = 0;
    if (n.TransferConnected) {
        t.ms = tickDiff(now, qint32(qint64(n.TransferStart)));
        spanNs = nowNs - marks.startNs;
    } else {
        t.ms = tickDiff(now, qint32(qint64(n.ConnectTime)));
        spanNs = nowNs - marks.requestNs;
        n.ConnectTime = n.PreviousConnectTime;
    }
    n.ResponseTime = t.ms == 0 ? 1 : t.ms;
    n.WebsiteBusy = false;
    n.TransferConnected = false;
    // The finer span where it agrees with the whole milliseconds; marks of
    // another moment (fields set by hand, a clock with no finer reading) leave
    // the whole ones.
    const double spanMs = double(spanNs) / 1e6;
    if (t.ms == 0)
        t.seconds = 0.010;  // a transfer under a millisecond counts as 10 ms
    else if (spanNs > 0 && std::abs(spanMs - t.ms) <= 1.0)
        t.seconds = spanMs / 1000.0;
    else
        t.seconds = t.ms / 1000.0;
    return t;
}

}  // namespace

void Transfers::FileDownloadComplete(double size, const QString& name)
{
    if (m_.Closing)
        return;
    Traced traced(QStringLiteral("FileDownloadComplete"));
    const auto [graph, node, n] = nodeNamed(transferIndices(name));
    if (!n)
        return;
    const FineMarks marks = fineMarks_[name];
    fineMarks_.erase(name);
    n->Bandwidth = roundedTo2(size / endTransfer(*n, m_.clock(), marks).seconds);
    if (n->NodeType == SpeedTestType)
        emit speedTestEnded();
}

void Transfers::FileDownloadError(const QString& name, const QString& target, qint16 number,
                                  const QString& description)
{
    if (m_.Closing)
        return;
    Traced traced(QStringLiteral("FileDownloadError"));
    const auto [graph, node, n] = nodeNamed(transferIndices(name));
    if (!n)
        return;
    endTransfer(*n, m_.clock(), fineMarks_[name]);  // the Node stays ready: the next due sample tries again
    n->ErrorCount += 1;
    n->Bandwidth = 0;
    fineMarks_.erase(name);
    writeErrorFile(graph, node, target, number, description);
    if (!AsyncCopy.AsyncCopyIsTest)
        tellUrl(graph, node, DownloadErrorText, UrlBadColour);
    if (n->NodeType == SpeedTestType)
        emit speedTestEnded();
}

void Transfers::writeErrorFile(int graph, int node, const QString& target, qint16 number,
                               const QString& description)
{
    const MappedFailure mapped = mapTransferFailure(description);
    TransferErrorEntry e{graph, node, target, number, mapped.status, mapped.description};
    QString error;
    // A full disk must not stop the monitor: the count and the zero reading stay.
    if (!appendErrorFileLine(dataDir_, m_.clock().now(), e, &error))
        trace(error);
}

void Transfers::stop()
{
    tmrAsyncCopy_.stop();
    AsyncCopy.AsyncCopyCancel = 1;
    DownloaderFiles.CancelAllDownload();
    DownloaderTest.CancelAllDownload();
}

}  // namespace orm
