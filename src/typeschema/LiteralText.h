#pragma once
// The text that a literal of a type matches, from its declared form.

#include <string>
#include <string_view>

namespace kvl {

// Without its quotes, doubled quotes made single, escapes resolved.
std::string StrictLiteralText(std::string_view declared);
// Without its quotes, doubled quotes made single; no escapes.
std::string WeakLiteralText(std::string_view declared);
// Is nothing left of the literal that could be matched?
bool IsEmptyStrictLiteral(std::string_view declared);
bool IsEmptyWeakLiteral(std::string_view declared);
// As the brackets of ::NESTED are matched: without the quotes, all else as it stands.
std::string_view BareLiteralText(std::string_view declared);

}  // namespace kvl
