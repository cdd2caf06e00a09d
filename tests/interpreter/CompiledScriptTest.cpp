#include "interpreter/CompiledScript.h"

#include "LoadingTest.h"
#include "support/CaseFile.h"
#include "text/Replace.h"

namespace kvl {
namespace {

// The prepared text with its line ends spelled out: leading text, each text command (first part, "|" for its line end,
// the rest), trailing text.
std::string DumpText(const MacroText& text) {
    std::string dump = text.leading.text;
    for (const TextChunk& chunk : text.chunks) {
        if (chunk.first.text.empty() && !chunk.hasLineEnd) continue;
        dump += "<" + chunk.first.text + (chunk.hasLineEnd ? "|" : "") + chunk.rest.text + ">";
    }
    dump += text.trailing.text;
    return ReplaceAll(ReplaceAll(dump, "\r", "\\r"), "\n", "\\n");
}

class MacroTextTest : public LoadingTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(MacroTextTest, "interpreter/MacroTexts.cases");

// Once for all calls of a depth, whatever the clone.
TEST_P(MacroTextTest, IsPreparedForItsDepth) {
    const auto schema = Compile(GetParam().Line("source"), kEntityMacroPattern);
    ASSERT_TRUE(schema && CheckBlocks(*schema)) << outside.console.output;
    const MacroText& outermost = schema->script->TextFor(true);
    ExpectSection(GetParam(), "outermost", DumpText(outermost));
    ExpectSection(GetParam(), "nested", DumpText(schema->script->TextFor(false)));
    EXPECT_EQ(&schema->Clone()->script->TextFor(true), &outermost);
}

TEST_F(LoadingTest, ScriptHasNoTextAroundItsMacro) {
    const auto schema =
        Compile("x$BEGIN KVL VERSION=\"1.0.0\"$$BEGIN SCRIPT S()$a$END SCRIPT S()$x$END KVL VERSION=\"1.0.0\"$x",
                kEntityMacroScript);
    ASSERT_TRUE(schema && CheckBlocks(*schema)) << outside.console.output;
    EXPECT_EQ(schema->script->TextFor(true).leading.text, "");
    EXPECT_EQ(schema->script->TextFor(true).trailing.text, "");
}

}  // namespace
}  // namespace kvl
