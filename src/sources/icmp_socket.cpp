#include "sources/icmp_socket.h"

#include <QSocketNotifier>

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/errqueue.h>
#include <linux/icmp.h>

namespace orm {

namespace {

quint16 be16(const QByteArray& b, qsizetype at)
{
    return quint16((quint8(b[at]) << 8) | quint8(b[at + 1]));
}

quint32 be32(const QByteArray& b, qsizetype at)
{
    return (quint32(quint8(b[at])) << 24) | (quint32(quint8(b[at + 1])) << 16)
        | (quint32(quint8(b[at + 2])) << 8) | quint32(quint8(b[at + 3]));
}

// Length of a well-formed IPv4 header of ICMP starting at `at`, else 0.
qsizetype icmpIpHeader(const QByteArray& b, qsizetype at)
{
    if (b.size() - at < 20)
        return 0;
    const quint8 first = quint8(b[at]);
    const qsizetype length = (first & 0x0f) * 4;
    if ((first >> 4) != 4 || length < 20 || b.size() - at < length)
        return 0;
    if (quint8(b[at + 9]) != IPPROTO_ICMP)
        return 0;
    return length;
}

// One id for this process, so that raw sockets can tell our replies from others'.
quint16 processEchoId()
{
    return quint16(::getpid() & 0xffff);
}

quint16 nextSequence()
{
    static quint16 sequence = 0;
    return ++sequence;
}

}  // namespace

quint16 internetChecksum(const char* data, qsizetype size)
{
    quint32 sum = 0;
    qsizetype i = 0;
    for (; i + 1 < size; i += 2)
        sum += (quint32(quint8(data[i])) << 8) | quint8(data[i + 1]);
    if (i < size)
        sum += quint32(quint8(data[i])) << 8;
    while (sum >> 16)
        sum = (sum & 0xffff) + (sum >> 16);
    return quint16(~sum & 0xffff);
}

QByteArray makeEchoRequest(quint16 id, quint16 sequence, const QByteArray& payload)
{
    QByteArray packet(8, '\0');
    packet[0] = char(IcmpEchoRequest);
    packet[4] = char(id >> 8);
    packet[5] = char(id & 0xff);
    packet[6] = char(sequence >> 8);
    packet[7] = char(sequence & 0xff);
    packet += payload;
    const quint16 sum = internetChecksum(packet.constData(), packet.size());
    packet[2] = char(sum >> 8);
    packet[3] = char(sum & 0xff);
    return packet;
}

bool isIcmpError(quint8 type)
{
    return type == 3 || type == 4 || type == 5 || type == 11 || type == 12;
}

std::optional<IcmpMessage> parseIcmpPacket(const QByteArray& packet, bool withIpHeader)
{
    IcmpMessage m;
    qsizetype at = 0;
    if (withIpHeader) {
        at = icmpIpHeader(packet, 0);
        if (at == 0)
            return std::nullopt;
        m.source = be32(packet, 12);
    }
    if (packet.size() - at < 8)
        return std::nullopt;
    m.type = quint8(packet[at]);
    m.code = quint8(packet[at + 1]);
    if (m.type == IcmpEchoReply || m.type == IcmpEchoRequest) {
        m.id = be16(packet, at + 4);
        m.sequence = be16(packet, at + 6);
        m.dataSize = packet.size() - at - 8;
        return m;
    }
    if (!isIcmpError(m.type))
        return m;
    // An error quotes the IP header and at least 8 bytes of the datagram it is about.
    const qsizetype quoted = at + 8;
    const qsizetype quotedHeader = icmpIpHeader(packet, quoted);
    if (quotedHeader == 0 || packet.size() - quoted - quotedHeader < 8)
        return m;
    const qsizetype echo = quoted + quotedHeader;
    if (quint8(packet[echo]) != IcmpEchoRequest)
        return m;
    m.quotesEcho = true;
    m.echoTarget = be32(packet, quoted + 16);
    m.id = be16(packet, echo + 4);
    m.sequence = be16(packet, echo + 6);
    return m;
}

quint32 statusForIcmp(quint8 type, quint8 code)
{
    switch (type) {
    case IcmpEchoReply:
        return EchoSuccess;
    case 3:  // destination unreachable
        switch (code) {
        case 0:
        case 6:
        case 11:
            return EchoDestNetUnreachable;
        case 2:
            return EchoDestProtUnreachable;
        case 3:
            return EchoDestPortUnreachable;
        case 4:
            return EchoPacketTooBig;
        case 5:
            return EchoBadRoute;
        default:
            return EchoDestHostUnreachable;
        }
    case 4:
        return EchoSourceQuench;
    case 11:
        return code == 1 ? EchoTtlExpiredReassem : EchoTtlExpiredTransit;
    case 12:
        return EchoParamProblem;
    default:
        return EchoGeneralFailure;
    }
}

quint32 statusForErrno(int err)
{
    switch (err) {
    case 0:
        return EchoSuccess;
    case ENETUNREACH:
    case ENETDOWN:
        return EchoDestNetUnreachable;
    case EHOSTUNREACH:
    case EHOSTDOWN:
        return EchoDestHostUnreachable;
    case ECONNREFUSED:
        return EchoDestPortUnreachable;
    case EMSGSIZE:
        return EchoPacketTooBig;
    case ENOBUFS:
    case ENOMEM:
    case EMFILE:
    case ENFILE:
    case EAGAIN:
        return EchoNoResources;
    case EADDRNOTAVAIL:
        return EchoBadDestination;
    case EINVAL:
        return EchoBadRequest;
    default:
        return EchoGeneralFailure;
    }
}

IcmpSocket::IcmpSocket(Kind kind) : wanted_(kind) {}

IcmpSocket::~IcmpSocket()
{
    if (notifier_) {
        // We may be inside the notifier's own signal: let the event loop delete it.
        notifier_->setEnabled(false);
        notifier_->deleteLater();
    }
    if (fd_ >= 0)
        ::close(fd_);
}

quint32 IcmpSocket::open()
{
    if (wanted_ != Kind::Raw) {
        fd_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_ICMP);
        if (fd_ >= 0) {
            opened_ = Kind::Datagram;
            // ICMP errors about our echo arrive on the error queue.
            const int on = 1;
            ::setsockopt(fd_, SOL_IP, IP_RECVERR, &on, sizeof on);
            return EchoSuccess;
        }
        if (wanted_ == Kind::Datagram)
            return statusForErrno(errno);
    }
    fd_ = ::socket(AF_INET, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_ICMP);
    if (fd_ < 0)
        return statusForErrno(errno);
    opened_ = Kind::Raw;
    // A raw socket sees every ICMP message of the host: keep only replies and errors.
    icmp_filter filter{};
    filter.data = ~((1u << IcmpEchoReply) | (1u << 3) | (1u << 4) | (1u << 5) | (1u << 11) | (1u << 12));
    ::setsockopt(fd_, SOL_RAW, ICMP_FILTER, &filter, sizeof filter);
    return EchoSuccess;
}

quint32 IcmpSocket::start(quint32 address, const QByteArray& payload, Done done)
{
    if (fd_ >= 0)
        return EchoBadRequest;  // one echo per socket
    if (const quint32 status = open(); status != EchoSuccess)
        return status;
    const int on = 1;
    ::setsockopt(fd_, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
    target_ = address;
    id_ = processEchoId();
    sequence_ = nextSequence();
    const QByteArray packet = makeEchoRequest(id_, sequence_, payload);

    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = htonl(address);
    timespec wall{};
    ::clock_gettime(CLOCK_REALTIME, &wall);
    sentWallNs_ = qint64(wall.tv_sec) * 1000000000 + wall.tv_nsec;
    sent_.start();
    ssize_t n;
    do {
        n = ::sendto(fd_, packet.constData(), size_t(packet.size()), 0,
                     reinterpret_cast<const sockaddr*>(&to), sizeof to);
    } while (n < 0 && errno == EINTR);
    if (n < 0)
        return statusForErrno(errno);

    done_ = std::move(done);
    notifier_ = new QSocketNotifier(qintptr(fd_), QSocketNotifier::Read);
    QObject::connect(notifier_, &QSocketNotifier::activated, notifier_, [this] { readable(); });
    return EchoSuccess;
}

void IcmpSocket::finish(const EchoReply& reply)
{
    notifier_->setEnabled(false);
    Done done = std::move(done_);
    done_ = nullptr;
    if (done)
        done(reply);  // may destroy this object: touch nothing after it
}

// A receive of one datagram into `iov`, with room for the sender's address and
// the control messages (stamps, queued errors).
static msghdr receiveHeader(sockaddr_in& from, iovec& iov, char* control, size_t controlSize)
{
    msghdr msg{};
    msg.msg_name = &from;
    msg.msg_namelen = sizeof from;
    msg.msg_iov = &iov;
    msg.msg_iovlen = 1;
    msg.msg_control = control;
    msg.msg_controllen = controlSize;
    return msg;
}

bool IcmpSocket::readErrorQueue()
{
    for (;;) {
        sockaddr_in offender{};
        alignas(cmsghdr) char control[512];
        iovec iov{buffer_.data(), buffer_.size()};
        msghdr msg = receiveHeader(offender, iov, control, sizeof control);
        // The socket carries one echo, so whatever is queued is about it.
        if (::recvmsg(fd_, &msg, MSG_ERRQUEUE | MSG_DONTWAIT) < 0)
            return false;
        for (cmsghdr* c = CMSG_FIRSTHDR(&msg); c; c = CMSG_NXTHDR(&msg, c)) {
            if (c->cmsg_level != SOL_IP || c->cmsg_type != IP_RECVERR)
                continue;
            const auto* ee = reinterpret_cast<const sock_extended_err*>(CMSG_DATA(c));
            EchoReply reply;
            reply.Address = target_;
            reply.RoundTripTime = quint32(sent_.elapsed());
            if (ee->ee_origin == SO_EE_ORIGIN_ICMP) {
                reply.Status = statusForIcmp(ee->ee_type, ee->ee_code);
                const auto* from = reinterpret_cast<const sockaddr_in*>(SO_EE_OFFENDER(ee));
                if (from->sin_family == AF_INET)
                    reply.Address = ntohl(from->sin_addr.s_addr);
            } else {
                reply.Status = statusForErrno(int(ee->ee_errno));
            }
            if (reply.Status == EchoSuccess)
                reply.Status = EchoGeneralFailure;
            finish(reply);
            return true;
        }
    }
}

quint32 IcmpSocket::roundTrip(msghdr& msg) const
{
    // The kernel's receive stamp: a reply that waited while the event loop was
    // busy (a long tick) still shows the time it took on the wire. The wall
    // clock may step, so the stamp counts only within the monotonic elapsed time.
    const qint64 elapsed = sent_.elapsed();
    for (cmsghdr* c = CMSG_FIRSTHDR(&msg); c; c = CMSG_NXTHDR(&msg, c)) {
        if (c->cmsg_level != SOL_SOCKET || c->cmsg_type != SCM_TIMESTAMPNS)
            continue;
        timespec stamp;
        std::memcpy(&stamp, CMSG_DATA(c), sizeof stamp);
        const qint64 ms = (qint64(stamp.tv_sec) * 1000000000 + stamp.tv_nsec - sentWallNs_) / 1000000;
        if (ms >= 0 && ms <= elapsed)
            return quint32(ms);
    }
    return quint32(elapsed);
}

void IcmpSocket::readable()
{
    if (opened_ == Kind::Datagram && readErrorQueue())
        return;
    for (;;) {
        sockaddr_in from{};
        alignas(cmsghdr) char control[256];
        iovec iov{buffer_.data(), buffer_.size()};
        msghdr msg = receiveHeader(from, iov, control, sizeof control);
        const ssize_t n = ::recvmsg(fd_, &msg, 0);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            if (errno != EAGAIN && errno != EWOULDBLOCK && opened_ == Kind::Datagram)
                readErrorQueue();
            return;
        }
        const auto m = parseIcmpPacket(QByteArray::fromRawData(buffer_.data(), n), opened_ == Kind::Raw);
        if (!m)
            continue;
        // A datagram socket only hears its own echoes; the kernel rewrites their id.
        const bool ours = opened_ == Kind::Datagram || m->id == id_;
        if (m->type == IcmpEchoReply && ours && m->sequence == sequence_) {
            EchoReply reply;
            reply.Address = opened_ == Kind::Raw ? m->source : ntohl(from.sin_addr.s_addr);
            reply.Status = EchoSuccess;
            reply.RoundTripTime = roundTrip(msg);
            reply.DataSize = quint16(qMin<qsizetype>(m->dataSize, 0xffff));
            finish(reply);
            return;
        }
        if (opened_ == Kind::Raw && isIcmpError(m->type) && m->quotesEcho && m->id == id_
            && m->sequence == sequence_ && m->echoTarget == target_) {
            EchoReply reply;
            reply.Address = m->source;
            reply.Status = statusForIcmp(m->type, m->code);
            reply.RoundTripTime = roundTrip(msg);
            finish(reply);
            return;
        }
    }
}

}  // namespace orm
