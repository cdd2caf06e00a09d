// Runs every case below tests/golden and every example as a whole program, in memory: its folder is the project, the
// clock stands still, and console text, exit value and written files are compared with what stands in `expected/`.
//
// A case is a folder with main.kvl and whatever the run reads. An optional file `run.txt` holds lines "arguments: ..."
// ("arguments" alone: none, so that the run asks), "input: ..." (with \n and \e for a line end and [Esc]),
// "environment: NAME=VALUE", and "read-only: FILE" or "unreadable: FILE". `expected/console.txt` ends with the exit
// value; `expected/files/` holds the files that the run made or changed. With KVL_GOLDEN_UPDATE=1 in the environment
// the expectations are rewritten.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "driver/RunProgram.h"
#include "support/TestPlatform.h"

namespace kvl {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kProject = "/project/";

std::string ReadFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

using FileTexts = std::map<std::string, std::string>;

FileTexts ReadTree(const fs::path& folder) {
    FileTexts files;
    if (!fs::exists(folder)) return files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = fs::relative(entry.path(), folder).generic_string();
        if (entry.is_regular_file() && !name.starts_with("expected/")) files[name] = ReadFile(entry.path());
    }
    return files;
}

// The bytes that "\n" and "\e" in run.txt stand for.
std::string Unescape(std::string text) {
    text = std::regex_replace(text, std::regex(R"(\\n)"), "\n");
    return std::regex_replace(text, std::regex(R"(\\e)"), "\x1b");
}

struct RunSettings {
    std::vector<std::string> arguments = {"-overwrite"};
    std::string input;
    std::vector<std::pair<std::string, std::string>> environment;
    std::vector<std::string> readOnly, unreadable;  // files of the project
};

RunSettings ReadSettings(const FileTexts& files) {
    RunSettings settings;
    const auto found = files.find("run.txt");
    if (found == files.end()) return settings;
    std::istringstream lines(found->second);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(": ");
        const std::string key = line.substr(0, colon);
        const std::string value = colon == std::string::npos ? "" : line.substr(colon + 2);
        if (key == "input") settings.input = Unescape(value);
        if (key == "read-only") settings.readOnly.push_back(value);
        if (key == "unreadable") settings.unreadable.push_back(value);
        if (key == "environment") {
            const std::size_t equals = value.find('=');
            settings.environment.emplace_back(value.substr(0, equals), value.substr(equals + 1));
        }
        if (key == "arguments") {
            settings.arguments.clear();
            std::istringstream words(value);
            for (std::string word; words >> word;)
                settings.arguments.push_back(word);
        }
    }
    return settings;
}

struct Outcome {
    std::string console;  // with the exit value at its end
    FileTexts files;      // made or changed
};

// What differs from build to build is not compared.
std::string WithoutBuildStamp(const std::string& text) {
    if (text.find("Build(") == std::string::npos) return text;
    return std::regex_replace(text, std::regex(R"(Build\(\d+\) on [^\n]*)"), "Build(...) on ...");
}

Outcome RunProject(const FileTexts& files) {
    const RunSettings settings = ReadSettings(files);
    ScopedPlatform outside;
    for (const auto& [name, text] : files)
        outside.memory.Put(std::string(kProject) + name, text);
    for (const std::string& name : settings.readOnly)
        outside.memory.SetReadOnly(std::string(kProject) + name);
    for (const std::string& name : settings.unreadable)
        outside.memory.SetUnreadable(std::string(kProject) + name);
    outside.console.input = settings.input;
    outside.surroundings.now = 1700000000;
    for (const auto& [name, value] : settings.environment)
        outside.surroundings.environment[name] = value;

    const std::string script = std::string(kProject) + "main.kvl";
    std::vector<const char*> arguments = {"kvlRun", script.c_str()};
    for (const std::string& argument : settings.arguments)
        arguments.push_back(argument.c_str());
    int exitValue = 1;
    try {
        exitValue = RunProgram(static_cast<int>(arguments.size()), arguments.data()) ? 0 : 1;
    } catch (const ProcessEnded& ended) {
        exitValue = ended.exitValue;
    }

    Outcome outcome{WithoutBuildStamp(outside.console.output) + "exit value " + std::to_string(exitValue) + "\n", {}};
    for (const std::string& path : outside.memory.FilePaths()) {
        if (!path.starts_with(kProject)) continue;
        const std::string name = path.substr(kProject.size());
        const auto before = files.find(name);
        const std::string text = WithoutBuildStamp(outside.memory.Get(path));
        if (before == files.end() || before->second != text) outcome.files[name] = text;
    }
    return outcome;
}

std::vector<fs::path> FindCases() {
    std::vector<fs::path> cases;
    for (const fs::path& root : {fs::path(KVL_GOLDEN_FOLDER), fs::path(KVL_EXAMPLES_FOLDER)}) {
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            const bool isCase = entry.path().filename() == "main.kvl" &&
                                entry.path().generic_string().find("/expected/") == std::string::npos;
            if (isCase) cases.push_back(entry.path().parent_path());
        }
    }
    std::sort(cases.begin(), cases.end());
    return cases;
}

class GoldenTest : public testing::TestWithParam<fs::path> {};

TEST_P(GoldenTest, RunsAsExpected) {
    const fs::path folder = GetParam();
    const fs::path expected = folder / "expected";
    const Outcome outcome = RunProject(ReadTree(folder));
    const char* update = std::getenv("KVL_GOLDEN_UPDATE");
    if (update && std::string_view(update) == "1") {
        fs::remove_all(expected);
        WriteFile(expected / "console.txt", outcome.console);
        for (const auto& [name, text] : outcome.files)
            WriteFile(expected / "files" / name, text);
        GTEST_SKIP() << "expectation rewritten";
    }
    EXPECT_EQ(ReadFile(expected / "console.txt"), outcome.console);
    EXPECT_EQ(ReadTree(expected / "files"), outcome.files);
}

std::string CaseName(const testing::TestParamInfo<fs::path>& info) {
    const fs::path folder = info.param;
    const std::string name = folder.parent_path().filename().string() + "_" + folder.filename().string();
    return std::regex_replace(name, std::regex("[^A-Za-z0-9]"), "_");
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenTest, testing::ValuesIn(FindCases()), CaseName);

}  // namespace
}  // namespace kvl
