#pragma once
// The input parser while the log is open: the rules taken by their word, with both passes of every category that can
// recover, so that the trace shows each step. Exponential in the depth of such categories; when the log closes itself
// the parse is abandoned and begun again by the fast parser, which comes to the same result.

#include <map>
#include <string>
#include <vector>

#include "typeschema/BracketSearch.h"
#include "typeschema/CTypeSchema.h"
#include "typeschema/ParseProgram.h"
#include "typeschema/WeakMatch.h"

namespace kvl {

class PlainParser {
public:
    explicit PlainParser(CTypeSchema& schema);
    [[nodiscard]] bool Parse();
    // The log closed itself under the parse. From then on nothing is reported, and what was read is to be dropped.
    bool IsAbandoned() const { return abandoned_; }

private:
    // How an attempt runs: with values stored or on trial, and whether the records it adds are on trial.
    struct Pass {
        bool store;
        bool provisional;
        Pass Trial() const { return {false, provisional}; }
    };

    bool ParseRange(int from, int to, Pass pass);
    bool ParseElement(int row, Pass pass);
    bool ParseKind(int row, Pass pass);
    bool ParseLiteral(int row);
    bool ParseElementary(int row, Pass pass);
    bool ParseSequence(int row, Pass pass);
    bool ParseOption(int row, Pass pass);
    bool ParseLine(int row, Pass pass);
    bool ParseNested(int row, Pass pass);
    bool ParseChoice(int row, Pass pass);
    bool ParsePermutation(int row, Pass pass);
    bool ParseOrder(const std::vector<int>& children, const std::vector<std::size_t>& order, Pass pass);
    bool ParseList(int row, Pass pass);
    bool ParseText(int row, Pass pass);
    bool Scan(int row, Pass pass, int& textEnd);

    // The rows inside, with the category able to recover from their failure.
    bool ParseInside(int from, int to, Pass pass);
    std::vector<int> ChildrenOf(int row) const;
    void ClearInside(int row);
    void ResetRange(int from, int to);
    void ClearPendingCells(const CVariableKVLCategoryList& list);
    void AddRecord(CVariableKVLCategoryList& list, bool provisional);
    void ConfirmRecord(CVariableKVLCategoryList& list, PathView key);
    // How many records each list between the rows has, by row; and back to as many, nested lists first.
    std::vector<std::size_t> CountRecords(int from, int to) const;
    void TakeBackRecords(int from, int to, const std::vector<std::size_t>& counts);
    void RemoveNewRecords(CVariableKVLCategoryList& list, std::size_t keep);

    void SetText(int row, std::string_view text);
    void StoreValue(int row, std::string_view text, Pass pass);
    void CloseText(int row, int begin, Pass pass);
    bool IsFailureExpected() const { return expected_ > 0 || abandoned_; }
    void Trace(int row, Pass pass, const char* ending);
    void Log(const std::string& text);

    CTypeSchema& schema_;
    ParseProgram program_;
    ByteRuns runs_;
    InputWindow window_;
    int expected_ = 0;
    bool abandoned_ = false;
    std::vector<std::string_view> pending_;  // by the row of a column
    std::map<int, BracketSearch> brackets_;  // by the row of a NESTED
};

}  // namespace kvl
