// The error numbers of a failed transfer or copy, in the system error form
// that the error file and the failure mapping work with: a 32-bit number whose
// decimal text stands in the description, and its low 16 bits, which the
// error events carry.
#pragma once

#include <QNetworkReply>
#include <QString>
#include <QtGlobal>

namespace orm {

namespace TransferError {
// The four numbers the failure mapping looks for.
inline constexpr qint32 CannotConnect = qint32(0x80072EFDu);    // -2147012867
inline constexpr qint32 NotFound = qint32(0x80070006u);         // -2147024890, HTTP 404
inline constexpr qint32 ServiceUnavailable = qint32(0x8007000Cu);  // -2147024884, HTTP 503
inline constexpr qint32 InternalError = qint32(0x80070008u);    // -2147024888, HTTP 500
// The others keep apart what went wrong; the mapping gives them status 0.
inline constexpr qint32 NameNotResolved = qint32(0x80072EE7u);
inline constexpr qint32 InvalidUrl = qint32(0x80072EE5u);
inline constexpr qint32 ConnectionReset = qint32(0x80072EFFu);
inline constexpr qint32 InvalidServerResponse = qint32(0x80072F78u);
inline constexpr qint32 SecureChannelError = qint32(0x80072F7Du);
inline constexpr qint32 TooLarge = qint32(0x8007000Eu);
inline constexpr qint32 FileNotFound = qint32(0x80070002u);
inline constexpr qint32 AccessDenied = qint32(0x80070005u);
inline constexpr qint32 NetworkPathNotFound = qint32(0x80070035u);
inline constexpr qint32 ReadFault = qint32(0x8007001Eu);
inline constexpr qint32 WriteFault = qint32(0x8007001Du);
inline constexpr qint32 Cancelled = qint32(0x800704C7u);
// Any other HTTP status s of 400 or more is 0x80190000 + s.
inline constexpr qint32 HttpStatusBase = qint32(0x80190000u);
}  // namespace TransferError

// A failure as the error events carry it.
struct TransferFailure {
    qint16 number = 0;    // the low 16 bits of the system number
    QString description;  // "System Error &H80072EFD (-2147012867).  " and what happened
};

// The failure of `code` with a text saying what happened.
TransferFailure transferFailure(qint32 code, const QString& what);

// What a finished reply's error means: the HTTP status when the server gave one
// of 400 or more, else the network error. `stalled` marks a transfer that was
// ended for silence, which counts as "cannot connect".
TransferFailure replyFailure(QNetworkReply::NetworkError error, int httpStatus, const QString& reason,
                             bool stalled);

// The status kept for the error file: the description is searched for the
// four numbers in order (cannot connect 0, 503, 404, 500) and the last match
// wins; nothing found keeps 0. A 500 also replaces the description.
struct MappedFailure {
    int status = 0;
    QString description;
};
MappedFailure mapTransferFailure(const QString& description);

}  // namespace orm
