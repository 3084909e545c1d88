// DoAlertAction: what a rule that has fired does.
#include "alerts/alert_tester.h"

#include "model/version.h"

#include <QCoreApplication>

namespace orm {

QString exitQuestionText()
{
    const QString crlf = QStringLiteral("\r\n");
    // The same words serve the shut-down, and "if not response" stands as written.
    return crlf + QStringLiteral("One of your Alerts may not be set up correctly and is") + crlf +
           QStringLiteral("already trying to Restart your computer. Would you like to disable this Alert?") + crlf +
           crlf + QStringLiteral("This Alert Action will continue in 60 seconds if not response is given.") + crlf +
           crlf;
}

void AlertTester::DoAlertAction(int alertIndex)
{
    if (alertIndex < 0 || size_t(alertIndex) >= Alerts.size())
        return;
    // A copy: the event loop may run inside an action, and the list may change meanwhile.
    const Alert a = Alerts[size_t(alertIndex)];
    if (!a.rEnabled || a.rAction < SendEmail || a.rAction > ShutDownComputer)
        return;

    switch (a.rAction) {
    case SendEmail:
        sendMail(a);
        break;
    case PlaySound:
        if (host_) {
            host_->playSound(a.aSound);
            host_->ShowMessage(AlertMailSubject, false, false);
        }
        break;
    case ShowMessageAction:
        if (host_)
            host_->ShowMessage(a.aMessage.isEmpty() ? QStringLiteral("Blank Alert Message") : a.aMessage, false, false);
        break;
    case SwitchLogging:
        // Saved on every tick the rule fires, for as long as it holds.
        if (Node* n = node(a.aSensor, a.aNode)) {
            n->LogData = a.aStartLogging;
            if (saveSettings)
                saveSettings();
        }
        break;
    case PrintGraphAction:
        if (host_)
            host_->printGraph(a.aSensor);
        break;
    case StartApplication:
        if (host_)
            host_->startApplication(a.aApplication);
        break;
    case RestartComputer:
        exitComputer(alertIndex, ExitRestart);
        break;
    case ShutDownComputer:
        exitComputer(alertIndex, ExitShutDown);
        break;
    default:
        break;
    }
    // With Closing set, the close timer unloads the program within two seconds.
}

void AlertTester::sendMail(const Alert& a)
{
    VDSMTPRelay& relay = VDSMTPRelay1;
    relay.SMTPServer = mail.SMTPServer;
    relay.SMTPAuthUser = mail.SMTPAuthUser;
    relay.SMTPAuthPass = mail.SMTPAuthPass;
    relay.MailSenderName = mail.MailSenderName;
    relay.MailSenderEMail = mail.MailSenderEMail;
    relay.MailRecipientEMail = a.aEmailAddress;
    relay.MailRecipientName = QLatin1String(ProductName);
    relay.MailSubject = AlertMailSubject;
    relay.MailBody = AlertMailBody;
    relay.SMTPPort = 25;  // no setting names a port; "host:port" in SMTPServer does
    // Without a sender or a relay nothing happens, and nothing is said.
    if (relay.MailSenderEMail.isEmpty() || relay.SMTPServer.isEmpty())
        return;
    relay.SendMail();
}

void AlertTester::exitComputer(int alertIndex, int mode)
{
    if (!host_)
        return;
    // In the first three minutes a rule that restarts the computer may be one
    // that fired again right after the last restart: the user gets a way out.
    if (model_.TickCount < ExitQuestionTicks) {
        host_->ShowMessage(exitQuestionText(), true, true);
        while (host_->AwaitingAnswer() && !model_.Closing)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // A program closing while the question is up does not end the session.
        if (model_.Closing)
            return;
        if (host_->Answer() == AlertAnswerYes) {
            // In memory until the next save.
            if (size_t(alertIndex) < Alerts.size())
                Alerts[size_t(alertIndex)].rEnabled = false;
            return;
        }
    }
    host_->ExitComputer(mode);
    // Closing follows even when the request was refused.
    model_.Closing = true;
    QCoreApplication::processEvents();
}

}  // namespace orm
