// The literal text of a macro, prepared for writing. All of it depends on the compiled commands and on the depth of the
// call alone, so it is made once for each kind of depth: one pass over each text.
#include "interpreter/CompiledScript.h"

#include <cassert>

#include "text/ByteClass.h"
#include "text/Replace.h"
#include "text/Trim.h"

namespace kvl {

namespace {

// Blanks at the end of a template line are never meant. Line ends in a row and what stands behind the last one stay.
std::string WithoutBlanksAtLineEnds(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    for (;;) {
        const std::size_t lineEnd = text.find('\n');
        if (lineEnd == std::string_view::npos) break;
        clean += TrimInvisibleEnd(text.substr(0, lineEnd));
        clean += '\n';
        text.remove_prefix(lineEnd + 1);
    }
    clean += text;
    return clean;
}

TextChunk CutAtFirstLineEnd(std::string_view text) {
    TextChunk chunk;
    const std::size_t lineEnd = text.find('\n');
    chunk.first = PreparedText(std::string(text.substr(0, lineEnd)));
    chunk.hasLineEnd = lineEnd != std::string_view::npos;
    if (!chunk.hasLineEnd) return chunk;
    std::string rest;
    AppendWithCrLf(rest, text.substr(lineEnd + 1));
    chunk.rest = PreparedText(std::move(rest));
    return chunk;
}

class TextPreparation {
public:
    explicit TextPreparation(const CompiledScript& script)
        : commands_(script.Commands()),
          bodyBegin_(static_cast<std::size_t>(script.bodyBegin)),
          bodyEnd_(static_cast<std::size_t>(script.bodyEnd)),
          texts_(commands_.size()) {
        for (std::size_t index = 0; index < commands_.size(); ++index) {
            if (IsText(index)) texts_[index] = WithoutBlanksAtLineEnds(commands_[index].streamText);
        }
        RemoveLineOfTheHead();
    }

    // The judgement of the first line end meets the added one, and the template's own first line end is kept.
    void AddFirstLineEnd() {
        for (std::size_t index = bodyBegin_; index < commands_.size(); ++index) {
            if (!IsText(index)) continue;
            texts_[index].insert(0, 1, '\n');
            return;
        }
    }

    // The line end behind the last line of the body is the one behind the call.
    void RemoveLastLineEnd() {
        for (std::size_t index = bodyEnd_; index-- > 0;) {
            if (!IsText(index) || !texts_[index].ends_with('\n')) continue;
            texts_[index].pop_back();
            return;
        }
    }

    MacroText Finish() const {
        MacroText text;
        text.chunks.resize(commands_.size());
        for (std::size_t index = 0; index < commands_.size(); ++index) {
            if (IsText(index)) text.chunks[index] = CutAtFirstLineEnd(texts_[index]);
        }
        if (commands_[bodyBegin_].subkind != cmd_declare_pattern_macro) return text;  // a script writes no text
        if (bodyBegin_ > 0 && IsText(0)) AppendWithCrLf(text.leading, texts_[0]);
        AppendWithCrLf(text.trailing, TrimInvisibleEnd(TextBehindTheBody()));
        return text;
    }

private:
    // The text of a comment block is no text of the template.
    bool IsText(std::size_t index) const {
        const bool isInComment =
            index > 0 && commands_[index - 1].beginEnd == cmd_begin && commands_[index - 1].subkind == cmd_comment;
        return commands_[index].subkind == cmd_stream && !isInComment;
    }

    void RemoveLineOfTheHead() {
        const std::size_t index = bodyBegin_ + 1;
        if (!IsText(index)) return;
        std::string& text = texts_[index];
        const std::size_t lineEnd = text.find('\n');
        if (lineEnd == std::string::npos || !IsAllInvisible(std::string_view(text).substr(0, lineEnd))) return;
        text.erase(0, lineEnd + 1);
    }

    // Each of these texts stands behind a command, whose line it ends.
    std::string TextBehindTheBody() const {
        std::string joined;
        for (std::size_t index = bodyEnd_ + 1; index < commands_.size(); ++index) {
            const std::string_view text = texts_[index];
            joined += text.starts_with('\n') ? text.substr(1) : text;
        }
        return joined;
    }

    const std::vector<PatternCommand>& commands_;  // not owned; outlives this
    const std::size_t bodyBegin_, bodyEnd_;
    std::vector<std::string> texts_;  // by command; empty for other commands than text
};

MacroText PrepareText(const CompiledScript& script, bool outermost) {
    TextPreparation preparation(script);
    if (outermost) {
        preparation.AddFirstLineEnd();
    } else {
        preparation.RemoveLastLineEnd();
    }
    return preparation.Finish();
}

}  // namespace

const MacroText& CompiledScript::TextFor(bool outermost) const {
    assert(bodyBegin >= 0 && bodyEnd > bodyBegin);
    std::unique_ptr<MacroText>& prepared = outermost ? outermostText_ : nestedText_;
    if (!prepared) prepared = std::make_unique<MacroText>(PrepareText(*this, outermost));
    return *prepared;
}

}  // namespace kvl
