#pragma once
// What the tests of the script front end share: a source in each of its forms, and what is shown
// and logged meanwhile.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "frontend/ScriptFrontEnd.h"
#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {

// The name of a case in a table of rows.
template <class Row>
std::string RowName(const testing::TestParamInfo<Row>& info) {
    return info.param.name;
}

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

    std::string& Shown() { return outside_.console.output; }
    std::string Log() const { return outside_.memory.Get(kLogPath); }

    static constexpr const char* kLogPath = "log.txt";

    ScopedPlatform outside_;
    CommandList list_;
};

}  // namespace kvl
