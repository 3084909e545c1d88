// The user at the editing questions: the answer the test chose, and what was
// asked or refused, as "title|text".
#pragma once

#include "monitor/editing.h"

#include <QStringList>

namespace orm::test {

struct ScriptedPrompts final : EditPrompts {
    bool askYesNo(const QString& title, const QString& text) override
    {
        asked << title + QLatin1Char('|') + text;
        return answer;
    }
    void stop(const QString& title, const QString& text) override { stops << title + QLatin1Char('|') + text; }
    bool answer = true;
    QStringList asked, stops;
};

}  // namespace orm::test
