// Downloader: background HTTP(S) transfers on QNetworkAccessManager, any
// number at a time, each known by its name (the path of its destination file)
// and reported by events. Nothing here ever waits: a transfer is started, and
// its events arrive on the event loop.
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <map>
#include <memory>
#include <vector>

class QNetworkReply;
class QTimer;

namespace orm {

class Downloader : public QObject {
    Q_OBJECT
public:
    // A transfer state while it runs; an ended one holds 6 (good) or 0 (error).
    static constexpr quint8 Running = 255;
    static constexpr quint8 EndOfData = 6;
    static constexpr quint8 Failed = 0;
    // A transfer with no byte for this long ends as "cannot connect".
    static constexpr int DefaultStallMs = 30000;
    // What a transfer may bring: a saved body is kept in memory until its end.
    static constexpr qint64 DefaultSavedLimit = 64LL * 1024 * 1024;
    static constexpr qint64 DefaultCountedLimit = 4LL * 1024 * 1024 * 1024;

    explicit Downloader(QObject* parent = nullptr);
    ~Downloader() override;

    // Save a finished transfer into the file of its name.
    bool SaveFiles = true;
    // The transfers begun since the lists were last emptied, from entry 1 on.
    std::vector<QString> TransferNames{QString()};
    std::vector<quint8> TransferStates{0};

    // Starts reading `target` under `name`. False, with no event to follow,
    // when a transfer of that name is already running. A target that is not an
    // http or https address fails through DownloadError, as a transfer would.
    bool BeginDownload(const QString& target, const QString& name);
    // A transfer of that name is running.
    bool IsCurrentlyDownloading(const QString& target, const QString& name) const;
    // Cancels every transfer in the lists, with no event, and empties them.
    void CancelAllDownload();

    // For tests: a shorter stall, smaller limits.
    void setStallTimeout(int ms) { stallMs_ = ms; }
    void setBodyLimits(qint64 saved, qint64 counted)
    {
        savedLimit_ = saved;
        countedLimit_ = counted;
    }

signals:
    // The server's answer began (headers or first data); total is 0 when unknown.
    void DownloadStart(const QString& name, qint64 total);
    void DownloadProgress(const QString& name, qint64 total, qint64 read);
    void DownloadError(const QString& name, const QString& target, qint16 number, const QString& description);
    void DownloadComplete(double size, const QString& name);
    // No transfer is left running; the names of those that failed.
    void AllDownloadsComplete(const QStringList& failed);

private:
    struct Transfer;
    void started(Transfer& t);
    void dataArrived(Transfer& t);
    void finished(Transfer& t);
    void failLater(const QString& name, const QString& target, qint32 code, const QString& what);
    void ended(const QString& name, quint8 state);
    void stalled(Transfer& t);

    QNetworkAccessManager manager_;
    std::map<QString, std::unique_ptr<Transfer>> running_;
    int stallMs_ = DefaultStallMs;
    qint64 savedLimit_ = DefaultSavedLimit;
    qint64 countedLimit_ = DefaultCountedLimit;
};

}  // namespace orm
