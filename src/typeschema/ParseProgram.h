#pragma once
// The element table as the input parser walks it: everything that does not change during a parse, worked out once per
// row.

#include <bitset>
#include <memory>
#include <string>
#include <vector>

#include "typeschema/CTypeSchema.h"

namespace kvl {

// The bytes with which an element can begin. Where `canBeEmpty` is set it may match without any of them.
struct FirstBytes {
    std::bitset<256> bytes;
    bool canBeEmpty = false;
    // Does an attempt that fails at its first byte read on behind it? Then it may end at the end of the input.
    bool readsOn = false;

    // Must an attempt at this byte fail?
    bool Excludes(char c) const { return !canBeEmpty && !bytes[static_cast<unsigned char>(c)]; }
};

struct ParseRow {
    int kind = kElementNone;  // ElementKind
    int end = 0;              // end row of a category; the row itself else
    CVariable* variable = nullptr;
    CVariableKVLCategoryList* list = nullptr;  // of a LIST row
    int column = -1;                           // of a labelled column, in its list
    bool showsText = false;  // labelled and no column: a script sees the last text that was set, by a failed trial too
    bool silent = false;     // no row from here to `end` shows its text
    bool insideSilent = false;     // no row between the two shows its text
    bool keepsWhiteSpace = false;  // of a LINE: its first elementary element is a WHITESPACE
    std::string literal;           // prepared text of a literal; empty when it cannot be matched
    int jumpLength = 0;            // of a literal that a search can jump to: bytes in front of its first white space
    FirstBytes first;              // of the element
    FirstBytes insideFirst;        // of the elements of a category, as a sequence
};

class ParseProgram {
public:
    explicit ParseProgram(const CTypeSchema& schema);

    const ParseRow& operator[](int row) const { return rows_[static_cast<std::size_t>(row)]; }
    int Size() const { return static_cast<int>(rows_.size()); }
    // The row behind an element.
    int Behind(int row) const { return (*this)[row].end + 1; }

private:
    void FillRow(const CTypeSchema& schema, int row);
    void FillLiteral(ParseRow& row) const;
    void FillSilence(int row);
    void FillFirst(int row);
    FirstBytes FirstOfSequence(int from, int to) const;
    FirstBytes FirstOfAny(int from, int to) const;

    std::vector<ParseRow> rows_;
};

}  // namespace kvl
