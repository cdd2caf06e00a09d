#include "LoadingTest.h"
#include "interpreter/StandardScript.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "text/Paths.h"

namespace kvl {
namespace {

// Macros do nothing, or fail in silence when told to; the question before the run gets the given answer.
class PlayedBuiltIns : public BuiltIns {
public:
    int answer = kOverwriteAll;
    int questions = 0;
    bool macrosFail = false;
    int errorCountAtFirstCommand = -1;

    bool ExecuteBuiltIn(CPatternSchema&, const PatternCommand&, AssignmentOperands&, bool&, RunContext&) override {
        return true;
    }
    bool RunStaticMacro(CPatternSchema&, int, MacroValue&) override {
        EXPECT_TRUE(Process().root);
        errorCountAtFirstCommand = Process().errorCountAtFirstCommand;
        return !macrosFail;
    }
    int AskOverwriteRun(CPatternSchema&) override {
        ++questions;
        return answer;
    }
};

class RunTest : public LoadingTest {
protected:
    RunTest() { SetBuiltIns(&builtIns); }

    bool Run(std::string_view body) {
        outside.memory.Put("/work/main.kvl", Script(body));
        return LoadAndRun("/work/main.kvl");
    }
    static std::string Script(std::string_view body) {
        return "$BEGIN KVL VERSION=\"1.0.0\"$\n$BEGIN SCRIPT MAIN()$\n" + std::string(body) +
               "\n$END SCRIPT MAIN()$\n$END KVL VERSION=\"1.0.0\"$\n";
    }

    PlayedBuiltIns builtIns;
};

struct PathRow {
    const char* name;
    std::string_view typed;
    std::string_view absolute;      // empty where the path is refused
    std::string_view message = {};  // how it begins
};
class MainScriptPathTest : public LoadingTest, public testing::WithParamInterface<PathRow> {};

constexpr PathRow kPathRows[] = {
    {"Relative", "a.kvl", "/work/a.kvl"},
    {"BothSeparators", "..\\work//a.kvl", "/work/a.kvl"},
    {"UpperCase", "B.KVL", "/work/B.KVL"},
    {"ExtensionTwice", "c.kvl.kvl", "/work/c.kvl.kvl"},
    {"OtherExtension", "A.KVL.bak", "",
     "ERR_EXEC_COMMAND_ARG_1\nFirst command line argument \"A.KVL.bak\" is not a valid KVL script file name"},
    {"ExtensionInTheDirectory", "x.kvl/a", "", "ERR_EXEC_COMMAND_ARG_1\n"},
    {"Empty", "", "", "ERR_EXEC_COMMAND_ARG_1\n"},
    {"Missing", "sub/z.kvl", "", "ERR_EXEC_SCRIPT_FILE_1\nFile z.kvl can not be found within search path /work/sub/\n"},
    {"WrongName", "a?.kvl", "", "ERR_EXEC_SCRIPT_FILE_4\nFile name /work/a?.kvl contains invalid character '?'\n"},
    {"WriteOnly", "unreadable.kvl", "", "ERR_EXEC_SCRIPT_FILE_14\n"},
};
INSTANTIATE_TEST_SUITE_P(Rows, MainScriptPathTest, testing::ValuesIn(kPathRows), NameOfRow<PathRow>);

TEST_P(MainScriptPathTest, IsJudged) {
    for (const char* path : {"/work/a.kvl", "/work/B.KVL", "/work/c.kvl.kvl", "/work/unreadable.kvl"})
        outside.memory.Put(path, "x");
    outside.memory.SetUnreadable("/work/unreadable.kvl");
    std::string absolute;
    EXPECT_EQ(CheckMainScriptPath(GetParam().typed, absolute), GetParam().message.empty());
    EXPECT_TRUE(FirstMessage().starts_with(GetParam().message)) << FirstMessage();
    if (GetParam().message.empty()) {
        EXPECT_EQ(absolute, GetParam().absolute);
    } else {
        EXPECT_EQ(Process().errorCount, 1);
    }
}

TEST_F(LoadingTest, PathBeyondTheLimitIsReportedTwice) {
    std::string path;
    EXPECT_FALSE(CheckMainScriptPath(std::string(kLongestPath, 'a') + ".kvl", path));
    EXPECT_EQ(Process().errorCount, 2);
    EXPECT_NE(outside.console.output.find("Fatal error: _fullpath\n"), std::string::npos);
    EXPECT_NE(outside.console.output.find("Fatal error: MakeAbsolutePath(aaa"), std::string::npos);
}

TEST_F(LoadingTest, DeniedDirectoryComesBeforeNotFound) {
    outside.files.FailAt(FileOperation::CheckAccess, 1, EACCES);
    std::string path;
    EXPECT_FALSE(CheckMainScriptPath("a.kvl", path));
    EXPECT_TRUE(FirstMessage().starts_with("ERR_EXEC_SCRIPT_FILE_15\n")) << FirstMessage();
}

TEST_F(RunTest, ShowsItsProgress) {
    ASSERT_TRUE(Run("text"));
    EXPECT_EQ(outside.console.output,
              "\nParsing File main.kvl\n( /work/main.kvl )\n"
              "Main Script File Parsed Successfully. \n" +
                  std::string(77, '_') + "\n\nInterpreting Main Script /work/main.kvl\n\n");
    EXPECT_EQ(Process().root, nullptr);
    EXPECT_EQ(Process().mainScriptDirectory, "/work");
    EXPECT_EQ(outside.memory.FilePaths(), std::vector<std::string>{"/work/main.kvl"});
}

TEST_F(RunTest, MakesItsMarkAndCountsErrorsFromTheFirstCommand) {
    Process().errorCount = 2;
    ASSERT_TRUE(Run("$KVL:GENERATION:DATE()$")) << outside.console.output;
    EXPECT_EQ(builtIns.errorCountAtFirstCommand, 2);
    const std::string& mark = Process().generationMark;
    ASSERT_EQ(mark.size(), 40u);
    EXPECT_TRUE(mark.starts_with("${") && mark.ends_with("}$")) << mark;
}

TEST_F(RunTest, AsksBeforeTheFirstCommandUnlessToldNotTo) {
    ASSERT_TRUE(Run(""));
    EXPECT_EQ(builtIns.questions, 1);
    Process().overwritePromptEnabled = false;
    ASSERT_TRUE(Run(""));
    EXPECT_EQ(builtIns.questions, 1);
}

TEST_F(RunTest, AbortEndsTheProcess) {
    builtIns.answer = kOverwriteAbort;
    try {
        static_cast<void>(Run("$X$"));
        FAIL() << "the run went on";
    } catch (const ProcessEnded& ended) {
        EXPECT_EQ(ended.exitValue, 1);
    }
    EXPECT_EQ(Process().errorCount, 0);
    EXPECT_EQ(Process().root, nullptr);
}

TEST_F(RunTest, SilentFailureIsToldByItsPlace) {
    builtIns.macrosFail = true;
    EXPECT_FALSE(Run("\n$KVL:GENERATION:DATE()$"));
    EXPECT_EQ(Process().errorCount, 0);
    EXPECT_EQ(outside.console.TextIn(10), "\nThe run stopped at line 4 of /work/main.kvl.\n");
}

TEST_F(RunTest, ReportedFailureNeedsNoNote) {
    EXPECT_FALSE(Run("$X$"));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_EQ(outside.console.TextIn(10), "");
}

// Each reaches the message of its stage, once, and nothing runs.
struct StageRow {
    const char* name;
    std::string_view source;
    std::string_view message;
};
class FailedStageTest : public RunTest, public testing::WithParamInterface<StageRow> {};

constexpr StageRow kStageRows[] = {
    {"Parse", "$", "ERR_DECL_SCRIPT_SYNTAX_1\n"},
    {"Literal", "$A = \"$B\"$", "ERR_DECL_SCRIPT_LIT_2\n"},
    {"Blocks", "$A$", "ERR_DECL_SCRIPT_HEADER_1\n"},
};
INSTANTIATE_TEST_SUITE_P(Rows, FailedStageTest, testing::ValuesIn(kStageRows), NameOfRow<StageRow>);

TEST_P(FailedStageTest, IsReportedOnce) {
    outside.memory.Put("/work/main.kvl", GetParam().source);
    EXPECT_FALSE(LoadAndRun("/work/main.kvl"));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_TRUE(FirstMessage().starts_with(GetParam().message)) << FirstMessage();
    EXPECT_EQ(outside.console.output.find("Parsed Successfully"), std::string::npos);
    EXPECT_EQ(builtIns.questions, 0);
}

TEST_F(RunTest, FileThatCannotBeOpenedIsReportedOnce) {
    EXPECT_FALSE(LoadAndRun("/work/none.kvl"));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_EQ(outside.console.output.find("Parsing File"), std::string::npos);
}

// Whichever file operation fails, the run ends in order: with a message or with success.
TEST_F(RunTest, EveryFailingFileOperationIsSurvived) {
    for (int n = 1; n < 100; ++n) {
        ResetProcessState();
        outside.memory.Put("/work/main.kvl", Script("$A ::STRING = \"x\"$"));
        outside.files.FailAtAny(n, EIO);
        const bool succeeded = LoadAndRun("/work/main.kvl");
        EXPECT_EQ(succeeded, Process().errorCount == 0) << n;
        if (!outside.files.HasFailed()) return;
    }
    FAIL() << "no run without a failure";
}

TEST_F(LoadingTest, OnlyTheMainScriptMayBeEmpty) {
    outside.memory.Put("/work/a.txt", "");
    ParseInfo info;
    EXPECT_FALSE(CompileFile(kEntityMacroScript, "/work/a.txt", info));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_TRUE(FirstMessage().empty() || FirstMessage().starts_with("ERR_EXEC_SCRIPT_FILE_8"));
    EXPECT_NE(outside.console.output.find("File /work/a.txt is empty"), std::string::npos);
    EXPECT_TRUE(info.kindName.empty());
}

TEST_F(LoadingTest, StreamIsCompiledUnderItsName) {
    std::string text = "$\xC3\xA4$$A$";
    ParseInfo info;
    MessageContext context;
    EXPECT_FALSE(CompileText(kEntityMacroPattern, "S", text, info, context));
    text = "\xC3\xA4$A$";
    const auto schema = CompileText(kEntityMacroPattern, "S", text, info, context);
    ASSERT_TRUE(schema);
    EXPECT_TRUE(schema->utf8Source);
    EXPECT_EQ(schema->names->sourceStream, "S");
    EXPECT_EQ(schema->GetDisplayPath(), "S");
    outside.console.output.clear();
    ReportParse(info);
    EXPECT_EQ(outside.console.output, "Macro Pattern Parsed Successfully. \n");
}

TEST_F(LoadingTest, EmptyStreamIsAMissingHeaderAtTheCommand) {
    MessageContext context;
    context.lineNumber = 5;
    context.entityName = "caller";
    context.entityKind = kEntityMainScript;
    std::string text;
    ParseInfo info;
    EXPECT_FALSE(CompileText(kEntityMacroPattern, "S", text, info, context));
    EXPECT_TRUE(FirstMessage().starts_with("ERR_DECL_PATTERN_HEADER_1\n")) << FirstMessage();
    EXPECT_TRUE(FirstMessage().ends_with("At line 5 of Script caller")) << FirstMessage();
}

TEST_F(LoadingTest, EveryStaticMacroBecomesAVariable) {
    CPatternSchema schema;
    ASSERT_TRUE(CreateStaticMacros(schema));
    std::size_t count = 0;
    for (const CommandRow& row : CommandTable()) {
        if (row.staticMacro.empty()) continue;
        ++count;
        const auto* macro = dynamic_cast<const CVariableKVLStaticMacro*>(schema.variableTable.Find(row.staticMacro));
        ASSERT_TRUE(macro) << row.staticMacro;
        EXPECT_EQ(macro->macroCommand, row.id);
    }
    EXPECT_EQ(schema.variableTable.Size(), count);
}

TEST_F(LoadingTest, CloneSharesWhatIsCompiledAndHasItsOwnVariables) {
    const auto schema = Compile("\xC3\xA4$A$", kEntityMacroPattern);
    ASSERT_TRUE(schema);
    schema->overwriteMode = kOverwriteAsk;
    ASSERT_TRUE(schema->EnterVariable("V", "STRING", kTypeUnknown));
    const auto clone = schema->Clone();
    EXPECT_EQ(clone->script, schema->script);
    EXPECT_EQ(clone->names, schema->names);
    EXPECT_EQ(clone->entityKind, kEntityMacroPattern);
    EXPECT_TRUE(clone->utf8Source);
    EXPECT_EQ(clone->overwriteMode, kOverwriteAsk);
    EXPECT_EQ(clone->variableTable.Size(), 0u);
}

TEST_F(LoadingTest, LoadedTypeIsFoundByTheLastPartOfItsName) {
    CPatternSchema schema;
    for (const char* label : {"PERSON", "A:TOWN", "B:TOWN", "C:XTOWN"}) {
        CVariable* variable = schema.EnterVariable(label, "KVL:TYPE", kTypeType);
        ASSERT_TRUE(variable);
        auto type = std::make_shared<CTypeSchema>();
        type->names->name = label;
        variable->typeSchema = type;
    }
    ASSERT_TRUE(schema.EnterVariable("STREET", "STRING", kTypeUnknown));
    const auto nameOf = [&](std::string_view name) {
        const CTypeSchema* type = schema.FindLoadedType(name);
        return type ? type->EntityName() : std::string("-");
    };
    EXPECT_EQ(nameOf("PERSON"), "PERSON");
    EXPECT_EQ(nameOf("TOWN"), "A:TOWN");
    EXPECT_EQ(nameOf("STREET"), "-");
    EXPECT_EQ(nameOf("N"), "-");
}

class StandardScriptTest : public RunTest {
protected:
    StandardScriptTest() { outside.memory.Put("/work/new one.kvl", ""); }
    void PutStandardScript(std::string_view body) {
        for (const char* file : {"project.kvl", "contacts.type", "overview.pattern", "contacts.txt"})
            outside.memory.Put(std::string("/program/_1/") + file, "x");
        outside.memory.Put("/program/_1/_1.kvl", Script(body));
    }
    static constexpr std::string_view kInput = "FILE_PATH=/work/\r\nFILE_NAME=new one";
};

TEST_F(StandardScriptTest, RunsForAnEmptyMainScript) {
    PutStandardScript("");
    ASSERT_TRUE(LoadAndRun("/work/new one.kvl")) << outside.console.output;
    EXPECT_EQ(outside.memory.Get("/program/_1/_1_input.txt"), kInput);
    EXPECT_EQ(Process().mainScriptDirectory, "/program/_1");
    EXPECT_TRUE(outside.memory.Has("/work/new one.kvl.delete"));
    EXPECT_FALSE(outside.memory.Has("/work/new one.kvl"));
}

TEST_F(StandardScriptTest, FailedRunLeavesTheEmptyScript) {
    PutStandardScript("$X$");
    EXPECT_FALSE(LoadAndRun("/work/new one.kvl"));
    EXPECT_TRUE(outside.memory.Has("/work/new one.kvl"));
}

TEST_F(StandardScriptTest, FailedRenameIsNoFailure) {
    PutStandardScript("");
    outside.files.FailAt(FileOperation::Rename, 1, EACCES);
    EXPECT_TRUE(LoadAndRun("/work/new one.kvl"));
}

TEST_F(StandardScriptTest, RunsFromAPrivateFolderWhereItsOwnCannotBeWritten) {
    PutStandardScript("");
    for (const FileOperation operation : {FileOperation::OpenWriter, FileOperation::Write, FileOperation::Commit}) {
        outside.memory.Put("/work/new one.kvl", "");
        outside.files.FailAt(operation, 1, EROFS);
        ASSERT_TRUE(LoadAndRun("/work/new one.kvl")) << outside.console.output;
        EXPECT_TRUE(Process().mainScriptDirectory.starts_with("/private")) << Process().mainScriptDirectory;
        EXPECT_FALSE(outside.memory.Has(Process().mainScriptDirectory));
        EXPECT_FALSE(outside.memory.Has("/program/_1/_1_input.txt"));
    }
}

TEST_F(StandardScriptTest, PrivateFolderHoldsAllThatIsBroughtAlong) {
    PutStandardScript("");
    outside.files.FailAt(FileOperation::OpenWriter, 1, EROFS);
    {
        StandardScript standard;
        ASSERT_TRUE(standard.Prepare("/work/new one.kvl"));
        EXPECT_EQ(standard.Path(), "/private1/_1.kvl");
        EXPECT_EQ(outside.memory.Get("/private1/_1_input.txt"), kInput);
        EXPECT_EQ(outside.memory.Get("/private1/_1.kvl"), outside.memory.Get("/program/_1/_1.kvl"));
    }
    EXPECT_FALSE(outside.memory.Has("/private1"));
}

TEST_F(StandardScriptTest, MissingStandardScriptIsReportedOnce) {
    EXPECT_FALSE(LoadAndRun("/work/new one.kvl"));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_NE(outside.console.output.find("File /program/_1/_1.kvl can not be found"), std::string::npos)
        << outside.console.output;
}

TEST_F(StandardScriptTest, FailingFileOperationsAreSurvived) {
    for (int n = 1; n < 100; ++n) {
        ResetProcessState();
        PutStandardScript("");
        outside.memory.Put("/work/new one.kvl", "");
        outside.files.FailAtAny(n, EIO);
        const bool succeeded = LoadAndRun("/work/new one.kvl");
        EXPECT_EQ(succeeded, Process().errorCount == 0) << n << outside.console.output;
        if (!outside.files.HasFailed()) return;
    }
    FAIL() << "no run without a failure";
}

// The files that are brought along, as they stand in the source tree.
class ShippedFilesTest : public RunTest {
protected:
    ShippedFilesTest() {
        const auto folder = std::filesystem::path(__FILE__).parent_path() / "../../standard/_1";
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string name = entry.path().filename();
            outside.memory.Put("/program/_1/" + name, std::string(std::istreambuf_iterator<char>(file), {}));
            names.insert(name);
        }
    }
    std::set<std::string> names;
};

TEST_F(ShippedFilesTest, AreAllTakenToThePrivateFolder) {
    outside.files.FailAt(FileOperation::OpenWriter, 1, EROFS);
    StandardScript standard;
    ASSERT_TRUE(standard.Prepare("/work/a.kvl")) << outside.console.output;
    std::set<std::string> copied;
    for (const std::string& path : outside.memory.FilePaths())
        if (path.starts_with("/private1/")) copied.insert(PathPart(path, PathMode::NameAndExtension));
    names.insert("_1_input.txt");
    EXPECT_EQ(copied, names);
}

TEST_F(ShippedFilesTest, ScriptsAndPatternsHaveTheirForm) {
    for (const auto& [name, kind] : {std::pair<std::string, int>{"_1.kvl", kEntityMainScript},
                                     {"project.kvl", kEntityMainScript},
                                     {"overview.pattern", kEntityMacroPattern}}) {
        ParseInfo info;
        const auto schema = CompileFile(kind, "/program/_1/" + name, info);
        EXPECT_TRUE(schema && CheckBlocks(*schema)) << outside.console.output;
    }
}

}  // namespace
}  // namespace kvl
