#pragma once
// How a fault in the structure of blocks is told: which message for which kind of block, and the texts it shows.

#include "interpreter/CPatternSchema.h"

namespace kvl {

enum class BlockKind { Version, Macro, Loop, Condition, Separator, Comment };
BlockKind KindOfBlock(const PatternCommand& command);

enum class BlockFault { EndWithoutBegin, BeginWithoutEnd, DifferentTexts, ClosedByAnother };

// Shows the message for a begin, an end, or two that do not belong together; false always. At least one is given.
bool ReportBlockFault(const CPatternSchema& schema, BlockFault fault, const PatternCommand* begin,
                      const PatternCommand* end);

// Shows a message (or its pattern twin) at a line of the source. `command` is the block that it speaks of; null if
// none.
bool ReportStructure(const CPatternSchema& schema, MessageId scriptRow, int line,
                     const PatternCommand* command = nullptr, int relatedLine = -1, std::string_view variableName = {});

}  // namespace kvl
