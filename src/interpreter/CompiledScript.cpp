// The literal text of a macro, prepared for writing. All of it depends on the compiled commands and on the depth of the
// call alone, so it is made once for each kind of depth: one pass over each text.
#include "interpreter/CompiledScript.h"

#include <algorithm>
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

PreparedText WithCrLf(std::string_view text) {
    std::string lines;
    AppendWithCrLf(lines, text);
    return PreparedText(std::move(lines));
}

TextChunk CutAtFirstLineEnd(std::string_view text) {
    TextChunk chunk;
    const std::size_t lineEnd = text.find('\n');
    chunk.first = PreparedText(std::string(text.substr(0, lineEnd)));
    chunk.hasLineEnd = lineEnd != std::string_view::npos;
    if (chunk.hasLineEnd) chunk.rest = WithCrLf(text.substr(lineEnd + 1));
    return chunk;
}

// What came as UTF-8 is written as such at once. Beside each other, two folded letters may look like one of UTF-8,
// which the encoding at the end of the macro would take them for.
void EncodeUtf8(MacroText& text) {
    for (TextChunk& chunk : text.chunks) {
        chunk.first.EncodeUtf8();
        chunk.rest.EncodeUtf8();
    }
    text.leading.EncodeUtf8();
    text.trailing.EncodeUtf8();
}

class TextPreparation {
public:
    explicit TextPreparation(const CompiledScript& script)
        : commands_(script.Commands()),
          bodyBegin_(static_cast<std::size_t>(script.bodyBegin)),
          bodyEnd_(static_cast<std::size_t>(script.bodyEnd)) {
        for (std::size_t index = 0; index < commands_.size(); ++index) {
            if (IsText(index)) texts_.push_back({index, WithoutBlanksAtLineEnds(commands_[index].streamText)});
        }
        RemoveLineOfTheHead();
    }

    // The judgement of the first line end meets the added one, and the template's own first line end is kept.
    void AddFirstLineEnd() {
        const auto first = FirstFrom(bodyBegin_);
        if (first != texts_.end()) first->text.insert(0, 1, '\n');
    }

    // The line end behind the last line of the body is the one behind the call.
    void RemoveLastLineEnd() {
        for (auto text = FirstFrom(bodyEnd_); text != texts_.begin();) {
            --text;
            if (!text->text.ends_with('\n')) continue;
            text->text.pop_back();
            return;
        }
    }

    MacroText Finish() {
        MacroText text;
        text.chunkOf.assign(commands_.size(), -1);
        text.chunks.reserve(texts_.size());
        for (const CommandText& part : texts_) {
            text.chunkOf[part.index] = static_cast<int>(text.chunks.size());
            text.chunks.push_back(CutAtFirstLineEnd(part.text));
        }
        if (commands_[bodyBegin_].subkind != cmd_declare_pattern_macro) return text;  // a script writes no text
        if (bodyBegin_ > 0 && IsText(0)) text.leading = WithCrLf(texts_.front().text);
        text.trailing = WithCrLf(TrimInvisibleEnd(TextBehindTheBody()));
        return text;
    }

private:
    struct CommandText {
        std::size_t index;  // of the command
        std::string text;
    };

    // The text of a comment block is no text of the template.
    bool IsText(std::size_t index) const {
        const bool isInComment =
            index > 0 && commands_[index - 1].beginEnd == cmd_begin && commands_[index - 1].subkind == cmd_comment;
        return commands_[index].subkind == cmd_stream && !isInComment;
    }

    std::vector<CommandText>::iterator FirstFrom(std::size_t index) {
        return std::ranges::lower_bound(texts_, index, {}, &CommandText::index);
    }

    void RemoveLineOfTheHead() {
        const auto behindHead = FirstFrom(bodyBegin_ + 1);
        if (behindHead == texts_.end() || behindHead->index != bodyBegin_ + 1) return;
        std::string& text = behindHead->text;
        const std::size_t lineEnd = text.find('\n');
        if (lineEnd == std::string::npos || !IsAllInvisible(std::string_view(text).substr(0, lineEnd))) return;
        text.erase(0, lineEnd + 1);
    }

    // Each of these texts stands behind a command, whose line it ends.
    std::string TextBehindTheBody() {
        std::string joined;
        for (auto part = FirstFrom(bodyEnd_); part != texts_.end(); ++part) {
            const std::string_view text = part->text;
            joined += text.starts_with('\n') ? text.substr(1) : text;
        }
        return joined;
    }

    const std::vector<PatternCommand>& commands_;  // not owned; outlives this
    const std::size_t bodyBegin_, bodyEnd_;
    std::vector<CommandText> texts_;  // in the order of the commands
};

MacroText PrepareText(const CompiledScript& script, bool outermost) {
    TextPreparation preparation(script);
    if (outermost) {
        preparation.AddFirstLineEnd();
    } else {
        preparation.RemoveLastLineEnd();
    }
    MacroText text = preparation.Finish();
    if (script.list.utf8Source) EncodeUtf8(text);
    return text;
}

}  // namespace

const MacroText& CompiledScript::TextFor(bool outermost) const {
    assert(bodyBegin >= 0 && bodyEnd > bodyBegin);
    std::unique_ptr<MacroText>& prepared = outermost ? outermostText_ : nestedText_;
    if (!prepared) prepared = std::make_unique<MacroText>(PrepareText(*this, outermost));
    return *prepared;
}

}  // namespace kvl
