#include "ping_support.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

namespace orm::test {

QCoreApplication& testApp()
{
    static int argc = 1;
    static char name[] = "ping_test";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    return app;
}

bool runUntil(const std::function<bool()>& done, int guardMs)
{
    testApp();
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer wake;  // keeps processEvents from waiting past the guard
    wake.start(20);
    while (!done()) {
        if (elapsed.elapsed() > guardMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

namespace {

class FakeSocket final : public EchoSocket {
public:
    FakeSocket(FakeEchoes& owner) : owner_(owner) {}
    ~FakeSocket() override
    {
        if (echo_)
            echo_->alive = false;
    }
    quint32 start(quint32 address, const QByteArray& payload, Done done) override
    {
        if (owner_.failWith != 0)
            return owner_.failWith;
        echo_ = std::make_shared<FakeEcho>();
        echo_->address = address;
        echo_->payload = payload;
        echo_->done = std::move(done);
        owner_.sent.push_back(echo_);
        return 0;
    }

private:
    FakeEchoes& owner_;
    std::shared_ptr<FakeEcho> echo_;
};

}  // namespace

EchoSocketFactory FakeEchoes::factory()
{
    return [this] { return std::make_unique<FakeSocket>(*this); };
}

bool FakeEchoes::answer(size_t i, const EchoReply& reply)
{
    if (i >= sent.size() || !sent[i]->alive || !sent[i]->done)
        return false;
    auto done = sent[i]->done;
    done(reply);
    return true;
}

bool run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    if (!p.waitForFinished(20000))
        return false;
    return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

TestNamespace::TestNamespace(const QString& tag)
{
    static int count = 0;
    name_ = QStringLiteral("ormping-%1-%2-%3").arg(::getpid()).arg(++count).arg(tag);
    if (::geteuid() != 0)
        return;
    ok_ = run(QStringLiteral("ip"), {QStringLiteral("netns"), QStringLiteral("add"), name_});
}

TestNamespace::~TestNamespace()
{
    if (ok_)
        run(QStringLiteral("ip"), {QStringLiteral("netns"), QStringLiteral("del"), name_});
}

bool TestNamespace::ip(const QStringList& args) const
{
    return run(QStringLiteral("ip"), QStringList{QStringLiteral("-n"), name_} + args);
}

bool TestNamespace::exec(const QStringList& command) const
{
    return run(QStringLiteral("ip"),
               QStringList{QStringLiteral("netns"), QStringLiteral("exec"), name_} + command);
}

EnterNamespace::EnterNamespace(const TestNamespace& ns)
{
    home_ = ::open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
    const int target = ::open(("/run/netns/" + ns.name()).toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    ok_ = home_ >= 0 && target >= 0 && ::setns(target, CLONE_NEWNET) == 0;
    if (target >= 0)
        ::close(target);
}

EnterNamespace::~EnterNamespace()
{
    if (ok_)
        ::setns(home_, CLONE_NEWNET);
    if (home_ >= 0)
        ::close(home_);
}

}  // namespace orm::test
