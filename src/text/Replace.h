#pragma once
// Replacing within texts; each is one pass from left to right.

#include <string>
#include <string_view>

namespace kvl {

// The place of the next `what` in `text` from `position` on, else npos; linear in both whatever they hold.
std::size_t FindText(std::string_view text, std::string_view what, std::size_t position);

// Every occurrence of `what` becomes `byWhat`; occurrences do not overlap and replacements are not scanned again.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view byWhat);

// Appends `text` to `output` with every LF written as CR LF.
void AppendWithCrLf(std::string& output, std::string_view text);

// Appends `text` with every LF as CR LF and its own CRs dropped: how a variable's value enters generated text.
void AppendValueWithCrLf(std::string& output, std::string_view text);

}  // namespace kvl
