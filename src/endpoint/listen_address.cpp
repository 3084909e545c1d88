#include "endpoint/listen_address.h"

namespace orm {

ListenAddress parseListenAddress(const QString& text)
{
    ListenAddress r;
    QString port = text.trimmed();
    QString host;
    const qsizetype colon = port.lastIndexOf(QLatin1Char(':'));
    if (colon >= 0) {
        host = port.left(colon);
        port = port.mid(colon + 1);
        if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')))
            host = host.mid(1, host.size() - 2);
        else if (host.contains(QLatin1Char(':')))
            host.clear();  // an IPv6 address without brackets: the last colon was not the port's
    }
    bool ok = false;
    const uint p = port.toUInt(&ok);
    if (!ok || p > 65535 || port.startsWith(QLatin1Char('+'))) {
        r.error = QStringLiteral("\"%1\" is not [ADDR:]PORT: the port must be a number from 0 to 65535").arg(text);
        return r;
    }
    if (colon >= 0 && !r.address.setAddress(host)) {
        r.error = QStringLiteral("\"%1\" is not [ADDR:]PORT: \"%2\" is not an IP address (an IPv6 address goes "
                                 "in brackets)")
                      .arg(text, text.left(colon));
        return r;
    }
    r.port = quint16(p);
    return r;
}

QString urlHostText(const QHostAddress& address)
{
    const QString host = address.toString();
    return address.protocol() == QAbstractSocket::IPv6Protocol ? QLatin1Char('[') + host + QLatin1Char(']') : host;
}

}  // namespace orm
