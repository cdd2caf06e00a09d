#pragma once
// The declared types that a type may use without declaring them: those that the root script has loaded.

#include <string_view>

namespace kvl {

class CTypeSchema;

class KnownTypes {
public:
    virtual ~KnownTypes() = default;
    // The loaded type whose name behind its last ":" is `name`; null if there is none. Not owned.
    virtual const CTypeSchema* FindLoadedType(std::string_view name) const = 0;
};

}  // namespace kvl
