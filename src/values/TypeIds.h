#pragma once
// The one numeric table of value kinds and literal forms.

#include <string_view>

namespace kvl {

enum TypeId : int {
    kTypeUnknown = 0,
    kTypeStream = 1,
    kTypeString = 2,
    kTypeInteger = 3,
    kTypeFloat = 4,
    kTypeBool = 5,
    kTypeIdentifier = 6,
    kTypeWhiteSpace = 7,
    kTypeRecursionId = 8,
    kConstantString = 9,
    kConstantInteger = 10,
    kConstantFloat = 11,
    kConstantBool = 12,
    kLiteralStrict = 13,
    kLiteralWeak = 14,
    kSubtype = 15,
    kCategorySequence = 16,
    kCategoryNested = 17,
    kCategoryList = 18,
    kCategoryChoice = 19,
    kCategoryPermutation = 20,
    kCategoryDistance = 21,
    kCategoryStream = 22,
    kCategoryOption = 23,
    kCategoryLine = 24,
    kCategoryRecursion = 25,
    kTypeDirectory = 26,
    kTypeType = 27,
    kTypePattern = 28,
    kTypeInstance = 29,
    kTypeScript = 30,
    kTypeStatic = 31,
    kDeclaredTypeName = 32,
    kTypeTableEnd = 33,
};

// What the type parser and the input parser switch on.
enum ElementKind : int {
    kElementNone = 0,
    kElementSequence = 3,
    kElementNested = 4,
    kElementDistance = 5,
    kElementStream = 6,
    kElementChoice = 7,
    kElementOption = 8,
    kElementLine = 9,
    kElementList = 10,
    kElementPermutation = 11,
    kElementRecursion = 12,
    kElementStrictLiteral = 13,
    kElementWeakLiteral = 14,
    kElementString = 15,
    kElementInteger = 16,
    kElementFloat = 17,
    kElementBool = 18,
    kElementIdentifier = 19,
    kElementWhiteSpace = 20,
    kElementRecursionId = 21,
};

// The name of an id; "UNKNOWN" outside the table.
std::string_view GetTypeName(int id);
// The element kind of an id; kElementNone where it has none.
int GetElementKind(int id);
// The id of an elementary or built-in type name that a script can write ("STRING", "KVL:DIRECTORY"); 0 for any other
// name. "STREAM" is the free stream, id 1.
int FindTypeId(std::string_view name);
// 16 to 25.
constexpr bool IsCategoryType(int id) {
    return id >= kCategorySequence && id <= kCategoryRecursion;
}
// 9 to 12.
constexpr bool IsConstantType(int id) {
    return id >= kConstantString && id <= kConstantBool;
}

}  // namespace kvl
