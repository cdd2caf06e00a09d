#include "values/VariableTable.h"

#include <algorithm>

namespace kvl {

namespace {

constexpr std::size_t kFewestRemembered = 256;
constexpr std::size_t kMostRemembered = 16384;
// A table that is asked less often than this, as that of a single short call, does not remember.
constexpr unsigned kLookupsBeforeRemembering = 32;
// Of more locals than this, and than there are other variables, the indexes are made anew.
constexpr std::size_t kLocalsTakenOutSingly = 100;
constexpr std::uint64_t kEveryEpoch = 0;

// The tokens between the gap marks, empty ones left out.
std::vector<std::string_view> SplitAtGaps(std::string_view name) {
    std::vector<std::string_view> tokens;
    while (!name.empty()) {
        const std::size_t gap = name.find('~');
        if (gap != 0) tokens.push_back(name.substr(0, gap));
        if (gap == std::string_view::npos) break;
        name.remove_prefix(gap + 1);
    }
    return tokens;
}

bool MatchesFromEnd(const std::vector<std::string_view>& tokens, std::string_view label) {
    std::size_t position = label.size();
    for (std::size_t i = tokens.size(); i-- > 0;) {
        if (position == 0) return false;
        const std::size_t found = label.rfind(tokens[i], position - 1);
        if (found == std::string_view::npos) return false;
        if (i + 1 == tokens.size() && found + tokens[i].size() != label.size()) return false;
        position = found;
    }
    return true;
}

bool MatchesFromStart(const std::vector<std::string_view>& tokens, std::string_view label) {
    std::size_t from = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const std::size_t found = label.find(tokens[i], from);
        if (found == std::string_view::npos || (i == 0 && found != 0)) return false;
        if (i + 1 == tokens.size() && found + tokens[i].size() != label.size()) return false;
        from = found + 1;
    }
    return true;
}

bool IsExact(std::string_view name) {
    return !name.starts_with(':') && name.find('~') == std::string_view::npos;
}

// Multiplied, so that names at regular distances do not meet in a few places.
std::size_t RememberedPlace(std::string_view name, std::size_t placeCount) {
    const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(name.data()) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(mixed >> 32) & (placeCount - 1);
}

std::string_view LastSegment(std::string_view label) {
    const std::size_t colon = label.rfind(':');
    return colon == std::string_view::npos ? label : label.substr(colon + 1);
}

}  // namespace

bool MatchesLabel(std::string_view name, std::string_view label) {
    if (IsExact(name)) return name == label;
    const std::vector<std::string_view> tokens = SplitAtGaps(name);
    if (tokens.empty()) return false;
    return name.starts_with(':') ? MatchesFromEnd(tokens, label) : MatchesFromStart(tokens, label);
}

CVariable* VariableTable::Find(std::string_view label) const {
    const Row row = FindRow(label);
    return row == kNoRow ? nullptr : entries_[row].variable;
}

VariableTable::Row VariableTable::FindRow(std::string_view label) const {
    return byLabel_.Find(VariableIndex::HashOf(label), [&](Row row) { return entries_[row].label == label; });
}

CVariable* VariableTable::FindOne(std::string_view name) const {
    if (remembered_.empty()) {
        if (++lookups_ < kLookupsBeforeRemembering) {
            const Row row = FindOneRow(name);
            return row == kNoRow ? nullptr : entries_[row].variable;
        }
        remembered_.resize(kFewestRemembered);
    }
    const Remembered& entry = remembered_[RememberedPlace(name, remembered_.size())];
    const bool holds = entry.variable && (entry.epoch == kEveryEpoch || entry.epoch == epoch_);
    if (holds && entry.name == name) return entry.variable;

    const Row row = FindOneRow(name);
    if (row == kNoRow) return nullptr;
    if (holds) ++displaced_;
    Remember(name, row);
    return entries_[row].variable;
}

// A loop over many placeholders asks for all of their names in turn, so that the memory has to hold them all to be of
// use.
void VariableTable::Remember(std::string_view name, Row row) const {
    const std::size_t size = remembered_.size();
    if (displaced_ >= size && size < entries_.size() && size < kMostRemembered) {
        remembered_ = std::vector<Remembered>(2 * size);
        displaced_ = 0;
    }
    Remembered& entry = remembered_[RememberedPlace(name, remembered_.size())];
    entry.name.assign(name);  // the text's memory is used again
    entry.variable = entries_[row].variable;
    entry.epoch = IsExact(name) && !IsLocal(row) ? kEveryEpoch : epoch_;
}

VariableTable::Row VariableTable::FindOneRow(std::string_view name) const {
    if (IsExact(name)) return FindRow(name);
    const std::vector<Row> matches = Matches(name);
    return matches.size() == 1 ? matches.front() : kNoRow;
}

VariableTable::Selection VariableTable::Select(std::string_view name) const {
    Selection selection;
    std::vector<Row> matches = Matches(name);
    if (matches.empty()) return selection;
    const std::size_t shown = std::min<std::size_t>(3, matches.size());
    std::partial_sort(matches.begin(), matches.begin() + static_cast<std::ptrdiff_t>(shown), matches.end(),
                      [this](Row a, Row b) { return entries_[a].label < entries_[b].label; });
    selection.variable = entries_[matches.front()].variable;
    selection.ambiguous = matches.size() > 1;
    for (std::size_t i = 0; i < shown; ++i)
        selection.labels.push_back(entries_[matches[i]].label);
    return selection;
}

bool VariableTable::Insert(std::unique_ptr<CVariable> variable) {
    CVariable* pointer = variable.get();
    return Put(pointer, pointer->label, std::move(variable));
}

bool VariableTable::InsertBorrowed(CVariable* variable, std::string_view label) {
    return Put(variable, label, nullptr);
}

void VariableTable::ReplaceBorrowed(CVariable* variable, std::string_view label) {
    if (const Row row = FindRow(label); row != kNoRow) {
        entries_[row].variable = variable;
    } else {
        Put(variable, label, nullptr);
    }
    Changed();
}

void VariableTable::Erase(std::string_view label) {
    const Row row = FindRow(label);
    if (row == kNoRow) return;
    byLabel_.Remove(VariableIndex::HashOf(label), row);
    const Row last = LastRow();
    if (row != last) {
        byLabel_.Replace(VariableIndex::HashOf(entries_[last].label), last, row);
        std::swap(entries_[row], entries_[last]);
    }
    entries_.pop_back();
    Changed();
}

void VariableTable::Clear() {
    entries_.clear();
    byLabel_.Clear();
    Changed();
}

std::vector<CVariable*> VariableTable::InOrder() const {
    return Below({});
}

std::vector<CVariable*> VariableTable::Below(std::string_view name) const {
    std::vector<const Entry*> found;
    for (const Entry& entry : entries_) {
        const std::string_view text = entry.label;
        const bool below = name.empty() || text == name ||
                           (text.size() > name.size() && text[name.size()] == ':' && text.starts_with(name));
        if (below) found.push_back(&entry);
    }
    std::ranges::sort(found, {}, [](const Entry* entry) -> const std::string& { return entry->label; });
    std::vector<CVariable*> variables;
    variables.reserve(found.size());
    for (const Entry* entry : found)
        variables.push_back(entry->variable);
    return variables;
}

bool VariableTable::Put(CVariable* variable, std::string_view label, std::unique_ptr<CVariable> owned) {
    const VariableIndex::Hash hash = VariableIndex::HashOf(label);
    if (byLabel_.Find(hash, [&](Row row) { return entries_[row].label == label; }) != kNoRow) return false;
    entries_.push_back({std::string(label), variable, std::move(owned)});
    byLabel_.Insert(hash, LastRow());
    if (indexed_) AddToSegments(LastRow());
    ++epoch_;
    return true;
}

void VariableTable::BeginLocals() {
    firstLocal_ = entries_.size();
    marksLocals_ = true;
    changedBelowLocals_ = false;
}

bool VariableTable::TakeBackLocals() {
    if (changedBelowLocals_) return false;
    const std::size_t localCount = entries_.size() - firstLocal_;
    if (localCount > 0) ++epoch_;
    if (localCount > std::max(firstLocal_, kLocalsTakenOutSingly)) {
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(firstLocal_), entries_.end());
        indexed_ = false;
        byLabel_.Clear();
        for (Row row = 0; row < entries_.size(); ++row)
            byLabel_.Insert(VariableIndex::HashOf(entries_[row].label), row);
        return true;
    }
    while (entries_.size() > firstLocal_) {
        const Row row = LastRow();
        if (indexed_) TakeFromSegments(row);
        byLabel_.Remove(VariableIndex::HashOf(entries_[row].label), row);
        entries_.pop_back();
    }
    return true;
}

std::vector<VariableTable::Row> VariableTable::Matches(std::string_view name) const {
    std::vector<Row> matches;
    if (IsExact(name)) {
        if (const Row row = FindRow(name); row != kNoRow) matches.push_back(row);
        return matches;
    }
    const std::vector<std::string_view> tokens = SplitAtGaps(name);
    if (tokens.empty()) return matches;
    const auto collect = [&](Row lastRow) {
        for (Row row = lastRow; row != kNoRow; row = previousOfSegment_[row]) {
            if (MatchesLabel(name, entries_[row].label)) matches.push_back(row);
        }
    };
    if (!indexed_) IndexSegments();
    const std::string_view last = tokens.back();
    if (last.find(':') != std::string_view::npos) {
        collect(LastRowOfSegment(LastSegment(last)));
        return matches;
    }
    bySegment_.ForEach([&](Row row) {
        if (LastSegment(entries_[row].label).ends_with(last)) collect(row);
    });
    return matches;
}

void VariableTable::IndexSegments() const {
    bySegment_.Clear();
    previousOfSegment_.clear();
    for (Row row = 0; row < entries_.size(); ++row)
        AddToSegments(row);
    indexed_ = true;
}

VariableTable::Row VariableTable::LastRowOfSegment(std::string_view segment) const {
    return bySegment_.Find(VariableIndex::HashOf(segment),
                           [&](Row row) { return LastSegment(entries_[row].label) == segment; });
}

void VariableTable::AddToSegments(Row row) const {
    const std::string_view segment = LastSegment(entries_[row].label);
    const Row previous = LastRowOfSegment(segment);
    previousOfSegment_.push_back(previous);
    if (previous == kNoRow) {
        bySegment_.Insert(VariableIndex::HashOf(segment), row);
    } else {
        bySegment_.Replace(VariableIndex::HashOf(segment), previous, row);
    }
}

// `row` is the last of all, and so the last of its segment.
void VariableTable::TakeFromSegments(Row row) {
    const VariableIndex::Hash hash = VariableIndex::HashOf(LastSegment(entries_[row].label));
    const Row previous = previousOfSegment_[row];
    previousOfSegment_.pop_back();
    if (previous == kNoRow) {
        bySegment_.Remove(hash, row);
    } else {
        bySegment_.Replace(hash, row, previous);
    }
}

void VariableTable::Changed() {
    changedBelowLocals_ = marksLocals_;
    indexed_ = false;
    remembered_.clear();
    displaced_ = 0;
    lookups_ = 0;
    ++epoch_;
}

}  // namespace kvl
