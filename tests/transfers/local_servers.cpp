#include "local_servers.h"

#include "endpoint/speed_test_endpoint.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>

namespace orm::test {

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
    process_.start(QStringLiteral("/usr/bin/python3"), args);  // Debian's own, not the first on a user's PATH
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
    openssl.start(QStringLiteral("openssl"), QStringLiteral("req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 "
                                                            "-addext subjectAltName=IP:127.0.0.1 -keyout %1 -out %2")
                                                 .arg(keyFile(), certFile())
                                                 .split(QLatin1Char(' ')));
    ok_ = openssl.waitForFinished(30000) && openssl.exitCode() == 0 && QFile::exists(certFile());
}

void TestCertificate::trust() const
{
    QSslConfiguration conf = QSslConfiguration::defaultConfiguration();
    conf.addCaCertificates(QSslCertificate::fromPath(certFile()));
    QSslConfiguration::setDefaultConfiguration(conf);
}

LocalEndpoint::LocalEndpoint() : endpoint_(std::make_unique<SpeedTestEndpoint>(defaultSpeedTestLadder()))
{
    port_ = endpoint_->listen(QHostAddress::LocalHost, 0);
}

LocalEndpoint::~LocalEndpoint() = default;

QString LocalEndpoint::url(const QString& path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(port_).arg(path);
}

}  // namespace orm::test
