#pragma once
// The kinds of compiled things, by number.

#include <string_view>

namespace kvl {

enum EntityKind : int {
    kEntityMainScript = 0,
    kEntityType = 1,
    kEntityPattern = 2,
    kEntityTypeInstance = 4,
    kEntitySubTypeInstance = 5,
    kEntityMacroScript = 6,
    kEntityMacroType = 7,
    kEntityMacroPattern = 8,
    kEntityUnknown = 13,
};

// "Main Script", "Type", ...; empty for an id without a row and for kEntityUnknown.
std::string_view GetEntityKindName(int id);

// Main scripts and macro scripts.
constexpr bool IsScriptKind(int kind) {
    return kind == kEntityMainScript || kind == kEntityMacroScript;
}

}  // namespace kvl
