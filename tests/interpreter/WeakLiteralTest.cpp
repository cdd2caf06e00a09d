#include "LoadingTest.h"
#include "support/CaseFile.h"
#include "support/WrittenBytes.h"
#include "text/Replace.h"

namespace kvl {
namespace {

std::string Dump(const std::vector<ActualArgument>& arguments);

// "text", "(name)" and "name<arguments>" for the pieces of a literal.
std::string Dump(const std::vector<WeakLiteral>& literals) {
    std::string dump;
    for (const WeakLiteral& literal : literals) {
        dump.append(literal.name) += "=";
        for (const LiteralPiece& piece : literal.pieces) {
            if (piece.kind == cmd_kind_stream) {
                dump.append("'").append(piece.text) += "'";
            } else if (piece.kind == cmd_kind_macro) {
                dump.append(piece.macroName) += "<" + Dump(piece.arguments) + ">";
            } else {
                dump.append("(").append(piece.name) += ")";
            }
        }
    }
    return dump;
}

std::string Dump(const std::vector<ActualArgument>& arguments) {
    std::string dump;
    for (const ActualArgument& argument : arguments) {
        if (!dump.empty()) dump += ",";
        dump += argument.typeId == kConstantString ? Dump(argument.weakLiterals) : std::string(argument.name);
    }
    return dump;
}

std::string Dump(const PatternCommand& command) {
    return Dump(command.weakLiterals) + Dump(command.sides->operand1Arguments) +
           Dump(command.sides->operand2Arguments) + Dump(command.call->arguments);
}

class WeakLiteralTest : public LoadingTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(WeakLiteralTest, "interpreter/WeakLiterals.cases");

// What is refused is reported once, at its command: the literals in front are good, the one behind is not looked at any
// more.
TEST_P(WeakLiteralTest, HasPiecesOrIsRefused) {
    const std::string command = BytesOf(GetParam().Line("command"));
    if (!GetParam()["pieces"].empty()) {
        const auto schema = Compile(command);
        ASSERT_TRUE(schema) << outside.console.output;
        ExpectSection(GetParam(), "pieces", Dump(schema->Commands().front()));
        return;
    }
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

TEST_F(LoadingTest, FragmentIsCompiledWithItsLiterals) {
    const auto schema = Compile("$A$");
    ASSERT_TRUE(schema);
    const auto fragment = CompileFragment(*schema, "$M(\"x$B$\", 1)$");
    ASSERT_TRUE(fragment);
    EXPECT_EQ(Dump(fragment->commands.front()), "ACTUALARGUMENT='x'(B),1");
    EXPECT_EQ(Process().errorCount, 0);
}

TEST_F(LoadingTest, FaultOfAFragmentIsReportedOnceAtTheCommand) {
    const auto schema = Compile("$A$", kEntityMacroPattern);
    ASSERT_TRUE(schema);
    schema->currentLine = 7;
    EXPECT_FALSE(CompileFragment(*schema, "$M(,)$"));
    EXPECT_TRUE(FirstMessage().starts_with("ERR_DECL_PATTERN_SYNTAX_1")) << FirstMessage();
    EXPECT_TRUE(FirstMessage().ends_with("At line 7 near position 0 of Pattern /home/main.kvl")) << FirstMessage();
    outside.console.output.clear();
    EXPECT_FALSE(CompileFragment(*schema, "$M(\"$x\")$"));
    EXPECT_TRUE(FirstMessage().starts_with("ERR_DECL_PATTERN_LIT_2")) << FirstMessage();
    EXPECT_TRUE(FirstMessage().ends_with("At line 7 of Pattern /home/main.kvl")) << FirstMessage();
    EXPECT_EQ(Process().errorCount, 2);
}

}  // namespace
}  // namespace kvl
