#pragma once
// What the tests of loading share: an outside of its own for each test, and sources compiled from memory.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "interpreter/ScriptLoading.h"
#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {

class LoadingTest : public testing::Test {
protected:
    LoadingTest() { ResetProcessState(); }
    ~LoadingTest() override { ResetProcessState(); }

    // Compiles the source as the file "/home/main.kvl".
    std::unique_ptr<CPatternSchema> Compile(std::string_view source, int entityKind = kEntityMainScript) {
        outside.memory.Put("/home/main.kvl", source);
        ParseInfo info;
        return CompileFile(entityKind, "/home/main.kvl", info);
    }

    // The first message shown, without its head and the empty lines at its ends: "ERR_...\ntext\n\nline\n^\nAt line
    // ...".
    std::string FirstMessage() const {
        const std::string& shown = outside.console.output;
        const std::size_t begin = shown.find("\nERROR: ");
        if (begin == std::string::npos) return "";
        const std::size_t end = shown.find("\n\n", shown.find("\nAt line ", begin));
        return shown.substr(begin + 8, end - begin - 8);
    }

    // Identifier and first line of each message shown.
    std::string ShownMessages() const {
        std::string messages;
        const std::string& shown = outside.console.output;
        for (std::size_t at = 0; (at = shown.find("\nERROR: ", at)) != std::string::npos;) {
            at += 8;
            messages += shown.substr(at, shown.find('\n', shown.find('\n', at) + 1) + 1 - at);
        }
        return messages;
    }

    ScopedPlatform outside;
};

}  // namespace kvl
