// Every reason for which a type is rejected, with its message and place; the two entry points; what they set.
#include <gtest/gtest.h>

#include "frontend/TypeSupport.h"

namespace kvl {
namespace {

struct RefusalRow {
    const char* name;
    std::string source;
    const char* expected;  // message line:column |line|mark|
};

class TypeRefusalTest : public TypeFrontEndTest, public testing::WithParamInterface<RefusalRow> {};

TEST_P(TypeRefusalTest, IsReportedOnceAtItsPlace) {
    EXPECT_EQ(ParseFile(GetParam().source), nullptr);
    EXPECT_EQ(LastMessage(), GetParam().expected);
    EXPECT_EQ(Process().errorCount, 1);
}

std::string Versions(const std::string& header, const std::string& footer) {
    return "$BEGIN KVL VERSION=" + header + "$\n$TYPE$\n$END KVL VERSION=" + footer + "$ ";
}

// Without a mark the column is that of the last byte fetched, counted from 1.
const RefusalRow kRefusalRows[] = {
    {"NothingButBlanks", " \n", "ERR_DECL_TYPE_SYNTAX_1 2:0 ||^|"},
    {"NoHeader", "\t$TYPE$", "ERR_DECL_TYPE_SYNTAX_1 1:6 |\t$TYPE$|\t     ^|"},
    {"NoSection", std::string(kTypeHeader) + "$END KVL VERSION=\"1.0.0\"$",
     "ERR_DECL_TYPE_SYNTAX_1 2:2 |$END KVL VERSION=\"1.0.0\"$|  ^|"},
    {"TwoSections", std::string(kTypeHeader) + "$TYPE$\n$TYPE$", "ERR_DECL_TYPE_SYNTAX_1 3:5 |$TYPE$|     ^|"},
    {"NoFooter", std::string(kTypeHeader) + "$TYPE$", "ERR_DECL_TYPE_SYNTAX_1 2:6 |$TYPE$|      ^|"},
    {"TextBehindTheFooter", TypeFile("") + "\nx ", "ERR_DECL_TYPE_SYNTAX_1 4:2 |x |  ^|"},
    {"SectionBehindTheFooter", TypeFile("") + "$TYPE",
     "ERR_DECL_TYPE_SYNTAX_1 3:30 |$END KVL VERSION=\"1.0.0\"$$TYPE|"
     "                              ^|"},
    {"WeakVersion", Versions("'1.0.0'", "\"1.0.0\""),
     "ERR_DECL_TYPE_SYNTAX_1 1:27 |$BEGIN KVL VERSION='1.0.0'$|                           ^|"},
    {"BodyIsNoCategory", TypeFile("::A=::STRING"),
     "ERR_DECL_TYPE_SYNTAX_1 2:18 |$TYPE::A=::STRING$|                  ^|"},
    {"NoName", TypeFile("::=::LIST{}"), "ERR_DECL_TYPE_SYNTAX_1 2:8 |$TYPE::=::LIST{}$|        ^|"},
    {"WordAsName", TypeFile("::LIST=::LIST{}"), "ERR_DECL_TYPE_SYNTAX_1 2:12 |$TYPE::LIST=::LIST{}$|            ^|"},
    {"Separator", TypeFile("::A=::LIST{};"), "ERR_DECL_TYPE_SYNTAX_1 2:18 |$TYPE::A=::LIST{};$|                  ^|"},
    {"CategoryNotClosed", TypeFile("::A=::LIST{"), "ERR_DECL_TYPE_SYNTAX_1 3:0 |$END KVL VERSION=\"1.0.0\"$|^|"},
    {"NoTypeMark", TypeFile("::A=::LIST{A STRING}"),
     "ERR_DECL_TYPE_SYNTAX_1 2:25 |$TYPE::A=::LIST{A STRING}$|                         ^|"},
    {"Number", TypeFile("::A=::LIST{1}"), "ERR_DECL_TYPE_SYNTAX_1 2:17 |$TYPE::A=::LIST{1}$|                 ^|"},
    {"Umlaut", TypeFile("::A=::LIST{\xE4}"),
     "ERR_DECL_TYPE_SYNTAX_1 2:18 |$TYPE::A=::LIST{\xE4}$|                  ^|"},
    {"KeywordWithoutLiteral", TypeFile("::A=::LIST{<<A>>}"),
     "ERR_DECL_TYPE_SYNTAX_1 2:20 |$TYPE::A=::LIST{<<A>>}$|                    ^|"},
    {"QualifiedTypeWord", TypeFile("::A=::LIST{::KVL:LIST}"),
     "ERR_DECL_TYPE_SYNTAX_1 2:23 |$TYPE::A=::LIST{::KVL:LIST}$|                       ^|"},
    {"TwoQualifiers", TypeFile("::A=::LIST{::A:B:C}"),
     "ERR_DECL_TYPE_SYNTAX_1 2:23 |$TYPE::A=::LIST{::A:B:C}$|                       ^|"},
    {"LineCommentWithoutLineEnd", TypeFile("") + "//x",
     "ERR_DECL_TYPE_SYNTAX_1 3:28 |$END KVL VERSION=\"1.0.0\"$//x|"
     "                            ^|"},

    {"StrictLiteralNotClosed", std::string(kTypeHeader) + "$TYPE\n  \"a\nb\"\"",
     "ERR_DECL_TYPE_LIT_2 3:3 |  \"a|   ^|"},
    {"WeakLiteralNotClosed", TypeFile("::A=::LIST{\n\t'a''\n\n"), "ERR_DECL_TYPE_LIT_1 3:2 |\t'a''|\t ^|"},
    {"BlockCommentNotClosed", TypeFile("\n /* a"), "ERR_DECL_TYPE_COMM_1 3:3 | /* a$|   ^|"},
    {"DollarCommentNotClosed", std::string(kTypeHeader) + "$/* a\n*/ ", "ERR_DECL_PATTERN_COMM_1 3:3 |*/ |   ^|"},
    {"LiteralInTheHeaderNotClosed", "$BEGIN KVL VERSION=\"1.0.0$",
     "ERR_DECL_TYPE_LIT_2 1:20 |$BEGIN KVL VERSION=\"1.0.0$|"
     "                    ^|"},

    {"BothVersionsWrong", Versions("\"1.0.1\"", "\"1.0.1\""),
     "ERR_DECL_TYPE_HEADER_9 1:-1 |$BEGIN KVL VERSION=\"1.0.1\"$|^|"},
    {"HeaderVersionWrong", Versions("\"1.0.1\"", "\"1.0.0\""),
     "ERR_DECL_TYPE_HEADER_9 1:-1 |$BEGIN KVL VERSION=\"1.0.1\"$|^|"},
    {"FooterVersionWrong", Versions("\"1.0.0\"", "\"1.0\""),
     "ERR_DECL_TYPE_HEADER_9 3:-1 |$END KVL VERSION=\"1.0\"$ |^|"},
    {"EmptyVersion", Versions("\"\"", "\"\""), "ERR_DECL_TYPE_HEADER_9 1:-1 |$BEGIN KVL VERSION=\"\"$|^|"},
    {"VersionIsJudgedBeforeWhatFollows", Versions("\"1.0.1\"", "\"1.0.1\"") + "x",
     "ERR_DECL_TYPE_HEADER_9 1:-1 |$BEGIN KVL VERSION=\"1.0.1\"$|^|"},
};

INSTANTIATE_TEST_SUITE_P(Rows, TypeRefusalTest, testing::ValuesIn(kRefusalRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(TypeFrontEndTest, NameBeyondTheBufferIsFatal) {
    EXPECT_EQ(ParseFile(TypeFile("::" + std::string(1049216, 'A'))), nullptr);
    EXPECT_TRUE(ConsoleText().starts_with(
        "\n\nERROR: ERR_EXEC_ENVIRON_FATAL_1\nFatal error: Token buffer overflow\n\n$TYPE::AAA"));
    EXPECT_EQ(Process().errorCount, 1);
}

TEST_F(TypeFrontEndTest, MessageIsShownWhole) {
    EXPECT_EQ(ParseFile(TypeFile("::A=::STRING\t")), nullptr);
    EXPECT_EQ(ConsoleText(),
              "\n\nERROR: ERR_DECL_TYPE_SYNTAX_1\nNot specified syntax error within a Type declaration.\n\n"
              "$TYPE::A=::STRING\t$\n                  ^\nAt line 2 near position 18 of Type person.txt\n\n");
}

// A stream has no lines to show, and its columns are not counted.
TEST_F(TypeFrontEndTest, StreamIsNamedAndHasNoColumns) {
    EXPECT_EQ(ParseStream(TypeFile("\n::A=::STRING")), nullptr);
    EXPECT_EQ(ConsoleText(),
              "\n\nERROR: ERR_DECL_TYPE_SYNTAX_1\nNot specified syntax error within a Type declaration.\n\n"
              "\n^\nAt line 3 near position 0 of Type S:TYPE\n\n");
}

// --- the entry points ---

TEST_F(TypeFrontEndTest, FileGivesItsNames) {
    outside_.memory.Put("types\\person.type.txt", TypeFile("::PERSON=::LIST{}"));
    const auto schema = ParseTypeFile(kEntityType, "types\\person.type.txt");
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->entityKind, kEntityType);
    EXPECT_EQ(schema->names->name, "person.type.txt");
    EXPECT_EQ(schema->names->sourcePath, "types\\person.type.txt");
    EXPECT_EQ(schema->names->sourceFile, "person.type.txt");
    EXPECT_EQ(schema->names->sourceStream, "");
    EXPECT_EQ(schema->names->sourceDirectory, "types/");
    ASSERT_EQ(schema->declaredTypes.size(), 1u);
    EXPECT_TRUE(schema->elements.empty());
}

TEST_F(TypeFrontEndTest, StreamGivesItsNames) {
    const auto schema = ParseStream(TypeFile("::PERSON=::LIST{}"));
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->entityKind, kEntityType);
    EXPECT_EQ(schema->names->sourceStream, "S:TYPE");
    EXPECT_EQ(schema->names->sourcePath, "");
    EXPECT_EQ(schema->names->sourceFile, "");
}

TEST_F(TypeFrontEndTest, Utf8StreamIsFoldedInPlace) {
    std::string text = TypeFile("::A=::LIST{'\xC3\xA4'}");
    const auto schema = ParseTypeStream(kEntityType, "S", text, MessageContext());
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->declaredTypes.front().root.children.front().literal, "'\xE4'");
    EXPECT_EQ(text, TypeFile("::A=::LIST{'\xE4'}"));
}

TEST_F(TypeFrontEndTest, CarriageReturnsAreNoMatter) {
    EXPECT_NE(ParseFile("$BEGIN KVL\r\nVERSION\r=\r\"1.0.0\"\r$\r\n$TYPE\r\n$\r$END KVL VERSION=\"1.0.0\"$\r\n"),
              nullptr);
}

TEST_F(TypeFrontEndTest, CommentsMayStandEverywhere) {
    EXPECT_NE(ParseFile("//a\n$BEGIN/**/KVL VERSION=\"1.0.0\"$/* b */$ $\n$TYPE$/**/$::A/*\n*/=::LIST{//x\n}$" +
                        std::string(kTypeFooter) + "//end\n"),
              nullptr);
}

TEST_F(TypeFrontEndTest, EmptyFile) {
    EXPECT_EQ(ParseFile(""), nullptr);
    EXPECT_TRUE(ConsoleText().starts_with("\nERROR: ERR_EXEC_SCRIPT_FILE_8\n")) << ConsoleText();
    EXPECT_EQ(Process().errorCount, 1);
}

struct UnreadableRow {
    const char* name;
    const char* path;
    int error;  // of the reading, 0 for that of the path itself
    const char* expected;
};

class UnreadableTypeTest : public TypeFrontEndTest, public testing::WithParamInterface<UnreadableRow> {};

TEST_P(UnreadableTypeTest, IsReported) {
    outside_.memory.Put("person.txt", TypeFile(""));
    outside_.memory.PutDirectory("types");
    if (GetParam().error != 0) outside_.files.FailAt(FileOperation::ReadWhole, 1, GetParam().error);
    EXPECT_EQ(ParseTypeFile(kEntityType, GetParam().path), nullptr);
    EXPECT_TRUE(ConsoleText().starts_with(std::string("\nERROR: ") + GetParam().expected + "\n")) << ConsoleText();
    EXPECT_EQ(Process().errorCount, 1);
}

constexpr UnreadableRow kUnreadableRows[] = {
    {"Missing", "nobody.txt", 0, "ERR_EXEC_SCRIPT_FILE_1"},
    {"Directory", "types", 0, "ERR_EXEC_SCRIPT_FILE_1"},
    {"NotAllowed", "person.txt", EACCES, "ERR_EXEC_SCRIPT_FILE_1"},
    {"TooLarge", "person.txt", EFBIG, "ERR_EXEC_SCRIPT_FILE_11"},
};

INSTANTIATE_TEST_SUITE_P(Rows, UnreadableTypeTest, testing::ValuesIn(kUnreadableRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct CallerRow {
    const char* name;
    int entityKind;
    const char* expected;
};

class EmptyTypeStreamTest : public TypeFrontEndTest, public testing::WithParamInterface<CallerRow> {};

TEST_P(EmptyTypeStreamTest, IsAMissingHeaderOfTheCaller) {
    MessageContext caller;
    caller.entityName = "caller";
    caller.lineNumber = 7;
    caller.lineText = "$T ::KVL:TYPE = S$";
    caller.entityKind = GetParam().entityKind;
    std::string text;
    EXPECT_EQ(ParseTypeStream(kEntityType, "S", text, caller), nullptr);
    EXPECT_EQ(LastMessage(), std::string(GetParam().expected) + " 7:-1 |$T ::KVL:TYPE = S$|^|");
}

INSTANTIATE_TEST_SUITE_P(Rows, EmptyTypeStreamTest,
                         testing::Values(CallerRow{"MainScript", kEntityMainScript, "ERR_DECL_SCRIPT_HEADER_1"},
                                         CallerRow{"Script", kEntityMacroScript, "ERR_DECL_SCRIPT_HEADER_1"},
                                         CallerRow{"Pattern", kEntityMacroPattern, "ERR_DECL_PATTERN_HEADER_1"}),
                         [](const auto& row) { return std::string(row.param.name); });

// --- any bytes ---

// Cutting a source at every place, and breaking every byte of it, must end in a schema or in exactly one message.
TEST_F(TypeFrontEndTest, DamagedSourcesEndInOneMessage) {
    const std::string whole =
        TypeFile("/*c*/::A=::LIST{X ::B 'a''b'<<\"k\">>::Q:R Y::$P$ $/*d*/$::$Q:P$//e\n::KVL:BOOL}");
    const auto check = [this](const std::string& text) {
        if (text.empty()) return;
        ResetProcessState();
        const auto schema = ParseStream(text);
        EXPECT_EQ(Process().errorCount, schema == nullptr ? 1 : 0) << text;
    };
    for (std::size_t place = 0; place < whole.size(); ++place) {
        check(whole.substr(0, place));
        check(whole.substr(place));
        for (const char byte : {'\0', '\'', '"', '$', '/', ':', '{', '}', '\n', '\xC3', '\xFF'}) {
            std::string broken = whole;
            broken[place] = byte;
            check(broken);
        }
    }
}

}  // namespace
}  // namespace kvl
