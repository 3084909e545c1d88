// The metrics endpoint: GET /metrics answers with the text the exposition
// function writes, behind an optional bearer token. Any other path is 404,
// any other method 405, a missing or wrong token 401; a request that is too
// big, too slow or not HTTP closes its connection.
#pragma once

#include "endpoint/connection_limits.h"

#include <QAbstractHttpServer>
#include <QByteArray>
#include <QHostAddress>
#include <QHttpServerResponder>
#include <QString>
#include <functional>

namespace orm {

// Whether an Authorization header carries "Bearer <token>" (the scheme in any
// case). `tokenDigest` is the SHA-256 of the token; the comparison takes the
// same time wherever the two differ.
bool bearerTokenMatches(const QByteArray& authorization, const QByteArray& tokenDigest);

class MetricsEndpoint : public QAbstractHttpServer {
    Q_OBJECT
public:
    // Writes the whole exposition into its argument.
    using Exposition = std::function<void(QByteArray&)>;

    // An empty token asks for none.
    MetricsEndpoint(Exposition exposition, const QByteArray& token, ConnectionLimits limits = {},
                    QObject* parent = nullptr);

    // Listens on the address and port (0 takes a free one). False when it
    // cannot; errorString() then says why.
    bool listenOn(const QHostAddress& address, quint16 port);
    quint16 port() const;
    QString errorString() const { return error_; }

    // Expositions served since the start.
    quint64 scrapes() const { return scrapes_; }

protected:
    bool handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) override;
    void missingHandler(const QHttpServerRequest& request, QTcpSocket* socket) override;

private:
    using Status = QHttpServerResponder::StatusCode;
    void reply(const QHttpServerRequest& request, QTcpSocket* socket, Status status, const QByteArray& type,
               const QByteArray& body, const QByteArray& extraName = {}, const QByteArray& extraValue = {});

    Exposition exposition_;
    QByteArray tokenDigest_;  // empty: no token asked for
    ConnectionLimits limits_;
    LimitedTcpServer* server_ = nullptr;
    QString error_;
    QByteArray body_;
    quint64 scrapes_ = 0;
};

}  // namespace orm
