// A rule's sentence in a rich text document. A link is told from the rest by
// its character format alone: blue and underlined, behind a white tag letter
// that stands where the blank would be. Plain text is black, not underlined.
#pragma once

#include "alerts/alert.h"
#include "alerts/alert_options.h"
#include "model/model.h"

#include <QColor>
#include <QTextCursor>
#include <QTextDocument>
#include <utility>
#include <vector>

namespace orm {

// 0xff0000 and 0xffffff as 0x00BBGGRR.
inline const QColor LinkColour(0, 0, 255);
inline const QColor TagColour(255, 255, 255);
inline const QColor TextColour(0, 0, 0);

// The three clauses' sentences joined, all black and plain, then every link
// word of the action's, the condition's and the exception's row in turn, by
// column.
void drawSentence(QTextDocument& doc, const Alert& a, const AlertOptionTable& table,
                  const std::vector<Graph>& sensors);

// The first occurrence of a blank and the word ("Start" alone), selected with
// the blank; a null cursor when it is not there or the word is empty.
QTextCursor MarkLink(QTextDocument& doc, const QString& word);

// Writes `replacement` (linkReplacement) over the marked word: a tag letter in
// white and the value as a link, or, when it is the word itself, the word as a
// link with its blank left plain.
void SetLinkText(QTextDocument& doc, const QString& word, const QString& replacement);

// RichWordOver for the character at `position`: the link text there, its tag
// included, or empty. The character at 0 never counts; the white tag in front
// of a link counts as the link.
QString linkAtCharacter(const QTextDocument& doc, int position);
// The same as the span [first, end) of the document; first == end for none.
std::pair<int, int> linkSpanAt(const QTextDocument& doc, int position);

// The text a person reads: each tag shows as the blank it stands for.
QString shownSentence(const QTextDocument& doc);

}  // namespace orm
