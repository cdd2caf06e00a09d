#include "differential/LiteralParser.h"

#include <algorithm>
#include <numeric>

#include "text/ByteClass.h"

namespace kvl {

namespace {

std::string Trimmed(std::string text) {
    while (!text.empty() && IsInvisible(text.back()))
        text.pop_back();
    while (!text.empty() && IsInvisible(text.front()))
        text.erase(0, 1);
    return text;
}

}  // namespace

LiteralParser::LiteralParser(const CTypeSchema& schema, std::string_view input, long stepBudget)
    : schema_(schema), input_(input), slots_(schema.elements.size()), stepsLeft_(stepBudget) {
    for (int row = 0; row < static_cast<int>(slots_.size()); ++row)
        if (Entry(row).mark == kMarkBegin) SlotOf(row).endRow = FindEndRow(row);
}

LiteralParser::Result LiteralParser::Parse() {
    try {
        const bool ok = ParseRange(0, static_cast<int>(schema_.elements.size()) - 1, true);
        return ok ? Result::kMatched : Result::kFailed;
    } catch (const OverBudget&) {
        return Result::kOverBudget;
    }
}

// A bracket ends behind its closing literal, which is no part of its value; of all other roots the span tells the end.
int LiteralParser::RootEnd() const {
    return Variable(0).elementKind == kElementNested ? cursor_ - 1 : slots_[0].spanEnd;
}

bool LiteralParser::HasRemainder() const {
    const int end = RootEnd();
    if (end + 1 >= Length() - 1) return false;
    if (end == -1) return false;
    const std::string rest = input_.substr(static_cast<std::size_t>(end + 1));
    return !std::all_of(rest.begin(), rest.end(), [](char c) { return IsInvisible(c); });
}

// --- rows ---

int LiteralParser::FindEndRow(int beginRow) const {
    int row = beginRow;
    while (Entry(row).mark != kMarkEnd || Entry(row).depth != Entry(beginRow).depth)
        ++row;
    return row;
}

bool LiteralParser::IsColumnOf(int row, int listRow) const {
    return Entry(row).mark != kMarkEnd && Variable(row).ownerList == &Variable(listRow);
}

// --- frame ---

bool LiteralParser::ParseRange(int first, int last, bool store) {
    ResetRange(first, last);
    bool result = false;
    for (int row = first; row <= last; row = NextSibling(row)) {
        Step();
        SlotOf(row).spanStart = cursor_;
        result = Entry(row).mark == kMarkBegin ? ParseCategory(row, EndRow(row), store) : ParseLeaf(row, store);
        if (!result) return false;
    }
    return result;
}

bool LiteralParser::ParseInside(int row, int first, int last, bool store) {
    enclosing_.push_back(Variable(row).elementKind);
    const bool ok = ParseRange(first, last, store);
    enclosing_.pop_back();
    return ok;
}

bool LiteralParser::ParseCategory(int first, int last, bool store) {
    switch (Variable(first).elementKind) {
        case kElementSequence:
            return ParseSequence(first, last, store);
        case kElementNested:
            return ParseNested(first, last, store);
        case kElementDistance:
        case kElementStream:
            return ParseTerminated(first, last, store);
        case kElementChoice:
            return ParseChoice(first, last, store);
        case kElementOption:
            return ParseOption(first, last, store);
        case kElementLine:
            return ParseLine(first, last, store);
        case kElementList:
            return ParseList(first, last, store);
        case kElementPermutation:
            return ParsePermutation(first, last, store);
        default:
            return false;
    }
}

// Records are not touched here: those of an attempt that failed are taken back where it failed.
void LiteralParser::ResetRange(int first, int last) {
    for (int row = first; row <= last; row = NextSibling(row)) {
        Step();
        const int kind = Variable(row).elementKind;
        if (kind == kElementStrictLiteral || kind == kElementWeakLiteral) continue;
        if (HasOwnerList(row)) SlotOf(row).pendingCell.clear();
        if (Entry(row).mark == kMarkBegin) {
            SetSpan(row, cursor_, cursor_);
            ResetRange(row + 1, EndRow(row) - 1);
        }
    }
}

bool LiteralParser::IsFailureExpected() const {
    return std::any_of(enclosing_.begin(), enclosing_.end(), [](int kind) {
        return kind == kElementOption || kind == kElementChoice || kind == kElementList ||
               kind == kElementPermutation || kind == kElementDistance || kind == kElementStream;
    });
}

bool LiteralParser::Fail(ParseFault::Kind kind, int row, int cursorBehindBegin) {
    if (!IsFailureExpected()) faults_.push_back({kind, row, input_, cursor_, cursorBehindBegin});
    return false;
}

void LiteralParser::SetSpan(int row, int start, int end) {
    SlotOf(row).spanStart = start;
    SlotOf(row).spanEnd = end;
}

// The text from where the category began to the cursor, without invisible characters at both ends.
void LiteralParser::CloseSpan(int row) {
    Slot& slot = SlotOf(row);
    slot.spanEnd = cursor_ - 1;
    slot.text = Trimmed(Between(slot.spanStart, slot.spanEnd + 1));
}

void LiteralParser::StoreValue(int row, const std::string& text, bool store) {
    if (!store || Variable(row).label.empty()) return;
    if (HasOwnerList(row))
        SlotOf(row).pendingCell = text;
    else
        SlotOf(row).text = text;
}

// The direct elements of a range. Every element of the range, however deep, loses its value on the way.
std::vector<LiteralParser::ChildRange> LiteralParser::CollectChildren(int first, int last) {
    for (int row = first; row <= last; ++row)
        SlotOf(row).text.clear();
    std::vector<ChildRange> ranges;
    for (int row = first; row <= last; row = NextSibling(row))
        ranges.push_back({row, NextSibling(row) - 1});
    return ranges;
}

// --- categories that match once, in order ---

bool LiteralParser::ParseSequence(int first, int last, bool store) {
    SetSpan(first, cursor_, cursor_);
    const bool ok = ParseInside(first, first + 1, last - 1, store);
    CloseSpan(first);
    StoreValue(first, SlotOf(first).text, store);
    return ok;
}

bool LiteralParser::ParseOption(int first, int last, bool store) {
    const int p = cursor_;
    SetSpan(first, p, p);
    SlotOf(first).text.clear();
    if (!ParseInside(first, first + 1, last - 1, false)) {
        cursor_ = p;
        SetSpan(first, p, p);
        SlotOf(first).text.clear();
        ResetRange(first + 1, last - 1);
        return true;
    }
    CloseSpan(first);
    if (store) {
        cursor_ = p;
        static_cast<void>(ParseInside(first, first + 1, last - 1, store));
        StoreValue(first, SlotOf(first).text, store);
    }
    return true;
}

bool LiteralParser::ParseLine(int first, int last, bool store) {
    if (PassesOverWhiteSpace(first, last)) {
        SkipInvisible();
        if (IsAtEnd()) return true;
    }
    SetSpan(first, cursor_, cursor_);

    std::string line;
    for (char c = '\0'; GetChar(c) && c != '\n';)
        line += c;
    const int next = cursor_;
    while (!line.empty() && IsInvisible(line.back()))
        line.pop_back();

    const std::string whole = input_;
    input_ = line;
    cursor_ = 0;
    const bool ok = ParseInside(first, first + 1, last - 1, store);
    input_ = whole;
    cursor_ = next;
    CloseSpan(first);
    StoreValue(first, SlotOf(first).text, store);
    return ok;
}

// Unless the first elementary element anywhere inside reads white space itself.
bool LiteralParser::PassesOverWhiteSpace(int first, int last) const {
    for (int row = first; row <= last; ++row) {
        if (Entry(row).mark == kMarkEnd) continue;
        const int typeId = Variable(row).typeId;
        if ((typeId >= kTypeString && typeId <= kTypeWhiteSpace) || typeId == kDeclaredTypeName)
            return typeId != kTypeWhiteSpace;
    }
    return true;
}

bool LiteralParser::ParseNested(int first, int last, bool store) {
    const int p = cursor_;
    SetSpan(first, p, p);
    SlotOf(first).text.clear();
    static_cast<void>(CollectChildren(first + 1, last - 1));
    const std::string begin = WithoutQuotes(first + 1);
    const std::string end = WithoutQuotes(last - 1);

    int start = -1;
    int behind = -1;
    if (!MatchWeak(begin, start, behind, true)) return LiteralFailed(first + 1, p);
    SetSpan(first + 1, start, behind - 1);
    const int cursorBehindBegin = cursor_;

    if (first + 2 <= last - 2 && !ParseInside(first, first + 2, last - 2, store))
        return Fail(ParseFault::kNestedElements, first);

    const int contentStart = cursor_;
    for (int depth = 1; depth > 0;) {
        bool isBegin = false;
        if (!FindNextBracket(begin, end, isBegin, start))
            return Fail(ParseFault::kNoEndLiteral, first, cursorBehindBegin);
        depth += isBegin ? 1 : -1;
    }
    SetSpan(first, contentStart, start - 1);
    SlotOf(first).text = Trimmed(Between(contentStart, start));
    StoreValue(first, SlotOf(first).text, store);
    return true;
}

// The cursor then stands behind the literal chosen; `start` is where that begins.
bool LiteralParser::FindNextBracket(const std::string& begin, const std::string& end, bool& isBegin, int& start) {
    const int c = cursor_;
    int s1 = -1;
    int e1 = -1;
    int s2 = -1;
    int e2 = -1;
    // Of blanks alone a begin literal is found in nothing, too: that would open brackets for ever.
    const bool foundBegin = MatchWeak(begin, s1, e1, false) && e1 > c;
    cursor_ = c;
    const bool foundEnd = MatchWeak(end, s2, e2, false);
    if (!foundBegin && !foundEnd) return false;

    if (foundBegin && foundEnd)
        isBegin = s1 == s2 ? e1 < e2 : s1 < s2;
    else
        isBegin = foundBegin;
    start = isBegin ? s1 : s2;
    cursor_ = isBegin ? e1 : e2;
    return true;
}

// --- categories that search ---

bool LiteralParser::ParseChoice(int first, int last, bool store) {
    const int p = cursor_;
    SetSpan(first, p, p);
    const std::vector<ChildRange> ranges = CollectChildren(first + 1, last - 1);
    if (ranges.empty()) return true;

    const ChildRange* chosen = nullptr;
    for (const ChildRange& range : ranges) {
        SetSpan(range.first, p, p);
        const bool ok = ParseInside(first, range.first, range.last, false);
        CloseSpan(first);
        cursor_ = p;
        if (ok) {
            chosen = &range;
            break;
        }
    }
    if (chosen == nullptr) return Fail(ParseFault::kNoAlternative, first);

    const bool ok = ParseInside(first, chosen->first, chosen->last, store);
    CloseSpan(first);
    StoreValue(first, SlotOf(first).text, store);
    return ok;
}

bool LiteralParser::ParsePermutation(int first, int last, bool store) {
    const int p = cursor_;
    SetSpan(first, p, p);
    const std::vector<ChildRange> declared = CollectChildren(first + 1, last - 1);
    if (declared.empty()) return true;

    std::vector<std::size_t> order(declared.size());
    std::iota(order.begin(), order.end(), 0U);
    bool isValid = false;
    do {
        SlotOf(first).text.clear();
        cursor_ = p;
        isValid = std::all_of(order.begin(), order.end(), [&](std::size_t i) {
            const bool ok = ParseInside(first, declared[i].first, declared[i].last, false);
            SlotOf(first).spanEnd = cursor_ - 1;
            return ok;
        });
    } while (!isValid && std::next_permutation(order.begin(), order.end()));

    cursor_ = p;
    if (!isValid) return Fail(ParseFault::kNoPermutation, first);
    SlotOf(first).text.clear();
    bool ok = false;
    for (const std::size_t i : order) {
        ok = ParseInside(first, declared[i].first, declared[i].last, store);
        SlotOf(first).spanEnd = cursor_ - 1;
    }
    StoreValue(first, SlotOf(first).text, store);
    return ok;
}

bool LiteralParser::ParseList(int first, int last, bool store) {
    SetSpan(first, cursor_, cursor_);
    enclosing_.push_back(kElementList);
    const bool any = ParseRepetitions(first, last, store);
    enclosing_.pop_back();
    if (!any) return Fail(ParseFault::kEmptyList, first);
    SlotOf(first).spanEnd = cursor_;
    return true;
}

bool LiteralParser::ParseRepetitions(int first, int last, bool store) {
    bool any = false;
    for (bool ok = true; ok;) {
        ClearPendingCells(first);
        if (IsAtEnd()) break;
        const int start = cursor_;
        ok = ParseRange(first + 1, last - 1, false);
        if (cursor_ == start) ok = false;
        if (!ok) {
            cursor_ = start;
            break;
        }
        any = true;
        if (store) {
            cursor_ = start;
            ClearPendingCells(first);
            ok = ParseRange(first + 1, last - 1, store);
            AddRecord(first);
        }
    }
    ClearPendingCells(first);
    return any;
}

bool LiteralParser::ParseTerminated(int first, int last, bool store) {
    const int p = cursor_;
    SetSpan(first, p, p);
    std::string text;
    bool ok = true;
    if (first + 1 == last) {
        int end = Length();
        while (end > p && IsInvisible(input_[static_cast<std::size_t>(end - 1)]))
            --end;
        text = Between(p, end);
        cursor_ = std::max(p, end);
    } else {
        ok = Scan(first, last, false, text);
        if (ok && store) {
            cursor_ = p;
            ok = Scan(first, last, store, text);
        }
    }
    text = Trimmed(text);
    if (!ok) {
        cursor_ = p;
        return Fail(ParseFault::kNoTerminator, first);
    }
    if (Variable(first).elementKind == kElementDistance && text.empty()) {
        cursor_ = p;
        return Fail(ParseFault::kEmptyDistance, first);
    }
    SlotOf(first).spanEnd = cursor_ - 1;
    SlotOf(first).text = text;
    StoreValue(first, text, store);
    return true;
}

bool LiteralParser::Scan(int first, int last, bool store, std::string& text) {
    text.clear();
    while (true) {
        if (IsAtEnd()) return false;
        const int here = cursor_;
        const std::size_t recordsBefore = added_.size();
        if (ParseInside(first, first + 1, last - 1, store)) return true;
        TakeBackRecords(recordsBefore);
        SetSpan(first, here, here);
        SlotOf(first).text.clear();
        ResetRange(first + 1, last - 1);
        // An attempt that ran to the end of the input ends the search.
        if (IsAtEnd()) return false;
        cursor_ = here;
        char c = '\0';
        GetChar(c);
        text += c;
    }
}

// --- records ---

void LiteralParser::ClearPendingCells(int listRow) {
    for (int row = listRow + 1; row < EndRow(listRow); ++row) {
        if (!IsColumnOf(row, listRow)) continue;
        SlotOf(row).pendingCell.clear();
        if (Variable(row).IsList()) ClearPendingCells(row);
    }
}

// A nested list adds its records before the record above them: the count of records of a list above is the number that
// its record under construction will get.
void LiteralParser::AddRecord(int listRow) {
    std::vector<int> path;
    for (const CVariableKVLCategoryList* list = static_cast<const CVariableKVLCategoryList*>(&Variable(listRow));
         list != nullptr; list = list->parentList)
        path.insert(path.begin(), static_cast<int>(SlotOf(list->firstElement).records.size()));

    Cells cells;
    for (int row = listRow + 1; row < EndRow(listRow); ++row)
        if (IsColumnOf(row, listRow) && !Variable(row).IsList()) cells[Variable(row).label] = SlotOf(row).pendingCell;
    SlotOf(listRow).records.insert({path, cells});
    added_.emplace_back(listRow, path);
    ClearPendingCells(listRow);
}

void LiteralParser::TakeBackRecords(std::size_t count) {
    for (; added_.size() > count; added_.pop_back())
        SlotOf(added_.back().first).records.erase(added_.back().second);
}

}  // namespace kvl
