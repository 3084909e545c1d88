// The program's side of a restart rule for the tests: its host with the
// notification window, logind on a private bus, and the user at the window,
// who clicks Yes or No once a question is on screen.
#pragma once

#include "mock_logind.h"
#include "shell/alert_sound.h"
#include "shell/logind_power.h"
#include "shell/message_dialog.h"
#include "shell/program_alert_host.h"

#include <QPushButton>
#include <QTimer>

namespace orm::test {

class SilentSound final : public SoundPlayer {
public:
    void play(const QString&, bool) override {}
    void stop() override {}
};

// Clicks `button` once the window asks; `asked` gets the question's text.
inline void clickWhenAsked(MessageDialog& dialog, QPushButton* button, QString& asked)
{
    auto* poll = new QTimer(&dialog);
    QObject::connect(poll, &QTimer::timeout, &dialog, [&dialog, button, &asked, poll] {
        if (dialog.isVisible() && dialog.AwaitingAnswer()) {
            asked = dialog.text();
            button->click();
            poll->deleteLater();
        }
    });
    poll->start(10);
}

struct WindowAndLogind {
    MockLogind logind;
    LogindPower power{logind.connection(), false};
    SilentSound sound;
    MessageDialog dialog;
    ProgramAlertHost host{power, sound};
    QString asked;  // the question, once the user has seen it

    WindowAndLogind() { host.setDialog(&dialog); }
    void answerWith(QPushButton* button) { clickWhenAsked(dialog, button, asked); }
};

}  // namespace orm::test
