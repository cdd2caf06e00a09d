// The character source under the scanners: delivery, places, folding.

#include <gtest/gtest.h>

#include <string>

#include "frontend/CScan.h"
#include "frontend/ScriptSource.h"

namespace kvl {
namespace {

std::string Place(const CScan& scan) {
    int line = 0, column = 0;
    std::string text;
    scan.GetPosition(line, column, text);
    return std::to_string(line) + ":" + std::to_string(column) + " " + text;
}

class ScriptSourceTest : public ScriptTest {
protected:
    void SetFile(std::string_view bytes) {
        outside_.memory.Put("main.kvl", bytes);
        scan_.SetFileSource("main.kvl", std::string(bytes));
    }

    CScan scan_;
};

TEST_F(ScriptSourceTest, EveryByteIsDeliveredThenTheEnd) {
    scan_.SetConstantSource(std::string_view("\0\xFF", 2));
    EXPECT_EQ(scan_.GetChar(), 0);
    EXPECT_EQ(scan_.GetChar(), 255);
    EXPECT_EQ(scan_.GetChar(), -1);
    EXPECT_EQ(scan_.GetChar(), -1);
    EXPECT_EQ(scan_.GetCharacterCount(), 4);
}

// Bytes that were given back are not counted again, and an open mark holds its place.
TEST_F(ScriptSourceTest, PlaceIsThatOfTheFurthestByte) {
    SetFile("ab\ncd");
    EXPECT_EQ(Place(scan_), "1:0 ab");
    scan_.Take(2);
    EXPECT_EQ(Place(scan_), "1:2 ab");
    scan_.SetMark(true);
    scan_.Take(2);
    EXPECT_EQ(Place(scan_), "1:2 ab");
    scan_.SetMark(false);
    scan_.UngetChars(2);
    EXPECT_EQ(Place(scan_), "2:1 cd");
    EXPECT_EQ(scan_.GetChar(), '\n');
    EXPECT_EQ(scan_.Rest(), "cd");
    EXPECT_EQ(scan_.GetCharacterCount(), 4);
    EXPECT_EQ(scan_.Take(10), "cd");
    EXPECT_EQ(scan_.GetChar(), -1);
    EXPECT_EQ(scan_.GetCharacterCount(), 6);
    EXPECT_EQ(Place(scan_), "2:2 cd");
}

TEST_F(ScriptSourceTest, EachSourceIsFoldedWhereItIsInUtf8) {
    for (const std::string source : {"\xE4\xFC", "\xC3\x84\xC3\xBC"}) {
        CScan constant, stream, file;
        std::string streamText = source;
        constant.SetConstantSource(source);
        stream.SetStreamSource(&streamText);
        file.SetFileSource("", source);
        const bool isUtf8 = source.size() > 2;
        for (const CScan* scan : {&constant, &stream, &file}) {
            EXPECT_EQ(scan->Rest(), isUtf8 ? "\xC4\xFC" : source);
            EXPECT_EQ(scan->IsUtf8Source(), isUtf8);
        }
        EXPECT_EQ(streamText, isUtf8 ? "\xC4\xFC" : source);
    }
}

}  // namespace
}  // namespace kvl
