// Numbers and booleans as the settings store and the log write and read them.
#pragma once

#include <QString>
#include <optional>

namespace orm {

// The shortest decimal text of a double with up to 15 significant digits:
// "1000", "0.5", "1E+15", "1E-05"; whole numbers have no decimal point. Always
// with ".", whatever the desktop's locale: the settings file, the log and the
// gadget files are read back on other machines and split at ",".
QString numberText(double value);
// The same text into `out`, which holds at least NumberTextSize characters;
// the length written, without a NUL.
inline constexpr int NumberTextSize = 32;
int numberTextTo(double value, char* out);
// The same number as the screen shows it: with the locale's decimal separator.
QString screenNumberText(double value);
// A number the user typed on screen: the locale's separator or ".".
double typedNumber(const QString& text);

// The numeric value of a text's leading number ("12abc" is 12, "abc" is 0),
// the way stored values are read.
double leadingNumber(const QString& text);
// A count typed into a box: the whole part of its leading number, below 1 is 1.
int countAtLeastOne(const QString& text);

// "True" or "False".
QString boolText(bool value);

// The stored boolean forms, in any letter case; anything else has no value.
std::optional<bool> parseBool(const QString& text);

}  // namespace orm
