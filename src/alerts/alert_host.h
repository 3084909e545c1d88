// What the Alert actions need from the program around them: the notification
// window, sound, printing, starting a program, and ending the session. The
// desktop and the headless run each give their own; tests give a recording one.
#pragma once

#include <QString>

namespace orm {

// Answers of a question.
inline constexpr int AlertAnswerYes = 6;
inline constexpr int AlertAnswerNo = 7;

// ExitComputer modes the actions use.
inline constexpr int ExitShutDown = 1;
inline constexpr int ExitRestart = 2;

class AlertActionHost {
public:
    virtual ~AlertActionHost() = default;

    // The notification window: a notice (timed false) adds a line; a question
    // (timed and held) has Yes and No and answers No by itself after 60 seconds.
    virtual void ShowMessage(const QString& text, bool timed, bool hold) = 0;
    // A question is waiting for its answer; the caller runs the event loop meanwhile.
    virtual bool AwaitingAnswer() const = 0;
    virtual int Answer() const = 0;

    // Starts the sound file playing in a loop, which ends when the notice shown
    // next is closed. A file that cannot be played is passed over in silence.
    virtual void playSound(const QString& file) = 0;
    // Prints the Graph's picture with its key (Line and Bar Graphs only).
    virtual void printGraph(int graphIndex) = 0;
    // Opens the file as a double click would: runs a program, opens a document.
    virtual void startApplication(const QString& file) = 0;
    // Mode 2 restarts the computer, mode 1 shuts it down; other modes do nothing.
    // False when the request was not taken.
    virtual bool ExitComputer(int mode) = 0;
};

}  // namespace orm
