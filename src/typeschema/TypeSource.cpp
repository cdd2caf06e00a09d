#include "typeschema/TypeSource.h"

#include "messages/FileReports.h"

namespace kvl {
namespace {

// Bytes of a line that is shown as a whole. Each doubled or unused type has a message, and all may stand on one line.
constexpr std::size_t kLongestLine = 4096;

}  // namespace

TypeContext TypeSource::PlaceOf(const TypeItem& item) {
    if (item.literalPosition != -1) return At(item.literalPosition, item.literalText, item.line);
    if (item.namePosition != -1) return At(item.namePosition, item.nameText, item.line);
    if (item.position != -1) return At(item.position, item.positionText, item.line);
    return AtLine(item.line);
}

TypeContext TypeSource::At(int offset, std::string_view token, int line) {
    const bool isFile = !entity_.names->sourcePath.empty();
    if (isFile && !HasText()) return AtLine(line);
    TextPlace place;
    place.line = place.column = 1;
    if (isFile) place = LocateToken(text_, offset, token);
    TypeContext context;
    context.entityName = entity_.GetDisplayPath();
    context.lineNumber = place.line;
    context.lineText = place.text;
    context.positionMark = place.mark;
    context.position = place.column;
    return context;
}

TypeContext TypeSource::AtLine(int line) {
    TypeContext context;
    context.entityName = entity_.GetDisplayPath();
    context.lineNumber = line;
    context.lineText = LineText(line).substr(0, kLongestLine);
    return context;
}

bool TypeSource::HasText() {
    if (!readable_) {
        int lineCount = 0;
        const std::string& path = entity_.names->sourcePath;
        readable_ = !path.empty() && ReadSourceFile(path, text_, lineCount, MessageContext());
    }
    return *readable_;
}

std::string_view TypeSource::LineText(int line) {
    if (line < 1 || !HasText()) return {};
    if (lineStarts_.empty()) {
        lineStarts_.push_back(0);
        for (std::size_t feed = text_.find('\n'); feed != std::string::npos; feed = text_.find('\n', feed + 1)) {
            lineStarts_.push_back(feed + 1);
        }
    }
    const auto index = static_cast<std::size_t>(line) - 1;
    if (index >= lineStarts_.size()) return {};
    const std::size_t start = lineStarts_[index];
    return std::string_view(text_).substr(start, text_.find('\n', start) - start);
}

}  // namespace kvl
