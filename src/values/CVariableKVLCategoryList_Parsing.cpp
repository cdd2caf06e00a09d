// What the input parser does with a list: records added in the order of the text, and taken back from the end.

#include <algorithm>

#include "messages/Log.h"
#include "values/CVariableKVLCategoryList.h"

namespace kvl {

namespace {

constexpr std::size_t kArenaCells = std::size_t{1} << 17;  // 2 MiB
constexpr char kHexDigits[] = "0123456789ABCDEF";

std::string HexText(std::string_view text) {
    std::string hex;
    for (const char c : text) {
        hex += kHexDigits[static_cast<unsigned char>(c) >> 4];
        hex += kHexDigits[static_cast<unsigned char>(c) & 15];
    }
    return hex;
}

std::string KeyText(PathView key, bool provisional) {
    std::string text;
    for (const int number : key)
        text += std::to_string(number) + " ";
    return provisional ? text + "* " : text;
}

std::string TraceHead(std::string_view verb, PathView key, bool provisional, std::string_view preposition,
                      const std::string& label) {
    return "\n" + std::string(verb) + KeyText(key, provisional) + std::string(preposition) + label + "\n" +
           std::string(40, '#') + "\n\n";
}

}  // namespace

void CVariableKVLCategoryList::AddParsedRecord(std::span<const Cell> cells, bool provisional) {
    Cell* place = cells.empty() ? nullptr : ArenaCells(cells.size());
    std::copy(cells.begin(), cells.end(), place);
    if (cells.size() > Record::kFewCells) Record::SortByColumn(place, static_cast<std::uint32_t>(cells.size()));
    const auto number = static_cast<int>(records_.Size());
    const std::span<int> key = records_.AppendOver(place, static_cast<std::uint32_t>(cells.size()), provisional,
                                                   static_cast<std::size_t>(GetDepth()));
    key.back() = number;
    const CVariableKVLCategoryList* parent = parentList;
    for (std::size_t level = key.size() - 1; level-- > 0; parent = parent->parentList)
        key[level] = static_cast<int>(parent->records_.Size());
}

void CVariableKVLCategoryList::TakeBackParsedRecord() {
    const Record& record = records_.At(records_.Before(records_.End()));
    const std::size_t count = record.StoredCells();
    records_.Truncate(1);
    if (count == 0) return;
    arena_.back().used -= count;
    if (arena_.back().used == 0) arena_.pop_back();
}

Cell* CVariableKVLCategoryList::ArenaCells(std::size_t count) {
    if (arena_.empty() || arena_.back().capacity - arena_.back().used < count) {
        const std::size_t last = arena_.empty() ? 0 : arena_.back().capacity;
        const std::size_t capacity = std::max(count, last == 0 ? std::size_t{16} : std::min(kArenaCells, last * 2));
        arena_.push_back({std::make_unique_for_overwrite<Cell[]>(capacity), 0, capacity});
    }
    ArenaBlock& block = arena_.back();
    Cell* cells = block.cells.get() + block.used;
    block.used += count;
    return cells;
}

void TraceAddedRecord(const CVariableKVLCategoryList& list, PathView key, const Record& record) {
    std::string text = TraceHead("Add Record ", key, record.IsProvisional(), " To ", list.label);
    const std::vector<CVariable*>& columns = list.Columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string_view cell = columns[i]->IsList() ? "$?$" : record.Get(static_cast<int>(i));
        text += columns[i]->label + "\n";
        if (cell.empty()) continue;
        text += columns[i]->typeId == kTypeWhiteSpace ? HexText(cell) : std::string(cell);
        text += "\n";
    }
    WriteLog(text + "\n");
}

void TraceRemovedRecord(const CVariableKVLCategoryList& list, PathView key, const Record& record) {
    WriteLog(TraceHead("Remove Record ", key, record.IsProvisional(), " From ", list.label) + "\n");
}

}  // namespace kvl
