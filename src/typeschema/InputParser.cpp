#include "typeschema/InputParser.h"

#include "messages/Log.h"
#include "typeschema/CTypeSchema.h"
#include "typeschema/FastParser.h"
#include "typeschema/PlainParser.h"

namespace kvl {

namespace {

void DropValues(CTypeSchema& schema, int cursor) {
    for (const ElementEntry& entry : schema.elements) {
        if (entry.variable->IsList()) static_cast<CVariableKVLCategoryList*>(entry.variable)->RemoveRecords({});
        entry.variable->ClearValue();
    }
    schema.input.SetCursor(cursor);
}

}  // namespace

bool ParseInput(CTypeSchema& schema) {
    const int start = schema.input.GetCursor();
    if (LogIsOpen()) {
        PlainParser parser(schema);
        const bool matched = parser.Parse();
        if (!parser.IsAbandoned()) return matched;
        DropValues(schema, start);
    }
    return FastParser(schema).Parse();
}

}  // namespace kvl
