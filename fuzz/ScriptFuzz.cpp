// Fuzz target: any bytes as a script, a pattern and the text of a literal. Nothing may crash, and a source that is
// rejected has exactly one message.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "frontend/ScriptFrontEnd.h"
#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace {

using namespace kvl;

void ExpectMessages(int count) {
    if (Process().errorCount != count) std::abort();
}

void CompileScriptFile(std::string_view bytes, ScopedPlatform& outside) {
    ResetProcessState();
    outside.memory.Put("main.kvl", bytes);
    CommandList list;
    ExpectMessages(ParseScriptSourceFile(kEntityMacroScript, "main.kvl", list) ? 0 : 1);
}

void CompilePatternStream(std::string_view bytes) {
    ResetProcessState();
    std::string text(bytes);
    CommandList list;
    ExpectMessages(ParseScriptSourceStream(kEntityMacroPattern, "STREAM", text, list) ? 0 : 1);
    static_cast<void>(list.DumpCommands());
}

void CompileConstant(std::string_view bytes) {
    ResetProcessState();
    CommandList list;
    static_cast<void>(ParseScriptConstant(kEntityMacroScript, bytes, list));
    ExpectMessages(0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    ScopedPlatform outside;
    InitialiseKeywordTable();
    CompileScriptFile(bytes, outside);
    CompilePatternStream(bytes);
    CompileConstant(bytes);
    return 0;
}
