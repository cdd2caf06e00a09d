// Reading, writing, copying and loading files: what is told on the way, and what goes wrong.
#include <cerrno>

#include "FileScript.h"
#include "builtins/FileOperations.h"
#include "messages/Log.h"
#include "support/CaseFile.h"

namespace kvl {
namespace {

const std::string kPersonType = "$::PERSON ::KVL:TYPE = D:FILE(\"PERSON.txt\")$\n";

class FileCases : public testing::TestWithParam<TextCase> {};

TEST_P(FileCases, Run) {
    const TextCase& row = GetParam();
    FileScript run;
    const std::size_t fileCount = run.outside.memory.FilePaths().size() + 1;  // the main script
    EXPECT_EQ(run.Execute(row.Line("body")), row["faults"].empty()) << run.outside.console.output;
    ExpectSection(row, "output", run.output);
    ExpectSection(row, "faults", run.faults);
    for (const TextCase::Section& section : row.sections) {
        if (section.name.starts_with("file ")) ExpectSection(row, section.name, run.TextOf(section.name.substr(5)));
        if (section.name == "cells") ExpectSection(row, section.name, run.CellsOf("L"));
        if (section.name == "shows") {
            EXPECT_TRUE(run.Shows(row.Line("shows"))) << run.outside.console.output;
        }
    }
    EXPECT_EQ(run.TextOf("readOnly.txt"), "old");
    if (run.succeeded) return;
    EXPECT_EQ(run.outside.memory.FilePaths().size(), fileCount);
    EXPECT_FALSE(run.Shows("Created Successfully. "));
}

INSTANTIATE_TEST_SUITE_P(Cases, FileCases, testing::ValuesIn(ReadCases("builtins/Files.cases")), CaseName);

TEST(FileForms, ReachTheCallerThroughParameters) {
    FileScript run;
    run.AddScript("READ", "&T::STREAM, #D::KVL:DIRECTORY", "$T = D:FILE(\"a.txt\")$\n");
    run.AddScript("FILL", "&M::STRING, #T::STREAM", "$M = T$\n");
    ASSERT_TRUE(run.Execute("$S ::STREAM = \"before\"$$READ(S, D)$$L ::STRING[]$$T ::STREAM = \"x y\"$$FILL(L, T)$"))
        << run.outside.console.output;
    EXPECT_EQ(run.ValueOf("S"), "alpha");
    EXPECT_EQ(run.CellsOf("L"), "x;y;");
}

// A list read anew has other storage than the one that was handed over; it is copied back for "&" alone.
TEST(FileForms, ListsReadAnewReachTheCallerOfAReference) {
    FileScript run;
    const std::string body = "$L = T$$E = D:FILE(\"a.txt\")$$C = T$$BEGIN ALL L$$L:WORD = \"z\"$$END ALL L$\n";
    run.AddType("WORDS", "::WORDS = ::LIST{ WORD ::IDENTIFIER }");
    run.AddScript("READ", "&L::WORDS, &E::WORDS, #C::WORDS, #T::STREAM, #D::KVL:DIRECTORY", body);
    ASSERT_TRUE(run.Execute("$T ::STREAM = \"a b\"$$L ::WORDS = T$$E ::WORDS$$C ::WORDS = T$"
                            "$T = \"p q r\"$$READ(L, E, C, T, D)$"))
        << run.outside.console.output;
    EXPECT_EQ(run.CellsOf("L") + run.CellsOf("E") + run.CellsOf("C"), "z;z;z;alpha;a;b;");
}

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

TEST(FileWrites, ThatFailLeaveTheOldFile) {
    constexpr struct {
        FileOperation operation;
        int error;
        const char* faults;
    } kRows[] = {
        {FileOperation::OpenWriter, EACCES, "ERR_EXEC_SCRIPT_FILE_10 3"},
        {FileOperation::OpenWriter, EROFS, "ERR_EXEC_ENVIRON_FATAL_1 3"},
        {FileOperation::Write, ENOSPC, "ERR_EXEC_SCRIPT_FILE_12 3"},
        {FileOperation::Commit, EIO, "ERR_EXEC_SCRIPT_FILE_12 3"},
    };
    for (const auto& row : kRows) {
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

TEST(FileReport, LogGetsTheElementsOfATypeFromAStream) {
    FileScript run;
    ASSERT_TRUE(OpenLog("/home/x.log.txt"));
    EXPECT_TRUE(run.Execute("$S ::STREAM$$S = D:FILE(\"WORDS.txt\")$$::WORDS ::KVL:TYPE = S$$D:FILE(\"o.txt\") = S$"));
    const std::string log = run.outside.memory.Get("/home/x.log.txt");
    EXPECT_NE(log.find("\nType Schema:\n\nType Schema WORDS\n0    BEGIN ::WORDS::LIST\n"), std::string::npos) << log;
    EXPECT_NE(log.find("File: /home/o.txt\n\nCreated Successfully. \n\n"), std::string::npos) << log;
    EXPECT_FALSE(run.Shows("0    BEGIN"));
}

TEST(FileDumps, OfDataAndWrittenFilesOnly) {
    FileScript run;
    Process().dumpsEnabled = true;
    EXPECT_TRUE(run.Execute(kPersonType + "$IN ::PERSON = D:FILE(\"data.txt\")$$S ::STREAM$$S = D:FILE(\"a.txt\")$"
                                          "$D:FILE(\"out.txt\") = S$$D:FILE(\"copy.txt\") = D:FILE(\"a.txt\")$"));
    std::string dumps;
    for (const std::string& path : run.outside.memory.FilePaths())
        if (path.ends_with(".dump")) dumps += path + ";";
    EXPECT_EQ(dumps, "/home/data.txt.dump;/home/out.txt.dump;");
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
    EXPECT_FALSE(LoadInstanceFile(*run.root, "/home/a.txt", "S", "IN"));
    EXPECT_TRUE(run.Shows("ERR_DECL_SCRIPT_VAR_3\nVariable type ::NONE is not declared."));
    EXPECT_TRUE(run.Shows("ERR_DECL_SCRIPT_VAR_3\nVariable type ::EMPTY is not declared."));
    EXPECT_TRUE(run.Shows("ERR_DECL_SCRIPT_PARAM_5\nParameter name S already in use"));
}

}  // namespace
}  // namespace kvl
