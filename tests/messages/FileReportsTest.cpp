#include "messages/FileReports.h"

#include "messages/OutsideTest.h"

namespace kvl {
namespace {

class FileReports : public OutsideTest {
protected:
    // The header and text of the messages shown so far; then they are forgotten.
    std::string TakeMessages() {
        std::string lines;
        for (const auto& piece : outside.console.pieces) {
            const std::size_t header = piece.text.find("ERR_");
            if (piece.colour == 12) lines += piece.text.substr(header, piece.text.find("\n\n", header) - header) + "|";
        }
        outside.console.pieces.clear();
        return lines;
    }

    MessageContext context;
    std::string text = "before";
    int lineCount = -1;
};

TEST_F(FileReports, CheckFileTellsWhatAFileIs) {
    outside.memory.Put("/work/plain", "");
    outside.memory.Put("/work/readOnly", "");
    outside.memory.SetReadOnly("/work/readOnly");
    outside.memory.Put("/work/writeOnly", "");
    outside.memory.SetUnreadable("/work/writeOnly");
    FileState state;
    EXPECT_TRUE(CheckFile("/work/plain", state));
    EXPECT_TRUE(state.exists && state.readable && state.writable && state.readWritable);
    EXPECT_TRUE(CheckFile("/work/readOnly", state));
    EXPECT_TRUE(state.exists && state.readable && !state.writable && !state.readWritable);
    EXPECT_TRUE(CheckFile("/work/writeOnly", state));
    EXPECT_TRUE(state.exists && !state.readable && state.writable && !state.readWritable);
    EXPECT_FALSE(CheckFile("/work/none", state));
    EXPECT_FALSE(state.exists || state.readable || state.writable || state.accessDenied || state.invalidName);
}

struct CheckRow {
    const char* path;
    int error;
    bool accessDenied, invalidName;
    char character;
};

TEST_F(FileReports, CheckFileClassifiesFailures) {
    constexpr CheckRow kRows[] = {
        {"/work/a", ENOENT, false, false, 0},   {"/work/a", EACCES, true, false, 0},
        {"/work/a", EINVAL, false, true, 0},    {"/work/a?b*", ENOENT, false, true, '?'},
        {"/work/a|b", ENOENT, false, false, 0}, {"/work/a\"", EIO, false, true, '"'},
    };
    for (const CheckRow& row : kRows) {
        FileState state;
        outside.files.FailAt(FileOperation::CheckAccess, 1, row.error);
        EXPECT_FALSE(CheckFile(row.path, state)) << row.path;
        EXPECT_EQ(state.accessDenied, row.accessDenied) << row.path;
        EXPECT_EQ(state.invalidName, row.invalidName) << row.path;
        EXPECT_EQ(state.invalidCharacter, row.character) << row.path;
    }
}

TEST_F(FileReports, CheckFileEndsTheProcessAtAnErrorOutOfPlace) {
    FileState state;
    outside.files.FailAt(FileOperation::CheckAccess, 1, EIO);
    try {
        CheckFile("/work/a", state);
        FAIL();
    } catch (const ProcessEnded& ended) {
        EXPECT_EQ(ended.exitValue, 1);
    }
    EXPECT_EQ(outside.console.output, "Fatal Error: " + ErrorText(EIO));
}

struct CharacterRow {
    const char* path;
    char character;
};

TEST_F(FileReports, InvalidCharactersAreFoundBehindTheDrive) {
    constexpr CharacterRow kRows[] = {
        {"", 0},          {"/a/b.txt", 0}, {"C:/a", 0},     {"C:\\a\\b", 0}, {"/C:/a", ':'}, {"C:a:b", ':'},
        {"a*b/c?d", '*'}, {"a<b>", '<'},   {"a.t\"x", '"'}, {"a|b", 0},      {"a>b", '>'},   {"1:/a", ':'},
    };
    for (const CharacterRow& row : kRows) {
        char character = 0;
        EXPECT_EQ(HasInvalidFileCharacter(row.path, character), row.character != 0) << row.path;
        EXPECT_EQ(character, row.character) << row.path;
    }
}

struct FileErrorRow {
    int id;
    const char* expected;
};

// With "C:" as the drive of the main script the display form of a path shows no drive.
TEST_F(FileReports, FileErrorsShowTheFile) {
    constexpr FileErrorRow kRows[] = {
        {128, "ERR_EXEC_SCRIPT_FILE_1\nFile /d/x<y.txt can not be found within search path /d/|"},
        {130,
         "ERR_EXEC_SCRIPT_FILE_3\nFile /d/x<y.txt can not be overwritten, because properties are set to read only|"},
        {131, "ERR_EXEC_SCRIPT_FILE_4\nFile name /d/x<y.txt contains invalid character '<'|"},
        {135, "ERR_EXEC_SCRIPT_FILE_8\nFile /d/x<y.txt is empty|"},
        {137,
         "ERR_EXEC_SCRIPT_FILE_10\nFile C:/d/x<y.txt can not be overwritten, because it's possible in use by another "
         "application|"},
        {138, "ERR_EXEC_SCRIPT_FILE_11\nReading file /d/x<y.txt fails, because of less memory or buffers|"},
        {139, "ERR_EXEC_SCRIPT_FILE_12\nWriting file /d/x<y.txt fails, because of less memory or buffers|"},
        {141, "ERR_EXEC_SCRIPT_FILE_14\nFile /d/x<y.txt can not be read, because properties are set to write only|"},
        {142,
         "ERR_EXEC_SCRIPT_FILE_15\nFile C:/d/x<y.txt can not be read, because it's possible in use by another "
         "application|"},
        {129, ""},
        {140, ""},
        {2, ""},
    };
    Process().mainScriptDrive = "C:";
    for (const FileErrorRow& row : kRows) {
        EXPECT_FALSE(ReportFileError(row.id, "C:\\d\\\\/x<y.txt", context));
        EXPECT_EQ(TakeMessages(), row.expected);
    }
}

TEST_F(FileReports, TheyTellThePlaceOfTheCommand) {
    context.entityName = "main.kvl";
    context.entityKind = kEntityMainScript;
    context.lineNumber = 4;
    context.lineText = "$S = D:FILE(\"a\")$";
    ReportFileError(135, "/work/a", context);
    EXPECT_EQ(outside.console.output,
              "\nERROR: ERR_EXEC_SCRIPT_FILE_8\nFile /work/a is empty\n\n"
              "$S = D:FILE(\"a\")$\n^\nAt line 4 of Script main.kvl\n\n");
}

TEST_F(FileReports, OpenFailureTellsWriteOnlyFromMissing) {
    outside.memory.Put("/work/w", "");
    outside.memory.SetUnreadable("/work/w");
    ReportOpenFailure("/work/w", context);
    ReportOpenFailure("/work/none", context);
    ReportOpenFailure("none", context);
    EXPECT_EQ(TakeMessages(),
              "ERR_EXEC_SCRIPT_FILE_14\nFile /work/w can not be read, because properties are set to write only|"
              "ERR_EXEC_SCRIPT_FILE_1\nFile /work/none can not be found within search path /work/|"
              "ERR_EXEC_SCRIPT_FILE_1\nFile none can not be found within search path .|");
}

TEST_F(FileReports, CreateFailureFollowsStateAndErrorNumber) {
    outside.memory.Put("/work/r", "");
    outside.memory.SetReadOnly("/work/r");
    ReportCreateFailure("/work/r", ENOSPC, context);
    EXPECT_TRUE(TakeMessages().starts_with("ERR_EXEC_SCRIPT_FILE_3\nFile /work/r "));
    ReportCreateFailure("/work/new", EACCES, context);
    EXPECT_TRUE(TakeMessages().starts_with("ERR_EXEC_SCRIPT_FILE_10\nFile /work/new "));
    ReportCreateFailure("/work/new", ENOSPC, context);
    EXPECT_EQ(TakeMessages(), "ERR_EXEC_ENVIRON_FATAL_1\nFatal error: /work/new, " + ErrorText(ENOSPC) + "|");
}

TEST_F(FileReports, ReadSourceFileCountsLineFeeds) {
    outside.memory.Put("/work/a", "one\r\ntwo\n\nthree");
    ASSERT_TRUE(ReadSourceFile("/work/a", text, lineCount, context));
    EXPECT_EQ(text, "one\r\ntwo\n\nthree");
    EXPECT_EQ(lineCount, 3);
}

struct ReadFailureRow {
    int error;
    const char* message;
};

TEST_F(FileReports, ReadFailuresHaveTheirMessage) {
    constexpr ReadFailureRow kRows[] = {
        {ENOENT, "ERR_EXEC_SCRIPT_FILE_1"}, {EISDIR, "ERR_EXEC_SCRIPT_FILE_1"}, {EMFILE, "ERR_EXEC_SCRIPT_FILE_1"},
        {EFBIG, "ERR_EXEC_SCRIPT_FILE_11"}, {EIO, "ERR_EXEC_SCRIPT_FILE_11"},   {ENOMEM, "ERR_EXEC_SCRIPT_FILE_11"},
    };
    outside.memory.Put("/work/a", "x");
    int errors = 0;
    for (const ReadFailureRow& row : kRows) {
        outside.files.FailAt(FileOperation::ReadWhole, 1, row.error);
        EXPECT_FALSE(ReadSourceFile("/work/a", text, lineCount, context));
        outside.files.FailAt(FileOperation::OpenReader, 1, row.error);
        EXPECT_FALSE(ReadSourceLine("/work/a", 1, text, context));
        outside.files.FailAt(FileOperation::Read, 1, row.error);
        EXPECT_FALSE(ReadSourceLine("/work/a", 1, text, context));
        const std::string messages = TakeMessages();
        EXPECT_NE(messages.find(std::string(row.message) + "\n"), std::string::npos) << messages;
        EXPECT_EQ(Process().errorCount, errors += 3);
    }
    outside.memory.PutDirectory("/work/d");
    EXPECT_FALSE(ReadSourceFile("/work/d", text, lineCount, context));
    EXPECT_TRUE(TakeMessages().starts_with("ERR_EXEC_SCRIPT_FILE_1\n"));
}

struct LineRow {
    const char* content;
    int number;
    const char* expected;
};

TEST_F(FileReports, ReadSourceLineFindsItsLine) {
    constexpr LineRow kRows[] = {
        {"a\nb\nc", 1, "a"},      {"a\nb\nc", 3, "c"},    {"a\nb\nc", 4, "before"}, {"a\n", 2, "before"},
        {"a\r\nb", 1, "a\r"},     {"\n\nx\n", 1, ""},     {"\n\nx\n", 3, "x"},      {"", 1, "before"},
        {"a\nb\nc", 0, "before"}, {"a\nb", -1, "before"},
    };
    for (const LineRow& row : kRows) {
        outside.memory.Put("/work/a", row.content);
        text = "before";
        EXPECT_TRUE(ReadSourceLine("/work/a", row.number, text, context));
        EXPECT_EQ(text, row.expected) << row.content << row.number;
    }
}

// Lines longer than what is read at once, and lines that begin in one piece and end in another.
TEST_F(FileReports, ReadSourceLineJoinsBlocks) {
    const std::string first(70000, 'a'), second(140000, 'b');
    outside.memory.Put("/work/a", first + "\n" + second + "\nend");
    ASSERT_TRUE(ReadSourceLine("/work/a", 1, text, context));
    EXPECT_EQ(text, first);
    ASSERT_TRUE(ReadSourceLine("/work/a", 2, text, context));
    EXPECT_EQ(text, second);
    ASSERT_TRUE(ReadSourceLine("/work/a", 3, text, context));
    EXPECT_EQ(text, "end");
}

TEST_F(FileReports, CopyTakesEveryByte) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{65536}, std::size_t{200001}}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 7);
        outside.memory.Put("/work/a", bytes);
        outside.memory.Put("/work/b", "something else");
        ASSERT_TRUE(CopyFileBytes("/work/a", "/work/b", context));
        EXPECT_EQ(outside.memory.Get("/work/b"), bytes);
    }
}

TEST_F(FileReports, AFileCopiedOntoItselfStays) {
    outside.memory.Put("/work/a", "text");
    EXPECT_TRUE(CopyFileBytes("/work/a", "/work/../work/a", context));
    EXPECT_EQ(outside.memory.Get("/work/a"), "text");
    EXPECT_EQ(outside.files.CountOf(FileOperation::OpenWriter), 0);
}

struct CopyFailureRow {
    FileOperation operation;
    int error;
    const char* message;
};

TEST_F(FileReports, AFailedCopyLeavesTheTarget) {
    constexpr CopyFailureRow kRows[] = {
        {FileOperation::OpenReader, ENOENT, "ERR_EXEC_SCRIPT_FILE_1\nFile /work/a can"},
        {FileOperation::OpenWriter, EACCES, "ERR_EXEC_SCRIPT_FILE_10\nFile /work/b can"},
        {FileOperation::Read, EIO, "ERR_EXEC_SCRIPT_FILE_11\nReading file /work/a fails"},
        {FileOperation::Write, ENOSPC, "ERR_EXEC_SCRIPT_FILE_12\nWriting file /work/b fails"},
        {FileOperation::Commit, EIO, "ERR_EXEC_SCRIPT_FILE_12\nWriting file /work/b fails"},
    };
    outside.memory.Put("/work/a", "new");
    outside.memory.Put("/work/b", "old");
    int errors = 0;
    for (const CopyFailureRow& row : kRows) {
        outside.files.FailAt(row.operation, 1, row.error);
        EXPECT_FALSE(CopyFileBytes("/work/a", "/work/b", context));
        const std::string messages = TakeMessages();
        EXPECT_TRUE(messages.starts_with(row.message)) << messages;
        EXPECT_EQ(Process().errorCount, ++errors);
        EXPECT_EQ(outside.memory.Get("/work/b"), "old");
    }
}

struct BackupRow {
    const char* path;
    const char* backup;
};

TEST_F(FileReports, OldFilesAreKeptBesideTheNew) {
    constexpr BackupRow kRows[] = {
        {"/work/x.kvl.log.txt", "/work/x.kvl.log_old.txt"},
        {"/work/noExtension", "/work/noExtension_old"},
        {"relative.txt", "/work/relative_old.txt"},
    };
    for (const BackupRow& row : kRows) {
        outside.memory.Put(row.path, row.path);
        KeepOldFile(row.path);
        EXPECT_EQ(outside.memory.Get(row.backup), row.path);
    }
    KeepOldFile("/work/none.txt");
    EXPECT_FALSE(outside.memory.Has("/work/none_old.txt"));
    EXPECT_EQ(Process().errorCount, 0);
}

struct DirectoryRow {
    const char* path;
    const char* made;
};

TEST_F(FileReports, MakeDirectoryMakesTheWholeChain) {
    constexpr DirectoryRow kRows[] = {
        {"/a/b/c", "/a/b/c"}, {"/d\\e/", "/d/e"}, {"//f//g", "/f/g"}, {"relative/h", "/work/relative/h"},
        {"/work", "/work"},   {"/", "/"},         {"", "/"},          {"/work/../i/./j", "/i/j"},
    };
    for (const DirectoryRow& row : kRows) {
        EXPECT_TRUE(MakeDirectory(row.path, context)) << row.path;
        EXPECT_TRUE(outside.memory.IsDirectory(row.made)) << row.path;
    }
    EXPECT_EQ(Process().errorCount, 0);
}

TEST_F(FileReports, MakeDirectoryFailsWithItsReason) {
    EXPECT_FALSE(MakeDirectory("/work/a?b/c", context));
    EXPECT_EQ(TakeMessages(), "ERR_EXEC_SCRIPT_FILE_7\nDirectory name /work/a?b/c contains invalid character '?'|");
    EXPECT_FALSE(outside.memory.Has("/work/a?b"));

    outside.memory.Put("/work/file", "");
    EXPECT_FALSE(MakeDirectory("/work/file/x", context));
    EXPECT_EQ(TakeMessages(), "ERR_EXEC_ENVIRON_FATAL_1\nFatal error: MakeDirectory(). " + ErrorText(EEXIST) + "|");

    outside.files.FailAt(FileOperation::MakeDirectory, 2, EACCES);
    EXPECT_FALSE(MakeDirectory("/work/x/y", context));
    EXPECT_EQ(TakeMessages(), "ERR_EXEC_ENVIRON_FATAL_1\nFatal error: MakeDirectory(). " + ErrorText(EACCES) + "|");

    EXPECT_FALSE(MakeDirectory("C:/x", context));
    EXPECT_EQ(TakeMessages(), "");
}

TEST_F(FileReports, EnsureDirectoryGivesTheAbsolutePath) {
    std::string path = "x/../y";
    ASSERT_TRUE(EnsureDirectory(path, context));
    EXPECT_EQ(path, "/work/y");
    EXPECT_TRUE(outside.memory.IsDirectory("/work/y"));
    EXPECT_FALSE(outside.memory.Has("/work/x"));
}

TEST_F(FileReports, EnsureDirectoryAddsItsMessageToTheReason) {
    std::string path = "a*b";
    EXPECT_FALSE(EnsureDirectory(path, context));
    EXPECT_EQ(path, "a*b");
    EXPECT_EQ(TakeMessages(),
              "ERR_EXEC_SCRIPT_FILE_7\nDirectory name /work/a*b contains invalid character '*'|"
              "ERR_EXEC_SCRIPT_FILE_6\nCan not create directory /work/a*b|");

    path = "C:\\x";
    EXPECT_FALSE(EnsureDirectory(path, context));
    EXPECT_EQ(TakeMessages(), "ERR_EXEC_SCRIPT_FILE_6\nCan not create directory C:/x|");

    path = std::string(261, 'x');
    EXPECT_FALSE(EnsureDirectory(path, context));
    EXPECT_EQ(TakeMessages(),
              "ERR_EXEC_ENVIRON_FATAL_1\nFatal error: _fullpath|"
              "ERR_EXEC_ENVIRON_FATAL_1\nFatal error: MakeAbsolutePath(" +
                  path + ")|");
}

TEST_F(FileReports, CurrentPathIsLowerCased) {
    outside.memory.workingDirectory = "/Work/Deep";
    ASSERT_TRUE(GetCurrentPath(text, context));
    EXPECT_EQ(text, "/work/deep");
}

}  // namespace
}  // namespace kvl
