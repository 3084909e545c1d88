// What the ping tests share: an event loop to drive, fake echo sockets, and
// network namespaces of their own where real echoes may go beyond 127.0.0.1.
#pragma once

#include "sources/icmp_socket.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

class QCoreApplication;

namespace orm::test {

QCoreApplication& testApp();

// Runs the event loop until `done` holds; false when `guardMs` passed first.
bool runUntil(const std::function<bool()>& done, int guardMs = 20000);

// Echo sockets that go nowhere: the test answers them, or makes them fail.
struct FakeEcho {
    quint32 address = 0;
    QByteArray payload;
    EchoSocket::Done done;
    bool alive = true;  // the owner has not destroyed the socket
};

class FakeEchoes {
public:
    EchoSocketFactory factory();
    // Status start() gives; 0 lets the echo go out.
    quint32 failWith = 0;
    std::vector<std::shared_ptr<FakeEcho>> sent;
    // Answers echo `i` as the system would; false when its socket is gone.
    bool answer(size_t i, const EchoReply& reply);
};

// A network namespace made for one test and removed after it.
class TestNamespace {
public:
    explicit TestNamespace(const QString& tag);
    ~TestNamespace();
    TestNamespace(const TestNamespace&) = delete;
    TestNamespace& operator=(const TestNamespace&) = delete;

    bool ok() const { return ok_; }
    const QString& name() const { return name_; }
    // `ip -n NAME args...`
    bool ip(const QStringList& args) const;
    // `ip netns exec NAME command...`
    bool exec(const QStringList& command) const;

private:
    QString name_;
    bool ok_ = false;
};

// Runs a command and tells whether it exited with 0.
bool run(const QString& program, const QStringList& args);

// Puts this thread into a namespace until destroyed; sockets made meanwhile
// stay in it.
class EnterNamespace {
public:
    explicit EnterNamespace(const TestNamespace& ns);
    ~EnterNamespace();
    EnterNamespace(const EnterNamespace&) = delete;
    EnterNamespace& operator=(const EnterNamespace&) = delete;
    bool ok() const { return ok_; }

private:
    int home_ = -1;
    bool ok_ = false;
};

// A namespace with its loopback up, or skips the test when none can be made.
#define ORM_NAMESPACE_OR_SKIP(var, tag)                                      \
    ::orm::test::TestNamespace var(tag);                                     \
    if (!var.ok())                                                          \
    GTEST_SKIP() << "cannot make a network namespace here (needs root)"

}  // namespace orm::test
