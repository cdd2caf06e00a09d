// What a path is, reading, copying and making directories, and what is said when that fails: as cases of calls, one on
// a line, and what comes of each. Behind "fail OPERATION N ERROR" the n-th such call on the files fails.
#include "messages/FileReports.h"

#include <functional>
#include <sstream>

#include "messages/OutsideTest.h"
#include "support/CaseFile.h"
#include "text/Replace.h"
#include "text/Trim.h"

namespace kvl {
namespace {

const std::map<std::string, int> kErrors = {{"ENOENT", ENOENT}, {"EACCES", EACCES}, {"EINVAL", EINVAL},
                                            {"EIO", EIO},       {"EFBIG", EFBIG},   {"ENOMEM", ENOMEM},
                                            {"EMFILE", EMFILE}, {"ENOSPC", ENOSPC}, {"EISDIR", EISDIR}};

const std::map<std::string, FileOperation> kOperations = {
    {"CheckAccess", FileOperation::CheckAccess}, {"ReadWhole", FileOperation::ReadWhole},
    {"OpenReader", FileOperation::OpenReader},   {"Read", FileOperation::Read},
    {"OpenWriter", FileOperation::OpenWriter},   {"Write", FileOperation::Write},
    {"Commit", FileOperation::Commit},           {"MakeDirectory", FileOperation::MakeDirectory},
};

std::string StateText(const FileState& state) {
    std::string text;
    const std::pair<bool, const char*> flags[] = {
        {state.exists, "exists "},     {state.readable, "readable "},         {state.writable, "writable "},
        {state.readWritable, "both "}, {state.accessDenied, "accessDenied "}, {state.invalidName, "invalidName "},
    };
    for (const auto& [isSet, name] : flags)
        if (isSet) text += name;
    if (state.invalidCharacter != 0) text += state.invalidCharacter;
    return text.empty() ? "nothing" : std::string(TrimInvisible(text));
}

class FileReports : public OutsideTest, public testing::WithParamInterface<TextCase> {
protected:
    // The words of a call behind its name.
    using Words = std::vector<std::string>;

    std::string Call(const std::string& name, const Words& words) {
        static const std::string kNone;
        const std::string& a = words.empty() ? kNone : words[0];
        const std::string& b = words.size() < 2 ? kNone : words[1];
        const auto yes = [](bool succeeded) { return std::string(succeeded ? "true" : "false"); };
        const std::map<std::string, std::function<std::string()>> calls = {
            {"put", [&] { return outside.memory.Put(a, ReplaceAll(b, "\\n", "\n")), ""; }},
            {"directory", [&] { return outside.memory.PutDirectory(a), ""; }},
            {"read-only", [&] { return outside.memory.SetReadOnly(a), ""; }},
            {"unreadable", [&] { return outside.memory.SetUnreadable(a), ""; }},
            {"drive", [&] { return Process().mainScriptDrive = a, ""; }},
            {"fail", [&] { return outside.files.FailAt(kOperations.at(a), std::stoi(b), kErrors.at(words[2])), ""; }},
            {"show", [&] { return outside.memory.IsDirectory(a) ? "directory" : outside.memory.Get(a); }},
            {"CheckFile",
             [&] {
                 FileState state;
                 const bool exists = CheckFile(a, state);
                 return yes(exists) + " " + StateText(state);
             }},
            {"HasInvalidFileCharacter",
             [&] {
                 char character = '-';
                 const bool has = HasInvalidFileCharacter(a, character);
                 return yes(has) + " " + character;
             }},
            {"ReportFileError", [&] { return yes(ReportFileError(std::stoi(a), b, context)); }},
            {"ReportOpenFailure", [&] { return yes(ReportOpenFailure(a, context)); }},
            {"ReportCreateFailure", [&] { return yes(ReportCreateFailure(a, kErrors.at(b), context)); }},
            {"ReadSourceFile",
             [&] {
                 std::string text = "before";
                 int lineCount = -1;
                 const bool read = ReadSourceFile(a, text, lineCount, context);
                 return yes(read) + " " + std::to_string(lineCount) + " " + ReplaceAll(text, "\n", "\\n");
             }},
            {"ReadSourceLine",
             [&] {
                 std::string text = "before";
                 const bool read = ReadSourceLine(a, std::stoi(b), text, context);
                 return yes(read) + " " + text;
             }},
            {"CopyFileBytes",
             [&] {
                 const bool copied = CopyFileBytes(a, b, context);
                 return yes(copied) + " " + outside.memory.Get(b);
             }},
            {"KeepOldFile", [&] { return KeepOldFile(a), "done"; }},
            {"MakeDirectory", [&] { return yes(MakeDirectory(a, context)); }},
            {"EnsureDirectory",
             [&] {
                 std::string path = a;
                 const bool made = EnsureDirectory(path, context);
                 return yes(made) + " " + path;
             }},
            {"GetCurrentPath",
             [&] {
                 outside.memory.workingDirectory = a;
                 std::string path;
                 const bool got = GetCurrentPath(path, context);
                 return yes(got) + " " + path;
             }},
        };
        try {
            return calls.at(name)();
        } catch (const ProcessEnded& ended) {
            return "process ended with " + std::to_string(ended.exitValue) + ": " + outside.console.output;
        }
    }

    // The identifier and text of the messages shown since the last call.
    std::string TakeMessages() {
        std::string lines;
        for (const auto& piece : outside.console.pieces) {
            const std::size_t begin = piece.text.find("ERR_");
            if (piece.colour != 12) continue;
            lines += "    " + ReplaceAll(piece.text.substr(begin, piece.text.find("\n\n", begin) - begin), "\n", ": ") +
                     "\n";
        }
        outside.console.pieces.clear();
        return lines;
    }

    MessageContext context;
};

TEST_P(FileReports, AreAsTold) {
    std::istringstream calls(GetParam()["calls"]);
    std::string results;
    for (std::string line; std::getline(calls, line);) {
        std::istringstream words(line);
        std::string name;
        words >> name;
        const std::string result = Call(name, Words(std::istream_iterator<std::string>(words), {}));
        if (!result.empty()) results += result + "\n";
        results += TakeMessages();
    }
    ExpectSection(GetParam(), "results", results);
}

KVL_INSTANTIATE_CASES(FileReports, "messages/FileReports.cases");

// Lines longer than what is read at once, and lines that begin in one piece and end in another; files copied in pieces.
class FileBlocks : public OutsideTest {};

TEST_F(FileBlocks, AreJoined) {
    const MessageContext context;
    const std::string first(70000, 'a'), second(140000, 'b');
    outside.memory.Put("a", first + "\n" + second + "\nend");
    std::string text;
    for (const std::string& line : {first, second, std::string("end")}) {
        const int number = line == first ? 1 : line == second ? 2 : 3;
        ASSERT_TRUE(ReadSourceLine("a", number, text, context));
        EXPECT_EQ(text, line);
    }
    ASSERT_TRUE(CopyFileBytes("a", "b", context));
    EXPECT_EQ(outside.memory.Get("b"), outside.memory.Get("a"));
}

}  // namespace
}  // namespace kvl
