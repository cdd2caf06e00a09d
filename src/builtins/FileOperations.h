#pragma once
// Reading, writing, copying and loading files, as assignments ask for it. Each reports its own failures.

#include "interpreter/CPatternSchema.h"

namespace kvl {

// The decision table of assignments with files, streams, scripts, patterns and types (see BuiltIns::ExecuteBuiltIn).
[[nodiscard]] bool ExecuteBuiltIn(CPatternSchema& schema, const PatternCommand& command, AssignmentOperands& operands,
                                  bool& handled, RunContext& run);

// kind 6 for a script, 8 for a pattern.
[[nodiscard]] bool LoadMacroFile(CPatternSchema& schema, int kind, std::string_view path, CVariable& variable);
[[nodiscard]] bool LoadMacroStream(CPatternSchema& schema, int kind, std::string_view name, std::string& text,
                                   CVariable& variable);
[[nodiscard]] bool LoadTypeFile(CPatternSchema& schema, std::string_view path, CVariable& variable);
[[nodiscard]] bool LoadTypeStream(CPatternSchema& schema, std::string_view name, std::string& text,
                                  CVariable& variable);
[[nodiscard]] bool LoadInstanceFile(CPatternSchema& schema, std::string_view path, std::string_view typeName,
                                    std::string_view instanceName);
[[nodiscard]] bool LoadInstanceStream(CPatternSchema& schema, std::string_view streamName, std::string text,
                                      std::string_view typeName, std::string_view instanceName);
// Fills a bracket list with the matches of its element's type in `text`.
[[nodiscard]] bool LoadBracketList(CPatternSchema& schema, CVariableKVLCategoryList& list, int elementType,
                                   std::string_view text);
[[nodiscard]] bool ReadFileToStream(CPatternSchema& schema, std::string_view path, CVariable& variable);
[[nodiscard]] bool WriteStreamToFile(CPatternSchema& schema, std::string_view path, std::string_view text);
[[nodiscard]] bool CopyFileTo(CPatternSchema& schema, std::string_view target, std::string_view source);

// The two questions; each sets the schema's overwriteMode and returns it.
int AskOverwriteRun(CPatternSchema& schema);
int AskOverwriteFile(CPatternSchema& schema, std::string_view path);

}  // namespace kvl
