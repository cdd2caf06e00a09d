// The table of messages against the list of them that was typed on its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
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
    std::ifstream file(std::filesystem::path(__FILE__).parent_path() / "catalogue.txt");
    std::vector<ListedMessage> list;
    for (ListedMessage row; file >> row.number && file.get() == '\t' && std::getline(file, row.name, '\t') &&
                            std::getline(file, row.text);) {
        row.text = ReplaceAll(row.text, "\\n", "\n");
        list.push_back(row);
    }
    return list;
}

TEST(Catalogue, HoldsEveryListedMessage) {
    const std::vector<ListedMessage> list = ReadList();
    ASSERT_EQ(list.size(), 206u);
    for (const ListedMessage& listed : list) {
        const MessageRow* row = FindMessageRow(listed.number);
        ASSERT_NE(row, nullptr) << listed.name;
        EXPECT_EQ(row->name, listed.name);
        EXPECT_EQ(row->text, listed.text) << listed.name;
    }
}

TEST(Catalogue, HoldsNothingElse) {
    int rows = 0;
    for (int id = -10; id < 1000; ++id)
        rows += FindMessageRow(id) != nullptr;
    EXPECT_EQ(rows, 206);
    EXPECT_EQ(FindMessageRow(4), nullptr);
}

// A text that nobody filled is the row itself, but for the double quote.
TEST(Catalogue, ShowsItsTagsUnfilled) {
    std::vector<std::string> parameters;
    ResetMessageParameters(parameters);
    for (const ListedMessage& listed : ReadList()) {
        EXPECT_EQ(MessageText(listed.number, parameters), ReplaceAll(listed.text, "<DOUBLEQUOTE>", "\""))
            << listed.name;
    }
}

// Whatever stands in angle brackets in a text is a parameter: a misspelt tag would never be filled.
TEST(Catalogue, HasOnlyKnownTags) {
    for (const ListedMessage& listed : ReadList()) {
        for (std::string_view rest = listed.text; !rest.empty();) {
            EXPECT_EQ(TakeMessagePiece(rest).literal.find('<'), std::string_view::npos) << listed.name;
        }
    }
}

// Does what stands behind the head of a message begin with the row's text, whatever the values in it?
bool IsTextOf(std::string_view shown, std::string_view text) {
    for (bool isFirst = true; !text.empty(); isFirst = false) {
        const MessagePiece piece = TakeMessagePiece(text);
        const std::size_t found = shown.find(piece.literal);
        if (found == std::string_view::npos || (isFirst && found != 0)) return false;
        shown.remove_prefix(found + piece.literal.size());
    }
    return shown.find("\n\n") != std::string_view::npos;
}

// Every message in the console texts of the whole runs is one of the list.
TEST(Catalogue, HoldsWhatWholeRunsShow) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> texts;
    for (const ListedMessage& listed : ReadList())
        texts[listed.name] = listed.text;
    int count = 0;
    for (const char* root : {"/golden", "/../examples"}) {
        for (const auto& entry : fs::recursive_directory_iterator(std::string(KVL_TESTS_FOLDER) + root)) {
            if (entry.path().filename() != "console.txt") continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string console{std::istreambuf_iterator<char>(file), {}};
            for (const std::string head : {"\nERROR: ", "\nWARNING: "}) {
                for (std::size_t at = console.find(head); at != std::string::npos; at = console.find(head, at + 1)) {
                    const std::size_t begin = at + head.size();
                    const std::size_t end = console.find('\n', begin);
                    const std::string name = console.substr(begin, end - begin);
                    ++count;
                    EXPECT_TRUE(texts.count(name) > 0 && IsTextOf(console.substr(end + 1), texts[name]))
                        << entry.path() << ": " << name;
                }
            }
        }
    }
    EXPECT_GT(count, 100);
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
}

TEST(Catalogue, RowsWithoutTwinStandForThemselves) {
    for (const MessageId id : {ERR_EXEC_ENVIRON_FATAL_1, ERR_DECL_SCRIPT_VAR_11, ERR_EXEC_SCRIPT_FILE_1,
                               ERR_DECL_PATTERN_SEPAR_1, static_cast<MessageId>(4), static_cast<MessageId>(5000)}) {
        EXPECT_EQ(TwinFor(id, kEntityMacroPattern), id);
    }
}

TEST(Parameters, StandInTheirOrder) {
    EXPECT_EQ(ERRSTR_ISWARNING, 0);
    EXPECT_EQ(ERRSTR_ENTITYLINEPOSITION, 6);
    EXPECT_EQ(ERRSTR_DOUBLEQUOTE, 20);
    EXPECT_EQ(ERRSTR_LINE_RELATED_NUMBER, 36);
    EXPECT_EQ(ERRSTR_VAR_VALUE, 54);
    EXPECT_EQ(kMessageParameterCount, 55);
}

TEST(Parameters, ResetGivesEachItsTag) {
    std::vector<std::string> parameters(3, "old");
    ResetMessageParameters(parameters);
    ASSERT_EQ(parameters.size(), 58u);
    EXPECT_EQ(parameters[ERRSTR_ISWARNING], "<ISWARNING>");
    EXPECT_EQ(parameters[ERRSTR_VAR_NAME2], "<VAR_NAME2>");
    EXPECT_EQ(parameters[ERRSTR_DOUBLEQUOTE], "\"");
    for (std::size_t i = kMessageParameterCount; i < parameters.size(); ++i)
        EXPECT_EQ(parameters[i], "");
}

struct TextRow {
    const char* name;
    MessageId id;
    MessageParameter first, second;
    const char* firstValue;
    const char* secondValue;
    const char* expected;
};
const TextRow kTextRows[] = {
    {"WrongOption", ERR_EXEC_ENVIRON_VAR_1, ERRSTR_VAR_NAME, ERRSTR_VAR_VALUE, "kvlrun_logfile", "maybe",
     "Environment Variable Has Wrong Value ( kvlrun_logfile = maybe )"},
    {"TagInAValueStays", ERR_DECL_SCRIPT_VAR_5, ERRSTR_VAR_NAME, ERRSTR_VAR_TYPE, "a<VAR_TYPE>$<DOUBLEQUOTE>", "T",
     "Variable a<VAR_TYPE>$<DOUBLEQUOTE> not declared"},
    {"SimilarTags", WARN_EXEC_SCRIPT_FILE_2, ERRSTR_PATH1, ERRSTR_PATH2, "one/", "two/",
     "File <FILE_NAME> exists more then once within search path <PATH>\nTake file one/<FILE_NAME>\nbut not "
     "two/<FILE_NAME>"},
    {"Backslash", ERR_DECL_SCRIPT_LIT_1, ERRSTR_PATH1, ERRSTR_PATH2, "", "",
     "Character $ within literal must be duplicated ($$) or escaped (\\$)"},
};

class MessageTexts : public testing::TestWithParam<TextRow> {};

TEST_P(MessageTexts, ComeOutOfTheRow) {
    const TextRow& row = GetParam();
    std::vector<std::string> parameters;
    ResetMessageParameters(parameters);
    parameters.at(static_cast<std::size_t>(row.first)) = row.firstValue;
    parameters.at(static_cast<std::size_t>(row.second)) = row.secondValue;
    EXPECT_EQ(MessageText(row.id, parameters), row.expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, MessageTexts, testing::ValuesIn(kTextRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(MessageTextUnknown, ListsEveryParameter) {
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

struct KindRow {
    int kind;
    const char* name;
};

TEST(EntityKinds, HaveNames) {
    constexpr KindRow kRows[] = {{-1, ""},
                                 {0, "Main Script"},
                                 {1, "Type"},
                                 {2, "Pattern"},
                                 {3, ""},
                                 {4, "Type Instance"},
                                 {6, "Macro Script"},
                                 {7, "Macro Type"},
                                 {8, "Macro Pattern"},
                                 {5, "SubType Instance"},
                                 {13, ""},
                                 {14, ""}};
    for (const KindRow& row : kRows)
        EXPECT_EQ(GetEntityKindName(row.kind), row.name) << row.kind;
}

}  // namespace
}  // namespace kvl
