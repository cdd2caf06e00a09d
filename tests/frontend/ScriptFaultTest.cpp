// What the script front end refuses: the message, and the place it points to. Without a mark that is the last byte
// fetched, which may lie behind the token at fault where a longer one could have followed.

#include <gtest/gtest.h>

#include <string>

#include "frontend/ScriptSource.h"

namespace kvl {
namespace {

struct FaultRow {
    const char* name;
    std::string_view source;
    std::string_view message;  // with "SCRIPT" in its name, also where a pattern has its own
    int line, position;
};
void PrintTo(const FaultRow& row, std::ostream* stream) {
    *stream << row.source;
}

class ScriptFaultTest : public ScriptTest, public testing::WithParamInterface<FaultRow> {
protected:
    void ExpectFault(int entityKind, const std::string& message, std::string_view entity) {
        const FaultRow& row = GetParam();
        EXPECT_FALSE(CompileFile(row.source, entityKind));
        EXPECT_EQ(Process().errorCount, 1);
        EXPECT_TRUE(Shown().starts_with("\n\nERROR: " + message + "\n")) << Shown();
        const std::string place = "^\nAt line " + std::to_string(row.line) + " near position " +
                                  std::to_string(row.position) + " of " + std::string(entity) + " ";
        EXPECT_NE(Shown().find(place), std::string::npos) << Shown();
    }
};

constexpr std::string_view kSyntax = "ERR_DECL_SCRIPT_SYNTAX_1";
constexpr std::string_view kScannerSyntax = "ERR_DECL_PATTERN_SYNTAX_1";

constexpr FaultRow kFaultRows[] = {
    {"Operator", "$A + B$", kSyntax, 1, 5},
    {"SignedFloat", "$X = -1.5$", kSyntax, 1, 10},
    {"ReservedWord", "$SET$", kSyntax, 1, 5},
    {"MissingArgument", "$M(,)$", kSyntax, 1, 5},
    {"NestedCall", "$M(N(1))$", kSyntax, 1, 5},
    {"NotInFrontOfComparison", "$BEGIN IF !A == 1$", kSyntax, 1, 15},
    {"ThreeLists", "$BEGIN ALL A, B, C$", kSyntax, 1, 16},
    {"ShortNameEndsInGap", "$:NAME:~$", kSyntax, 1, 9},
    {"ShortNameEndsInGapAsArgument", "$M(:~)$", kSyntax, 1, 6},
    {"TypeWithoutColons", "$X ::KVL:TYPE$", kSyntax, 1, 14},
    {"ColonsWithoutType", "$::X ::STRING$", kSyntax, 1, 14},
    {"ColonsWithoutTypeWithValue", "$::X ::STRING = 1$", kSyntax, 1, 18},
    {"ScriptWithoutCall", "$R ::KVL:SCRIPT$", kSyntax, 1, 16},
    {"PatternWithArguments", "$R(1) ::KVL:PATTERN = (::STRING) X$", kSyntax, 1, 35},
    {"ConstantCall", "$#M() ::STRING = 1$", kSyntax, 1, 19},
    {"ConstantWithoutValue", "$#X ::STRING$", kSyntax, 1, 13},
    {"ConstantAdded", "$#X ::STRING += 1$", kSyntax, 1, 15},
    {"ScriptNameWithColon", "$BEGIN SCRIPT A:B()$", kSyntax, 1, 18},
    {"VoidWithoutType", "$BEGIN SCRIPT A(void)$", kSyntax, 1, 21},
    {"Void", "$BEGIN SCRIPT A(void ::STRING)$", "ERR_DECL_SCRIPT_PARAM_3", 1, 30},
    {"VoidInFrontOfSyntaxError", "$BEGIN SCRIPT A(void ::STRING", "ERR_DECL_SCRIPT_PARAM_3", 1, 29},
    {"LoneColon", "$A:$", kSyntax, 1, 4},
    {"Brace", "${x", kSyntax, 1, 2},
    {"RunOfLettersAndDigits", "$0x1F$", kSyntax, 1, 6},
    {"HeaderWithoutLiteral", "$BEGIN KVL VERSION$", kSyntax, 1, 19},
    {"UnfinishedCommand", "a\nb$X", kSyntax, 2, 3},
    {"CommentOnly", "$/*x*/$", kSyntax, 1, 7},
    {"LineEndInCommand", "a\n$X\n$", kScannerSyntax, 3, 0},
    {"BlankBehindDollar", "$X$ $ b", kScannerSyntax, 1, 6},
    {"VisibleOnMarkerLine", "a\n$ \xE4\n", kScannerSyntax, 2, 3},
    {"LiteralNotClosed", "a\n $X = \"ab\n\"$", "ERR_DECL_TYPE_LIT_2", 2, 7},
    {"LiteralAtEnd", "$\"ab\"\"", "ERR_DECL_TYPE_LIT_2", 1, 2},
    {"DollarCommentNotClosed", "a\n$/* x\n y", "ERR_DECL_PATTERN_COMM_1", 3, 2},
    {"CommentBlockNotClosed", "a\n$BEGIN COMMENT$ x\n y", "ERR_DECL_SCRIPT_COMM_1", 2, 15},
};
INSTANTIATE_TEST_SUITE_P(Rows, ScriptFaultTest, testing::ValuesIn(kFaultRows), RowName<FaultRow>);

TEST_P(ScriptFaultTest, IsReportedOnceInAScript) {
    ExpectFault(kEntityMacroScript, std::string(GetParam().message), "Script");
}

TEST_P(ScriptFaultTest, IsReportedWithItsTwinInAPattern) {
    std::string message(GetParam().message);
    if (const std::size_t word = message.find("SCRIPT"); word != std::string::npos) message.replace(word, 6, "PATTERN");
    ExpectFault(kEntityMacroPattern, message, "Pattern");
}

TEST_P(ScriptFaultTest, IsSilentInAConstant) {
    EXPECT_FALSE(CompileConstant(GetParam().source));
    EXPECT_EQ(Process().errorCount, 0);
    EXPECT_EQ(Shown(), "\n");
}

TEST_F(ScriptTest, LineAndMarkOfAFaultAreShown) {
    EXPECT_FALSE(CompileFile("a\n\t$A + B$\r\nc"));
    EXPECT_NE(Shown().find("\n\n\t$A + B$\r\n      ^\nAt line 2 near position 6 of Script "), std::string::npos)
        << Shown();
}

TEST_F(ScriptTest, StreamFaultHasALineButNoColumn) {
    EXPECT_FALSE(CompileStream("a\n$A + B$"));
    EXPECT_NE(Shown().find("\n\n\n^\nAt line 2 near position 0 of Script STREAM\n"), std::string::npos) << Shown();
}

TEST_F(ScriptTest, OverlongNameIsFatal) {
    EXPECT_FALSE(CompileStream("$" + std::string(1049216, 'x') + "$"));
    EXPECT_NE(Shown().find("ERROR: ERR_EXEC_ENVIRON_FATAL_1\nFatal error: Token buffer overflow\n"), std::string::npos)
        << Shown();
}

// Any bytes give an answer, and a rejected source one message.
TEST_F(ScriptTest, AllBytesAtAllPlacesOfACommand) {
    const std::string models[] = {"a$X = \"b\"$\n", "$BEGIN ALL A$", "$X ::T[1] = (::U) M(1.5e+5, L[])$", "$/*x*/$"};
    for (const std::string& model : models) {
        for (std::size_t place = 0; place <= model.size(); ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string source = model;
                source.insert(place, 1, static_cast<char>(byte));
                list_ = CommandList();
                const int errors = Process().errorCount;
                const bool accepted = CompileStream(source);
                EXPECT_EQ(Process().errorCount - errors, accepted ? 0 : 1) << source;
            }
        }
    }
}

}  // namespace
}  // namespace kvl
