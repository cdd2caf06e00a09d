#include "interpreter/CompiledScript.h"

#include "LoadingTest.h"
#include "text/Replace.h"

namespace kvl {
namespace {

// The prepared text with its line ends spelled out: leading text, each text command (first part, "|" for its line end,
// the rest), trailing text.
std::string DumpText(const MacroText& text) {
    std::string dump = text.leading;
    for (const TextChunk& chunk : text.chunks) {
        if (chunk.first.empty() && !chunk.hasLineEnd) continue;
        dump += "<" + chunk.first + (chunk.hasLineEnd ? "|" : "") + chunk.rest + ">";
    }
    dump += text.trailing;
    return ReplaceAll(ReplaceAll(dump, "\r", "\\r"), "\n", "\\n");
}

struct TextRow {
    const char* name;
    std::string_view source;
    std::string_view outermost, nested;
};
class MacroTextTest : public LoadingTest, public testing::WithParamInterface<TextRow> {};

#define HEADER "$BEGIN KVL VERSION=\"1.0.0\"$"
#define FOOTER "$END KVL VERSION=\"1.0.0\"$"
#define BEGIN "$BEGIN PATTERN P(#A::STREAM)$"
#define END "$END PATTERN P(#A::STREAM)$"

constexpr TextRow kTextRows[] = {
    {"LineOfTheHeadGoes", HEADER "\n" BEGIN " \t\na\n" END "\n" FOOTER, "<|><|a\\r\\n><|>", "<|><a><|>"},
    {"TextBehindTheHeadStays", HEADER BEGIN "a\nb" END FOOTER, "<|a\\r\\nb>", "<a|b>"},
    {"NoLineEndBehindTheHead", HEADER BEGIN "  $A$\n" END FOOTER, "<|  ><|>", "<  >"},
    {"LineOfTheHeadIsOne", HEADER BEGIN "\n\na\n" END FOOTER, "<|\\r\\na\\r\\n>", "<|a>"},
    {"BlanksAtLineEndsGo", HEADER BEGIN "\na \t\n\n \n  b  $A$ \n" END FOOTER, "<|a\\r\\n\\r\\n\\r\\n  b  ><|>",
     "<a|\\r\\n\\r\\n  b  >"},
    {"FirstTextBehindACommand", HEADER BEGIN "$A$\nb\n" END FOOTER, "<|\\r\\nb\\r\\n>", "<|b>"},
    {"LastTextInFrontOfACommand", HEADER BEGIN "\na\n$A$" END FOOTER, "<|a\\r\\n>", "<a>"},
    {"LastTextWithALineEndLosesIt", HEADER BEGIN "\na\n$A$b$A$" END FOOTER, "<|a\\r\\n><b>", "<a><b>"},
    {"LeadingText", "x \ny" HEADER BEGIN "\na\n" END FOOTER, "x\\r\\ny<x|y><|a\\r\\n>", "x\\r\\ny<x|y><a>"},
    {"LeadingTextBehindACommand", "$/**/$x\n" HEADER BEGIN "\na\n" END FOOTER, "<x|><|a\\r\\n>", "<x|><a>"},
    {"TextInFrontOfTheMacroIsNoLeadingText", HEADER "x" BEGIN "\na\n" END FOOTER, "<x><|a\\r\\n>", "<x><a>"},
    {"TrailingText", HEADER BEGIN "\na\n" END "\nx\ny" FOOTER "\n z \n \n",
     "<|a\\r\\n><|x\\r\\ny><| z\\r\\n\\r\\n>x\\r\\ny z", "<a><|x\\r\\ny><| z\\r\\n\\r\\n>x\\r\\ny z"},
    {"TrailingTextOfLineEndsOnly", HEADER BEGIN "\na\n" END "\n" FOOTER "\n\n", "<|a\\r\\n><|><|\\r\\n>",
     "<a><|><|\\r\\n>"},
    {"BodyWithoutText", HEADER BEGIN "$A$" END "x" FOOTER, "<|x>x", "<x>x"},
    {"BodyWithoutTextLosesNothingElsewhere", "x\n" HEADER BEGIN "$A$" END FOOTER, "x\\r\\n<x|>", "x<x>"},
    {"CommentBlockIsNoText",
     HEADER BEGIN "\na\n$BEGIN COMMENT$\nc\n$END COMMENT$" END FOOTER "$BEGIN COMMENT$c$END COMMENT$", "<|a\\r\\n>",
     "<a>"},
};
INSTANTIATE_TEST_SUITE_P(Rows, MacroTextTest, testing::ValuesIn(kTextRows), NameOfRow<TextRow>);

TEST_P(MacroTextTest, IsPreparedForItsDepth) {
    const auto schema = Compile(GetParam().source, kEntityMacroPattern);
    ASSERT_TRUE(schema && CheckBlocks(*schema)) << outside.console.output;
    EXPECT_EQ(DumpText(schema->script->TextFor(true)), GetParam().outermost);
    EXPECT_EQ(DumpText(schema->script->TextFor(false)), GetParam().nested);
}

TEST_F(LoadingTest, ScriptHasNoTextAroundItsMacro) {
    const auto schema = Compile("x" HEADER "$BEGIN SCRIPT S()$a$END SCRIPT S()$x" FOOTER "x", kEntityMacroScript);
    ASSERT_TRUE(schema && CheckBlocks(*schema)) << outside.console.output;
    EXPECT_EQ(schema->script->TextFor(true).leading, "");
    EXPECT_EQ(schema->script->TextFor(true).trailing, "");
}

TEST_F(LoadingTest, TextIsPreparedOnceForAllCalls) {
    const auto schema = Compile(HEADER BEGIN "\na\n" END FOOTER, kEntityMacroPattern);
    ASSERT_TRUE(schema && CheckBlocks(*schema));
    const auto clone = schema->Clone();
    EXPECT_EQ(&clone->script->TextFor(true), &schema->script->TextFor(true));
    EXPECT_NE(&clone->script->TextFor(true), &schema->script->TextFor(false));
}

}  // namespace
}  // namespace kvl
