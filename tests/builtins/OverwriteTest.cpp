// The questions before files are overwritten, asked of a console whose keys are scripted.
#include "FileScript.h"
#include "builtins/FileOperations.h"
#include "interpreter/ScriptLoading.h"

namespace kvl {
namespace {

constexpr const char* kRunQuestion =
    "This KVL script might overwrite some files!\n\nPress key [Esc] to abort.\n"
    "Press key [A] to be ask for each file to overwrite.\n"
    "Press key [Return] to overwrite all files without being ask.\n";

std::string FileQuestion(const std::string& path) {
    return "\nDo you agree to overwrite this file?\n" + path +
           "\n\nPress key [Esc] to abort.\nPress key [Y] for YES to overwrite.\n"
           "Press key [N] for NO to not overwrite.\n"
           "Press key [Return] to overwrite all files without being ask anymore.\n";
}

struct KeyRow {
    const char* keys;
    int mode;
    const char* rest;  // of the input
};

TEST(OverwriteQuestions, TakeTheirKeys) {
    constexpr KeyRow kRunRows[] = {
        {"\x1B", kOverwriteAbort, ""},      {"\r", kOverwriteAll, ""},    {"\n", kOverwriteAll, ""},
        {"a", kOverwriteAsk, ""},           {"A", kOverwriteAsk, ""},     {"", kOverwriteAbort, ""},
        {"xynYN \ta?", kOverwriteAsk, "?"}, {"xyn", kOverwriteAbort, ""}, {"\xE1\x81\r", kOverwriteAll, ""},
    };
    constexpr KeyRow kFileRows[] = {
        {"\x1B", kOverwriteAbort, ""}, {"\r", kOverwriteAll, ""}, {"\n", kOverwriteAll, ""},
        {"y", kOverwriteAsk, ""},      {"Y", kOverwriteAsk, ""},  {"n", kOverwriteSkip, ""},
        {"N", kOverwriteSkip, ""},     {"", kOverwriteAbort, ""}, {"aAxy?", kOverwriteAsk, "?"},
    };
    CPatternSchema schema;
    for (const KeyRow& row : kRunRows) {
        ScopedPlatform outside;
        outside.console.input = row.keys;
        EXPECT_EQ(AskOverwriteRun(schema), row.mode) << row.keys;
        EXPECT_EQ(schema.overwriteMode, row.mode);
        EXPECT_EQ(outside.console.input, row.rest);
        EXPECT_EQ(outside.console.TextIn(14), kRunQuestion);
        EXPECT_EQ(outside.console.outputAtInput, kRunQuestion);
    }
    for (const KeyRow& row : kFileRows) {
        ScopedPlatform outside;
        outside.console.input = row.keys;
        EXPECT_EQ(AskOverwriteFile(schema, "/work\\a.txt"), row.mode) << row.keys;
        EXPECT_EQ(schema.overwriteMode, row.mode);
        EXPECT_EQ(outside.console.input, row.rest);
        EXPECT_EQ(outside.console.TextIn(14), FileQuestion("/work\\a.txt"));
    }
}

// Line ends behind answered letters are part of the answers.
TEST(OverwriteQuestions, TakeTypedLines) {
    ScopedPlatform outside;
    CPatternSchema schema;
    outside.console.input = "a\nn\r\ny\n\n";
    EXPECT_EQ(AskOverwriteRun(schema), kOverwriteAsk);
    EXPECT_EQ(AskOverwriteFile(schema, "x"), kOverwriteSkip);
    EXPECT_EQ(AskOverwriteFile(schema, "x"), kOverwriteAsk);
    EXPECT_EQ(AskOverwriteFile(schema, "x"), kOverwriteAll);
}

// Whole runs: a script that writes the files a, b and c, of which a and c are there already.
class OverwriteRun : public testing::Test {
protected:
    OverwriteRun() {
        ResetProcessState();
        InstallBuiltIns();
        outside.memory.Put("/work/a", "old");
        outside.memory.Put("/work/c", "old");
    }
    ~OverwriteRun() override { ResetProcessState(); }

    bool Run(const std::string& keys) {
        return Run(keys, "$D:FILE(\"a\") = S$$D:FILE(\"b\") = S$$D:FILE(\"c\") = S$\n");
    }
    bool Run(const std::string& keys, const std::string& body) {
        const std::string begin = "$D ::KVL:DIRECTORY$$D:SET_PATH(\"\")$$S ::STREAM = \"new\"$\n";
        outside.memory.Put("/work/x.kvl", SourceText("SCRIPT MAIN()", begin + body));
        outside.console.input = keys;
        return LoadAndRun("/work/x.kvl");
    }
    std::string Files() const {
        return outside.memory.Get("/work/a") + " " + outside.memory.Get("/work/b") + " " +
               outside.memory.Get("/work/c");
    }
    int Questions() const {
        int count = 0;
        for (const auto& piece : outside.console.pieces)
            count += piece.text.starts_with("\nDo you agree") ? 1 : 0;
        return count;
    }

    ScopedPlatform outside;
};

struct AnswerRow {
    const char* keys;
    const char* files;
    int questions;
};

TEST_F(OverwriteRun, FollowsTheAnswers) {
    constexpr AnswerRow kRows[] = {
        {"\r", "new new new", 0},   {"a\r", "new new new", 1},       {"ayy", "new new new", 2},
        {"any", "old new new", 2},  {"ayn", "new new old", 2},       {"ann", "old new old", 2},
        {"an\r", "old new new", 2}, {"a\nn\ny\n", "old new new", 2},
    };
    for (const AnswerRow& row : kRows) {
        outside.memory.Put("/work/a", "old");
        outside.memory.Remove("/work/b");
        outside.memory.Put("/work/c", "old");
        outside.console.pieces.clear();
        EXPECT_TRUE(Run(row.keys)) << outside.console.output;
        EXPECT_EQ(Files(), row.files) << row.keys;
        EXPECT_EQ(Questions(), row.questions) << row.keys;
    }
}

TEST_F(OverwriteRun, AsksNothingInTheOverwriteMode) {
    Process().overwritePromptEnabled = false;
    EXPECT_TRUE(Run(""));
    EXPECT_EQ(Files(), "new new new");
    EXPECT_EQ(outside.console.TextIn(14), "");
}

TEST_F(OverwriteRun, AsksAboutNoNewFile) {
    outside.memory.Remove("/work/a");
    outside.memory.Remove("/work/c");
    EXPECT_TRUE(Run("a"));
    EXPECT_EQ(Files(), "new new new");
    EXPECT_EQ(outside.console.TextIn(14), kRunQuestion);
}

TEST_F(OverwriteRun, AsksBeforeAScriptThatWritesNothing) {
    EXPECT_TRUE(Run("\r", ""));
    EXPECT_EQ(outside.console.TextIn(14), kRunQuestion);
}

TEST_F(OverwriteRun, TellsNothingOfASkippedFile) {
    EXPECT_TRUE(Run("an", "$D:FILE(\"a\") = S$\n"));
    EXPECT_EQ(outside.console.output.find("Created Successfully. "), std::string::npos);
}

TEST_F(OverwriteRun, MakesTheDirectoryBeforeItAsks) {
    EXPECT_TRUE(Run("a", "$D:FILE(\"p/q/a\") = S$\n"));
    EXPECT_EQ(outside.memory.Get("/work/p/q/a"), "new");
    EXPECT_EQ(Questions(), 0);
}

TEST_F(OverwriteRun, CopiesWithoutAsking) {
    EXPECT_TRUE(Run("a", "$D:FILE(\"c\") = D:FILE(\"a\")$$D:FILE(\"b\") = S$\n"));
    EXPECT_EQ(Files(), "old new old");
    EXPECT_EQ(Questions(), 0);
}

// What is answered in a macro ends with its call.
TEST_F(OverwriteRun, KeepsTheAnswerOfACallToTheCall) {
    outside.memory.Put("/work/M.txt", SourceText("SCRIPT M(#D::KVL:DIRECTORY, #S::STREAM)",
                                                 "$D:FILE(\"a\") = S$$D:FILE(\"c\") = S$\n"));
    EXPECT_TRUE(
        Run("a\rnn", "$M() ::KVL:SCRIPT = D:FILE(\"M.txt\")$$M(D, S)$$D:FILE(\"a\") = S$$D:FILE(\"c\") = S$\n"));
    EXPECT_EQ(outside.console.input, "");
    EXPECT_EQ(Questions(), 3);
}

struct EndRow {
    const char* keys;
    const char* files;
};

// At an [Esc], or where nobody is there to answer, the process ends; what was written stays, nothing else is touched.
TEST_F(OverwriteRun, EndsAtEscape) {
    constexpr EndRow kRows[] = {
        {"\x1B", "old (none) old"}, {"", "old (none) old"},    {"a\x1B", "old (none) old"},
        {"a", "old (none) old"},    {"ay\x1B", "new new old"}, {"an\x1B", "old new old"},
    };
    for (const EndRow& row : kRows) {
        outside.memory.Put("/work/a", "old");
        outside.memory.Remove("/work/b");
        outside.memory.Put("/work/c", "old");
        int exitValue = 0;
        try {
            Run(row.keys);
        } catch (const ProcessEnded& end) {
            exitValue = end.exitValue;
        }
        EXPECT_EQ(exitValue, 1) << row.keys;
        EXPECT_EQ(Files(), row.files) << row.keys;
    }
}

}  // namespace
}  // namespace kvl
