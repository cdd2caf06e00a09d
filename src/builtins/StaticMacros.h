#pragma once
// The built-in macros by identifier. Each takes what a call is bound to, checks its arguments, reports what is wrong in
// the frame of the calling schema, and fills value.result.

#include "interpreter/CPatternSchema.h"

namespace kvl {

[[nodiscard]] bool RunStaticMacro(CPatternSchema& schema, int identifier, MacroValue& value);

// The messages that the argument checks share; false always. A declaration is such as "KVL:LIST:SORT(L, C)".
bool ReportArgumentCount(const CPatternSchema& schema, std::string_view macroDeclaration);
bool ReportArgumentType(const CPatternSchema& schema, const BoundArgument& argument, std::string_view expectedType,
                        std::string_view parameterName);
// The text of a stream variable or of a constant string; any other argument is reported. Valid until the next command.
[[nodiscard]] bool TakeStreamArgument(const CPatternSchema& schema, const BoundArgument& argument,
                                      std::string_view parameterName, std::string_view& text);

// Families; identifiers as in frontend/CommandIds.h.
[[nodiscard]] bool RunListMacro(CPatternSchema& schema, int identifier, MacroValue& value);
[[nodiscard]] bool RunStreamMacro(CPatternSchema& schema, int identifier, MacroValue& value);
[[nodiscard]] bool RunGenerationMacro(CPatternSchema& schema, int identifier, MacroValue& value);
[[nodiscard]] bool RunDirectoryMacro(CPatternSchema& schema, int identifier, MacroValue& value);

}  // namespace kvl
