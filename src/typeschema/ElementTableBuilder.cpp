// Two walks: one over the tree, which makes the rows, one over the rows, which binds columns to their lists. Both keep
// their stack themselves, since subtypes can nest as deep as the limit allows. The size of the table is known before
// its first row is made; cost is that size, and for each list the sorting of its columns.
#include "typeschema/ElementTableBuilder.h"

#include <algorithm>

namespace kvl {
namespace {

constexpr std::size_t kLiteralQuotes = 2;

bool IsLiteral(const TypeItem& item) {
    return item.itemKind == kItemStrictLiteral || item.itemKind == kItemWeakLiteral;
}

// The class that a typed element gets; 0 for a type that the type language does not have.
int ElementTypeId(const TypeItem& item) {
    if (item.elementType == kDeclaredTypeName) return kTypeRecursionId;
    return item.elementType >= kTypeString && item.elementType <= kTypeWhiteSpace ? item.elementType : kTypeUnknown;
}

// The declared type behind the one element of a list; empty where there is none, or more than one element.
std::string ListTypeName(const CVariable& list, const std::vector<ElementEntry>& elements) {
    const int firstInside = list.firstElement + 1;
    const CVariable& element = *elements[static_cast<std::size_t>(firstInside)].variable;
    const bool isOnlyElement = firstInside < list.lastElement && element.lastElement + 1 == list.lastElement;
    return isOnlyElement ? element.userTypeName : std::string();
}

}  // namespace

bool ElementTableBuilder::Build() {
    if (schema_.declaredTypes.empty()) return false;
    TypeItem& root = schema_.declaredTypes.front().root;
    if (schema_.isInstance) root.elementName = schema_.instanceName;
    root.subtypeName = schema_.names->name;
    return CheckExtent() && BuildRows() && LinkColumns();
}

bool ElementTableBuilder::CheckExtent() {
    const DeclaredType& mainType = schema_.declaredTypes.front();
    const TypeExtent extent = MeasureItem(mainType.root, RecursiveUses::Followed);
    const auto rows = static_cast<std::size_t>(extent.rows);
    std::string reason = "Type " + schema_.names->name;
    if (rows > kMostElements) {
        reason += " grows beyond " + std::to_string(kMostElements) + " elements. ";
    } else if (extent.depth > kDeepestElement) {
        reason += " is nested deeper than " + std::to_string(kDeepestElement) + ". ";
    } else if (extent.labelBytes > kMostLabelBytes) {
        reason += " grows beyond " + std::to_string(kMostLabelBytes) + " bytes of labels. ";
    } else {
        schema_.elements.reserve(rows);
        return true;
    }
    TypeContext context = source_.PlaceOf(mainType);
    context.Set(ERRSTR_FATAL_REASON, reason);
    return Report(ERR_EXEC_ENVIRON_FATAL_1, context);
}

// --- rows ---

bool ElementTableBuilder::BuildRows() {
    if (!BuildElement(schema_.declaredTypes.front().root)) return false;
    while (!open_.empty()) {
        OpenCategory& open = open_.back();
        if (open.nextChild == open.shape.children->size()) {
            EndCategory();
        } else if (!BuildElement((*open.shape.children)[open.nextChild++])) {
            return false;
        }
    }
    return true;
}

bool ElementTableBuilder::BuildElement(const TypeItem& item) {
    const RecursiveUses recursiveUses = open_.empty() ? RecursiveUses::Followed : open_.back().shape.recursiveUses;
    const ItemShape shape = ShapeOf(item, recursiveUses);
    if (shape.category) return BeginCategory(item, shape);
    switch (item.itemKind) {
        case kItemStrictLiteral:
        case kItemWeakLiteral:
            return BuildLiteral(item);
        case kItemTyped:
            return BuildTyped(item);
        case kItemQualifiedReference:
            return RefuseFeature(item, "::" + item.qualifier + ":" + item.reference);
        case kItemPlaceholder:
            return RefuseFeature(item, "$" + item.placeholder + "$");
        case kItemQualifiedPlaceholder:
            return RefuseFeature(item, "$" + item.qualifier + ":" + item.placeholder + "$");
        default:
            return RefuseFeature(item, "<<...>>");
    }
}

bool ElementTableBuilder::BeginCategory(const TypeItem& item, const ItemShape& shape) {
    CVariable& variable = MakeElement(shape.categoryType);
    variable.userTypeName = shape.subtypeName;
    variable.declarationLine = shape.category->line;
    variable.declarationPosition = shape.category->typePosition;
    variable.declarationText = shape.category->typeText;
    if (shape.categoryType == kCategoryRecursion) variable.SetText(item.typeName);
    if (!CheckStructure(shape)) return false;
    const std::size_t prefixLength = prefix_.size();
    ExtendPrefix(item);
    if (!EnterLabel(variable, item)) return false;
    AppendRow(variable, kMarkBegin);
    open_.push_back({shape, &variable, 0, prefixLength});
    return true;
}

bool ElementTableBuilder::CheckStructure(const ItemShape& shape) {
    const std::vector<TypeItem>& children = *shape.children;
    int fault = 0;
    if (shape.categoryType == kCategoryChoice && children.empty()) {
        fault = ERR_DECL_TYPE_CAT_2;
    } else if (shape.categoryType == kCategoryNested) {
        if (children.size() < 2) {
            fault = ERR_DECL_TYPE_CAT_3;
        } else if (!IsLiteral(children.front())) {
            fault = ERR_DECL_TYPE_CAT_6;
        } else if (!IsLiteral(children.back())) {
            fault = ERR_DECL_TYPE_CAT_7;
        }
    }
    if (fault == 0) return true;
    TypeContext context = source_.PlaceOf(*shape.category);
    context.Set(ERRSTR_CATEGORY, GetTypeName(shape.categoryType));
    return Report(fault, context);
}

void ElementTableBuilder::EndCategory() {
    const OpenCategory open = open_.back();
    open_.pop_back();
    open.variable->lastElement = NextRow();
    AppendRow(*open.variable, kMarkEnd);
    prefix_.resize(open.prefixLength);
}

bool ElementTableBuilder::BuildLiteral(const TypeItem& item) {
    CVariable& variable = MakeElement(item.itemKind == kItemStrictLiteral ? kLiteralStrict : kLiteralWeak);
    variable.SetText(item.literal);
    variable.declarationLine = item.line;
    variable.declarationPosition = item.literalPosition;
    variable.declarationText = item.literalText;
    if (item.literal.size() <= kLiteralQuotes) return Report(ERR_DECL_TYPE_LIT_3, source_.PlaceOf(item));
    AppendRow(variable, kMarkLeaf);
    return true;
}

bool ElementTableBuilder::BuildTyped(const TypeItem& item) {
    const int typeId = ElementTypeId(item);
    if (typeId == kTypeUnknown) return RefuseFeature(item, "::" + item.typeName);
    CVariable& variable = MakeElement(typeId);
    if (typeId == kTypeRecursionId) variable.SetText(item.typeName);
    variable.declarationLine = item.line;
    variable.declarationPosition = item.typePosition;
    variable.declarationText = item.typeText;
    const std::size_t prefixLength = prefix_.size();
    ExtendPrefix(item);
    if (!EnterLabel(variable, item)) return false;
    AppendRow(variable, kMarkLeaf);
    prefix_.resize(prefixLength);
    return true;
}

bool ElementTableBuilder::RefuseFeature(const TypeItem& item, const std::string& feature) {
    TypeContext context = source_.PlaceOf(item);
    context.Set(ERRSTR_FEATURE, feature);
    return Report(ERR_DECL_TYPE_ELSE_2, context);
}

// Labels of an instance begin with its name, those of a declaration with ":". An unnamed element adds nothing, so that
// what is inside stands directly under the enclosing name.
void ElementTableBuilder::ExtendPrefix(const TypeItem& item) {
    if (item.elementName.empty()) return;
    const bool isInstanceRoot = schema_.isInstance && open_.empty();
    if (!isInstanceRoot) prefix_ += ':';
    prefix_ += item.elementName;
}

bool ElementTableBuilder::EnterLabel(CVariable& variable, const TypeItem& item) {
    if (item.elementName.empty()) return true;
    variable.label = prefix_;
    if (schema_.elementTable.emplace(prefix_, &variable).second) return true;
    TypeContext context = source_.PlaceOf(item);
    context.Set(ERRSTR_VAR_NAME, item.elementName);
    return Report(ERR_DECL_TYPE_ELEM_6, context);
}

CVariable& ElementTableBuilder::MakeElement(int typeId) {
    schema_.ownedVariables_.push_back(MakeVariable(typeId));
    CVariable& variable = *schema_.ownedVariables_.back();
    variable.depth = static_cast<int>(open_.size()) + 1;
    variable.firstElement = variable.lastElement = NextRow();
    return variable;
}

void ElementTableBuilder::AppendRow(CVariable& variable, int mark) {
    schema_.elements.push_back({&variable, variable.depth, mark});
}

// --- columns ---

bool ElementTableBuilder::LinkColumns() {
    for (const ElementEntry& entry : schema_.elements) {
        CVariable& variable = *entry.variable;
        if (entry.mark == kMarkEnd) {
            if (!variable.IsList()) continue;
            if (!EndList(openLists_.back())) return false;
            openLists_.pop_back();
            continue;
        }
        // The row makes the key of an unnamed list its own.
        if (variable.IsList() && variable.label.empty()) {
            variable.label = "[ " + std::to_string(variable.firstElement) + ", ";
        }
        if (!variable.label.empty() && !Link(variable)) return false;
        if (variable.IsList()) openLists_.push_back({static_cast<CVariableKVLCategoryList*>(&variable), {}});
    }
    return true;
}

bool ElementTableBuilder::Link(CVariable& variable) {
    variable.rangeText = "[ " + std::to_string(variable.firstElement);
    if (openLists_.empty()) {
        return schema_.variables.emplace(variable.label, &variable).second || ReportDoubledLabel(variable);
    }
    OpenList& open = openLists_.back();
    variable.ownerList = open.list;
    if (variable.IsList()) static_cast<CVariableKVLCategoryList&>(variable).parentList = open.list;
    open.columns.push_back(&variable);
    return true;
}

// The columns go in by order of their labels, so that each is added behind the others.
bool ElementTableBuilder::EndList(OpenList& open) {
    std::sort(open.columns.begin(), open.columns.end(),
              [](const CVariable* a, const CVariable* b) { return a->label < b->label; });
    for (CVariable* column : open.columns) {
        if (!open.list->AddColumn(column)) return ReportDoubledLabel(*column);
    }
    open.list->listTypeName = ListTypeName(*open.list, schema_.elements);
    return true;
}

bool ElementTableBuilder::ReportDoubledLabel(const CVariable& variable) {
    TypeContext context = source_.PlaceOf(schema_.declaredTypes.front());
    context.Set(ERRSTR_VAR_NAME, variable.label);
    return Report(ERR_DECL_TYPE_ELEM_6, context);
}

}  // namespace kvl
