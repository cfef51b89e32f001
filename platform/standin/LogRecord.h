#pragma once

#include <string>
#include <string_view>

// A record as it was handed over, and the forms in which it is written. Control characters appear escaped in each of
// them, so a record is one line, and no text can forge another one.
struct LogRecord
{
    unsigned int level;
    std::string_view text;
    std::string_view origin;

    // "<level> <origin> <text>" and a line end.
    [[nodiscard]] std::string Line() const;

    // An entry of the system's journal: its fields, one a line. MESSAGE has the whole text; CODE_FILE and CODE_LINE are
    // what it begins with, "[file:line] ", if it does. OZNA_LEVEL and OZNA_ORIGIN are the level and the origin.
    [[nodiscard]] std::string JournalEntry(std::string_view program) const;
};
