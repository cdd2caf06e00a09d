#pragma once
// The text that a pattern writes: one growing buffer that knows whether its last line holds ink, so that the template
// rule looks at the current line only and nothing already written is copied.

#include <string>
#include <string_view>

namespace kvl {

constexpr std::size_t kLongestText = 2147483647;  // positions in a text are 32-bit

// A text to write, with what it does to the last line known beforehand.
struct PreparedText {
    PreparedText() = default;
    explicit PreparedText(std::string whole);
    // Puts the special letters into their two-byte form. They are ink as before.
    void EncodeUtf8();

    std::string text;
    std::size_t lineStart = std::string::npos;  // behind the last LF; npos without one
    bool hasInk = false;                        // a visible byte stands there
};

class OutputText {
public:
    const std::string& Text() const { return text_; }
    std::string Take() { return std::move(text_); }

    // Cost: the appended text.
    void Append(std::string_view text);
    void Append(const PreparedText& prepared) { Append(prepared.text, prepared.lineStart, prepared.hasInk); }
    // Cost: the appended text, or nothing as long as there is none here.
    void Append(OutputText&& other);
    // What another output has written, changed since; special letters stand there in either form.
    void AppendOutput(std::string_view text);
    // A value: LF as CR LF, its own CRs dropped.
    void AppendValue(std::string_view value);
    // Is there no visible byte behind the last LF?
    bool IsLastLineBlank() const { return !hasInk_; }
    // Takes the invisible bytes behind the last LF away, if there is nothing else.
    void StripLastLine();
    // Puts special letters into their two-byte form, in what was written since this was last done.
    void EncodeUtf8();

private:
    void Append(std::string_view text, std::size_t lineStart, bool hasInk) {
        if (lineStart != std::string::npos) lineStart_ = text_.size() + lineStart;
        hasInk_ = hasInk || (hasInk_ && lineStart == std::string::npos);
        if (text_.capacity() - text_.size() < text.size()) Grow(text.size());
        text_ += text;
    }
    void Grow(std::size_t size);

    std::string text_;
    bool hasInk_ = false;        // a visible byte was written behind the last LF
    std::size_t lineStart_ = 0;  // behind the last LF
    std::size_t encoded_ = 0;    // so far EncodeUtf8 has been
};

}  // namespace kvl
