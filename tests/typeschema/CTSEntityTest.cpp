#include "typeschema/CTSEntity.h"

#include <gtest/gtest.h>

#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

class Entity final : public CTSEntity {};

TEST(CTSEntityTest, SourceNamesTheEntity) {
    ResetProcessState();
    Entity entity;
    EXPECT_EQ(entity.entityKind, kEntityUnknown);
    EXPECT_EQ(entity.currentLine, -1);
    entity.SetSourceStream("SRC:TEXT");
    entity.SetSourceFile("/home\\sub/main.kvl");
    EXPECT_EQ(entity.names->sourceFile, "main.kvl");
    EXPECT_EQ(entity.names->sourceDirectory, "/home/sub/");
    EXPECT_EQ(entity.names->sourceStream, "");
    EXPECT_EQ(entity.GetDisplayPath(), "/home/sub/main.kvl");
    EXPECT_EQ(entity.SourceName(), "main.kvl");
    entity.SetSourceStream("SRC:TEXT");
    EXPECT_EQ(entity.names->sourcePath, "");
    EXPECT_EQ(entity.names->sourceDirectory, "SRC:TEXT");
    EXPECT_EQ(entity.GetDisplayPath(), "SRC:TEXT");
    EXPECT_EQ(entity.SourceName(), "SRC:TEXT");
    entity.SetSourceStream("/home/sub/a.txt");
    EXPECT_EQ(entity.SourceName(), "a.txt");
}

struct LineRow {
    const char* name;
    int line;
    std::string_view expected;
};

class SourceLineTest : public testing::TestWithParam<LineRow> {};

TEST_P(SourceLineTest, IsTheTextOfTheLine) {
    ScopedPlatform outside;
    outside.memory.Put("/home/a.kvl", "one\ntwo\r\nlast");
    Entity entity;
    entity.SetSourceFile("/home/a.kvl");
    EXPECT_EQ(entity.GetSourceLine(GetParam().line), GetParam().expected);
    entity.currentLine = GetParam().line;
    const MessageContext context = entity.GetMessageContext();
    const CMessage message(ERR_EXEC_SCRIPT_VAR_1, context);  // reads the line
    EXPECT_EQ(Process().vectorMessageParameters[ERRSTR_ENTITYLINE], GetParam().expected);
    EXPECT_EQ(context.lineNumber, GetParam().line);
    EXPECT_EQ(context.position, -1);
    EXPECT_EQ(context.entityName, "/home/a.kvl");
}

constexpr LineRow kLineRows[] = {
    {"First", 1, "one"}, {"KeepsCarriageReturn", 2, "two\r"}, {"WithoutLineFeed", 3, "last"}, {"Behind", 4, ""},
    {"None", -1, ""},
};
INSTANTIATE_TEST_SUITE_P(Rows, SourceLineTest, testing::ValuesIn(kLineRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CTSEntityTest, LineOfAMissingFileIsReportedAndEmpty) {
    ResetProcessState();
    ScopedPlatform outside;
    Entity entity;
    entity.SetSourceFile("/home/gone.kvl");
    EXPECT_EQ(entity.GetSourceLine(1), "");
    EXPECT_EQ(Process().errorCount, 1);
}

}  // namespace
}  // namespace kvl
