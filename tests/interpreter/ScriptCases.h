#pragma once
// Small main scripts as cases of a text file. The sections of a case: "type NAME" with its declarations, "script
// NAME(PARAMETERS)" and "pattern NAME(PARAMETERS)" with their bodies, "body" of the main script, its first line being
// line 3, and what comes of it, "output" and "faults". The first case of a file is named "prepared": its sections stand
// in front of those of each other case.

#include "interpreter/ScriptRun.h"
#include "support/CaseFile.h"

namespace kvl {

inline std::vector<TextCase> ReadScriptCases(const std::string& file) {
    const std::vector<TextCase> cases = ReadCases(file);
    return {cases.begin() + 1, cases.end()};
}

// Enters what a section declares.
inline void Prepare(ScriptRun& run, const TextCase& declaring, const TextCase::Section& section) {
    const std::size_t blank = section.name.find(' ');
    const std::size_t bracket = section.name.find('(');
    if (blank == std::string::npos) return;
    const std::string kind = section.name.substr(0, blank);
    const std::string name = section.name.substr(blank + 1, bracket - blank - 1);
    const std::string text = declaring.Line(section.name);
    if (kind == "type") return run.AddType(name, text);
    const std::string parameters = section.name.substr(bracket + 1, section.name.size() - bracket - 2);
    if (kind == "script") run.AddScript(name, parameters, text);
    if (kind == "pattern") run.AddPattern(name, parameters, text);
}

inline void RunScriptCase(ScriptRun& run, const TextCase& row) {
    const TextCase prepared = ReadCases(row.file.substr(std::string(KVL_TESTS_FOLDER).size() + 1)).front();
    for (const TextCase* declaring : {&prepared, &row})
        for (const TextCase::Section& section : declaring->sections)
            Prepare(run, *declaring, section);
    EXPECT_EQ(run.Execute(prepared["body"] + row["body"]), row["faults"].empty()) << run.outside.console.output;
    ExpectSection(row, "output", run.output);
    ExpectSection(row, "faults", run.faults);
}

}  // namespace kvl
