// One ICMP echo on its own non-blocking socket. The reply is picked up by a
// socket notifier from the event loop; nothing here ever waits.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QtGlobal>
#include <array>
#include <functional>
#include <memory>
#include <optional>

class QSocketNotifier;
struct msghdr;

namespace orm {

// The status of an echo, in the numbers of the ICMP API the program was built on:
// 0 for a reply, 11010 for a time-out, the others for errors.
enum EchoStatus : quint32 {
    EchoSuccess = 0,
    EchoBufTooSmall = 11001,
    EchoDestNetUnreachable = 11002,
    EchoDestHostUnreachable = 11003,
    EchoDestProtUnreachable = 11004,
    EchoDestPortUnreachable = 11005,
    EchoNoResources = 11006,
    EchoBadOption = 11007,
    EchoHwError = 11008,
    EchoPacketTooBig = 11009,
    EchoTimedOut = 11010,
    EchoBadRequest = 11011,
    EchoBadRoute = 11012,
    EchoTtlExpiredTransit = 11013,
    EchoTtlExpiredReassem = 11014,
    EchoParamProblem = 11015,
    EchoSourceQuench = 11016,
    EchoBadDestination = 11018,
    EchoGeneralFailure = 11050,
};

// What an ended echo leaves behind: the fields of the reply buffer that matter.
struct EchoReply {
    quint32 Address = 0;        // IPv4 of the host that answered, host byte order
    quint32 Status = EchoSuccess;
    quint32 RoundTripTime = 0;  // whole milliseconds
    quint16 DataSize = 0;       // bytes of echoed data
};

// One ICMP message as read from a socket.
struct IcmpMessage {
    quint8 type = 0;
    quint8 code = 0;
    quint16 id = 0;          // of the echo, or of the echo an error quotes
    quint16 sequence = 0;
    quint32 source = 0;      // sender, host order; 0 when the packet had no IP header
    bool quotesEcho = false; // an error message carrying the head of one of our echoes
    quint32 echoTarget = 0;  // where that quoted echo was going, host order
    qsizetype dataSize = 0;  // bytes after the 8-byte ICMP header of an echo or reply
};

inline constexpr quint8 IcmpEchoReply = 0;
inline constexpr quint8 IcmpEchoRequest = 8;

// The Internet checksum (one's complement sum of 16-bit words).
quint16 internetChecksum(const char* data, qsizetype size);

// An ICMP echo request with its checksum filled in.
QByteArray makeEchoRequest(quint16 id, quint16 sequence, const QByteArray& payload);

// Parses a received packet. A raw socket hands over the IP header as well
// (`withIpHeader`), a datagram ICMP socket only the ICMP message. Anything cut
// short or not ICMP gives nothing.
std::optional<IcmpMessage> parseIcmpPacket(const QByteArray& packet, bool withIpHeader);

// True for the message types that report the failure of a datagram.
bool isIcmpError(quint8 type);

// The echo status for an ICMP type and code (0 for an echo reply).
quint32 statusForIcmp(quint8 type, quint8 code);

// The echo status for an errno of socket() or sendto().
quint32 statusForErrno(int err);

// One echo. Tests put fakes in its place to inject what the machine cannot give.
class EchoSocket {
public:
    using Done = std::function<void(const EchoReply&)>;
    virtual ~EchoSocket() = default;
    // Sends one echo of `payload` to `address` (IPv4, host order). Returns 0 when
    // it went out; else the status that ends it at once, and `done` never runs.
    // Otherwise `done` runs at most once, later, from the event loop, and never
    // after the socket is destroyed. The owner may destroy the socket inside `done`.
    virtual quint32 start(quint32 address, const QByteArray& payload, Done done) = 0;
};

using EchoSocketFactory = std::function<std::unique_ptr<EchoSocket>()>;

class IcmpSocket final : public EchoSocket {
public:
    // Auto takes a datagram ICMP socket where net.ipv4.ping_group_range allows
    // one, else a raw socket (root or CAP_NET_RAW).
    enum class Kind { Auto, Datagram, Raw };

    explicit IcmpSocket(Kind kind = Kind::Auto);
    ~IcmpSocket() override;
    IcmpSocket(const IcmpSocket&) = delete;
    IcmpSocket& operator=(const IcmpSocket&) = delete;

    quint32 start(quint32 address, const QByteArray& payload, Done done) override;

    // The kind actually opened by start(); Auto before that or when none opened.
    Kind opened() const { return opened_; }

private:
    quint32 open();
    void readable();
    quint32 roundTrip(msghdr& msg) const;
    bool readErrorQueue();
    void finish(const EchoReply& reply);

    Kind wanted_;
    Kind opened_ = Kind::Auto;
    int fd_ = -1;
    QSocketNotifier* notifier_ = nullptr;
    quint32 target_ = 0;
    quint16 id_ = 0;
    quint16 sequence_ = 0;
    QElapsedTimer sent_;
    qint64 sentWallNs_ = 0;
    Done done_;
    // Every read lands here; the largest echo we send is 1500 bytes with headers.
    std::array<char, 4096> buffer_{};
};

}  // namespace orm
