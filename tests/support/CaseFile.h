#pragma once
// Tables of tests as text: a case file holds named cases, each of named sections, so that sources and expected texts
// stand as their users would write them.
//
//     # notes in front of the first case
//     === name of the first case
//     --- source
//     text ...
//     --- expected
//     text ...
//
// With KVL_UPDATE_CASES=1 in the environment, ExpectSection rewrites the section instead of comparing it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace kvl {

// One case: its name, and its sections in the order of the file, each with the lines below its head (LF behind each).
struct TextCase {
    struct Section {
        std::string name, text;
    };
    std::string file, name;
    std::vector<Section> sections;

    // The section's text; empty where the case has none of that name.
    std::string operator[](std::string_view section) const {
        for (const Section& each : sections)
            if (each.name == section) return each.text;
        return {};
    }
    // The same without its last line end, for a text of one line.
    std::string Line(std::string_view section) const {
        std::string text = (*this)[section];
        if (!text.empty()) text.pop_back();
        return text;
    }
};

// What the test framework shows of a case.
inline void PrintTo(const TextCase& shown, std::ostream* out) {
    *out << shown.name;
}

// The cases of a file, named from the folder of the tests ("frontend/ScriptCommands.cases").
inline std::vector<TextCase> ReadCases(const std::string& name) {
    const std::string path = std::string(KVL_TESTS_FOLDER) + "/" + name;
    std::ifstream stream(path, std::ios::binary);
    std::vector<TextCase> cases;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("=== ")) {
            cases.push_back({path, line.substr(4), {}});
        } else if (line.starts_with("--- ") && !cases.empty()) {
            cases.back().sections.push_back({line.substr(4), {}});
        } else if (!cases.empty() && !cases.back().sections.empty()) {
            cases.back().sections.back().text += line + "\n";
        }
    }
    return cases;
}

// A name that the test framework takes, from the name of a case.
inline std::string CaseName(const testing::TestParamInfo<TextCase>& info) {
    std::string name = info.param.name;
    for (char& c : name)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
    return name;
}

inline void RewriteSection(const TextCase& changed, std::string_view section, const std::string& text) {
    std::ifstream in(changed.file, std::ios::binary);
    std::string head, all;
    for (std::string line; in.peek() != '=' && std::getline(in, line);)
        head += line + "\n";
    in.close();
    for (const TextCase& each : ReadCases(changed.file.substr(std::string(KVL_TESTS_FOLDER).size() + 1))) {
        all += "=== " + each.name + "\n";
        for (const TextCase::Section& old : each.sections) {
            const bool here = each.name == changed.name && old.name == section;
            all += "--- " + old.name + "\n" + (here ? text : old.text);
        }
    }
    std::ofstream(changed.file, std::ios::binary) << head << all;
}

// Compares a section with what came out; a last line end is added where the text has none.
inline void ExpectSection(const TextCase& expected, std::string_view section, std::string actual) {
    if (!actual.empty() && actual.back() != '\n') actual += '\n';
    if (expected[section] == actual) return;
    if (std::getenv("KVL_UPDATE_CASES") != nullptr) return RewriteSection(expected, section, actual);
    EXPECT_EQ(expected[section], actual) << expected.file << ": " << expected.name << ", section " << section;
}

// Runs TEST_P(fixture, test) over the cases of a file.
#define KVL_INSTANTIATE_CASES(fixture, file) \
    INSTANTIATE_TEST_SUITE_P(Cases, fixture, testing::ValuesIn(ReadCases(file)), CaseName)

}  // namespace kvl
