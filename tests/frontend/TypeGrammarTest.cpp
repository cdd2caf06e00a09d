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

// Each level of categories takes four entries, five with a name; the innermost element decides the rest.
TEST_F(TypeFrontEndTest, StackHolds150Entries) {
    constexpr struct {
        const char* name;
        int levels;
        std::string_view innermost;
        bool isAccepted;
    } kRows[] = {
        {"", 34, "::$P$", true},     // the 150th entry
        {"", 34, "X ::$P$", false},  // the 151st
        {"", 34, "X ::Q:R", false}, {"", 34, "::Q:R", true}, {"", 34, "", true},
        {"", 35, "", false},        {"X ", 27, "", true},    {"X ", 28, "", false},
    };
    for (const auto& row : kRows) {
        outside_.console.output.clear();
        const auto schema = ParseStream(Nested(row.name, row.levels, row.innermost));
        EXPECT_EQ(schema != nullptr, row.isAccepted) << ConsoleText();
        const bool isOverflow = ConsoleText().find("\nFatal error: Parser stack overflow\n") != std::string::npos;
        EXPECT_NE(isOverflow, row.isAccepted) << ConsoleText();
        std::string name;
        if (schema && row.innermost.empty()) {
            EXPECT_TRUE(schema->CompileDeclaration(NoTypes(), name)) << ConsoleText();
        }
    }
}

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
