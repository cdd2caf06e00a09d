#include "typeschema/TypeText.h"

#include <algorithm>
#include <iterator>

#include "text/ByteClass.h"

namespace kvl {
namespace {

struct TypeWord {
    std::string_view word;
    int typeId;
};
constexpr TypeWord kTypeWords[] = {
    {"STRING", kTypeString},         {"INTEGER", kTypeInteger},
    {"FLOAT", kTypeFloat},           {"BOOL", kTypeBool},
    {"IDENTIFIER", kTypeIdentifier}, {"WHITESPACE", kTypeWhiteSpace},
    {"SEQUENCE", kCategorySequence}, {"LIST", kCategoryList},
    {"CHOICE", kCategoryChoice},     {"PERMUTATION", kCategoryPermutation},
    {"DISTANCE", kCategoryDistance}, {"NESTED", kCategoryNested},
    {"STREAM", kCategoryStream},     {"LINE", kCategoryLine},
    {"OPTION", kCategoryOption},
};

int TypeIdOf(std::string_view word) {
    const auto* row = std::find_if(std::begin(kTypeWords), std::end(kTypeWords),
                                   [word](const TypeWord& candidate) { return candidate.word == word; });
    return row == std::end(kTypeWords) ? kDeclaredTypeName : row->typeId;
}

class TypeReader {
public:
    explicit TypeReader(std::string_view text) : text_(text) {}

    std::vector<DeclaredType> ReadAll() {
        std::vector<DeclaredType> types;
        while (Accept("::")) {
            DeclaredType& declared = types.emplace_back();
            declared.name = declared.positionText = Name();
            declared.position = Position();
            declared.line = Line();
            Accept("=");
            Accept("::");
            ReadType(declared.root);
        }
        return types;
    }

private:
    void SkipSpace() {
        while (at_ < text_.size() && IsInvisible(text_[at_]))
            ++at_;
    }
    bool Accept(std::string_view token) {
        SkipSpace();
        if (!text_.substr(at_).starts_with(token)) return false;
        at_ += token.size();
        return true;
    }
    std::string Name() {
        SkipSpace();
        const std::size_t begin = at_;
        while (at_ < text_.size() && IsNameByte(text_[at_]))
            ++at_;
        return std::string(text_.substr(begin, at_ - begin));
    }
    int Position() const { return static_cast<int>(at_); }
    int Line() {
        for (; counted_ < at_; ++counted_)
            line_ += text_[counted_] == '\n';
        return line_;
    }

    std::string Literal() {
        const std::size_t begin = at_;
        const char quote = text_[at_++];
        while (text_[at_] != quote || text_.substr(at_ + 1).starts_with(quote))
            at_ += text_[at_] == quote ? 2U : 1U;
        ++at_;
        return std::string(text_.substr(begin, at_ - begin));
    }

    TypeItem ReadItem() {
        TypeItem item;
        SkipSpace();
        if (Accept("<<")) {
            SkipSpace();
            item.positionText = Literal();
            item.position = Position();
            item.isKeyword = Accept(">>");
        } else if (text_[at_] == '"' || text_[at_] == '\'') {
            item.itemKind = text_[at_] == '"' ? kItemStrictLiteral : kItemWeakLiteral;
            item.literal = item.literalText = item.positionText = Literal();
            item.literalPosition = item.position = Position();
        } else {
            if (!text_.substr(at_).starts_with("::")) {
                item.elementName = item.nameText = Name();
                item.namePosition = Position();
            }
            Accept("::");
            ReadType(item);
        }
        item.line = Line();
        return item;
    }

    void ReadType(TypeItem& item) {
        const bool isPlaceholder = Accept("$");
        std::string word = Name();
        Place(item, word);
        item.line = Line();
        if (isPlaceholder || text_.substr(at_, 1) == ":") {
            if (Accept(":")) {
                item.qualifier = std::exchange(word, Name());
                Place(item, word);
            }
            (isPlaceholder ? item.placeholder : item.reference) = word;
            item.itemKind = !isPlaceholder           ? kItemQualifiedReference
                            : item.qualifier.empty() ? kItemPlaceholder
                                                     : kItemQualifiedPlaceholder;
            item.elementName.clear();
            Accept("$");
        } else if (const int typeId = TypeIdOf(word); IsCategoryType(typeId)) {
            item.itemKind = kItemCategory;
            item.categoryType = typeId;
            Accept("{");
            while (!Accept("}"))
                item.children.push_back(ReadItem());
        } else {
            item.itemKind = kItemTyped;
            item.elementType = typeId;
            item.typeName = word;
        }
    }

    void Place(TypeItem& item, const std::string& word) {
        item.typeText = item.positionText = word;
        item.typePosition = item.position = Position();
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t counted_ = 0;  // bytes whose line feeds are in line_
    int line_ = 1;
};

constexpr const char* kSourcePath = "/home/T.txt";

}  // namespace

std::vector<DeclaredType> ReadTypes(std::string_view text) {
    return TypeReader(text).ReadAll();
}

const CTypeSchema* LoadedTypes::FindLoadedType(std::string_view name) const {
    const auto found = schemas_.find(name);
    return found == schemas_.end() ? nullptr : found->second.get();
}

void LoadedTypes::Load(std::string_view name, std::string_view text) {
    auto schema = std::make_unique<CTypeSchema>();
    schema->declaredTypes = ReadTypes(text);
    std::string mainName;
    ASSERT_TRUE(schema->CompileDeclaration(*this, mainName));
    schema->SetMainTypeName("NS:" + mainName);
    schemas_[std::string(name)] = std::move(schema);
}

void LoadedTypes::LoadLines(std::string_view lines) {
    for (; !lines.empty(); lines.remove_prefix(lines.find('\n') + 1))
        Load(lines.substr(2, lines.find(' ') - 2), lines.substr(0, lines.find('\n')));
}

std::unique_ptr<CTypeSchema> DeclaredTypesTest::Read(std::string_view text) {
    outside_.memory.Put(kSourcePath, text);
    auto schema = std::make_unique<CTypeSchema>();
    schema->SetSourceFile(kSourcePath);
    schema->entityKind = kEntityType;
    schema->declaredTypes = ReadTypes(text);
    return schema;
}

bool DeclaredTypesTest::Compile(CTypeSchema& schema, const KnownTypes& knownTypes) {
    std::string name;
    return schema.CompileDeclaration(knownTypes, name);
}

std::unique_ptr<CTypeSchema> DeclaredTypesTest::Compiled(std::string_view text) {
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
