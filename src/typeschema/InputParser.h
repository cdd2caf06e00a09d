#pragma once
// Matching a text against the element table of an instance, whose variables and lists are filled by it.

namespace kvl {

class CTypeSchema;

// Parses the schema's input from its cursor by the whole table. A failure has been reported at the place where the
// input was first wrong, or has no message of its own (`false` all the same). Afterwards the cursor and rootSpanEnd
// tell how far the root reached.
[[nodiscard]] bool ParseInput(CTypeSchema& schema);

}  // namespace kvl
