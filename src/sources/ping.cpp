#include "sources/ping.h"

#include <QTimer>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>
#include <algorithm>
#include <climits>

namespace orm {

namespace {

// Channel ids and echo serials are unique in the process, so that a Node carried
// from one service to another never finds a stranger's channel.
qint32 nextNumber(qint32& counter)
{
    counter = counter == INT_MAX ? 1 : counter + 1;
    return counter;
}

qint32 lastChannelId = 0;
qint32 lastSerial = 0;

}  // namespace

struct PingService::Channel {
    qint32 serial = 0;
    EchoReply reply;  // filled when an echo ends, read by ReadPing
    std::unique_ptr<EchoSocket> socket;
    QTimer timer;
    bool running = false;
};

qint32 pingTimeoutFor(qint32 sampleEverySeconds)
{
    const qint64 ms = qint64(sampleEverySeconds) * 1000 - 100;
    return qint32(std::clamp<qint64>(ms, INT_MIN, INT_MAX));
}

PingService::PingService(QObject* parent)
    : PingService([] { return std::make_unique<IcmpSocket>(); }, parent)
{
    stampHolder_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (stampHolder_ >= 0) {
        const int on = 1;
        ::setsockopt(stampHolder_, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
    }
}

PingService::PingService(EchoSocketFactory factory, QObject* parent)
    : QObject(parent), factory_(std::move(factory))
{
}

PingService::~PingService()
{
    if (stampHolder_ >= 0)
        ::close(stampHolder_);
}

PingService::Channel* PingService::current(const Node& node) const
{
    if (node.PingState1 <= 0)
        return nullptr;
    const auto it = channels_.find(node.PingState1);
    if (it == channels_.end() || it->second->serial != node.PingState2)
        return nullptr;
    return it->second.get();
}

PingService::Channel& PingService::channelFor(Node& node)
{
    if (Channel* channel = current(node))
        return *channel;
    const qint32 id = nextNumber(lastChannelId);
    auto channel = std::make_unique<Channel>();
    channel->timer.setSingleShot(true);
    channel->timer.setTimerType(Qt::PreciseTimer);
    connect(&channel->timer, &QTimer::timeout, this, [this, id] {
        const auto it = channels_.find(id);
        if (it == channels_.end() || !it->second->running)
            return;
        Channel& c = *it->second;
        c.reply.Status = EchoTimedOut;
        c.reply.RoundTripTime = 0;
        stop(c);
        notify(id, c.serial);
    });
    Channel& result = *channel;
    channels_.emplace(id, std::move(channel));
    node.PingState1 = id;
    node.PingState2 = 0;
    return result;
}

void PingService::stop(Channel& channel)
{
    channel.timer.stop();
    channel.socket.reset();
    channel.running = false;
}

void PingService::ended(qint32 id, qint32 serial, const EchoReply& reply)
{
    const auto it = channels_.find(id);
    if (it == channels_.end() || it->second->serial != serial || !it->second->running)
        return;
    Channel& c = *it->second;
    c.reply = reply;
    stop(c);  // destroys the socket that called us, as its contract allows
    notify(id, serial);
}

void PingService::failed(qint32 id, Channel& channel, quint32 status)
{
    stop(channel);
    channel.reply.Status = status;
    channel.reply.RoundTripTime = 0;
    notify(id, channel.serial);
}

void PingService::notify(qint32 id, qint32 serial)
{
    // Listeners hear it from the event loop, so they may send, read or release
    // the channel without pulling the socket or the timer from under their caller.
    QMetaObject::invokeMethod(
        this,
        [this, id, serial] {
            const auto it = channels_.find(id);
            if (it != channels_.end() && it->second->serial == serial)
                emit echoDone(id);
        },
        Qt::QueuedConnection);
}

void PingService::SendPing(Node& node, qint32& timeoutMs)
{
    if (timeoutMs > MaxPingTimeoutMs)
        timeoutMs = MaxPingTimeoutMs;
    if (node.PingPacketSize > MaxPingPacketSize)
        node.PingPacketSize = MaxPingPacketSize;
    const QByteArray payload(qMax<qint16>(node.PingPacketSize, 0), 's');

    Channel& channel = channelFor(node);
    stop(channel);
    channel.serial = nextNumber(lastSerial);
    node.PingState2 = channel.serial;

    const in_addr_t address = ::inet_addr(node.PingIP.toLatin1().constData());
    if (address == INADDR_NONE) {
        failed(node.PingState1, channel, EchoBadDestination);
        return;
    }
    channel.socket = factory_ ? factory_() : nullptr;
    if (!channel.socket) {
        failed(node.PingState1, channel, EchoGeneralFailure);
        return;
    }
    const qint32 id = node.PingState1;
    const qint32 serial = channel.serial;
    channel.running = true;
    const quint32 status = channel.socket->start(
        ntohl(address), payload, [this, id, serial](const EchoReply& reply) { ended(id, serial, reply); });
    if (status != EchoSuccess) {
        failed(node.PingState1, channel, status);
        return;
    }
    // A negative time-out never ends by itself: the next read ends it.
    if (timeoutMs >= 0)
        channel.timer.start(timeoutMs);
}

qint32 PingService::ReadPing(Node& node)
{
    EchoReply none;
    Channel* channel = current(node);
    if (channel)
        stop(*channel);
    EchoReply& reply = channel ? channel->reply : none;

    qint32 result = 0;
    if (reply.Status == EchoSuccess || reply.Status == PingStatusAlsoSuccess) {
        result = qint32(reply.RoundTripTime);
    } else {
        node.PingState3 = node.PingState3 >= MaxPingFailures ? MaxPingFailures : node.PingState3 + 1;
    }
    reply.RoundTripTime = 0;
    return result;
}

double PingService::evaluate(Node& node, qint32 sampleEverySeconds)
{
    const qint32 value = ReadPing(node);
    node.PingState4 = value;
    qint32 timeoutMs = pingTimeoutFor(sampleEverySeconds);
    SendPing(node, timeoutMs);
    return double(value);
}

const EchoReply* PingService::reply(const Node& node) const
{
    const Channel* channel = current(node);
    return channel ? &channel->reply : nullptr;
}

bool PingService::running(const Node& node) const
{
    const Channel* channel = current(node);
    return channel && channel->running;
}

qint32 PingService::runningTimeout(const Node& node) const
{
    const Channel* channel = current(node);
    if (!channel || !channel->running || !channel->timer.isActive())
        return -1;
    return channel->timer.interval();
}

void PingService::release(Node& node)
{
    if (current(node))
        channels_.erase(node.PingState1);
    node.PingState1 = 0;
    node.PingState2 = 0;
}

}  // namespace orm
