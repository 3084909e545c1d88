#include "shell/message_state.h"

#include "model/number_text.h"

#include <algorithm>

namespace orm {

bool MessageState::show(const QString& text, bool isTimed, bool hold, bool graphical)
{
    // A question on the screen blocks every other message; they are lost.
    if (Held)
        return false;
    graphicalIndex = -1;
    Held = hold;
    timed = isTimed;
    if (isTimed) {
        TimeOutTicks = 0;
        timerRunning = true;
        AwaitingAnswer = true;
    }
    if (graphical)
        graphicalIndex = std::max(0, int(leadingNumber(text)));
    else
        caption += text + QStringLiteral("\r\n");
    visible = true;
    return true;
}

bool MessageState::timeOutTick()
{
    if (!timerRunning)
        return false;
    ++TimeOutTicks;
    if (TimeOutTicks < TimeOutLimit)
        return false;
    finish(AnswerNo);
    return true;
}

void MessageState::answerWith(int answer)
{
    finish(answer);
}

void MessageState::ok()
{
    // A question still waiting (a notice replaced it) must not leave its caller waiting.
    if (AwaitingAnswer) {
        finish(AnswerNo);
        return;
    }
    timerRunning = false;
    if (stopSound)
        stopSound();
    caption.clear();
    visible = false;
}

void MessageState::finish(int answer)
{
    timerRunning = false;
    Held = false;
    Answer = answer;
    AwaitingAnswer = false;
    if (stopSound)
        stopSound();
    caption.clear();
    visible = false;
}

}  // namespace orm
