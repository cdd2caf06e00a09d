#pragma once
// The source of a type while it is judged: where its items stand, for messages. Read at the first fault and kept, so
// that a type with many faults costs one reading.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "messages/CMessage.h"
#include "typeschema/CTSEntity.h"
#include "typeschema/TypeItem.h"

namespace kvl {

class TypeSource {
public:
    explicit TypeSource(const CTSEntity& entity) : entity_(entity) {}

    // Named items stand where their name stands, literals where they begin, others at their type.
    TypeContext PlaceOf(const TypeItem& item);
    // Declared types stand at their line.
    TypeContext PlaceOf(const DeclaredType& declared) { return AtLine(declared.line); }

private:
    TypeContext At(int offset, std::string_view token, int line);
    TypeContext AtLine(int line);
    // False where the source is no file, or one that can no longer be read; the latter is reported once.
    bool HasText();
    std::string_view LineText(int line);

    const CTSEntity& entity_;  // outlives this
    std::optional<bool> readable_;
    std::string text_;
    std::vector<std::size_t> lineStarts_;  // made when the first line is asked for
};

}  // namespace kvl
