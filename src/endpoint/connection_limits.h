// The listening side of the HTTP endpoints, with limits that keep a client
// from holding the program: so many connections at once, so many bytes of a
// request not yet answered, so long to send a request and so long to idle
// between two. A connection past a limit is closed; nothing is buffered for it.
#pragma once

#include <QTcpServer>

class QTcpSocket;

namespace orm {

struct ConnectionLimits {
    int maxConnections = 256;
    qint64 maxRequestBytes = 64 * 1024;
    int requestTimeoutMs = 30000;
    int idleTimeoutMs = 300000;
};

class LimitedTcpServer : public QTcpServer {
    Q_OBJECT
public:
    explicit LimitedTcpServer(ConnectionLimits limits, QObject* parent = nullptr);

    // A request on `socket` (one of this server's) has been answered: its bytes
    // no longer count, and the connection may idle.
    static void answered(QTcpSocket* socket);

    int openConnections() const { return open_; }

protected:
    void incomingConnection(qintptr handle) override;

private:
    ConnectionLimits limits_;
    int open_ = 0;
};

}  // namespace orm
