// frmAlerts without its widgets: the list of saved Alerts, the three pages of
// options, the sentence, the links and the values that come back from the
// settings dialog. Every change is saved at once. The window shows this state
// and forwards the user's clicks.
#pragma once

#include "alerts/alert_links.h"
#include "monitor/editing.h"
#include "monitor/monitor.h"

#include <QTextDocument>
#include <optional>
#include <vector>

namespace orm {

// A row of lstvwAlerts: the rule's name, its check mark, the Alert's index.
struct AlertRow {
    QString text;
    bool checked = false;
    int tag = -1;
};

// What a click on a link asks of the window.
struct LinkRequest {
    LinkAction action = LinkAction::Setting;
    QString prompt;  // for a setting
};

inline constexpr int AlertTimerInterval = 200;  // tmrAlerts

class AlertWizard {
public:
    AlertWizard(Monitor& monitor, EditPrompts* prompts);
    void setPrompts(EditPrompts* prompts) { prompts_ = prompts; }

    // Form load: a row for each Alert, page 0.
    void load();

    // ShowAlertPage: lays out page AlertPage (4 ends the edit and becomes 0).
    void ShowAlertPage();
    void cmdNext();
    void cmdBack();
    // A click on the option list's entry `index`.
    void lstAlertOptions_Click(int index);

    void cmdNewAlert();
    // Asks first; a No, an empty list or no selected row leaves everything.
    void cmdDeleteAlert();
    // A row is selected, or its check box changed (which also selects it).
    void selectRow(int row);
    void checkRow(int row, bool checked);
    // txtAlertName changed.
    void renameSelected(const QString& name);

    // ClickLink: nothing when the word is no link (and its first letter no tag).
    // A toggle is done at once; a setting fills `setting` for the dialog.
    std::optional<LinkRequest> ClickLink(const QString& word);
    // The file picker of "Sound" or "Application" ended; an empty name changes nothing.
    void fileChosen(LinkAction action, const QString& file);
    // The settings dialog opens: the transfer is open and tmrAlerts runs.
    void settingOpened();
    // ClickLink's last step, once the dialog or picker is gone.
    void linkDone() { save(); }
    // One tick of tmrAlerts: saves while the dialog is open, then takes its
    // values into the selected Alert, redraws and stops.
    void tmrAlerts_Timer();

    // The form's state.
    int AlertPage = 0;
    std::vector<AlertRow> rows;
    int selectedRow = -1;
    QString alertName;
    bool editorsEnabled = false;  // txtAlertName, its labels and the option list
    QStringList options;
    int optionIndex = -1;
    QString nextText = QStringLiteral("&Next >");
    bool nextEnabled = true;
    bool focusToList = false;  // set when an edit ends, for the window to move the focus
    bool tmrAlertsEnabled = false;
    AlertSetting setting;
    QTextDocument richAlertDesc;

    // The selected row's Alert; null when none.
    Alert* selectedAlert();
    // The Alert a link edits, for the window's file picker and dialog.
    const std::vector<Graph>& sensors() const { return monitor_.Sensors; }
    MailSettings& mail() { return monitor_.alertTester.mail; }
    // True when the last save reached the disk.
    bool saved() const { return saved_; }

private:
    void save();
    void redraw();
    void rebuildRows();
    std::vector<Alert>& alerts() { return monitor_.alertTester.Alerts; }

    Monitor& monitor_;
    EditPrompts* prompts_;
    bool saved_ = true;
};

// The question before a deletion.
QString deleteAlertTitle(const QString& itemText);
QString deleteAlertText(const QString& itemText);

}  // namespace orm
