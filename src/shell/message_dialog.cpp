#include "shell/message_dialog.h"

#include "model/number_text.h"
#include "model/version.h"
#include "shell/progress_bar.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <algorithm>

namespace orm {

MessageLayout messageLayout(const QRect& label, const QSize& button)
{
    MessageLayout l;
    l.label = label;
    const int width = std::max(label.width(), button.width()) + label.left() + 300;
    const int buttonTop = label.bottom() + 1 + 90;
    const int centre = label.left() + label.width() / 2;
    l.ok = QRect(QPoint(centre - button.width() / 2, buttonTop), button);
    l.yes = QRect(QPoint(centre - 30 - button.width(), buttonTop), button);
    l.no = QRect(QPoint(centre + 30, buttonTop), button);
    l.progress = QRect(180, buttonTop - 300, std::max(0, width - 360), 195);
    l.client = QSize(width, label.bottom() + 1 + button.height() + 210);
    return l;
}

// ---- the window ----

namespace {
constexpr int LabelLeftTwips = 720;
constexpr int LabelTopTwips = 120;
const QSize ButtonTwips(1215, 375);

QRect toPixels(const QRect& twips)
{
    return QRect(twips.left() / TwipsPerPixel, twips.top() / TwipsPerPixel, twips.width() / TwipsPerPixel,
                 twips.height() / TwipsPerPixel);
}
}  // namespace

MessageDialog::MessageDialog(QWidget* parent) : QWidget(parent, Qt::Window | Qt::WindowStaysOnTopHint)
{
    setObjectName(QStringLiteral("frmMessage"));
    setWindowTitle(QLatin1String(ProductName) + QStringLiteral(" Notification Message"));

    Image2_ = new QLabel(this);
    Image2_->setObjectName(QStringLiteral("Image2"));
    Image2_->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(32, 32));
    Image2_->setGeometry(8, 8, 32, 32);

    lblTxt_ = new QLabel(this);
    lblTxt_->setObjectName(QStringLiteral("lblTxt"));
    lblTxt_->setTextFormat(Qt::PlainText);
    lblTxt_->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    imgGraphicalMessage_ = new QLabel(this);
    imgGraphicalMessage_->setObjectName(QStringLiteral("imgGraphicalMessage"));
    imgGraphicalMessage_->hide();

    cmdOk_ = new QPushButton(QStringLiteral("&Ok"), this);
    cmdOk_->setObjectName(QStringLiteral("cmdOk"));
    cmdYes_ = new QPushButton(QStringLiteral("&Yes"), this);
    cmdYes_->setObjectName(QStringLiteral("cmdYes"));
    cmdNo_ = new QPushButton(QStringLiteral("&No"), this);
    cmdNo_->setObjectName(QStringLiteral("cmdNo"));
    connect(cmdOk_, &QPushButton::clicked, this, &MessageDialog::cmdOk_Click);
    connect(cmdYes_, &QPushButton::clicked, this, &MessageDialog::cmdYes_Click);
    connect(cmdNo_, &QPushButton::clicked, this, &MessageDialog::cmdNo_Click);

    prgsTimeOut_ = new ProgressBar(this);
    prgsTimeOut_->setObjectName(QStringLiteral("prgsTimeOut"));
    prgsTimeOut_->setMax(TimeOutLimit);

    tmrTimeOut_ = new QTimer(this);
    tmrTimeOut_->setObjectName(QStringLiteral("tmrTimeOut"));
    tmrTimeOut_->setInterval(TimeOutInterval);
    connect(tmrTimeOut_, &QTimer::timeout, this, &MessageDialog::tmrTimeOut_Timer);
}

void MessageDialog::ShowMessage(const QString& text, bool timed, bool hold, bool graphical)
{
    if (!state_.show(text, timed, hold, graphical))
        return;
    if (timed)
        tmrTimeOut_->start();
    prgsTimeOut_->setValue(state_.TimeOutTicks);
    applyState();
    layOut();

    // Centred on the screen and on top; a modal window being open keeps it hidden.
    if (QScreen* s = screen() ? screen() : QGuiApplication::primaryScreen()) {
        QRect r = frameGeometry();
        r.moveCenter(s->availableGeometry().center());
        move(r.topLeft());
    }
    if (QApplication::activeModalWidget() && QApplication::activeModalWidget() != this)
        return;
    show();
    raise();
}

void MessageDialog::applyState()
{
    const bool graphical = state_.graphicalIndex >= 0;
    Image2_->setVisible(!graphical);
    cmdOk_->setVisible(!state_.timed);
    cmdYes_->setVisible(state_.timed);
    cmdNo_->setVisible(state_.timed);
    prgsTimeOut_->setVisible(state_.timed);
    QString shown = state_.caption;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    lblTxt_->setText(shown);
    if (graphical && !pictures_.isEmpty()) {
        // A number with no picture of its own shows the first.
        const int i = state_.graphicalIndex < pictures_.size() ? state_.graphicalIndex : 0;
        imgGraphicalMessage_->setPixmap(pictures_[i]);
        imgGraphicalMessage_->show();
    } else {
        imgGraphicalMessage_->hide();
    }
}

void MessageDialog::layOut()
{
    QSize labelPx;
    if (state_.graphicalIndex >= 0 && imgGraphicalMessage_->isVisibleTo(this))
        labelPx = imgGraphicalMessage_->pixmap().size();
    else
        labelPx = lblTxt_->sizeHint();
    const QRect labelTwips(LabelLeftTwips, LabelTopTwips, labelPx.width() * TwipsPerPixel,
                           labelPx.height() * TwipsPerPixel);
    const MessageLayout l = messageLayout(labelTwips, ButtonTwips);
    lblTxt_->setGeometry(toPixels(l.label));
    imgGraphicalMessage_->setGeometry(toPixels(l.label));
    cmdOk_->setGeometry(toPixels(l.ok));
    cmdYes_->setGeometry(toPixels(l.yes));
    cmdNo_->setGeometry(toPixels(l.no));
    prgsTimeOut_->setGeometry(toPixels(l.progress));
    prgsTimeOut_->raise();
    setFixedSize(l.client.width() / TwipsPerPixel, l.client.height() / TwipsPerPixel);
}

void MessageDialog::tmrTimeOut_Timer()
{
    if (!state_.timerRunning) {
        tmrTimeOut_->stop();
        return;
    }
    const bool ended = state_.timeOutTick();
    prgsTimeOut_->setValue(state_.TimeOutTicks);
    if (ended)
        end(state_.Answer);
}

void MessageDialog::cmdYes_Click()
{
    state_.answerWith(AnswerYes);
    end(AnswerYes);
}

void MessageDialog::cmdNo_Click()
{
    state_.answerWith(AnswerNo);
    end(AnswerNo);
}

void MessageDialog::cmdOk_Click()
{
    const bool wasQuestion = state_.AwaitingAnswer;
    state_.ok();
    if (wasQuestion)
        end(state_.Answer);
    else {
        tmrTimeOut_->stop();
        lblTxt_->clear();
        hide();
    }
}

void MessageDialog::end(int answer)
{
    tmrTimeOut_->stop();
    lblTxt_->clear();
    hide();
    emit answered(answer);
}

void MessageDialog::unload()
{
    state_.timerRunning = false;
    state_.Held = false;
    state_.caption.clear();
    state_.visible = false;
    tmrTimeOut_->stop();
    lblTxt_->clear();
    hide();
}

void MessageDialog::closeEvent(QCloseEvent* event)
{
    event->ignore();
    if (state_.AwaitingAnswer)
        cmdNo_Click();
    else
        cmdOk_Click();
}

}  // namespace orm
