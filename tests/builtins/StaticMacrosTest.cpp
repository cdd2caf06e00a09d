// The entry of the built-in macros, the stream macros' arguments, and the facts about the run.
#include "StaticMacroRun.h"
#include "messages/BuildStamp.h"

namespace kvl {
namespace {

// Line 3 of each script.
constexpr const char* kValues = "$T ::STREAM = \"x[1]y\"$$I ::INTEGER = 3$$W ::STRING = \"3\"$$R ::STREAM$\n";

class StreamMacros : public testing::TestWithParam<ScriptRow> {};

TEST_P(StreamMacros, Run) {
    const ScriptRow& row = GetParam();
    StaticMacroRun run;
    run.AddPattern("UPPER", "#X::STREAM", "$KVL:STREAM:UPPERCASE_STREAM(X)$");
    const std::string body = std::string(kValues) + row.body;
    ExpectRow(run, {row.name, body.c_str(), row.output, row.faults});
}

constexpr ScriptRow kResultRows[] = {
    {"Merge", "$R = KVL:STREAM:MERGE_STREAM(T, \"x[2]y\", \"[\", \"]\")$$R$", "x[2]y"},
    {"Replace", "$R = KVL:STREAM:REPLACE_STREAM(T, \"1\", \"22\")$$R$", "x[22]y"},
    {"ReplaceByTheSame", "$R = KVL:STREAM:REPLACE_STREAM(T, \"1\", \"1\")$$R$", "x[1]y"},
    {"ReplaceNothing", "$R = KVL:STREAM:REPLACE_STREAM(T, \"\", \"1\")$$R$", "x[1]y"},
    {"Replace2", "$R = KVL:STREAM:REPLACE2_STREAM(T, \"[\", \"]\", \"-\")$$R$", "x-y"},
    {"Delete", "$R = KVL:STREAM:DELETE_STREAM(T, \"[1]\")$$R$", "xy"},
    {"Clear", "$T = \" a  b \"$$R = KVL:STREAM:CLEAR_STREAM(T)$$R$", "a b"},
    {"UpperCase", "$R = KVL:STREAM:UPPERCASE_STREAM(T)$$R$", "X[1]Y"},
    {"LowerCase", "$T = \"A\"$$R = KVL:STREAM:LOWERCASE_STREAM(T)$$R$", "a"},
    {"LeftByAVariable", "$R = KVL:STREAM:LEFT_STREAM(T, I)$$R$", "x[1"},
    {"RightByALiteral", "$R = KVL:STREAM:RIGHT_STREAM(T, 2)$$R$", "]y"},
    {"Length", "$R = KVL:STREAM:LENGTH_STREAM(T)$$R$", "5"},
    {"LengthOfNothing", "$R = KVL:STREAM:LENGTH_STREAM(R)$$R$", "0"},
    {"TheArgumentStays", "$R = KVL:STREAM:UPPERCASE_STREAM(T)$$T$", "x[1]y"},
    {"InAPatternTheResultIsText", "$UPPER(T)$", "X[1]Y"},
};
INSTANTIATE_TEST_SUITE_P(Results, StreamMacros, testing::ValuesIn(kResultRows), RowName);

constexpr ScriptRow kFaultRows[] = {
    {"NoArguments", "$R = KVL:STREAM:CLEAR_STREAM()$", "", "ERR_DECL_SCRIPT_MACRO_2 4"},
    {"TooFew", "$R = KVL:STREAM:LEFT_STREAM(T)$", "", "ERR_DECL_SCRIPT_MACRO_2 4"},
    {"TooMany", "$R = KVL:STREAM:CLEAR_STREAM(T, T)$", "", "ERR_DECL_SCRIPT_MACRO_2 4"},
    {"LiteralInFront", "$R = KVL:STREAM:CLEAR_STREAM(\"a\")$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"StringInFront", "$R = KVL:STREAM:CLEAR_STREAM(W)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"StringAsWidth", "$R = KVL:STREAM:LEFT_STREAM(T, W)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"TextAsWidth", "$R = KVL:STREAM:RIGHT_STREAM(T, \"3\")$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"NumberAsText", "$R = KVL:STREAM:DELETE_STREAM(T, 1)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"StringAsText", "$R = KVL:STREAM:REPLACE_STREAM(T, \"x\", W)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"TypeIsJudgedBeforeTheCount", "$R = KVL:STREAM:LEFT_STREAM(W)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
};
INSTANTIATE_TEST_SUITE_P(Faults, StreamMacros, testing::ValuesIn(kFaultRows), RowName);

TEST(StreamMacroMessages, NameTheArgumentAndTheParameter) {
    StaticMacroRun run;
    ASSERT_FALSE(run.Execute("$T ::STREAM$$W ::STRING$$T = KVL:STREAM:LEFT_STREAM(T, W)$"));
    EXPECT_NE(run.outside.console.output.find("Type ::STRING of parameter W within macro call differs from type "
                                              "::INTEGER of parameter N within macro declaration"),
              std::string::npos)
        << run.outside.console.output;
}

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

class GenerationFacts : public testing::TestWithParam<ScriptRow> {};

TEST_P(GenerationFacts, AreTold) {
    StaticMacroRun run;
    run.outside.surroundings.now = 1709967909;  // 2024-03-09 07:05:09 UTC
    run.outside.console.input = "ab\tc\x80\nrest";
    ExpectRow(run, GetParam());
}

constexpr ScriptRow kFactRows[] = {
    {"Version", "$T ::STREAM = KVL:GENERATION:VERSION_NUMBER()$$T$", "14.0.0"},
    {"Date", "$T ::STREAM = KVL:GENERATION:DATE()$$T$", "2024.03.09"},
    {"Time", "$T ::STREAM = KVL:GENERATION:TIME()$$T$", "07:05:09"},
    {"UserInputByLiteral", "$T ::STREAM = KVL:GENERATION:USER_INPUT(\"Name? \")$$T$", "abc"},
    {"UserInputByVariable", "$Q ::STREAM = \"Name? \"$$Q = KVL:GENERATION:USER_INPUT(Q)$$Q$", "abc"},
    {"UserInputUpToTheEnd",
     "$T ::STREAM = KVL:GENERATION:USER_INPUT(\"1\")$$T = KVL:GENERATION:USER_INPUT(\"2\")$$T$"
     "$T = KVL:GENERATION:USER_INPUT(\"3\")$$T$",
     "rest"},
    {"UserInputWithoutQuestion", "$T ::STREAM = KVL:GENERATION:USER_INPUT()$", "", "ERR_DECL_SCRIPT_MACRO_2 3"},
    {"UserInputByNumber", "$T ::STREAM = KVL:GENERATION:USER_INPUT(1)$", "", "ERR_DECL_SCRIPT_MACRO_3 3"},
};
INSTANTIATE_TEST_SUITE_P(Rows, GenerationFacts, testing::ValuesIn(kFactRows), RowName);

TEST(Generation, QuestionIsColouredAndTheLineEnded) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute("$T ::STREAM = KVL:GENERATION:USER_INPUT(\"Name? \")$"));
    EXPECT_EQ(run.outside.console.TextIn(14), "\nName? ");
    EXPECT_TRUE(run.outside.console.output.ends_with("\nName? \n"));
}

TEST(Generation, BuildNumberIsTheOneOfTheStamp) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute("$T ::STREAM = KVL:GENERATION:BUILD_NUMBER()$$T$"));
    EXPECT_EQ(run.output, "Build" + ReadBuildStamp(BuildStamp()).number);
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

TEST(StaticMacros, DumpShowsStreams) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute("$S ::STREAM = \"a\"$$I ::INTEGER$$DUMP(S, I)$"));
    EXPECT_TRUE(run.outside.console.output.ends_with("S::STREAM\na\n")) << run.outside.console.output;
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

}  // namespace
}  // namespace kvl
