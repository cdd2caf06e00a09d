#include "LoadingTest.h"
#include "text/Replace.h"

namespace kvl {
namespace {

// In the sources below "{" stands for the header and the head of the macro in line 1, "}" for their ends.
std::string Expand(std::string_view source, bool isPattern) {
    const std::string macro = isPattern ? "PATTERN M()" : "SCRIPT M()";
    const std::string begin = "$BEGIN KVL VERSION=\"1.0.0\"$$BEGIN " + macro + "$";
    const std::string end = "$END " + macro + "$$END KVL VERSION=\"1.0.0\"$";
    return ReplaceAll(ReplaceAll(source, "{", begin), "}", end);
}

struct FaultRow {
    const char* name;
    std::string_view source;
    std::string_view scriptMessage, patternMessage;  // identifier behind ERR_DECL_ and line; empty: accepted
};
class BlockFaultTest : public LoadingTest, public testing::WithParamInterface<FaultRow> {
protected:
    // "SCRIPT_LIST_7 2" for the first message.
    std::string Check(std::string_view source, int entityKind) {
        const auto schema = Compile(Expand(source, entityKind == kEntityMacroPattern), entityKind);
        if (!schema) return "not compiled: " + outside.console.output;
        const bool accepted = CheckBlocks(*schema);
        EXPECT_EQ(accepted, Process().errorCount == 0);
        const std::string message = FirstMessage();
        if (message.empty()) return "";
        const std::size_t line = message.find("\nAt line ") + 9;
        return message.substr(9, message.find('\n') - 9) + " " + message.substr(line, message.find(' ', line) - line);
    }
};

constexpr FaultRow kFaultRows[] = {
    {"Accepted", "{$A$}", "", ""},
    {"NestedBlocks", "{$BEGIN ALL A$$BEGIN IF B$$END IF B$$BEGIN IF B == 1$$END IF B == 1$$END ALL A$}", "", ""},
    {"NegationIsNoPartOfTheText", "{$BEGIN IF !A$$END IF A$$BEGIN IF A != 1$$END IF A == 1$}", "", ""},
    {"BlocksInASeparatorAreNotPaired", "{$BEGIN SEPARATOR$$BEGIN IF A$$END ALL B$$END SEPARATOR$}", "", ""},
    {"CommentsBehindTheFooter", "{}\ntext $$\n$BEGIN COMMENT$ $X$ $END COMMENT$\n$/* $X$ */$\n", "", ""},

    {"NoBlockAtAll", "text\n$A$$END IF A$", "SCRIPT_HEADER_1 1", "PATTERN_HEADER_1 1"},
    {"NoHeader", "\n$BEGIN IF A$$END IF A$", "SCRIPT_HEADER_1 1", "PATTERN_HEADER_1 1"},
    {"NoMacro", "\n$BEGIN KVL VERSION=\"1.0.0\"$\n$END KVL VERSION=\"1.0.0\"$", "SCRIPT_HEADER_6 2",
     "PATTERN_HEADER_6 2"},
    {"SecondHeader", "{}\n$BEGIN KVL VERSION=\"1.0.0\"$", "SCRIPT_HEADER_3 2", "PATTERN_HEADER_3 2"},
    {"NestedHeader", "{\n$BEGIN KVL VERSION=\"1.0.0\"$}", "SCRIPT_HEADER_3 2", "PATTERN_HEADER_3 2"},
    {"SecondFooter", "{}\n$END KVL VERSION=\"1.0.0\"$", "SCRIPT_HEADER_4 2", "PATTERN_HEADER_4 2"},
    {"OtherVersion",
     "$BEGIN KVL VERSION=\"1.0.1\"$\n$BEGIN SCRIPT M()$$END SCRIPT M()$\n"
     "$BEGIN PATTERN M()$$END PATTERN M()$$END KVL VERSION=\"1.0.1\"$",
     "SCRIPT_HEADER_12 3", "PATTERN_HEADER_12 3"},
    {"FooterOfAnotherVersion", "$BEGIN KVL VERSION=\"1.0.0\"$\n$END KVL VERSION=\"1.0.1\"$", "SCRIPT_HEADER_2 1",
     "PATTERN_HEADER_2 1"},
    {"CommandBehindTheFooter", "{}\n$X$\n$Y$\ntext", "SCRIPT_HEADER_5 3", "PATTERN_HEADER_5 3"},
    {"BlockBehindTheFooter", "{}\n$BEGIN IF A == 1$\n$END IF A == 1$", "SCRIPT_HEADER_5 3", "PATTERN_HEADER_5 3"},

    {"LoopEndWithoutBegin", "$A ::STRING$\n$END ALL A$\n{}", "SCRIPT_LIST_7 2", "PATTERN_LIST_7 2"},
    {"LoopEndInAnotherBlock", "{\n$END ALL A$}", "SCRIPT_LIST_7 2", "PATTERN_LIST_7 2"},
    {"LoopWithoutEnd", "{}\n$BEGIN ALL A$\n\n", "SCRIPT_LIST_8 2", "PATTERN_LIST_8 2"},
    {"LoopWithAnotherEnd", "{$BEGIN ALL A$\n$END ALL B$}", "SCRIPT_LIST_9 2", "PATTERN_LIST_9 2"},
    {"LoopWithAnotherSeparator", "{$BEGIN ALL A, B$\n$END ALL A EXTEND B$}", "SCRIPT_LIST_9 2", "PATTERN_LIST_9 2"},
    {"LoopClosedByAnother", "{$BEGIN IF A$\n$BEGIN ALL A$\n$END IF A$}", "SCRIPT_LIST_10 3", "PATTERN_LIST_10 3"},
    {"LoopClosedByTheMacro", "{\n$BEGIN ALL A$\n}", "SCRIPT_LIST_10 3", "PATTERN_LIST_10 3"},

    {"ConditionEndWithoutBegin", "{\n$END IF A$}", "SCRIPT_COND_7 2", "PATTERN_COND_7 2"},
    {"ConditionWithoutEnd", "{}\n$BEGIN IF A$\n\n", "SCRIPT_COND_8 2", "PATTERN_COND_8 2"},
    {"ConditionWithAnotherEnd", "{$BEGIN IF A$\n$END IF A == 1$}", "SCRIPT_COND_9 2", "PATTERN_COND_9 2"},
    {"ConditionWithAnotherOperator", "{$BEGIN IF A < 1$\n$END IF A <= 1$}", "SCRIPT_COND_9 2", "PATTERN_COND_9 2"},
    {"ConditionClosedByAnother", "{$BEGIN ALL A$\n$BEGIN IF A$\n$END ALL A$}", "SCRIPT_COND_10 3", "PATTERN_COND_10 3"},

    {"SeparatorEndWithoutBegin", "{\n$END SEPARATOR$}", "PATTERN_SEPAR_1 2", "PATTERN_SEPAR_1 2"},
    {"SeparatorWithoutEnd", "{\n$BEGIN SEPARATOR$\n}", "PATTERN_SEPAR_2 2", "PATTERN_SEPAR_2 2"},
    {"SeparatorClosedByAnother", "{$BEGIN ALL A$\n$BEGIN SEPARATOR$$BEGIN SEPARATOR$$END SEPARATOR$\n$END ALL A$}",
     "PATTERN_SEPAR_2 2", "PATTERN_SEPAR_2 2"},
    {"CommentEndWithoutBegin", "{\n$END COMMENT$}", "SCRIPT_COMM_2 2", "PATTERN_COMM_2 2"},
};
INSTANTIATE_TEST_SUITE_P(Rows, BlockFaultTest, testing::ValuesIn(kFaultRows), NameOfRow<FaultRow>);

TEST_P(BlockFaultTest, IsToldOfAScript) {
    EXPECT_EQ(Check(GetParam().source, kEntityMacroScript), GetParam().scriptMessage);
}
TEST_P(BlockFaultTest, IsToldOfAPattern) {
    EXPECT_EQ(Check(GetParam().source, kEntityMacroPattern), GetParam().patternMessage);
}

struct HeadRow {
    const char* name;
    int entityKind;
    std::string_view source;
    std::string_view message;  // the whole first message
};
class MacroHeadTest : public LoadingTest, public testing::WithParamInterface<HeadRow> {};

#define HEADER "$BEGIN KVL VERSION=\"1.0.0\"$\n"
#define FOOTER "$END KVL VERSION=\"1.0.0\"$"

// The lines shown belong to the rule: each message names the other block's line and both texts as they are read.
constexpr HeadRow kHeadRows[] = {
    {"MainScript", kEntityMainScript,
     HEADER "$BEGIN SCRIPT M(&X ::STRING, #Y ::T[])$\n$END SCRIPT M(&X::STRING,#Y::T[])$" FOOTER, ""},
    {"PatternAsMainScript", kEntityMainScript, HEADER "$BEGIN PATTERN M()$\n$END PATTERN M()$" FOOTER,
     "ERR_DECL_SCRIPT_HEADER_6\nMissing $BEGIN SCRIPT <SCRIPT_NAME>( ... )$\n\n$BEGIN KVL VERSION=\"1.0.0\"$\n^\n"
     "At line 1 of Script /work/main.kvl"},
    {"ScriptAsPattern", kEntityMacroPattern, HEADER "$BEGIN SCRIPT M()$\n$END SCRIPT M()$" FOOTER,
     "ERR_DECL_PATTERN_HEADER_6\nMissing $BEGIN PATTERN <PATTERN_NAME>(...)$\n\n$BEGIN KVL VERSION=\"1.0.0\"$\n^\n"
     "At line 1 of Pattern /work/main.kvl"},
    {"VersionOfAnotherLanguage", kEntityMacroScript,
     "$BEGIN KVL VERSION=\"1.0\"$$BEGIN SCRIPT M()$$END SCRIPT M()$$END KVL VERSION=\"1.0\"$",
     "ERR_DECL_SCRIPT_HEADER_9\nKVL VERSION is not compatible with this version of kvlRun.exe\n\n"
     "$BEGIN KVL VERSION=\"1.0\"$$BEGIN SCRIPT M()$$END SCRIPT M()$$END KVL VERSION=\"1.0\"$\n^\n"
     "At line 1 of Script /work/main.kvl"},
    {"TwoMacros", kEntityMacroScript,
     HEADER "$BEGIN SCRIPT M()$\n$END SCRIPT M()$\n$BEGIN SCRIPT N(#X ::T)$\n$END SCRIPT N(#X ::T)$" FOOTER,
     "ERR_DECL_SCRIPT_HEADER_12\n$BEGIN SCRIPT N( ... )$ is already declared at line 2\n\n$BEGIN SCRIPT N(#X ::T)$\n^\n"
     "At line 4 of Script /work/main.kvl"},
    {"OtherMacroEnd", kEntityMacroScript, HEADER "$BEGIN SCRIPT M(#X ::T)$\n$END SCRIPT M(#X ::U)$" FOOTER,
     "ERR_DECL_SCRIPT_HEADER_6\nMissing $BEGIN SCRIPT M( ... )$\n\n$END SCRIPT M(#X ::U)$$END KVL "
     "VERSION=\"1.0.0\"$\n^\n"
     "At line 3 of Script /work/main.kvl"},
    {"MacroClosedByTheFooter", kEntityMacroPattern, HEADER "$BEGIN PATTERN M(#X ::T, #Y ::U[])$\n" FOOTER,
     "ERR_DECL_PATTERN_HEADER_7\nMissing $END PATTERN M(#X::T, #Y::U[])$\n\n$BEGIN PATTERN M(#X ::T, #Y ::U[])$\n^\n"
     "At line 2 of Pattern /work/main.kvl"},
    {"PatternWithReference", kEntityMacroPattern, HEADER "$BEGIN PATTERN M(&X ::T)$$END PATTERN M(&X ::T)$" FOOTER,
     "ERR_DECL_PATTERN_PARAM_9\nAll parameter of a pattern must be const reference (#)\n\n"
     "$BEGIN PATTERN M(&X ::T)$$END PATTERN M(&X ::T)$$END KVL VERSION=\"1.0.0\"$\n^\nAt line 2 of Pattern "
     "/work/main.kvl"},
    {"ParameterWithoutMark", kEntityMacroScript, HEADER "$BEGIN SCRIPT M(X ::T)$$END SCRIPT M(X ::T)$" FOOTER,
     "ERR_DECL_SCRIPT_PARAM_9\nParameter must be reference (&) or const reference (#)\n\n"
     "$BEGIN SCRIPT M(X ::T)$$END SCRIPT M(X ::T)$$END KVL VERSION=\"1.0.0\"$\n^\nAt line 2 of Script /work/main.kvl"},
    {"ParameterTwice", kEntityMacroScript,
     HEADER "$BEGIN SCRIPT M(#X ::T, #Y ::T, &X ::U)$\n$END SCRIPT M(#X ::T, #Y ::T, &X ::U)$" FOOTER,
     "ERR_DECL_SCRIPT_PARAM_5\nParameter name X already in use\n\n$BEGIN SCRIPT M(#X ::T, #Y ::T, &X ::U)$\n^\n"
     "At line 2 of Script /work/main.kvl"},
    {"ScriptBehindTheFooter", kEntityMacroScript, HEADER FOOTER "\n$BEGIN SCRIPT M()$\n$END SCRIPT M()$",
     "ERR_DECL_SCRIPT_HEADER_10\n$BEGIN SCRIPT M( ... )$ must not be placed after $END KVL VERSION=\"...\"$ at line "
     "2\n\n"
     "$BEGIN SCRIPT M()$\n^\nAt line 3 of Script /work/main.kvl"},
    {"ScriptInFrontOfTheHeader", kEntityMacroScript, "$BEGIN SCRIPT M()$\n$END SCRIPT M()$" HEADER FOOTER,
     "ERR_DECL_SCRIPT_HEADER_10\n$BEGIN SCRIPT M( ... )$ must not be placed after $END KVL VERSION=\"...\"$ at line "
     "3\n\n"
     "$BEGIN SCRIPT M()$\n^\nAt line 1 of Script /work/main.kvl"},
    {"PatternBehindTheFooter", kEntityMacroPattern, HEADER FOOTER "\n$BEGIN PATTERN M()$\n$END PATTERN M()$",
     "ERR_DECL_PATTERN_HEADER_10\n$BEGIN PATTERN M( ... )$ must not be placed after $END KVL VERSION=\"...\"$ at line "
     "2\n\n"
     "$BEGIN PATTERN M()$\n^\nAt line 3 of Pattern /work/main.kvl"},
    {"LoopTexts", kEntityMacroScript, HEADER "$BEGIN ALL A, B$\n$END ALL :A CHANGE B$" FOOTER,
     "ERR_DECL_SCRIPT_LIST_9\n$BEGIN ALL A , B$ at line 2 and $END ALL :A CHANGE B$ are different.\n\n"
     "$END ALL :A CHANGE B$$END KVL VERSION=\"1.0.0\"$\n^\nAt line 3 of Script /work/main.kvl"},
    {"ConditionTexts", kEntityMacroScript, HEADER "$BEGIN IF A == 1$\n$END IF !M(1)$" FOOTER,
     "ERR_DECL_SCRIPT_COND_9\n$BEGIN IF A == 1$ at line 2 and $END IF !M(1)$ are different\n\n"
     "$END IF !M(1)$$END KVL VERSION=\"1.0.0\"$\n^\nAt line 3 of Script /work/main.kvl"},
};
INSTANTIATE_TEST_SUITE_P(Rows, MacroHeadTest, testing::ValuesIn(kHeadRows), NameOfRow<HeadRow>);

TEST_P(MacroHeadTest, IsJudged) {
    const auto schema = Compile(GetParam().source, GetParam().entityKind);
    ASSERT_TRUE(schema) << outside.console.output;
    EXPECT_EQ(CheckBlocks(*schema), GetParam().message.empty());
    EXPECT_EQ(FirstMessage(), GetParam().message);
}

TEST_F(LoadingTest, PatternAroundTheHeaderFailsWithoutAMessage) {
    const auto schema = Compile("$BEGIN PATTERN M()$\n" HEADER FOOTER "\n$END PATTERN M()$", kEntityMacroPattern);
    ASSERT_TRUE(schema);
    EXPECT_FALSE(CheckBlocks(*schema));
    EXPECT_EQ(Process().errorCount, 0);
}

TEST_F(LoadingTest, BlocksArePairedByTheirIndices) {
    const auto schema = Compile(
        HEADER "$BEGIN SCRIPT M(#X ::T)$$BEGIN ALL A$$BEGIN ALL B$$END ALL B$$END ALL A$$END SCRIPT M(#X::T)$" FOOTER);
    ASSERT_TRUE(schema && CheckBlocks(*schema)) << outside.console.output;
    const CompiledScript& script = *schema->script;
    EXPECT_EQ(script.blockEnd, (std::vector<int>{8, -1, 7, 6, 5, -1, -1, -1, -1}));
    ASSERT_EQ(script.blocks.size(), 4u);
    EXPECT_EQ(script.blocks[0].begin, 4);
    EXPECT_EQ(script.blocks[3].end, 8);
    EXPECT_EQ(script.bodyBegin, 2);
    EXPECT_EQ(script.bodyEnd, 7);
    EXPECT_EQ(script.macroName, "M");
    EXPECT_EQ(script.macroDeclarationText, "M(#X::T)");
}

// A hundred thousand blocks, side by side and one in the other, are a matter of one pass.
TEST_F(LoadingTest, PairingIsLinear) {
    std::string source = HEADER "$BEGIN SCRIPT M()$";
    for (int i = 0; i < 50000; ++i)
        source += "$BEGIN IF A$\n$BEGIN SEPARATOR$$END SEPARATOR$";
    for (int i = 0; i < 50000; ++i)
        source += "$END IF A$";
    const auto schema = Compile(source + "$END SCRIPT M()$" FOOTER);
    ASSERT_TRUE(schema && CheckBlocks(*schema)) << outside.console.output;
    EXPECT_EQ(schema->script->blocks.size(), 100002u);
}

}  // namespace
}  // namespace kvl
