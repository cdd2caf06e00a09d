#include "typeschema/CTSEntity.h"

#include "messages/FileReports.h"
#include "text/Paths.h"

namespace kvl {

std::string CTSEntity::SourceName() const {
    const std::string shown = names->sourceFile.empty() ? GetDisplayPath() : names->sourceFile;
    return IsAbsolutePath(shown) ? PathPart(shown, PathMode::NameAndExtension) : shown;
}

std::string CTSEntity::GetDisplayPath() const {
    return names->sourcePath.empty() ? names->sourceStream : PathPart(names->sourcePath, PathMode::Display);
}

std::string CTSEntity::GetSourceLine(int line) const {
    std::string text;
    if (names->sourcePath.empty() || line == -1) return text;
    if (!ReadSourceLine(names->sourcePath, line, text, MessageContext())) text.clear();
    return text;
}

MessageContext CTSEntity::GetMessageContext() const {
    return GetMessageContext(currentLine);
}

MessageContext CTSEntity::GetMessageContext(int line) const {
    MessageContext context;
    context.entityName = GetDisplayPath();
    context.lineNumber = line;
    if (line != -1) context.linePath = names->sourcePath;
    context.entityKind = entityKind;
    return context;
}

void CTSEntity::SetSourceFile(std::string_view path) {
    names->sourcePath = path;
    names->sourceFile = PathPart(path, PathMode::NameAndExtension);
    names->sourceStream.clear();
    names->sourceDirectory = PathPart(path, PathMode::Directory);
}

void CTSEntity::SetSourceStream(std::string_view streamName) {
    names->sourcePath.clear();
    names->sourceFile.clear();
    names->sourceStream = streamName;
    names->sourceDirectory = streamName;
}

}  // namespace kvl
