#pragma once
// A compiled script or pattern as it runs: its commands, the blocks that were paired, and its literal text prepared for
// writing. Immutable once it is checked, and shared by all clones of a macro, so that a call costs nothing that grows
// with the macro.

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "frontend/CommandList.h"
#include "interpreter/OutputText.h"

namespace kvl {

struct PatternBlock {
    int blockId;
    int begin;  // index of the begin command
    int end;    // index of the end command
};

// A text command cut once at its first line end. All other line ends stand as CR LF in `rest` already.
struct TextChunk {
    PreparedText first;  // up to the first LF, or all of it
    bool hasLineEnd = false;
    PreparedText rest;  // behind the first LF
};

// How a macro's literal text is written, by the depth at which the macro is called: a macro called from the main script
// keeps its first line end, a nested one loses its last, so that a call adds no line.
struct MacroText {
    std::vector<TextChunk> chunks;  // one for each text command
    std::vector<int> chunkOf;       // by command index; -1 for other commands than text
    PreparedText leading;           // text in front of the header, as it is written
    PreparedText trailing;          // text behind the macro block, as it is written
};

struct CompiledFragment {
    std::shared_ptr<const CommandList> list;
    bool atLineStart = false;  // as its compilation leaves the scanner
};
using FragmentCache = std::unordered_map<std::string, CompiledFragment>;

class CompiledScript {
public:
    explicit CompiledScript(CommandList&& compiled) : list(std::move(compiled)) {}

    const std::vector<PatternCommand>& Commands() const { return list.commands; }
    // The index of the end paired with the begin at `index`; -1 if none.
    int GetBlockEnd(int index) const { return blockEnd.empty() ? -1 : blockEnd[static_cast<std::size_t>(index)]; }
    // Prepared when first asked for.
    const MacroText& TextFor(bool outermost) const;
    // What has been compiled of the texts of quoted commands, so that a computed call in a loop is compiled once.
    FragmentCache& Fragments() const { return fragments_; }

    CommandList list;
    std::vector<PatternBlock> blocks;  // in the order in which they were closed
    std::vector<int> blockEnd;         // by index of the begin command
    int bodyBegin = -1, bodyEnd = -1;  // the macro block
    std::string macroName;             // as declared in the macro head
    std::string macroDeclarationText;  // "NAME(#X::T)"

private:
    mutable std::unique_ptr<MacroText> outermostText_, nestedText_;
    mutable FragmentCache fragments_;
};

}  // namespace kvl
