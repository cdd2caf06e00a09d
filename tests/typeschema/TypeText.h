#pragma once
// What the tests of declared types share: trees of items read from the notation of types without a header, an outside
// that keeps messages, and the types that are known by loading.
//
// The reader takes well-formed text only. An item is placed one byte behind the token that names it.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "messages/Log.h"
#include "support/TestPlatform.h"
#include "text/ProcessState.h"
#include "typeschema/CTypeSchema.h"

namespace kvl {

std::vector<DeclaredType> ReadTypes(std::string_view text);

class LoadedTypes final : public KnownTypes {
public:
    const CTypeSchema* FindLoadedType(std::string_view name) const override;
    // Compiles the text and knows its main type under that name.
    void Load(std::string_view name, std::string_view text);
    // The same for each line, by the name that it declares first.
    void LoadLines(std::string_view lines);

private:
    std::map<std::string, std::unique_ptr<CTypeSchema>, std::less<>> schemas_;
};

// Its source is the file "/home/T.txt" of the test's outside, with the text as its content.
class DeclaredTypesTest : public testing::Test {
protected:
    DeclaredTypesTest() { ResetProcessState(); }

    std::unique_ptr<CTypeSchema> Read(std::string_view text);
    [[nodiscard]] static bool Compile(CTypeSchema& schema, const KnownTypes& knownTypes = LoadedTypes());
    // Compiled, or null with the messages on the console.
    std::unique_ptr<CTypeSchema> Compiled(std::string_view text);
    // An instance of a compiled text.
    std::unique_ptr<CTypeSchema> Instance(std::string_view text, std::string_view name);

    // Everything reported so far, a line for each message: "NAME text @line:position |text of the line|".
    std::string Messages() const;
    void KeepLog();
    std::string LogText() const { return outside_.memory.Get("/home/log.txt"); }

    ScopedPlatform outside_;
};

}  // namespace kvl
