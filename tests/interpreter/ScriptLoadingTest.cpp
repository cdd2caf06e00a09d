#include "LoadingTest.h"
#include "interpreter/StandardScript.h"
#include "support/CaseFile.h"

#include <filesystem>
#include <set>

#include "text/Paths.h"
#include "text/Replace.h"

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
        outside.memory.Put("/home/main.kvl", Script(body));
        return LoadAndRun("/home/main.kvl");
    }
    static std::string Script(std::string_view body) {
        return "$BEGIN KVL VERSION=\"1.0.0\"$\n$BEGIN SCRIPT MAIN()$\n" + std::string(body) +
               "\n$END SCRIPT MAIN()$\n$END KVL VERSION=\"1.0.0\"$\n";
    }
    PlayedBuiltIns builtIns;
};

class MainScriptPathTest : public LoadingTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(MainScriptPathTest, "interpreter/MainScriptPaths.cases");

TEST_P(MainScriptPathTest, IsJudged) {
    for (const char* path : {"/home/a.kvl", "/home/B.KVL", "/home/c.kvl.kvl", "/home/unreadable.kvl"})
        outside.memory.Put(path, "x");
    outside.memory.SetUnreadable("/home/unreadable.kvl");
    const std::string letters(260, 'a');
    std::string outcome;
    if (!CheckMainScriptPath(ReplaceAll(GetParam().Line("typed"), "{260 letters}", letters), outcome))
        outcome = ReplaceAll(ShownMessages(), letters, "{260 letters}");
    ExpectSection(GetParam(), "outcome", outcome);
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
    Process().overwritePromptEnabled = false;
    ASSERT_TRUE(Run(""));
    EXPECT_EQ(builtIns.questions, 1);
    Process().overwritePromptEnabled = true;
    builtIns.answer = kOverwriteAbort;
    EXPECT_THROW(static_cast<void>(Run("$X$")), ProcessEnded);
    EXPECT_EQ(Process().errorCount, 0);
    EXPECT_EQ(Process().root, nullptr);
}

TEST_F(RunTest, OnlyASilentFailureIsToldByItsPlace) {
    EXPECT_FALSE(Run("$X$"));
    EXPECT_EQ(outside.console.TextIn(10), "");
    ResetProcessState();
    builtIns.macrosFail = true;
    EXPECT_FALSE(Run("\n$KVL:GENERATION:DATE()$"));
    EXPECT_EQ(Process().errorCount, 0);
    EXPECT_EQ(outside.console.TextIn(10), "\nThe run stopped at line 4 of /home/main.kvl.\n");
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
    StandardScriptTest() { outside.memory.Put("/home/new one.kvl", ""); }
    void PutStandardScript(std::string_view body) {
        for (const char* file : {"project.kvl", "contacts.type", "overview.pattern", "contacts.txt"})
            outside.memory.Put(std::string("/program/_1/") + file, "x");
        outside.memory.Put("/program/_1/_1.kvl", Script(body));
    }
    static constexpr std::string_view kInput = "FILE_PATH=/home/\r\nFILE_NAME=new one";
};

TEST_F(StandardScriptTest, RunsForAnEmptyMainScriptWhichIsUsedUp) {
    PutStandardScript("$X$");
    EXPECT_FALSE(LoadAndRun("/home/new one.kvl"));
    EXPECT_TRUE(outside.memory.Has("/home/new one.kvl"));
    PutStandardScript("");
    outside.files.FailAt(FileOperation::Rename, 1, EACCES);
    EXPECT_TRUE(LoadAndRun("/home/new one.kvl"));
    EXPECT_TRUE(outside.memory.Has("/home/new one.kvl"));
    ASSERT_TRUE(LoadAndRun("/home/new one.kvl"));
    EXPECT_EQ(outside.memory.Get("/program/_1/_1_input.txt"), kInput);
    EXPECT_EQ(Process().mainScriptDirectory, "/program/_1");
    EXPECT_TRUE(outside.memory.Has("/home/new one.kvl.delete"));
    EXPECT_FALSE(outside.memory.Has("/home/new one.kvl"));
}

TEST_F(StandardScriptTest, RunsFromAPrivateFolderWhereItsOwnCannotBeWritten) {
    PutStandardScript("");
    for (const FileOperation operation : {FileOperation::OpenWriter, FileOperation::Write, FileOperation::Commit}) {
        outside.memory.Put("/home/new one.kvl", "");
        outside.files.FailAt(operation, 1, EROFS);
        ASSERT_TRUE(LoadAndRun("/home/new one.kvl")) << outside.console.output;
        EXPECT_TRUE(Process().mainScriptDirectory.starts_with("/private")) << Process().mainScriptDirectory;
        EXPECT_FALSE(outside.memory.Has(Process().mainScriptDirectory));
        EXPECT_FALSE(outside.memory.Has("/program/_1/_1_input.txt"));
    }
}

TEST_F(StandardScriptTest, FailsWhereNoFolderCanBeWritten) {
    PutStandardScript("");
    outside.memory.Put("/program/_1/_1_input.txt", "");
    outside.memory.SetReadOnly("/program/_1/_1_input.txt");
    outside.files.FailAt(FileOperation::MakePrivateDirectory, 1, EACCES);
    EXPECT_FALSE(LoadAndRun("/home/new one.kvl"));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_NE(outside.console.output.find("Fatal error: MakeDirectory(). "), std::string::npos)
        << outside.console.output;
}

// All files that are brought along, as they stand in the source tree, are taken there.
TEST_F(StandardScriptTest, PrivateFolderHoldsAllThatIsBroughtAlong) {
    std::set<std::string> names = {"_1_input.txt"};
    for (const auto& entry : std::filesystem::directory_iterator(KVL_TESTS_FOLDER "/../standard/_1"))
        names.insert(entry.path().filename());
    PutStandardScript("");
    outside.files.FailAt(FileOperation::OpenWriter, 1, EROFS);
    {
        StandardScript standard;
        ASSERT_TRUE(standard.Prepare("/home/new one.kvl"));
        EXPECT_EQ(standard.Path(), "/private1/_1.kvl");
        EXPECT_EQ(outside.memory.Get("/private1/_1_input.txt"), kInput);
        EXPECT_EQ(outside.memory.Get("/private1/_1.kvl"), outside.memory.Get("/program/_1/_1.kvl"));
        std::set<std::string> copied;
        for (const std::string& path : outside.memory.FilePaths())
            if (path.starts_with("/private1/")) copied.insert(PathPart(path, PathMode::NameAndExtension));
        EXPECT_EQ(copied, names);
    }
    EXPECT_FALSE(outside.memory.Has("/private1"));
}

TEST_F(StandardScriptTest, MissingStandardScriptIsReportedOnce) {
    EXPECT_FALSE(LoadAndRun("/home/new one.kvl"));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_NE(outside.console.output.find("File /program/_1/_1.kvl can not be found"), std::string::npos)
        << outside.console.output;
}

// Whichever file operation fails, the run ends in order: with a message or with success.
TEST_F(StandardScriptTest, EveryFailingFileOperationIsSurvived) {
    for (int n = 1; n < 100; ++n) {
        ResetProcessState();
        PutStandardScript("");
        outside.memory.Put("/home/new one.kvl", "");
        outside.files.FailAtAny(n, EIO);
        const bool succeeded = LoadAndRun("/home/new one.kvl");
        EXPECT_EQ(succeeded, Process().errorCount == 0) << n << outside.console.output;
        if (!outside.files.HasFailed()) return;
    }
    FAIL() << "no run without a failure";
}

}  // namespace
}  // namespace kvl
