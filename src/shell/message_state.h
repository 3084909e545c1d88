// The rules of the notification window without the window, so that they can
// be driven tick by tick and serve a run that has no window at all.
#pragma once

#include "alerts/alert_host.h"

#include <QString>
#include <functional>

namespace orm {

inline constexpr int AnswerYes = AlertAnswerYes;
inline constexpr int AnswerNo = AlertAnswerNo;
// tmrTimeOut fires once a second; the 60th firing answers No.
inline constexpr int TimeOutInterval = 1000;
inline constexpr int TimeOutLimit = 60;

// Everything the dialog decides, without a window, so it can be driven tick by tick.
class MessageState {
public:
    // ShowMessage's rules. False when a held question drops the call.
    bool show(const QString& text, bool timed, bool hold, bool graphical);
    // One tmrTimeOut firing; true when it was the last and the question ended as No.
    bool timeOutTick();
    // cmdYes / cmdNo: the question ends with that answer.
    void answerWith(int answer);
    // cmdOk: the notice is gone.
    void ok();

    bool Held = false;
    bool AwaitingAnswer = false;
    int Answer = 0;
    int TimeOutTicks = 0;
    bool timerRunning = false;
    bool timed = false;          // Yes and No, and the count-down bar
    int graphicalIndex = -1;     // the picture shown, -1 for the text
    QString caption;             // lblTxt, lines ending in CR LF
    bool visible = false;        // the form is loaded and meant to be on screen
    // Called wherever the dialog closes: stops an Alert's looping sound.
    std::function<void()> stopSound;

private:
    void finish(int answer);
};

// What the Alerts' host asks of the notification window.
class NoticeWindow {
public:
    virtual ~NoticeWindow() = default;
    virtual void ShowMessage(const QString& text, bool timed, bool hold, bool graphical) = 0;
    virtual bool AwaitingAnswer() const = 0;
    virtual int Answer() const = 0;
    // Called wherever the window closes.
    virtual void setStopSound(std::function<void()> stop) = 0;
};

}  // namespace orm
