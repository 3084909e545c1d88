// The Alerts at run time: after every tick TestAlerts compares the raw stored
// samples of Nodes with each armed rule, composes the notice of a rule that
// passes and carries out its action at once.
#pragma once

#include "alerts/alert.h"
#include "alerts/alert_host.h"
#include "alerts/alert_options.h"
#include "alerts/smtp_relay.h"
#include "model/graph_view.h"
#include "model/model.h"

#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orm {

class Clock;

// The part of the program the Alerts read and change, owned by the monitor.
struct AlertModel {
    std::vector<Graph>& Sensors;
    std::vector<std::unique_ptr<GraphView>>& GraphForms;
    bool& Closing;
    const double& TickCount;
};

// The question of a restart or shut-down in the first 180 ticks.
QString exitQuestionText();
inline constexpr double ExitQuestionTicks = 180;

// The notice's default date and time text ("The current time and date is ...").
QString defaultDateTimeText(const QDateTime& t);
// A moment number yyyymmddhhnnss as "mm/dd/yyyy hh:nn:ss", from its digits.
QString momentText(double moment);

class AlertTester {
public:
    AlertTester(AlertModel model, const Clock& clock);

    // The rules and the mail settings (LoadAlerts, SaveAlerts) and the wizard's clause table.
    std::vector<Alert> Alerts;
    MailSettings mail;
    AlertOptionTable AlertOptions;

    // The notice of the rule that fired last.
    QString AlertMailSubject;
    QString AlertMailBody;

    // The one mail client; its folder is where attachments are encoded.
    VDSMTPRelay VDSMTPRelay1;

    // The platform's side of the actions; without one, only mail and logging act.
    void setHost(AlertActionHost* host) { host_ = host; }
    // Saves every setting after a rule switched a Node's logging.
    std::function<void()> saveSettings;
    // Told of each rule that fires, before its action (a count per Alert, say).
    std::function<void(int alertIndex)> onAlertFired;

    // One pass over every Alert, in order; a rule whose Graph or Node no longer
    // exists, or whose Graph samples every 0 seconds, is passed over.
    void TestAlerts();
    // The exception test against the other Node. False when that Node does
    // not exist (`passed` is then left alone).
    bool TestAlertException(int alertIndex, bool& passed) const;
    // Carries out the action of the Alert that has just fired.
    void DoAlertAction(int alertIndex);

private:
    enum class Outcome { Fires, Quiet, Stale };
    Outcome testAlert(int alertIndex);
    void composeNotice(const Alert& a);
    const GraphView* view(int graph) const;
    Node* node(int graph, int nodeIndex) const;
    void sendMail(const Alert& a);
    void exitComputer(int alertIndex, int mode);
    double presentMoment();

    AlertModel model_;
    const Clock& clock_;
    AlertActionHost* host_ = nullptr;
    std::optional<double> passMoment_;
};

}  // namespace orm
