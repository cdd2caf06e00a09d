// Reading, writing, copying and loading files: what is told on the way, and what goes wrong.
#include <cerrno>

#include "FileScript.h"
#include "builtins/FileOperations.h"
#include "messages/Log.h"

namespace kvl {
namespace {

class FileFaults : public testing::TestWithParam<ScriptRow> {};

// The rows' outputs are texts that the console shows.
TEST_P(FileFaults, AreTold) {
    FileScript run;
    const std::vector<std::string> before = run.outside.memory.FilePaths();
    EXPECT_FALSE(run.Execute(GetParam().body));
    EXPECT_EQ(run.faults, GetParam().faults);
    EXPECT_TRUE(run.Shows(GetParam().output)) << run.outside.console.output;
    EXPECT_FALSE(run.Shows("Created Successfully. "));
    EXPECT_EQ(run.outside.memory.FilePaths().size(), before.size() + 1);  // the main script
    EXPECT_EQ(run.outside.memory.Get("readOnly.txt"), "old");
}

#define KVL_TYPES "$::PERSON ::KVL:TYPE = D:FILE(\"PERSON.txt\")$\n"

constexpr ScriptRow kReading[] = {
    {"Missing", "$S ::STREAM$$S = W:FILE(\"x/none.txt\")$",
     "File none.txt can not be found within search path /work/one/x/;/work/two/x/", "ERR_EXEC_SCRIPT_FILE_1 3"},
    {"InvalidName", "$S ::STREAM$$S = D:FILE(\"a?b.txt\")$", "File name /work/a?b.txt contains invalid character '?'",
     "ERR_EXEC_SCRIPT_FILE_4 3"},
    {"WriteOnly", "$S ::STREAM$$S = D:FILE(\"writeOnly.txt\")$", "can not be read, because properties are set to write",
     "ERR_EXEC_SCRIPT_FILE_14 3"},
    {"Directory", "$S ::STREAM$$S = D:FILE(\"dir\")$", "File /work/dir can not be found", "ERR_EXEC_SCRIPT_FILE_1 3"},
    {"BelowAFile", "$S ::STREAM$$S = D:FILE(\"a.txt/b.txt\")$", "File b.txt can not be found",
     "ERR_EXEC_SCRIPT_FILE_1 3"},
    {"EmptyScript", "$R() ::KVL:SCRIPT = D:FILE(\"empty.txt\")$", "File /work/empty.txt is empty",
     "ERR_EXEC_SCRIPT_FILE_8"},
    {"EmptyType", "$::PERSON ::KVL:TYPE = D:FILE(\"empty.txt\")$", "File /work/empty.txt is empty",
     "ERR_EXEC_SCRIPT_FILE_8"},
    {"EmptyData", KVL_TYPES "$IN ::PERSON = D:FILE(\"empty.txt\")$", "File /work/empty.txt is empty",
     "ERR_EXEC_SCRIPT_FILE_8 4"},
    {"MissingData", KVL_TYPES "$IN ::PERSON = D:FILE(\"none.txt\")$", "none.txt", "ERR_EXEC_SCRIPT_FILE_1 4"},
    {"WriteOnlyData", KVL_TYPES "$IN ::PERSON = D:FILE(\"writeOnly.txt\")$", "writeOnly.txt",
     "ERR_EXEC_SCRIPT_FILE_14 4"},
    {"DataOfAnotherShape", KVL_TYPES "$IN ::PERSON = D:FILE(\"a.txt\")$", "Data a.txt", "ERR_PARSE_TYPE_ELEM_1 1"},
    {"ScriptOfAnotherName", "$Q() ::KVL:SCRIPT = D:FILE(\"R.txt\")$",
     "variable name Q must be identical to Script name", "ERR_DECL_SCRIPT_VAR_12 3"},
    {"PatternOfAnotherName", "$N:Q() ::KVL:PATTERN = D:FILE(\"P.txt\")$",
     "variable name N:Q must be identical to Pattern name", "ERR_DECL_SCRIPT_VAR_13 3"},
    {"TypeOfAnotherName", "$::Q ::KVL:TYPE = D:FILE(\"PERSON.txt\")$", "variable name Q must be identical to Type name",
     "ERR_DECL_SCRIPT_VAR_11 3"},
    {"ScriptAsPattern", "$R() ::KVL:PATTERN = D:FILE(\"R.txt\")$", "PATTERN_HEADER_6", "ERR_DECL_PATTERN_HEADER_6 1"},
    {"TypeAsScript", "$R() ::KVL:SCRIPT = D:FILE(\"PERSON.txt\")$", "ERROR", "ERR_DECL_SCRIPT_SYNTAX_1 2"},
    {"DataAsType", "$::PERSON ::KVL:TYPE = D:FILE(\"data.txt\")$", "ERROR", "ERR_DECL_TYPE_SYNTAX_1 1"},
};
INSTANTIATE_TEST_SUITE_P(Reading, FileFaults, testing::ValuesIn(kReading), RowName);

constexpr ScriptRow kWriting[] = {
    {"ReadOnly", "$S ::STREAM$$D:FILE(\"readOnly.txt\") = S$", "can not be overwritten, because properties are set to",
     "ERR_EXEC_SCRIPT_FILE_3 3"},
    {"Directory", "$S ::STREAM$$D:FILE(\"dir\") = S$", "Fatal error: /work\\dir, Is a directory",
     "ERR_EXEC_ENVIRON_FATAL_1 3"},
    {"BelowAFile", "$S ::STREAM$$D:FILE(\"a.txt/b.txt\") = S$", "Can not create directory /work/a.txt/",
     "ERR_EXEC_ENVIRON_FATAL_1 3, ERR_EXEC_SCRIPT_FILE_6 3"},
    {"InvalidDirectory", "$S ::STREAM$$D:FILE(\"p?/b.txt\") = S$",
     "Directory name /work/p?/ contains invalid character", "ERR_EXEC_SCRIPT_FILE_7 3, ERR_EXEC_SCRIPT_FILE_6 3"},
    {"MissingDrive", "$X ::KVL:DIRECTORY$$X:SET_PATH(\"q:/x\")$$S ::STREAM$$X:FILE(\"b.txt\") = S$",
     "Can not create directory q:/x", "ERR_EXEC_SCRIPT_FILE_6 3"},
    {"CopyOfAWriteOnlyFile", "$D:FILE(\"out.txt\") = D:FILE(\"writeOnly.txt\")$", "writeOnly.txt can not be read",
     "ERR_EXEC_SCRIPT_FILE_14 3"},
};
INSTANTIATE_TEST_SUITE_P(Writing, FileFaults, testing::ValuesIn(kWriting), RowName);

// A copy that goes wrong has its message, and the script goes on.
TEST(FileCopies, StopNothing) {
    FileScript run;
    EXPECT_TRUE(
        run.Execute("$D:FILE(\"readOnly.txt\") = D:FILE(\"a.txt\")$\n$D:FILE(\"out.txt\") = D:FILE(\"a.txt\")$"));
    EXPECT_EQ(run.faults, "ERR_EXEC_SCRIPT_FILE_3 3");
    EXPECT_EQ(run.outside.memory.Get("readOnly.txt"), "old");
    EXPECT_EQ(run.outside.memory.Get("out.txt"), "alpha");
    EXPECT_FALSE(run.Shows("Created Successfully. "));
}

TEST(FileCopies, OfMissingFilesMakeNoDirectory) {
    FileScript run;
    EXPECT_TRUE(run.Execute("$D:FILE(\"new/b.txt\") = D:FILE(\"none.txt\")$"));
    EXPECT_FALSE(run.outside.memory.Has("new"));
}

struct FailingRow {
    FileOperation operation;
    int error;
    const char* faults;
};

TEST(FileWrites, ThatFailLeaveTheOldFile) {
    constexpr FailingRow kRows[] = {
        {FileOperation::OpenWriter, EACCES, "ERR_EXEC_SCRIPT_FILE_10 3"},
        {FileOperation::OpenWriter, EROFS, "ERR_EXEC_ENVIRON_FATAL_1 3"},
        {FileOperation::Write, ENOSPC, "ERR_EXEC_SCRIPT_FILE_12 3"},
        {FileOperation::Commit, EIO, "ERR_EXEC_SCRIPT_FILE_12 3"},
    };
    for (const FailingRow& row : kRows) {
        FileScript run;
        run.outside.files.FailAt(row.operation, 1, row.error);
        EXPECT_FALSE(run.Execute("$S ::STREAM = \"new\"$$D:FILE(\"a.txt\") = S$"));
        EXPECT_EQ(run.faults, row.faults);
        EXPECT_EQ(run.outside.memory.Get("a.txt"), "alpha");
        EXPECT_FALSE(run.Shows("Created Successfully. "));
    }
}

TEST(FileReads, ThatFailLeaveTheStream) {
    FileScript run;
    run.outside.files.FailAt(FileOperation::ReadWhole, 2, EIO);  // the first reads the main script
    EXPECT_FALSE(run.Execute("$S ::STREAM = \"before\"$$S = D:FILE(\"a.txt\")$"));
    EXPECT_EQ(run.faults, "ERR_EXEC_SCRIPT_FILE_11 3");
    EXPECT_EQ(run.ValueOf("S"), "before");
}

TEST(FileReads, WarnOfSeveralHitsAndTakeTheFirst) {
    FileScript run;
    EXPECT_TRUE(run.Execute("$S ::STREAM$$S = W:FILE(\"a.txt\")$"));
    EXPECT_EQ(run.ValueOf("S"), "first");
    EXPECT_TRUE(
        run.Shows("WARNING: WARN_EXEC_SCRIPT_FILE_2\nFile a.txt exists more then once within search path "
                  "/work/one/;/work/two/\nTake file /work/one/a.txt\nbut not /work/two/a.txt"))
        << run.outside.console.output;
}

// --- what is told when all goes well ---

TEST(FileReport, OfAWrittenFile) {
    FileScript run;
    EXPECT_TRUE(run.Execute("$S ::STREAM = \"x\"$$D:FILE(\"out.txt\") = S$"));
    EXPECT_TRUE(run.outside.console.output.ends_with("File: /work/out.txt\n\nCreated Successfully. \n\n"));
}

struct ProgressRow {
    const char* body;
    const char* shown;
};

TEST(FileReport, OfLoading) {
    constexpr ProgressRow kRows[] = {
        {"$R() ::KVL:SCRIPT = D:FILE(\"R.txt\")$",
         "\nParsing File R.txt\n( /work/R.txt )\nMacro Script File Parsed Successfully. \n"},
        {"$P() ::KVL:PATTERN = D:FILE(\"P.txt\")$",
         "\nParsing File P.txt\n( /work/P.txt )\nMacro Pattern File Parsed Successfully. \n"},
        {"$S ::STREAM$$S = D:FILE(\"R.txt\")$$R() ::KVL:SCRIPT = S$",
         "\nParsing Stream S\nMacro Script Parsed Successfully. \n"},
        {"$::PERSON ::KVL:TYPE = D:FILE(\"PERSON.txt\")$", "\nType File Parsed Successfully. \n"},
        {"$S ::STREAM$$S = D:FILE(\"PERSON.txt\")$$::PERSON ::KVL:TYPE = S$",
         "\nType Parsed Successfully. \n\nType Schema:\n"},
        {KVL_TYPES "$IN ::PERSON = D:FILE(\"data.txt\")$",
         "\nParsing File data.txt\n( /work/data.txt )\nData File Parsed Successfully. \n"
         "\nCreate Variable IN::PERSON From data.txt\n"},
        {KVL_TYPES "$S ::STREAM = \"bob rome\"$$IN ::PERSON = S$",
         "\nParsing Stream S\nData Stream Parsed Successfully. \n\nCreate Variable IN::PERSON From S\n"},
    };
    for (const ProgressRow& row : kRows) {
        FileScript run;
        EXPECT_TRUE(run.Execute(row.body));
        EXPECT_TRUE(run.outside.console.output.ends_with(row.shown)) << run.outside.console.output;
    }
}

TEST(FileReport, AFileBehindAStreamIsNoStreamAnyMore) {
    FileScript run;
    EXPECT_TRUE(
        run.Execute(KVL_TYPES "$S ::STREAM = \"bob rome\"$$A ::PERSON = S$$B ::PERSON = D:FILE(\"data.txt\")$"));
    EXPECT_TRUE(run.outside.console.output.ends_with(
        "Data File Parsed Successfully. \n\nCreate Variable B::PERSON From data.txt\n"));
}

TEST(FileReport, LogGetsTheElementsOfATypeFromAStream) {
    FileScript run;
    ASSERT_TRUE(OpenLog("/work/x.log.txt"));
    EXPECT_TRUE(run.Execute("$S ::STREAM$$S = D:FILE(\"WORDS.txt\")$$::WORDS ::KVL:TYPE = S$$D:FILE(\"o.txt\") = S$"));
    const std::string log = run.outside.memory.Get("/work/x.log.txt");
    EXPECT_NE(log.find("\nType Schema:\n\nType Schema WORDS\n0    BEGIN ::WORDS::LIST\n"), std::string::npos) << log;
    EXPECT_NE(log.find("File: /work/o.txt\n\nCreated Successfully. \n\n"), std::string::npos) << log;
    EXPECT_FALSE(run.Shows("0    BEGIN"));
}

TEST(FileDumps, OfDataAndWrittenFilesOnly) {
    FileScript run;
    Process().dumpsEnabled = true;
    EXPECT_TRUE(run.Execute(KVL_TYPES "$IN ::PERSON = D:FILE(\"data.txt\")$$S ::STREAM$$S = D:FILE(\"a.txt\")$"
                                      "$D:FILE(\"out.txt\") = S$$D:FILE(\"copy.txt\") = D:FILE(\"a.txt\")$"));
    std::string dumps;
    for (const std::string& path : run.outside.memory.FilePaths())
        if (path.ends_with(".dump")) dumps += path + ";";
    EXPECT_EQ(dumps, "/work/data.txt.dump;/work/out.txt.dump;");
}

// A source in UTF-8 is folded in the variable that held it; data is not.
TEST(FileLoading, FoldsTheSourceInItsStream) {
    FileScript run;
    run.outside.memory.Put("U.txt", SourceText("PATTERN U()", "\xC3\xA4\n"));
    EXPECT_TRUE(run.Execute("$S ::STREAM$$S = D:FILE(\"U.txt\")$$U() ::KVL:PATTERN = S$$D:FILE(\"out.txt\") = U()$"));
    EXPECT_EQ(run.ValueOf("S"), SourceText("PATTERN U()", "\xE4\n"));
    EXPECT_EQ(run.outside.memory.Get("out.txt"), "\xC3\xA4\r\n");
}

TEST(FileLoading, UnknownTypesAreTold) {
    FileScript run;
    ASSERT_TRUE(run.Execute("$S ::STREAM$$::EMPTY ::KVL:TYPE$"));
    EXPECT_FALSE(LoadInstanceStream(*run.root, "S", "text", "NONE", "IN"));
    EXPECT_FALSE(LoadInstanceStream(*run.root, "S", "text", "EMPTY", "IN"));
    EXPECT_FALSE(LoadInstanceFile(*run.root, "/work/a.txt", "S", "IN"));
    EXPECT_TRUE(run.Shows("ERR_DECL_SCRIPT_VAR_3\nVariable type ::NONE is not declared."));
    EXPECT_TRUE(run.Shows("ERR_DECL_SCRIPT_VAR_3\nVariable type ::EMPTY is not declared."));
    EXPECT_TRUE(run.Shows("ERR_DECL_SCRIPT_PARAM_5\nParameter name S already in use"));
}

}  // namespace
}  // namespace kvl
