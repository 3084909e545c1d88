#include "alerts/alert_options.h"

#include <iterator>

namespace orm {

namespace {

struct OptionRow {
    const char* text;
    const char* sentence;
    const char* link1;
    const char* link2;
};

// The sentences of conditions and exceptions start with a blank so that the
// three clauses join by plain concatenation.
const OptionRow ActionRows[] = {
    {"Send an email", "Send an email to Email Address (Settings)", "Email Address", "(Settings)"},
    {"Play a sound", "Play Sound", "Sound", ""},
    {"Show a message", "Show a message saying Message", "Message", ""},
    {"Start or Stop logging", "Start logging Node1", "Start", "Node1"},
    {"Print Graph", "Print Graph", "Graph", ""},
    {"Start an Application", "Start an Application", "Application", ""},
    {"Restart the computer", "Restart this computer", "", ""},
    {"ShutDown the computer", "ShutDown this computer", "", ""},
};

const OptionRow ConditionRows[] = {
    {"when a Node exceeds a limit", " when Node2 exceeds Limit1", "Node2", "Limit1"},
    {"when a Node drops below a limit", " when Node2 drops below Limit1", "Node2", "Limit1"},
    {"when a Node falls outside of a range", " when Node2 falls outside of Range1", "Node2", "Range1"},
    {"when a Node falls inside of a range", " when Node2 falls inside of Range1", "Node2", "Range1"},
    {"when a Node equals a number", " when Node2 equals Number1", "Node2", "Number1"},
    {"at a specific time or date", " at Time or Date", "Time or Date", ""},
};

// Exception 8 reuses "Number2": it shares eNumber with exception 1.
const OptionRow ExceptionRows[] = {
    {"within the last number of samples", " within the last Number2 samples", "Number2", ""},
    {"for a length of time", " for Length of Time", "Length of Time", ""},
    {"within this time frame", " within Time Frame", "Time Frame", ""},
    {"if this other Node exceeds a limit", " if Node3 exceeds Limit2", "Node3", "Limit2"},
    {"if this other Node drops below a limit", " if Node3 drops below Limit2", "Node3", "Limit2"},
    {"if this other Node falls outside of a range", " if Node3 falls outside of Range2", "Node3", "Range2"},
    {"if this other Node falls inside of a range", " if Node3 falls inside of Range2", "Node3", "Range2"},
    {"if this other Node equals a number", " if Node3 equals Number2", "Node3", "Number2"},
};

}  // namespace

AlertOptionTable FillAlertOptions()
{
    AlertOptionTable t;
    int row = 1;
    int page = 0;
    auto fillPage = [&](const OptionRow* first, const OptionRow* last) {
        t.AlertOptionRange[size_t(page)][0] = QString::number(row);
        for (const OptionRow* r = first; r != last; ++r, ++row) {
            auto& cells = t.AlertOptions[size_t(row)];
            cells[OptionText] = QLatin1String(r->text);
            cells[OptionSentence] = QLatin1String(r->sentence);
            cells[OptionLink1] = QLatin1String(r->link1);
            cells[OptionLink2] = QLatin1String(r->link2);
        }
        t.AlertOptionRange[size_t(page)][1] = QString::number(row - 1);
        ++page;
    };
    fillPage(std::begin(ActionRows), std::end(ActionRows));
    fillPage(std::begin(ConditionRows), std::end(ConditionRows));
    fillPage(std::begin(ExceptionRows), std::end(ExceptionRows));
    return t;
}

}  // namespace orm
