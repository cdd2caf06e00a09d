#pragma once
// What came of a parse, told as one text, so that two parsers can be compared and a difference be read: result, cursor,
// end of the root, remainder, texts, records, messages. Bytes that cannot be printed are escaped.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "messages/Log.h"
#include "support/TestPlatform.h"
#include "typeschema/CTypeSchema.h"

namespace kvl {

enum class LogMode { Closed, Open };

class ParseComparison {
public:
    ParseComparison();

    // The text of a whole type file. False if it is refused.
    [[nodiscard]] bool SetType(std::string_view typeText);

    // Rows of the compiled type.
    std::size_t ElementCount() const { return declaration_->elements.size(); }

    // Does the program's parser take the input?
    bool Parses(std::string_view input, LogMode mode);
    // By the program's parser; it parses differently while a log is open.
    std::string RealOutcome(std::string_view input, LogMode mode);
    // By the literal parser, which always writes a log; nothing if it takes more than `stepBudget` steps.
    std::optional<std::string> LiteralOutcome(std::string_view input, long stepBudget);

    // A log closes itself after so many writes more.
    void SetLogRoom(int writes) { logRoom_ = writes; }

    // The log of the last parse, with the messages in their places; empty if none was open.
    const std::string& LogText() const { return log_; }

private:
    void StartLog(LogMode mode);
    void StopLog();
    CTypeSchema& FreshInstance(std::string_view input);
    std::string TakeMessages();

    ScopedPlatform outside_;
    std::shared_ptr<CTypeSchema> declaration_;
    std::unique_ptr<CTypeSchema> instance_;
    std::string log_;
    int logRoom_ = kLogWriteLimit;
};

// Printable bytes as they are, all others and the backslash as "\xHH".
std::string Printable(std::string_view bytes);

}  // namespace kvl
