// The table of messages against the list of them that was typed on its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "messages/CMessage.h"
#include "messages/EntityKinds.h"
#include "messages/MessageTable.h"
#include "text/Replace.h"

namespace kvl {
namespace {

struct ListedMessage {
    int number;
    std::string name, text;
};

// Each line of the list: number, tab, name, tab, text with "\n" for a line end.
std::vector<ListedMessage> ReadList() {
    std::ifstream file(std::string(KVL_TESTS_FOLDER) + "/messages/catalogue.txt");
    std::vector<ListedMessage> list;
    for (ListedMessage row; file >> row.number && file.get() == '\t' && std::getline(file, row.name, '\t') &&
                            std::getline(file, row.text);) {
        row.text = ReplaceAll(row.text, "\\n", "\n");
        list.push_back(row);
    }
    return list;
}

// A text that nobody filled is the row itself, but for the double quote. What stands in angle brackets is a parameter:
// a misspelt tag would never be filled.
TEST(Catalogue, IsTheList) {
    const std::vector<ListedMessage> list = ReadList();
    std::vector<std::string> parameters;
    ResetMessageParameters(parameters);
    for (const ListedMessage& listed : list) {
        const MessageRow* row = FindMessageRow(listed.number);
        ASSERT_NE(row, nullptr) << listed.name;
        EXPECT_EQ(row->name, listed.name);
        EXPECT_EQ(row->text, listed.text) << listed.name;
        EXPECT_EQ(MessageText(listed.number, parameters), ReplaceAll(listed.text, "<DOUBLEQUOTE>", "\""));
        for (std::string_view rest = listed.text; !rest.empty();) {
            EXPECT_EQ(TakeMessagePiece(rest).literal.find('<'), std::string_view::npos) << listed.name;
        }
    }
    std::size_t rows = 0;
    for (int id = -10; id < 1000; ++id)
        rows += FindMessageRow(id) != nullptr;
    EXPECT_EQ(rows, 206U);
    EXPECT_EQ(rows, list.size());
}

TEST(Catalogue, HasFourWarnings) {
    std::string warnings;
    std::vector<std::string> parameters(58);
    for (const ListedMessage& listed : ReadList()) {
        const std::string header = MessageHeader(listed.number, parameters);
        const bool isWarning = parameters[ERRSTR_ISWARNING] == "TRUE";
        EXPECT_EQ(header, (isWarning ? "WARNING: " : "ERROR: ") + listed.name);
        EXPECT_TRUE(isWarning || parameters[ERRSTR_ISWARNING].empty());
        if (isWarning) warnings += listed.name + "\n";
    }
    EXPECT_EQ(warnings,
              "WARN_DECL_TYPE_ELSE_4\nWARN_PARSE_TYPE_LIT_3\nWARN_DECL_SCRIPT_ELSE_4\nWARN_EXEC_SCRIPT_FILE_2\n");
}

TEST(Catalogue, EveryPatternRowIsTheTwinOfItsScriptRow) {
    int twins = 0;
    for (const ListedMessage& listed : ReadList()) {
        const auto id = static_cast<MessageId>(listed.number);
        EXPECT_EQ(TwinFor(id, kEntityMainScript), id) << listed.name;
        EXPECT_EQ(TwinFor(id, kEntityMacroScript), id) << listed.name;
        const MessageId twin = TwinFor(id, kEntityMacroPattern);
        if (twin == id) continue;
        ++twins;
        EXPECT_EQ(MessageName(twin), ReplaceAll(listed.name, "_SCRIPT_", "_PATTERN_"));
    }
    // 65 pattern rows; the two separator rows have no script row.
    EXPECT_EQ(twins, 63);
    EXPECT_EQ(TwinFor(static_cast<MessageId>(5000), kEntityMacroPattern), 5000);
    EXPECT_EQ(GetEntityKindName(5000), "");
}

// Values stand where their tags were; what looks like a tag in a value stays.
TEST(Catalogue, TextsAreFilled) {
    const struct {
        MessageId id;
        std::map<MessageParameter, std::string> values;
        const char* expected;
    } rows[] = {
        {ERR_EXEC_ENVIRON_VAR_1,
         {{ERRSTR_VAR_NAME, "kvlrun_logfile"}, {ERRSTR_VAR_VALUE, "maybe"}},
         "Environment Variable Has Wrong Value ( kvlrun_logfile = maybe )"},
        {ERR_DECL_SCRIPT_VAR_5,
         {{ERRSTR_VAR_NAME, "a<VAR_TYPE>$<DOUBLEQUOTE>"}, {ERRSTR_VAR_TYPE, "T"}},
         "Variable a<VAR_TYPE>$<DOUBLEQUOTE> not declared"},
        {WARN_EXEC_SCRIPT_FILE_2,
         {{ERRSTR_PATH1, "one/"}, {ERRSTR_PATH2, "two/"}},
         "File <FILE_NAME> exists more then once within search path <PATH>\nTake file one/<FILE_NAME>\nbut not "
         "two/<FILE_NAME>"},
    };
    for (const auto& [id, values, expected] : rows) {
        std::vector<std::string> parameters;
        ResetMessageParameters(parameters);
        for (const auto& [parameter, value] : values)
            parameters.at(static_cast<std::size_t>(parameter)) = value;
        EXPECT_EQ(MessageText(id, parameters), expected);
    }
}

TEST(Catalogue, UnknownMessageListsEveryParameter) {
    std::vector<std::string> parameters;
    ResetMessageParameters(parameters);
    parameters[ERRSTR_VAR_NAME] = "X";
    EXPECT_EQ(MessageHeader(4, parameters), "ERROR: ERR_UNKNOWN");
    const std::string text = MessageText(4, parameters);
    EXPECT_TRUE(
        text.starts_with("Wrong Error Identifier!\nvectorMessageParameters[ERRSTR_ISWARNING] = \n"
                         "vectorMessageParameters[ERRSTR_ENTITYTYPE] = <ENTITYTYPE>\n"));
    EXPECT_NE(text.find("\nvectorMessageParameters[ERRSTR_VAR_NAME] = X\n"), std::string::npos);
    EXPECT_TRUE(text.ends_with("\nvectorMessageParameters[ERRSTR_VAR_VALUE] = <VAR_VALUE>\n"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 56);
}

}  // namespace
}  // namespace kvl
