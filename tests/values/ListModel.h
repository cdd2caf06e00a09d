#pragma once
// A list with nested lists for tests, made by hand, and its state as one text.

#include <memory>
#include <string>
#include <vector>

#include "values/CVariableKVLCategoryList.h"

namespace kvl {

// The list "L" with the columns "L:A" and "L:B" (strings) and a nested list "L:N" with the column "L:N:C".
struct ListModel {
    explicit ListModel(const std::string& name = "L") {
        list.CreateValue();
        list.label = name;
        Add(list, name + ":A", kTypeString);
        Add(list, name + ":B", kTypeInteger);
        nested.CreateValue();
        nested.label = name + ":N";
        nested.parentList = &list;
        EXPECT_TRUE(list.AddColumn(&nested));
        Add(nested, name + ":N:C", kTypeString);
    }

    void Add(CVariableKVLCategoryList& owner, const std::string& label, int typeId) {
        columns.push_back(MakeVariable(typeId));
        columns.back()->label = label;
        EXPECT_TRUE(owner.AddColumn(columns.back().get()));
    }

    // A record as the input parser adds it: the nested texts first.
    void Read(const std::string& a, const std::string& b, const std::vector<std::string>& nestedTexts) {
        for (const std::string& text : nestedTexts)
            nested.AddParsedRecord({{0, Keep(text)}}, 0, false);
        list.AddParsedRecord({{0, Keep(a)}, {1, Keep(b)}}, 0, false);
    }

    std::string_view Keep(const std::string& text) {
        texts.push_back(std::make_unique<std::string>(text));
        return *texts.back();
    }

    CVariableKVLCategoryList list;
    CVariableKVLCategoryList nested;
    std::vector<std::unique_ptr<CVariable>> columns;
    std::vector<std::unique_ptr<std::string>> texts;
};

inline std::string PathText(PathView path) {
    std::string text;
    for (const int number : path)
        text += (text.empty() ? "" : ".") + std::to_string(number);
    return text;
}

// "0 A=x B=1; 1 A=y B=2; " with the numbers of the path joined by points.
inline std::string Dump(const CVariableKVLCategoryList& list) {
    std::string text;
    const RecordStore& records = list.Records();
    for (RecordStore::Position p = records.Begin(); p != records.End(); p = records.Next(p)) {
        text += PathText(records.PathAt(p));
        for (std::size_t i = 0; i < list.Columns().size(); ++i) {
            if (list.NestedList(i)) continue;
            const std::string& label = list.Columns()[i]->label;
            text +=
                " " + label.substr(label.rfind(':') + 1) + "=" + std::string(records.At(p).Get(static_cast<int>(i)));
        }
        text += "; ";
    }
    return text;
}

inline std::string DumpBoth(const ListModel& model) {
    return Dump(model.list) + "| " + Dump(model.nested);
}

}  // namespace kvl
