// The speed test's option list (downvariations.txt): one option a line,
// "size in bytes|fewest seconds between two tests", lines ended by CR LF. The
// position of an option in the list is what a Node stores and what goes to
// the server.
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace orm {

// What is read of an option list, at most.
inline constexpr qint64 DownloadOptionsCap = 64 * 1024;

struct DownloadOption {
    qint64 size = 0;
    qint64 seconds = 0;
    QString text;  // as cmbDownloadOptions shows it, e.g. "500K   every 30 seconds"
};

// "500K", "2M", "1500K" (each "000" of the size's text is removed), or empty
// below 1000 bytes.
QString downloadSizeLabel(qint64 size);
// "30 seconds", "1.5 minutes", "2 hours": the divisions are not rounded.
QString downloadPeriodText(qint64 seconds);
// The label padded with blanks to 6 characters, " every " and the period.
QString downloadOptionText(qint64 size, qint64 seconds);

// The options of a list, as the program reads the file it fetched: nothing
// when the text is empty or holds no "|". Empty lines are skipped; a field
// that is not a whole number of 0 or more reads 0. Only the first
// DownloadOptionsCap bytes count, up to their last whole line.
std::optional<std::vector<DownloadOption>> parseDownloadOptions(const QByteArray& text);

// The strict reading the speed test endpoint makes of a list it is to serve:
// every non-empty line "SIZE|SECONDS", SIZE from 1 byte to 10 GB, SECONDS 0
// or more. The options, or an error that names the line.
struct DownloadOptionsCheck {
    std::vector<DownloadOption> options;
    QString error;
};
DownloadOptionsCheck checkDownloadOptions(const QByteArray& text);

}  // namespace orm
