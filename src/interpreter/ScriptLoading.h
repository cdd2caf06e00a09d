#pragma once
// From a path to a checked, executable script: the sequence around the front end, the same for the main script and for
// every script or pattern that a script declares.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interpreter/CPatternSchema.h"

namespace kvl {

// Judges the path of a main script as typed and makes it absolute; false after a message.
[[nodiscard]] bool CheckMainScriptPath(std::string_view path, std::string& absolutePath);

// Compiles and runs the main script; false on any failure. An empty main script runs the standard script beside the
// executable in its place.
[[nodiscard]] bool LoadAndRun(std::string_view path);

// Progress lines for one source: the "before" report while kindName is empty, the "after" report once it is set.
struct ParseInfo {
    std::string kindName;
    std::string streamName;  // empty for a file
    std::string fileName;
    std::string displayPath;
};
void ReportParse(const ParseInfo& info);

// Compiles one file (or a stream's text under its name) into a new schema of the given entity kind, its weak literals
// too, but its blocks not yet checked; null after a message. `info` is ready for the "after" report.
std::unique_ptr<CPatternSchema> CompileFile(int entityKind, std::string_view path, ParseInfo& info);
std::unique_ptr<CPatternSchema> CompileText(int entityKind, std::string_view name, std::string& text, ParseInfo& info,
                                            const MessageContext& context);

// Pairs the blocks and judges header, footer, version, macro head and what stands behind the footer. Reports at the
// schema's source. Runs once for a schema, before any command of it runs.
[[nodiscard]] bool CheckBlocks(CPatternSchema& schema);

// Compiles a text as a fragment of the schema's source, at its present line; its weak literals too. Null on failure.
std::unique_ptr<CommandList> CompileFragment(const CPatternSchema& schema, std::string_view text);

// Creates a variable for each built-in macro.
[[nodiscard]] bool CreateStaticMacros(CPatternSchema& schema);

// The first existing of the candidate paths in `fileText`, which are separated by ";"; empty after a message (none when
// `quiet`). Several hits are a warning.
std::string FindInSearchPath(std::string_view fileText, bool quiet, const CPatternSchema& schema);

}  // namespace kvl
