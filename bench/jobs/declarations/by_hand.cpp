// Enumerations and structures into to_string functions: recursive descent, structures, one output buffer.
#include "jobs/declarations/Model.h"
#include "support/TextScanner.h"
#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;

class Reader {
public:
    explicit Reader(std::string_view input) : scanner_(input) {}

    bool Read(std::vector<Item>& items) {
        while (!scanner_.IsAtEnd())
            if (!ReadItem(items.emplace_back())) return false;
        return !items.empty();
    }

private:
    bool ReadItem(Item& item) {
        if (ReadNote(item.note)) return true;
        item.isEnum = scanner_.AcceptText("enum ");
        if (!item.isEnum && !scanner_.AcceptText("struct ")) return false;
        item.name = scanner_.Name();
        if (!item.isEnum && scanner_.Accept(':')) item.base = scanner_.Name();
        if (!scanner_.Accept('{')) return false;
        while (!scanner_.Accept('}')) {
            Entry& entry = item.entries.emplace_back();
            if (!ReadNote(entry.note) && !(item.isEnum ? ReadValue(entry) : ReadMember(entry))) return false;
        }
        return scanner_.Accept(';');
    }

    bool ReadNote(std::string_view& note) {
        const bool toLineEnd = scanner_.AcceptText("//");
        if (!toLineEnd && !scanner_.AcceptText("/*")) return false;
        const std::string_view end = toLineEnd ? "\n" : "*/";
        const std::size_t length = scanner_.Rest().find(end);
        if (length == std::string_view::npos) return false;
        note = {scanner_.Place() - 2, length + (toLineEnd ? 2U : 4U)};
        scanner_.GoTo(scanner_.Place() + length + end.size());
        return true;
    }

    bool ReadValue(Entry& entry) {
        entry.name = scanner_.Name();
        if (scanner_.Accept('=')) entry.number = scanner_.Digits();
        return !entry.name.empty() && scanner_.Accept(',');
    }

    bool ReadMember(Entry& entry) {
        std::string_view word = scanner_.Name();
        if (word == "const" || word == "static" || word == "mutable") {
            entry.qualifier = word;
            word = scanner_.Name();
        }
        if (word.empty() || !ReadKind(word, entry.function)) return false;
        entry.name = scanner_.Name();
        if (scanner_.Accept('[')) {
            entry.size = scanner_.Digits();
            if (!scanner_.Accept(']')) return false;
        }
        if (scanner_.Accept('=')) entry.usually = scanner_.Digits();
        return scanner_.Accept(';');
    }

    bool ReadKind(std::string_view word, std::string_view& function) {
        for (const KindRow& row : kWordKinds)
            if (word == row.word) {
                function = row.function;
                return true;
            }
        if (word == "long") {
            function = "std::to_string";
            return scanner_.AcceptText("double ");
        }
        for (const std::string_view container : kContainers)
            if (word == container) {
                function = "joined";
                return scanner_.Accept('<') && !scanner_.Name().empty() && scanner_.Accept('>');
            }
        function = scanner_.Accept('*') ? "address" : "to_string";
        return true;
    }

    TextScanner scanner_;
};

void WriteEnum(const Item& item, std::string& output) {
    Append(output, "inline std::string_view to_string(", item.name, " value) {\r\n    switch (value) {\r\n");
    for (const Entry& entry : item.entries) {
        if (!entry.note.empty()) {
            Append(output, "        ", entry.note, "\r\n");
            continue;
        }
        Append(output, "        case ", item.name, "::", entry.name, ": return \"", entry.name, "\";");
        if (!entry.number.empty()) Append(output, "  // ", entry.number);
        Append(output, "\r\n");
    }
    Append(output, "    }\r\n    return \"\";\r\n}\r\n\r\n");
}

void WriteStruct(const Item& item, std::string& output) {
    Append(output, "inline std::string to_string(const ", item.name, "& value) {\r\n    std::string text = \"",
           item.name, " {\";\r\n");
    if (!item.base.empty()) Append(output, "    text += to_string(static_cast<const ", item.base, "&>(value));\r\n");
    for (const Entry& entry : item.entries) {
        if (!entry.note.empty()) Append(output, "    ", entry.note, "\r\n");
        if (!entry.note.empty() || entry.qualifier == "static") continue;
        Append(output, "    text += \" ", entry.name, "=\" + ", entry.function, "(value.", entry.name, ");");
        if (!entry.size.empty()) Append(output, "  // ", entry.size, " elements");
        if (!entry.usually.empty()) Append(output, "  // usually ", entry.usually);
        Append(output, "\r\n");
    }
    Append(output, "    return text + \" }\";\r\n}\r\n\r\n");
}

bool Generate(std::string_view input, std::string& output) {
    std::vector<Item> items;
    if (!Reader(input).Read(items)) return false;
    Append(output, "#pragma once\r\n\r\n");
    for (const Item& item : items)
        if (!item.note.empty())
            Append(output, item.note, "\r\n");
        else if (item.isEnum)
            WriteEnum(item, output);
        else
            WriteStruct(item, output);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
