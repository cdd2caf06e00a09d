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

TEST(MessageEntityType, FollowsFormAndKind) {
    constexpr struct {
        int kind;
        const char *inContext, *inSource;
    } kRows[] = {
        {kEntityMainScript, "Script", "Script"},
        {kEntityMacroScript, "Script", "Script"},
        {kEntityMacroPattern, "Pattern", "Pattern"},
        {kEntityPattern, "Unknown", "Pattern"},
        {kEntityType, "Unknown", "Type"},
        {kEntityTypeInstance, "Unknown", "Pattern"},
        {kEntityUnknown, "Unknown", "Pattern"},
    };
    const std::string& shown = Process().vectorMessageParameters[ERRSTR_ENTITYTYPE];
    for (const auto& row : kRows) {
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

TEST(MessageLayout, MarkEndsBehindTheLine) {
    EXPECT_EQ(PositionMark("\tx", 9), "\t ^");
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

}  // namespace
}  // namespace kvl
