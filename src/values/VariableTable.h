#pragma once
// The variables of one entity by label, and the lookup of a name: exact, by the end of a label (":NAME"), or with gaps
// ("TOP~NAME").
//
// Exact names are found by hash. For the others a label is a candidate only if its last segment is one that the name
// can end in; several hits are ordered by label, so that nothing depends on hash order. The answers to the names of
// commands are remembered, for as long as they hold.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "values/CVariable.h"
#include "values/VariableIndex.h"

namespace kvl {

// Does a name select a label? A short name matches from the end, any other from the start; "~" stands for any text.
bool MatchesLabel(std::string_view name, std::string_view label);

class VariableTable {
public:
    VariableTable() = default;
    VariableTable(VariableTable&&) = default;
    VariableTable& operator=(VariableTable&&) = default;

    // The variable with exactly this label, or null.
    CVariable* Find(std::string_view label) const;
    // What a name selects: null for nothing; the first by label of several, with `ambiguous` set and up to three
    // labels.
    struct Selection {
        CVariable* variable = nullptr;
        bool ambiguous = false;
        std::vector<std::string> labels;
    };
    // The common case of one hit; null when there is none or several: Select tells more then.
    CVariable* FindOne(std::string_view name) const;
    // The same for whoever asks again and again with one name, and keeps the answer for it: as long as no variable
    // comes or goes, no name is looked at.
    struct Answer {
        CVariable* variable = nullptr;
        std::uint64_t epoch = 0;
    };
    CVariable* FindOne(std::string_view name, Answer& answer) const {
        if (answer.epoch != epoch_) answer = {FindOne(name), epoch_};
        return answer.variable;
    }
    Selection Select(std::string_view name) const;

    // Puts in a variable that the table owns. False, and nothing changes, when the label is taken.
    bool Insert(std::unique_ptr<CVariable> variable);
    // The same for a variable owned elsewhere, under its label or under another one.
    bool InsertBorrowed(CVariable* variable) { return InsertBorrowed(variable, variable->label); }
    bool InsertBorrowed(CVariable* variable, std::string_view label);
    // Puts a variable owned elsewhere in the place of the one with that label. An owned one is seen no more; the command
    // that runs may still use it, so it lives as long as its row.
    void ReplaceBorrowed(CVariable* variable) { ReplaceBorrowed(variable, variable->label); }
    void ReplaceBorrowed(CVariable* variable, std::string_view label);
    // Takes a variable out, under the label that it was entered by. An owned one is destroyed.
    void Erase(std::string_view label);
    void Clear();
    std::size_t Size() const { return entries_.size(); }

    // What is entered from here on is local: TakeBackLocals removes it again. False, and the table is of no more use,
    // if anything else has changed in between.
    void BeginLocals();
    [[nodiscard]] bool TakeBackLocals();

    // All variables in order of their labels.
    std::vector<CVariable*> InOrder() const;
    // Those whose label is `name` or begins with it and ":", in order.
    std::vector<CVariable*> Below(std::string_view name) const;

private:
    using Row = VariableIndex::Row;
    static constexpr Row kNoRow = VariableIndex::kNoRow;
    struct Entry {
        std::string label;  // the variable's, or that of the parameter that it stands for
        CVariable* variable = nullptr;
        std::unique_ptr<CVariable> owned;
    };

    Row FindRow(std::string_view label) const;
    // The one row that a name selects; kNoRow for none or several.
    Row FindOneRow(std::string_view name) const;
    std::vector<Row> Matches(std::string_view name) const;
    bool Put(CVariable* variable, std::string_view label, std::unique_ptr<CVariable> owned);
    Row LastRow() const { return static_cast<Row>(entries_.size() - 1); }
    bool IsLocal(Row row) const { return marksLocals_ && row >= firstLocal_; }
    void Remember(std::string_view name, Row row) const;
    // Labels by last segment, for short names and gaps.
    void IndexSegments() const;
    void AddToSegments(Row row) const;
    void TakeFromSegments(Row row);
    Row LastRowOfSegment(std::string_view segment) const;
    // After anything but an entry: nothing that is remembered holds any more.
    void Changed();

    std::vector<Entry> entries_;
    VariableIndex byLabel_;
    std::size_t firstLocal_ = 0;  // the rows from here on are local
    bool marksLocals_ = false;
    bool changedBelowLocals_ = false;

    // The last row of each segment, and for each row the one in front of it with the same segment. Made when the first
    // short name or gap is asked for.
    mutable VariableIndex bySegment_;
    mutable std::vector<Row> previousOfSegment_;
    mutable bool indexed_ = false;
    // The last answers of FindOne, by the place of the name asked for: commands ask with the same one each time. One
    // for an exact name holds until its variable goes, any other until the next entry.
    struct Remembered {
        std::string name;
        CVariable* variable = nullptr;
        std::uint64_t epoch = 0;
    };
    mutable std::vector<Remembered> remembered_;  // none, or a power of two
    mutable std::size_t displaced_ = 0;           // answers that gave way to others since it has grown
    mutable unsigned lookups_ = 0;                // as far as nothing is remembered
    std::uint64_t epoch_ = 1;                     // of the present entries
};

}  // namespace kvl
