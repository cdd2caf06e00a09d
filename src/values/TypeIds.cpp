#include "values/TypeIds.h"

namespace kvl {

namespace {

struct TypeRow {
    int id;
    std::string_view name;
    int elementKind;
};

constexpr TypeRow kTypes[] = {
    {kTypeUnknown, "UNKNOWN", kElementNone},
    {kTypeStream, "STREAM", kElementNone},
    {kTypeString, "STRING", kElementString},
    {kTypeInteger, "INTEGER", kElementInteger},
    {kTypeFloat, "FLOAT", kElementFloat},
    {kTypeBool, "BOOL", kElementBool},
    {kTypeIdentifier, "IDENTIFIER", kElementIdentifier},
    {kTypeWhiteSpace, "WHITESPACE", kElementWhiteSpace},
    {kTypeRecursionId, "::RECURSIONID", kElementRecursionId},
    {kConstantString, "CONSTANT_STRING", kElementNone},
    {kConstantInteger, "CONSTANT_INTEGER", kElementNone},
    {kConstantFloat, "CONSTANT_FLOAT", kElementNone},
    {kConstantBool, "CONSTANT_BOOL", kElementNone},
    {kLiteralStrict, "LITERAL_STRICT", kElementStrictLiteral},
    {kLiteralWeak, "LITERAL_WEAK", kElementWeakLiteral},
    {kSubtype, "SUBTYPE", kElementNone},
    {kCategorySequence, "SEQUENCE", kElementSequence},
    {kCategoryNested, "NESTED", kElementNested},
    {kCategoryList, "LIST", kElementList},
    {kCategoryChoice, "CHOICE", kElementChoice},
    {kCategoryPermutation, "PERMUTATION", kElementPermutation},
    {kCategoryDistance, "DISTANCE", kElementDistance},
    {kCategoryStream, "STREAM", kElementStream},
    {kCategoryOption, "OPTION", kElementOption},
    {kCategoryLine, "LINE", kElementLine},
    {kCategoryRecursion, "RECURSION", kElementRecursion},
    {kTypeDirectory, "KVL:DIRECTORY", kElementNone},
    {kTypeType, "KVL:TYPE", kElementNone},
    {kTypePattern, "KVL:PATTERN", kElementNone},
    {kTypeInstance, "KVL:TYPE:INSTANCE", kElementNone},
    {kTypeScript, "KVL:SCRIPT", kElementNone},
    {kTypeStatic, "KVL:STATIC", kElementNone},
    {kDeclaredTypeName, "IDENTIFIER", kElementNone},
    {kTypeTableEnd, "variable_type_cmd_mark_end", kElementNone},
};

constexpr bool RowsStandAtTheirIds() {
    int id = 0;
    for (const TypeRow& row : kTypes) {
        if (row.id != id++) return false;
    }
    return true;
}
static_assert(RowsStandAtTheirIds());

const TypeRow& RowOf(int id) {
    return kTypes[id >= 0 && id <= kTypeTableEnd ? id : 0];
}

}  // namespace

std::string_view GetTypeName(int id) {
    return RowOf(id).name;
}

int GetElementKind(int id) {
    return RowOf(id).elementKind;
}

// The first row of a name counts, so that "STREAM" is the free stream and "IDENTIFIER" the elementary one. The
// categories can be named too: a variable of a category type holds its text like a stream.
int FindTypeId(std::string_view name) {
    for (const TypeRow& row : kTypes) {
        const bool isValueClass = (row.id >= kTypeStream && row.id <= kTypeRecursionId) ||
                                  (row.id >= kCategorySequence && row.id <= kTypeStatic);
        if (isValueClass && row.name == name) return row.id;
    }
    return kTypeUnknown;
}

}  // namespace kvl
