#include "monitor/alert_wizard.h"

#include "alerts/alert_store.h"
#include "model/version.h"
#include "monitor/alert_sentence.h"

namespace orm {

QString deleteAlertTitle(const QString& itemText)
{
    return QLatin1String(ProductName) + QStringLiteral(" - Delete ") + itemText;
}

QString deleteAlertText(const QString& itemText)
{
    return QStringLiteral("Are you sure you want to delete this Alert (") + itemText + QStringLiteral(")?");
}

AlertWizard::AlertWizard(Monitor& monitor, EditPrompts* prompts) : monitor_(monitor), prompts_(prompts) {}

void AlertWizard::load()
{
    rebuildRows();
    editorsEnabled = false;
    AlertPage = 0;
    ShowAlertPage();
}

void AlertWizard::rebuildRows()
{
    rows.clear();
    selectedRow = -1;
    for (size_t i = 0; i < alerts().size(); ++i)
        rows.push_back({alerts()[i].rName, alerts()[i].rEnabled, int(i)});
}

Alert* AlertWizard::selectedAlert()
{
    if (selectedRow < 0 || size_t(selectedRow) >= rows.size())
        return nullptr;
    const int index = rows[size_t(selectedRow)].tag;
    return index >= 0 && size_t(index) < alerts().size() ? &alerts()[size_t(index)] : nullptr;
}

void AlertWizard::save()
{
    saved_ = SaveAlerts(monitor_.store(), alerts(), mail());
}

void AlertWizard::redraw()
{
    if (const Alert* a = selectedAlert())
        drawSentence(richAlertDesc, *a, monitor_.alertTester.AlertOptions, monitor_.Sensors);
}

void AlertWizard::ShowAlertPage()
{
    options.clear();
    optionIndex = -1;
    switch (AlertPage) {
    case 0:
        richAlertDesc.clear();
        nextText = QStringLiteral("Next >");
        nextEnabled = false;
        return;
    case 1:
        nextText = QStringLiteral("Next >");
        nextEnabled = true;
        break;
    case 2:
        nextText = QStringLiteral("Next >");
        break;
    case 3:
        nextText = QStringLiteral("Finish");
        break;
    case 4:
        // The edit is done.
        AlertPage = 0;
        nextText = QStringLiteral("Next >");
        nextEnabled = false;
        editorsEnabled = false;
        focusToList = true;
        richAlertDesc.clear();
        return;
    default:
        return;
    }
    options = pageOptions(AlertPage, monitor_.alertTester.AlertOptions);
    const Alert* a = selectedAlert();
    if (!a)
        return;
    // The clause already chosen shows selected, and its sentence is drawn.
    const auto index = optionListIndex(AlertPage, *a);
    if (index && *index >= 0 && *index < options.size())
        lstAlertOptions_Click(*index);
}

void AlertWizard::cmdNext()
{
    const Alert* a = selectedAlert();
    if (a && AlertPage >= 1 && AlertPage <= 3 && !options.isEmpty()) {
        const qint16 codes[3] = {a->rAction, a->rCondition, a->rException};
        // A clause still unset takes the first option.
        if (codes[AlertPage - 1] == -1)
            lstAlertOptions_Click(0);
    }
    ++AlertPage;
    ShowAlertPage();
}

void AlertWizard::cmdBack()
{
    if (AlertPage <= 0)
        return;  // page 0 is the resting state
    --AlertPage;
    ShowAlertPage();
}

void AlertWizard::lstAlertOptions_Click(int index)
{
    Alert* a = selectedAlert();
    if (!a)
        return;
    optionIndex = index;
    chooseOption(AlertPage, index, options.value(index), *a);
    redraw();
    save();
}

void AlertWizard::cmdNewAlert()
{
    editorsEnabled = true;
    Alert a = newAlert(int(rows.size()));
    alerts().push_back(a);
    rows.push_back({a.rName, a.rEnabled, int(alerts().size()) - 1});
    selectedRow = int(rows.size()) - 1;
    alertName = a.rName;
    AlertPage = 1;
    ShowAlertPage();
    save();
}

void AlertWizard::cmdDeleteAlert()
{
    editorsEnabled = false;
    AlertPage = 0;
    if (rows.empty() || alerts().empty() || selectedRow < 0 || size_t(selectedRow) >= rows.size())
        return;
    const QString item = rows[size_t(selectedRow)].text;
    if (!prompts_ || !prompts_->askYesNo(deleteAlertTitle(item), deleteAlertText(item))) {
        ShowAlertPage();
        return;
    }
    const int index = rows[size_t(selectedRow)].tag;
    // The keys go as far as there are Graphs; any beyond stay, bounded by the count.
    for (size_t i = 0; i < monitor_.Sensors.size(); ++i)
        monitor_.store().deleteValue(alertKey(int(i)), QString());
    if (index >= 0 && size_t(index) < alerts().size())
        alerts().erase(alerts().begin() + index);
    save();
    rebuildRows();
    alertName.clear();
    ShowAlertPage();
}

void AlertWizard::selectRow(int row)
{
    if (row < 0 || size_t(row) >= rows.size())
        return;
    selectedRow = row;
    const Alert* a = selectedAlert();
    alertName = a ? a->rName : rows[size_t(row)].text;
    editorsEnabled = true;
    richAlertDesc.clear();
    AlertPage = 1;
    ShowAlertPage();
}

void AlertWizard::checkRow(int row, bool checked)
{
    if (row < 0 || size_t(row) >= rows.size())
        return;
    rows[size_t(row)].checked = checked;
    const int index = rows[size_t(row)].tag;
    if (index >= 0 && size_t(index) < alerts().size())
        alerts()[size_t(index)].rEnabled = checked;
    save();
    selectRow(row);
}

void AlertWizard::renameSelected(const QString& name)
{
    Alert* a = selectedAlert();
    if (!a)
        return;
    rows[size_t(selectedRow)].text = name;
    a->rName = name;
    alertName = name;
    save();
}

std::optional<LinkRequest> AlertWizard::ClickLink(const QString& word)
{
    Alert* a = selectedAlert();
    if (!a || word.isEmpty())
        return std::nullopt;
    const AlertLink* link = findAlertLink(word);
    if (!link)
        link = alertLinkOfTag(word.front());  // a value behind its tag
    if (!link)
        return std::nullopt;
    switch (link->action) {
    case LinkAction::ToggleStart:
        a->aStartLogging = !a->aStartLogging;
        redraw();
        save();
        return LinkRequest{link->action, QString()};
    case LinkAction::SoundFile:
    case LinkAction::ApplicationFile:
        return LinkRequest{link->action, QString()};
    case LinkAction::Setting:
        setting = currentSetting(link->kind, *a, mail());
        return LinkRequest{link->action, link->prompt};
    }
    return std::nullopt;
}

void AlertWizard::fileChosen(LinkAction action, const QString& file)
{
    Alert* a = selectedAlert();
    if (!a || file.isEmpty())
        return;
    if (action == LinkAction::SoundFile)
        a->aSound = file;
    else if (action == LinkAction::ApplicationFile)
        a->aApplication = file;
    redraw();
    save();
}

void AlertWizard::settingOpened()
{
    setting.Cancelled = false;
    setting.Open = true;
    tmrAlertsEnabled = true;
}

void AlertWizard::tmrAlerts_Timer()
{
    if (setting.Open) {
        save();
        return;
    }
    if (!setting.Cancelled) {
        if (Alert* a = selectedAlert()) {
            storeSetting(setting, *a, mail());
            if (setting.Kind == SmtpSettingsKind) {
                VDSMTPRelay& relay = monitor_.alertTester.VDSMTPRelay1;
                relay.SMTPServer = mail().SMTPServer;
                relay.SMTPAuthUser = mail().SMTPAuthUser;
                relay.SMTPAuthPass = mail().SMTPAuthPass;
                relay.MailSenderName = mail().MailSenderName;
                relay.MailSenderEMail = mail().MailSenderEMail;
            }
            if (optionIndex >= 0)
                lstAlertOptions_Click(optionIndex);
            else
                redraw();
        }
    }
    tmrAlertsEnabled = false;
    save();
}

}  // namespace orm
