// What the script front end refuses: the message, and the place it points to.

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "frontend/ScriptSource.h"

namespace kvl {
namespace {

class ScriptFaultTest : public ScriptTest, public testing::WithParamInterface<TextCase> {
protected:
    // "ERR_... at line:column" of the one message about the source as a file of this kind.
    std::string FaultIn(int entityKind, const std::string& entity) {
        Shown().clear();
        const int errors = Process().errorCount;
        EXPECT_FALSE(CompileFile(BytesOf(GetParam().Line("source")), entityKind));
        EXPECT_EQ(Process().errorCount, errors + 1);
        const std::regex form("\n\nERROR: (\\w+)\n[^]*\\^\nAt line (\\d+) near position (\\d+) of " + entity + " [^]*");
        std::smatch parts;
        return std::regex_match(Shown(), parts, form) ? parts.format("$1 at $2:$3") : Shown();
    }
};
KVL_INSTANTIATE_CASES(ScriptFaultTest, "frontend/ScriptFaults.cases");

// Once in a script, by the twin of its message in a pattern, and not at all in a fragment.
TEST_P(ScriptFaultTest, IsReported) {
    ExpectSection(GetParam(), "fault", FaultIn(kEntityMacroScript, "Script"));
    const std::string twin = std::regex_replace(GetParam().Line("fault"), std::regex("DECL_SCRIPT"), "DECL_PATTERN");
    EXPECT_EQ(FaultIn(kEntityMacroPattern, "Pattern"), twin);
    Shown().clear();
    EXPECT_FALSE(CompileConstant(BytesOf(GetParam().Line("source"))));
    EXPECT_EQ(Process().errorCount, 2);
    EXPECT_EQ(Shown(), "\n");
}

TEST_F(ScriptTest, LineAndMarkOfAFaultAreShown) {
    EXPECT_FALSE(CompileFile("a\n\t$A + B$\r\nc"));
    EXPECT_NE(Shown().find("\n\n\t$A + B$\r\n      ^\nAt line 2 near position 6 of Script "), std::string::npos)
        << Shown();
    EXPECT_FALSE(CompileStream("a\n$A + B$"));
    EXPECT_NE(Shown().find("\n\n\n^\nAt line 2 near position 0 of Script STREAM\n"), std::string::npos) << Shown();
}

// Any bytes give an answer, and a rejected source one message.
TEST_F(ScriptTest, AllBytesAtAllPlacesOfACommand) {
    const std::string models[] = {"a$X = \"b\"$\n", "$BEGIN ALL A$", "$X ::T[1] = (::U) M(1.5e+5, L[])$", "$/*x*/$"};
    for (const std::string& model : models) {
        for (std::size_t place = 0; place <= model.size(); ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string source = model;
                source.insert(place, 1, static_cast<char>(byte));
                list_ = CommandList();
                const int errors = Process().errorCount;
                const bool accepted = CompileStream(source);
                EXPECT_EQ(Process().errorCount - errors, accepted ? 0 : 1) << source;
            }
        }
    }
}

// What is kept of each byte that has no meaning of its own where it stands.
TEST_F(ScriptTest, EveryByteInEveryPlace) {
    const std::string letters = "\xA7\xA9\xB0\xB5\xC4\xD6\xDC\xDF\xE4\xF6\xFC";
    for (int code = 0; code < 256; ++code) {
        const std::string byte(1, static_cast<char>(code));
        const std::string folded = code == 0xC2 || code == 0xC3 ? "" : byte;
        const bool isVisible = (code > 0x20 && code < 0x7F) || letters.find(byte) != std::string::npos;
        const bool isText = isVisible || byte == " " || byte == "\t" || byte == "\n";
        list_ = CommandList();
        if (byte != "$") {
            ASSERT_TRUE(CompileStream("a" + byte + "c")) << code;
            EXPECT_EQ(list_.commands[0].streamText, isText ? "a" + byte + "c" : "ac") << code;
        }
        list_ = CommandList();
        if (byte != "\"" && byte != "\n") {
            ASSERT_TRUE(CompileStream("$X = \"a" + byte + "c\"$")) << code;
            EXPECT_EQ(list_.commands[0].sides->operand2, "a" + folded + "c") << code;
        }
        list_ = CommandList();
        ASSERT_TRUE(CompileStream("$/*" + byte + "*/$$BEGIN COMMENT$" + byte + "$END COMMENT$")) << code;
        EXPECT_EQ(list_.commands[0].streamText, "$/*" + folded + "*/$") << code;
        EXPECT_EQ(list_.commands[2].streamText, folded) << code;
        list_ = CommandList();
        if (!isVisible && byte != "\n") {
            ASSERT_TRUE(CompileStream("$A" + byte + ":B$")) << code;
            EXPECT_EQ(list_.commands[0].placeholderName, "A:B") << code;
        }
    }
}

}  // namespace
}  // namespace kvl
