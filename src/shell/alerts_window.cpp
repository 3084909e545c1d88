#include "shell/alerts_window.h"

#include "model/debug_log.h"
#include "model/version.h"
#include "monitor/alert_sentence.h"
#include "monitor/monitor.h"
#include "shell/alert_settings_dialog.h"
#include "shell/custom_tool_tip.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>

namespace orm {

AlertsWindow::AlertsWindow(Monitor& monitor, QWidget* parent)
    : QWidget(parent, Qt::Window),
      monitor_(monitor),
      boxes_(this),
      wizard_(monitor, &boxes_),
      filePicker_([this](const QString& filter) { return openAlertFile(this, filter); }),
      tips_(std::make_unique<CustomToolTip>())
{
    build();
    connectControls();
    InitToolTips();
    wizard_.load();
    refresh();
}

AlertsWindow::~AlertsWindow()
{
    // Unloading takes the tool-tip with it; a dialog still up goes first.
    tips_->DestroyToolTip();
    delete dialog_;
}

void AlertsWindow::setPrompts(EditPrompts* prompts)
{
    wizard_.setPrompts(prompts ? prompts : &boxes_);
}

void AlertsWindow::InitToolTips()
{
    trace(QStringLiteral("ToolTips 1.05"));
    tips_->InitToolTips(this, monitor_.Settings.DisplayToolTips, QLatin1String(ProductName), alertHelpTexts());
}

void AlertsWindow::connectControls()
{
    auto act = [this](QPushButton* b, void (AlertWizard::*step)()) {
        connect(b, &QPushButton::clicked, this, [this, step] {
            (wizard_.*step)();
            refresh();
        });
    };
    act(cmdNext_, &AlertWizard::cmdNext);
    act(cmdBack_, &AlertWizard::cmdBack);
    act(cmdNewAlert_, &AlertWizard::cmdNewAlert);
    act(cmdDeleteAlert_, &AlertWizard::cmdDeleteAlert);
    connect(cmdExit_, &QPushButton::clicked, this, &QWidget::close);
    connect(lstAlertOptions_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (refreshing_)
            return;
        wizard_.lstAlertOptions_Click(lstAlertOptions_->row(item));
        refresh();
    });
    // The keys move the choice as a click does.
    connect(lstAlertOptions_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (refreshing_ || row < 0 || row == wizard_.optionIndex || QApplication::mouseButtons() != Qt::NoButton)
            return;
        wizard_.lstAlertOptions_Click(row);
        refresh();
    });
    // A click selects a row even when it is selected already; the keys move the selection.
    connect(lstvwAlerts_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
        if (!refreshing_ && item)
            rowChanged(item);
    });
    connect(lstvwAlerts_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (!refreshing_ && item && QApplication::mouseButtons() == Qt::NoButton &&
            lstvwAlerts_->indexOfTopLevelItem(item) != wizard_.selectedRow)
            rowChanged(item);
    });
    connect(lstvwAlerts_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
        if (refreshing_)
            return;
        wizard_.checkRow(lstvwAlerts_->indexOfTopLevelItem(item), item->checkState(0) == Qt::Checked);
        refresh();
    });
    connect(txtAlertName_, &QLineEdit::textEdited, this, [this](const QString& name) {
        wizard_.renameSelected(name);
        refresh();
    });
    connect(tmrAlerts_, &QTimer::timeout, this, &AlertsWindow::tmrAlerts_Timer);
}

void AlertsWindow::rowChanged(QTreeWidgetItem* item)
{
    wizard_.selectRow(lstvwAlerts_->indexOfTopLevelItem(item));
    refresh();
}

void AlertsWindow::refresh()
{
    refreshing_ = true;
    const auto& rows = wizard_.rows;
    if (lstvwAlerts_->topLevelItemCount() != int(rows.size())) {
        lstvwAlerts_->clear();
        for (size_t i = 0; i < rows.size(); ++i)
            new QTreeWidgetItem(lstvwAlerts_);
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        QTreeWidgetItem* item = lstvwAlerts_->topLevelItem(int(i));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setText(0, rows[i].text);
        item->setCheckState(0, rows[i].checked ? Qt::Checked : Qt::Unchecked);
        item->setData(0, Qt::UserRole, rows[i].tag);
    }
    QTreeWidgetItem* selected = wizard_.selectedRow >= 0 ? lstvwAlerts_->topLevelItem(wizard_.selectedRow) : nullptr;
    lstvwAlerts_->setCurrentItem(selected);
    if (!selected)
        lstvwAlerts_->clearSelection();

    if (txtAlertName_->text() != wizard_.alertName)
        txtAlertName_->setText(wizard_.alertName);
    for (QWidget* w : {static_cast<QWidget*>(txtAlertName_), static_cast<QWidget*>(lstAlertOptions_),
                       static_cast<QWidget*>(lblGen_[1]), static_cast<QWidget*>(lblGen_[2]),
                       static_cast<QWidget*>(lblGen_[3])})
        w->setEnabled(wizard_.editorsEnabled);

    QStringList shown;
    for (int i = 0; i < lstAlertOptions_->count(); ++i)
        shown << lstAlertOptions_->item(i)->text();
    if (shown != wizard_.options) {
        lstAlertOptions_->clear();
        lstAlertOptions_->addItems(wizard_.options);
    }
    lstAlertOptions_->setCurrentRow(wizard_.optionIndex);
    if (wizard_.optionIndex < 0)
        lstAlertOptions_->clearSelection();

    cmdNext_->setText(wizard_.nextText);
    cmdNext_->setEnabled(wizard_.nextEnabled);
    if (wizard_.focusToList) {
        wizard_.focusToList = false;
        lstvwAlerts_->setFocus();
    }
    if (wizard_.tmrAlertsEnabled && !tmrAlerts_->isActive())
        tmrAlerts_->start();
    else if (!wizard_.tmrAlertsEnabled)
        tmrAlerts_->stop();
    refreshing_ = false;
}

void AlertsWindow::tmrAlerts_Timer()
{
    wizard_.tmrAlerts_Timer();
    refresh();
}

int AlertsWindow::characterAt(const QPoint& viewportPoint) const
{
    const QPoint scrolled(richAlertDesc_->horizontalScrollBar()->value(), richAlertDesc_->verticalScrollBar()->value());
    const QTextDocument* doc = richAlertDesc_->document();
    int position = doc->documentLayout()->hitTest(viewportPoint + scrolled, Qt::ExactHit);
    if (position < 0)
        return -1;
    // The hit is the nearest caret place; the character under the point may be the one before it.
    QTextCursor c(const_cast<QTextDocument*>(doc));
    c.setPosition(position);
    if (richAlertDesc_->cursorRect(c).x() > viewportPoint.x())
        --position;
    return position;
}

QString AlertsWindow::RichWordOver(const QPoint& viewportPoint) const
{
    const int position = characterAt(viewportPoint);
    return position < 0 ? QString() : linkAtCharacter(*richAlertDesc_->document(), position);
}

QRect AlertsWindow::spanRect(int first, int end) const
{
    QTextCursor c(richAlertDesc_->document());
    c.setPosition(first);
    const QRect from = richAlertDesc_->cursorRect(c);
    c.setPosition(end);
    QRect to = richAlertDesc_->cursorRect(c);
    if (to.top() != from.top())  // broken over two lines
        to = QRect(richAlertDesc_->viewport()->width() - 2, from.top(), 1, from.height());
    return QRect(from.topLeft(), QPoint(to.x(), from.bottom()));
}

void AlertsWindow::ClickLink(const QString& word)
{
    const auto request = wizard_.ClickLink(word);
    if (!request)
        return;
    switch (request->action) {
    case LinkAction::ToggleStart:
        break;
    case LinkAction::SoundFile:
    case LinkAction::ApplicationFile:
        wizard_.fileChosen(request->action,
                           filePicker_(request->action == LinkAction::SoundFile ? SoundFileFilter : ApplicationFileFilter));
        wizard_.linkDone();
        break;
    case LinkAction::Setting:
        showSetting(request->prompt);
        break;
    }
    refresh();
}

void AlertsWindow::showSetting(const QString& prompt)
{
    delete dialog_;
    dialog_ = new AlertSettingsDialog(wizard_.setting, monitor_.Sensors, monitor_.clock().now(), this);
    dialog_->setAttribute(Qt::WA_DeleteOnClose);
    // ClickLink's last step comes once the dialog is gone; its values follow by tmrAlerts.
    connect(dialog_, &QDialog::finished, this, [this] { wizard_.linkDone(); });
    wizard_.settingOpened();
    dialog_->ShowAlertSetting(prompt);
}

bool AlertsWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != richAlertDesc_->viewport())
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseMove: {
        const auto* e = static_cast<QMouseEvent*>(event);
        if (tips_->active())
            tips_->ShowTip(richAlertDesc_, tipText(QLatin1String(ProductName),
                                                   alertHelpTexts().value(QStringLiteral("richAlertDesc"))));
        if (cursor().shape() != Qt::WaitCursor)
            richAlertDesc_->viewport()->setCursor(RichWordOver(e->position().toPoint()).isEmpty() ? Qt::ArrowCursor
                                                                                                   : Qt::PointingHandCursor);
        return true;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return true;
    case QEvent::MouseButtonRelease: {
        const auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() != Qt::LeftButton)
            return true;
        const QString word = RichWordOver(e->position().toPoint());
        if (word.isEmpty())
            return true;
        if (cmdNext_->isEnabled())
            cmdNext_->setFocus();
        ClickLink(word);
        return true;
    }
    default:
        return QWidget::eventFilter(watched, event);
    }
}

QStringList AlertsWindow::widgetMapLines() const
{
    QStringList lines;
    if (!isVisible())
        return lines;
    for (int i = 0; i < lstvwAlerts_->topLevelItemCount(); ++i) {
        QRect r = lstvwAlerts_->visualItemRect(lstvwAlerts_->topLevelItem(i));
        r.moveTopLeft(lstvwAlerts_->viewport()->mapToGlobal(r.topLeft()));
        lines << widgetMapLine(QStringLiteral("lstvwAlerts(%1)").arg(i), r);
        // The check box stands at the row's left end.
        lines << widgetMapLine(QStringLiteral("lstvwAlerts.check(%1)").arg(i),
                               QRect(r.topLeft() + QPoint(4, 0), QSize(r.height(), r.height())));
        const QTreeWidgetItem* item = lstvwAlerts_->topLevelItem(i);
        lines << widgetMapText(QStringLiteral("lstvwAlerts(%1)").arg(i),
                               (item->checkState(0) == Qt::Checked ? QStringLiteral("[x] ") : QStringLiteral("[ ] ")) +
                                   item->text(0));
    }
    for (int i = 0; i < lstAlertOptions_->count(); ++i) {
        QRect r = lstAlertOptions_->visualItemRect(lstAlertOptions_->item(i));
        r.moveTopLeft(lstAlertOptions_->viewport()->mapToGlobal(r.topLeft()));
        lines << widgetMapLine(QStringLiteral("lstAlertOptions(%1)").arg(i), r);
    }
    // Each link by its word, where a person would click it (past the tag).
    const QTextDocument& doc = *richAlertDesc_->document();
    const QString text = doc.toPlainText();
    for (int at = 1; at < text.size(); ++at) {
        const auto [first, end] = linkSpanAt(doc, at);
        if (first == end)
            continue;
        const QString linkText = text.mid(first, end - first);
        const AlertLink* link = findAlertLink(linkText);
        if (!link)
            link = alertLinkOfTag(linkText.front());
        const QRect r = spanRect(link && link->word != linkText ? first + 1 : first, end);
        if (link)
            lines << widgetMapLine(QStringLiteral("link(%1)").arg(link->word),
                                   QRect(richAlertDesc_->viewport()->mapToGlobal(r.topLeft()), r.size()));
        at = end;
    }
    lines << widgetMapText(QStringLiteral("richAlertDesc"), shownSentence(*richAlertDesc_->document()));
    return lines;
}

}  // namespace orm
