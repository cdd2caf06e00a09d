#pragma once
// The rules by which input is parsed, written down once more: plain, slow and without any shortcut. Every trial is made
// in full, every literal is read byte by byte, everything is copied. It stands beside the parser of the program to keep
// it honest, and shares nothing with it but the element table.
//
// Cost: exponential in the depth of recovering categories, n! for permutations. A budget of steps bounds it.

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "typeschema/CTypeSchema.h"

namespace kvl {

// A message that a parse would raise: what, at which row, and where the cursor stood in the text being read (the input,
// or the line of a ::LINE).
struct ParseFault {
    enum Kind {
        kLiteral,
        kElement,
        kNoAlternative,
        kNoPermutation,
        kEmptyList,
        kNoTerminator,
        kEmptyDistance,
        kNestedElements,
        kNoEndLiteral,
    };
    Kind kind;
    int row;
    std::string text;
    int cursor;
    int cursorBehindBegin = 0;  // of kNoEndLiteral: behind the begin literal, in the same text
};

class LiteralParser {
public:
    enum class Result { kMatched, kFailed, kOverBudget };
    using Cells = std::map<std::string, std::string>;   // by the columns' labels; no cell for a nested list
    using Records = std::map<std::vector<int>, Cells>;  // by path

    // Reads the element table of `schema`, which outlives this; neither its input nor its values.
    LiteralParser(const CTypeSchema& schema, std::string_view input, long stepBudget);

    Result Parse();

    // All that follows is for after Parse.
    int Cursor() const { return cursor_; }
    // The last byte of the root.
    int RootEnd() const;
    // Is there text behind the root that is not invisible?
    bool HasRemainder() const;
    const std::string& TextAt(int row) const { return slots_[static_cast<std::size_t>(row)].text; }
    // Of the list that begins at the row.
    const Records& RecordsAt(int row) const { return slots_[static_cast<std::size_t>(row)].records; }
    const std::vector<ParseFault>& Faults() const { return faults_; }

private:
    // What a variable holds besides its place in the grammar; kept at its first row.
    struct Slot {
        std::string text, pendingCell;
        int spanStart = -1, spanEnd = -1;
        int endRow = -1;  // of a category
        Records records;
    };
    struct ChildRange {
        int first, last;
    };
    struct OverBudget {};

    // --- rows ---
    const ElementEntry& Entry(int row) const { return schema_.elements[static_cast<std::size_t>(row)]; }
    const CVariable& Variable(int row) const { return *Entry(row).variable; }
    Slot& SlotOf(int row) { return slots_[static_cast<std::size_t>(row)]; }
    int FindEndRow(int beginRow) const;
    int EndRow(int beginRow) const { return slots_[static_cast<std::size_t>(beginRow)].endRow; }
    int NextSibling(int row) const { return Entry(row).mark == kMarkBegin ? EndRow(row) + 1 : row + 1; }
    bool HasOwnerList(int row) const { return Variable(row).ownerList != nullptr; }
    bool IsColumnOf(int row, int listRow) const;

    // --- input ---
    int Length() const { return static_cast<int>(input_.size()); }
    bool IsAtEnd() const { return cursor_ >= Length(); }
    bool GetChar(char& c);
    void SkipInvisible();
    std::string Between(int first, int behind) const;
    void Step();

    // --- frame ---
    bool ParseRange(int first, int last, bool store);
    bool ParseInside(int row, int first, int last, bool store);  // with the category at `row` as an enclosing one
    bool ParseCategory(int first, int last, bool store);
    void ResetRange(int first, int last);
    bool IsFailureExpected() const;
    bool Fail(ParseFault::Kind kind, int row, int cursorBehindBegin = 0);
    void SetSpan(int row, int start, int end);
    void CloseSpan(int row);
    void StoreValue(int row, const std::string& text, bool store);
    std::vector<ChildRange> CollectChildren(int first, int last);

    // --- literals and elementary elements ---
    bool ParseLeaf(int row, bool store);
    bool ParseLiteral(int row);
    std::string WithoutQuotes(int row) const;
    bool LiteralFailed(int row, int cursor);
    bool MatchStrict(const std::string& literal, int& start, int& end);
    bool MatchWeak(const std::string& literal, int& start, int& end, bool anchored);
    bool MatchVisibleRun(const std::string& literal, std::size_t& j, bool& matched, bool& eof);
    bool MatchWhiteRun(const std::string& literal, std::size_t& j, bool& matched, bool& eof);
    bool ParseElementary(int row, bool store);
    bool GetFirstVisible(char& c);
    bool ReadWord(std::string& token);
    bool ReadNumber(std::string& token, int pointsAllowed);
    bool ReadIdentifier(std::string& token);
    bool ReadWhiteSpace(std::string& token);

    // --- categories ---
    bool ParseSequence(int first, int last, bool store);
    bool ParseOption(int first, int last, bool store);
    bool ParseLine(int first, int last, bool store);
    bool PassesOverWhiteSpace(int first, int last) const;
    bool ParseNested(int first, int last, bool store);
    bool FindNextBracket(const std::string& begin, const std::string& end, bool& isBegin, int& start);
    bool ParseChoice(int first, int last, bool store);
    bool ParsePermutation(int first, int last, bool store);
    bool ParseList(int first, int last, bool store);
    bool ParseRepetitions(int first, int last, bool store);
    bool ParseTerminated(int first, int last, bool store);
    bool Scan(int first, int last, bool store, std::string& text);

    // --- records ---
    void ClearPendingCells(int listRow);
    void AddRecord(int listRow);
    void TakeBackRecords(std::size_t count);  // down to as many as had been added then

    const CTypeSchema& schema_;
    std::string input_;
    int cursor_ = 0;
    std::vector<Slot> slots_;
    std::vector<int> enclosing_;  // the kinds of the categories around the current row, innermost last
    std::vector<std::pair<int, std::vector<int>>> added_;  // row of the list and path of each record, in order
    std::vector<ParseFault> faults_;
    long stepsLeft_;
};

}  // namespace kvl
