// What the ping tests share: an event loop to drive, echo sockets the test
// answers itself.
#pragma once

#include "../alerts/pump_until.h"
#include "model/model.h"
#include "sources/icmp_socket.h"

namespace orm::test {

inline int argc = 1;
inline char arg0[] = "ping_test";
inline char* argv[] = {arg0, nullptr};
inline QCoreApplication app(argc, argv);  // timers and sockets need it from the first test on

inline Node pingNode(const char* ip = "127.0.0.1", qint16 size = 100)
{
    Node n = newNode(0);
    n.NodeType = PingType;
    n.PingIP = QString::fromLatin1(ip);
    n.PingPacketSize = size;
    return n;
}

// Echo sockets that go nowhere; the test answers them.
struct FakeEchoes {
    std::vector<QByteArray> payloads;       // of every echo sent
    std::vector<EchoSocket::Done> pending;  // emptied when the echo's socket goes

    struct Socket final : EchoSocket {
        FakeEchoes* owner;
        size_t index = SIZE_MAX;
        explicit Socket(FakeEchoes* o) : owner(o) {}
        ~Socket() override { if (index != SIZE_MAX) owner->pending[index] = nullptr; }
        quint32 start(quint32, const QByteArray& payload, Done done) override
        {
            index = owner->pending.size();
            owner->pending.push_back(std::move(done));
            owner->payloads.push_back(payload);
            return 0;
        }
    };
    EchoSocketFactory factory() { return [this] { return std::make_unique<Socket>(this); }; }
    bool alive(size_t i) const { return i < pending.size() && pending[i]; }
    // Answers echo `i` from 127.0.0.1; false when its socket is gone.
    bool answer(size_t i, quint32 rtt, quint32 status = EchoSuccess)
    {
        if (!alive(i))
            return false;
        auto done = pending[i];
        done(EchoReply{0x7f000001, status, rtt, 100});
        return true;
    }
};

}  // namespace orm::test
