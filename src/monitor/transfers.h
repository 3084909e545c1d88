// The transfers of Website, LAN and Speed Test Nodes: the setup test of a
// Node, the speed test's option list, the measured transfers the tick starts,
// the handlers that write their results into the Node, and the error file.
// Everything runs on the event loop: a tick only starts transfers, and their
// events finish them.
#pragma once

#include "sources/download_options.h"
#include "sources/downloader.h"
#include "sources/file_copy.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace orm {

class Monitor;
class ShareResolver;
struct Graph;
struct Node;

// What the panel's URL line (lblGen(29) and txtDownloadURL) is told.
inline const QString TestingLinkText = QStringLiteral("Download File URL:              Testing Link...");
inline const QString TestingFileText = QStringLiteral("Download File URL:              Testing File...");
inline const QString MustBeginHttpText = QStringLiteral("Download File URL:      Must begin with http://");
inline const QString BadUrlText = QStringLiteral("Download File URL:          Bad URL");
inline const QString MustBeginUncText = QStringLiteral("Transfer LAN File:      Must begin with \\\\");
inline const QString BadFileText = QStringLiteral("Transfer LAN File:          Bad File");
inline const QString LanBusyText =
    QStringLiteral("Download already in progress. Cannot test this LAN file while currently downloading.");
inline const QString FileTestPassedText = QStringLiteral("Transfer LAN File:           File Test Passed");
inline const QString LinkTestPassedText = QStringLiteral("Download File URL:           Link Test Passed");
inline const QString LinkTestFailedText = QStringLiteral("Download File URL:              BAD URL");
inline const QString FileTestFailedText = QStringLiteral("Transfer LAN File:              BAD FILE");
inline const QString DownloadErrorText = QStringLiteral("Download File URL:           Download Error");
inline const QString SetupFailedText = QStringLiteral("Failed to get Download setup information.");  // lblGen(32)
inline constexpr qint32 UrlGoodColour = 65280;  // green, 0x00BBGGRR
inline constexpr qint32 UrlBadColour = 255;     // red

// The Graph and Node indices in a transfer's name, "...\Temp\<i>-<j>": the
// whole name is split on "-", the Graph index is what follows the last
// separator of the first part, the Node index the second part. A folder with
// a "-" in its path misreads them; kept so.
std::pair<int, int> transferIndices(const QString& name);
// The indices in a setup test's name, "...\Temp\s<i>n<j>": between the last
// "s" and the last "n", and after the last "n".
std::pair<int, int> testIndices(const QString& name);

// The address of a path on the speed test endpoint named by SpeedTestServer
// (host[:port], or a whole http(s) address); empty while none is named.
QString speedTestAddress(const QString& server, const QString& path);

// The URL test's verdict on the text of a Website Node's address: the root
// address to fetch, or the text that says why not.
struct UrlCheck {
    QString root;
    QString failure;
};
UrlCheck checkWebsiteUrl(const QString& url);

class Transfers : public QObject, public CopyHandlers {
    Q_OBJECT
public:
    Transfers(Monitor& monitor, QString dataDir, const ShareResolver& shares, QObject* parent = nullptr);
    ~Transfers() override;

    Downloader DownloaderFiles;  // measured transfers: nothing is saved
    Downloader DownloaderTest;   // setup tests and the option list: saved
    AsyncFileCopy AsyncCopy;
    QString AsyncCopySource;
    QString AsyncCopyDestination;
    // cmbDownloadOptions: the option list as last loaded.
    std::vector<DownloadOption> DownloadOptions;
    // The Node the panel shows (-1 when none): only its tests speak to the panel.
    int shownGraph = -1;
    int shownNode = -1;

    QString tempFolder() const;
    QString transferName(int graph, int node) const;  // Temp/<i>-<j>
    QString testName(int graph, int node) const;      // Temp/s<i>n<j>
    QString optionsName() const;                      // Temp/downvariations.txt

    // The setup test of one Website or LAN Node.
    void TestDownload(int graph, int node);
    // Asks the speed test endpoint for its option list.
    void LoadTestOptions();
    // A missing list is asked for on every eleventh tick: step 4 counts
    // TestSetupWait down for a logged Speed Test Node and asks when it is 0.
    void countSetupWait();
    // Evaluation and step 12 ask for a missing list too, but never while the
    // count runs.
    void askForSetup();
    // The fewest seconds between tests of an option; 0 when there is no such option.
    int speedTestMinimum(qint32 option) const;
    // The minimum rule for a Speed Test Node whose Graph is due (tick step 4).
    void applyMinimumRule(int graph, const Node& node);

    // Evaluation of the three Node types (the value shown, and what is due next).
    double evaluateWebsite(Node& node, int graph, int index);
    double evaluateLan(Node& node, int graph, int index);
    double evaluateSpeedTest(Node& node, int graph, int index);
    // Tick step 12: the transfers that evaluation found due.
    void startDueTransfers();
    // Tick step 14: tmrAsyncCopy, which starts the LAN copy out of the tick.
    void enableAsyncCopy();
    void TimerAsyncCopy();
    bool asyncCopyPending() const { return tmrAsyncCopy_.isActive(); }

    // A new SpeedTestServer: the list is fetched anew from it.
    void setSpeedTestServer(const QString& server);
    // Shut-down: every transfer and the copy stop without a word.
    void stop();

    // The handlers of the two Downloaders, also called by the LAN copy.
    bool copyClosing() const override;
    void FileDownloadStart(const QString& name, qint64 total) override;
    void FileDownloadComplete(double size, const QString& name) override;
    void FileDownloadError(const QString& name, const QString& target, qint16 number,
                           const QString& description) override;
    void TestDownloadComplete(double size, const QString& name) override;
    void TestDownloadError(const QString& name, const QString& target, qint16 number,
                           const QString& description) override;

signals:
    // lblGen(29) and the colour of txtDownloadURL (-1: unchanged), for the Node shown.
    void urlStatus(const QString& text, qint32 colour);
    // The label for warnings.
    void warning(const QString& text);
    // lblGen(32).
    void setupFailed(const QString& text);
    // DownloadOptions was loaded anew.
    void optionsLoaded();
    // A Speed Test transfer ended: cmdForceTest reads "Force 1 Test Now" again.
    void speedTestEnded();
    // The minimum rule raised a Graph's interval: txtSampleSeconds and lblSensorError.
    void minimumRaised(int graph, int seconds, const QString& text);

private:
    Node* nodeAt(int graph, int node);
    // The Node that a transfer's or a test's name points at, beside its
    // indices; null when the name points at none.
    struct NamedNode {
        int graph;
        int node;
        Node* n;
    };
    NamedNode nodeNamed(std::pair<int, int> at);
    bool shown(int graph, int node) const { return graph == shownGraph && node == shownNode; }
    void tellUrl(int graph, int node, const QString& text, qint32 colour);
    void writeErrorFile(int graph, int node, const QString& target, qint16 number, const QString& description);

    Monitor& m_;
    QString dataDir_;
    QString tempFolder_;  // asked for on every tick a transfer runs
    double waitCountedAt_ = -1;  // TickCount of the tick whose step 4 last counted the wait
    QTimer tmrAsyncCopy_;
    // The request and the first byte of each running transfer on the monotonic
    // nanosecond clock, by name, beside ConnectTime and TransferStart: a 100 MB
    // file crosses loopback in some 30 ms, where a whole millisecond is 3%.
    struct FineMarks {
        qint64 requestNs = 0;
        qint64 startNs = 0;
    };
    std::map<QString, FineMarks> fineMarks_;
};

}  // namespace orm
