#include <sstream>

#include "support/CaseFile.h"
#include "support/TestPlatform.h"
#include "support/WrittenBytes.h"
#include "text/ProcessState.h"
#include "typeschema/CTSEntity.h"

namespace kvl {
namespace {

// "line:column |text|mark|"
std::string Show(const TextPlace& place) {
    return std::to_string(place.line) + ":" + std::to_string(place.column) + " |" + place.text + "|" + place.mark + "|";
}

class TextPlaceTest : public testing::TestWithParam<TextCase> {};
KVL_INSTANTIATE_CASES(TextPlaceTest, "typeschema/TextPlaces.cases");

// Each row is a cursor, or an offset and a token ("" for the empty one).
TEST_P(TextPlaceTest, TellsLineColumnAndMark) {
    const std::string text = BytesOf(GetParam().Line("text"));
    std::istringstream rows(GetParam()["places"]);
    std::string actual;
    for (std::string row; std::getline(rows, row);) {
        const std::size_t end = row.find(" gives");
        if (end == std::string::npos) continue;  // the rest of a line that was shown with its line feed
        row.resize(end);
        const std::size_t blank = row.find(' ');
        const int offset = std::stoi(row);
        const std::string token = blank == std::string::npos ? "" : BytesOf(row.substr(blank + 1));
        const TextPlace place = blank == std::string::npos ? LocateCursor(text, offset)
                                                           : LocateToken(text, offset, token == "\"\"" ? "" : token);
        actual += row + " gives " + Written(Show(place)) + "\n";
    }
    ExpectSection(GetParam(), "places", actual);
}

TEST(LocateInSourceTest, ReadsTheFileOnceAndReportsOneThatHasGone) {
    ResetProcessState();
    ScopedPlatform outside;
    outside.memory.Put("/home/T.txt", "::NAME\n{ X ::NAME }");
    TextPlace place;
    EXPECT_TRUE(LocateInSource("/home/T.txt", 18, "NAME", place));
    EXPECT_EQ(Show(place), "2:7 |{ X ::NAME }|      ^|");
    EXPECT_EQ(outside.files.CountOf(FileOperation::ReadWhole), 1);
    EXPECT_TRUE(LocateInSource("", 17, "NAME", place));
    EXPECT_EQ(Show(place), "1:1 ||^|");
    outside.memory.Remove("/home/T.txt");
    EXPECT_FALSE(LocateInSource("/home/T.txt", 18, "NAME", place));
    EXPECT_NE(outside.console.output.find("ERR_EXEC_SCRIPT_FILE_1\n"), std::string::npos);
}

}  // namespace
}  // namespace kvl
