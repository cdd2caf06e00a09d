#include "typeschema/InputParser.h"

#include "messages/Log.h"
#include "text/ProcessState.h"
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
    const int errorsBefore = Process().errorCount;
    if (LogIsOpen()) {
        PlainParser parser(schema);
        const bool matched = parser.Parse();
        const bool hasReported = Process().errorCount != errorsBefore;
        if (!parser.IsAbandoned() || hasReported) return matched;
        DropValues(schema, start);
    }
    return FastParser(schema).Parse();
}

}  // namespace kvl
