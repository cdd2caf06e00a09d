// Runs every case below tests/golden and every example as a whole program, in memory, and compares console text, exit
// value and written files with what stands in `expected/`: `console.txt` ends with the exit value, `files/` holds the
// files that the run made or changed. With KVL_GOLDEN_UPDATE=1 in the environment the expectations are rewritten.

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "support/WholeRun.h"

namespace kvl {
namespace {

namespace fs = std::filesystem;

void WriteFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

// What differs from build to build is not compared.
std::string WithoutBuildStamp(const std::string& text) {
    if (text.find("Build(") == std::string::npos) return text;
    return std::regex_replace(text, std::regex(R"(Build\(\d+\) on [^\n]*)"), "Build(...) on ...");
}

class GoldenTest : public testing::TestWithParam<fs::path> {};

TEST_P(GoldenTest, RunsAsExpected) {
    const fs::path folder = GetParam();
    const fs::path expected = folder / "expected";
    WholeRun run(ReadTree(folder));
    const std::string exitValue = "exit value " + std::to_string(run.Run()) + "\n";
    const std::string console = WithoutBuildStamp(run.outside.console.output) + exitValue;
    FileTexts files = run.Written();
    for (auto& [name, text] : files)
        text = WithoutBuildStamp(text);
    const char* update = std::getenv("KVL_GOLDEN_UPDATE");
    if (update && std::string_view(update) == "1") {
        fs::remove_all(expected);
        WriteFile(expected / "console.txt", console);
        for (const auto& [name, text] : files)
            WriteFile(expected / "files" / name, text);
        GTEST_SKIP() << "expectation rewritten";
    }
    EXPECT_EQ(ReadFile(expected / "console.txt"), console);
    EXPECT_EQ(ReadTree(expected / "files"), files);
}

// Every file of data, cut short: the run ends by itself, and with a message unless it succeeds. Some places of each
// file; with KVL_EVERY_PREFIX=1 in the environment all of them.
class PrefixTest : public testing::TestWithParam<fs::path> {
protected:
    static constexpr std::size_t kPlaces = 24;

    static bool IsData(const std::string& name) {
        const std::string extension = fs::path(name).extension().string();
        return extension != ".kvl" && extension != ".type" && extension != ".pattern" && name != "run.txt";
    }
    static bool EndsProperly(const FileTexts& files) {
        WholeRun run(files);
        return run.Run() == 0 || run.outside.console.output.find("ERROR: ") != std::string::npos;
    }
};

TEST_P(PrefixTest, EndsWithSuccessOrMessage) {
    const FileTexts whole = ReadTree(GetParam());
    if (!EndsProperly(whole)) return;  // a run that its user ends
    for (const auto& [name, text] : whole) {
        const std::size_t step = std::getenv("KVL_EVERY_PREFIX") ? 1 : text.size() / kPlaces + 1;
        FileTexts files = whole;
        for (std::size_t length = step - 1; IsData(name) && length < text.size(); length += step) {
            files[name] = text.substr(0, length);
            EXPECT_TRUE(EndsProperly(files)) << name << " cut at " << length;
        }
    }
}

std::string CaseName(const testing::TestParamInfo<fs::path>& info) {
    const fs::path folder = info.param;
    const std::string name = folder.parent_path().filename().string() + "_" + folder.filename().string();
    return std::regex_replace(name, std::regex("[^A-Za-z0-9]"), "_");
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenTest, testing::ValuesIn(FindCases({KVL_GOLDEN_FOLDER, KVL_EXAMPLES_FOLDER})),
                         CaseName);
INSTANTIATE_TEST_SUITE_P(Cases, PrefixTest, testing::ValuesIn(FindCases({KVL_GOLDEN_FOLDER, KVL_EXAMPLES_FOLDER})),
                         CaseName);

}  // namespace
}  // namespace kvl
