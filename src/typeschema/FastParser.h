#pragma once
// The input parser as it runs when nobody watches: one walk over the element table, in which a trial is the parse.
//
// Where the rules ask for a trial without storing and a second, storing pass, this walk stores at once: fields go onto
// a stack of pending cells, finished records into their lists, and a failed trial takes back what was put there since
// it began. Texts of elements that are no columns stay as the last attempt left them, whether it failed or not.
//
// Linear in the input for every grammar without permutations and unbounded terminators: expensive outcomes are
// remembered (TrialMemo), elements that cannot begin with the byte at the cursor are not tried, and a terminator that
// begins with a literal is searched for. Where a remembered success is used, the fields inside are missing; the
// outermost trial then runs once more without such shortcuts.
//
// Held against a literal walker by the differential tests.

#include <vector>

#include "typeschema/CTypeSchema.h"
#include "typeschema/ParseProgram.h"
#include "typeschema/TrialMemo.h"
#include "typeschema/WeakMatch.h"

namespace kvl {

class FastParser {
public:
    explicit FastParser(CTypeSchema& schema);
    [[nodiscard]] bool Parse();
    // Elements visited; what the tests of linear cost count.
    std::size_t Steps() const { return steps_; }

private:
    // What a failed trial goes back to.
    struct Mark {
        std::size_t cells;
        std::size_t records;
    };
    // The last search of a terminator's first literal: nothing lies between `from` and `at` (-1: up to the window's
    // end).
    struct Search {
        int from = -1;
        int at = -1;
        int windowEnd = -1;
    };
    // The list that was read last in a trial: wherever one of its repetitions begins, the list ends at `end`.
    struct ListRun {
        std::vector<int> starts;  // ascending
        int end = -1;
        int windowEnd = -1;

        bool HasStart(int position, int windowEndNow) const;
    };

    bool ParseRange(int from, int to);
    bool ParseElement(int row);
    bool ParseRemembered(int row);
    bool ParseCategory(int row);
    bool ParseLiteral(int row);
    bool ParseElementary(int row);
    bool ParseSequence(int row);
    bool ParseOption(int row);
    bool ParseLine(int row);
    bool ParseNested(int row);
    bool ParseChoice(int row);
    bool ParsePermutation(int row);
    bool ParseList(int row);
    bool ParseText(int row);  // ::DISTANCE and ::STREAM

    bool FindNestedEnd(int row, int& endStart);
    bool ParseRepetition(int row, std::vector<int>& starts, bool keepStart);
    void AddRecord(int row, std::size_t firstCell);
    bool FindTerminator(int row, int& here);
    bool Scan(int row, int& here);
    bool JumpToCandidate(int row, int& next);
    int FindLiteral(int row, int from);

    struct PermutationSearch;
    bool Permute(PermutationSearch& search);

    // A trial of the rows from `from` to `to`: on failure all is taken back but the cursor and the texts of elements.
    bool Try(int from, int to);
    Mark Now() const { return {cells_.size(), added_.size()}; }
    void TakeBack(const Mark& mark);
    // Nothing read so far will be taken back.
    void Commit();
    bool IsFailureExpected() const { return expected_ > 0; }

    void SetText(int row, int begin, int end);
    // The texts set from here on stay apart from those before.
    std::size_t MarkTexts() { return textMark_ = textLog_.size(); }
    void DropTexts() {
        textLog_.clear();
        textMark_ = 0;
    }
    void ClearTextsInside(int row);
    // Text of a category from `begin` to `end`, trimmed: for the script and, when `matched`, for the record.
    void CloseText(int row, int begin, int end, bool matched);
    void PublishTexts();

    CTypeSchema& schema_;
    ParseProgram program_;
    InputWindow window_;
    int expected_ = 0;  // categories around that can recover
    std::size_t steps_ = 0;

    std::vector<CVariableKVLCategoryList::ParsedCell> cells_;  // pending, of all records under construction
    std::vector<int> added_;  // rows of the lists that got a record in a trial, in order

    TrialMemo memo_;
    std::vector<RowText> textLog_;   // texts set during the present trials
    std::size_t textMark_ = 0;       // the last place at which the log must stay cut
    std::vector<RowText> rowTexts_;  // by row, the last text; row -1 where none was set
    bool shortcutsAllowed_ = true;
    std::size_t shortcuts_ = 0;  // remembered successes that were used

    std::vector<Search> searches_;   // by row
    std::vector<ListRun> listRuns_;  // by row
};

}  // namespace kvl
