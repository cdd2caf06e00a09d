#include "typeschema/LiteralText.h"

#include "text/Escapes.h"

namespace kvl {

std::string StrictLiteralText(std::string_view declared) {
    return ResolveEscapes(UnquoteLiteral(declared, '"'));
}

std::string WeakLiteralText(std::string_view declared) {
    return UnquoteLiteral(declared, '\'');
}

bool IsEmptyStrictLiteral(std::string_view declared) {
    return StrictLiteralText(declared).empty();
}

bool IsEmptyWeakLiteral(std::string_view declared) {
    return BareLiteralText(declared).empty();
}

std::string_view BareLiteralText(std::string_view declared) {
    return declared.size() < 2 ? std::string_view() : declared.substr(1, declared.size() - 2);
}

}  // namespace kvl
