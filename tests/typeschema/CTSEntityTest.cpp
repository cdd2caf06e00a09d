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

TEST(CTSEntityTest, LinesAreThoseOfTheSource) {
    ScopedPlatform outside;
    outside.memory.Put("/home/a.kvl", "one\ntwo\r\nlast");
    Entity entity;
    entity.SetSourceFile("/home/a.kvl");
    const std::pair<int, std::string_view> rows[] = {{1, "one"}, {2, "two\r"}, {3, "last"}, {4, ""}, {-1, ""}};
    for (const auto& [line, expected] : rows) {
        EXPECT_EQ(entity.GetSourceLine(line), expected);
        entity.currentLine = line;
        const CMessage message(ERR_EXEC_SCRIPT_VAR_1, entity.GetMessageContext());  // reads the line
        EXPECT_EQ(Process().vectorMessageParameters[ERRSTR_ENTITYLINE], expected);
        EXPECT_EQ(Process().vectorMessageParameters[ERRSTR_ENTITYLINENUMBER], std::to_string(line));
    }
}

}  // namespace
}  // namespace kvl
