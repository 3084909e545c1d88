#include "sources/downloader.h"

#include "sources/transfer_errors.h"

#include <QElapsedTimer>
#include <QFile>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QTimer>
#include <QUrl>

namespace orm {

struct Downloader::Transfer {
    QString name;
    QString target;
    quint64 id = 0;
    QPointer<QNetworkReply> reply;
    QPointer<QTimer> stall;
    QElapsedTimer sinceByte;  // read on the stall timer's firing, so that a byte costs no timer restart
    QByteArray body;  // only when saved
    qint64 received = 0;
    bool started = false;
    bool stalled = false;
    bool overLimit = false;

    ~Transfer()
    {
        // A transfer may end inside its own timer's or reply's signal: both go later.
        if (stall)
            stall->deleteLater();
        if (reply) {
            reply->disconnect();
            reply->abort();
            reply->deleteLater();
        }
    }
};

namespace {

quint64 nextTransferId = 0;

bool isWebAddress(const QUrl& url)
{
    const QString scheme = url.scheme();
    return url.isValid() && (scheme == QLatin1String("http") || scheme == QLatin1String("https")) &&
           !url.host().isEmpty();
}

}  // namespace

Downloader::Downloader(QObject* parent) : QObject(parent)
{
    // Every test and measurement goes to the server itself.
    manager_.setCookieJar(nullptr);
}

Downloader::~Downloader()
{
    if (TransferNames.size() > 1 || !running_.empty())
        CancelAllDownload();
}

bool Downloader::BeginDownload(const QString& target, const QString& name)
{
    if (running_.count(name))
        return false;  // the read of that name already runs
    TransferNames.push_back(name);
    TransferStates.push_back(Running);

    auto t = std::make_unique<Transfer>();
    t->name = name;
    t->target = target;
    t->id = ++nextTransferId;
    Transfer& ref = *t;
    running_[name] = std::move(t);

    const QUrl url(target.trimmed());
    if (!isWebAddress(url)) {
        failLater(name, target, TransferError::InvalidUrl,
                  QStringLiteral("The address is not an http or https address"));
        return true;
    }
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    QNetworkReply* reply = manager_.get(request);
    ref.reply = reply;
    ref.stall = new QTimer(this);
    ref.stall->setSingleShot(true);
    ref.stall->setInterval(stallMs_);

    const quint64 id = ref.id;
    auto with = [this, name, id](auto step) {
        return [this, name, id, step] {
            const auto found = running_.find(name);
            if (found != running_.end() && found->second->id == id)
                (this->*step)(*found->second);
        };
    };
    connect(reply, &QNetworkReply::metaDataChanged, this, with(&Downloader::started));
    connect(reply, &QNetworkReply::readyRead, this, with(&Downloader::dataArrived));
    connect(reply, &QNetworkReply::finished, this, with(&Downloader::finished));
    connect(ref.stall, &QTimer::timeout, this, with(&Downloader::stalled));
    connect(reply, &QNetworkReply::downloadProgress, this, [this, name, id](qint64 read, qint64 total) {
        const auto found = running_.find(name);
        if (found == running_.end() || found->second->id != id)
            return;
        found->second->sinceByte.restart();
        if (total > 0)
            emit DownloadProgress(name, total, read);
    });
    connect(reply, &QNetworkReply::uploadProgress, this, [this, name, id] {
        const auto found = running_.find(name);
        if (found != running_.end() && found->second->id == id)
            found->second->sinceByte.restart();
    });
    ref.sinceByte.start();
    ref.stall->start();
    return true;
}

bool Downloader::IsCurrentlyDownloading(const QString&, const QString& name) const
{
    return running_.count(name) != 0;
}

void Downloader::CancelAllDownload()
{
    running_.clear();  // each transfer aborts its reply without an event
    TransferNames.assign(1, QString());
    TransferStates.assign(1, 0);
}

void Downloader::started(Transfer& t)
{
    t.sinceByte.restart();
    if (t.started)
        return;
    t.started = true;
    const QVariant length = t.reply ? t.reply->header(QNetworkRequest::ContentLengthHeader) : QVariant();
    emit DownloadStart(t.name, length.isValid() ? qMax<qint64>(0, length.toLongLong()) : 0);
}

void Downloader::dataArrived(Transfer& t)
{
    QNetworkReply* reply = t.reply;
    if (!reply)
        return;
    if (!t.started) {
        const QString name = t.name;
        const quint64 id = t.id;
        started(t);
        // The event's handler may have cancelled everything.
        const auto still = running_.find(name);
        if (still == running_.end() || still->second->id != id)
            return;
    }
    t.sinceByte.restart();
    if (SaveFiles) {
        const QByteArray chunk = reply->readAll();
        t.received += chunk.size();
        if (t.received <= savedLimit_)
            t.body.append(chunk);
    } else {
        // Dropped where the reply holds them: skipping copies nothing.
        for (qint64 n = reply->bytesAvailable(); n > 0; n = reply->bytesAvailable()) {
            const qint64 skipped = reply->skip(n);
            if (skipped <= 0)
                break;
            t.received += skipped;
        }
    }
    if (t.received > (SaveFiles ? savedLimit_ : countedLimit_)) {
        t.overLimit = true;
        reply->abort();  // finished() follows at once
    }
}

void Downloader::stalled(Transfer& t)
{
    const qint64 quiet = t.sinceByte.elapsed();
    if (quiet < stallMs_) {
        t.stall->start(int(stallMs_ - quiet));  // bytes came meanwhile: wait out the rest
        return;
    }
    t.stalled = true;
    if (t.reply)
        t.reply->abort();  // finished() follows at once
}

void Downloader::finished(Transfer& t)
{
    QNetworkReply* reply = t.reply;
    if (!reply)
        return;
    const QString name = t.name;
    const quint64 id = t.id;
    if (!t.overLimit && reply->bytesAvailable() > 0)
        dataArrived(t);
    const auto still = running_.find(name);
    if (still == running_.end() || still->second->id != id)
        return;  // ended or cancelled while the last data came in

    // Out of the running set before any event: a handler may start the name again.
    std::unique_ptr<Transfer> done = std::move(still->second);
    running_.erase(still);
    reply->disconnect(this);

    TransferFailure failure;
    bool failed = true;
    if (t.overLimit) {
        failure = transferFailure(TransferError::TooLarge, QStringLiteral("The answer is larger than %1 bytes")
                                                               .arg(SaveFiles ? savedLimit_ : countedLimit_));
    } else if (reply->error() != QNetworkReply::NoError || t.stalled) {
        failure = replyFailure(reply->error(), reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                               reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString(),
                               t.stalled);
    } else if (const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
               length.isValid() && qint64(t.received) < length.toLongLong()) {
        // A peer that closes before the promised length is a cut transfer, though
        // Qt may end such a reply without an error.
        failure = replyFailure(QNetworkReply::RemoteHostClosedError,
                               reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                               reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString(), false);
    } else if (SaveFiles) {
        // Written from the start of the file, which keeps its old length when that was longer.
        QFile f(t.name);
        if (!f.open(QIODevice::ReadWrite))
            failure = transferFailure(TransferError::AccessDenied,
                                      QStringLiteral("Cannot write %1: %2").arg(t.name, f.errorString()));
        else if (f.write(t.body) != t.body.size() || !f.flush())
            failure = transferFailure(TransferError::WriteFault,
                                      QStringLiteral("Cannot write %1: %2").arg(t.name, f.errorString()));
        else
            failed = false;
    } else {
        failed = false;
    }

    const QString target = t.target;
    const double size = double(t.received);
    done.reset();
    if (failed)
        emit DownloadError(name, target, failure.number, failure.description);
    else
        emit DownloadComplete(size, name);
    ended(name, failed ? Failed : EndOfData);
}

void Downloader::failLater(const QString& name, const QString& target, qint32 code, const QString& what)
{
    const quint64 id = running_.at(name)->id;
    QTimer::singleShot(0, this, [this, name, target, code, what, id] {
        const auto found = running_.find(name);
        if (found == running_.end() || found->second->id != id)
            return;  // cancelled meanwhile
        running_.erase(found);
        const TransferFailure f = transferFailure(code, what);
        emit DownloadError(name, target, f.number, f.description);
        ended(name, Failed);
    });
}

void Downloader::ended(const QString& name, quint8 state)
{
    for (size_t i = 1; i < TransferNames.size(); ++i) {
        if (TransferNames[i] == name && TransferStates[i] == Running) {
            TransferStates[i] = state;
            break;
        }
    }
    QStringList failed;
    for (size_t i = 1; i < TransferNames.size(); ++i) {
        if (TransferStates[i] != Failed && TransferStates[i] != EndOfData)
            return;  // one still runs
        if (TransferStates[i] == Failed)
            failed << TransferNames[i];
    }
    if (TransferNames.size() <= 1)
        return;
    CancelAllDownload();
    emit AllDownloadsComplete(failed);
}

}  // namespace orm
