#pragma once
// From the text of a main script, script, pattern or fragment to its list of commands.

#include <string>
#include <string_view>
#include <vector>

#include "frontend/CommandList.h"
#include "messages/EntityKinds.h"

namespace kvl {

// Fills the scanner's vocabulary; called once at program start, harmless when called again.
void InitialiseKeywordTable();

// Each compiles one source and returns true if it was accepted; `list` is then complete, its entity kind being the one
// given. A rejected source has been reported, once, unless it is a fragment.

// Reads the file; a failure to open or read is reported, and an empty file is ERR_EXEC_SCRIPT_FILE_8.
[[nodiscard]] bool ParseScriptSourceFile(int entityKind, std::string_view path, CommandList& list);

// `text` is a stream value's text, folded in place if it is UTF-8; `streamName` names it in messages, where its
// lines count from `firstLine`. The empty text is reported as a missing header.
[[nodiscard]] bool ParseScriptSourceStream(int entityKind, std::string_view streamName, std::string& text,
                                           CommandList& list, int firstLine = 1);

// A fragment without header or footer, in which only placeholders, macro calls and literal text may stand; the empty
// text is an empty success. The log follows it. A failure shows nothing but a line end on console and log: the caller
// reports it, whatever it was, as ERR_DECL_SCRIPT_LIT_2 or its twin at the command that owns the fragment.
[[nodiscard]] bool ParseScriptConstant(int entityKind, std::string_view text, CommandList& list);

// The text of a call as messages show it: name, "(", arguments joined by ", ", ")".
std::string CallText(std::string_view macroName, const std::vector<ActualArgument>& arguments);

}  // namespace kvl
