#include "typeschema/TypeText.h"

#include <algorithm>

#include "frontend/TypeFrontEnd.h"

namespace kvl {
namespace {

constexpr const char* kSourcePath = "/home/T.txt";

std::string WholeFile(std::string_view declarations) {
    return "$BEGIN KVL VERSION=\"1.0.0\"$ $TYPE\n" + std::string(declarations) + "\n$\n$END KVL VERSION=\"1.0.0\"$\n";
}

}  // namespace

const CTypeSchema* LoadedTypes::FindLoadedType(std::string_view name) const {
    const auto found = schemas_.find(name);
    return found == schemas_.end() ? nullptr : found->second.get();
}

void LoadedTypes::Load(std::string_view name, std::string_view text) {
    std::string source = WholeFile(text);
    std::shared_ptr<CTypeSchema> schema = ParseTypeStream(kEntityType, "S", source, MessageContext());
    std::string mainName;
    ASSERT_TRUE(schema && schema->CompileDeclaration(*this, mainName));
    schema->SetMainTypeName("NS:" + mainName);
    schemas_[std::string(name)] = std::move(schema);
}

void LoadedTypes::LoadLines(std::string_view lines) {
    for (; !lines.empty(); lines.remove_prefix(lines.find('\n') + 1))
        Load(lines.substr(2, lines.find(' ') - 2), lines.substr(0, lines.find('\n')));
}

std::shared_ptr<CTypeSchema> DeclaredTypesTest::Read(std::string_view text) {
    outside_.memory.Put(kSourcePath, WholeFile(text));
    return ParseTypeFile(kEntityType, kSourcePath);
}

bool DeclaredTypesTest::Compile(CTypeSchema& schema, const KnownTypes& knownTypes) {
    std::string name;
    return schema.CompileDeclaration(knownTypes, name);
}

std::shared_ptr<CTypeSchema> DeclaredTypesTest::Compiled(std::string_view text) {
    auto schema = Read(text);
    if (!Compile(*schema)) schema.reset();
    return schema;
}

std::unique_ptr<CTypeSchema> DeclaredTypesTest::Instance(std::string_view text, std::string_view name) {
    const auto declaration = Compiled(text);
    if (!declaration) return nullptr;
    auto instance = std::make_unique<CTypeSchema>();
    instance->CopyDeclaration(*declaration);
    if (!instance->PrepareInstance(name)) instance.reset();
    return instance;
}

std::string DeclaredTypesTest::Messages() const {
    std::string messages;
    for (const CapturedConsole::Piece& piece : outside_.console.pieces) {
        if (piece.colour != 12 && piece.colour != 14) continue;
        // An empty line, the header, the text, an empty line, the source line, the mark, the place.
        std::vector<std::string> lines;
        for (std::string_view rest = piece.text; !rest.empty();) {
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            lines.emplace_back(rest.substr(0, end));
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        const auto blank = std::find(lines.begin() + 1, lines.end(), "");
        messages += lines[1].substr(lines[1].find(' ') + 1);
        for (auto line = lines.begin() + 2; line != blank; ++line)
            messages += " " + *line;
        messages += " |" + *(blank + 1) + "| " + *(blank + 3) + "\n";
    }
    return messages;
}

void DeclaredTypesTest::KeepLog() {
    ASSERT_TRUE(OpenLog("/home/log.txt"));
}

}  // namespace kvl
