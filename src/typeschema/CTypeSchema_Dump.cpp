// A type as text: its element table, and its declaration as a tree.
#include "messages/Log.h"
#include "typeschema/CTypeSchema.h"
#include "typeschema/CompiledSubtype.h"

namespace kvl {
namespace {

constexpr std::size_t kIndent = 4;
constexpr int kNameColour = 13;
constexpr std::string_view kMarkTexts[] = {"BEGIN", "END  ", ""};  // by ElementMark

std::string Indent(int depth) {
    return std::string(kIndent * static_cast<std::size_t>(depth), ' ');
}

std::string_view LastPart(std::string_view name) {
    const std::size_t colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

// A label as the table shows it: the key of an unnamed list is none.
std::string_view ShownLabel(std::string_view label) {
    if (label.starts_with("[")) return {};
    return label.starts_with(":") ? label.substr(1) : label;
}

std::string ElementText(const CVariable& variable) {
    switch (variable.elementKind) {
        case kElementStrictLiteral:
        case kElementWeakLiteral:
            return std::string(variable.GetText());
        case kElementRecursion:
        case kElementRecursionId:
            return "::" + std::string(variable.GetText());
        default:
            return "::" + variable.typeName;
    }
}

void AppendRow(std::string& text, const ElementEntry& entry) {
    const CVariable& variable = *entry.variable;
    text.append(Indent(entry.depth)).append(kMarkTexts[entry.mark]).append(" ").append(ShownLabel(variable.label));
    if (!variable.userTypeName.empty()) text.append("::").append(variable.userTypeName);
    text.append(ElementText(variable)).append("\n");
}

// --- the declaration ---

struct PendingItem {
    const TypeItem* item;
    int depth;
    RecursiveUses recursiveUses;
};

// What follows the name in the line of an item that is no category; the name is printed in front of it.
std::string LeafText(const TypeItem& item) {
    switch (item.itemKind) {
        case kItemStrictLiteral:
        case kItemWeakLiteral:
            return item.literal;
        case kItemTyped:
            return "::" + item.typeName;
        case kItemQualifiedReference:
            return ":" + item.qualifier + "::" + item.reference;
        case kItemPlaceholder:
            return ":" + item.placeholder;
        case kItemQualifiedPlaceholder:
            return ":" + item.qualifier + "::" + item.placeholder;
        default:
            return "<<...>>";
    }
}

std::string CategoryText(const TypeItem& item, const ItemShape& shape) {
    const bool isRecursion = shape.categoryType == kCategoryRecursion;
    std::string text = "::";
    text += isRecursion ? std::string_view(item.typeName) : GetTypeName(shape.categoryType);
    if (!shape.subtypeName.empty()) text.append(" - ").append(shape.subtypeName);
    return text;
}

void DumpTree(const TypeItem& root) {
    std::vector<PendingItem> pending{{&root, 1, RecursiveUses::Followed}};
    while (!pending.empty()) {
        const PendingItem next = pending.back();
        pending.pop_back();
        const ItemShape shape = ShapeOf(*next.item, next.recursiveUses);
        Print(Indent(next.depth));
        PrintColoured(next.item->elementName, kNameColour);
        Print((shape.category ? CategoryText(*next.item, shape) : LeafText(*next.item)) + "\n");
        if (!shape.category) continue;
        for (auto child = shape.children->rbegin(); child != shape.children->rend(); ++child)
            pending.push_back({&*child, next.depth + 1, shape.recursiveUses});
    }
}

}  // namespace

std::string CTypeSchema::ElementsText() const {
    std::string text = "\n";
    if (!names->name.empty()) text.append("Type Schema ").append(LastPart(names->name));
    text += '\n';
    const std::size_t width = std::to_string(elements.size()).size();
    // A row is as long as it stands deep, so that deep types of many rows would not end.
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (text.size() > kLongestDump) return text + "...\n";
        const std::string index = std::to_string(i);
        text.append(width - index.size(), ' ').append(index);
        AppendRow(text, elements[i]);
    }
    return text;
}

void CTypeSchema::DumpElements() const {
    if (LogIsOpen()) WriteLog(ElementsText());
}

void CTypeSchema::DumpDeclaration() const {
    Print("\n");
    for (const DeclaredType& declared : declaredTypes) {
        Print("\n" + declared.name + " = \n");
        DumpTree(declared.root);
        Print("\n");
    }
}

}  // namespace kvl
