#include "text/Paths.h"

#include <gtest/gtest.h>

#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

struct PartsRow {
    std::string_view path;
    std::string_view parts[6];  // by mode
};

constexpr PartsRow kPartsRows[] = {
    {"", {"", "", "", "", "", ""}},
    {"a.txt", {"", "a", ".txt", "a.txt", "a.txt", ""}},
    {"d\\e/x.kvl.log.txt", {"d/e/", "x.kvl.log", ".txt", "x.kvl.log.txt", "d/e/x.kvl.log.txt", ""}},
    {"d.x/file", {"d.x/", "file", "", "file", "d.x/file", ""}},
    {"d\\e\\", {"d/e/", "", "", "", "d/e/", ""}},
    {".profile", {"", "", ".profile", ".profile", ".profile", ""}},
    {"C:\\d\\a.b", {"C:/d/", "a", ".b", "a.b", "/d/a.b", "C:"}},
    {"D:a.b", {"D:", "a", ".b", "a.b", "D:a.b", "D:"}},
    {"1:a", {"", "1:a", "", "1:a", "1:a", ""}},
};

TEST(PathsTest, PartsByMode) {
    for (const PartsRow& row : kPartsRows) {
        ResetProcessState();
        // The drive of the main script is left out where a path is shown.
        if (row.path.starts_with("C:")) Process().mainScriptDrive = "C:";
        for (int mode = 0; mode < 6; ++mode)
            EXPECT_EQ(PathPart(row.path, PathMode{mode}), row.parts[mode]) << row.path << " " << mode;
    }
    ResetProcessState();
}

TEST(PathsTest, Normalize) {
    EXPECT_EQ(NormalizePath("a\\\\/b///c"), "a/b/c");
    EXPECT_EQ(NormalizePath("//"), "/");
    EXPECT_EQ(NormalizePath(""), "");
}

struct AbsoluteRow {
    const char* path;
    bool isAbsolute;
    const char* expected;
};

constexpr AbsoluteRow kAbsoluteRows[] = {
    {"", false, "/home"},
    {".", false, "/home"},
    {"a\\b", false, "/home/a/b"},
    {"a/", false, "/home/a/"},
    {"..", false, "/"},
    {"../../../a", false, "/a"},
    {"/", true, "/"},
    {"\\x\\.\\y\\..", true, "/x"},
    {"//a//b//", true, "/a/b/"},
    {"a/../", false, "/home/"},
    {"...", false, "/home/..."},
    {"C:\\a\\..\\b", true, "C:/b"},
    {"c:", true, "c:/"},
};

TEST(PathsTest, MakeAbsolute) {
    const ScopedPlatform outside;
    for (const AbsoluteRow& row : kAbsoluteRows) {
        std::string path = row.path;
        EXPECT_EQ(IsAbsolutePath(path), row.isAbsolute) << row.path;
        EXPECT_TRUE(ResolveAbsolutePath(path)) << row.path;
        EXPECT_EQ(path, row.expected);
    }
}

TEST(PathsTest, AbsolutePathHasALongestLength) {
    const ScopedPlatform outside;
    std::string path = std::string(kLongestPath - std::string_view("/home/").size(), 'x');
    EXPECT_TRUE(ResolveAbsolutePath(path));
    EXPECT_EQ(path.size(), kLongestPath);
    path += 'x';
    const std::string before = path;
    EXPECT_FALSE(ResolveAbsolutePath(path));
    EXPECT_EQ(path, before);
}

}  // namespace
}  // namespace kvl
