// The speed test endpoint: serves the option list at /downvariations.txt and,
// at /serverdownload.asp?s=N, a test file of the N-th size, generated as it is
// sent and never read from disk. Its root answers with a short page, so that
// the setup test of a Website Node pointed at it passes; any other path is 404.
#pragma once

#include "endpoint/listen_address.h"
#include "sources/download_options.h"

#include <QAbstractHttpServer>
#include <QByteArray>
#include <QString>
#include <vector>

namespace orm {

// The list served when no other is given: 500 KB for a slow line and 100 MB,
// long enough to time a fast one to a few percent, with the fewest seconds
// between two tests growing with the size. --variations gives any other.
QByteArray defaultSpeedTestLadder();

class SpeedTestEndpoint : public QAbstractHttpServer {
    Q_OBJECT
public:
    // `list` is the option list to serve, already checked (checkDownloadOptions).
    explicit SpeedTestEndpoint(QByteArray list, QObject* parent = nullptr);

    const std::vector<DownloadOption>& options() const { return options_; }
    // Listens where `at` says, on 127.0.0.1 when it names no address: the
    // port, or 0 when it cannot.
    quint16 listenAt(const ListenAddress& at);

protected:
    bool handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) override;
    void missingHandler(const QHttpServerRequest& request, QTcpSocket* socket) override;

private:
    QByteArray list_;
    std::vector<DownloadOption> options_;
};

}  // namespace orm
