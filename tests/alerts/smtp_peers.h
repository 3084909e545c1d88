// Two relays for the mail tests, both on loopback: Debian's aiosmtpd, which
// records each message it accepts, and a scripted peer that answers each
// command with the replies a test gives it, to play servers that misbehave.
#pragma once

#include "pump_until.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <deque>
#include <functional>
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
        if (!f.open(QIODevice::ReadOnly))
            return out;
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

// One reply of the scripted peer: segments sent apart from one another, or
// the connection closed.
struct PeerReply {
    QList<QByteArray> segments;
    bool close = false;       // instead of replying
    bool closeAfter = false;  // once the segments are out
};
inline PeerReply reply(QByteArray text) { return {{std::move(text)}, false, false}; }
inline PeerReply split(QList<QByteArray> segments) { return {std::move(segments), false, false}; }
inline PeerReply hangUp() { return {{}, true, false}; }
inline PeerReply silence() { return {{}, false, false}; }
inline PeerReply thenHangUp(PeerReply r)
{
    r.closeAfter = true;
    return r;
}

class ScriptedPeer : public QObject {
public:
    // `greeting` goes out on connect; each complete command (a line, or the
    // message up to its closing dot after a 354) gets the next reply in turn.
    ScriptedPeer(PeerReply greeting, std::deque<PeerReply> replies)
        : greeting_(std::move(greeting)), replies_(std::move(replies))
    {
        server_.listen(QHostAddress::LocalHost);
        QObject::connect(&server_, &QTcpServer::newConnection, this, [this] {
            socket_ = server_.nextPendingConnection();
            ++connections;
            QObject::connect(socket_, &QTcpSocket::readyRead, this, [this] { onData(); });
            QObject::connect(socket_, &QTcpSocket::disconnected, this, [this] { closedByClient = true; });
            answer(greeting_);
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
            if (at < 0)
                break;
            pending_.remove(0, at + end.size());
            inMessage_ = false;
            if (replies_.empty())
                continue;
            queued_.push_back(replies_.front());
            replies_.pop_front();
            // The message follows a 354 as one command.
            for (const QByteArray& seg : queued_.back().segments)
                inMessage_ = inMessage_ || seg.startsWith("354");
        }
        answerNext();
    }
    // Replies go out one after the other: a command that comes while the
    // segments of the last reply are still on their way waits for them.
    void answerNext()
    {
        if (busy_ || queued_.empty())
            return;
        PeerReply r = queued_.front();
        queued_.pop_front();
        answer(r);
    }
    void answer(const PeerReply& r)
    {
        if (r.close) {
            socket_->disconnectFromHost();
            return;
        }
        busy_ = true;
        int delay = 0;
        for (qsizetype i = 0; i < r.segments.size(); ++i) {
            const QByteArray seg = r.segments[i];
            const bool last = i + 1 == r.segments.size();
            const bool closeAfter = last && r.closeAfter;
            QTimer::singleShot(delay, this, [this, seg, last, closeAfter] {
                if (socket_ && socket_->state() == QAbstractSocket::ConnectedState) {
                    socket_->write(seg);
                    socket_->flush();
                    if (closeAfter)
                        QTimer::singleShot(200, socket_, [this] { socket_->disconnectFromHost(); });
                }
                if (last) {
                    busy_ = false;
                    answerNext();
                }
            });
            delay += 80;  // far enough apart to arrive as separate reads
        }
        if (r.segments.isEmpty())
            busy_ = false;
    }

    QTcpServer server_;
    QTcpSocket* socket_ = nullptr;
    PeerReply greeting_;
    std::deque<PeerReply> replies_;
    QByteArray pending_;
    std::deque<PeerReply> queued_;
    bool inMessage_ = false;
    bool busy_ = false;
};

}  // namespace orm::test
