#include "endpoint/speed_test_endpoint.h"

#include <QHttpServerRequest>
#include <QTcpSocket>
#include <QUrlQuery>

namespace orm {

namespace {

const QByteArray RootPage =
    "<!DOCTYPE html>\n<html><head><title>Ormivane speed test</title></head>\n"
    "<body><p>Ormivane speed test endpoint. The sizes on offer are in "
    "<a href=\"/downvariations.txt\">downvariations.txt</a>; "
    "<code>/serverdownload.asp?s=N</code> sends the file of the N-th size.</p></body></html>\n";

// The bytes a test file is made of: a fixed pseudo-random run, so that nothing
// on the way can squeeze it, sent again and again.
const QByteArray& filler()
{
    static const QByteArray bytes = [] {
        QByteArray b(256 * 1024, Qt::Uninitialized);
        quint32 x = 2463534242u;
        for (char& c : b) {
            x ^= x << 13;
            x ^= x >> 17;
            x ^= x << 5;
            c = char(x & 0xFF);
        }
        return b;
    }();
    return bytes;
}

// Sends one generated body, as fast as the socket drains; it lives as long as
// the body is unsent or the connection is open, whichever ends first.
class BodyStream : public QObject {
public:
    static constexpr qint64 HighWater = 1024 * 1024;

    BodyStream(QTcpSocket* socket, qint64 size) : QObject(socket), socket_(socket), left_(size)
    {
        connect(socket, &QTcpSocket::bytesWritten, this, &BodyStream::pump);
        pump();
    }

private:
    void pump()
    {
        const QByteArray& bytes = filler();
        while (left_ > 0 && socket_->bytesToWrite() < HighWater) {
            const qint64 n = std::min<qint64>(left_, bytes.size());
            if (socket_->write(bytes.constData(), n) != n) {
                left_ = 0;  // the connection went
                break;
            }
            left_ -= n;
        }
        if (left_ == 0) {
            disconnect(socket_, nullptr, this, nullptr);
            deleteLater();
        }
    }

    QTcpSocket* socket_;
    qint64 left_;
};

void writeHead(QTcpSocket* socket, const QByteArray& status, const QByteArray& type, qint64 length)
{
    socket->write("HTTP/1.1 " + status + "\r\nContent-Type: " + type + "\r\nContent-Length: " +
                  QByteArray::number(length) + "\r\nCache-Control: no-store\r\n\r\n");
}

void answer(QTcpSocket* socket, bool head, const QByteArray& status, const QByteArray& type,
            const QByteArray& body)
{
    writeHead(socket, status, type, body.size());
    if (!head)
        socket->write(body);
}

}  // namespace

QByteArray defaultSpeedTestLadder()
{
    return QByteArrayLiteral("500000|30\r\n"
                             "100000000|600\r\n");
}

SpeedTestEndpoint::SpeedTestEndpoint(QByteArray list, QObject* parent)
    : QAbstractHttpServer(parent), list_(std::move(list)), options_(checkDownloadOptions(list_).options)
{
}

quint16 SpeedTestEndpoint::listenAt(const ListenAddress& at)
{
    return listen(at.address.isNull() ? QHostAddress(QHostAddress::LocalHost) : at.address, at.port);
}

bool SpeedTestEndpoint::handleRequest(const QHttpServerRequest& request, QTcpSocket* socket)
{
    const bool head = request.method() == QHttpServerRequest::Method::Head;
    if (!head && request.method() != QHttpServerRequest::Method::Get) {
        answer(socket, false, "405 Method Not Allowed", "text/plain", "Only GET and HEAD are served.\n");
        return true;
    }
    const QString path = request.url().path();
    if (path == QLatin1String("/")) {
        answer(socket, head, "200 OK", "text/html; charset=utf-8", RootPage);
        return true;
    }
    if (path == QLatin1String("/downvariations.txt")) {
        answer(socket, head, "200 OK", "text/plain", list_);
        return true;
    }
    if (path == QLatin1String("/serverdownload.asp")) {
        bool ok = false;
        const int s = QUrlQuery(request.url()).queryItemValue(QStringLiteral("s")).toInt(&ok);
        if (!ok || s < 0 || size_t(s) >= options_.size()) {
            answer(socket, head, "404 Not Found", "text/plain", "There is no test file of that size.\n");
            return true;
        }
        const qint64 size = options_[size_t(s)].size;
        writeHead(socket, "200 OK", "application/octet-stream", size);
        if (!head)
            new BodyStream(socket, size);
        return true;
    }
    return false;
}

void SpeedTestEndpoint::missingHandler(const QHttpServerRequest& request, QTcpSocket* socket)
{
    answer(socket, request.method() == QHttpServerRequest::Method::Head, "404 Not Found", "text/plain",
           "Not found.\n");
}

}  // namespace orm
