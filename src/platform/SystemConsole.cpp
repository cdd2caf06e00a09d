#include <unistd.h>

#include <cstdlib>
#include <string>

#include "platform/Console.h"
#include "platform/Descriptor.h"
#include "platform/KeyReader.h"

namespace kvl {
namespace {

constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

struct ColourRow {
    int colour;
    std::string_view sequence;
};

constexpr ColourRow kColours[] = {
    {10, "\x1B[92m"}, {11, "\x1B[96m"}, {12, "\x1B[91m"}, {13, "\x1B[95m"}, {14, "\x1B[93m"}, {224, "\x1B[30;103m"},
};
constexpr std::string_view kColourOff = "\x1B[0m";

std::string_view ColourSequence(int colour) {
    for (const ColourRow& row : kColours)
        if (row.colour == colour) return row.sequence;
    return {};
}

bool WantsColours() {
    const char* noColour = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    const bool isRefused = noColour != nullptr && *noColour != '\0';
    return !isRefused && (terminal == nullptr || std::string_view(terminal) != "dumb");
}

bool IsShownAsPoint(char c) {
    return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F;
}

class ConsoleOfProcess : public Console {
public:
    ConsoleOfProcess() : isTerminal_(isatty(STDOUT_FILENO) != 0), hasColours_(isTerminal_ && WantsColours()) {}
    ConsoleOfProcess(const ConsoleOfProcess&) = delete;
    ConsoleOfProcess& operator=(const ConsoleOfProcess&) = delete;
    ~ConsoleOfProcess() override { ConsoleOfProcess::Flush(); }

    void Write(std::string_view text, int colour) override {
        if (isBroken_ || text.empty()) return;
        if (isTerminal_)
            WriteToTerminal(text, hasColours_ ? ColourSequence(colour) : std::string_view());
        else if (text.size() < kBufferSize)
            buffer_ += text;
        else
            SendDirectly(text);
        const bool isFull = buffer_.size() >= kBufferSize;
        if (isFull || (isTerminal_ && text.find('\n') != std::string_view::npos)) SendBuffer();
    }

    void Flush() override {
        if (heldReturn_) buffer_ += '.';
        heldReturn_ = false;
        SendBuffer();
    }

    bool IsTerminal() const override { return isTerminal_; }

    int ReadKey() override {
        Flush();
        return keys_.ReadKey();
    }
    void AcceptKey() override { keys_.AcceptKey(); }
    int ReadByte() override {
        Flush();
        return keys_.ReadByte();
    }

private:
    // The colour ends in front of each line end: else a terminal that scrolls paints the new line in it.
    void WriteToTerminal(std::string_view text, std::string_view colour) {
        while (!text.empty()) {
            const std::size_t lineEnd = text.find('\n');
            std::string_view line = text.substr(0, lineEnd);
            const bool hasEnd = lineEnd != std::string_view::npos;
            text.remove_prefix(hasEnd ? lineEnd + 1 : text.size());
            const bool endsInReturn = !line.empty() && line.back() == '\r';
            if (endsInReturn) line.remove_suffix(1);
            WriteLine(line, colour, hasEnd && !endsInReturn);
            if (hasEnd) buffer_ += endsInReturn ? "\r\n" : "\n";
            // Only what comes next tells whether it stands in front of an LF.
            heldReturn_ = endsInReturn && !hasEnd;
        }
    }

    void WriteLine(std::string_view line, std::string_view colour, bool lineFeedFollows) {
        if (heldReturn_) {
            buffer_ += line.empty() && lineFeedFollows ? '\r' : '.';
            heldReturn_ = false;
        }
        if (line.empty()) return;
        buffer_ += colour;
        for (char c : line)
            buffer_ += IsShownAsPoint(c) ? '.' : c;
        if (!colour.empty()) buffer_ += kColourOff;
    }

    void SendDirectly(std::string_view text) {
        SendBuffer();
        if (!isBroken_) isBroken_ = WriteFully(STDOUT_FILENO, text) != 0;
    }

    // A console that takes no more ends nothing: the run goes on, the text is dropped.
    void SendBuffer() {
        if (!isBroken_ && WriteFully(STDOUT_FILENO, buffer_) != 0) isBroken_ = true;
        buffer_.clear();
    }

    bool isTerminal_;
    bool hasColours_;
    bool isBroken_ = false;
    bool heldReturn_ = false;
    std::string buffer_;
    KeyReader keys_{STDIN_FILENO};
};

}  // namespace

Console& SystemConsole() {
    PrepareDescriptors();
    static ConsoleOfProcess console;
    return console;
}

}  // namespace kvl
