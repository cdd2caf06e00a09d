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

#include <unordered_map>
#include <vector>

#include "typeschema/BracketSearch.h"
#include "typeschema/CTypeSchema.h"
#include "typeschema/ElementReaders.h"
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
        std::size_t shortcuts;
    };
    // The last search of a terminator, or of the literal that it begins with: whoever begins to search between `from`
    // and `last` comes to `at`, or to nothing (-1).
    struct Search {
        int from = -1;
        int last = -1;
        int at = -1;
        int windowEnd = -1;

        bool Knows(int position, int windowEndNow) const {
            return windowEnd == windowEndNow && from >= 0 && from <= position && position <= last;
        }
    };
    // The list that was read last in a trial: wherever one of its repetitions begins, the list ends at `end`.
    struct ListRun {
        std::vector<int> starts;  // ascending
        int end = -1;
        int windowEnd = -1;

        bool HasStart(int position, int windowEndNow) const;
    };

    // What ends the parse with a message of its own, wherever it stands.
    struct TooManyOrders {
        int row;
    };
    // Orders of a permutation that are known to lead nowhere.
    static constexpr std::size_t kMostDeadOrders = 100000;

    // The elements from one row up to another.
    bool ParseRange(const ParseRow* from, const ParseRow* to);
    bool ParseInside(const ParseRow& row) { return ParseRange(row.Inside(), row.InsideEnd()); }
    bool ParseElement(const ParseRow& row);
    const ParseRow* ParsePlain(const ParseRow* from, const ParseRow* to);
    const ParseRow* FailAt(const ParseRow& row);
    bool ParseRemembered(const ParseRow& row);
    bool ParseCategory(const ParseRow& row);
    bool ParseSequence(const ParseRow& row);
    bool ParseOption(const ParseRow& row);
    bool ParseLine(const ParseRow& row);
    bool ParseNested(const ParseRow& row);
    bool ParseChoice(const ParseRow& row);
    const ParseRow* NextAlternative(const ParseRow& choice, const ParseRow* row) const;
    bool ParsePermutation(const ParseRow& row);
    bool ParseList(const ParseRow& row);
    bool ParseText(const ParseRow& row);  // ::DISTANCE and ::STREAM

    bool ParseRepetition(const ParseRow& row, std::vector<int>& starts, bool keepStart);
    void KeepRun(ListRun& place, ListRun&& run);
    void AddRecord(const ParseRow& row, std::size_t firstCell);
    bool FindTerminator(const ParseRow& row, int& here);
    bool ReadToBytes(const ParseRow& row);
    bool Scan(const ParseRow& row, int& here);
    bool ScanFromKnown(const ParseRow& row, const Search& known, int& here);
    bool JumpToCandidate(const ParseRow& row, int& next);
    bool IsInReach(const ParseRow& literal, int from, int found) const;
    int FindLiteral(const ParseRow& literal, int from);
    int FindFarLiteral(const ParseRow& literal, int from);

    struct PermutationSearch;
    bool Permute(PermutationSearch& search);

    // A trial of the rows from one up to another: on failure all is taken back but the cursor and the texts of
    // elements.
    bool Try(const ParseRow* from, const ParseRow* to);
    // The same for the plain rows inside of a category, which leave nothing but cells and texts behind.
    bool TryPlain(const ParseRow& row);
    Mark Now() const { return {cells_.size(), added_.size(), shortcuts_}; }
    void TakeBack(const Mark& mark);
    void DropCells(std::size_t first) {
        cells_.erase(cells_.begin() + static_cast<std::ptrdiff_t>(first), cells_.end());
    }
    // Nothing read so far will be taken back.
    void Commit();
    bool IsFailureExpected() const { return expected_ > 0; }

    void SetText(const ParseRow& row, int begin, int end) {
        if (row.showsText) ShowText({row.number, begin, end});
    }
    void ShowText(const RowText& text);
    void ShowToken(const ParseRow& row, const char* start, const Token& token);
    // The texts set from here on stay apart from those before.
    std::size_t MarkTexts() { return textMark_ = textLog_.size(); }
    void KeepLastTexts(std::size_t first);
    void DropTexts() {
        textLog_.clear();
        textMark_ = 0;
    }
    void ClearTextsInside(const ParseRow& row);
    // Text of a category from `begin` to `end`, trimmed: for the script and, when `matched`, for the record.
    void CloseText(const ParseRow& row, int begin, int end, bool matched);
    // The same for a row that keeps its text.
    void KeepText(const ParseRow& row, int begin, int end, bool matched);
    void PublishTexts();

    CTypeSchema& schema_;
    ParseProgram program_;
    ByteRuns runs_;
    InputWindow window_;
    int expected_ = 0;  // categories around that can recover
    std::size_t steps_ = 0;

    std::vector<Cell> cells_;                       // pending, of all records under construction
    std::vector<CVariableKVLCategoryList*> added_;  // the lists that got a record in a trial, in order

    TrialMemo memo_;
    std::vector<RowText> textLog_;   // texts set during the present trials
    std::size_t textMark_ = 0;       // the last place at which the log must stay cut
    std::vector<RowText> rowTexts_;  // by row, the last text; row -1 where none was set
    bool shortcutsAllowed_ = true;
    std::size_t shortcuts_ = 0;  // remembered successes in what has been read and not taken back

    std::vector<Search> searches_;                     // by row
    std::vector<ListRun> listRuns_;                    // by row
    std::size_t keptStarts_ = 0;                       // in these, and those that gave way to others
    std::unordered_map<int, BracketSearch> brackets_;  // by row of a NESTED
};

}  // namespace kvl
