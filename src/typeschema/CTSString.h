#pragma once
// The input of the type parser: a text with one read cursor. The text never changes while it is read, and lives as long
// as anybody holds it: parsed values are places in it.

#include <memory>
#include <string>
#include <string_view>

namespace kvl {

class CTSString {
public:
    virtual ~CTSString() = default;

    // Replaces the text; the cursor becomes 0.
    void SetText(std::string text);
    void SetText(std::shared_ptr<const std::string> text);
    std::string_view GetText() const { return *text_; }
    const std::shared_ptr<const std::string>& SharedText() const { return text_; }
    int GetLength() const { return static_cast<int>(text_->size()); }

    int GetCursor() const { return cursor_; }
    void SetCursor(int position) { cursor_ = position; }  // any value; readers test it
    void MoveCursor(int delta) { cursor_ += delta; }
    // The cursor is not below the length. False on a new object, whose cursor is -1.
    bool IsAtEnd() const { return cursor_ >= GetLength(); }
    // The byte at the cursor, which moves on; at the end 0, no move, and the result 0. Else 1.
    int GetChar(char& c);
    // Up to `count` bytes from the cursor on, which moves by as many.
    void ReadChars(std::string& text, int count);
    // The bytes from `first` to `last`, both included. `last` = `first` - 1 gives the empty text; with `first` above 0
    // a `last` of -1 means to the end.
    std::string_view GetSubstring(int first, int last) const;

private:
    std::shared_ptr<const std::string> text_ = std::make_shared<const std::string>();
    int cursor_ = -1;
};

}  // namespace kvl
