#include "sources/host_test.h"

#include "sources/ping.h"

#include <QRegularExpression>
#include <cmath>

namespace orm {

bool hostTextNeedsAddress(const QString& text)
{
    // "#*.#*.#*.#*" and "*[a-z]*" as the Like operator reads them, case sensitive.
    static const QRegularExpression dotted(
        QStringLiteral("\\A[0-9].*\\.[0-9].*\\.[0-9].*\\.[0-9].*\\z"),
        QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression lower(QStringLiteral("[a-z]"));
    return !dotted.match(text).hasMatch() || lower.match(text).hasMatch();
}

HostTest::HostTest(PingService& pings, QObject* parent, quint16 port)
    : QObject(parent), pings_(pings), port_(port)
{
    tmrOut_.setInterval(ConnectTimeoutMs);
    connect(&tmrOut_, &QTimer::timeout, this, &HostTest::timedOut);
    connect(&socket_, &QTcpSocket::connected, this, &HostTest::connected);
    connect(&pings_, &PingService::echoDone, this, &HostTest::echoDone);
}

HostTest::~HostTest()
{
    pings_.release(scratch_);
}

QString HostTest::trial(int element) const
{
    return element >= 0 && element < int(trials_.size()) ? trials_[size_t(element)] : QString();
}

void HostTest::setStatus(const QString& text)
{
    status_ = text;
    emit statusChanged(text);
}

void HostTest::setChecking(const QString& text)
{
    checking_ = text;
    emit checkingChanged(text);
}

void HostTest::setTrial(int element, const QString& text)
{
    trials_[size_t(element)] = text;
    emit trialChanged(element, text);
}

void HostTest::closeSocket()
{
    connecting_ = false;
    socket_.abort();
}

void HostTest::resolveClicked(int image, Qt::MouseButton button, const QString& hostText)
{
    if (image < 0 || image > 2 || button != Qt::LeftButton)
        return;
    if (busy()) {
        // tmrOut is left running, as it always was: a stopped attempt still
        // ends in "Error Connecting..." when it fires.
        if (rounds_) {
            rounds_ = false;
            pings_.release(scratch_);
            setChecking(QString());
        }
        closeSocket();
        setStatus(HostStoppedText);
        emit finished();
        return;
    }
    if (hostText.isEmpty())
        return;
    hostText_ = hostText;
    setStatus(HostResolvingText);
    connecting_ = true;
    // Refusals and failed look-ups are not reported: only tmrOut ends an attempt
    // that does not connect.
    socket_.abort();
    socket_.connectToHost(hostText, port_, QIODevice::ReadWrite, QAbstractSocket::IPv4Protocol);
    tmrOut_.start();
}

void HostTest::connected()
{
    if (!connecting_)
        return;
    const QString address = socket_.peerAddress().toString();
    setStatus(HostResolvedText);
    tmrOut_.stop();
    emit hostColourChanged(ResolvedColour);
    closeSocket();
    if (hostTextNeedsAddress(hostText_)) {
        hostText_ = address;
        emit hostTextChanged(hostText_);
    }

    pings_.release(scratch_);
    scratch_ = Node{};
    scratch_.NodeType = PingType;
    scratch_.PingIP = hostText_;
    scratch_.PingPacketSize = 100;
    setChecking(PingCheckingText);
    rounds_ = true;
    round_ = 0;
    counted_ = 0;
    sum_ = 0;
    sendRound();
}

void HostTest::sendRound()
{
    qint32 timeoutMs = EchoTimeoutMs;
    pings_.SendPing(scratch_, timeoutMs);
}

void HostTest::echoDone(qint32 channel)
{
    if (!rounds_ || channel != scratch_.PingState1)
        return;
    const qint32 result = pings_.ReadPing(scratch_);
    if (result == 0) {
        setTrial(round_, PingNoResponseText);
        emit imagesUpdated();
    } else {
        setTrial(round_, QString::number(result) + PingMsSuffix);
        ++counted_;
        sum_ += result;
    }
    if (++round_ < Rounds) {
        sendRound();
        return;
    }
    rounds_ = false;
    pings_.release(scratch_);
    setTrial(3, counted_ == 0 ? PingNoResponseText
                              : QString::number(qint64(std::floor(sum_ / counted_))) + PingMsSuffix);
    setChecking(QString());
    emit finished();
}

void HostTest::timedOut()
{
    setStatus(HostErrorText);
    emit hostColourChanged(FailedColour);
    closeSocket();
    for (int i = 0; i < 4; ++i)
        setTrial(i, PingNoResponseText);
    emit imagesRestored();
    tmrOut_.stop();
    emit finished();
}

}  // namespace orm
