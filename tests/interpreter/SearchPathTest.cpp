#include "LoadingTest.h"
#include "support/CaseFile.h"

namespace kvl {
namespace {

class SearchPathTest : public LoadingTest, public testing::WithParamInterface<TextCase> {
protected:
    SearchPathTest() {
        for (const char* path : {"/a/x.txt", "/b/x.txt", "/b/c/y.txt"})
            outside.memory.Put(path, "1");
        schema_.entityKind = kEntityMainScript;
    }

    // Identifier and text.
    std::string Message() const {
        const std::string& shown = outside.console.output;
        if (shown.empty()) return "";
        const std::size_t begin = shown.find(": ") + 2;
        return shown.substr(begin, shown.find("\n\n", begin) - begin);
    }

    CPatternSchema schema_;
};
KVL_INSTANTIATE_CASES(SearchPathTest, "interpreter/SearchPath.cases");

TEST_P(SearchPathTest, FindsOrTells) {
    const std::string candidates = GetParam().Line("candidates");
    ExpectSection(GetParam(), "found", FindInSearchPath(candidates, false, schema_));
    ExpectSection(GetParam(), "message", Message());
    const bool isMiss = Message().starts_with("ERR_EXEC_SCRIPT_FILE_1\n");
    const std::string loudMessage = Message();
    outside.console.output.clear();
    ExpectSection(GetParam(), "found", FindInSearchPath(candidates, true, schema_));
    EXPECT_EQ(Message(), isMiss ? "" : loudMessage);
}

TEST_F(SearchPathTest, DirectoryThatCannotBeEnteredEndsTheSearch) {
    outside.files.FailAt(FileOperation::CheckAccess, 1, EACCES);
    EXPECT_EQ(FindInSearchPath("/a/x.txt;/b/x.txt", false, schema_), "");
    EXPECT_TRUE(Message().starts_with("ERR_EXEC_SCRIPT_FILE_15\n")) << Message();
}

}  // namespace
}  // namespace kvl
