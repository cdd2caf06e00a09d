#pragma once
// The character source of a scanner: one source text, taken whole, folded once, and delivered byte by byte or in runs,
// with line and column. It also finds the lines that messages show, and shows the message of a fault.
//
// Two places are kept apart: the next byte to deliver, and the furthest byte fetched so far. A scanner fetches a byte
// or more beyond a token to see where it ends and gives them back; line, column and the character count belong to the
// furthest byte, and giving back does not change them.

#include <cstddef>
#include <string>
#include <string_view>

#include "messages/CMessage.h"

namespace kvl {

class CScan {
public:
    CScan() = default;
    virtual ~CScan() = default;
    CScan(const CScan&) = delete;  // text_ looks into the object itself
    CScan& operator=(const CScan&) = delete;

    // The source is the text of the file at `path`; lines for messages are read again from there.
    void SetFileSource(std::string_view path, std::string text);
    // The source is a stream value's text. Folding changes `text` itself when it holds UTF-8 lead bytes; `text` must
    // outlive the scan. Its lines count from `firstLine`.
    void SetStreamSource(std::string* text, int firstLine = 1);
    void SetConstantSource(std::string_view text);

    // The next byte as 0..255, or -1 at the end. Counts every call, but for bytes that were given back.
    int GetChar();
    // Gives back the last `count` bytes delivered.
    void UngetChars(int count);

    // All bytes that are still to be delivered, and the delivery of the first `count` of them at once. Both are views
    // into the source, good as long as the scan.
    std::string_view Rest() const { return text_.substr(next_); }
    std::string_view Take(std::size_t count);

    // Source line `number` without its line feed; empty behind the end, and for a source that is no file. False only if
    // the file cannot be read again.
    bool GetLineText(int number, std::string& text) const;
    // Opens a mark at the present position, or closes it.
    void SetMark(bool on);
    // The marked position if a mark is open, else the present one, with the text of that line.
    void GetPosition(int& line, int& column, std::string& text) const;

    // Shows the message of a fault in the frame of `record`, whose mark text is made here, and closes the mark. A
    // non-empty `text` decides the message: "Syntax error" by the kind of the record, any other is the reason of a
    // fatal error. With a constant source only the line end in front of messages appears. False always.
    bool ReportError(SourceContext record, int id, std::string_view text);

    int GetCurrentLine() const { return line_; }
    int GetCharacterCount() const { return characterCount_; }
    bool IsConstantSource() const { return source_ == Source::Constant; }
    bool IsUtf8Source() const { return utf8Source_; }

private:
    enum class Source { Constant, File, Stream };

    void Begin(Source source, std::string& text);
    void CountFetched(std::string_view bytes);

    Source source_ = Source::Constant;
    std::string sourceName_;
    std::string ownText_;
    std::string_view text_;    // into ownText_ or a stream value
    std::size_t next_ = 0;     // the next byte to deliver
    std::size_t fetched_ = 0;  // behind the furthest byte fetched
    bool utf8Source_ = false;
    int line_ = 1;
    int column_ = 0;  // bytes fetched on the line; a file source alone counts them
    int markLine_ = -1;
    int markColumn_ = -1;
    int characterCount_ = 0;
};

}  // namespace kvl
