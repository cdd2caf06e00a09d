// Whole runs in which one call on the file system fails: each call of each run, one after the other. Whatever it was, a
// file is the old one or the new one, and a run that fell short has said so.

#include <gtest/gtest.h>

#include <cerrno>

#include "messages/CMessage.h"
#include "support/WholeRun.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

namespace fs = std::filesystem;

class FileFaultsTest : public testing::TestWithParam<fs::path> {};

bool IsLog(const std::string& name) {
    return name.starts_with("LogFiles/");
}

// What a run may leave of a file: nothing, what was there, or what a run without a fault makes of it.
class AllowedTexts {
public:
    AllowedTexts(FileTexts before, FileTexts after) : before_(std::move(before)), after_(std::move(after)) {}

    bool Allow(const std::string& name, const std::string& text) const {
        return IsLog(name) || Is(before_, name, text) || Is(after_, name, text);
    }
    bool AreAllNew(const FileTexts& written) const {
        return std::all_of(after_.begin(), after_.end(),
                           [&](const auto& file) { return IsLog(file.first) || Is(written, file.first, file.second); });
    }

private:
    static bool Is(const FileTexts& files, const std::string& name, const std::string& text) {
        const auto found = files.find(name);
        return found != files.end() && found->second == text;
    }

    FileTexts before_, after_;
};

bool HasToldAFault(const std::string& console) {
    for (const std::string_view sign : {"ERROR: ", "Fatal Error", "The run stopped"})
        if (console.find(sign) != std::string::npos) return true;
    return false;
}

TEST_P(FileFaultsTest, LeaveWholeFilesAndAMessage) {
    const FileTexts project = ReadTree(GetParam());
    WholeRun faultless(project);
    const int exitValue = faultless.Run();
    const AllowedTexts allowed(project, faultless.Written());
    const int callCount = faultless.outside.files.CountOfAll();
    for (int call = 1; call <= callCount; ++call) {
        for (const int error : {EIO, ENOSPC}) {
            WholeRun run(project);
            run.outside.files.FailAtAny(call, error);
            const bool succeeded = run.Run() == 0;
            const std::string& console = run.outside.console.output;
            const FileTexts written = run.Written();
            SCOPED_TRACE("call " + std::to_string(call) + " of " + std::to_string(callCount) + "\n" + console);
            ASSERT_TRUE(run.outside.files.HasFailed());
            for (const auto& [name, text] : written)
                EXPECT_TRUE(allowed.Allow(name, text)) << name << ":\n" << text;
            if (!succeeded)
                EXPECT_TRUE(exitValue == 1 || HasToldAFault(console));
            else
                EXPECT_TRUE(HasMessages() || allowed.AreAllNew(written));
        }
    }
    ResetProcessState();
}

std::string CaseName(const testing::TestParamInfo<fs::path>& info) {
    return info.param.parent_path().filename().string() + "_" + info.param.filename().string();
}

// Not those whose result may be another without a fault: a question more, where nobody can tell whether a file is
// there, takes the answer to the next one; a script that shows a directory shows that it has no path.
std::vector<fs::path> FindFaultCases() {
    const fs::path golden = KVL_GOLDEN_FOLDER;
    std::vector<fs::path> cases =
        FindCases({golden / "files", golden / "run", golden / "streams", KVL_EXAMPLES_FOLDER});
    std::erase_if(cases, [](const fs::path& folder) {
        return folder.filename() == "question_for_each_file" || folder.filename() == "directories";
    });
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Cases, FileFaultsTest, testing::ValuesIn(FindFaultCases()), CaseName);

}  // namespace
}  // namespace kvl
