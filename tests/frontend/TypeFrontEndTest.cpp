// Every reason for which a type is rejected, with its message and place; the two entry points; what they set.
#include <gtest/gtest.h>

#include "frontend/TypeSupport.h"

namespace kvl {
namespace {

class TypeFaultTest : public TypeFrontEndTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(TypeFaultTest, "frontend/TypeFaults.cases");

TEST_P(TypeFaultTest, IsReportedOnceAtItsPlace) {
    EXPECT_EQ(ParseFile(BytesOf(GetParam().Line("source"))), nullptr);
    ExpectSection(GetParam(), "fault", Written(LastMessage()));
    EXPECT_EQ(Process().errorCount, 1);
}

TEST_F(TypeFrontEndTest, NameBeyondTheBufferIsFatal) {
    EXPECT_EQ(ParseFile(TypeFile("::" + std::string(1049216, 'A'))), nullptr);
    EXPECT_TRUE(ConsoleText().starts_with(
        "\n\nERROR: ERR_EXEC_ENVIRON_FATAL_1\nFatal error: Token buffer overflow\n\n$TYPE::AAA"));
    EXPECT_EQ(Process().errorCount, 1);
}

// A stream has no lines to show, and its columns are not counted.
TEST_F(TypeFrontEndTest, StreamIsNamedAndHasNoColumns) {
    EXPECT_EQ(ParseStream(TypeFile("\n::A=::STRING")), nullptr);
    EXPECT_EQ(ConsoleText(),
              "\n\nERROR: ERR_DECL_TYPE_SYNTAX_1\nNot specified syntax error within a Type declaration.\n\n"
              "\n^\nAt line 3 near position 0 of Type S:TYPE\n\n");
}

// --- the entry points ---

TEST_F(TypeFrontEndTest, CarriageReturnsAreNoMatter) {
    EXPECT_NE(ParseFile("$BEGIN KVL\r\nVERSION\r=\r\"1.0.0\"\r$\r\n$TYPE\r\n$\r$END KVL VERSION=\"1.0.0\"$\r\n"),
              nullptr);
}

TEST_F(TypeFrontEndTest, CommentsMayStandEverywhere) {
    EXPECT_NE(ParseFile("//a\n$BEGIN/**/KVL VERSION=\"1.0.0\"$/* b */$ $\n$TYPE$/**/$::A/*\n*/=::LIST{//x\n}$" +
                        std::string(kTypeFooter) + "//end\n"),
              nullptr);
}

TEST_F(TypeFrontEndTest, UnreadableFilesAreReported) {
    outside_.memory.Put("empty.txt", "");
    for (const auto& [path, expected] :
         {std::pair{"nobody.txt", "ERR_EXEC_SCRIPT_FILE_1"}, {"empty.txt", "ERR_EXEC_SCRIPT_FILE_8"}}) {
        outside_.console.output.clear();
        EXPECT_EQ(ParseTypeFile(kEntityType, path), nullptr);
        EXPECT_TRUE(ConsoleText().starts_with(std::string("\nERROR: ") + expected + "\n")) << ConsoleText();
    }
    EXPECT_EQ(Process().errorCount, 2);
}

TEST_F(TypeFrontEndTest, EmptyStreamIsAMissingHeaderOfTheCaller) {
    for (const int kind : {kEntityMainScript, kEntityMacroScript, kEntityMacroPattern}) {
        MessageContext caller;
        caller.lineNumber = 7;
        caller.lineText = "$T ::KVL:TYPE = S$";
        caller.entityKind = kind;
        std::string text;
        EXPECT_EQ(ParseTypeStream(kEntityType, "S", text, caller), nullptr);
        EXPECT_EQ(LastMessage(), std::string("ERR_DECL_") + (IsScriptKind(kind) ? "SCRIPT" : "PATTERN") +
                                     "_HEADER_1 7:-1 |$T ::KVL:TYPE = S$|^|");
    }
}

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
