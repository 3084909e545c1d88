// The Alert record: a rule of an action, a condition and an exception, with
// the Graph and Node it looks at by index.
#pragma once

#include <QString>
#include <QtGlobal>
#include <vector>

namespace orm {

// Action codes (rAction).
enum AlertAction : qint16 {
    SendEmail = 1,
    PlaySound = 2,
    ShowMessageAction = 3,
    SwitchLogging = 4,
    PrintGraphAction = 5,
    StartApplication = 6,
    RestartComputer = 7,
    ShutDownComputer = 8,
};

// Condition codes (rCondition).
enum AlertCondition : qint16 {
    ExceedsLimit = 1,
    DropsBelowLimit = 2,
    OutsideRange = 3,
    InsideRange = 4,
    EqualsNumber = 5,
    AtMoment = 6,
};

// Exception codes (rException); 0 is "[NONE]".
enum AlertException : qint16 {
    NoException = 0,
    WithinLastSamples = 1,
    ForLengthOfTime = 2,
    WithinTimeFrame = 3,
    OtherExceeds = 4,
    OtherDropsBelow = 5,
    OtherOutsideRange = 6,
    OtherInsideRange = 7,
    OtherEqualsNumber = 8,
};

// The fields as a new Alert has them; a load fills what the store lacks with
// other defaults (alert_store.h). -1 in a number or index means "not set".
struct Alert {
    bool rEnabled = false;
    QString rName;
    qint16 rAction = -1;
    qint16 rCondition = -1;
    qint16 rException = -1;
    QString aEmailAddress;
    QString aApplication;
    QString aMessage;
    QString aSound;
    bool aStartLogging = true;
    qint16 aSensor = -1;
    qint16 aNode = -1;
    qint16 cSensor = -1;
    qint16 cNode = -1;
    double cLimit = -1;
    double cRangeStart = -1;
    double cRangeEnd = -1;
    double cNumber = -1;
    double cDateValue = -1;  // a moment as the number yyyymmddhhnnss
    qint16 cDateType = -1;
    QString cDateExtra;
    double eNumber = -1;
    double eTimeLengthSeconds = -1;
    double eTimeFrameStart = -1;
    double eTimeFrameEnd = -1;
    qint16 eTimeFrameMode = -1;
    qint16 eSensor = -1;
    qint16 eNode = -1;
    double eLimit = -1;
    double eRangeStart = -1;
    double eRangeEnd = -1;
};

// A new Alert for a list that already holds `rowCount` rows: "New Alert <rowCount + 1>".
Alert newAlert(int rowCount);

// The mail settings shared by every e-mail action.
struct MailSettings {
    QString SMTPServer;  // "host" or "host:port"
    QString SMTPAuthUser;
    QString SMTPAuthPass;
    QString MailSenderName;
    QString MailSenderEMail;
};

}  // namespace orm
