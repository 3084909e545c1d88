// The wireless query over nl80211 (generic netlink through libnl-genl-3): per
// associated station interface, its SSID and the signal of its access point.
#pragma once

#include "sources/wifi.h"

#include <QByteArray>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace orm {

// One wireless interface as NL80211_CMD_GET_INTERFACE describes it.
struct Nl80211Interface {
    quint32 ifindex = 0;
    quint32 iftype = 0;  // NL80211_IFTYPE_*
    QByteArray ssid;     // empty when not associated
    // A client interface that is joined to a network.
    bool associated() const;
};

// The attributes of one interface message (the bytes after the generic
// netlink header); nothing when they are malformed or carry no ifindex.
std::optional<Nl80211Interface> parseNl80211Interface(const QByteArray& attributes);

// The signal in dBm of one station message (NL80211_CMD_GET_STATION); the
// last reading, else the average; nothing when the message has neither.
std::optional<qint32> parseNl80211StationSignal(const QByteArray& attributes);

// The associated interfaces in ifindex order: the rows of both queries.
std::vector<Nl80211Interface> activeInterfaces(std::vector<Nl80211Interface> all);

// A machine without the nl80211 family or without any wireless interface
// answers "no Wi-Fi"; one whose interfaces are all unassociated answers
// with no rows.

class Nl80211Source final : public WifiSource {
public:
    WifiAnswer activeSsids(std::vector<QByteArray>& ssids) override;
    WifiAnswer activeSignals(std::vector<qint32>& dbm) override;
};

}  // namespace orm
