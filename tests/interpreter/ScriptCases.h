#pragma once
// Small main scripts as cases of a text file. The sections of a case: "type NAME" with its declarations, "script
// NAME(PARAMETERS)" and "pattern NAME(PARAMETERS)" with their bodies, "file PATH", "body" of the main script, its first
// line being line 3, and what comes of it: "output", in which "|" stands for CR LF, and "faults". Some cases tell more,
// see RunScriptCase. The first case of a file is named "prepared": its sections stand in front of those of each other
// case, and a "template NAME(PARAMETERS)" there is a pattern whose body is the section "text" of each case.

#include "interpreter/ScriptRun.h"
#include "support/CaseFile.h"
#include "text/Replace.h"

namespace kvl {

inline std::vector<TextCase> ReadScriptCases(const std::string& file) {
    const std::vector<TextCase> cases = ReadCases(file);
    return {cases.begin() + 1, cases.end()};
}

// Enters what a section declares.
inline void Declare(ScriptRun& run, const TextCase& row, const TextCase& declaring, const TextCase::Section& section) {
    const std::size_t blank = section.name.find(' ');
    const std::size_t bracket = section.name.find('(');
    if (blank == std::string::npos) return;
    const std::string kind = section.name.substr(0, blank);
    const std::string name = section.name.substr(blank + 1, bracket - blank - 1);
    const std::string text = declaring.Line(section.name);
    if (kind == "type") return run.AddType(name, text);
    if (kind == "file") return run.outside.memory.Put(name, text);
    if (bracket == std::string::npos) return;
    const std::string parameters = section.name.substr(bracket + 1, section.name.size() - bracket - 2);
    if (kind == "script") run.AddScript(name, parameters, text);
    if (kind == "pattern") run.AddPattern(name, parameters, text);
    if (kind == "template") run.AddPattern(name, parameters, row["text"]);
}

// Enters what the first case of the file and the case itself declare; delivers the body to run in front.
inline std::string Prepare(ScriptRun& run, const TextCase& row) {
    const TextCase prepared = ReadCases(row.file.substr(std::string(KVL_TESTS_FOLDER).size() + 1)).front();
    for (const TextCase* declaring : {&prepared, &row})
        for (const TextCase::Section& section : declaring->sections)
            Declare(run, row, *declaring, section);
    return prepared["body"];
}

// What else a case may tell: "asked", the operands that the built-in forms got to see; "built-in calls", their number;
// "trace" of calls and "notes" on the console; "stopped", the place of a failure, with a message or not; "message", a
// part of what the console shows.
inline void RunScriptCase(ScriptRun& run, const TextCase& row) {
    const std::string body = Prepare(run, row) + row["body"];
    const bool succeeded = run.Execute(body);
    EXPECT_EQ(succeeded, row["faults"].empty() && row["stopped"].empty()) << run.outside.console.output;
    EXPECT_TRUE(!succeeded || Process().stoppedLine == -1) << Process().stoppedPath;
    ExpectSection(row, "output", ReplaceAll(run.output, "\r\n", "|"));
    ExpectSection(row, "faults", run.faults);
    const std::pair<const char*, std::string> more[] = {
        {"asked", run.builtIns.asked},
        {"built-in calls", std::to_string(run.builtIns.callCount)},
        {"trace", run.outside.console.TextIn(11)},
        {"notes", run.outside.console.TextIn(10)},
        {"stopped", Process().stoppedPath + " " + std::to_string(Process().stoppedLine)}};
    for (const auto& [section, text] : more)
        if (!row[section].empty()) ExpectSection(row, section, text);
    EXPECT_NE(run.outside.console.output.find(row.Line("message")), std::string::npos) << run.outside.console.output;
}

}  // namespace kvl
