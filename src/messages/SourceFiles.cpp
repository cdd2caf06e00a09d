// Reading files for the compilers, the parsers and the messages; copying them.
#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <memory>

#include "messages/FileReports.h"
#include "platform/Platform.h"
#include "text/Paths.h"

namespace kvl {
namespace {

using Block = std::array<char, 1 << 16>;

// Errors of a file that was there and could be opened; the file is named as unreadable then, not as missing.
bool IsReadFailure(int errorNumber) {
    constexpr int kReadFailures[] = {EIO, EFBIG, EOVERFLOW, ENOMEM, ENOBUFS};
    return std::find(std::begin(kReadFailures), std::end(kReadFailures), errorNumber) != std::end(kReadFailures);
}

bool ReportReadFailure(std::string_view path, int errorNumber, const MessageContext& context) {
    return IsReadFailure(errorNumber) ? ReportFileError(ERR_EXEC_SCRIPT_FILE_11, path, context)
                                      : ReportOpenFailure(path, context);
}

// From the reader to the writer, block by block, reporting either side's failure.
bool CopyBlocks(FileReader& reader, std::string_view source, FileWriter& writer, std::string_view target,
                const MessageContext& context) {
    const auto block = std::make_unique<Block>();
    for (;;) {
        std::size_t count = 0;
        if (const int error = reader.Read(block->data(), block->size(), count); error != 0) {
            return ReportReadFailure(source, error, context);
        }
        const std::string_view bytes(block->data(), count);
        const int error = count == 0 ? writer.Commit() : writer.Write(bytes);
        if (error != 0) return ReportFileError(ERR_EXEC_SCRIPT_FILE_12, target, context);
        if (count == 0) return true;
    }
}

}  // namespace

bool ReadSourceFile(std::string_view path, std::string& text, int& lineCount, const MessageContext& context) {
    if (const int error = Files().ReadWhole(path, text); error != 0) {
        text.clear();
        return ReportReadFailure(path, error, context);
    }
    lineCount = 0;
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1))
        ++lineCount;
    return true;
}

bool ReadSourceLine(std::string_view path, int lineNumber, std::string& text, const MessageContext& context) {
    std::unique_ptr<FileReader> reader;
    if (const int error = Files().OpenReader(path, reader); error != 0) return ReportReadFailure(path, error, context);
    if (lineNumber < 1) return true;
    const auto block = std::make_unique<Block>();
    std::string line;
    for (int present = 1;;) {
        std::size_t count = 0;
        if (const int error = reader->Read(block->data(), block->size(), count); error != 0) {
            return ReportReadFailure(path, error, context);
        }
        if (count == 0) break;
        for (std::string_view rest(block->data(), count); !rest.empty();) {
            const std::size_t end = rest.find('\n');
            if (present == lineNumber) line.append(rest.substr(0, end));
            if (end == std::string_view::npos) break;
            if (present == lineNumber) {
                text = std::move(line);
                return true;
            }
            ++present;
            rest.remove_prefix(end + 1);
        }
    }
    if (!line.empty()) text = std::move(line);  // the last line needs no line feed
    return true;
}

bool CopyFileBytes(std::string_view source, std::string_view target, const MessageContext& context) {
    std::unique_ptr<FileReader> reader;
    if (const int error = Files().OpenReader(source, reader); error != 0) {
        return ReportReadFailure(source, error, context);
    }
    if (Files().IsSameFile(source, target)) return true;
    std::unique_ptr<FileWriter> writer;
    if (const int error = Files().OpenWriter(target, WriteMode::Replace, writer); error != 0) {
        return ReportCreateFailure(target, error, context);
    }
    return CopyBlocks(*reader, source, *writer, target, context);
}

void KeepOldFile(std::string_view path) {
    FileState state;
    if (!CheckFile(path, state)) return;
    std::string backup = PathPart(path, PathMode::Directory);
    if (!backup.empty()) backup += "\\";
    backup += PathPart(path, PathMode::Name) + "_old" + PathPart(path, PathMode::Extension);
    static_cast<void>(CopyFileBytes(path, backup, MessageContext()));  // has reported; the new log matters more
}

}  // namespace kvl
