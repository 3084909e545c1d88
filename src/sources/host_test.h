// The host test of the ping panel: a TCP connection to port 80 proves the host
// and turns a name into an address, then three echoes give a first round trip.
// Everything runs on signals; the event loop never stops for it.
#pragma once

#include "model/model.h"

#include <QObject>
#include <QString>
#include <QTcpSocket>
#include <QTimer>
#include <array>

namespace orm {

class PingService;

inline const QString HostResolvingText = QStringLiteral("Host to ping:                     Resolving...");
inline const QString HostResolvedText = QStringLiteral("Host to ping:                     Resolved");
inline const QString HostStoppedText = QStringLiteral("Host to ping:                     Stopped...");
inline const QString HostErrorText = QStringLiteral("Host to ping:           Error Connecting...");
inline const QString PingCheckingText = QStringLiteral("Checking Ping Response. Please Wait...");
inline const QString PingNoResponseText = QStringLiteral("! No Response !");
inline const QString PingMsSuffix = QStringLiteral(" mSeconds");

// True when the typed host must give way to the address the connection found:
// it is not like "#*.#*.#*.#*" (a digit, any run, a dot, ...) or it holds a
// lower-case letter anywhere.
bool hostTextNeedsAddress(const QString& text);

class HostTest : public QObject {
    Q_OBJECT
public:
    static constexpr quint16 WebPort = 80;
    static constexpr int ConnectTimeoutMs = 5000;  // tmrOut
    static constexpr qint32 EchoTimeoutMs = 5000;
    static constexpr int Rounds = 3;
    static constexpr qint32 ResolvedColour = 65280;  // green, 0x00BBGGRR
    static constexpr qint32 FailedColour = 255;      // red

    // `pings` must outlive the test. `port` is 80 but for tests.
    explicit HostTest(PingService& pings, QObject* parent = nullptr, quint16 port = WebPort);
    ~HostTest() override;

    // imgResolve clicked: only images 0 to 2 and the left button act. While a
    // test runs, a click stops it; otherwise a non-empty `hostText` (txtPingIP)
    // starts one.
    void resolveClicked(int image, Qt::MouseButton button, const QString& hostText);

    // The connection attempt or the echo rounds are running.
    bool busy() const { return connecting_ || rounds_; }

    // What the labels last showed.
    QString status() const { return status_; }      // lblGen(22)
    QString checking() const { return checking_; }  // lblStatus
    QString trial(int element) const;               // lblPingTrial(0..3)
    QString hostText() const { return hostText_; }  // txtPingIP as the test left it

signals:
    void statusChanged(const QString& text);
    void checkingChanged(const QString& text);
    void trialChanged(int element, const QString& text);
    // txtPingIP takes the address; the panel stores it in the Node as any edit.
    void hostTextChanged(const QString& text);
    void hostColourChanged(qint32 colour);
    // imgResolve: a round without response updates the images, a time-out restores them.
    void imagesUpdated();
    void imagesRestored();
    // The test came to an end: rounds done, time-out or stopped.
    void finished();

private:
    void connected();
    void timedOut();
    void sendRound();
    void echoDone(qint32 channel);
    void closeSocket();
    void setStatus(const QString& text);
    void setChecking(const QString& text);
    void setTrial(int element, const QString& text);

    PingService& pings_;
    quint16 port_;
    QTcpSocket socket_;  // wskResolve
    QTimer tmrOut_;
    bool connecting_ = false;  // wskResolve is not closed
    bool rounds_ = false;
    Node scratch_;
    int round_ = 0;
    int counted_ = 0;
    double sum_ = 0;
    QString status_;
    QString checking_;
    QString hostText_;
    std::array<QString, 4> trials_;
};

}  // namespace orm
