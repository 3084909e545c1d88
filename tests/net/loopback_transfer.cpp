#include "loopback_transfer.h"

#include <QEventLoop>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

namespace orm::test {

QCoreApplication& ensureApp()
{
    static int argc = 1;
    static char name[] = "net_adapters_test", *argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);  // lives until the process ends
    return *QCoreApplication::instance();
}

qint64 moveBytesOverLoopback(qint64 bytes)
{
    ensureApp();
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost))
        return -1;
    QEventLoop loop;
    qint64 received = 0;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        QTcpSocket* peer = server.nextPendingConnection();  // the server owns it
        QObject::connect(peer, &QTcpSocket::readyRead, [&, peer] {
            received += peer->readAll().size();
            if (received >= bytes)
                loop.quit();
        });
    });
    QTcpSocket client;
    QObject::connect(&client, &QAbstractSocket::errorOccurred, &loop, &QEventLoop::quit);
    // Only keeps a broken run from hanging; nothing is measured against it.
    QTimer::singleShot(120000, &loop, &QEventLoop::quit);
    client.connectToHost(QHostAddress::LocalHost, server.serverPort());
    client.write(QByteArray(bytes, 'x'));  // held until the connection stands
    loop.exec();
    return received;
}

}  // namespace orm::test
