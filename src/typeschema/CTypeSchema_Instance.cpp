// How a declared type becomes an instance, and what is done with an instance as a whole.
#include <algorithm>
#include <iterator>

#include "text/ByteClass.h"
#include "typeschema/CTypeSchema.h"

namespace kvl {
namespace {

// What stands behind `prefix` in a label that is the prefix or begins with it and ":"; nothing for any other label.
bool TakePrefix(std::string_view& label, std::string_view prefix) {
    if (!label.starts_with(prefix)) return false;
    if (label.size() != prefix.size() && label[prefix.size()] != ':') return false;
    label.remove_prefix(prefix.size());
    return true;
}

// Gives the variable its new label if the old one fits.
void Relabel(CVariable& variable, std::string_view oldPrefix, std::string_view newPrefix, const VariableOwner* entity) {
    std::string_view rest = variable.label;
    variable.relabelled = TakePrefix(rest, oldPrefix);
    if (!variable.relabelled) return;
    variable.label = std::string(newPrefix).append(rest);
    if (entity) variable.SetOwnerEntity(entity);
}

// The variables with the columns of their lists and of the lists in those. Columns that a list has borrowed stay out.
std::vector<CVariable*> WithColumns(std::vector<CVariable*> variables) {
    for (std::size_t i = 0; i < variables.size(); ++i) {
        if (!variables[i]->IsList()) continue;
        const auto* list = static_cast<const CVariableKVLCategoryList*>(variables[i]);
        std::copy_if(list->Columns().begin(), list->Columns().end(), std::back_inserter(variables),
                     [list](const CVariable* column) { return column->ownerList == list; });
    }
    return variables;
}

}  // namespace

void CTypeSchema::CopyDeclaration(const CTypeSchema& source) {
    ClearAll();
    declaredTypes = source.declaredTypes;
    subtypes_ = source.subtypes_;
    names = std::make_shared<EntityNames>(*source.names);
    instanceName = source.instanceName;
    mainTypeName = source.mainTypeName;
    dataStream = source.dataStream;
    dataPath = source.dataPath;
    dataFile = source.dataFile;
    currentLine = source.currentLine;
}

bool CTypeSchema::PrepareInstance(std::string_view newInstanceName) {
    instanceName = newInstanceName;
    isInstance = true;
    return BuildElementTable();
}

// The entry of a list stays under its old label in `variables`; all others move with their labels.
void CTypeSchema::RenameVariables(std::string_view oldPrefix, std::string_view newPrefix, const VariableOwner* entity) {
    std::vector<CVariable*> all;
    for (const auto& entry : variables)
        all.push_back(entry.second);
    all = WithColumns(std::move(all));
    for (CVariable* variable : all) {
        if (variable->IsList()) static_cast<CVariableKVLCategoryList*>(variable)->ColumnsRelabelled();
        Relabel(*variable, oldPrefix, newPrefix, entity);
    }

    std::vector<decltype(variables)::node_type> moved;
    for (auto entry = variables.begin(); entry != variables.end();) {
        const auto here = entry++;
        if (here->second->relabelled && !here->second->IsList()) moved.push_back(variables.extract(here));
    }
    for (auto& node : moved) {
        node.key() = node.mapped()->label;
        variables.insert(std::move(node));
    }
    for (CVariable* variable : all)
        variable->relabelled = false;
}

// Pairs the variables by position and stops at the end of the shorter side.
bool CTypeSchema::CopyValues(HeldEntity& source, const LoopStack& loops) {
    const auto* other = dynamic_cast<const CTypeSchema*>(&source);
    if (!other) return false;
    if (other == this) return true;
    const std::vector<CVariable*> destinations = VariablesInOrder();
    const std::vector<CVariable*> sources = other->VariablesInOrder();
    const std::size_t count = std::min(sources.size(), destinations.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (!destinations[i]->CopyValue(*sources[i], loops)) return false;
    }
    return true;
}

// Labels are compared behind the root's label, so that the order is one of the type: the instance's name, which labels
// of unnamed lists do not begin with, plays no part in it, and the root is the first.
std::vector<CVariable*> CTypeSchema::VariablesInOrder() const {
    const CVariable* root = GetRootVariable();
    const std::string_view prefix = root ? std::string_view(root->label) : std::string_view();
    struct Placed {
        std::string_view order;
        CVariable* variable;
    };
    std::vector<Placed> placed;
    placed.reserve(variables.size());
    for (const auto& entry : variables) {
        std::string_view order = entry.second->label;
        TakePrefix(order, prefix);
        placed.push_back({order, entry.second});
    }
    std::sort(placed.begin(), placed.end(), [](const Placed& a, const Placed& b) { return a.order < b.order; });
    std::vector<CVariable*> inOrder;
    inOrder.reserve(placed.size());
    for (const Placed& place : placed)
        inOrder.push_back(place.variable);
    return inOrder;
}

// A bracket ends behind its closing literal, which is no part of its value; of all other roots the value tells the end.
// One byte behind the end is never looked at.
bool CTypeSchema::FindRemainder() const {
    const CVariable* root = GetRootVariable();
    const bool isNested = root && root->elementKind == kElementNested;
    const int end = isNested ? input.GetCursor() - 1 : rootSpanEnd;
    if (end + 1 >= input.GetLength() - 1) return false;
    if (IsAllInvisible(input.GetSubstring(end + 1, -1))) return false;
    Report(ERR_PARSE_TYPE_CAT_3, MakeParseContext(0, input.GetText(), input.GetCursor()));
    return true;
}

DataContext CTypeSchema::MakeParseContext(int first, std::string_view window, int cursor) const {
    const CVariable& element = *elements[static_cast<std::size_t>(first)].variable;
    DataContext context;
    const TextPlace data = LocateCursor(window, cursor);
    context.entityName = GetDataName();
    context.lineNumber = data.line;
    context.lineText = data.text;
    context.positionMark = data.mark;
    context.position = data.column;
    context.entityKind = entityKind;

    TextPlace declaration;
    // A source that has gone is reported by the attempt to read it; the fault in the data is shown all the same.
    const bool located =
        LocateInSource(names->sourcePath, element.declarationPosition, element.declarationText, declaration);
    context.typeName = names->name;
    context.typeLineNumber = located ? declaration.line : element.declarationLine;
    context.typeLine = declaration.text;
    context.typePositionMark = declaration.mark;
    context.typePosition = declaration.column;

    context.Set(ERRSTR_LABEL_FULL, element.label);
    context.Set(ERRSTR_VAR_TYPE, element.typeName);
    context.Set(ERRSTR_CATEGORY, element.typeName);
    context.Set(ERRSTR_LABEL_POSITION, first);
    return context;
}

}  // namespace kvl
