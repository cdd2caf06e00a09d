#pragma once
// The variables of one entity by label, and the lookup of a name: exact, by the end of a label (":NAME"), or with gaps
// ("TOP~NAME").
//
// Exact names are found by hash. For the others a label is a candidate only if its last segment is one that the name
// can end in; several hits are ordered by label, so that nothing depends on hash order. The answers to the names of
// commands are remembered, for as long as they hold.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "values/CVariable.h"

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
    Selection Select(std::string_view name) const;

    // Puts in a variable that the table owns. False, and nothing changes, when the label is taken.
    bool Insert(std::unique_ptr<CVariable> variable);
    // The same for a variable owned elsewhere, under its label or under another one.
    bool InsertBorrowed(CVariable* variable) { return InsertBorrowed(variable, variable->label); }
    bool InsertBorrowed(CVariable* variable, std::string_view label);
    // Puts a variable owned elsewhere in the place of the one with that label; an owned one goes.
    void ReplaceBorrowed(CVariable* variable) { ReplaceBorrowed(variable, variable->label); }
    void ReplaceBorrowed(CVariable* variable, std::string_view label);
    // Takes a variable out, under the label that it was entered by. An owned one is destroyed.
    void Erase(std::string_view label);
    void EraseIf(const std::function<bool(const CVariable&)>& condition);
    void Clear();
    std::size_t Size() const { return slots_.size(); }

    // What is entered from here on is local: TakeBackLocals removes it again. False, and the table is of no more use,
    // if anything else has changed in between.
    void BeginLocals();
    [[nodiscard]] bool TakeBackLocals();

    // All variables in order of their labels.
    std::vector<CVariable*> InOrder() const;
    // Those whose label is `name` or begins with it and ":", in order.
    std::vector<CVariable*> Below(std::string_view name) const;

private:
    struct Slot {
        CVariable* variable = nullptr;
        std::unique_ptr<CVariable> owned;
        bool isLocal = false;
    };
    struct LabelHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    template <class T>
    using LabelMap = std::unordered_map<std::string, T, LabelHash, std::equal_to<>>;
    using Labels = std::vector<const std::string*>;  // of slots_

    bool Put(CVariable* variable, std::string_view label, std::unique_ptr<CVariable> owned);
    const Slot* FindSlot(std::string_view name) const;
    Labels Matches(std::string_view name) const;
    void IndexSegments() const;
    // After anything but an entry: nothing that is remembered holds any more.
    void Changed();

    LabelMap<Slot> slots_;
    Labels locals_;  // in the order in which they were entered
    bool marksLocals_ = false;
    bool changedBelowLocals_ = false;

    // Labels by last segment; made when the first short name or gap is asked for.
    mutable LabelMap<Labels> bySegment_;
    mutable bool indexed_ = false;
    // The last answers of FindOne. One for an exact name holds until its variable goes, any other until the next entry.
    struct Remembered {
        std::string name;
        CVariable* variable = nullptr;
        std::uint64_t epoch = 0;
    };
    mutable std::vector<Remembered> remembered_;
    mutable unsigned lookups_ = 0;  // as far as nothing is remembered
    std::uint64_t epoch_ = 1;       // of the present entries
};

}  // namespace kvl
