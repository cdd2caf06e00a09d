#pragma once
// The rules by which input is parsed, written down once more: plain, slow and without any shortcut. Every trial is made
// in full, every literal is read byte by byte, everything is copied. It stands beside the parser of the program to keep
// it honest, and shares nothing with it but the element table, the prepared texts of literals and the messages.
//
// Cost: exponential in the depth of recovering categories, n! for permutations. A budget of steps bounds it.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "typeschema/CTypeSchema.h"

namespace kvl {

struct LiteralParse {
    struct Record {
        std::map<std::string, std::string> cells;  // by the columns' labels
        bool provisional;
    };
    // What a variable holds besides its place in the grammar; kept at its first row.
    struct Slot {
        std::string text, pendingCell;
        std::map<std::vector<int>, Record> records;  // of a list, by path
    };
    bool matched = false;
    int cursor = 0;
    int rootEnd = -1;  // the last byte of the root
    std::vector<Slot> slots;

    // Is there text behind the root that is not invisible?
    bool HasRemainder(std::string_view input) const;
};

// Reads the element table of `schema`, neither its input nor its values; raises messages and writes an open log.
// Nothing if it takes more than so many steps.
std::optional<LiteralParse> ParseLiterally(const CTypeSchema& schema, std::string_view input, long stepBudget);

}  // namespace kvl
