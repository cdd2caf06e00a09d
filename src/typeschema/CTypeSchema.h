#pragma once
// A declared type, or an instance of it that holds parsed input. A type is compiled to one flat table of elements, each
// a variable that is at once a node of the grammar and the slot of the value read for it.

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "typeschema/CTSEntity.h"
#include "typeschema/KnownTypes.h"
#include "typeschema/TypeItem.h"
#include "values/CVariableKVLCategoryList.h"
#include "values/EntityVariables.h"

namespace kvl {

constexpr std::size_t kMostElements = 1000000;       // rows of a compiled type
constexpr int kDeepestElement = 10000;               // nested categories
constexpr std::int64_t kMostLabelBytes = 500000000;  // of all labels, which hold the names of all that is around them
constexpr std::size_t kLongestDump = 268435456;      // bytes, after which the dump of a table ends

struct SubtypeTrees;

enum ElementMark : int { kMarkBegin = 0, kMarkEnd = 1, kMarkLeaf = 2 };

// One row of the flat table. Begin and end row of a category hold the same variable.
struct ElementEntry {
    CVariable* variable;  // owned by the schema
    int depth;
    int mark;
};

class CTypeSchema final : public CTSEntity, public HeldEntity {
public:
    CTypeSchema();
    ~CTypeSchema() override;

    // --- declaration ---
    void AddDeclaredType(DeclaredType declared) { declaredTypes.push_back(std::move(declared)); }
    // Judges the declared types and builds the element table; `name` is the main type's name. Reports its first fault.
    [[nodiscard]] bool CompileDeclaration(const KnownTypes& knownTypes, std::string& name);
    [[nodiscard]] bool BuildElementTable();
    void SetMainTypeName(std::string_view name);
    // Makes of a type T a type that is a list of T.
    void WrapInList();
    void ClearAll();

    // --- instances ---
    // Takes the declared types and the names of `source`; no elements yet.
    void CopyDeclaration(const CTypeSchema& source);
    // Builds the element table under the instance's name.
    [[nodiscard]] bool PrepareInstance(std::string_view newInstanceName);
    // Moves the labels that are `oldPrefix` or begin with it and ":" under `newPrefix`, columns included. With an
    // entity, the moved variables become its own.
    void RenameVariables(std::string_view oldPrefix, std::string_view newPrefix, const VariableOwner* entity);
    bool CopyValues(HeldEntity& source, const LoopStack& loops) override;
    CVariable* GetRootVariable() const override { return elements.empty() ? nullptr : elements[0].variable; }
    const std::string& EntityName() const override { return names->name; }
    // The variables in order of labels: those that are no column, and the primary lists.
    std::vector<CVariable*> VariablesInOrder() const;

    // Is there text behind the root that is not invisible? Reported then. For an instance that was parsed.
    [[nodiscard]] bool FindRemainder() const;
    // Place in the data (the cursor of `window`, which is the input or the line being read) and in the declaration of
    // the element at row `first`.
    DataContext MakeParseContext(int first, std::string_view window, int cursor) const;
    // dataFile, or dataStream where there is no file.
    const std::string& GetDataName() const { return dataFile.empty() ? dataStream : dataFile; }

    // --- dumps ---
    // The element table as text, and the declaration as a tree (names between colour changes are printed at once).
    std::string ElementsText() const;
    void DumpElements() const;     // to the log
    void DumpDeclaration() const;  // to the console

    std::vector<ElementEntry> elements;
    unsigned long elementTableId = 0;  // tells these elements from those of every other table of the run; 0: none yet
    CTSString input;
    int rootSpanEnd = -1;  // spanEnd of the root after a parse
    std::string mainTypeName;
    bool isInstance = false;
    bool isRecursive = false;
    std::vector<DeclaredType> declaredTypes;                      // after compiling the main type alone
    std::map<std::string, CVariable*, std::less<>> variables;     // labelled elements that are no column; not owned
    std::map<std::string, CVariable*, std::less<>> elementTable;  // every labelled element; not owned
    std::string instanceName;
    std::string dataStream, dataPath, dataFile;  // what an instance parses

private:
    friend class DeclarationCompiler;
    friend class ElementTableBuilder;

    void ClearElements();

    std::vector<std::unique_ptr<CVariable>> ownedVariables_;
    std::shared_ptr<const SubtypeTrees>
        subtypes_;  // that the main type uses; shared with instances and importing types
};

}  // namespace kvl
