// The bytes that templates become: literal text, values, line marks and separators.
#include "ScriptRun.h"

namespace kvl {
namespace {

// A pattern with the parameters A (holding "x"), E (empty), B (two blanks), N (an empty integer), M (two lines) and a
// list L of three records.
struct TemplateRow {
    const char* name;
    const char* body;
    const char* expected;
};

class Template : public testing::TestWithParam<TemplateRow> {
protected:
    static constexpr const char* kParameters =
        "#A::STREAM, #E::STREAM, #B::STREAM, #N::INTEGER, #M::STREAM, #L::STRING";

    static std::string Write(const std::string& body) {
        ScriptRun run;
        run.AddPattern("P", kParameters, body);
        run.AddPattern("Q", "#A::STREAM", "[$A$]\n");
        EXPECT_TRUE(
            run.Execute("$A ::STREAM = \"x\"$$E ::STREAM$$B ::STREAM = \"  \"$$N ::INTEGER$\n"
                        "$M ::STREAM = \"1\\r\\n2\\t3\"$$L ::STRING[3]$\n"
                        "$C ::INTEGER$\n"
                        "$BEGIN ALL L$$C += 1$$L = C$$END ALL L$\n"
                        "$P(A, E, B, N, M, L)$"))
            << run.outside.console.output;
        return ReplaceCrLf(run.output);
    }

    // CR LF as "|", so that rows can be read; a single LF stays.
    static std::string ReplaceCrLf(std::string text) {
        for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at))
            text.replace(at, 2, "|");
        return text;
    }
};

TEST_P(Template, Writes) {
    EXPECT_EQ(Write(GetParam().body), GetParam().expected);
}

// Every body stands behind "$BEGIN PATTERN ...$" and a line end.
constexpr TemplateRow kTemplateRows[] = {
    {"LiteralLines", "abc\ndef\n", "abc|def|"},
    {"FirstLineEndIsJudgedWithItsInk", "$E$abc\ndef\n", "abc|def|"},
    {"BlankLinesInsideAText", "a\n\n\nb\n", "a|||b|"},
    {"LineOfACommandLeavesNoTrace", "a\n    $BEGIN IF A$\nb\n    $END IF A$\nc\n", "a|b|c|"},
    {"LineOfAnEmptyValueLeavesNoTrace", "a\n    $E$\nb\n", "a|b|"},
    {"LineOfAValue", "a\n    $A$\nb\n", "a|    x|b|"},
    {"BlankValueKeepsBlanksAndLosesTheLineEnd", "a\n$B$\nb\n", "a|  b|"},
    {"ValueInsideALine", "<$A$>\n", "<x>|"},
    {"LinesOfAValue", "$M$\n", "1|2\t3|"},
    {"EmptyNumberIsZero", "$N$\n", "0|"},
    {"NewLineMark", "a$\\n$b\n", "a\nb|"},
    {"ContinueMarkJoinsLines", "a$/$\nb\n", "ab|"},
    {"LoopLines", "$BEGIN ALL L$\n- $L$\n$END ALL L$\nend\n", "- 1|- 2|- 3|end|"},
    {"LoopInALine", "($BEGIN ALL L$$L$$BEGIN SEPARATOR$, $END SEPARATOR$$END ALL L$)\n", "(1, 2, 3)|"},
    {"SeparatorOnLinesOfItsOwn", "$BEGIN ALL L$\n$L$\n$BEGIN SEPARATOR$\n,\n$END SEPARATOR$\n$END ALL L$\n.\n",
     "1|,|2|,|3|.|"},
    {"CommentLeavesNoTrace", "a\n$BEGIN COMMENT$\nno $A$\n$END COMMENT$\nb\n", "a|b|"},
    {"ConditionInALine", "a$BEGIN IF E$no$END IF E$b\n", "ab|"},
    {"NestedCallAddsNoLine", "<$Q(A)$>\n", "<[x]>|"},
};
INSTANTIATE_TEST_SUITE_P(Rows, Template, testing::ValuesIn(kTemplateRows), RowName);

TEST(TemplateFault, ACommandInASeparator) {
    ScriptRun run;
    run.AddPattern("P", "", "$BEGIN SEPARATOR$\n$A ::STRING$\n$END SEPARATOR$\n");
    EXPECT_FALSE(run.Execute("$P()$"));
    EXPECT_EQ(run.faults, "ERR_EXEC_SCRIPT_MACRO_9 3");
    EXPECT_NE(run.outside.console.output.find("SEPARATOR"), std::string::npos);
}

TEST(TemplateText, AScriptWritesNoText) {
    ScriptRun run;
    run.AddScript("S", "", "text $A ::STRING = \"v\"$ $A$\n");
    EXPECT_TRUE(run.Execute("text $S()$ text"));
    EXPECT_EQ(run.output, "");
}

TEST(TemplateText, SeparatorWithoutALoopIsWritten) {
    ScriptRun run;
    run.AddPattern("P", "", "a$BEGIN SEPARATOR$, $END SEPARATOR$b");
    EXPECT_TRUE(run.Execute("$P()$"));
    EXPECT_EQ(run.output, "a, b");
}

TEST(TemplateText, HasALimit) {
    ScriptRun run;
    ASSERT_TRUE(run.Execute("$A ::STREAM$"));
    EXPECT_TRUE(run.root->FitsInText(2147483647));
    EXPECT_FALSE(run.root->FitsInText(2147483648));
    EXPECT_NE(run.outside.console.output.find("Fatal error: Text is larger than 2147483647 bytes. \n"),
              std::string::npos);
}

}  // namespace
}  // namespace kvl
