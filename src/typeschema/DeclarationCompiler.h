#pragma once
// Judges the declared types of one type text and readies the main type for the element table: names are resolved,
// circles found, the subtypes that it uses set aside.

#include <string_view>
#include <unordered_map>
#include <vector>

#include "typeschema/CTypeSchema.h"
#include "typeschema/CompiledSubtype.h"
#include "typeschema/TypeSource.h"

namespace kvl {

class DeclarationCompiler {
public:
    DeclarationCompiler(CTypeSchema& schema, const KnownTypes& knownTypes) : schema_(schema), knownTypes_(knownTypes) {}

    // Reports the first fault (doubled names all) and returns false. The element table stands behind it.
    [[nodiscard]] bool Compile();

private:
    // One declared type as a node of the graph of uses.
    struct Node {
        std::vector<TypeItem*> uses;  // in source order, those in inner categories too
        std::vector<int> targets;     // of the uses; -1 for an unknown name
        enum State : char { Unseen, Open, Seen } state = Unseen;
        bool isRecursive = false;  // a circle closes here
        bool isUsed = false;
        int subtype = -1;  // index in the subtypes set aside
    };

    void ImportUsedTypes();
    [[nodiscard]] bool CheckDoubledNames();
    void BuildGraph();
    void FindRecursiveUses();
    void WalkUses(int start);
    [[nodiscard]] bool CheckUsedNames();
    void WarnOfUnusedTypes();
    void SetSubtypesAside();
    void BindUses(TypeItem& item, SubtypeTrees& trees) const;
    bool RefuseRecursion();

    CTypeSchema& schema_;
    const KnownTypes& knownTypes_;
    TypeSource source_{schema_};
    std::unordered_map<std::string_view, int> indexByName_;  // views into the declared types
    std::vector<Node> nodes_;
    std::vector<const TypeItem*> recursiveUses_;  // in the order in which they are found
    std::vector<int> reached_;  // from the main type; a type stands behind those that it uses, but for recursive uses
    // By index of the declared type, for those behind the text's own types.
    std::vector<std::shared_ptr<const SubtypeTrees>> importedSubtypes_;
    std::size_t ownTypes_ = 0;
    std::vector<DeclaredType> otherTypes_;  // whose items may be shown in a message yet
};

}  // namespace kvl
