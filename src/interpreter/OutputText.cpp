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

// Up to here one look at each byte is quicker than a search for each of the two line ends.
constexpr std::size_t kShortValue = 64;

bool HasLineEnds(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) > '\r') continue;  // which nearly all are
        if (c == '\n' || c == '\r') return true;
    }
    return false;
}

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

PreparedText::PreparedText(std::string whole) : text(std::move(whole)) {
    const std::size_t lineEnd = text.rfind('\n');
    if (lineEnd != std::string::npos) lineStart = lineEnd + 1;
    hasInk = !IsAllInvisible(std::string_view(text).substr(lineEnd + 1));  // npos + 1 is 0
}

void PreparedText::EncodeUtf8() {
    text = EncodeFolded(text);
    if (lineStart != std::string::npos) lineStart = text.rfind('\n') + 1;
}

void OutputText::Append(std::string_view text) {
    const std::size_t lineEnd = text.rfind('\n');
    const bool hasInk = !IsAllInvisible(text.substr(lineEnd + 1));
    Append(text, lineEnd == std::string_view::npos ? lineEnd : lineEnd + 1, hasInk);
}

void OutputText::AppendOutput(std::string_view text) {
    const std::size_t lineEnd = text.rfind('\n');
    bool isUtf8 = false;
    const bool hasInk = !IsAllInvisible(FoldUtf8(text.substr(lineEnd + 1), isUtf8));
    Append(text, lineEnd == std::string_view::npos ? lineEnd : lineEnd + 1, hasInk);
}

void OutputText::Append(OutputText&& other) {
    if (!text_.empty()) {
        Append(other.text_, other.lineStart_ == 0 ? std::string::npos : other.lineStart_, other.hasInk_);
        return;
    }
    text_ = std::move(other.text_);
    lineStart_ = other.lineStart_;
    hasInk_ = other.hasInk_;
}

// A large text grows in large steps: what it will never use costs nothing, while each step copies all of it.
void OutputText::Grow(std::size_t size) {
    constexpr std::size_t kLargeText = std::size_t{1} << 20;
    const std::size_t factor = text_.size() < kLargeText ? 2 : 4;
    const std::size_t wanted = text_.size() + size;
    text_.reserve(std::max(wanted, std::min(text_.size() * factor + size, kLongestText)));
}

void OutputText::AppendValue(std::string_view value) {
    if (value.size() <= kShortValue && !HasLineEnds(value)) {
        Append(value, std::string::npos, hasInk_ || !IsAllInvisible(value));
        return;
    }
    const std::size_t begin = text_.size();
    AppendValueWithCrLf(text_, value);
    const std::string_view appended = std::string_view(text_).substr(begin);
    const std::size_t lineEnd = appended.rfind('\n');
    if (lineEnd != std::string_view::npos) {
        lineStart_ = begin + lineEnd + 1;
        hasInk_ = false;
    }
    hasInk_ = hasInk_ || !IsAllInvisible(appended.substr(lineEnd + 1));
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
