#pragma once
// Standard input, byte by byte: keys without echo from a terminal, bytes from anything else. All input of the process
// goes through one object, and it never reads ahead: what it leaves belongs to whoever reads the same input next. For
// the files of this folder only.

namespace kvl {

class KeyReader {
public:
    // `descriptor` is not owned.
    explicit KeyReader(int descriptor) : descriptor_(descriptor) {}

    // As the operations of Console.
    int ReadKey();
    void AcceptKey();
    int ReadByte();

private:
    // What is passed over when it stands at the front of what is read next.
    enum class PassOver { Nothing, LineFeed, LineEnd };

    int ReadRaw();  // a byte, or -1
    int ReadTerminalKey();
    bool SwallowKeySequence();
    int ReadPlainKey();

    int descriptor_;
    int lastKey_ = -1;
    int putBack_ = -1;  // a byte read too far, or -1
    PassOver passOver_ = PassOver::Nothing;
};

}  // namespace kvl
