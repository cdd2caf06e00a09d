#pragma once
// What the tests of declared types share: types read from their text by the front end, an outside that keeps messages,
// and the types that are known by loading.

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

class LoadedTypes final : public KnownTypes {
public:
    const CTypeSchema* FindLoadedType(std::string_view name) const override;
    // Compiles the text and knows its main type under that name.
    void Load(std::string_view name, std::string_view text);
    // The same for each line, by the name that it declares first.
    void LoadLines(std::string_view lines);

private:
    std::map<std::string, std::shared_ptr<CTypeSchema>, std::less<>> schemas_;
};

// The source is the file "/home/T.txt" of the test's outside; its declarations begin on line 2.
class DeclaredTypesTest : public testing::Test {
protected:
    DeclaredTypesTest() { ResetProcessState(); }

    std::shared_ptr<CTypeSchema> Read(std::string_view text);
    [[nodiscard]] static bool Compile(CTypeSchema& schema, const KnownTypes& knownTypes = LoadedTypes());
    // Compiled, or null with the messages on the console.
    std::shared_ptr<CTypeSchema> Compiled(std::string_view text);
    // An instance of a compiled text.
    std::unique_ptr<CTypeSchema> Instance(std::string_view text, std::string_view name);

    // Everything reported so far, a line for each message: "NAME text @line:position |text of the line|".
    std::string Messages() const;
    void KeepLog();
    std::string LogText() const { return outside_.memory.Get("/home/log.txt"); }

    ScopedPlatform outside_;
};

}  // namespace kvl
