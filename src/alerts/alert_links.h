// The links of a rule's sentence: each variable word names the one value it
// edits, shows that value once it is set (behind a one-letter tag), and hands
// the value to the settings dialog and takes it back.
#pragma once

#include "alerts/alert.h"
#include "alerts/alert_options.h"
#include "model/model.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace orm {

// AlertSettingKind: which value the settings dialog edits.
enum AlertSettingKindCode : qint16 {
    NoSettingKind = 0,
    EmailAddressKind = 1,
    MessageKind = 2,
    PlainTextKind = 3,  // the dialog knows it; no link uses it
    Limit1Kind = 4,
    Number1Kind = 5,
    Node1Kind = 6,
    GraphKind = 7,
    Range1Kind = 8,
    TimeOrDateKind = 9,
    LengthOfTimeKind = 10,
    TimeFrameKind = 11,
    Node2Kind = 12,
    Node3Kind = 13,
    Limit2Kind = 14,
    Number2Kind = 15,
    Range2Kind = 16,
    SmtpSettingsKind = 17,
};

// What a click on a link does.
enum class LinkAction { Setting, SoundFile, ApplicationFile, ToggleStart };

struct AlertLink {
    QString word;  // as it stands in the sentence
    QChar tag;     // names the link once the word shows a value
    qint16 kind;   // the dialog's kind; NoSettingKind for the three that open none
    QString prompt;
    LinkAction action;
};

// The nineteen links, in the order of their tags "a" to "s".
const std::vector<AlertLink>& alertLinks();
// The link of a whole word; null when none.
const AlertLink* findAlertLink(const QString& word);
// The link whose tag is `tag`; null outside "a" to "s".
const AlertLink* alertLinkOfTag(QChar tag);

// The file pickers' filters, one "text|pattern" pair after another.
inline const QString SoundFileFilter =
    QStringLiteral("Wave (*.wav)|*.wav|MP3 (*.mp3)|*.mp3|All Files (*.*)|*.*");
inline const QString ApplicationFileFilter = QStringLiteral("Excecutable Files (*.exe)|*.exe|All Files (*.*)|*.*");

// The values that travel between the wizard and its settings dialog.
struct AlertSetting {
    qint16 Kind = NoSettingKind;
    QString Text;  // kinds 1, 2, 4, 5, 14 and 15
    double Value1 = -1;
    double Value2 = -1;
    bool Open = false;
    bool Cancelled = false;
    MailSettings smtp;  // kind 17
};

// True for the kinds whose value travels as text.
bool isTextKind(qint16 kind);

// The current value of the Alert's field behind a kind, as the dialog starts from it.
AlertSetting currentSetting(qint16 kind, const Alert& a, const MailSettings& mail);
// The dialog's result stored where its kind says; kind 17 sets the mail settings.
void storeSetting(const AlertSetting& s, Alert& a, MailSettings& mail);

// What the sentence shows for a link: tag letter and value, or the word itself
// while the field is unset or names a Graph or Node that no longer exists.
// "(Settings)" never shows a value. NUL characters of names are dropped.
QString linkReplacement(const QString& word, const Alert& a, const std::vector<Graph>& sensors);

// The table rows of the action, condition and exception; 0 (the empty row) for
// a clause with no code above 0.
std::array<int, 3> clauseRows(const Alert& a, const AlertOptionTable& table);

// The option list's index that shows the page's clause (1 to 3): its code
// minus 1, so exception 0 ("[NONE]") selects nothing; none while the code is -1.
std::optional<int> optionListIndex(int page, const Alert& a);

// The rows of a page, first and last; the options shown on it ("[NONE]" last on page 3).
std::pair<int, int> pageRows(int page, const AlertOptionTable& table);
QStringList pageOptions(int page, const AlertOptionTable& table);
inline const QString NoneOption = QStringLiteral("[NONE]");

// Sets the page's clause from a click on the option list.
void chooseOption(int page, int listIndex, const QString& entry, Alert& a);

// A length of time in the dialog's four boxes, by whole division.
struct TimeLength {
    qint64 days = 0, hours = 0, minutes = 0, seconds = 0;
};
TimeLength splitSeconds(double seconds);
double joinSeconds(const TimeLength& t);
// A box of txtTimeLength (0 days, 1 hours, 2 minutes, 3 seconds) as it takes a
// typed value: days not below 0, hours not above 23, minutes and seconds not above 59.
qint64 clampTimeLength(int box, qint64 value);

// The moment number yyyymmddhhnnss of a date and a time.
double momentNumber(const QDate& date, const QTime& time);
// The date and time a moment number's digits name; `present` for an unset
// moment (0 or below) or digits that name no real date.
QDateTime momentDateTime(double moment, const QDateTime& present);

// A file picker's filter text, "text|pattern|text|pattern", as its pairs.
struct FileFilter {
    QString text;
    QString pattern;
};
std::vector<FileFilter> fileFilters(const QString& filter);
// Whether a file shows under a filter's pattern. "*.*" is every file, and
// "*.exe" also takes the files that may be executed.
bool fileMatchesFilter(const QString& fileName, bool executable, const QString& pattern);

}  // namespace orm
