#include "sources/transfer_errors.h"

namespace orm {

TransferFailure transferFailure(qint32 code, const QString& what)
{
    TransferFailure f;
    f.number = qint16(quint16(quint32(code) & 0xFFFFu));
    f.description = QStringLiteral("System Error &H%1 (%2).  ")
                        .arg(QString::number(quint32(code), 16).toUpper(), QString::number(code)) +
                    what;
    return f;
}

TransferFailure replyFailure(QNetworkReply::NetworkError error, int httpStatus, const QString& reason,
                             bool stalled)
{
    using namespace TransferError;
    if (stalled)
        return transferFailure(CannotConnect, QStringLiteral("Cannot connect: no data for 30 seconds"));
    if (httpStatus >= 400) {
        const QString what = QStringLiteral("HTTP %1 %2").arg(httpStatus).arg(reason).trimmed();
        switch (httpStatus) {
        case 404:
            return transferFailure(NotFound, what);
        case 500:
            return transferFailure(InternalError, what);
        case 503:
            return transferFailure(ServiceUnavailable, what);
        default:
            return transferFailure(qint32(quint32(HttpStatusBase) + quint32(qMin(httpStatus, 0xFFFF))), what);
        }
    }
    switch (error) {
    case QNetworkReply::HostNotFoundError:
        return transferFailure(NameNotResolved, QStringLiteral("The server name could not be resolved"));
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::TimeoutError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::UnknownNetworkError:
    case QNetworkReply::UnknownProxyError:
        return transferFailure(CannotConnect, QStringLiteral("Cannot connect to the server"));
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ProxyConnectionClosedError:
        return transferFailure(ConnectionReset, QStringLiteral("The connection was closed before the end"));
    case QNetworkReply::SslHandshakeFailedError:
        return transferFailure(SecureChannelError, QStringLiteral("The secure connection failed"));
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
        return transferFailure(InvalidUrl, QStringLiteral("The address is not an http or https address"));
    default:
        return transferFailure(InvalidServerResponse, QStringLiteral("The server's answer was not understood"));
    }
}

MappedFailure mapTransferFailure(const QString& description)
{
    MappedFailure m;
    m.description = description;
    if (description.contains(QStringLiteral("-2147012867")))
        m.status = 0;
    if (description.contains(QStringLiteral("-2147024884")))
        m.status = 503;
    if (description.contains(QStringLiteral("-2147024890")))
        m.status = 404;
    if (description.contains(QStringLiteral("-2147024888"))) {
        m.status = 500;
        m.description = QStringLiteral("System Error &H80070008 (-2147024888).   Internal server error");
    }
    return m;
}

}  // namespace orm
