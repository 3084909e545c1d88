#include "sources/file_copy.h"

#include "sources/share_paths.h"
#include "sources/transfer_errors.h"

#include <QFileInfo>

namespace orm {

AsyncFileCopy::AsyncFileCopy(const ShareResolver& shares, CopyHandlers& handlers, QObject* parent)
    : QObject(parent), shares_(shares), handlers_(handlers)
{
    pace_.setInterval(0);
    connect(&pace_, &QTimer::timeout, this, &AsyncFileCopy::slice);
}

AsyncFileCopy::~AsyncFileCopy() = default;

bool AsyncFileCopy::StartAsyncCopy(const QString& source, const QString& destination)
{
    if (running())
        return false;
    AsyncCopyCancel = 0;
    AsyncCopyName = destination;
    source_ = source;
    copied_ = 0;
    total_ = 0;

    const QString local = shares_.resolve(source);
    const QFileInfo info(local);
    if (!local.isEmpty() && info.isFile())
        total_ = info.size();
    if (!AsyncCopyIsTest)
        handlers_.FileDownloadStart(destination, total_);

    if (local.isEmpty()) {
        fail(TransferError::NetworkPathNotFound, QStringLiteral("The share of %1 is not mounted").arg(source));
        return true;
    }
    if (!info.exists()) {
        fail(TransferError::FileNotFound, QStringLiteral("%1 does not exist").arg(local));
        return true;
    }
    from_ = std::make_unique<QFile>(local);
    if (!info.isFile() || !from_->open(QIODevice::ReadOnly)) {
        const QString why = info.isFile() ? from_->errorString() : QStringLiteral("not a file");
        from_.reset();
        fail(TransferError::AccessDenied, QStringLiteral("Cannot read %1: %2").arg(local, why));
        return true;
    }
    to_ = std::make_unique<QFile>(destination);
    if (!to_->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        const QString why = to_->errorString();
        stop();
        fail(TransferError::AccessDenied, QStringLiteral("Cannot write %1: %2").arg(destination, why));
        return true;
    }
    if (buffer_.isEmpty())
        buffer_.resize(ChunkBytes);
    pace_.start();
    return true;
}

void AsyncFileCopy::slice()
{
    QElapsedTimer spent;
    spent.start();
    do {
        if (handlers_.copyClosing())
            AsyncCopyCancel = 1;
        if (AsyncCopyCancel) {
            stop();
            fail(TransferError::Cancelled, QStringLiteral("The copy was cancelled"));
            return;
        }
        const qint64 n = from_->read(buffer_.data(), buffer_.size());
        if (n < 0) {
            const QString why = from_->errorString();
            stop();
            fail(TransferError::ReadFault, QStringLiteral("Cannot read %1: %2").arg(source_, why));
            return;
        }
        if (n == 0) {
            complete();
            return;
        }
        if (to_->write(buffer_.constData(), n) != n) {
            const QString why = to_->errorString();
            stop();
            fail(TransferError::WriteFault, QStringLiteral("Cannot write %1: %2").arg(AsyncCopyName, why));
            return;
        }
        copied_ += n;
    } while (spent.elapsed() < SliceMs);
}

void AsyncFileCopy::complete()
{
    if (!to_->flush()) {
        const QString why = to_->errorString();
        stop();
        fail(TransferError::WriteFault, QStringLiteral("Cannot write %1: %2").arg(AsyncCopyName, why));
        return;
    }
    stop();
    const QString name = AsyncCopyName;
    if (AsyncCopyIsTest)
        handlers_.TestDownloadComplete(double(copied_), name);
    else
        handlers_.FileDownloadComplete(double(copied_), name);
}

void AsyncFileCopy::fail(qint32 code, const QString& what)
{
    const TransferFailure f = transferFailure(code, what);
    const QString name = AsyncCopyName;
    if (AsyncCopyIsTest)
        handlers_.TestDownloadError(name, source_, f.number, f.description);
    else
        handlers_.FileDownloadError(name, source_, f.number, f.description);
}

void AsyncFileCopy::stop()
{
    pace_.stop();
    from_.reset();
    to_.reset();
}

}  // namespace orm
