#pragma once
// The element table as the input parser walks it: everything that does not change during a parse, worked out once per
// row.

#include <bitset>
#include <memory>
#include <string>
#include <vector>

#include "typeschema/CTypeSchema.h"
#include "typeschema/WeakMatch.h"

namespace kvl {

// The bytes with which an element can begin. Where `canBeEmpty` is set it may match without any of them.
struct FirstBytes {
    std::bitset<256> bytes;
    bool canBeEmpty = false;
    // Does an attempt that fails at its first byte read on behind it? Then it may end at the end of the input.
    bool readsOn = false;
    // Is white space in front skipped, so that `bytes` tells of the first visible byte?
    bool behindWhiteSpace = false;

    bool Has(char c) const { return bytes[static_cast<unsigned char>(c)]; }
    // Where the byte stands that decides for an attempt at the cursor; the window's end if there is none.
    int Place(const InputWindow& window) const {
        return behindWhiteSpace ? window.FirstVisibleFrom(window.cursor) : window.cursor;
    }
    // Must an attempt at the cursor fail at its first byte?
    bool Excludes(const InputWindow& window) const {
        if (canBeEmpty) return false;
        const int place = Place(window);
        return place < window.end && !Has(window.At(place));
    }
    // Afterwards an element that begins with any byte of the two.
    void Join(FirstBytes other);
};

// How an element is read: by a trial, or plainly.
enum class Reading : unsigned char {
    Trial,
    Bytes,          // a literal that the input must hold byte for byte
    SpacedLiteral,  // a literal in which the input may have other white space, or an empty one, which never matches
    Token,
    TextToBytes,  // a DISTANCE or STREAM that is not the root, up to one literal of bytes
};

// One row; the rows of a table lie behind each other, those inside of a category between it and its end row.
struct ParseRow {
    int kind = kElementNone;         // ElementKind
    int number = 0;                  // of the row in its table
    int end = 0;                     // end row of a category; the row itself else
    const ParseRow* last = nullptr;  // row number `end`
    int column = -1;                 // of a labelled column, in its list
    bool showsText = false;  // labelled and no column: a script sees the last text that was set, by a failed trial too
    bool silent = false;     // no row from here to `end` shows its text
    bool insideSilent = false;     // no row between the two shows its text
    bool keepsWhiteSpace = false;  // of a LINE: its first elementary element is a WHITESPACE
    bool insidePlain = false;      // all rows inside are plain, and there is one
    bool isMereChoice = false;     // a CHOICE of one alternative at least that keeps no text
    Reading reading = Reading::Trial;
    int jumpLength = 0;   // of a literal that a search can jump to: bytes in front of its first white space
    std::string literal;  // prepared text of a literal; empty when it cannot be matched
    CVariable* variable = nullptr;
    CVariableKVLCategoryList* list = nullptr;  // of a LIST row
    FirstBytes first;                          // of the element
    FirstBytes insideFirst;                    // of the elements of a category, as a sequence

    bool IsLeaf() const { return kind >= kElementStrictLiteral; }
    bool IsPlain() const { return reading != Reading::Trial; }
    bool IsLiteral() const { return kind == kElementStrictLiteral || kind == kElementWeakLiteral; }
    bool KeepsText() const { return showsText || column >= 0; }
    // Of a literal: what a search for it looks for.
    std::string_view Head() const { return std::string_view(literal).substr(0, static_cast<std::size_t>(jumpLength)); }
    // The rows inside of a category, and the row behind the element.
    const ParseRow* Inside() const { return this + 1; }
    const ParseRow* InsideEnd() const { return last; }
    const ParseRow* Behind() const { return last + 1; }
};

class ParseProgram {
public:
    explicit ParseProgram(const CTypeSchema& schema);
    ParseProgram(const ParseProgram&) = delete;  // its rows point to each other
    ParseProgram& operator=(const ParseProgram&) = delete;

    const ParseRow& operator[](int row) const { return rows_[static_cast<std::size_t>(row)]; }
    int Size() const { return static_cast<int>(rows_.size()); }
    // The row behind an element.
    int Behind(int row) const { return (*this)[row].end + 1; }
    const ParseRow* Begin() const { return rows_.data(); }
    const ParseRow* End() const { return rows_.data() + rows_.size(); }

private:
    void FillRow(const CTypeSchema& schema, int row);
    void FillLiteral(ParseRow& row) const;
    void FillSilence(int row);
    void FillFirst(int row);
    static Reading ReadingOf(const ParseRow& row);
    static bool IsInsidePlain(const ParseRow& row);

    std::vector<ParseRow> rows_;
};

}  // namespace kvl
