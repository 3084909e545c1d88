#include "loopback_transfer.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <cstring>
#include <memory>

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orm::test {

QCoreApplication& ensureApp()
{
    static int argc = 1;
    static char name[] = "net_adapters_test";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);  // lives until the process ends
    return *QCoreApplication::instance();
}

qint64 moveBytesOverLoopback(qint64 bytes)
{
    ensureApp();
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost, 0))
        return -1;
    QEventLoop loop;
    qint64 received = 0;
    std::unique_ptr<QTcpSocket> peer;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        peer.reset(server.nextPendingConnection());
        QObject::connect(peer.get(), &QTcpSocket::readyRead, [&] {
            received += peer->readAll().size();
            if (received >= bytes)
                loop.quit();
        });
        QObject::connect(peer.get(), &QAbstractSocket::errorOccurred, &loop, &QEventLoop::quit);
    });

    QTcpSocket client;
    QObject::connect(&client, &QTcpSocket::connected, [&] { client.write(QByteArray(bytes, 'x')); });
    QObject::connect(&client, &QAbstractSocket::errorOccurred, &loop, &QEventLoop::quit);

    // Only keeps a broken run from hanging; nothing is measured against it.
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, &loop, &QEventLoop::quit);
    guard.start(120000);

    client.connectToHost(QHostAddress::LocalHost, server.serverPort());
    loop.exec();
    client.abort();
    if (peer)
        peer->abort();
    return received;
}

bool bringLoopbackUp()
{
    const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    ifreq request{};
    std::strncpy(request.ifr_name, "lo", IFNAMSIZ - 1);
    bool ok = ::ioctl(fd, SIOCGIFFLAGS, &request) == 0;
    if (ok) {
        request.ifr_flags |= IFF_UP;
        ok = ::ioctl(fd, SIOCSIFFLAGS, &request) == 0;
    }
    ::close(fd);
    return ok;
}

}  // namespace orm::test
