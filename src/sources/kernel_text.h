// Walking the kernel's text files without copying them: lines, blank-separated
// words and whole numbers, over views of the text.
#pragma once

#include <QByteArrayView>
#include <QtGlobal>
#include <charconv>
#include <string_view>

namespace orm::kernel_text {

inline std::string_view view(QByteArrayView text) { return {text.data(), size_t(text.size())}; }

// Takes the next line off the front of `text`, without its line end; false
// when nothing is left.
inline bool nextLine(std::string_view& text, std::string_view& line)
{
    if (text.empty())
        return false;
    const size_t end = text.find('\n');
    line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return true;
}

inline bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

// Takes the next word off the front of `text`, skipping blanks; false when
// only blanks are left.
inline bool nextWord(std::string_view& text, std::string_view& word)
{
    size_t start = 0;
    while (start < text.size() && isBlank(text[start]))
        ++start;
    if (start == text.size()) {
        text = {};
        return false;
    }
    size_t end = start;
    while (end < text.size() && !isBlank(text[end]))
        ++end;
    word = text.substr(start, end - start);
    text.remove_prefix(end);
    return true;
}

// A word made only of decimal digits, as an unsigned number.
inline bool toNumber(std::string_view word, quint64& value)
{
    if (word.empty())
        return false;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size();
}

// Takes the next word and reads it as an unsigned number.
inline bool nextNumber(std::string_view& text, quint64& value)
{
    std::string_view word;
    return nextWord(text, word) && toNumber(word, value);
}

inline std::string_view trimmed(std::string_view s)
{
    while (!s.empty() && isBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

}  // namespace orm::kernel_text
