#pragma once
// The lists of a random script: their types, their input and the declarations that read it, and the same records in
// plain maps.

#include <algorithm>
#include <deque>
#include <random>

#include "LiteralLists.h"

namespace kvl {

using literal::Instance;
using literal::List;
using literal::Loop;
using literal::Mode;

inline constexpr const char* kWords[] = {"a", "b", "c", "d", "more_than_eight_bytes"};
inline constexpr const char* kNumbers[] = {"1", "2", "10", "-3"};

// An element of a type: a text, a number, or a nested list in brackets of its own.
struct Field {
    char name;
    bool isNumber = false;
    std::string brackets;
    std::vector<Field> inner;
};

// "A V# M(C)": in the order of the declaration, which is not the order of the labels.
inline std::vector<Field> ParseFields(std::string_view& text) {
    std::vector<Field> fields;
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        if (c == ')' || c == ']' || c == '>') break;
        if (c == '#') {
            fields.back().isNumber = true;
        } else if (c == '(' || c == '[' || c == '<') {
            fields.back().brackets = c == '(' ? "()" : c == '[' ? "[]" : "<>";
            fields.back().inner = ParseFields(text);
        } else if (c != ' ') {
            fields.push_back({c, false, {}, {}});
        }
    }
    return fields;
}

inline std::string TypeText(const std::vector<Field>& fields) {
    std::string text;
    for (const Field& field : fields) {
        const std::string name = std::string(" ") + field.name;
        if (field.inner.empty()) {
            text += name + (field.isNumber ? " ::INTEGER" : " ::IDENTIFIER");
        } else {
            text += std::string(" ::OPTION{ '") + field.brackets[0] + "'" + name + " ::LIST{" + TypeText(field.inner) +
                    " } '" + field.brackets[1] + "' }";
        }
    }
    return text;
}

class ListWorld {
public:
    explicit ListWorld(unsigned seed) : random_(seed) {
        DeclareTree("T", "V# A M(C N<E>) O[F]");
        DeclareTree("U", "V# A M(C N<E>) O[F]");
        DeclareTree("W", "Z(Y) G L H[I J<K>]");     // of the same shape up to its first nested list
        DeclareTree("R", "A M(X) N[B O<Y> Z(Q)]");  // R:N has the shape of R
        DeclareInstance("I", "V# A M(C N<E>) O[F]");
        declarations_ += "$S ::STRING[2]$\n";
        List& bracket = AddList("S", nullptr);
        bracket.isVariable = true;
        bracket.columns.push_back({"S", nullptr, false});
        bracket.records = {{{0}, {""}}, {{1}, {""}}};
    }

    const std::string& Declarations() const { return declarations_; }
    // The types that the declarations name, as ScriptRun takes them.
    const std::map<std::string, std::string>& Types() const { return types_; }

    std::map<std::string, std::string> Records() const {
        std::map<std::string, std::string> texts;
        for (const List& list : lists_) {
            for (const auto& [path, row] : list.records) {
                std::string& text = texts[list.label];
                for (const int number : path)
                    text += std::to_string(number) + ".";
                for (std::size_t i = 0; i < row.size(); ++i)
                    if (!list.columns[i].nested) text += " " + row[i];
                text += "; ";
            }
        }
        return texts;
    }
    const std::deque<List>& AllLists() const { return lists_; }
    const Instance& TheInstance() const { return instance_; }

protected:
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    template <class T, std::size_t kCount>
    std::string Choice(const T (&values)[kCount]) {
        return values[random_() % kCount];
    }

    std::mt19937 random_;
    std::deque<List> lists_;
    Instance instance_;

private:
    List& AddList(const std::string& label, List* parent) {
        List& list = lists_.emplace_back();
        list.label = label;
        list.parent = parent;
        return list;
    }

    std::vector<List::Column> MakeColumns(const std::string& label, const std::vector<Field>& fields, List* parent) {
        std::vector<List::Column> columns;
        for (const Field& field : fields) {
            const std::string name = label + ":" + field.name;
            List* nested = nullptr;
            if (!field.inner.empty()) {
                nested = &AddList(name, parent);
                nested->columns = MakeColumns(name, field.inner, nested);
            }
            columns.push_back({name, nested, field.isNumber});
        }
        std::sort(columns.begin(), columns.end(), [](const auto& a, const auto& b) { return a.label < b.label; });
        return columns;
    }

    // Input text for one element, whose record is added to the lists as the input parser does: nested ones first.
    std::string Fill(const std::vector<Field>& fields, const std::vector<List::Column>& columns, literal::Row& row) {
        row.assign(columns.size(), "");
        std::string text;
        for (const Field& field : fields) {
            std::size_t column = 0;
            while (columns[column].label.back() != field.name)
                ++column;
            if (field.inner.empty()) {
                row[column] = field.isNumber ? Choice(kNumbers) : Choice(kWords);
                text += row[column] + " ";
            } else if (const int count = Below(4); count > 0) {
                text += field.brackets[0] + FillList(field.inner, *columns[column].nested, count) + field.brackets[1];
            }
        }
        return text;
    }

    std::string FillList(const std::vector<Field>& fields, List& list, int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            literal::Row row;
            text += Fill(fields, list.columns, row);
            list.records[literal::Lists::NewKey(list)] = row;
        }
        return text;
    }

    void Declare(const std::string& name, const std::string& typeText, const std::string& text) {
        types_["TYPE_" + name] = "::TYPE_" + name + " = " + typeText + " }";
        declarations_ += "$TEXT_" + name + " ::STREAM = \"" + text + "\"$\n$" + name + " ::TYPE_" + name +
                         (text.empty() ? "$\n" : " = TEXT_" + name + "$\n");
    }

    void DeclareTree(const std::string& name, std::string_view description) {
        const std::vector<Field> fields = ParseFields(description);
        List& list = AddList(name, nullptr);
        list.isVariable = true;
        list.columns = MakeColumns(name, fields, &list);
        const std::string text = FillList(fields, list, Below(5));
        Declare(name, "::LIST{" + TypeText(fields), text);
    }

    void DeclareInstance(const std::string& name, std::string_view description) {
        const std::vector<Field> fields = ParseFields(description);
        instance_.label = name;
        instance_.elements = MakeColumns(name, fields, nullptr);
        const std::string text = Fill(fields, instance_.elements, instance_.texts);
        Declare(name, "::SEQUENCE{" + TypeText(fields), text);
    }

    std::map<std::string, std::string> types_;
    std::string declarations_ = "$COMMA ::STREAM = \",\"$\n";
};

}  // namespace kvl
