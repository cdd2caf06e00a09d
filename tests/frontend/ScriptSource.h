#pragma once
// What the tests of the script front end share: a source in each of its forms, and what is shown
// and logged meanwhile.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "frontend/ScriptFrontEnd.h"
#include "support/CaseFile.h"
#include "support/TestPlatform.h"
#include "support/WrittenBytes.h"
#include "text/ProcessState.h"

namespace kvl {

// One test: a fresh process state in an outside of its own, with an open log.
class ScriptTest : public testing::Test {
protected:
    ScriptTest() {
        ResetProcessState();
        outside_.memory.Put(kLogPath, "");
        EXPECT_EQ(Files().OpenWriter(kLogPath, WriteMode::Stream, Process().logStream), 0);
        InitialiseKeywordTable();
    }
    ~ScriptTest() override { ResetProcessState(); }

    // A script file at the path "main.kvl".
    bool CompileFile(std::string_view source, int entityKind = kEntityMacroScript) {
        outside_.memory.Put("main.kvl", source);
        return ParseScriptSourceFile(entityKind, "main.kvl", list_);
    }
    bool CompileStream(std::string source, int entityKind = kEntityMacroScript) {
        return ParseScriptSourceStream(entityKind, "STREAM", source, list_);
    }
    bool CompileConstant(std::string_view source, int entityKind = kEntityMacroScript) {
        return ParseScriptConstant(entityKind, source, list_);
    }

    // Compares a section of a case where it has one.
    static void ExpectIfGiven(const TextCase& expected, std::string_view section, std::string_view actual) {
        if (!expected[section].empty()) ExpectSection(expected, section, Written(actual));
    }

    std::string& Shown() { return outside_.console.output; }
    std::string Log() const { return outside_.memory.Get(kLogPath); }

    static constexpr const char* kLogPath = "log.txt";

    ScopedPlatform outside_;
    CommandList list_;
};

}  // namespace kvl
