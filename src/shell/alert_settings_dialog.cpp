#include "shell/alert_settings_dialog.h"

#include "model/number_text.h"
#include "model/version.h"

#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimeEdit>
#include <QVBoxLayout>

namespace orm {

namespace {

QString indexed(const char* name, int i)
{
    return QString::fromLatin1(name) + QStringLiteral("(%1)").arg(i);
}

QString noNul(QString text)
{
    return text.remove(QChar(u'\0'));
}

}  // namespace

QStringList graphNames(const std::vector<Graph>& sensors)
{
    QStringList names;
    for (const Graph& g : sensors)
        names << noNul(g.Name);
    return names;
}

QStringList nodeNames(const std::vector<Graph>& sensors, int graph)
{
    QStringList names;
    if (graph >= 0 && size_t(graph) < sensors.size())
        for (const Node& n : sensors[size_t(graph)].Nodes)
            names << noNul(n.Name);
    return names;
}

AlertSettingsDialog::AlertSettingsDialog(AlertSetting& setting, const std::vector<Graph>& sensors,
                                         const QDateTime& present, QWidget* parent)
    : QDialog(parent), setting_(setting), sensors_(sensors), present_(present)
{
    setObjectName(QStringLiteral("frmAlertSettings"));
    setWindowTitle(QLatin1String(ProductName) + QStringLiteral(" - Alert Setting"));
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);  // the form takes the size of the visible panel
    lblPrompt_ = new QLabel(this);
    lblPrompt_->setObjectName(QStringLiteral("lblPrompt"));
    layout->addWidget(lblPrompt_);

    fraText_ = panel("fraText");
    txtValue_ = lineEdit(fraText_, QStringLiteral("txtValue"));

    fraRange_ = panel("fraRange");
    txtValue1_ = lineEdit(fraRange_, QStringLiteral("txtValue1"));
    label(fraRange_, QStringLiteral("to"));
    txtValue2_ = lineEdit(fraRange_, QStringLiteral("txtValue2"));

    fraGraph_ = panel("fraGraph");
    cmbSensor_ = new QComboBox(fraGraph_);
    cmbSensor_->setObjectName(QStringLiteral("cmbSensor"));
    cmbSensor_->setPlaceholderText(ChooseGraphText);
    fraGraph_->layout()->addWidget(cmbSensor_);

    fraNode_ = panel("fraNode", true);
    label(fraNode_, QStringLiteral("First select a Graph:"));
    cmbSensor1_ = new QComboBox(fraNode_);
    cmbSensor1_->setObjectName(QStringLiteral("cmbSensor1"));
    cmbSensor1_->setPlaceholderText(ChooseGraphText);
    fraNode_->layout()->addWidget(cmbSensor1_);
    label(fraNode_, QStringLiteral("Then select a Node:"));
    cmbNode_ = new QComboBox(fraNode_);
    cmbNode_->setObjectName(QStringLiteral("cmbNode"));
    cmbNode_->setPlaceholderText(ChooseNodeText);
    fraNode_->layout()->addWidget(cmbNode_);
    connect(cmbSensor1_, &QComboBox::currentIndexChanged, this, &AlertSettingsDialog::fillNodes);

    // Pickers 0 and 1 are the time frame's ends, 2 the moment of a condition.
    for (int i = 0; i < 3; ++i) {
        auto* date = new QDateEdit(this);
        date->setObjectName(indexed("DTPicker1", i));
        date->setDisplayFormat(QStringLiteral("MM/dd/yyyy"));
        date->setCalendarPopup(true);
        DTPicker1_ << date;
        auto* time = new QTimeEdit(this);
        time->setObjectName(indexed("TPicker1", i));
        time->setDisplayFormat(QStringLiteral("HH:mm:ss"));
        TPicker1_ << time;
    }
    fraDate_ = panel("fraDate");
    fraDate_->layout()->addWidget(DTPicker1_[2]);
    fraDate_->layout()->addWidget(TPicker1_[2]);
    fraTimeFrame_ = new QWidget(this);
    fraTimeFrame_->setObjectName(QStringLiteral("fraTimeFrame"));
    auto* frame = new QGridLayout(fraTimeFrame_);
    frame->addWidget(new QLabel(QStringLiteral("Start Date"), fraTimeFrame_), 0, 0);
    frame->addWidget(DTPicker1_[0], 0, 1);
    frame->addWidget(TPicker1_[0], 0, 2);
    frame->addWidget(new QLabel(QStringLiteral("End Date"), fraTimeFrame_), 1, 0);
    frame->addWidget(DTPicker1_[1], 1, 1);
    frame->addWidget(TPicker1_[1], 1, 2);
    layout->addWidget(fraTimeFrame_);

    fraTimeLength_ = panel("fraTimeLength");
    const char* lengthLabels[] = {"Days:", "Hours:", "Minutes:", "Seconds:"};
    for (int i = 0; i < 4; ++i) {
        label(fraTimeLength_, QLatin1String(lengthLabels[i]));
        QLineEdit* box = lineEdit(fraTimeLength_, indexed("txtTimeLength", i));
        connect(box, &QLineEdit::textEdited, this, [box, i](const QString& text) {
            const qint64 typed = qint64(leadingNumber(text));
            const qint64 kept = clampTimeLength(i, typed);
            if (kept != typed)
                box->setText(QString::number(kept));
        });
        txtTimeLength_ << box;
    }

    fraSMTP_ = new QWidget(this);
    fraSMTP_->setObjectName(QStringLiteral("fraSMTP"));
    auto* smtp = new QGridLayout(fraSMTP_);
    const char* smtpLabels[] = {"SMTP Server:", "User Name:", "Password:", "Senders Name:", "Senders Email Address:"};
    for (int i = 0; i < 5; ++i) {
        smtp->addWidget(new QLabel(QLatin1String(smtpLabels[i]), fraSMTP_), i, 0);
        auto* box = new QLineEdit(fraSMTP_);
        box->setObjectName(indexed("txtSMTP", i));
        smtp->addWidget(box, i, 1);
        txtSMTP_ << box;
    }
    txtSMTP_[2]->setEchoMode(QLineEdit::Password);
    layout->addWidget(fraSMTP_);

    auto* buttons = new QHBoxLayout();
    buttons->addStretch();
    cmdOk_ = new QPushButton(QStringLiteral("&OK"), this);
    cmdOk_->setObjectName(QStringLiteral("cmdOk"));
    cmdOk_->setDefault(true);  // Enter
    cmdCancel_ = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addWidget(cmdOk_);
    buttons->addWidget(cmdCancel_);
    layout->addLayout(buttons);
    connect(cmdOk_, &QPushButton::clicked, this, &AlertSettingsDialog::cmdOk_Click);
    connect(cmdCancel_, &QPushButton::clicked, this, &AlertSettingsDialog::cmdCancel_Click);
}

QWidget* AlertSettingsDialog::panel(const char* name, bool column)
{
    auto* w = new QWidget(this);
    w->setObjectName(QLatin1String(name));
    QBoxLayout* l = column ? static_cast<QBoxLayout*>(new QVBoxLayout(w)) : new QHBoxLayout(w);
    l->setContentsMargins(0, 0, 0, 0);
    layout()->addWidget(w);
    return w;
}

QLineEdit* AlertSettingsDialog::lineEdit(QWidget* parent, const QString& name)
{
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    parent->layout()->addWidget(box);
    return box;
}

QLabel* AlertSettingsDialog::label(QWidget* parent, const QString& text)
{
    auto* l = new QLabel(text, parent);
    parent->layout()->addWidget(l);
    return l;
}

void AlertSettingsDialog::fillNodes(int graph)
{
    cmbNode_->clear();
    cmbNode_->addItems(nodeNames(sensors_, graph));
    cmbNode_->setCurrentIndex(-1);
}

void AlertSettingsDialog::setMoment(int picker, double moment)
{
    const QDateTime t = momentDateTime(moment, present_);
    DTPicker1_[picker]->setDate(t.date());
    TPicker1_[picker]->setTime(t.time());
}

double AlertSettingsDialog::moment(int picker) const
{
    return momentNumber(DTPicker1_[picker]->date(), TPicker1_[picker]->time());
}

void AlertSettingsDialog::ShowAlertSetting(const QString& prompt)
{
    setting_.Cancelled = false;
    setting_.Open = true;
    const qint16 kind = setting_.Kind;
    lblPrompt_->setText(prompt);
    lblPrompt_->setVisible(!prompt.isEmpty());
    fraText_->setVisible(isTextKind(kind));
    fraRange_->setVisible(kind == Range1Kind || kind == Range2Kind);
    fraGraph_->setVisible(kind == GraphKind);
    fraNode_->setVisible(kind == Node1Kind || kind == Node2Kind || kind == Node3Kind);
    fraDate_->setVisible(kind == TimeOrDateKind);
    fraTimeFrame_->setVisible(kind == TimeFrameKind);
    fraTimeLength_->setVisible(kind == LengthOfTimeKind);
    fraSMTP_->setVisible(kind == SmtpSettingsKind);

    txtValue_->setText(setting_.Text == QLatin1String("-1") ? QString() : setting_.Text);
    txtValue1_->setText(numberText(setting_.Value1));
    txtValue2_->setText(numberText(setting_.Value2));
    // The pickers start empty, or on the Graph and Node the link already names.
    const QStringList graphs = graphNames(sensors_);
    for (QComboBox* box : {cmbSensor_, cmbSensor1_}) {
        box->clear();
        box->addItems(graphs);
        box->setCurrentIndex(setting_.Value1 >= 0 && setting_.Value1 < graphs.size() ? int(setting_.Value1) : -1);
    }
    if (kind == GraphKind || cmbSensor1_->currentIndex() < 0)
        fillNodes(-1);
    if (cmbNode_->count() > setting_.Value2 && setting_.Value2 >= 0)
        cmbNode_->setCurrentIndex(int(setting_.Value2));
    if (kind == TimeOrDateKind)
        setMoment(2, setting_.Value1);
    if (kind == TimeFrameKind) {
        setMoment(0, setting_.Value1);
        setMoment(1, setting_.Value2);
    }
    const TimeLength length = splitSeconds(setting_.Value1);
    const qint64 parts[] = {length.days, length.hours, length.minutes, length.seconds};
    for (int i = 0; i < 4; ++i)
        txtTimeLength_[i]->setText(QString::number(parts[i]));
    const QString smtp[] = {setting_.smtp.SMTPServer, setting_.smtp.SMTPAuthUser, setting_.smtp.SMTPAuthPass,
                            setting_.smtp.MailSenderName, setting_.smtp.MailSenderEMail};
    for (int i = 0; i < 5; ++i)
        txtSMTP_[i]->setText(smtp[i]);

    setWindowFlag(Qt::WindowStaysOnTopHint, true);
    setModal(true);
    show();
    raise();
    activateWindow();
    // The first box of the panel takes the typing.
    for (QWidget* first : {static_cast<QWidget*>(txtValue_), static_cast<QWidget*>(txtValue1_),
                           static_cast<QWidget*>(cmbSensor_), static_cast<QWidget*>(cmbSensor1_),
                           static_cast<QWidget*>(DTPicker1_[2]), static_cast<QWidget*>(DTPicker1_[0]),
                           static_cast<QWidget*>(txtTimeLength_[0]), static_cast<QWidget*>(txtSMTP_[0])})
        if (first->isVisibleTo(this)) {
            first->setFocus();
            break;
        }
}

void AlertSettingsDialog::cmdOk_Click()
{
    switch (setting_.Kind) {
    case EmailAddressKind:
    case MessageKind:
    case PlainTextKind:
        setting_.Text = txtValue_->text();
        break;
    case Limit1Kind:
    case Number1Kind:
    case Limit2Kind:
    case Number2Kind:
        setting_.Text = numberText(leadingNumber(txtValue_->text()));
        break;
    case Node1Kind:
    case Node2Kind:
    case Node3Kind:
        setting_.Value1 = cmbSensor1_->currentIndex();
        setting_.Value2 = cmbNode_->currentIndex();
        break;
    case GraphKind:
        setting_.Value1 = cmbSensor_->currentIndex();
        break;
    case Range1Kind:
    case Range2Kind:
        setting_.Value1 = leadingNumber(txtValue1_->text());
        setting_.Value2 = leadingNumber(txtValue2_->text());
        break;
    case TimeOrDateKind:
        setting_.Value1 = moment(2);
        break;
    case TimeFrameKind:
        setting_.Value1 = moment(0);
        setting_.Value2 = moment(1);
        break;
    case LengthOfTimeKind: {
        TimeLength t;
        t.days = qint64(leadingNumber(txtTimeLength_[0]->text()));
        t.hours = qint64(leadingNumber(txtTimeLength_[1]->text()));
        t.minutes = qint64(leadingNumber(txtTimeLength_[2]->text()));
        t.seconds = qint64(leadingNumber(txtTimeLength_[3]->text()));
        setting_.Value1 = joinSeconds(t);
        break;
    }
    case SmtpSettingsKind:
        setting_.smtp = {txtSMTP_[0]->text(), txtSMTP_[1]->text(), txtSMTP_[2]->text(), txtSMTP_[3]->text(),
                         txtSMTP_[4]->text()};
        break;
    default:
        break;
    }
    accept();
}

void AlertSettingsDialog::cmdCancel_Click()
{
    reject();
}

void AlertSettingsDialog::done(int result)
{
    // Escape and the window's close button cancel as the Cancel button does.
    if (result == QDialog::Rejected)
        setting_.Cancelled = true;
    setting_.Open = false;
    QDialog::done(result);
}

}  // namespace orm
