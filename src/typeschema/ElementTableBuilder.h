#pragma once
// Builds the flat element table of a type or instance from the tree of its main type: one variable for each element,
// with its label, and the links between lists and their columns.

#include <string>
#include <vector>

#include "typeschema/CTypeSchema.h"
#include "typeschema/CompiledSubtype.h"
#include "typeschema/TypeSource.h"

namespace kvl {

class ElementTableBuilder {
public:
    explicit ElementTableBuilder(CTypeSchema& schema) : schema_(schema) {}

    // Reports its first fault; the table is unfinished then. The tables of the schema must be empty.
    [[nodiscard]] bool Build();

private:
    // A category whose children are being built.
    struct OpenCategory {
        ItemShape shape;
        CVariable* variable = nullptr;
        std::size_t nextChild = 0;
        std::size_t prefixLength = 0;  // of the label prefix, to be put back
    };
    struct OpenList {
        CVariableKVLCategoryList* list;
        std::vector<CVariable*> columns;
    };

    [[nodiscard]] bool CheckExtent();
    [[nodiscard]] bool BuildRows();
    [[nodiscard]] bool BuildElement(const TypeItem& item);
    [[nodiscard]] bool BeginCategory(const TypeItem& item, const ItemShape& shape);
    [[nodiscard]] bool CheckStructure(const ItemShape& shape);
    void EndCategory();
    [[nodiscard]] bool BuildLiteral(const TypeItem& item);
    [[nodiscard]] bool BuildTyped(const TypeItem& item);
    [[nodiscard]] bool RefuseFeature(const TypeItem& item, const std::string& feature);
    // Gives the element its label, which prefix_ holds.
    [[nodiscard]] bool EnterLabel(CVariable& variable, const TypeItem& item);
    void ExtendPrefix(const TypeItem& item);
    CVariable& MakeElement(int typeId);
    void AppendRow(CVariable& variable, int mark);
    int NextRow() const { return static_cast<int>(schema_.elements.size()); }

    [[nodiscard]] bool LinkColumns();
    [[nodiscard]] bool Link(CVariable& variable);
    [[nodiscard]] bool EndList(OpenList& open);
    [[nodiscard]] bool ReportDoubledLabel(const CVariable& variable);

    CTypeSchema& schema_;
    TypeSource source_{schema_};
    std::vector<OpenCategory> open_;
    std::vector<OpenList> openLists_;
    std::string prefix_;
};

}  // namespace kvl
