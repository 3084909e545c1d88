// frmMessage: the program's one notification window. Notices gather as lines;
// a question has Yes and No and answers No by itself after 60 seconds.
#pragma once

#include "shell/message_state.h"

#include <QList>
#include <QPixmap>
#include <QRect>
#include <QString>
#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;
class QTimer;

namespace orm {

class ProgressBar;

// Places of the controls in twips; the title bar and frame belong to the window manager.
struct MessageLayout {
    QRect label, ok, yes, no, progress;
    QSize client;
};
MessageLayout messageLayout(const QRect& labelTwips, const QSize& buttonTwips);

inline constexpr int TwipsPerPixel = 15;

class MessageDialog : public QWidget, public NoticeWindow {
    Q_OBJECT
public:
    explicit MessageDialog(QWidget* parent = nullptr);

    // Shows a notice (timed false) or a question (timed true); hold locks the window
    // to the question. With graphical the text is the number of the picture to show.
    void ShowMessage(const QString& text, bool timed, bool hold, bool graphical) override;

    bool AwaitingAnswer() const override { return state_.AwaitingAnswer; }
    int Answer() const override { return state_.Answer; }
    bool Held() const { return state_.Held; }
    int TimeOutTicks() const { return state_.TimeOutTicks; }
    QString text() const { return state_.caption; }
    const MessageState& state() const { return state_; }

    void setStopSound(std::function<void()> stop) override { state_.stopSound = std::move(stop); }
    // imgGraphicalMessage: index 0 and on.
    void setGraphicalPictures(const QList<QPixmap>& pictures) { pictures_ = pictures; }
    // The program is ending: stop the count and hide; the answer stays as it is.
    void unload();

    QTimer* timeOutTimer() const { return tmrTimeOut_; }
    QPushButton* okButton() const { return cmdOk_; }
    QPushButton* yesButton() const { return cmdYes_; }
    QPushButton* noButton() const { return cmdNo_; }
    ProgressBar* timeOutBar() const { return prgsTimeOut_; }
    QLabel* label() const { return lblTxt_; }

signals:
    // A question ended: by Yes, No or the time-out.
    void answered(int answer);

public slots:
    void tmrTimeOut_Timer();
    void cmdYes_Click();
    void cmdNo_Click();
    void cmdOk_Click();

protected:
    // The window's close button: a question counts as No, a notice as Ok.
    void closeEvent(QCloseEvent* event) override;

private:
    void applyState();
    void layOut();
    void end(int answer);

    MessageState state_;
    QList<QPixmap> pictures_;
    QLabel* lblTxt_ = nullptr;
    QLabel* Image2_ = nullptr;
    QLabel* imgGraphicalMessage_ = nullptr;
    QPushButton* cmdOk_ = nullptr;
    QPushButton* cmdYes_ = nullptr;
    QPushButton* cmdNo_ = nullptr;
    QTimer* tmrTimeOut_ = nullptr;
    ProgressBar* prgsTimeOut_ = nullptr;
};

}  // namespace orm
