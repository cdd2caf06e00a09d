#include "LoadingTest.h"

namespace kvl {
namespace {

struct SearchRow {
    const char* name;
    std::string_view fileText;
    std::string_view found;
    std::string_view message;  // its identifier and text; empty for none
    std::string_view quietMessage = {};
};
class SearchPathTest : public LoadingTest, public testing::WithParamInterface<SearchRow> {
protected:
    SearchPathTest() {
        outside.memory.Put("/a/x.txt", "1");
        outside.memory.Put("/b/x.txt", "2");
        outside.memory.Put("/b/c/y.txt", "3");
        schema_.entityKind = kEntityMainScript;
    }

    std::string Message() const {
        const std::string& shown = outside.console.output;
        if (shown.empty()) return "";
        const std::size_t begin = shown.find(": ") + 2;
        return shown.substr(begin, shown.find("\n\n", begin) - begin);
    }

    CPatternSchema schema_;
};

constexpr std::string_view kTwoHits =
    "WARN_EXEC_SCRIPT_FILE_2\nFile x.txt exists more then once within search path /a/;/b/\nTake file /a/x.txt\nbut not "
    "/b/x.txt";
constexpr std::string_view kWrongName = "ERR_EXEC_SCRIPT_FILE_4\nFile name /a/x?.txt contains invalid character '?'";

constexpr SearchRow kSearchRows[] = {
    {"OneCandidate", "/a/x.txt", "/a/x.txt", ""},
    {"BothSeparators", "/a\\x.txt", "/a/x.txt", ""},
    {"BelowADirectory", "/b\\c/y.txt", "/b/c/y.txt", ""},
    {"SecondCandidate", "/c\\x.txt;/b\\x.txt;/b/c\\x.txt", "/b/x.txt", ""},
    {"TwoHits", "/a\\x.txt;/b\\x.txt", "/a/x.txt", kTwoHits, kTwoHits},
    {"Nowhere", "/a\\z.txt;/b\\z.txt", "",
     "ERR_EXEC_SCRIPT_FILE_1\nFile z.txt can not be found within search path /a/;/b/"},
    {"Nothing", "", "", "ERR_EXEC_SCRIPT_FILE_1\nFile  can not be found within search path "},
    {"WrongName", "/a/x?.txt;/a/x.txt", "", kWrongName, kWrongName},
    {"WrongNameBehindAHit", "/a/x.txt;/a/x?.txt", "", kWrongName, kWrongName},
};
INSTANTIATE_TEST_SUITE_P(Rows, SearchPathTest, testing::ValuesIn(kSearchRows), NameOfRow<SearchRow>);

TEST_P(SearchPathTest, FindsOrTells) {
    EXPECT_EQ(FindInSearchPath(GetParam().fileText, false, schema_), GetParam().found);
    EXPECT_EQ(Message(), GetParam().message);
}

TEST_P(SearchPathTest, IsQuietAboutAMissOnly) {
    EXPECT_EQ(FindInSearchPath(GetParam().fileText, true, schema_), GetParam().found);
    EXPECT_EQ(Message(), GetParam().quietMessage);
}

TEST_F(SearchPathTest, DirectoryThatCannotBeEnteredEndsTheSearch) {
    outside.files.FailAt(FileOperation::CheckAccess, 1, EACCES);
    EXPECT_EQ(FindInSearchPath("/a/x.txt;/b/x.txt", false, schema_), "");
    EXPECT_TRUE(Message().starts_with("ERR_EXEC_SCRIPT_FILE_15\n")) << Message();
}

}  // namespace
}  // namespace kvl
