#include "monitor/alert_sentence.h"

#include "alerts/alert_links.h"

#include <QTextCharFormat>

namespace orm {

namespace {

QTextCharFormat formatAt(const QTextDocument& doc, int position)
{
    QTextCursor c(const_cast<QTextDocument*>(&doc));
    c.setPosition(position + 1);  // a cursor reports the character before it
    return c.charFormat();
}

QColor colourOf(const QTextCharFormat& f)
{
    return f.foreground().style() == Qt::NoBrush ? TextColour : f.foreground().color();
}

bool underlined(const QTextDocument& doc, int position)
{
    return formatAt(doc, position).fontUnderline();
}

bool plain(const QTextDocument& doc, int position)
{
    const QTextCharFormat f = formatAt(doc, position);
    return colourOf(f) == TextColour && !f.fontUnderline();
}

bool isTag(const QTextDocument& doc, int position)
{
    const QTextCharFormat f = formatAt(doc, position);
    return colourOf(f) == TagColour && !f.fontUnderline();
}

void colour(QTextCursor& c, const QColor& colour, bool underline)
{
    QTextCharFormat f;
    f.setForeground(colour);
    f.setFontUnderline(underline);
    c.mergeCharFormat(f);
}

int textLength(const QTextDocument& doc)
{
    return doc.characterCount() - 1;  // the closing paragraph mark is not text
}

}  // namespace

void drawSentence(QTextDocument& doc, const Alert& a, const AlertOptionTable& table,
                  const std::vector<Graph>& sensors)
{
    const auto rows = clauseRows(a, table);
    QString text;
    for (int row : rows)
        text += table.AlertOptions[size_t(row)][OptionSentence];
    doc.setPlainText(text);
    QTextCursor all(&doc);
    all.select(QTextCursor::Document);
    colour(all, TextColour, false);
    for (int column : {OptionLink1, OptionLink2, OptionLink3})
        for (int row : rows) {
            const QString& word = table.AlertOptions[size_t(row)][size_t(column)];
            if (!word.isEmpty())
                SetLinkText(doc, word, linkReplacement(word, a, sensors));
        }
}

QTextCursor MarkLink(QTextDocument& doc, const QString& word)
{
    if (word.isEmpty())
        return QTextCursor();
    const QString pattern = word == QLatin1String("Start") ? word : QLatin1Char(' ') + word;
    return doc.find(pattern, 0, QTextDocument::FindCaseSensitively);
}

void SetLinkText(QTextDocument& doc, const QString& word, const QString& replacement)
{
    QTextCursor c = MarkLink(doc, word);
    if (c.isNull())
        return;
    const int start = c.selectionStart();
    int linkStart = start + 1;
    int linkEnd = start + 1 + int(word.size());
    if (replacement != word) {
        c.insertText(replacement);
        QTextCursor tag(&doc);
        tag.setPosition(start);
        tag.setPosition(start + 1, QTextCursor::KeepAnchor);
        colour(tag, TagColour, false);
        linkEnd = start + int(replacement.size());
    }
    QTextCursor link(&doc);
    link.setPosition(linkStart);
    link.setPosition(linkEnd, QTextCursor::KeepAnchor);
    colour(link, LinkColour, true);
}

std::pair<int, int> linkSpanAt(const QTextDocument& doc, int position)
{
    const int length = textLength(doc);
    if (position < 1 || position >= length)
        return {0, 0};
    if (!underlined(doc, position)) {
        // The tag takes the blank's place in front of its link and belongs to it.
        if (!(isTag(doc, position) && position + 1 < length && underlined(doc, position + 1)))
            return {0, 0};
        ++position;
    }
    int first = position;
    while (first > 0 && !plain(doc, first - 1))
        --first;
    int end = position;
    while (end < length && underlined(doc, end))
        ++end;
    return {first, end};
}

QString linkAtCharacter(const QTextDocument& doc, int position)
{
    const auto [first, end] = linkSpanAt(doc, position);
    return doc.toPlainText().mid(first, end - first);
}

QString shownSentence(const QTextDocument& doc)
{
    QString text = doc.toPlainText();
    for (int i = 0; i < text.size(); ++i)
        if (isTag(doc, i))
            text[i] = QLatin1Char(' ');
    return text;
}

}  // namespace orm
