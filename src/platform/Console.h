#pragma once
// The console: coloured text out, single keys and typed lines in.

#include <memory>
#include <string_view>

namespace kvl {

// Colours by their number: 10 green, 11 cyan, 12 red, 13 magenta, 14 yellow, 224 black on yellow; 0 is plain.
constexpr int kPlain = 0;

constexpr int kKeyEscape = 27;
constexpr int kKeyReturn = 13;

class Console {
public:
    virtual ~Console() = default;

    // Shows the text. Colours appear on a terminal only; elsewhere the bytes go out as they are. On a terminal control
    // bytes other than tab, LF and a CR in front of LF are shown as ".". A console that takes no more swallows the
    // rest.
    virtual void Write(std::string_view text, int colour = kPlain) = 0;
    virtual void Flush() = 0;
    virtual bool IsTerminal() const = 0;

    // One key, without echo on a terminal. LF counts as kKeyReturn, the end of input as kKeyEscape. Away from a
    // terminal the line end directly behind a letter that was answered belongs to that answer; see AcceptKey.
    virtual int ReadKey() = 0;
    // Tells that the key just read was taken as an answer, so that a line end directly behind it is passed over.
    virtual void AcceptKey() = 0;
    // The next byte of standard input, or -1 at its end.
    virtual int ReadByte() = 0;
};

// The console of this process. Output is buffered: flushed at each line end on a terminal, elsewhere when full, before
// input is read and at the end of the process.
Console& SystemConsole();

}  // namespace kvl
