// The background copy of a LAN file: the network file is copied in slices, the
// event loop running between them, and the copy reports through the same
// handlers as a download. One copy runs at a time.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>

namespace orm {

class ShareResolver;

// The download handlers that a copy reports to.
class CopyHandlers {
public:
    virtual ~CopyHandlers() = default;
    virtual bool copyClosing() const = 0;
    virtual void FileDownloadStart(const QString& name, qint64 total) = 0;
    virtual void FileDownloadComplete(double size, const QString& name) = 0;
    virtual void FileDownloadError(const QString& name, const QString& target, qint16 number,
                                   const QString& description) = 0;
    virtual void TestDownloadComplete(double size, const QString& name) = 0;
    virtual void TestDownloadError(const QString& name, const QString& target, qint16 number,
                                   const QString& description) = 0;
};

class AsyncFileCopy : public QObject {
    Q_OBJECT
public:
    // Bytes moved per read and write, and the time a slice may take before the
    // event loop gets its turn.
    static constexpr qint64 ChunkBytes = 1024 * 1024;
    static constexpr int SliceMs = 15;

    AsyncFileCopy(const ShareResolver& shares, CopyHandlers& handlers, QObject* parent = nullptr);
    ~AsyncFileCopy() override;

    // Set to 1 to end the running copy.
    qint32 AsyncCopyCancel = 0;
    // The copy is a setup test rather than a measured transfer.
    bool AsyncCopyIsTest = false;
    // The destination of the running (or last) copy.
    QString AsyncCopyName;

    // Copies `source` (a network file name) to `destination`. A measured copy
    // calls FileDownloadStart first, so that it is timed as a download is. A
    // copy asked for while one runs is refused (false, no handler called).
    bool StartAsyncCopy(const QString& source, const QString& destination);
    bool running() const { return bool(from_); }

private:
    void slice();
    void fail(qint32 code, const QString& what);
    void complete();
    void stop();

    const ShareResolver& shares_;
    CopyHandlers& handlers_;
    QTimer pace_;
    QByteArray buffer_;
    QString source_;
    std::unique_ptr<QFile> from_;
    std::unique_ptr<QFile> to_;
    qint64 total_ = 0;
    qint64 copied_ = 0;
};

}  // namespace orm
