// Real servers on 127.0.0.1 for the transfer tests, started and stopped by
// the tests: the project's own speed test endpoint, Python's http.server
// failing on purpose (misbehaving_server.py), and a TLS server whose
// certificate the test makes and trusts.
#pragma once

#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTcpServer>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <ostream>

// Texts in failure messages as text.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
inline void PrintTo(const QStringList& l, std::ostream* os) { *os << '{' << l.join(QStringLiteral(" | ")).toStdString() << '}'; }

namespace orm {
class SpeedTestEndpoint;
}

namespace orm::test {

// Runs the event loop until `done` holds or `ms` have passed; true when it holds.
bool waitUntil(const std::function<bool()>& done, int ms = 10000);

// misbehaving_server.py in a child process; stopped with the object.
class ScriptServer {
public:
    // With a certificate and key it serves HTTPS.
    explicit ScriptServer(const QString& certFile = QString(), const QString& keyFile = QString());
    ~ScriptServer();
    quint16 port() const { return port_; }
    QString url(const QString& path) const;  // "http(s)://127.0.0.1:<port><path>"

private:
    QProcess process_;
    quint16 port_ = 0;
    bool tls_ = false;
};

// A self-signed certificate for 127.0.0.1 made with openssl in a folder of its own.
class TestCertificate {
public:
    TestCertificate();
    bool ok() const { return ok_; }
    QString certFile() const { return dir_.filePath(QStringLiteral("cert.pem")); }
    QString keyFile() const { return dir_.filePath(QStringLiteral("key.pem")); }
    // Adds the certificate to the process's trusted authorities.
    void trust() const;

private:
    QTemporaryDir dir_;
    bool ok_ = false;
};

// The project's endpoint in this process with its default list, on a free port of 127.0.0.1.
class LocalEndpoint {
public:
    LocalEndpoint();
    ~LocalEndpoint();
    quint16 port() const { return port_; }
    QString url(const QString& path) const;

private:
    std::unique_ptr<SpeedTestEndpoint> endpoint_;
    quint16 port_ = 0;
};

// A port on 127.0.0.1 where nothing listens.
inline quint16 closedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

// Writes a file of the test's; true when all of it is written.
inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// `ormivane --speedtest-server ARGS` in a process of its own; its first line
// says where it listens.
class ProgramServer {
public:
    explicit ProgramServer(const QStringList& args)
    {
        process.start(QStringLiteral(ORM_BINARY), QStringList{QStringLiteral("--speedtest-server")} + args);
        process.waitForStarted(5000);
        process.waitForReadyRead(10000);
        line = QString::fromLocal8Bit(process.readLine()).trimmed();
        base = line.section(QLatin1Char(' '), 4, 4);  // http://127.0.0.1:P/
        port = base.section(QLatin1Char(':'), 2, 2).remove(QLatin1Char('/')).toUShort();
    }
    ~ProgramServer()
    {
        process.terminate();
        if (!process.waitForFinished(5000))
            process.kill();
        process.waitForFinished(5000);
    }
    QString url(const QString& path) const { return base.chopped(1) + path; }

    QProcess process;
    QString line, base;
    quint16 port = 0;
};

}  // namespace orm::test
