#pragma once
// A whole run of the program in memory: the folder of a case is the project, the clock stands still, and what the run
// shows, answers and writes is kept.
//
// A case is a folder with main.kvl and whatever the run reads. An optional file `run.txt` holds lines "arguments: ..."
// ("arguments" alone: none, so that the run asks), "input: ..." (with \n and \e for a line end and [Esc]),
// "environment: NAME=VALUE", and "read-only: FILE" or "unreadable: FILE". What stands below `expected/` is no part of
// the project.

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "driver/RunProgram.h"
#include "support/TestPlatform.h"
#include "text/Replace.h"

namespace kvl {

constexpr std::string_view kProject = "/project/";

using FileTexts = std::map<std::string, std::string>;

inline std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The files below a folder by their names from there.
inline FileTexts ReadTree(const std::filesystem::path& folder) {
    FileTexts files;
    if (!std::filesystem::exists(folder)) return files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string name = std::filesystem::relative(entry.path(), folder).generic_string();
        if (entry.is_regular_file() && !name.starts_with("expected/")) files[name] = ReadFile(entry.path());
    }
    return files;
}

// The folders of all cases below the roots, sorted.
inline std::vector<std::filesystem::path> FindCases(const std::vector<std::filesystem::path>& roots) {
    std::vector<std::filesystem::path> cases;
    for (const std::filesystem::path& root : roots) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            const bool isCase = entry.path().filename() == "main.kvl" &&
                                entry.path().generic_string().find("/expected/") == std::string::npos;
            if (isCase) cases.push_back(entry.path().parent_path());
        }
    }
    std::sort(cases.begin(), cases.end());
    return cases;
}

class WholeRun {
public:
    explicit WholeRun(FileTexts project) : project_(std::move(project)) {
        const auto settings = project_.find("run.txt");
        std::istringstream lines(settings == project_.end() ? std::string() : settings->second);
        for (std::string line; std::getline(lines, line);)
            ReadSetting(line);
        for (const auto& [name, text] : project_)
            outside.memory.Put(std::string(kProject) + name, text);
        for (const std::string& name : readOnly_)
            outside.memory.SetReadOnly(std::string(kProject) + name);
        for (const std::string& name : unreadable_)
            outside.memory.SetUnreadable(std::string(kProject) + name);
        outside.surroundings.now = 1700000000;
    }

    // The exit value.
    int Run() {
        const std::string script = std::string(kProject) + "main.kvl";
        std::vector<const char*> arguments = {"kvlRun", script.c_str()};
        for (const std::string& argument : arguments_)
            arguments.push_back(argument.c_str());
        try {
            return RunProgram(static_cast<int>(arguments.size()), arguments.data()) ? 0 : 1;
        } catch (const ProcessEnded& ended) {
            return ended.exitValue;
        }
    }

    // The files that the run made or changed.
    FileTexts Written() const {
        FileTexts files;
        for (const std::string& path : outside.memory.FilePaths()) {
            if (!path.starts_with(kProject)) continue;
            const std::string name = path.substr(kProject.size());
            const auto before = project_.find(name);
            const std::string text = outside.memory.Get(path);
            if (before == project_.end() || before->second != text) files[name] = text;
        }
        return files;
    }

    ScopedPlatform outside;

private:
    void ReadSetting(const std::string& line) {
        const std::size_t colon = line.find(": ");
        const std::string key = line.substr(0, colon);
        const std::string value = colon == std::string::npos ? "" : line.substr(colon + 2);
        if (key == "input") outside.console.input = ReplaceAll(ReplaceAll(value, "\\n", "\n"), "\\e", "\x1b");
        if (key == "read-only") readOnly_.push_back(value);
        if (key == "unreadable") unreadable_.push_back(value);
        if (key == "environment") {
            const std::size_t equals = value.find('=');
            outside.surroundings.environment[value.substr(0, equals)] = value.substr(equals + 1);
        }
        if (key == "arguments") {
            std::istringstream words(value);
            arguments_.assign(std::istream_iterator<std::string>(words), {});
        }
    }

    FileTexts project_;
    std::vector<std::string> arguments_ = {"-overwrite"};
    std::vector<std::string> readOnly_, unreadable_;  // files of the project
};

}  // namespace kvl
