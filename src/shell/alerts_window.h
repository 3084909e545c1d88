// frmAlerts: the window in which Alerts are listed, made, deleted and edited.
// It shows the state of an AlertWizard and forwards the user's clicks to it;
// the sentence's links open the settings dialog or a file picker.
#pragma once

#include "monitor/alert_wizard.h"
#include "shell/alert_settings_dialog.h"
#include "shell/control_panel.h"
#include "shell/widget_map.h"

#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTextBrowser;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

namespace orm {

class CustomToolTip;
class Monitor;

class AlertsWindow : public QWidget, public WidgetMapSource {
    Q_OBJECT
public:
    explicit AlertsWindow(Monitor& monitor, QWidget* parent = nullptr);
    ~AlertsWindow() override;

    AlertWizard& wizard() { return wizard_; }
    // The questions before a deletion; tests answer them themselves.
    void setPrompts(EditPrompts* prompts);
    // The file picker of "Sound" and "Application": its filter text in, a file
    // name out (empty when cancelled). Tests replace the dialog.
    void setFilePicker(std::function<QString(const QString& filter)> picker) { filePicker_ = std::move(picker); }
    // Drops and, when DisplayToolTips is on, builds the form's tool-tips anew.
    void InitToolTips();
    CustomToolTip& toolTips() const { return *tips_; }

    // RichWordOver at a point of the description's viewport.
    QString RichWordOver(const QPoint& viewportPoint) const;
    // Where the characters [first, end) of the sentence stand in the viewport (their first line).
    QRect spanRect(int first, int end) const;
    // ClickLink, and the dialog or file picker it asks for.
    void ClickLink(const QString& word);

    // The open settings dialog, or null.
    AlertSettingsDialog* settingsDialog() const { return dialog_; }
    QTimer* tmrAlerts() const { return tmrAlerts_; }
    QTextBrowser* description() const { return richAlertDesc_; }

    QStringList widgetMapLines() const override;

public slots:
    // Brings every control in line with the wizard's state.
    void refresh();
    // One tick of tmrAlerts.
    void tmrAlerts_Timer();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void connectControls();
    void rowChanged(QTreeWidgetItem* item);
    void showSetting(const QString& prompt);
    int characterAt(const QPoint& viewportPoint) const;

    Monitor& monitor_;
    MessageBoxPrompts boxes_;
    AlertWizard wizard_;
    std::function<QString(const QString&)> filePicker_;
    std::unique_ptr<CustomToolTip> tips_;
    QTreeWidget* lstvwAlerts_ = nullptr;
    QLineEdit* txtAlertName_ = nullptr;
    QListWidget* lstAlertOptions_ = nullptr;
    QTextBrowser* richAlertDesc_ = nullptr;
    QList<QLabel*> lblGen_;
    QPushButton* cmdNewAlert_ = nullptr;
    QPushButton* cmdDeleteAlert_ = nullptr;
    QPushButton* cmdBack_ = nullptr;
    QPushButton* cmdNext_ = nullptr;
    QPushButton* cmdExit_ = nullptr;
    QTimer* tmrAlerts_ = nullptr;
    QPointer<AlertSettingsDialog> dialog_;
    bool refreshing_ = false;
};

// The four help texts, keyed by control name, each as its title, two line ends
// and its text.
const QHash<QString, QString>& alertHelpTexts();

// The picker's filter text ("text|pattern|...") as a file dialog takes it, and
// the dialog itself: every pattern is matched by the picker, so "All Files
// (*.*)" also lists names without a dot and the executable filter also lists
// files with the executable bit.
QString openAlertFile(QWidget* parent, const QString& filter);

}  // namespace orm
