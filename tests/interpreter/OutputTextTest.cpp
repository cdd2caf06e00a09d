#include "interpreter/OutputText.h"

#include <sstream>

#include "support/CaseFile.h"
#include "support/WrittenBytes.h"
#include "text/Replace.h"
#include "text/Utf8.h"

namespace kvl {
namespace {

// "|text| ink |stripped|": whether the last line has ink, and the text without its blanks where it has none.
std::string Outcome(const std::string& written, std::size_t step) {
    const std::string text = BytesOf(written);
    OutputText output;
    for (std::size_t at = 0; at < text.size(); at += step)
        output.Append(std::string_view(text).substr(at, step));
    const char* kind = output.IsLastLineBlank() ? "blank" : "ink";
    output.StripLastLine();
    return "|" + written + "| " + kind + " |" + ReplaceAll(Written(output.Text()), "\n", "{{0A}}") + "|\n";
}

TEST(OutputLines, AreStrippedWhereTheyAreBlank) {
    const TextCase lines = ReadCases("interpreter/OutputLines.cases").front();
    for (const std::size_t step : {1U, 100U}) {
        std::istringstream rows(lines["rows"]);
        std::string outcome;
        for (std::string row; std::getline(rows, row);)
            outcome += Outcome(row.substr(1, row.find('|', 1) - 1), step);
        ExpectSection(lines, "rows", outcome);
    }
}

TEST(OutputText, ValueHasCrLfAndNoCarriageReturnOfItsOwn) {
    OutputText output;
    output.Append("<");
    output.AppendValue("a\r\nb\n\rc\r ");
    EXPECT_EQ(output.Text(), "<a\r\nb\r\nc ");
    EXPECT_FALSE(output.IsLastLineBlank());
    output.AppendValue("\n \r");
    EXPECT_TRUE(output.IsLastLineBlank());
}

TEST(OutputText, EncodedLetterIsStillInk) {
    OutputText output;
    output.Append("a\r\n\xE4");
    output.EncodeUtf8();
    EXPECT_EQ(output.Text(), "a\r\n\xC3\xA4");
    EXPECT_FALSE(output.IsLastLineBlank());
}

TEST(OutputText, LineBeginsBehindEncodedLetters) {
    OutputText output;
    output.Append("\xE4\xF6\xFC\n  ");
    output.EncodeUtf8();
    output.StripLastLine();
    EXPECT_EQ(output.Text(), "\xC3\xA4\xC3\xB6\xC3\xBC\n");
}

// The plain way: every step looks at the whole text.
class PlainOutput {
public:
    void Append(std::string_view text) { text_ += text; }
    void Encode() { EncodeSpecialLetters(text_, 0); }
    const std::string& Text() const { return text_; }

private:
    std::string text_;
};

// All sequences of pieces that cut and join the bytes of UTF-8 sequences, encoded at every other step or at each.
TEST(OutputText, EncodingInStepsIsEncodingTheWhole) {
    constexpr std::string_view kPieces[] = {"\xE4",     "\xA4",         "\xA7",         "\xC3",     "\xC3\xA4",
                                            "\xE2\x82", "\xF0\x9F\x98", "\x80\x80\x80", "\xF0\xA7", "a\n"};
    constexpr std::size_t kCount = std::size(kPieces), kLength = 4;
    for (std::size_t code = 0; code < kCount * kCount * kCount * kCount; ++code) {
        for (const std::size_t stride : {1U, 2U}) {
            OutputText output;
            PlainOutput plain;
            for (std::size_t step = 0, rest = code; step < kLength; ++step, rest /= kCount) {
                output.Append(kPieces[rest % kCount]);
                plain.Append(kPieces[rest % kCount]);
                if (step % stride != 0) continue;
                output.EncodeUtf8();
                plain.Encode();
            }
            ASSERT_EQ(output.Text(), plain.Text()) << "code " << code << " stride " << stride;
        }
    }
}

}  // namespace
}  // namespace kvl
