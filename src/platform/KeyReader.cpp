#include "platform/KeyReader.h"

#include <poll.h>
#include <unistd.h>

#include <utility>

#include "platform/Console.h"
#include "platform/Descriptor.h"
#include "platform/RawTerminal.h"

namespace kvl {
namespace {

bool IsLetterKey(int key) {
    return (key >= 'A' && key <= 'Z') || (key >= 'a' && key <= 'z');
}

int AsKey(int byte) {
    if (byte == -1) return kKeyEscape;
    return byte == '\n' ? kKeyReturn : byte;
}

bool HasWaitingByte(int descriptor) {
    pollfd entry{descriptor, POLLIN, 0};
    return poll(&entry, 1, 0) > 0 && (entry.revents & POLLIN) != 0;
}

}  // namespace

int KeyReader::ReadKey() {
    lastKey_ = isatty(descriptor_) != 0 ? ReadTerminalKey() : ReadPlainKey();
    return lastKey_;
}

// A terminal sends a letter without a line end; everything else sends lines, in which the line end only says that the
// letter is complete.
void KeyReader::AcceptKey() {
    if (IsLetterKey(lastKey_) && isatty(descriptor_) == 0) passOver_ = PassOver::LineEnd;
}

int KeyReader::ReadByte() {
    const PassOver passOver = std::exchange(passOver_, PassOver::Nothing);
    if (putBack_ != -1) return std::exchange(putBack_, -1);
    const int byte = ReadRaw();
    if (passOver == PassOver::Nothing) return byte;
    if (byte == '\n') return ReadRaw();
    if (byte != '\r' || passOver == PassOver::LineFeed) return byte;
    const int next = ReadRaw();
    if (next == '\n') return ReadRaw();
    putBack_ = next;
    return byte;
}

int KeyReader::ReadRaw() {
    char byte = 0;
    std::size_t count = 0;
    const int error = ReadSome(descriptor_, &byte, 1, count);
    return error == 0 && count == 1 ? static_cast<unsigned char>(byte) : -1;
}

int KeyReader::ReadPlainKey() {
    const int byte = ReadByte();
    // CR LF is one [Return]; the LF is not waited for.
    if (byte == '\r') passOver_ = PassOver::LineFeed;
    return AsKey(byte);
}

// The terminal is raw while one key is waited for and no longer. A process that was stopped begins anew, because the
// terminal was put back, or changed by others, meanwhile.
int KeyReader::ReadTerminalKey() {
    if (putBack_ != -1) return AsKey(std::exchange(putBack_, -1));
    for (;;) {
        const RawTerminal raw(descriptor_);
        if (!raw.WaitForInput()) continue;
        const int byte = ReadRaw();
        if (byte == kKeyEscape && SwallowKeySequence()) continue;
        return AsKey(byte);
    }
}

// Arrow and function keys come as several bytes at once, an escape byte and a bracket or an "O" in front; they are no
// answer to anything.
bool KeyReader::SwallowKeySequence() {
    if (!HasWaitingByte(descriptor_)) return false;
    const int byte = ReadRaw();
    if (byte != '[' && byte != 'O') {
        putBack_ = byte;
        return false;
    }
    // The last byte of a sequence is the first in this range, except for a second bracket, which some terminals send.
    int last = byte;
    for (bool isFirst = true; HasWaitingByte(descriptor_) && last != -1; isFirst = false) {
        last = ReadRaw();
        if (last >= 0x40 && last <= 0x7E && !(isFirst && last == '[')) break;
    }
    return true;
}

}  // namespace kvl
