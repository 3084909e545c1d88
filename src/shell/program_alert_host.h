// The Alert actions' side in the running program. On the desktop notices and
// questions go to the notification window; headless they are printed, one line
// each, and a question counts down its 60 seconds unanswered.
#pragma once

#include "alerts/alert_host.h"
#include "shell/message_state.h"

#include <QObject>
#include <QTimer>
#include <functional>

class QUrl;

namespace orm {

class ComputerPower;
class SoundPlayer;

// Opens a file as a double click would: an executable file is started in its
// own folder, anything else goes to `openUrl` (a document, a URL). False when
// there is nothing to open, or nothing to open it with.
bool startFile(const QString& file, const std::function<bool(const QUrl&)>& openUrl);
// The desktop's handler (QDesktopServices), which needs the GUI application:
// only a run that draws links it.
bool openWithDesktop(const QUrl& url);
// startFile with the desktop's handler.
bool startFile(const QString& file);

class ProgramAlertHost final : public QObject, public AlertActionHost {
public:
    ProgramAlertHost(ComputerPower& power, SoundPlayer& sound);

    // The desktop's notification window; closing it stops the sound.
    void setDialog(NoticeWindow* dialog);
    // What opens a document or a URL that an Alert starts; none by default, as
    // a run without the GUI application has no desktop handler to ask.
    void setUrlOpener(std::function<bool(const QUrl&)> open) { openUrl_ = std::move(open); }
    // Print Graph.
    void setPrinter(std::function<void(int graphIndex)> print) { printer_ = std::move(print); }
    // Without a window: where the lines go (stdout unless set).
    void setOutput(std::function<void(const QString&)> write) { output_ = std::move(write); }
    // Without a window: the pace of a question's count, a second unless set.
    void setQuestionStep(int ms) { countdown_.setInterval(ms); }

    void ShowMessage(const QString& text, bool timed, bool hold) override;
    bool AwaitingAnswer() const override;
    int Answer() const override;
    void playSound(const QString& file) override;
    void printGraph(int graphIndex) override;
    void startApplication(const QString& file) override;
    bool ExitComputer(int mode) override;

private:
    void write(const QString& text);
    void countDown();

    ComputerPower& power_;
    SoundPlayer& sound_;
    NoticeWindow* dialog_ = nullptr;
    std::function<void(int)> printer_;
    std::function<bool(const QUrl&)> openUrl_;
    std::function<void(const QString&)> output_;
    MessageState unseen_;  // the window's rules, without the window
    QTimer countdown_;
};

}  // namespace orm
