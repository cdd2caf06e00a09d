// The methods of a directory.
#include "StaticMacroRun.h"

namespace kvl {
namespace {

class DirectoryMacros : public testing::TestWithParam<ScriptRow> {};

TEST_P(DirectoryMacros, Run) {
    StaticMacroRun run;
    run.AddPattern("FILEIN", "#D::KVL:DIRECTORY", "$D:FILE()$");
    ExpectRow(run, GetParam());
}

constexpr ScriptRow kPathRows[] = {
    {"StartsInTheWorkingDirectory", "$D ::KVL:DIRECTORY$$D$", "/work"},
    {"Relative", "$D ::KVL:DIRECTORY$$D:SET_PATH(\"in\")$$D$", "/work/in"},
    {"Absolute", "$D ::KVL:DIRECTORY$$D:SET_PATH(\"/data\")$$D$", "/data"},
    {"Empty", "$D ::KVL:DIRECTORY$$D:SET_PATH(\"\")$$D$", "/work"},
    {"Several", "$D ::KVL:DIRECTORY$$D:SET_PATH(\"in;/data;\")$$D$", "/work/in;/data;/work"},
    {"ByVariable", "$S ::STREAM = \"in\"$$D ::KVL:DIRECTORY$$D:SET_PATH(S)$$D$", "/work/in"},
    {"Child", "$D ::KVL:DIRECTORY$$D:SET_PATH(\"a;b\")$$D:SUB ::KVL:DIRECTORY$$D:SUB:SET_PATH(\"c;/d\")$$D:SUB$",
     "/work/a/c;/work/b/c;/d"},
    {"FileCandidates", "$D ::KVL:DIRECTORY$$D:SET_PATH(\"a;b\")$$T ::STREAM = D:FILE(\"x.txt\")$$T$",
     "/work/a\\x.txt;/work/b\\x.txt"},
    {"MakeItself", "$D ::KVL:DIRECTORY$$D:SET_PATH(\"a\")$$T ::STREAM = D:MKDIR()$$T$", "/work/a/"},
    {"MakeBelow", "$D ::KVL:DIRECTORY$$T ::STREAM = D:MKDIR(\"a/b\")$$T$", "/work/a/b"},
    {"MakeAbsolute", "$D ::KVL:DIRECTORY$$T ::STREAM = D:MKDIR(\"/data/b\")$$T$", "/data/b"},
    {"MakeByStaticMacro", "$D ::KVL:DIRECTORY$$KVL:DIRECTORY:MKDIR(D, \"a\")$", "/work/a"},
};
INSTANTIATE_TEST_SUITE_P(Paths, DirectoryMacros, testing::ValuesIn(kPathRows), RowName);

constexpr ScriptRow kFaultRows[] = {
    {"FileWithoutName", "$D ::KVL:DIRECTORY$$D:FILE()$", "", "ERR_DECL_SCRIPT_MACRO_2 3"},
    {"FileWithoutNameInAPattern", "$D ::KVL:DIRECTORY$$FILEIN(D)$", "", "ERR_DECL_PATTERN_MACRO_2 3"},
    {"PathsAsTwoArguments", "$D ::KVL:DIRECTORY$$D:SET_PATH(\"a\", \"b\")$", "", "ERR_DECL_SCRIPT_MACRO_2 3"},
    {"StaticMacroWithOne", "$D ::KVL:DIRECTORY$$KVL:DIRECTORY:MKDIR(D)$", "", "ERR_DECL_SCRIPT_MACRO_2 3"},
    {"NumberAsPath", "$D ::KVL:DIRECTORY$$D:SET_PATH(1)$", "", "ERR_DECL_SCRIPT_MACRO_3 3"},
    {"StringAsPath", "$S ::STRING$$D ::KVL:DIRECTORY$$D:SET_PATH(S)$", "", "ERR_DECL_SCRIPT_MACRO_3 3"},
    {"StreamAsDirectory", "$S ::STREAM$$KVL:DIRECTORY:MKDIR(S, \"a\")$", "", "ERR_DECL_SCRIPT_MACRO_3 3"},
    {"StreamAsReceiver", "$S ::STREAM$$S:MKDIR()$", "", "ERR_DECL_SCRIPT_MACRO_3 3"},
    {"UnknownReceiver", "$Q:MKDIR()$", "", "ERR_DECL_SCRIPT_VAR_5 3"},
};
INSTANTIATE_TEST_SUITE_P(Faults, DirectoryMacros, testing::ValuesIn(kFaultRows), RowName);

TEST(DirectoryMake, MakesTheWholeChain) {
    StaticMacroRun run;
    ASSERT_TRUE(run.Execute("$D ::KVL:DIRECTORY$$D:SET_PATH(\"out\")$$D:MKDIR(\"a\\\\b\")$"))
        << run.outside.console.output;
    EXPECT_TRUE(run.outside.memory.IsDirectory("/work/out/a/b"));
}

TEST(DirectoryMake, FailsWhereAFileIs) {
    StaticMacroRun run;
    run.outside.memory.Put("/work/taken", "text");
    EXPECT_FALSE(run.Execute("$D ::KVL:DIRECTORY$$D:MKDIR(\"taken\")$"));
    EXPECT_EQ(run.faults, "ERR_EXEC_ENVIRON_FATAL_1 3");
}

// Neither has words of its own; the end of the run tells the place.
TEST(DirectoryPaths, APathThatIsTooLongFails) {
    StaticMacroRun run;
    EXPECT_FALSE(run.Execute("$D ::KVL:DIRECTORY$$D:SET_PATH(\"" + std::string(300, 'a') + "\")$"));
    EXPECT_EQ(run.faults, "");
}

TEST(DirectoryPaths, AChildWithoutItsParentFails) {
    StaticMacroRun run;
    EXPECT_FALSE(run.Execute("$D:SUB ::KVL:DIRECTORY$$D:SUB:SET_PATH(\"a\")$"));
    EXPECT_EQ(run.faults, "");
    EXPECT_EQ(run.root->variableTable.Find("D:SUB")->GetText(), "");
}

}  // namespace
}  // namespace kvl
