#include "LoadingTest.h"
#include "text/Replace.h"

namespace kvl {
namespace {

std::string Dump(const std::vector<ActualArgument>& arguments);

// "text", "(name)" and "name<arguments>" for the pieces of a literal.
std::string Dump(const std::vector<WeakLiteral>& literals) {
    std::string dump;
    for (const WeakLiteral& literal : literals) {
        dump += literal.name + "=";
        for (const LiteralPiece& piece : literal.pieces) {
            if (piece.kind == cmd_kind_stream) {
                dump += "'" + piece.text + "'";
            } else if (piece.kind == cmd_kind_macro) {
                dump += piece.macroName + "<" + Dump(piece.arguments) + ">";
            } else {
                dump += "(" + piece.name + ")";
            }
        }
    }
    return dump;
}

std::string Dump(const std::vector<ActualArgument>& arguments) {
    std::string dump;
    for (const ActualArgument& argument : arguments) {
        if (!dump.empty()) dump += ",";
        dump += argument.typeId == kConstantString ? Dump(argument.weakLiterals) : argument.name;
    }
    return dump;
}

std::string Dump(const PatternCommand& command) {
    return Dump(command.weakLiterals) + Dump(command.operand1Arguments) + Dump(command.operand2Arguments) +
           Dump(command.arguments);
}

struct PiecesRow {
    const char* name;
    std::string_view command;
    std::string_view pieces;
};
class WeakLiteralTest : public LoadingTest, public testing::WithParamInterface<PiecesRow> {};

constexpr PiecesRow kPiecesRows[] = {
    {"Text", "$A = \"x y\"$", "OPERAND2='x y'"},
    {"Empty", "$A = \"\"$", "OPERAND2="},
    {"Dollar", "$A = \"1 $$\"$", "OPERAND2='1 $'"},
    {"Placeholders", "$A = \"x$B:C$y$:D$\"$", "OPERAND2='x'(B:C)'y'(:D)"},
    {"LineMarks", "$A = \"$\\n$$/$\"$", "OPERAND2=(\\n)(/)"},
    {"Call", "$A = \"<$M(B, 1)$>\"$", "OPERAND2='<'M<B,1>'>'"},
    {"CallWithLiteral", "$A = \"$M(\"\"x$B$\"\")$\"$", "OPERAND2=M<ACTUALARGUMENT='x'(B)>"},
    {"CallInCall", "$A = \"$M(\"\"$N(\"\"\"\"$B$\"\"\"\")$\"\")$\"$",
     "OPERAND2=M<ACTUALARGUMENT=N<ACTUALARGUMENT=(B)>>"},
    {"Arguments", "$M(\"a$B$\", C, \"d\")$", "ACTUALARGUMENT='a'(B),C,ACTUALARGUMENT='d'"},
    {"BothOperands", "$M(\"$A$\") = N(\"$B$\")$", "ACTUALARGUMENT=(A)ACTUALARGUMENT=(B)"},
    {"QuotedCommand", "$\"M($A$)\"$", "LITERALMACRO='M('(A)')'"},
    {"Condition", "$BEGIN IF A == \"$B$\"$", "OPERAND2=(B)"},
};
INSTANTIATE_TEST_SUITE_P(Rows, WeakLiteralTest, testing::ValuesIn(kPiecesRows), NameOfRow<PiecesRow>);

TEST_P(WeakLiteralTest, HasPieces) {
    const auto schema = Compile(GetParam().command);
    ASSERT_TRUE(schema) << outside.console.output;
    EXPECT_EQ(Dump(schema->Commands().front()), GetParam().pieces);
}

struct RefusedRow {
    const char* name;
    std::string_view command;
};
class RefusedLiteralTest : public LoadingTest, public testing::WithParamInterface<RefusedRow> {};

constexpr RefusedRow kRefusedRows[] = {
    {"OpenDollar", "$A = \"x$B\"$"},    {"Assignment", "$A = \"$B = 1$\"$"},
    {"Comment", "$A = \"$/* x */$\"$"}, {"SyntaxError", "$A = \"$+$\"$"},
    {"InAnArgument", "$M(A, \"$B\")$"}, {"InACallInsideALiteral", "$A = \"$M(\"\"$B = 1$\"\")$\"$"},
    {"QuotedCommand", "$\"$B\"$"},      {"WithoutAnyItem", "$A = \"\x80\"$"},
};
INSTANTIATE_TEST_SUITE_P(Rows, RefusedLiteralTest, testing::ValuesIn(kRefusedRows), NameOfRow<RefusedRow>);

// The literals in front are good, the one behind is not looked at any more.
TEST_P(RefusedLiteralTest, IsReportedOnceAtItsCommand) {
    const std::string command(GetParam().command);
    for (const bool isPattern : {false, true}) {
        ResetProcessState();
        outside.console.output.clear();
        EXPECT_FALSE(Compile("$A = \"x\"$\n" + command + "\n$\"$x\"$", isPattern ? kEntityMacroPattern : 0));
        EXPECT_EQ(Process().errorCount, 1);
        const std::string kind = isPattern ? "PATTERN" : "SCRIPT";
        EXPECT_TRUE(FirstMessage().starts_with("ERR_DECL_" + kind + "_LIT_2\n")) << FirstMessage();
        EXPECT_NE(FirstMessage().find("\n" + command + "\n^\nAt line 2 of "), std::string::npos) << FirstMessage();
    }
}

TEST_F(LoadingTest, LiteralOfTheHeaderIsCompiledToo) {
    EXPECT_FALSE(Compile("$BEGIN KVL VERSION=\"$1\"$"));
    EXPECT_TRUE(FirstMessage().starts_with("ERR_DECL_SCRIPT_LIT_2\n")) << FirstMessage();
}

TEST_F(LoadingTest, FragmentIsCompiledWithItsLiterals) {
    const auto schema = Compile("$A$");
    ASSERT_TRUE(schema);
    const auto fragment = CompileFragment(*schema, "$M(\"x$B$\", 1)$");
    ASSERT_TRUE(fragment);
    EXPECT_EQ(Dump(fragment->commands.front()), "ACTUALARGUMENT='x'(B),1");
    EXPECT_EQ(Process().errorCount, 0);
}

struct FragmentRow {
    const char* name;
    std::string_view text;
    std::string_view message;
    std::string_view place;
};
class FragmentFaultTest : public LoadingTest, public testing::WithParamInterface<FragmentRow> {};

constexpr FragmentRow kFragmentRows[] = {
    {"Syntax", "$M(,)$", "ERR_DECL_PATTERN_SYNTAX_1", "At line 7 near position 0 of Pattern /work/main.kvl"},
    {"Literal", "$M(\"$x\")$", "ERR_DECL_PATTERN_LIT_2", "At line 7 of Pattern /work/main.kvl"},
};
INSTANTIATE_TEST_SUITE_P(Rows, FragmentFaultTest, testing::ValuesIn(kFragmentRows), NameOfRow<FragmentRow>);

TEST_P(FragmentFaultTest, IsReportedOnce) {
    const auto schema = Compile("$A$", kEntityMacroPattern);
    ASSERT_TRUE(schema);
    schema->currentLine = 7;
    EXPECT_FALSE(CompileFragment(*schema, GetParam().text));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_TRUE(FirstMessage().starts_with(GetParam().message)) << FirstMessage();
    EXPECT_TRUE(FirstMessage().ends_with(GetParam().place)) << FirstMessage();
}

}  // namespace
}  // namespace kvl
