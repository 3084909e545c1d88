// Wireless networks in use and their signal: the SSID of each active wireless
// interface and one percent figure for it. A WIFI Node picks its row of
// WifiNetworks by SSID; the log writes a column for each row.
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <vector>

namespace orm {

struct WifiRow {
    QString SSID;
    qint32 Signal = 0;  // percent
};

// How a query of the system's wireless management went.
struct WifiAnswer {
    enum Status { Ok, NoWifi, Failed };
    Status status = NoWifi;
    QString error;  // the system's text when Failed
};

// The two questions asked of the system. Each runs afresh, and row k of the
// second belongs to row k of the first by position alone.
class WifiSource {
public:
    virtual ~WifiSource() = default;
    // The SSID bytes of each active wireless interface, in interface order.
    virtual WifiAnswer activeSsids(std::vector<QByteArray>& ssids) = 0;
    // The received signal in dBm of each active wireless interface.
    virtual WifiAnswer activeSignals(std::vector<qint32>& dbm) = 0;
};

// The name of a raw SSID: the bytes up to the first NUL, as UTF-8 when they
// are valid UTF-8, else one character per byte. Empty when the first byte is 0.
QString ssidText(const QByteArray& ssid);

// (dBm + 100) x (100 / 60), rounded half to even, held at 100 from above and
// not at all from below. False when the figure leaves the 32-bit range.
bool signalPercent(qint32 dbm, qint32& percent);

// WifiScan, the rows of the last query as the system gives them, and
// WifiNetworks, what Nodes and the log read, with the procedures that fill them.
class WifiTables {
public:
    explicit WifiTables(WifiSource& source) : source_(source) {}

    // Fills WifiScan with the names in use; sets and gives WifiAvailable.
    // A failed query leaves the tables as they were.
    bool Wifi();
    // Fills in the signals of WifiScan and rebuilds WifiNetworks; false, with
    // the tables as they were, when there is nothing to fill or the query fails.
    bool WifiStrength();
    // Rebuilds WifiNetworks from WifiScan: each name once, and only the row
    // added last keeps its content, the earlier ones are left empty.
    void FixV();

    const std::vector<WifiRow>& WifiScan() const { return scan_; }
    const std::vector<WifiRow>& WifiNetworks() const { return networks_; }
    bool WifiAvailable() const { return available_; }

private:
    WifiSource& source_;
    std::vector<WifiRow> scan_;
    std::vector<WifiRow> networks_;
    bool available_ = false;
};

}  // namespace orm
