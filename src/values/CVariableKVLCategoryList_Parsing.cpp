// What the input parser does with a list: records added in the order of the text, and taken back from the end.

#include <algorithm>

#include "messages/Log.h"
#include "values/CVariableKVLCategoryList.h"

namespace kvl {

namespace {

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
    const auto count = static_cast<std::uint32_t>(cells.size());
    Cell* const place = arena_.Take(count);
    std::copy(cells.begin(), cells.end(), place);
    if (count > Record::kFewCells) Record::SortByColumn(place, count);
    const auto number = static_cast<int>(records_.Size());
    std::vector<int>& path = records_.AppendOver(place, count, provisional, static_cast<std::size_t>(GetDepth()));
    if (parentList) parentList->AppendNewKey(path);
    path.push_back(number);
}

void CVariableKVLCategoryList::AppendNewKey(std::vector<int>& path) const {
    if (parentList) parentList->AppendNewKey(path);
    path.push_back(static_cast<int>(records_.Size()));
}

void CVariableKVLCategoryList::TakeBackParsedRecord() {
    const std::size_t count = records_.At(records_.Before(records_.End())).StoredCells();
    records_.Truncate(1);
    arena_.GiveBack(count);
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
