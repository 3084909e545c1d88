// "[ADDR:]PORT" as the command line gives a place to listen on.
#pragma once

#include <QHostAddress>
#include <QString>

namespace orm {

struct ListenAddress {
    QHostAddress address;      // null when the text names none
    quint16 port = 0;
    QString error;             // why the text is not [ADDR:]PORT; empty when it is
};

// "9464", "127.0.0.1:9464", "[::1]:9464", "0.0.0.0:9464". An IPv6 address is
// written in brackets; the port is a number from 0 to 65535.
ListenAddress parseListenAddress(const QString& text);

// An address as it stands in a URL: an IPv6 address in brackets.
QString urlHostText(const QHostAddress& address);

}  // namespace orm
