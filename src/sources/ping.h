// The echo of a Ping Node: sent on one due sample, read at the next, so that
// no tick ever waits for the network.
#pragma once

#include "model/model.h"
#include "sources/icmp_socket.h"

#include <QObject>
#include <QString>
#include <array>
#include <map>
#include <memory>

class QTimer;

namespace orm {

inline constexpr qint16 MaxPingPacketSize = 1472;
inline constexpr qint32 MaxPingTimeoutMs = 180000;
inline constexpr qint32 MaxPingFailures = 2000000000;
// A status read as a success beside 0; no real echo gives it, but it counts.
inline constexpr quint32 PingStatusAlsoSuccess = 1100;

// The entries of cmbPingPacketSize, in list order ("Lasge" as it stands).
struct PingSizeChoice {
    const char* Text;
    qint16 Bytes;
};
inline constexpr std::array<PingSizeChoice, 5> PingPacketSizeChoices{{
    {"Min", 100},
    {"Small", 200},
    {"Medium", 500},
    {"Lasge", 1000},
    {"Max", 1472},
}};

// The time-out of the echo a due Ping Node sends: SampleEverySeconds x 1000 - 100
// ms, so that a reply has nearly one whole sample period. SendPing caps it.
qint32 pingTimeoutFor(qint32 sampleEverySeconds);

// Runs the echoes of all Ping Nodes.
//
// A Node is a plain value record that moves inside `Nodes` when others are added
// or deleted, so nothing here points into it. Instead each Node gets a channel,
// kept here at a stable place, whose id lives in the Node:
//   PingState1  the channel id (0: none yet); stands where the event handle was
//   PingState2  the serial of the Node's latest echo; stands where the ICMP handle was
//   PingState3  failed echoes since start, held at 2000000000
//   PingState4  last round trip in ms; the caller stores it (see evaluate)
// The channel holds the reply buffer and the running echo. A copied Node record
// shares the ids; the copy whose serial is stale gets a channel of its own at its
// next send and reads 0 until then.
class PingService : public QObject {
    Q_OBJECT
public:
    // Real ICMP sockets.
    explicit PingService(QObject* parent = nullptr);
    // Sockets from `factory`, for tests.
    explicit PingService(EchoSocketFactory factory, QObject* parent = nullptr);
    ~PingService() override;

    // Starts the Node's next echo and returns at once. Caps `timeoutMs` at 180000
    // and the Node's PingPacketSize at 1472, writing both back. A running echo of
    // the Node that was not read gives way. A target that is not a dotted address
    // sends nothing; the next read counts a failure.
    void SendPing(Node& node, qint32& timeoutMs);

    // Ends the Node's running echo and gives its round trip in ms: 0 for no
    // result. Any status but 0 and 1100 adds one to PingState3. The round trip in
    // the reply buffer is then cleared, its status kept.
    qint32 ReadPing(Node& node);

    // The evaluation of a due Ping Node: ReadPing into the value and PingState4,
    // then SendPing with the time-out of pingTimeoutFor(sampleEverySeconds).
    double evaluate(Node& node, qint32 sampleEverySeconds);

    // The reply buffer of the Node's channel; nullptr when it has none.
    const EchoReply* reply(const Node& node) const;
    // An echo of the Node is under way.
    bool running(const Node& node) const;
    // Time-out of the Node's running echo in ms; -1 when none runs or it has none.
    qint32 runningTimeout(const Node& node) const;
    // Drops the Node's channel and clears PingState1 and PingState2.
    void release(Node& node);
    int channelCount() const { return int(channels_.size()); }

signals:
    // The echo of channel `channel` (a Node's PingState1) ended: a reply, an error
    // or its time-out. Always emitted from the event loop, never from inside a call
    // to this service; it is dropped when a newer echo of the channel went out first.
    void echoDone(qint32 channel);

private:
    struct Channel;
    Channel* current(const Node& node) const;
    Channel& channelFor(Node& node);
    void stop(Channel& channel);
    void ended(qint32 channel, qint32 serial, const EchoReply& reply);
    void failed(qint32 id, Channel& channel, quint32 status);
    void notify(qint32 id, qint32 serial);

    EchoSocketFactory factory_;
    // The kernel stamps arriving packets only once some socket has asked for stamps, and
    // switches that on a moment after the first asks: one socket holds it on from the start,
    // so that even the first echo's round trip is the kernel's and not the event loop's.
    int stampHolder_ = -1;
    // Node-based map: a channel and its reply buffer never move while they live.
    std::map<qint32, std::unique_ptr<Channel>> channels_;
};

}  // namespace orm
