// The built-in macros: streams, lists, directories, facts about the run, and their entry.
#include "StaticMacroRun.h"
#include "interpreter/ScriptCases.h"

namespace kvl {
namespace {

class StaticMacroCases : public testing::TestWithParam<TextCase> {};

TEST_P(StaticMacroCases, Run) {
    StaticMacroRun run;
    run.outside.surroundings.now = 1709967909;  // 2024-03-09 07:05:09 UTC
    run.outside.console.input = "ab\tc\x80\nrest";
    RunScriptCase(run, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Cases, StaticMacroCases, testing::ValuesIn(ReadScriptCases("builtins/StaticMacros.cases")),
                         CaseName);
INSTANTIATE_TEST_SUITE_P(Lists, StaticMacroCases, testing::ValuesIn(ReadScriptCases("builtins/ListMacros.cases")),
                         CaseName);

TEST(StreamMacroLimits, ATextThatWouldGrowTooLargeIsRefused) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute("$T ::STREAM$$B ::STREAM$"));
    CVariable& text = *run.root->variableTable.Find("T");
    CVariable& byWhat = *run.root->variableTable.Find("B");
    text.SetText(std::string(std::size_t{1} << 16, 'a'));
    byWhat.SetText(std::string(std::size_t{1} << 15, 'b'));
    RunContext context;
    MacroValue value{{}, {}, {}, {}, context};
    const auto add = [&](CVariable* variable, int typeId, const char* name) {
        BoundArgument& argument = value.arguments.emplace_back();
        argument.variable = variable;
        argument.typeId = typeId;
        argument.name = name;
    };
    add(&text, kTypeStream, "T");
    add(nullptr, kConstantString, "b");
    add(&byWhat, kTypeStream, "B");
    EXPECT_TRUE(RunStaticMacro(*run.root, cmd_stream_replace, value));  // nothing to replace
    EXPECT_EQ(value.result, text.GetText());

    value.arguments[1].name = "a";  // 2^31 bytes
    EXPECT_FALSE(RunStaticMacro(*run.root, cmd_stream_replace, value));
    EXPECT_NE(run.outside.console.output.find("Text is larger than 2147483647 bytes. "), std::string::npos);
    EXPECT_EQ(value.result, "");
}

TEST(Generation, QuestionIsColouredAndTheLineEnded) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute("$T ::STREAM = KVL:GENERATION:USER_INPUT(\"Name? \")$"));
    EXPECT_EQ(run.outside.console.TextIn(14), "\nName? ");
    EXPECT_TRUE(run.outside.console.output.ends_with("\nName? \n"));
}

TEST(Generation, UniqueTextsDiffer) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute("$T ::STREAM = KVL:GENERATION:GUID()$$T$$T = KVL:GENERATION:GUID()$$T$"));
    ASSERT_EQ(run.output.size(), 72U);
    EXPECT_NE(run.output.substr(0, 36), run.output.substr(36));
}

TEST(Generation, ATimeThatCannotBeToldEndsTheProcess) {
    StaticMacroRun run;
    run.outside.surroundings.hasLocalTime = false;
    EXPECT_THROW(run.Execute("$T ::STREAM = KVL:GENERATION:DATE()$"), ProcessEnded);
    EXPECT_TRUE(run.outside.console.output.ends_with("Invalid argument to _localtime64_s."));
}

TEST(StaticMacros, LineMarksAndOtherIdentifiers) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute(""));
    RunContext context;
    MacroValue value{"before", {}, {}, {}, context};
    EXPECT_TRUE(RunStaticMacro(*run.root, cmd_newline, value));
    EXPECT_EQ(value.result, "\n");
    EXPECT_TRUE(RunStaticMacro(*run.root, cmd_continueline, value));
    EXPECT_EQ(value.result, "");
    EXPECT_FALSE(RunStaticMacro(*run.root, cmd_generate_to_stream, value));
    EXPECT_FALSE(RunStaticMacro(*run.root, cmd_identifier_value, value));
}

TEST(DirectoryMacros, MakeTheWholeChain) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute("$D ::KVL:DIRECTORY$$D:SET_PATH(\"out\")$$D:MKDIR(\"a\\\\b\")$"))
        << run.outside.console.output;
    EXPECT_TRUE(run.outside.memory.IsDirectory("/home/out/a/b"));
}

// Where there is no working directory a new variable has no path; an empty one would lead to the root.
TEST(DirectoryMacros, HaveNoPathWithoutAWorkingDirectory) {
    StaticMacroRun run;
    run.outside.memory.workingDirectory = "";
    ASSERT_TRUE(run.Execute("$D ::KVL:DIRECTORY$$D$$T ::STREAM = D:FILE(\"x\")$$T$")) << run.outside.console.output;
    EXPECT_EQ(run.output, "");
}

}  // namespace
}  // namespace kvl
