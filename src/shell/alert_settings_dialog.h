// frmAlertSettings: the small dialog that edits the one value behind a link of
// the Alert wizard. It shows only the controls its kind needs, starts from the
// transfer values and writes them back on OK; the wizard's tmrAlerts takes
// them from there.
#pragma once

#include "alerts/alert_links.h"
#include "model/model.h"

#include <QDialog>
#include <QList>
#include <vector>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QTimeEdit;
class QWidget;

namespace orm {

class AlertSettingsDialog : public QDialog {
    Q_OBJECT
public:
    // `setting` is the wizard's transfer; the dialog reads and writes it.
    AlertSettingsDialog(AlertSetting& setting, const std::vector<Graph>& sensors, const QDateTime& present,
                        QWidget* parent = nullptr);

    // Lays the dialog out for setting.Kind with `prompt`, marks the transfer
    // open and shows it modal and topmost, without waiting for it.
    void ShowAlertSetting(const QString& prompt);

    QPushButton* okButton() const { return cmdOk_; }
    QPushButton* cancelButton() const { return cmdCancel_; }

public slots:
    void cmdOk_Click();
    void cmdCancel_Click();

protected:
    void done(int result) override;

private:
    QWidget* panel(const char* name, bool column = false);
    QLineEdit* lineEdit(QWidget* parent, const QString& name);
    QLabel* label(QWidget* parent, const QString& text);
    void fillNodes(int graph);
    void setMoment(int picker, double moment);
    double moment(int picker) const;

    AlertSetting& setting_;
    const std::vector<Graph>& sensors_;
    QDateTime present_;
    QLabel* lblPrompt_ = nullptr;
    QWidget* fraText_ = nullptr;
    QWidget* fraRange_ = nullptr;
    QWidget* fraGraph_ = nullptr;
    QWidget* fraNode_ = nullptr;
    QWidget* fraDate_ = nullptr;
    QWidget* fraTimeFrame_ = nullptr;
    QWidget* fraTimeLength_ = nullptr;
    QWidget* fraSMTP_ = nullptr;
    QLineEdit* txtValue_ = nullptr;
    QLineEdit* txtValue1_ = nullptr;
    QLineEdit* txtValue2_ = nullptr;
    QComboBox* cmbSensor_ = nullptr;
    QComboBox* cmbSensor1_ = nullptr;
    QComboBox* cmbNode_ = nullptr;
    QList<QDateEdit*> DTPicker1_;
    QList<QTimeEdit*> TPicker1_;
    QList<QLineEdit*> txtTimeLength_;
    QList<QLineEdit*> txtSMTP_;
    QPushButton* cmdOk_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

// Every Graph's name, and every Node's name of one Graph, as the pickers list them.
QStringList graphNames(const std::vector<Graph>& sensors);
QStringList nodeNames(const std::vector<Graph>& sensors, int graph);

inline const QString ChooseGraphText = QStringLiteral("Please Choose an available Graph");
inline const QString ChooseNodeText = QStringLiteral("Please Choose an available Node");

}  // namespace orm
