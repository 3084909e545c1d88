#include "endpoint/connection_limits.h"

#include <QTcpSocket>
#include <QTimer>

namespace orm {

namespace {

class LimitedSocket final : public QTcpSocket {
public:
    LimitedSocket(ConnectionLimits limits, QObject* parent) : QTcpSocket(parent), limits_(limits)
    {
        timer_.setSingleShot(true);
        connect(&timer_, &QTimer::timeout, this, &LimitedSocket::timedOut);
        // Connected before the HTTP server's own handler, so it sees each chunk before the parser takes it.
        connect(this, &QTcpSocket::readyRead, this, &LimitedSocket::received);
        timer_.start(limits_.requestTimeoutMs);
    }

    void answered()
    {
        pending_ = 0;
        timer_.start(limits_.idleTimeoutMs);
    }

private:
    void received()
    {
        if (pending_ == 0)
            timer_.start(limits_.requestTimeoutMs);  // a new request begins
        pending_ += bytesAvailable();
        if (pending_ > limits_.maxRequestBytes)
            cut();
    }

    void timedOut()
    {
        if (pending_ > 0)
            cut();  // a request that never ended
        else
            disconnectFromHost();  // idle, or never said anything
    }

    void cut()
    {
        // Nobody reads this connection again: the parser must not see a closed socket.
        disconnect(this, &QTcpSocket::readyRead, nullptr, nullptr);
        abort();
    }

    const ConnectionLimits limits_;
    QTimer timer_;
    qint64 pending_ = 0;
};

}  // namespace

LimitedTcpServer::LimitedTcpServer(ConnectionLimits limits, QObject* parent) : QTcpServer(parent), limits_(limits) {}

void LimitedTcpServer::answered(QTcpSocket* socket)
{
    if (auto* s = dynamic_cast<LimitedSocket*>(socket))
        s->answered();
}

void LimitedTcpServer::incomingConnection(qintptr handle)
{
    if (open_ >= limits_.maxConnections) {
        QTcpSocket refused;
        refused.setSocketDescriptor(handle);
        refused.abort();
        return;
    }
    auto* socket = new LimitedSocket(limits_, this);
    if (!socket->setSocketDescriptor(handle)) {
        delete socket;
        return;
    }
    ++open_;
    connect(socket, &QObject::destroyed, this, [this] { --open_; });
    addPendingConnection(socket);
}

}  // namespace orm
