#pragma once
// One node of a type declaration as the type parser builds it, and a declared type. Plain values: copying an item
// copies its whole subtree, but for the subtypes that it uses, which a compiled type shares.

#include <string>
#include <vector>

namespace kvl {

struct CompiledSubtype;

enum TypeItemKind : int {
    kItemKeywordMark = 1,
    kItemStrictLiteral = 2,
    kItemWeakLiteral = 3,
    kItemTyped = 4,
    kItemQualifiedReference = 5,
    kItemPlaceholder = 6,
    kItemQualifiedPlaceholder = 7,
    kItemCategory = 8,
};

// A name with its place in the source: `position` is the count of characters read when the production that names the
// thing was reduced, `text` what stands there.
struct PlacedText {
    int position = -1;
    std::string text;

    bool operator==(const PlacedText&) const = default;
};

struct TypeItem {
    int itemKind = kItemKeywordMark;
    bool isKeyword = false;  // written as <<...>>
    int line = -1;
    int position = -1;  // where the item as a whole begins, for messages
    std::string positionText;
    int namePosition = -1;
    std::string nameText, elementName;
    int typePosition = -1;
    std::string typeText, typeName;
    int literalPosition = -1;
    std::string literalText, literal;
    int qualifierPosition = -1;
    std::string qualifierText, qualifier;
    int referencePosition = -1;
    std::string referenceText, reference;
    int placeholderPosition = -1;
    std::string placeholderText, placeholder;
    int elementType = 0;   // type identifier of a typed element
    int categoryType = 0;  // type identifier of a category
    std::vector<TypeItem> children;

    std::string subtypeName;  // the declared type that the item stands for as a whole
    // Set by compiling: what the use of a declared type stands for. Not owned; the schema holds it.
    const CompiledSubtype* subtype = nullptr;
    bool isRecursiveUse = false;  // set by compiling: the use closes a circle of types
};

struct DeclaredType {
    std::string name;
    int line = -1;
    int position = -1;  // offset of the name in the source
    std::string positionText;
    TypeItem root;  // of kind kItemCategory
};

}  // namespace kvl
