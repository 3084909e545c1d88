// Two relays for the mail tests, both on loopback: Debian's aiosmtpd, which
// records each message it accepts, and a scripted peer that answers each
// command with the replies a test gives it, to play servers that misbehave.
#pragma once

#include "pump_until.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <deque>
#include <vector>

namespace orm::test {

class SmtpSink {
public:
    // mode "auth" asks for AUTH LOGIN, "plain" takes mail without it.
    explicit SmtpSink(const char* mode)
    {
        file_ = dir_.filePath(QStringLiteral("received.jsonl"));
        process_.start(QStringLiteral("/usr/bin/python3"),
                       {QStringLiteral(ORM_ALERT_TESTS "/smtp_sink.py"), file_, QString::fromLatin1(mode)});
        process_.waitForStarted(5000);
        // Read without an event loop, so that tests without an application can use it.
        QElapsedTimer waited;
        waited.start();
        while (!process_.canReadLine() && process_.state() == QProcess::Running && waited.elapsed() < 10000)
            process_.waitForReadyRead(100);
        const QList<QByteArray> words = process_.readLine().trimmed().split(' ');
        if (words.size() == 2 && words[0] == "READY")
            port_ = words[1].toUShort();
    }
    ~SmtpSink()
    {
        process_.closeWriteChannel();
        if (!process_.waitForFinished(5000))
            process_.kill();
        process_.waitForFinished(2000);
    }
    quint16 port() const { return port_; }
    QString error() { return QString::fromUtf8(process_.readAllStandardError()); }

    // The messages received so far, oldest first.
    std::vector<QJsonObject> messages() const
    {
        std::vector<QJsonObject> out;
        QFile f(file_);
        if (f.open(QIODevice::ReadOnly))
            for (const QByteArray& line : f.readAll().split('\n'))
                if (!line.trimmed().isEmpty())
                    out.push_back(QJsonDocument::fromJson(line).object());
        return out;
    }
    bool waitForMessages(size_t count, int ms = 10000) const
    {
        return pumpUntil([&] { return messages().size() >= count; }, ms);
    }

private:
    QTemporaryDir dir_;
    QString file_;
    QProcess process_;
    quint16 port_ = 0;
};

// One reply of the scripted peer: segments that arrive apart, or a hang-up.
struct PeerReply {
    QList<QByteArray> segments;
    bool close = false;
};
inline PeerReply reply(QByteArray text) { return {{std::move(text)}}; }
inline PeerReply split(QList<QByteArray> segments) { return {std::move(segments)}; }
inline PeerReply hangUp() { return {{}, true}; }
inline PeerReply silence() { return {}; }

class ScriptedPeer : public QObject {
public:
    // `greeting` goes out on connect; each complete command (a line, or the
    // message up to its closing dot after a 354) gets the next reply in turn.
    ScriptedPeer(PeerReply greeting, std::deque<PeerReply> replies) : replies_(std::move(replies))
    {
        server_.listen(QHostAddress::LocalHost);
        clock_.start();
        QObject::connect(&server_, &QTcpServer::newConnection, this, [this, greeting] {
            socket_ = server_.nextPendingConnection();
            ++connections;
            QObject::connect(socket_, &QTcpSocket::readyRead, this, [this] { onData(); });
            QObject::connect(socket_, &QTcpSocket::disconnected, this, [this] { closedByClient = true; });
            answer(greeting);
        });
    }
    quint16 port() const { return server_.serverPort(); }

    QByteArray received;  // every byte the client sent
    int connections = 0;
    bool closedByClient = false;

private:
    void onData()
    {
        const QByteArray data = socket_->readAll();
        received += data;
        pending_ += data;
        for (;;) {
            const QByteArray end = inMessage_ ? QByteArray("\r\n.\r\n") : QByteArray("\r\n");
            const qsizetype at = pending_.indexOf(end);
            if (at < 0 || replies_.empty())
                break;
            pending_.remove(0, at + end.size());
            const PeerReply r = replies_.front();
            replies_.pop_front();
            inMessage_ = std::any_of(r.segments.begin(), r.segments.end(),
                                     [](const QByteArray& s) { return s.startsWith("354"); });
            answer(r);
        }
    }
    // Segments go out 80 ms apart, so that each arrives as a read of its own;
    // a reply to a command that came meanwhile waits behind them.
    void answer(const PeerReply& r)
    {
        if (r.close)
            socket_->disconnectFromHost();
        for (const QByteArray& seg : r.segments) {
            const qint64 now = clock_.elapsed();
            const qint64 at = std::max(now, freeAt_);
            freeAt_ = at + 80;
            QTimer::singleShot(int(at - now), this, [this, seg] {
                if (socket_ && socket_->state() == QAbstractSocket::ConnectedState) {
                    socket_->write(seg);
                    socket_->flush();
                }
            });
        }
    }

    QTcpServer server_;
    QTcpSocket* socket_ = nullptr;
    std::deque<PeerReply> replies_;
    QByteArray pending_;
    QElapsedTimer clock_;
    qint64 freeAt_ = 0;
    bool inMessage_ = false;
};

}  // namespace orm::test
