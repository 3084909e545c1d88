// A raw HTTP/1.1 client for the endpoint tests: one connection, requests
// written by hand, the responses read back as they come.
#pragma once

#include "pump_until.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <functional>
#include <map>
#include <vector>

namespace orm::test {

struct Reply {
    int status = 0;
    std::map<QByteArray, QByteArray> headers;  // names in lower case
    QByteArray body;
};

// The complete responses at the start of `bytes`; `head` when they answer HEAD requests.
inline std::vector<Reply> repliesIn(QByteArray bytes, bool head = false)
{
    std::vector<Reply> out;
    for (;;) {
        const qsizetype end = bytes.indexOf("\r\n\r\n");
        if (end < 0)
            return out;
        Reply r;
        const QList<QByteArray> lines = bytes.left(end).split('\n');
        r.status = lines[0].split(' ').value(1).toInt();
        for (qsizetype i = 1; i < lines.size(); ++i) {
            const qsizetype colon = lines[i].indexOf(':');
            if (colon > 0)
                r.headers[lines[i].left(colon).trimmed().toLower()] = lines[i].mid(colon + 1).trimmed();
        }
        const qsizetype length = head ? 0 : r.headers[QByteArrayLiteral("content-length")].toLongLong();
        if (bytes.size() < end + 4 + length)
            return out;
        r.body = bytes.mid(end + 4, length);
        bytes = bytes.mid(end + 4 + length);
        out.push_back(r);
    }
}

class Client {
public:
    explicit Client(quint16 port)
    {
        socket.connectToHost(QHostAddress::LocalHost, port);
        QObject::connect(&socket, &QTcpSocket::readyRead, [this] { received += socket.readAll(); });
        QObject::connect(&socket, &QTcpSocket::disconnected, [this] { closed = true; });
        QObject::connect(&socket, &QTcpSocket::errorOccurred, [this](QAbstractSocket::SocketError e) {
            if (e == QAbstractSocket::RemoteHostClosedError || e == QAbstractSocket::ConnectionRefusedError)
                closed = true;
        });
        pumpUntil([this] { return socket.state() == QAbstractSocket::ConnectedState || closed; });
    }
    void send(const QByteArray& bytes)
    {
        socket.write(bytes);
        socket.flush();
    }
    // Waits for `count` whole responses (or the close); what has come.
    std::vector<Reply> await(size_t count = 1, bool head = false)
    {
        pumpUntil([&] { return repliesIn(received, head).size() >= count || closed; });
        return repliesIn(received, head);
    }
    bool awaitClose(int ms = 5000)
    {
        return pumpUntil([this] { return closed; }, ms);
    }

    QTcpSocket socket;
    QByteArray received;
    bool closed = false;
};

inline QByteArray get(const QByteArray& path, const QByteArray& extra = {}, const QByteArray& method = "GET")
{
    return method + " " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + extra + "\r\n";
}

}  // namespace orm::test
