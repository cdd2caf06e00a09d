#pragma once
// Runs small main scripts with the real built-ins on files in memory.
//
// D is the directory of the script, W the directories one and two below it. Their files: a.txt in each of the three,
// with another text, and only.txt in two. Beside them stand a script R, a pattern P, the types PERSON and WORDS with
// data, and what cannot be used: an empty file, one that is read-only, one that cannot be read, a directory.

#include "builtins/InstallBuiltIns.h"
#include "interpreter/ScriptRun.h"

namespace kvl {

inline std::string SourceText(const std::string& head, const std::string& body) {
    return "$BEGIN KVL VERSION=\"1.0.0\"$\n$BEGIN " + head + "$\n" + body + "$END " + head +
           "$\n$END KVL VERSION=\"1.0.0\"$\n";
}
inline std::string TypeText(const std::string& declaration) {
    return "$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE " + declaration + "$\n$END KVL VERSION=\"1.0.0\"$\n";
}

class FileScript : public ScriptRun {
public:
    FileScript() {
        InstallBuiltIns();
        Process().mainScriptDirectory = "/home";
        const std::pair<const char*, std::string> kFiles[] = {
            {"a.txt", "alpha"},
            {"one/a.txt", "first"},
            {"two/a.txt", "second"},
            {"two/only.txt", "lonely"},
            {"R.txt", SourceText("SCRIPT R(&T::STREAM)", "$T = \"done\"$\n")},
            {"P.txt", SourceText("PATTERN P(#T::STREAM)", "<$T$>\n")},
            {"PERSON.txt", TypeText("::PERSON = ::SEQUENCE{ NAME ::IDENTIFIER CITY ::IDENTIFIER }")},
            {"WORDS.txt", TypeText("::WORDS = ::LIST{ WORD ::IDENTIFIER }")},
            {"data.txt", "ada york"},
            {"empty.txt", ""},
            {"readOnly.txt", "old"},
            {"writeOnly.txt", "secret"},
        };
        for (const auto& [name, content] : kFiles)
            outside.memory.Put(name, content);
        outside.memory.SetReadOnly("readOnly.txt");
        outside.memory.SetUnreadable("writeOnly.txt");
        outside.memory.PutDirectory("dir");
    }

    // The first line of the body is line 3.
    bool Execute(const std::string& body) {
        return ScriptRun::Execute("$D ::KVL:DIRECTORY$$D:SET_PATH(\".\")$$W ::KVL:DIRECTORY$$W:SET_PATH(\"one;two\")$" +
                                  body);
    }

    // The text of a variable of the script that has run.
    std::string ValueOf(std::string_view label) const {
        const CVariable* variable = root->variableTable.Find(label);
        return variable ? std::string(variable->GetText()) : "(none)";
    }
    // The cells of a list's one column, each followed by ";".
    std::string CellsOf(std::string_view label) const {
        CVariable* variable = root->variableTable.Find(label);
        const CVariableKVLCategoryList* list = variable ? FindListOf(*variable) : nullptr;
        if (!list) return "(none)";
        std::string cells;
        const RecordStore& records = list->Records();
        for (auto place = records.Begin(); place != records.End(); place = records.Next(place))
            cells.append(records.At(place).Get(0)) += ';';
        return cells;
    }
    std::string TextOf(std::string_view path) const { return outside.memory.Get(path); }
    bool Shows(std::string_view text) const { return outside.console.output.find(text) != std::string::npos; }
};

}  // namespace kvl
