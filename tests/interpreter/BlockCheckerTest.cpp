#include "LoadingTest.h"
#include "support/CaseFile.h"
#include "text/Replace.h"

namespace kvl {
namespace {

constexpr std::string_view kHeader = "$BEGIN KVL VERSION=\"1.0.0\"$";
constexpr std::string_view kFooter = "$END KVL VERSION=\"1.0.0\"$";

class BlockFaultTest : public LoadingTest, public testing::WithParamInterface<TextCase> {
protected:
    // The message of the check, "accepted" for none.
    std::string Check(int entityKind) {
        ResetProcessState();
        outside.console.output.clear();
        const std::string macro = entityKind == kEntityMacroPattern ? "PATTERN M()$" : "SCRIPT M()$";
        std::string source = ReplaceAll(GetParam().Line("source"), "<<", std::string(kHeader) + "$BEGIN " + macro);
        source = ReplaceAll(source, ">>", "$END " + macro + std::string(kFooter));
        const auto schema = Compile(source, entityKind);
        if (!schema) return "not compiled: " + outside.console.output;
        const bool accepted = CheckBlocks(*schema);
        EXPECT_LE(Process().errorCount, accepted ? 0 : 1);
        if (accepted) return "accepted";
        return Process().errorCount == 0 ? "failed without a message" : FirstMessage();
    }
};
KVL_INSTANTIATE_CASES(BlockFaultTest, "interpreter/Blocks.cases");

TEST_P(BlockFaultTest, IsTold) {
    const std::pair<const char*, int> kinds[] = {
        {"main script", kEntityMainScript}, {"script", kEntityMacroScript}, {"pattern", kEntityMacroPattern}};
    for (const auto& [section, entityKind] : kinds) {
        if (!GetParam()[section].empty()) ExpectSection(GetParam(), section, Check(entityKind));
    }
}

// A hundred thousand blocks, side by side and one in the other, are a matter of one pass.
TEST_F(LoadingTest, PairingIsLinear) {
    std::string source = std::string(kHeader) + "$BEGIN SCRIPT M()$";
    for (int i = 0; i < 50000; ++i)
        source += "$BEGIN IF A$\n$BEGIN SEPARATOR$$END SEPARATOR$";
    for (int i = 0; i < 50000; ++i)
        source += "$END IF A$";
    const auto schema = Compile(source + "$END SCRIPT M()$" + std::string(kFooter));
    ASSERT_TRUE(schema && CheckBlocks(*schema)) << outside.console.output;
    EXPECT_EQ(schema->script->blocks.size(), 100002u);
}

}  // namespace
}  // namespace kvl
