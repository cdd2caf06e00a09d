// Dump files: the bytes of a file spelled out, one line each.
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "messages/FileReports.h"
#include "messages/Log.h"
#include "platform/Platform.h"
#include "text/ByteClass.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

constexpr std::size_t kDumpBlock = 1 << 16;

// The code is that of the signed byte: a byte above 127 shows eight digits.
std::string InvisibleByteText(char c) {
    std::array<char, 16> code{};
    std::snprintf(code.data(), code.size(), "%2X", static_cast<unsigned>(static_cast<signed char>(c)));
    return std::string("OTHER WHITESPACE ").append(1, c).append(" ").append(code.data());
}

std::string ByteText(char c, int& lineFeeds) {
    switch (c) {
        case '\r':
            return "CARRIAGE RETURN";
        case '\n':
            return "NEW LINE -------------------- LINE " + std::to_string(++lineFeeds);
        case '\t':
            return "TAB";
        case ' ':
            return "BLANK";
        default:
            return IsInvisible(c) ? InvisibleByteText(c) : std::string(1, c);
    }
}

// Written in blocks: a dump is many times as large as its file.
int WriteDumpLines(FileWriter& writer, std::string_view bytes) {
    std::string block;
    int lineFeeds = 0;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        block.append(std::to_string(index)).append(" ").append(ByteText(bytes[index], lineFeeds)).append("\n");
        if (block.size() < kDumpBlock) continue;
        if (const int error = writer.Write(block); error != 0) return error;
        block.clear();
    }
    if (const int error = writer.Write(block); error != 0) return error;
    return writer.Commit();
}

}  // namespace

bool WriteDump(std::string_view path) {
    if (!Process().dumpsEnabled) return true;
    const MessageContext noPlace;
    std::string bytes;
    int lineCount = 0;
    if (!ReadSourceFile(path, bytes, lineCount, noPlace)) return false;
    const std::string dumpPath = std::string(path) + ".dump";
    std::unique_ptr<FileWriter> writer;
    if (Files().OpenWriter(dumpPath, WriteMode::Replace, writer) != 0) return ReportOpenFailure(dumpPath, noPlace);
    if (WriteDumpLines(*writer, bytes) != 0) return ReportFileError(ERR_EXEC_SCRIPT_FILE_12, dumpPath, noPlace);
    return true;
}

}  // namespace kvl
