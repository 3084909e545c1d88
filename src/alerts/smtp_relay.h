// VDSMTPRelay: sends one e-mail over a plain TCP connection to a relay. SendMail
// waits for the dialogue to end while the event loop runs, so windows stay
// alive; the dialogue itself is a state machine driven by the socket's signals.
#pragma once

#include <QObject>
#include <QString>
#include <QTcpSocket>
#include <QTimer>
#include <functional>
#include <optional>

namespace orm {

class Clock;

// States of SMTPState.
enum SmtpState : qint16 {
    SmtpConnecting = 1,  // greeting awaited
    SmtpHelloSent = 2,
    SmtpAuthSent = 3,
    SmtpUserSent = 4,
    SmtpPassSent = 5,
    SmtpMailFromSent = 6,
    SmtpRcptToSent = 7,
    SmtpDataSent = 8,
    SmtpMessageSent = 9,
    SmtpQuitting = 10,
    SmtpFinished = 11,  // well or badly
};

// The text before the first "@", or the whole text when it holds none.
QString LocalPart(const QString& address);

// Where SMTPServer points: "host" (then `defaultPort`), "host:port", "[v6]" or
// "[v6]:port"; a bare IPv6 address takes `defaultPort`. Nothing when the port
// is not a number from 1 to 65535 or the host is empty.
struct RelayAddress {
    QString host;
    quint16 port = 25;
};
std::optional<RelayAddress> relayAddress(const QString& server, int defaultPort);

class VDSMTPRelay : public QObject {
    Q_OBJECT
public:
    explicit VDSMTPRelay(const Clock& clock, QObject* parent = nullptr);

    QString MailAttachment;  // a file sent uuencoded behind the body; empty for none
    QString MailSenderName;
    QString MailSenderEMail;
    QString MailRecipientName;
    QString MailRecipientEMail;
    QString MailSubject;
    QString MailBody;
    QString SMTPServer;
    qint32 SMTPPort = 25;
    QString SMTPAuthUser;
    QString SMTPAuthPass;

    // The program's folder, where an attachment is encoded before it is sent.
    QString tempFolder;
    // A relay that sends nothing for this long ends the send as a failure.
    int silenceLimitMs = 60000;
    // Polled while SendMail waits: the program is closing.
    std::function<bool()> closing;

    // Connects, walks the dialogue and returns once it has ended: true when it
    // reached QUIT, in this send or any earlier one (MailSent is never cleared);
    // false when the program began to close meanwhile or the relay's address
    // is not usable.
    bool SendMail();

    qint16 SMTPState() const { return SMTPState_; }
    bool MailSent() const { return MailSent_; }

private:
    void sckSMTP_DataArrival();
    void sckSMTP_Close();
    void send(const QByteArray& bytes);
    void sendMessage();
    void finish();
    bool authenticated() const;

    const Clock& clock_;
    QTcpSocket sckSMTP;
    QTimer silence_;
    qint16 SMTPState_ = SmtpFinished;
    bool MailSent_ = false;
    bool sending_ = false;
};

}  // namespace orm
