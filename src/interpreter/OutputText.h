#pragma once
// The text that a pattern writes: one growing buffer that knows whether its last line holds ink, so that the template
// rule looks at the current line only and nothing already written is copied.

#include <string>
#include <string_view>

namespace kvl {

class OutputText {
public:
    const std::string& Text() const { return text_; }
    std::string Take() { return std::move(text_); }

    void Append(std::string_view text);
    // A value: LF as CR LF, its own CRs dropped.
    void AppendValue(std::string_view value);
    // Is there no visible byte behind the last LF?
    bool IsLastLineBlank() const { return !hasInk_; }
    // Takes the invisible bytes behind the last LF away, if there is nothing else.
    void StripLastLine();
    // Puts special letters into their two-byte form, in what was written since this was last done.
    void EncodeUtf8();

private:
    void NoteAppended(std::size_t begin);

    std::string text_;
    bool hasInk_ = false;        // a visible byte was written behind the last LF
    std::size_t lineStart_ = 0;  // behind the last LF
    std::size_t encoded_ = 0;    // so far EncodeUtf8 has been
};

}  // namespace kvl
