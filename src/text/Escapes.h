#pragma once
// Escape sequences and quoting of literals.

#include <string>
#include <string_view>

namespace kvl {

// \n \r \t \v \b \f \a \' \" \? \\ become their bytes; any other backslash stays, together with what follows.
std::string ResolveEscapes(std::string_view text);

// The text without its first and last byte, with every doubled `quote` made single.
std::string UnquoteLiteral(std::string_view raw, char quote);

}  // namespace kvl
