#include "alerts/smtp_relay.h"

#include "alerts/base64.h"
#include "alerts/uucode.h"
#include "model/clock.h"

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>

namespace orm {

namespace {

const QByteArray CrLf("\r\n");

// The reply code: the number of the first three characters, 0 when they are not digits.
int replyCode(const QByteArray& data)
{
    if (data.size() < 3)
        return 0;
    int code = 0;
    for (int i = 0; i < 3; ++i) {
        if (data[i] < '0' || data[i] > '9')
            return 0;
        code = code * 10 + (data[i] - '0');
    }
    return code;
}

std::optional<quint16> portNumber(const QString& text)
{
    bool ok = false;
    const uint port = text.toUInt(&ok);
    if (!ok || port < 1 || port > 65535)
        return std::nullopt;
    return quint16(port);
}

}  // namespace

QString LocalPart(const QString& address)
{
    const qsizetype at = address.indexOf(QLatin1Char('@'));
    return at < 0 ? address : address.left(at);
}

std::optional<RelayAddress> relayAddress(const QString& server, int defaultPort)
{
    const QString s = server.trimmed();
    RelayAddress a;
    QString portText;
    if (s.startsWith(QLatin1Char('['))) {
        const qsizetype close = s.indexOf(QLatin1Char(']'));
        if (close < 0)
            return std::nullopt;
        a.host = s.mid(1, close - 1);
        const QString rest = s.mid(close + 1);
        if (!rest.isEmpty()) {
            if (!rest.startsWith(QLatin1Char(':')))
                return std::nullopt;
            portText = rest.mid(1);
        }
    } else if (s.count(QLatin1Char(':')) == 1) {
        const qsizetype colon = s.indexOf(QLatin1Char(':'));
        a.host = s.left(colon);
        portText = s.mid(colon + 1);
    } else {
        a.host = s;  // a name, an IPv4 address or a bare IPv6 address
    }
    if (a.host.isEmpty())
        return std::nullopt;
    const auto port = portText.isNull() ? portNumber(QString::number(defaultPort)) : portNumber(portText);
    if (!port)
        return std::nullopt;
    a.port = *port;
    return a;
}

VDSMTPRelay::VDSMTPRelay(const Clock& clock, QObject* parent) : QObject(parent), clock_(clock)
{
    silence_.setSingleShot(true);
    connect(&silence_, &QTimer::timeout, this, &VDSMTPRelay::finish);
    connect(&sckSMTP, &QTcpSocket::readyRead, this, &VDSMTPRelay::sckSMTP_DataArrival);
    connect(&sckSMTP, &QTcpSocket::disconnected, this, &VDSMTPRelay::sckSMTP_Close);
    connect(&sckSMTP, &QTcpSocket::errorOccurred, this, &VDSMTPRelay::sckSMTP_Close);
}

bool VDSMTPRelay::SendMail()
{
    if (sending_)
        return false;
    sckSMTP.abort();
    SMTPState_ = SmtpConnecting;
    const auto address = relayAddress(SMTPServer, SMTPPort);
    if (!address) {
        SMTPState_ = SmtpFinished;
        return false;
    }
    sending_ = true;
    silence_.start(silenceLimitMs);
    sckSMTP.connectToHost(address->host, address->port);
    bool closed = false;
    while (SMTPState_ != SmtpFinished) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (closing && closing()) {
            closed = true;
            break;
        }
    }
    silence_.stop();
    if (closed)
        sckSMTP.abort();
    sending_ = false;
    return closed ? false : MailSent_;
}

bool VDSMTPRelay::authenticated() const
{
    return !SMTPAuthUser.trimmed().isEmpty() && !SMTPAuthPass.trimmed().isEmpty();
}

void VDSMTPRelay::send(const QByteArray& bytes)
{
    sckSMTP.write(bytes);
}

void VDSMTPRelay::finish()
{
    SMTPState_ = SmtpFinished;
    silence_.stop();
    sckSMTP.abort();
}

void VDSMTPRelay::sckSMTP_Close()
{
    if (SMTPState_ != SmtpFinished)
        finish();
}

// Each arrival is one reply, however the server split it: only its first three
// characters are read.
void VDSMTPRelay::sckSMTP_DataArrival()
{
    const QByteArray data = sckSMTP.readAll();
    if (SMTPState_ == SmtpFinished)
        return;
    silence_.start(silenceLimitMs);
    const int code = replyCode(data);
    const bool auth = authenticated();
    const QByteArray mailFrom = "MAIL FROM: <" + MailSenderEMail.toUtf8() + ">" + CrLf;

    switch (code) {
    case 220:
        SMTPState_ = SmtpHelloSent;
        send(auth ? "EHLO " + LocalPart(SMTPAuthUser).toUtf8() + CrLf
                  : "HELO " + LocalPart(MailSenderEMail).toUtf8() + CrLf);
        return;
    case 250:
        if (SMTPState_ == SmtpHelloSent) {
            SMTPState_ = auth ? SmtpAuthSent : SmtpMailFromSent;
            send(auth ? QByteArray("AUTH LOGIN") + CrLf : mailFrom);
        } else if (SMTPState_ == SmtpMailFromSent) {
            SMTPState_ = SmtpRcptToSent;
            send("RCPT TO: <" + MailRecipientEMail.toUtf8() + ">" + CrLf);
        } else if (SMTPState_ == SmtpRcptToSent) {
            SMTPState_ = SmtpDataSent;
            send(QByteArray("DATA") + CrLf);
        } else if (SMTPState_ == SmtpMessageSent) {
            // QUIT without a line end, and no wait for its reply.
            SMTPState_ = SmtpQuitting;
            send("QUIT");
            sckSMTP.flush();
            SMTPState_ = SmtpFinished;
            silence_.stop();
            sckSMTP.disconnectFromHost();
            MailSent_ = true;
        }
        return;
    case 251:
        if (SMTPState_ == SmtpRcptToSent) {
            SMTPState_ = SmtpDataSent;
            send(QByteArray("DATA") + CrLf);
        }
        return;
    case 334:
        if (SMTPState_ == SmtpAuthSent) {
            SMTPState_ = SmtpUserSent;
            send(Base64Encode(SMTPAuthUser, 0).toLatin1() + CrLf);
        } else if (SMTPState_ == SmtpUserSent) {
            SMTPState_ = SmtpPassSent;
            send(Base64Encode(SMTPAuthPass, 0).toLatin1() + CrLf);
        }
        return;
    case 235:
        if (SMTPState_ == SmtpPassSent) {
            SMTPState_ = SmtpMailFromSent;
            send(mailFrom);
        }
        return;
    case 354:
        if (SMTPState_ == SmtpDataSent) {
            SMTPState_ = SmtpMessageSent;
            sendMessage();
        }
        return;
    default:
        // 221, 4xx, 5xx and anything that does not parse: the dialogue ends.
        finish();
        return;
    }
}

void VDSMTPRelay::sendMessage()
{
    const QDateTime now = clock_.now();
    // The header names stay in capitals and the date in this form; no dot
    // stuffing is done on the body.
    const QByteArray head = "DATE: " + now.toString(QStringLiteral("dd MM yyyy HH:mm:ss")).toUtf8() + CrLf +
                            "FROM: " + MailSenderName.toUtf8() + " <" + MailSenderEMail.toUtf8() + ">" + CrLf +
                            "TO: " + MailRecipientName.toUtf8() + " <" + MailRecipientEMail.toUtf8() + ">" +
                            CrLf + "SUBJECT: " + MailSubject.toUtf8() + CrLf + CrLf + MailBody.toUtf8();
    if (MailAttachment.isEmpty()) {
        send(head + CrLf + "." + CrLf);
        return;
    }

    const QString temporary = tempFolder + QStringLiteral("/tmpSendMail") +
                              now.toString(QStringLiteral("MMddyyyyHHmmss")) +
                              QString::number(QRandomGenerator::global()->bounded(1001)) + QStringLiteral(".tmp");
    QFile::remove(temporary);
    // A missing attachment leaves the message without it.
    UUEncodeFile(MailAttachment, temporary, true);
    send(head);
    QFile encoded(temporary);
    if (encoded.open(QIODevice::ReadOnly)) {
        while (!encoded.atEnd())
            send(encoded.read(8192));
        encoded.close();
    }
    QFile::remove(temporary);
    send(CrLf + CrLf + "." + CrLf);
}

}  // namespace orm
