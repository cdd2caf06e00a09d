// Every production of type files with what it leaves in the items, places included; how deep and how long types may be.
#include "frontend/TypeSupport.h"

namespace kvl {
namespace {

class TypeProductionTest : public TypeFrontEndTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(TypeProductionTest, "frontend/TypeItems.cases");

TEST_P(TypeProductionTest, FillsItems) {
    const auto schema = ParseStream(TypeFile(GetParam().Line("source")));
    ASSERT_NE(schema, nullptr) << ConsoleText();
    ExpectSection(GetParam(), "items", ItemDump::Of(*schema));
    EXPECT_EQ(ConsoleText(), "");
}

// As many categories in each other inside the root, each behind `name`.
std::string Nested(std::string_view name, int levels, std::string_view innermost) {
    std::string text = "::A=::LIST{";
    for (int level = 0; level < levels; ++level)
        text.append(name).append("::LIST{");
    text += innermost;
    return TypeFile(text + std::string(static_cast<std::size_t>(levels) + 1, '}'));
}

struct DepthRow {
    const char* testName;
    const char* name;
    int levels;
    std::string_view innermost;
    bool isAccepted;
};

class TypeDepthTest : public TypeFrontEndTest, public testing::WithParamInterface<DepthRow> {};

// Each level of categories takes four entries, five with a name; the innermost element decides the rest.
TEST_P(TypeDepthTest, StackHolds150Entries) {
    const DepthRow& row = GetParam();
    const auto schema = ParseStream(Nested(row.name, row.levels, row.innermost));
    EXPECT_EQ(schema != nullptr, row.isAccepted) << ConsoleText();
    const bool isOverflow = ConsoleText().find("\nFatal error: Parser stack overflow\n") != std::string::npos;
    EXPECT_NE(isOverflow, row.isAccepted) << ConsoleText();
    if (schema == nullptr) return;
    std::string name;
    const bool compiles = row.innermost.empty();
    EXPECT_EQ(schema->CompileDeclaration(NoTypes(), name), compiles) << ConsoleText();
}

constexpr DepthRow kDepthRows[] = {
    {"Entry150IsAccepted", "", 34, "::$P$", true},
    {"Entry151IsRefused", "", 34, "X ::$P$", false},
    {"Entry150ByAReference", "", 34, "X ::Q:R", false},
    {"Entry149ByAReference", "", 34, "::Q:R", true},
    {"DeepestCompiles", "", 34, "", true},
    {"Level35NeedsEntry151", "", 35, "", false},
    {"DeepestOfNamedOnes", "X ", 27, "", true},
    {"NamesTakeAnEntryEach", "X ", 28, "", false},
};
INSTANTIATE_TEST_SUITE_P(Rows, TypeDepthTest, testing::ValuesIn(kDepthRows),
                         [](const auto& row) { return std::string(row.param.testName); });

// Left recursion: length costs no stack.
TEST_F(TypeFrontEndTest, LongListsNeedNoStack) {
    std::string text = "::A=::LIST{";
    for (int element = 0; element < 20000; ++element)
        text += "'x' N ::STRING ";
    text += "}";
    for (int type = 0; type < 5000; ++type)
        text += "::T=::LIST{'x'}";
    const auto schema = ParseStream(TypeFile(text));
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->declaredTypes.size(), 5001u);
    EXPECT_EQ(schema->declaredTypes.front().root.children.size(), 40000u);
}

// Elements and declared types together.
TEST_F(TypeFrontEndTest, ItemsBeyondTheRowsOfATypeAreRefusedWhereTheyPass) {
    const auto literals = [](std::size_t count) {
        std::string text;
        for (std::size_t i = 0; i < count; ++i)
            text += "'x' ";
        return text;
    };
    EXPECT_NE(ParseStream(TypeFile("::A=::LIST{" + literals(kMostElements - 2) + "}::B=::LIST{}")), nullptr);
    EXPECT_EQ(ParseStream(TypeFile("::A=::LIST{" + literals(kMostElements - 2) + "}::B=::LIST{'x'}'")), nullptr);
    EXPECT_NE(ConsoleText().find("ERR_EXEC_ENVIRON_FATAL_1\nFatal error: Type A grows beyond 1000000 elements. \n"),
              std::string::npos)
        << ConsoleText();
    EXPECT_EQ(Process().errorCount, 1);
}

}  // namespace
}  // namespace kvl
