#include "local_servers.h"

#include "endpoint/speed_test_endpoint.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTcpServer>

namespace orm::test {

namespace {

QString python()
{
    // Debian's own interpreter, not whatever a user's PATH puts first.
    return QFile::exists(QStringLiteral("/usr/bin/python3")) ? QStringLiteral("/usr/bin/python3")
                                                             : QStringLiteral("python3");
}

}  // namespace

bool waitUntil(const std::function<bool()>& done, int ms)
{
    QDeadlineTimer deadline(ms);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

ScriptServer::ScriptServer(const QString& certFile, const QString& keyFile) : tls_(!certFile.isEmpty())
{
    QStringList args{QStringLiteral(ORM_TRANSFER_SCRIPTS "/misbehaving_server.py")};
    if (tls_)
        args << QStringLiteral("--tls") << certFile << keyFile;
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(python(), args);
    if (!process_.waitForStarted(5000))
        return;
    QDeadlineTimer deadline(10000);
    while (!process_.canReadLine() && !deadline.hasExpired())
        process_.waitForReadyRead(100);
    const QByteArray line = process_.readLine().trimmed();
    if (line.startsWith("PORT "))
        port_ = quint16(line.mid(5).toUInt());
}

ScriptServer::~ScriptServer()
{
    process_.closeWriteChannel();
    if (!process_.waitForFinished(3000)) {
        process_.kill();
        process_.waitForFinished(3000);
    }
}

QString ScriptServer::url(const QString& path) const
{
    return QStringLiteral("%1://127.0.0.1:%2%3").arg(tls_ ? "https" : "http").arg(port_).arg(path);
}

TestCertificate::TestCertificate()
{
    QProcess openssl;  // its progress dots are read and dropped
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("rsa:2048"),
                   QStringLiteral("-nodes"), QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                   QStringLiteral("/CN=127.0.0.1"), QStringLiteral("-addext"),
                   QStringLiteral("subjectAltName=IP:127.0.0.1"), QStringLiteral("-keyout"), keyFile(),
                   QStringLiteral("-out"), certFile()});
    ok_ = openssl.waitForFinished(30000) && openssl.exitCode() == 0 && QFile::exists(certFile());
}

void TestCertificate::trust() const
{
    QSslConfiguration conf = QSslConfiguration::defaultConfiguration();
    conf.addCaCertificates(QSslCertificate::fromPath(certFile()));
    QSslConfiguration::setDefaultConfiguration(conf);
}

LocalEndpoint::LocalEndpoint(const QByteArray& list)
    : endpoint_(std::make_unique<SpeedTestEndpoint>(list.isEmpty() ? defaultSpeedTestLadder() : list))
{
    port_ = endpoint_->listen(QHostAddress::LocalHost, 0);
}

LocalEndpoint::~LocalEndpoint() = default;

QString LocalEndpoint::url(const QString& path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(port_).arg(path);
}

quint16 closedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    return port;
}

}  // namespace orm::test
