// The exact bytes of a message as it is shown.
#include <gtest/gtest.h>

#include <utility>

#include "messages/CMessage.h"
#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

MessageContext At(int position, int entityKind = kEntityMainScript) {
    MessageContext context;
    context.entityName = "main";
    context.lineNumber = 12;
    context.lineText = "$A = B$";
    context.position = position;
    context.entityKind = entityKind;
    context.Set(ERRSTR_VAR_NAME, "B");
    return context;
}

template <class Context>
std::string Compose(int id, const Context& context) {
    CMessage message(id, context);
    return ComposeMessage(id);
}

constexpr const char* kHead = "\nERROR: ERR_DECL_SCRIPT_VAR_5\nVariable B not declared\n\n";

TEST(MessageLayout, OfAPosition) {
    constexpr std::pair<int, const char*> kRows[] = {
        {-1, "^\nAt line 12 of Script main\n\n"},
        {0, "^\nAt line 12 near position 0 of Script main\n\n"},
        {5, "     ^\nAt line 12 near position 5 of Script main\n\n"},
    };
    for (const auto& [position, shown] : kRows) {
        MessageContext context = At(position);
        context.positionMark = "\t\tmark";  // is not printed
        EXPECT_EQ(Compose(ERR_DECL_SCRIPT_VAR_5, context), std::string(kHead) + "$A = B$\n" + shown);
        EXPECT_EQ(Process().vectorMessageParameters[ERRSTR_ENTITYLINEPOSITIONMARK], "\t\tmark");
    }
}

// A line of a file is read when the message is built; one that cannot be read any more has its own message first.
TEST(MessageLayout, OfALineInAFile) {
    ScopedPlatform outside;
    outside.memory.Put("main.kvl", "one\n$A = B$\n");
    MessageContext context = At(-1);
    context.lineNumber = 2;
    context.linePath = "main.kvl";
    EXPECT_EQ(Compose(ERR_DECL_SCRIPT_VAR_5, context), std::string(kHead) + "$A = B$\n^\nAt line 2 of Script main\n\n");
    outside.memory.Remove("main.kvl");
    EXPECT_EQ(Compose(ERR_DECL_SCRIPT_VAR_5, context), std::string(kHead) + "\n^\nAt line 2 of Script main\n\n");
    EXPECT_NE(outside.console.output.find("File main.kvl can not be found"), std::string::npos);
}

TEST(MessageLayout, WithoutAnyPlace) {
    EXPECT_EQ(Compose(ERR_EXEC_ENVIRON_FATAL_1, std::string_view("_fullpath")),
              "\nERROR: ERR_EXEC_ENVIRON_FATAL_1\nFatal error: _fullpath\n\n");
    EXPECT_EQ(Process().vectorMessageParameters[ERRSTR_ENTITYTYPE], "");
}

TEST(MessageLayout, OfDataTellsTheDeclaration) {
    DataContext context;
    context.entityName = "data.txt";
    context.lineNumber = 3;
    context.lineText = "a b";
    context.position = 3;
    context.Set(ERRSTR_LITERAL, "x");
    context.typeName = "PERSON";
    context.typeLineNumber = 7;
    context.typeLine = "\t'x'";
    context.typePositionMark = "\t^";
    context.typePosition = 2;
    EXPECT_EQ(Compose(ERR_PARSE_TYPE_LIT_2, context),
              "\nERROR: ERR_PARSE_TYPE_LIT_2\nWeak literal x not found\n\n"
              "a b\n   ^\nAt line 3 near position 3 of Data data.txt\n\n"
              "\t'x'\n\t^\nDeclared at line 7 near position 2 of type PERSON\n\n");
}

TEST(MessageLayout, OfABlockTellsTheOtherLine) {
    BlockContext context;
    static_cast<MessageContext&>(context) = At(-1);
    context.relatedLine = 9;
    context.Set(ERRSTR_BEGIN_LOOP_DEFINITION, "A").Set(ERRSTR_END_LOOP_DEFINITION, "B");
    const std::string text = Compose(ERR_DECL_SCRIPT_LIST_9, context);
    EXPECT_NE(text.find("$BEGIN ALL A$ at line 9 and $END ALL B$ are different."), std::string::npos) << text;
    EXPECT_NE(text.find("At line 12 of Script main"), std::string::npos) << text;
}

TEST(MessageLayout, UnknownIdListsWhatWasFilled) {
    const std::string text = Compose(4, At(-1));
    EXPECT_TRUE(text.starts_with("\nERROR: ERR_UNKNOWN\nWrong Error Identifier!\n")) << text;
    EXPECT_NE(text.find("vectorMessageParameters[ERRSTR_VAR_NAME] = B\n"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("= <VAR_VALUE>\n\n\n$A = B$\n^\nAt line 12 of Script main\n\n")) << text;
}

struct EntityTypeRow {
    int kind;
    const char* inContext;
    const char* inSource;
};

TEST(MessageEntityType, FollowsFormAndKind) {
    constexpr EntityTypeRow kRows[] = {
        {kEntityMainScript, "Script", "Script"},
        {kEntityMacroScript, "Script", "Script"},
        {kEntityMacroPattern, "Pattern", "Pattern"},
        {kEntityPattern, "Unknown", "Pattern"},
        {kEntityType, "Unknown", "Type"},
        {kEntityTypeInstance, "Unknown", "Pattern"},
        {kEntityUnknown, "Unknown", "Pattern"},
    };
    const std::string& shown = Process().vectorMessageParameters[ERRSTR_ENTITYTYPE];
    for (const EntityTypeRow& row : kRows) {
        const MessageContext context = At(-1, row.kind);
        CMessage inContext(ERR_DECL_SCRIPT_VAR_5, context);
        EXPECT_EQ(shown, row.inContext) << row.kind;
        CMessage inBlock(ERR_DECL_SCRIPT_VAR_5, BlockContext{context});
        EXPECT_EQ(shown, row.inContext) << row.kind;
        CMessage inSource(ERR_DECL_SCRIPT_VAR_5, SourceContext{context});
        EXPECT_EQ(shown, row.inSource) << row.kind;
        CMessage inType(ERR_DECL_SCRIPT_VAR_5, TypeContext{context});
        EXPECT_EQ(shown, "Type") << row.kind;
        DataContext data;
        static_cast<MessageContext&>(data) = context;
        CMessage inData(ERR_DECL_SCRIPT_VAR_5, data);
        EXPECT_EQ(shown, "Data") << row.kind;
    }
}

TEST(MessageFields, OnlyThoseThatTheTextNamesAreTaken) {
    MessageContext context = At(-1);
    context.Set(ERRSTR_VAR_TYPE, "STRING");
    CMessage message(ERR_DECL_SCRIPT_VAR_5, context);
    EXPECT_EQ(Process().vectorMessageParameters[ERRSTR_VAR_NAME], "B");
    EXPECT_EQ(Process().vectorMessageParameters[ERRSTR_VAR_TYPE], "<VAR_TYPE>");
}

TEST(MessageFields, ALaterValueReplacesTheEarlier) {
    MessageContext context = At(-1);
    context.Set(ERRSTR_VAR_NAME, "C").Set(ERRSTR_LINE_RELATED_NUMBER, 40);
    EXPECT_EQ(context.fields.size(), 2u);
    CMessage message(ERR_DECL_SCRIPT_VAR_2, context);
    EXPECT_EQ(MessageText(ERR_DECL_SCRIPT_VAR_2, Process().vectorMessageParameters),
              "Variable name C alread in use\nPrevious declaration in line 40");
}

// What an earlier message was filled with never shows in a later one.
TEST(MessageFields, AreForgottenByTheNextMessage) {
    Compose(ERR_DECL_SCRIPT_VAR_5, At(-1));
    EXPECT_EQ(Compose(ERR_DECL_SCRIPT_VAR_5, MessageContext()),
              "\nERROR: ERR_DECL_SCRIPT_VAR_5\nVariable <VAR_NAME> not declared\n\n\n^\nAt line -1 of Unknown \n\n");
}

struct MarkRow {
    const char* name;
    std::string_view line;
    int column;
    const char* expected;
};
constexpr MarkRow kMarkRows[] = {
    {"FirstColumn", "word", 0, "^"},
    {"Blanks", "ab cd", 3, "   ^"},
    {"TabsStay", "\t\tword", 4, "\t\t  ^"},
    {"SpecialLetter", "\xE4\x80z", 2, " \x80^"},
    {"BehindTheEnd", "\tx", 9, "\t ^"},
    {"Negative", "abc", -1, "^"},
    {"EmptyLine", "", 5, "^"},
};

class PositionMarks : public testing::TestWithParam<MarkRow> {};

TEST_P(PositionMarks, StandUnderTheColumn) {
    EXPECT_EQ(PositionMark(GetParam().line, GetParam().column), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, PositionMarks, testing::ValuesIn(kMarkRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kvl
