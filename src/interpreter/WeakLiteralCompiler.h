#pragma once
// The literals of a script that may hold placeholders: each is compiled as a small script of its own, whose commands
// are kept as pieces beside the text.

#include "frontend/CommandList.h"
#include "typeschema/CTSEntity.h"

namespace kvl {

constexpr int kEachCommandsOwnLine = -1;

// Compiles the literals of every command, those among the arguments of calls too, also of calls that stand inside a
// literal. The first that is not accepted is reported at its command in `source`, or at `line` when the commands have
// no line there.
[[nodiscard]] bool CompileWeakLiterals(CommandList& list, const CTSEntity& source, int line = kEachCommandsOwnLine);

}  // namespace kvl
