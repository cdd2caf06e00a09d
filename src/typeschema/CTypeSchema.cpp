#include "typeschema/CTypeSchema.h"

#include "text/ProcessState.h"
#include "typeschema/DeclarationCompiler.h"
#include "typeschema/ElementTableBuilder.h"

namespace kvl {

CTypeSchema::CTypeSchema() = default;
CTypeSchema::~CTypeSchema() = default;

bool CTypeSchema::CompileDeclaration(const KnownTypes& knownTypes, std::string& name) {
    const bool compiled = DeclarationCompiler(*this, knownTypes).Compile();
    name = names->name;
    return compiled;
}

bool CTypeSchema::BuildElementTable() {
    ClearElements();
    elementTableId = ++Process().elementTables;
    return ElementTableBuilder(*this).Build();
}

void CTypeSchema::SetMainTypeName(std::string_view name) {
    if (declaredTypes.empty()) return;
    DeclaredType& mainType = declaredTypes.front();
    mainType.name = name;
    mainType.root.subtypeName = name;
    mainTypeName = name;
    names->name = name;
}

void CTypeSchema::WrapInList() {
    if (declaredTypes.empty()) return;
    ClearElements();
    TypeItem& root = declaredTypes.front().root;
    TypeItem element = std::move(root);
    root = TypeItem();
    root.itemKind = kItemCategory;
    root.categoryType = kCategoryList;
    root.line = element.line;
    root.position = element.position;
    root.positionText = element.positionText;
    root.typePosition = element.typePosition;
    root.typeText = element.typeText;
    root.elementName = element.elementName;
    element.subtypeName.clear();
    root.children.push_back(std::move(element));
}

void CTypeSchema::ClearElements() {
    variables.clear();
    elementTable.clear();
    elements.clear();
    ownedVariables_.clear();
}

void CTypeSchema::ClearAll() {
    ClearElements();
    declaredTypes.clear();
    subtypes_.reset();
}

}  // namespace kvl
