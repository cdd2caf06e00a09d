#include "frontend/TypeCompiler.h"

#include <type_traits>
#include <utility>

#include "TypeGrammar.h"

namespace kvl {

namespace {

constexpr std::string_view kTypeFileVersion = "1.0.0";

static_assert(std::is_trivially_copyable_v<TypeValue>);

std::string_view WithoutQuotes(std::string_view literal) {
    return literal.substr(1, literal.size() - 2);
}

void Place(const TypeValue& value, int& position, std::string& text) {
    position = value.position;
    text = value.text;
}

}  // namespace

bool TypeCompiler::Compile() {
    return typeparse(*this) == 0;
}

int TypeCompiler::ReadToken(TypeValue& value) {
    const int token = scanner_.Lex();
    value = TypeValue();
    value.text = scanner_.TokenText();
    return token;
}

void TypeCompiler::ReportSyntaxError() {
    scanner_.Report("Syntax error");
}

void TypeCompiler::ReportStackOverflow() {
    scanner_.Report("Parser stack overflow");
}

TypeValue TypeCompiler::AtThisLine(const TypeValue& token) const {
    return Here(token);
}

// The fault is shown at the header, unless that one is right.
bool TypeCompiler::CheckVersions(const TypeValue& header, const TypeValue& footer) {
    for (const TypeValue& version : {header, footer}) {
        if (WithoutQuotes(version.text) != kTypeFileVersion) {
            return scanner_.ReportLine(ERR_DECL_TYPE_HEADER_9, version.line);
        }
    }
    return true;
}

// The root of a declared type has no element name of its own, so the last one read must not stick to it.
TypeValue TypeCompiler::BeginDeclaration(const TypeValue& name) {
    elementName_ = {};
    declaration_.name = name.text;
    return Here(name);
}

void TypeCompiler::EndDeclaration(const TypeValue& name) {
    declaration_.line = name.line;
    Place(name, declaration_.position, declaration_.positionText);
}

bool TypeCompiler::AddDeclaration() {
    schema_.AddDeclaredType(std::exchange(declaration_, DeclaredType()));
    return CountItem();
}

TypeValue TypeCompiler::ReadCategory(const TypeValue& word, TypeId category) {
    categoryType_ = category;
    category_ = lastType_ = Here(word);
    return category_;
}

void TypeCompiler::OpenCategory() {
    TypeItem& category = openCategories_.emplace_back();
    category.elementName = elementName_;
    category.categoryType = categoryType_;
    category.line = scanner_.LineNumber();
    Place(category_, category.position, category.positionText);
    Place(category_, category.typePosition, category.typeText);
}

bool TypeCompiler::AddElement() {
    item_.line = scanner_.LineNumber();
    openCategories_.back().children.push_back(std::move(item_));
    item_ = TypeItem();
    return CountItem();
}

void TypeCompiler::EndRootCategory(const TypeValue& category) {
    declaration_.root = std::move(openCategories_.back());
    openCategories_.pop_back();
    declaration_.root.itemKind = kItemCategory;
    declaration_.root.line = category.line;
}

// The place of a category becomes that of the type read last, which may stand inside it.
void TypeCompiler::EndNestedCategory() {
    item_ = std::move(openCategories_.back());
    openCategories_.pop_back();
    item_.itemKind = kItemCategory;
    Place(lastType_, item_.typePosition, item_.typeText);
}

TypeValue TypeCompiler::ReadElementName(const TypeValue& name) {
    elementName_ = name.text;
    item_.line = scanner_.LineNumber();
    return Here(name);
}

void TypeCompiler::ReadLiteral(const TypeValue& literal, TypeItemKind kind) {
    literal_ = Here(literal);
    literalKind_ = kind;
}

void TypeCompiler::ReadType(const TypeValue& type, TypeId id) {
    typeId_ = id;
    typeName_ = id == kDeclaredTypeName ? type.text : GetTypeName(id);
    lastType_ = Here(type);
}

void TypeCompiler::ReadQualifier(const TypeValue& name) {
    qualifier_ = Here(name);
}

void TypeCompiler::ReadReference(const TypeValue& name) {
    reference_ = lastType_ = Here(name);
}

void TypeCompiler::ReadPlaceholder(const TypeValue& name) {
    placeholder_ = lastType_ = Here(name);
}

void TypeCompiler::EndTyped() {
    item_.itemKind = kItemTyped;
    item_.elementType = typeId_;
    item_.typeName = typeName_;
    item_.elementName = elementName_;
}

void TypeCompiler::EndQualifiedReference() {
    item_.itemKind = kItemQualifiedReference;
    TakeQualifier();
    item_.reference = reference_.text;
    Place(reference_, item_.referencePosition, item_.referenceText);
}

void TypeCompiler::EndPlaceholder() {
    item_.itemKind = kItemPlaceholder;
    TakePlaceholder();
}

void TypeCompiler::EndQualifiedPlaceholder() {
    item_.itemKind = kItemQualifiedPlaceholder;
    TakeQualifier();
    TakePlaceholder();
}

void TypeCompiler::EndLiteral() {
    item_.itemKind = literalKind_;
    item_.literal = literal_.text;
    Place(literal_, item_.literalPosition, item_.literalText);
    Place(literal_, item_.position, item_.positionText);
}

// The literal of a keyword is not kept, only where it stands.
void TypeCompiler::EndKeyword() {
    item_.isKeyword = true;
    Place(literal_, item_.position, item_.positionText);
}

void TypeCompiler::EndNamedElement(const TypeValue& name) {
    Place(name, item_.namePosition, item_.nameText);
    TakeTypePlace();
}

// A name read for an element before this one is no name of this one.
void TypeCompiler::EndUnnamedElement() {
    item_.elementName.clear();
    TakeTypePlace();
}

TypeValue TypeCompiler::Here(const TypeValue& token) const {
    return {token.text, scanner_.CharacterCount(), scanner_.LineNumber()};
}

// A source of more items than a type may have rows is given up where it passes the limit, so that refusing it costs no
// more than the largest type does.
bool TypeCompiler::CountItem() {
    if (++itemCount_ <= kMostElements) return true;
    const std::string& mainType = schema_.declaredTypes.empty() ? declaration_.name : schema_.declaredTypes[0].name;
    return scanner_.Report("Type " + mainType + " grows beyond " + std::to_string(kMostElements) + " elements. ");
}

void TypeCompiler::TakeQualifier() {
    item_.qualifier = qualifier_.text;
    Place(qualifier_, item_.qualifierPosition, item_.qualifierText);
}

void TypeCompiler::TakePlaceholder() {
    item_.placeholder = placeholder_.text;
    Place(placeholder_, item_.placeholderPosition, item_.placeholderText);
}

void TypeCompiler::TakeTypePlace() {
    Place(lastType_, item_.typePosition, item_.typeText);
    Place(lastType_, item_.position, item_.positionText);
}

}  // namespace kvl
