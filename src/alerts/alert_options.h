// The clause table of the Alert wizard: for each row the option's text, the
// sentence it adds to the rule, and the link words of that sentence.
#pragma once

#include <QString>
#include <array>

namespace orm {

inline constexpr int AlertOptionRows = 23;  // row 0 stays empty
inline constexpr int AlertOptionColumns = 5;
inline constexpr int AlertOptionPages = 3;  // actions, conditions, exceptions

// Columns of a row.
enum AlertOptionColumn : int {
    OptionText = 0,   // shown in the option list
    OptionSentence = 1,
    OptionLink1 = 2,  // link words in the order they stand in the sentence
    OptionLink2 = 3,
    OptionLink3 = 4,  // empty in every row
};

struct AlertOptionTable {
    std::array<std::array<QString, AlertOptionColumns>, AlertOptionRows> AlertOptions;
    // For pages 1 to 3 (index 0 to 2): first and last row, as decimal text.
    std::array<std::array<QString, 2>, AlertOptionPages> AlertOptionRange;
};

// An action's code is its row; a condition's is its row minus 8; an
// exception's is its row minus 14.
inline constexpr int ConditionRowOffset = 8;
inline constexpr int ExceptionRowOffset = 14;

// The table as start-up fills it.
AlertOptionTable FillAlertOptions();

}  // namespace orm
