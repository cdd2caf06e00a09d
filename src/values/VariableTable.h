#pragma once
// The variables of one entity by label, and the lookup of a name: exact, by the end of a label (":NAME"), or with gaps
// ("TOP~NAME").
//
// Exact names are found by hash. For the others a label is a candidate only if its last segment is one that the name
// can end in; several hits are ordered by label, so that nothing depends on hash order.

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
    // The same for a variable owned elsewhere.
    bool InsertBorrowed(CVariable* variable);
    // Puts a variable owned elsewhere in the place of the one with its label; an owned one goes.
    void ReplaceBorrowed(CVariable* variable);
    // Takes a variable out, under the label that it was entered by. An owned one is destroyed.
    void Erase(std::string_view label);
    void EraseIf(const std::function<bool(const CVariable&)>& condition);
    void Clear();
    std::size_t Size() const { return slots_.size(); }

    // All variables in order of their labels.
    std::vector<CVariable*> InOrder() const;
    // Those whose label is `name` or begins with it and ":", in order.
    std::vector<CVariable*> Below(std::string_view name) const;

private:
    struct Slot {
        CVariable* variable = nullptr;
        std::unique_ptr<CVariable> owned;
    };
    struct LabelHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    template <class T>
    using LabelMap = std::unordered_map<std::string, T, LabelHash, std::equal_to<>>;

    bool Put(CVariable* variable, std::unique_ptr<CVariable> owned);
    CVariable* FindUncached(std::string_view name) const;
    std::vector<const std::string*> Matches(std::string_view name) const;
    void Changed();

    LabelMap<Slot> slots_;
    // Labels by last segment; made when the first short name or gap is asked for, dropped by any change.
    mutable LabelMap<std::vector<const std::string*>> bySegment_;
    mutable bool indexed_ = false;
    // The last answers of FindOne, dropped by any change.
    struct Remembered {
        std::string name;
        CVariable* variable = nullptr;
    };
    mutable std::vector<Remembered> remembered_;
    mutable unsigned lookups_ = 0;  // since the last change, as far as nothing is remembered
};

}  // namespace kvl
