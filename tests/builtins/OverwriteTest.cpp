// The questions before files are overwritten, asked of a console whose keys are scripted.
#include "FileScript.h"
#include "builtins/FileOperations.h"

namespace kvl {
namespace {

constexpr const char* kRunQuestion =
    "This KVL script might overwrite some files!\n\nPress key [Esc] to abort.\n"
    "Press key [A] to be ask for each file to overwrite.\n"
    "Press key [Return] to overwrite all files without being ask.\n";

std::string FileQuestion(const std::string& path) {
    return "\nDo you agree to overwrite this file?\n" + path +
           "\n\nPress key [Esc] to abort.\nPress key [Y] for YES to overwrite.\n"
           "Press key [N] for NO to not overwrite.\n"
           "Press key [Return] to overwrite all files without being ask anymore.\n";
}

struct KeyRow {
    const char* keys;
    int mode;
    const char* rest;  // of the input
};

TEST(OverwriteQuestions, TakeTheirKeys) {
    constexpr KeyRow kRunRows[] = {
        {"\x1B", kOverwriteAbort, ""},      {"\r", kOverwriteAll, ""},    {"\n", kOverwriteAll, ""},
        {"a", kOverwriteAsk, ""},           {"A", kOverwriteAsk, ""},     {"", kOverwriteAbort, ""},
        {"xynYN \ta?", kOverwriteAsk, "?"}, {"xyn", kOverwriteAbort, ""}, {"\xE1\x81\r", kOverwriteAll, ""},
    };
    constexpr KeyRow kFileRows[] = {
        {"\x1B", kOverwriteAbort, ""}, {"\r", kOverwriteAll, ""}, {"\n", kOverwriteAll, ""},
        {"y", kOverwriteAsk, ""},      {"Y", kOverwriteAsk, ""},  {"n", kOverwriteSkip, ""},
        {"N", kOverwriteSkip, ""},     {"", kOverwriteAbort, ""}, {"aAxy?", kOverwriteAsk, "?"},
    };
    CPatternSchema schema;
    for (const KeyRow& row : kRunRows) {
        ScopedPlatform outside;
        outside.console.input = row.keys;
        EXPECT_EQ(AskOverwriteRun(schema), row.mode) << row.keys;
        EXPECT_EQ(schema.overwriteMode, row.mode);
        EXPECT_EQ(outside.console.input, row.rest);
        EXPECT_EQ(outside.console.TextIn(14), kRunQuestion);
        EXPECT_EQ(outside.console.outputAtInput, kRunQuestion);
    }
    for (const KeyRow& row : kFileRows) {
        ScopedPlatform outside;
        outside.console.input = row.keys;
        EXPECT_EQ(AskOverwriteFile(schema, "/home\\a.txt"), row.mode) << row.keys;
        EXPECT_EQ(schema.overwriteMode, row.mode);
        EXPECT_EQ(outside.console.input, row.rest);
        EXPECT_EQ(outside.console.TextIn(14), FileQuestion("/home\\a.txt"));
    }
}

}  // namespace
}  // namespace kvl
