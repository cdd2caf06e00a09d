#include "values/VariableTable.h"

#include <algorithm>

namespace kvl {

namespace {

constexpr std::size_t kRememberedNames = 256;
// A table that is asked less often than this, as that of a single short call, does not remember.
constexpr unsigned kLookupsBeforeRemembering = 32;
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
    const auto found = slots_.find(label);
    return found == slots_.end() ? nullptr : found->second.variable;
}

CVariable* VariableTable::FindOne(std::string_view name) const {
    if (remembered_.empty()) {
        if (++lookups_ < kLookupsBeforeRemembering) {
            const Slot* slot = FindSlot(name);
            return slot ? slot->variable : nullptr;
        }
        remembered_.resize(kRememberedNames);
    }
    Remembered& entry = remembered_[(reinterpret_cast<std::uintptr_t>(name.data()) >> 3) % kRememberedNames];
    const bool holds = entry.variable && (entry.epoch == kEveryEpoch || entry.epoch == epoch_);
    if (holds && entry.name == name) return entry.variable;

    const Slot* slot = FindSlot(name);
    if (!slot) return nullptr;
    entry.name.assign(name);  // the slot's memory is used again
    entry.variable = slot->variable;
    entry.epoch = IsExact(name) && !slot->isLocal ? kEveryEpoch : epoch_;
    return slot->variable;
}

const VariableTable::Slot* VariableTable::FindSlot(std::string_view name) const {
    if (IsExact(name)) {
        const auto found = slots_.find(name);
        return found == slots_.end() ? nullptr : &found->second;
    }
    const Labels matches = Matches(name);
    return matches.size() == 1 ? &slots_.find(*matches.front())->second : nullptr;
}

VariableTable::Selection VariableTable::Select(std::string_view name) const {
    Selection selection;
    Labels matches = Matches(name);
    if (matches.empty()) return selection;
    const std::size_t shown = std::min<std::size_t>(3, matches.size());
    std::partial_sort(matches.begin(), matches.begin() + static_cast<std::ptrdiff_t>(shown), matches.end(),
                      [](const std::string* a, const std::string* b) { return *a < *b; });
    selection.variable = Find(*matches.front());
    selection.ambiguous = matches.size() > 1;
    for (std::size_t i = 0; i < shown; ++i)
        selection.labels.push_back(*matches[i]);
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
    slots_[std::string(label)] = Slot{variable, nullptr};
    Changed();
}

void VariableTable::Erase(std::string_view label) {
    const auto found = slots_.find(label);
    if (found == slots_.end()) return;
    slots_.erase(found);
    Changed();
}

void VariableTable::EraseIf(const std::function<bool(const CVariable&)>& condition) {
    std::erase_if(slots_, [&](const auto& entry) { return condition(*entry.second.variable); });
    Changed();
}

void VariableTable::Clear() {
    slots_.clear();
    Changed();
}

std::vector<CVariable*> VariableTable::InOrder() const {
    return Below({});
}

std::vector<CVariable*> VariableTable::Below(std::string_view name) const {
    std::vector<std::pair<std::string_view, CVariable*>> found;
    for (const auto& [label, slot] : slots_) {
        const std::string_view text = label;
        const bool below = name.empty() || text == name ||
                           (text.size() > name.size() && text[name.size()] == ':' && text.starts_with(name));
        if (below) found.emplace_back(text, slot.variable);
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<CVariable*> variables;
    variables.reserve(found.size());
    for (const auto& [label, variable] : found)
        variables.push_back(variable);
    return variables;
}

bool VariableTable::Put(CVariable* variable, std::string_view label, std::unique_ptr<CVariable> owned) {
    const auto [place, inserted] = slots_.try_emplace(std::string(label));
    if (!inserted) return false;
    const std::string& key = place->first;
    place->second = Slot{variable, std::move(owned), marksLocals_};
    if (marksLocals_) locals_.push_back(&key);
    if (indexed_) bySegment_[std::string(LastSegment(key))].push_back(&key);
    ++epoch_;
    return true;
}

void VariableTable::BeginLocals() {
    locals_.clear();
    marksLocals_ = true;
    changedBelowLocals_ = false;
}

bool VariableTable::TakeBackLocals() {
    if (changedBelowLocals_) return false;
    for (std::size_t i = locals_.size(); i-- > 0;) {
        const std::string& label = *locals_[i];
        if (indexed_) bySegment_.find(LastSegment(label))->second.pop_back();  // the last one entered
        slots_.erase(slots_.find(label));
    }
    if (!locals_.empty()) ++epoch_;
    locals_.clear();
    return true;
}

VariableTable::Labels VariableTable::Matches(std::string_view name) const {
    Labels matches;
    if (IsExact(name)) {
        const auto found = slots_.find(name);
        if (found != slots_.end()) matches.push_back(&found->first);
        return matches;
    }
    const std::vector<std::string_view> tokens = SplitAtGaps(name);
    if (tokens.empty()) return matches;
    const auto collect = [&](const Labels& labels) {
        for (const std::string* label : labels) {
            if (MatchesLabel(name, *label)) matches.push_back(label);
        }
    };
    if (!indexed_) IndexSegments();
    const std::string_view last = tokens.back();
    if (last.find(':') != std::string_view::npos) {
        const auto found = bySegment_.find(LastSegment(last));
        if (found != bySegment_.end()) collect(found->second);
        return matches;
    }
    for (const auto& [segment, labels] : bySegment_) {
        if (std::string_view(segment).ends_with(last)) collect(labels);
    }
    return matches;
}

void VariableTable::IndexSegments() const {
    bySegment_.clear();
    for (const auto& [label, slot] : slots_)
        if (!slot.isLocal) bySegment_[std::string(LastSegment(label))].push_back(&label);
    for (const std::string* label : locals_)  // in their order, so that they can be taken back
        bySegment_[std::string(LastSegment(*label))].push_back(label);
    indexed_ = true;
}

void VariableTable::Changed() {
    changedBelowLocals_ = marksLocals_;
    indexed_ = false;
    remembered_.clear();
    lookups_ = 0;
    ++epoch_;
}

}  // namespace kvl
