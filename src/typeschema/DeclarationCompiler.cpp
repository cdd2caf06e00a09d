// Compiling declared types. The uses of subtypes are seen as a graph of names, and no tree is ever copied for a use: a
// type in which every subtype uses the next one twice costs as much to judge as one in which it is used once. Types are
// walked with a stack of our own, since a chain of uses is as long as the text; items within one type by recursion,
// since the parser bounds how deep they nest.
//
// Circles are found by a walk along the uses, in source order, that starts in front of the main type: entering a type
// whose walk has not ended closes a circle. A type whose walk has ended is not entered again. That finds the same uses
// as a walk that enters it each time: whatever a second walk could close a circle with has been marked by the first
// one.
#include "typeschema/DeclarationCompiler.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <unordered_set>

namespace kvl {
namespace {

// A use that is not bound yet.
bool IsUse(const TypeItem& item) {
    return item.itemKind == kItemTyped && item.elementType == kDeclaredTypeName && !item.subtype;
}

// Calls visit(use) for each use in the tree, in source order.
template <class Item, class Visit>
void ForEachUse(Item& item, const Visit& visit) {
    if (IsUse(item)) visit(item);
    if (item.itemKind != kItemCategory) return;
    for (auto& child : item.children)
        ForEachUse(child, visit);
}

// The names that are used, in source order, each once.
std::vector<std::string_view> UsedNames(const std::vector<DeclaredType>& declaredTypes) {
    std::vector<std::string_view> names;
    std::unordered_set<std::string_view> seen;
    for (const DeclaredType& declared : declaredTypes) {
        ForEachUse(declared.root, [&](const TypeItem& use) {
            if (seen.insert(use.typeName).second) names.push_back(use.typeName);
        });
    }
    return names;
}

}  // namespace

bool DeclarationCompiler::Compile() {
    if (schema_.declaredTypes.empty()) return false;
    ImportUsedTypes();
    if (!CheckDoubledNames()) return false;
    BuildGraph();
    FindRecursiveUses();
    if (!CheckUsedNames()) return false;
    WarnOfUnusedTypes();
    SetSubtypesAside();
    const DeclaredType& mainType = schema_.declaredTypes.front();
    schema_.names->name = schema_.mainTypeName = mainType.name;
    if (!schema_.BuildElementTable()) return false;
    return recursiveUses_.empty() || RefuseRecursion();
}

bool DeclarationCompiler::RefuseRecursion() {
    schema_.DumpElements();
    const TypeItem& use = *recursiveUses_.front();
    TypeContext context = source_.PlaceOf(use);
    context.Set(ERRSTR_FEATURE, "Recursive Type for " + use.typeName);
    return Report(ERR_DECL_TYPE_ELSE_2, context);
}

// The first name that nobody knows ends the import; its use is reported when the names are checked.
void DeclarationCompiler::ImportUsedTypes() {
    std::vector<DeclaredType>& declaredTypes = schema_.declaredTypes;
    ownTypes_ = declaredTypes.size();
    std::unordered_set<std::string_view> declaredNames;
    for (const DeclaredType& declared : declaredTypes)
        declaredNames.insert(declared.name);

    std::vector<DeclaredType> imported;
    for (std::string_view name : UsedNames(declaredTypes)) {
        if (declaredNames.contains(name)) continue;
        const CTypeSchema* loaded = knownTypes_.FindLoadedType(name);
        if (!loaded || loaded->declaredTypes.empty()) break;
        imported.push_back(loaded->declaredTypes.front());
        imported.back().name = name;  // without the namespace of the variable that holds the type
        importedSubtypes_.push_back(loaded->subtypes_);
    }
    std::move(imported.begin(), imported.end(), std::back_inserter(declaredTypes));
}

bool DeclarationCompiler::CheckDoubledNames() {
    const std::vector<DeclaredType>& declaredTypes = schema_.declaredTypes;
    std::vector<std::size_t> order(declaredTypes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return declaredTypes[a].name < declaredTypes[b].name; });
    bool allDiffer = true;
    for (std::size_t i = 1; i < order.size(); ++i) {
        const DeclaredType& first = declaredTypes[order[i - 1]];
        const DeclaredType& second = declaredTypes[order[i]];
        if (first.name != second.name) continue;
        TypeContext context = source_.PlaceOf(second);
        context.Set(ERRSTR_VAR_NAME, second.name).Set(ERRSTR_LINE_RELATED_NUMBER, first.line);
        allDiffer = Report(ERR_DECL_SCRIPT_VAR_2, context);
    }
    return allDiffer;
}

void DeclarationCompiler::BuildGraph() {
    std::vector<DeclaredType>& declaredTypes = schema_.declaredTypes;
    nodes_.resize(declaredTypes.size());
    for (std::size_t i = 0; i < declaredTypes.size(); ++i)
        indexByName_.emplace(declaredTypes[i].name, static_cast<int>(i));
    for (std::size_t i = 0; i < declaredTypes.size(); ++i) {
        Node& node = nodes_[i];
        ForEachUse(declaredTypes[i].root, [&](TypeItem& use) {
            const auto found = indexByName_.find(use.typeName);
            node.uses.push_back(&use);
            node.targets.push_back(found == indexByName_.end() ? -1 : found->second);
        });
    }
}

void DeclarationCompiler::FindRecursiveUses() {
    WalkUses(0);
    reached_.pop_back();  // the walk's own start
    const std::vector<int> reachedFromMain = reached_;
    // Circles that the main type does not reach are refused like any other.
    for (std::size_t i = 1; i < nodes_.size(); ++i) {
        if (nodes_[i].state != Node::Unseen) continue;
        nodes_[i].state = Node::Open;
        WalkUses(static_cast<int>(i));
    }
    reached_ = reachedFromMain;
    schema_.isRecursive = !recursiveUses_.empty();
}

// Appends every type whose walk ends to reached_. The state of `start` is the caller's: the main type is not open while
// the walk starts in front of it, so that a type that uses itself is entered once more.
void DeclarationCompiler::WalkUses(int start) {
    struct Step {
        int node;
        std::size_t next;
    };
    std::vector<Step> path{{start, 0}};
    while (!path.empty()) {
        Step& step = path.back();
        Node& node = nodes_[static_cast<std::size_t>(step.node)];
        if (step.next == node.uses.size()) {
            if (path.size() > 1 || node.state == Node::Open) node.state = Node::Seen;
            reached_.push_back(step.node);
            path.pop_back();
            continue;
        }
        const std::size_t use = step.next++;
        if (node.targets[use] == -1) continue;
        Node& target = nodes_[static_cast<std::size_t>(node.targets[use])];
        if (target.isRecursive || target.state == Node::Seen) continue;
        if (target.state == Node::Open) {
            target.isRecursive = true;
            recursiveUses_.push_back(node.uses[use]);
            continue;
        }
        target.state = Node::Open;
        path.push_back({node.targets[use], 0});
    }
}

// Every tree is looked at, used or not.
bool DeclarationCompiler::CheckUsedNames() {
    for (const Node& node : nodes_) {
        for (std::size_t i = 0; i < node.uses.size(); ++i) {
            if (node.targets[i] != -1) {
                nodes_[static_cast<std::size_t>(node.targets[i])].isUsed = true;
                continue;
            }
            const TypeItem& use = *node.uses[i];
            TypeContext context = source_.PlaceOf(use);
            context.Set(ERRSTR_VAR_TYPE, use.typeName).Set(ERRSTR_VAR_NAME, use.elementName);
            return Report(ERR_DECL_TYPE_ELEM_3, context);
        }
    }
    return true;
}

void DeclarationCompiler::WarnOfUnusedTypes() {
    for (std::size_t i = 1; i < nodes_.size(); ++i) {
        if (nodes_[i].isUsed) continue;
        const DeclaredType& declared = schema_.declaredTypes[i];
        TypeContext context = source_.PlaceOf(declared);
        context.Set(ERRSTR_VAR_TYPE, declared.name);
        Report(WARN_DECL_TYPE_ELSE_4, context);
    }
}

// The subtypes that the main type reaches leave the declared types, each behind those that it uses, so that their
// extents are known when it is measured.
void DeclarationCompiler::SetSubtypesAside() {
    auto trees = std::make_shared<SubtypeTrees>();
    trees->own.resize(reached_.size());  // their places stay from here on
    for (std::size_t i = 0; i < reached_.size(); ++i)
        nodes_[static_cast<std::size_t>(reached_[i])].subtype = static_cast<int>(i);
    for (std::size_t i = 0; i < reached_.size(); ++i) {
        const auto index = static_cast<std::size_t>(reached_[i]);
        DeclaredType& declared = schema_.declaredTypes[index];
        CompiledSubtype& subtype = trees->own[i];
        // The main type stays where it is, also where a subtype uses it.
        subtype.root = index == 0 ? declared.root : std::move(declared.root);
        BindUses(subtype.root, *trees);
        if (index >= ownTypes_ && importedSubtypes_[index - ownTypes_]) {
            trees->imported.push_back(importedSubtypes_[index - ownTypes_]);
        }
    }
    BindUses(schema_.declaredTypes.front().root, *trees);
    if (schema_.subtypes_) trees->imported.push_back(schema_.subtypes_);  // of a main type that was compiled before
    for (CompiledSubtype& subtype : trees->own)
        subtype.plain = MeasureItem(subtype.root, RecursiveUses::Plain);
    for (CompiledSubtype& subtype : trees->own)
        subtype.followed = MeasureItem(subtype.root, RecursiveUses::Followed);
    otherTypes_.assign(std::make_move_iterator(schema_.declaredTypes.begin() + 1),
                       std::make_move_iterator(schema_.declaredTypes.end()));
    schema_.declaredTypes.resize(1);
    schema_.subtypes_ = std::move(trees);
}

// A recursive use of the main type itself stays unbound: it is never followed.
void DeclarationCompiler::BindUses(TypeItem& item, SubtypeTrees& trees) const {
    ForEachUse(item, [&](TypeItem& use) {
        const int index = indexByName_.find(use.typeName)->second;
        const Node& target = nodes_[static_cast<std::size_t>(index)];
        use.isRecursiveUse = target.isRecursive;
        if (!(target.isRecursive && index == 0)) use.subtype = &trees.own[static_cast<std::size_t>(target.subtype)];
    });
}

}  // namespace kvl
