// The categories that search, as the tracing parser walks them: ::CHOICE, ::PERMUTATION, ::LIST, ::DISTANCE and
// ::STREAM.

#include <algorithm>
#include <numeric>

#include "messages/Log.h"
#include "text/Trim.h"
#include "typeschema/ParseMessages.h"
#include "typeschema/PlainParser.h"

namespace kvl {

bool PlainParser::ParseChoice(int row, Pass pass) {
    const int start = window_.cursor;
    ClearInside(row);
    const std::vector<int> alternatives = ChildrenOf(row);
    if (alternatives.empty()) return true;
    int chosen = -1;
    for (const int child : alternatives) {
        const bool matched = ParseInside(child, program_.Behind(child), pass.Trial());
        SetText(row, TrimInvisible(window_.Between(start, window_.cursor)));
        const std::string verdict = matched ? "\r\nvalid CHOICE item: " : "\r\nnot a valid CHOICE item: ";
        Log(verdict + program_[child].variable->GetRangeLabel() + "\r\n");
        window_.cursor = start;
        if (!matched) continue;
        chosen = child;
        break;
    }
    if (chosen < 0) return IsFailureExpected() ? false : ReportNoAlternative(schema_, row, window_);
    const bool matched = ParseInside(chosen, program_.Behind(chosen), pass);
    CloseText(row, start, pass);
    return matched;
}

bool PlainParser::ParsePermutation(int row, Pass pass) {
    const int start = window_.cursor;
    ClearInside(row);
    const std::vector<int> children = ChildrenOf(row);
    if (children.empty()) return true;
    std::vector<std::size_t> order(children.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    bool found = false;
    do {
        SetText(row, {});
        found = ParseOrder(children, order, pass.Trial());
        window_.cursor = start;
    } while (!found && !abandoned_ && std::next_permutation(order.begin(), order.end()));
    if (!found) return IsFailureExpected() ? false : ReportNoPermutation(schema_, row, window_);

    std::string names;
    for (const std::size_t index : order)
        names += program_[children[index]].variable->GetRangeLabel() + " ";
    Log("\r\nVALID PERMUTATION is: \r\n" + names + "\n\r\n");
    SetText(row, {});
    bool matched = true;
    for (const std::size_t index : order) {
        matched = ParseInside(children[index], program_.Behind(children[index]), pass);
    }
    if (row == 0) schema_.rootSpanEnd = window_.cursor - 1;
    return matched;
}

bool PlainParser::ParseOrder(const std::vector<int>& children, const std::vector<std::size_t>& order, Pass pass) {
    for (const std::size_t index : order) {
        const int child = children[index];
        const bool matched = ParseInside(child, program_.Behind(child), pass);
        const std::string verdict = matched ? "\r\nvalid PERMUTATION item: " : "\r\nnot a valid PERMUTATION item: ";
        Log(verdict + program_[child].variable->GetRangeLabel() + "\r\n");
        if (!matched) return false;
    }
    return true;
}

bool PlainParser::ParseList(int row, Pass pass) {
    CVariableKVLCategoryList& list = *program_[row].list;
    const int end = program_[row].end;
    list.parseCount = 0;
    bool any = false;
    for (;;) {
        ClearPendingCells(list);
        const int start = window_.cursor;
        if (window_.IsAtEnd() || abandoned_) break;
        const bool matched = ParseInside(row + 1, end, pass.Trial()) && window_.cursor != start;
        if (!matched) {
            window_.cursor = start;
            break;
        }
        ++list.parseCount;
        any = true;
        if (!pass.store) continue;
        window_.cursor = start;
        ClearPendingCells(list);
        const bool stored = ParseInside(row + 1, end, pass);
        if (abandoned_) break;
        AddRecord(list, pass.provisional);
        if (!stored) break;
    }
    ClearPendingCells(list);
    Log("list " + list.label + (any ? " is not empty" : " is empty"));
    if (row == 0) schema_.rootSpanEnd = window_.cursor;
    if (any) return true;
    return IsFailureExpected() ? false : ReportEmptyList(schema_, row, window_);
}

bool PlainParser::ParseText(int row, Pass pass) {
    const ParseRow& category = program_[row];
    const int start = window_.cursor;
    int textEnd = start;
    bool matched = true;
    if (row + 1 == category.end) {
        textEnd = start + static_cast<int>(TrimInvisibleEnd(window_.Between(start, window_.end)).size());
        window_.cursor = textEnd;
    } else {
        matched = Scan(row, pass.Trial(), textEnd);
        if (matched && pass.store) {
            window_.cursor = start;
            matched = Scan(row, pass, textEnd);
        }
    }
    if (!matched) {
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportNoTerminator(schema_, row, window_);
    }
    const std::string_view text = TrimInvisible(window_.Between(start, textEnd));
    if (category.kind == kElementDistance && text.empty()) {
        window_.cursor = start;
        Log("\r\nDISTANCE Is Zero. \r\n");
        return IsFailureExpected() ? false : ReportEmptyDistance(schema_, row, window_);
    }
    Log("\r\n " + category.variable->GetRangeLabel() + "::" + category.variable->typeName + " = " + std::string(text) +
        "\r\n");
    if (row == 0) schema_.rootSpanEnd = window_.cursor - 1;
    SetText(row, text);
    StoreValue(row, text, pass);
    return true;
}

bool PlainParser::Scan(int row, Pass pass, int& textEnd) {
    const ParseRow& category = program_[row];
    const std::vector<std::size_t> counts = CountRecords(row + 1, category.end);
    while (!window_.IsAtEnd() && !abandoned_) {
        const int here = window_.cursor;
        Log(std::string(4 * static_cast<std::size_t>(category.variable->depth), ' ') + "iteration " +
            category.variable->GetRangeLabel() + "::" + category.variable->typeName);
        textEnd = here;
        if (ParseInside(row + 1, category.end, pass)) return true;
        pass.provisional = true;
        SetText(row, {});
        ResetRange(row + 1, category.end);
        TakeBackRecords(row + 1, category.end, counts);
        if (window_.IsAtEnd()) return false;
        window_.cursor = here + 1;
    }
    return false;
}

// --- records ---

void PlainParser::ClearPendingCells(const CVariableKVLCategoryList& list) {
    const std::vector<CVariable*>& columns = list.Columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        pending_[static_cast<std::size_t>(columns[i]->firstElement)] = {};
        if (const CVariableKVLCategoryList* nested = list.NestedList(i)) ClearPendingCells(*nested);
    }
}

void PlainParser::AddRecord(CVariableKVLCategoryList& list, bool provisional) {
    std::vector<Cell> cells;
    const std::vector<CVariable*>& columns = list.Columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string_view text = pending_[static_cast<std::size_t>(columns[i]->firstElement)];
        if (!columns[i]->IsList() && !text.empty()) cells.push_back({static_cast<int>(i), text});
    }
    const RecordPath key = list.GetNewKey();
    list.AddParsedRecord(cells, provisional);
    TraceAddedRecord(list, key, list.Records().At(list.Records().Before(list.Records().End())));
    abandoned_ = abandoned_ || !LogIsOpen();
    ClearPendingCells(list);
    if (!provisional) ConfirmRecord(list, key);
}

void PlainParser::ConfirmRecord(CVariableKVLCategoryList& list, PathView key) {
    const RecordStore& records = list.Records();
    const RecordStore::Position behind = records.Behind(key);
    for (RecordStore::Position place = records.LowerBound(key); place != behind; place = records.Next(place)) {
        records.At(place).SetProvisional(false);
    }
    for (std::size_t i = 0; i < list.Columns().size(); ++i) {
        if (CVariableKVLCategoryList* nested = list.NestedList(i)) ConfirmRecord(*nested, key);
    }
}

std::vector<std::size_t> PlainParser::CountRecords(int from, int to) const {
    std::vector<std::size_t> counts(static_cast<std::size_t>(to - from));
    for (int row = from; row < to; ++row) {
        if (program_[row].list) counts[static_cast<std::size_t>(row - from)] = program_[row].list->GetRecordCount();
    }
    return counts;
}

// The end row of a list comes behind all that is nested in it, and stands for the list here.
void PlainParser::TakeBackRecords(int from, int to, const std::vector<std::size_t>& counts) {
    for (int row = from; row < to; ++row) {
        const CVariable& variable = *program_[row].variable;
        if (!variable.IsList() || variable.lastElement != row) continue;
        const int begin = variable.firstElement;
        RemoveNewRecords(*program_[begin].list, counts[static_cast<std::size_t>(begin - from)]);
    }
}

// Takes back the records behind the first `keep`. Records of one parent go together, under the name of the first.
void PlainParser::RemoveNewRecords(CVariableKVLCategoryList& list, std::size_t keep) {
    const RecordStore& records = list.Records();
    if (records.Size() <= keep) return;
    RecordStore::Position place = records.End();
    for (std::size_t i = records.Size(); i > keep; --i)
        place = records.Before(place);
    RecordPath shownParent;
    for (; place != records.End(); place = records.Next(place)) {
        const PathView key = records.PathAt(place);
        const PathView parent = key.first(key.size() - 1);
        if (list.parentList && !shownParent.Empty() && ComparePaths(shownParent, parent) == 0) continue;
        shownParent.Assign(parent);
        TraceRemovedRecord(list, key, records.At(place));
    }
    while (records.Size() > keep)
        list.TakeBackParsedRecord();
}

}  // namespace kvl
