#include "sources/wifi.h"

#include "model/debug_log.h"

#include <QStringDecoder>
#include <cmath>
#include <limits>

namespace orm {

QString ssidText(const QByteArray& ssid)
{
    const qsizetype nul = ssid.indexOf('\0');
    const QByteArray bytes = nul < 0 ? ssid : ssid.left(nul);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    if (utf8.hasError())
        text = QString::fromLatin1(bytes);  // one character per byte
    return text;
}

bool signalPercent(qint32 dbm, qint32& percent)
{
    const double value = std::nearbyint((double(dbm) + 100.0) * (100.0 / 60.0));
    if (value > 100.0) {
        percent = 100;
        return true;
    }
    if (value < double(std::numeric_limits<qint32>::min()))
        return false;
    percent = qint32(value);
    return true;
}

bool WifiTables::Wifi()
{
    trace(QStringLiteral("Wifi 1.0"));
    available_ = false;
    std::vector<QByteArray> ssids;
    const WifiAnswer answer = source_.activeSsids(ssids);
    if (answer.status != WifiAnswer::Ok) {
        trace(QStringLiteral("Wifi 1.1 Bail"));
        trace(answer.status == WifiAnswer::NoWifi ? QStringLiteral("Wifi 1.9:Error - No WIFI Available")
                                                  : QStringLiteral("Wifi 2.0:Error - ") + answer.error);
        return false;
    }
    trace(QStringLiteral("Wifi 1.01"));
    std::vector<WifiRow> scan;
    for (const QByteArray& ssid : ssids) {
        trace(QStringLiteral("Wifi 1.02"));
        if (ssid.isEmpty() || ssid[0] == '\0')
            continue;  // no name: the row is left out
        QString name = ssidText(ssid);
        name.remove(QChar(u'\0'));
        trace(QStringLiteral("Wifi 1.03"));
        scan.push_back(WifiRow{name, 0});
        trace(QStringLiteral("Wifi 1.04"));
    }
    trace(QStringLiteral("Wifi 1.05"));
    scan_ = std::move(scan);
    available_ = true;
    trace(QStringLiteral("Wifi 1.06"));
    FixV();
    trace(QStringLiteral("Wifi 2.0"));
    return available_;
}

bool WifiTables::WifiStrength()
{
    trace(QStringLiteral("WifiStrength 1.0"));
    if (!available_ || scan_.empty()) {
        FixV();
        trace(QStringLiteral("WifiStrength 1.9:Error - No WIFI Available"));
        return false;
    }
    std::vector<qint32> dbm;
    const WifiAnswer answer = source_.activeSignals(dbm);
    if (answer.status != WifiAnswer::Ok) {
        trace(answer.status == WifiAnswer::NoWifi ? QStringLiteral("WifiStrength 1.9:Error - No WIFI Available")
                                                  : QStringLiteral("WifiStrength 2.0:Error - ") + answer.error);
        return false;
    }
    // Row k of the answer belongs to row k of the scan, by position alone: a
    // nameless interface left out of the scan shifts the signals after it.
    std::vector<WifiRow> scan = scan_;
    for (size_t k = 0; k < dbm.size(); ++k) {
        if (k >= scan.size()) {
            trace(QStringLiteral("WifiStrength 2.0:Error - Subscript out of range"));
            return false;
        }
        if (!signalPercent(dbm[k], scan[k].Signal)) {
            trace(QStringLiteral("WifiStrength 2.0:Error - Overflow"));
            return false;
        }
    }
    scan_ = std::move(scan);
    FixV();
    trace(QStringLiteral("WifiStrength 2.0"));
    return true;
}

void WifiTables::FixV()
{
    trace(QStringLiteral("FixV 1.0"));
    networks_.clear();
    if (scan_.empty())
        return;
    trace(QStringLiteral("FixV 1.1"));
    for (const WifiRow& row : scan_) {
        trace(QStringLiteral("FixV 1.2"));
        bool found = false;
        for (const WifiRow& have : networks_)
            found = found || have.SSID == row.SSID;
        if (found)
            continue;  // the first row of a name stays
        trace(QStringLiteral("FixV 1.3"));
        // Growing does not keep the contents: every row before the new one
        // is left empty. Nodes and the log rest on this.
        networks_.assign(networks_.size() + 1, WifiRow{});
        trace(QStringLiteral("FixV 1.4"));
        networks_.back() = row;
        trace(QStringLiteral("FixV 1.5"));
    }
    trace(QStringLiteral("FixV 1.6"));
}

}  // namespace orm
