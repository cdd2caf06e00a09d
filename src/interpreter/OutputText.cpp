// Appending looks at the appended text only, and there at what stands behind its last line end.
#include "interpreter/OutputText.h"

#include <algorithm>

#include "text/ByteClass.h"
#include "text/Replace.h"
#include "text/Utf8.h"

namespace kvl {

namespace {

// No byte decides on the meaning of one that stands further behind it: a sequence has four bytes at most.
constexpr std::size_t kSequenceReach = 3;

constexpr bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Where encoding has to start so that it reads the sequences of the whole text: at the last byte in reach of `position`
// that begins a sequence or is none. Without one in reach, a sequence ends at `position`.
std::size_t SequenceStart(std::string_view text, std::size_t position) {
    for (std::size_t back = 1; back <= std::min(kSequenceReach, position); ++back) {
        if (!IsContinuation(text[position - back])) return position - back;
    }
    return position;
}

}  // namespace

void OutputText::Append(std::string_view text) {
    const std::size_t begin = text_.size();
    text_ += text;
    NoteAppended(begin);
}

void OutputText::AppendValue(std::string_view value) {
    const std::size_t begin = text_.size();
    AppendValueWithCrLf(text_, value);
    NoteAppended(begin);
}

void OutputText::NoteAppended(std::size_t begin) {
    std::string_view appended = std::string_view(text_).substr(begin);
    const std::size_t lineEnd = appended.rfind('\n');
    if (lineEnd != std::string_view::npos) {
        appended.remove_prefix(lineEnd + 1);
        lineStart_ = text_.size() - appended.size();
        hasInk_ = false;
    }
    if (!hasInk_) hasInk_ = !IsAllInvisible(appended);
}

void OutputText::StripLastLine() {
    if (hasInk_) return;
    text_.resize(lineStart_);
    encoded_ = std::min(encoded_, lineStart_);
}

// A letter is ink in either form, so that the line of a single letter is no blank line afterwards.
void OutputText::EncodeUtf8() {
    const std::size_t from = SequenceStart(text_, encoded_);
    EncodeSpecialLetters(text_, from);
    encoded_ = text_.size();
    if (lineStart_ > from) lineStart_ = text_.rfind('\n') + 1;
}

}  // namespace kvl
