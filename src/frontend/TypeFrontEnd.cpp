#include "frontend/TypeFrontEnd.h"

#include <utility>

#include "frontend/TypeCompiler.h"
#include "messages/FileReports.h"
#include "text/Paths.h"

namespace kvl {

namespace {

constexpr int kNoPlace = -2;

std::shared_ptr<CTypeSchema> Compile(PinScanX& scanner, std::shared_ptr<CTypeSchema> schema, int entityKind) {
    schema->entityKind = entityKind;
    return TypeCompiler(scanner, *schema).Compile() ? std::move(schema) : nullptr;
}

}  // namespace

std::shared_ptr<CTypeSchema> ParseTypeFile(int entityKind, std::string_view path) {
    MessageContext context;
    context.position = kNoPlace;
    std::string text;
    int lineCount = 0;
    if (!ReadSourceFile(path, text, lineCount, context)) return nullptr;
    if (text.empty()) {
        ReportFileError(ERR_EXEC_SCRIPT_FILE_8, path, context);
        return nullptr;
    }
    auto schema = std::make_shared<CTypeSchema>();
    schema->SetSourceFile(path);
    schema->names->name = PathPart(path, PathMode::NameAndExtension);
    PinScanX scanner({entityKind, std::string(path), ""});
    scanner.Source().SetFileSource(path, std::move(text));
    return Compile(scanner, std::move(schema), entityKind);
}

std::shared_ptr<CTypeSchema> ParseTypeStream(int entityKind, std::string_view streamName, std::string& text,
                                             const MessageContext& context) {
    if (text.empty()) {
        Report(TwinFor(ERR_DECL_SCRIPT_HEADER_1, context.entityKind), context);
        return nullptr;
    }
    auto schema = std::make_shared<CTypeSchema>();
    schema->SetSourceStream(streamName);
    schema->names->name = streamName;
    PinScanX scanner({entityKind, "", std::string(streamName)});
    scanner.Source().SetStreamSource(&text);
    return Compile(scanner, std::move(schema), entityKind);
}

}  // namespace kvl
