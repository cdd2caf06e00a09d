#pragma once
// What the grammar of type files fills: the item being read, the categories that are open around it, and at last the
// declared types of the schema. Each operation is the effect of one production.
//
// A name's position is the count of characters fetched when its production is reduced. Most names are reduced before
// the next token is read; the name of a declared type in an element is not, since a ":" behind it would make it a
// qualifier.

#include <string_view>
#include <vector>

#include "frontend/PinScanX.h"
#include "typeschema/CTypeSchema.h"
#include "values/TypeIds.h"

namespace kvl {

// What travels on the parser's stack; copied bytewise.
struct TypeValue {
    std::string_view text;  // into the source
    int position = -1;
    int line = -1;
};

class TypeCompiler {
public:
    // Both outlive the compiler. The scanner's source has been set.
    TypeCompiler(PinScanX& scanner, CTypeSchema& schema) : scanner_(scanner), schema_(schema) {}

    // Adds the declared types of the source to the schema. Reports why the source is rejected.
    [[nodiscard]] bool Compile();

    // --- for the parser ---
    int ReadToken(TypeValue& value);
    void ReportSyntaxError();
    void ReportStackOverflow();

    TypeValue AtThisLine(const TypeValue& token) const;
    [[nodiscard]] bool CheckVersions(const TypeValue& header, const TypeValue& footer);

    TypeValue BeginDeclaration(const TypeValue& name);
    void EndDeclaration(const TypeValue& name);
    [[nodiscard]] bool AddDeclaration();

    TypeValue ReadCategory(const TypeValue& word, TypeId category);
    void OpenCategory();
    [[nodiscard]] bool AddElement();
    void EndRootCategory(const TypeValue& category);
    void EndNestedCategory();

    TypeValue ReadElementName(const TypeValue& name);
    void ReadLiteral(const TypeValue& literal, TypeItemKind kind);
    void ReadType(const TypeValue& type, TypeId id);
    void ReadQualifier(const TypeValue& name);
    void ReadReference(const TypeValue& name);
    void ReadPlaceholder(const TypeValue& name);

    void EndTyped();
    void EndQualifiedReference();
    void EndPlaceholder();
    void EndQualifiedPlaceholder();

    void EndLiteral();
    void EndKeyword();
    void EndNamedElement(const TypeValue& name);
    void EndUnnamedElement();

private:
    TypeValue Here(const TypeValue& token) const;
    [[nodiscard]] bool CountItem();
    void TakeQualifier();
    void TakePlaceholder();
    void TakeTypePlace();

    PinScanX& scanner_;    // not owned
    CTypeSchema& schema_;  // not owned

    DeclaredType declaration_;
    TypeItem item_;                         // the element being read
    std::vector<TypeItem> openCategories_;  // the innermost at the end
    std::size_t itemCount_ = 0;             // of the whole source

    std::string_view elementName_;
    TypeValue literal_;
    TypeItemKind literalKind_ = kItemStrictLiteral;
    TypeValue category_;
    TypeId categoryType_ = kTypeUnknown;
    TypeId typeId_ = kTypeUnknown;
    std::string_view typeName_;
    TypeValue lastType_;  // the type, category or name that stands for a type, whichever was read last
    TypeValue qualifier_, reference_, placeholder_;
};

}  // namespace kvl
