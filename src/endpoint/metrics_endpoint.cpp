#include "endpoint/metrics_endpoint.h"

#include <QCryptographicHash>
#include <QHttpServerRequest>
#include <QTcpSocket>

namespace orm {

namespace {

const QByteArray TextType = QByteArrayLiteral("text/plain; charset=utf-8");
const QByteArray MetricsType = QByteArrayLiteral("text/plain; version=0.0.4; charset=utf-8");

QByteArray digestOf(const QByteArray& text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Sha256);
}

}  // namespace

bool bearerTokenMatches(const QByteArray& authorization, const QByteArray& tokenDigest)
{
    const QByteArray value = authorization.trimmed();
    const qsizetype space = value.indexOf(' ');
    const bool bearer = space > 0 && value.left(space).compare("Bearer", Qt::CaseInsensitive) == 0;
    // Digests have one length: every byte is compared, whatever the token given.
    const QByteArray given = digestOf(space > 0 ? value.mid(space + 1).trimmed() : QByteArray());
    if (given.size() != tokenDigest.size())
        return false;
    unsigned char difference = 0;
    for (qsizetype i = 0; i < given.size(); ++i)
        difference |= static_cast<unsigned char>(given[i] ^ tokenDigest[i]);
    return bearer && difference == 0;
}

MetricsEndpoint::MetricsEndpoint(Exposition exposition, const QByteArray& token, ConnectionLimits limits,
                                 QObject* parent)
    : QAbstractHttpServer(parent),
      exposition_(std::move(exposition)),
      tokenDigest_(token.isEmpty() ? QByteArray() : digestOf(token)),
      limits_(limits)
{
}

bool MetricsEndpoint::listenOn(const QHostAddress& address, quint16 port)
{
    auto server = std::make_unique<LimitedTcpServer>(limits_, this);
    if (!server->listen(address, port)) {
        error_ = server->errorString();
        return false;
    }
    server_ = server.release();
    bind(server_);
    return true;
}

quint16 MetricsEndpoint::port() const
{
    return server_ ? server_->serverPort() : 0;
}

void MetricsEndpoint::reply(const QHttpServerRequest& request, QTcpSocket* socket, Status status,
                            const QByteArray& type, const QByteArray& body, const QByteArray& extraName,
                            const QByteArray& extraValue)
{
    QHttpServerResponder responder = makeResponder(request, socket);
    responder.writeStatusLine(status);
    responder.writeHeader("Content-Type", type);
    responder.writeHeader("Content-Length", QByteArray::number(body.size()));
    if (!extraName.isEmpty())
        responder.writeHeader(extraName, extraValue);
    if (request.method() == QHttpServerRequest::Method::Head)
        responder.writeBody("", 0);
    else
        responder.writeBody(body);
}

bool MetricsEndpoint::handleRequest(const QHttpServerRequest& request, QTcpSocket* socket)
{
    LimitedTcpServer::answered(socket);
    const auto method = request.method();
    if (request.url().path() != QLatin1String("/metrics")) {
        reply(request, socket, Status::NotFound, TextType, "Not found: the metrics are at /metrics.\n");
    } else if (!tokenDigest_.isEmpty() && !bearerTokenMatches(request.value("Authorization"), tokenDigest_)) {
        reply(request, socket, Status::Unauthorized, TextType,
              "This endpoint wants the header Authorization: Bearer <token>.\n", "WWW-Authenticate",
              "Bearer realm=\"Ormivane\"");
    } else if (method != QHttpServerRequest::Method::Get && method != QHttpServerRequest::Method::Head) {
        reply(request, socket, Status::MethodNotAllowed, TextType, "Only GET and HEAD are served.\n", "Allow",
              "GET, HEAD");
    } else {
        exposition_(body_);
        ++scrapes_;
        reply(request, socket, Status::Ok, MetricsType, body_);
    }
    if (request.value("Connection").toLower().contains("close"))
        socket->disconnectFromHost();
    return true;
}

void MetricsEndpoint::missingHandler(const QHttpServerRequest& request, QTcpSocket* socket)
{
    reply(request, socket, Status::NotFound, TextType, "Not found.\n");
}

}  // namespace orm
