#pragma once
// Everything that has a name at run time: an element of a declared type, a field read from input, a variable of a
// script, a list, a declared type, pattern or script, a directory. All values are texts; numbers are converted only
// where an operator needs them.
//
// A variable holds one current value. The further values of a list live as cells in its records; the columns of a list
// are variables that exist once.

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "values/TextValue.h"
#include "values/TypeIds.h"

namespace kvl {

class CVariableKVLCategoryList;
class HeldEntity;
class LoopStack;

// What a variable asks of the entity whose table holds it.
class VariableOwner {
public:
    virtual ~VariableOwner() = default;
    // File name of the source; the display name where there is no file.
    virtual std::string SourceName() const = 0;
    virtual int CurrentLine() const = 0;
};

class CVariable {
public:
    explicit CVariable(int typeId);
    virtual ~CVariable() = default;
    CVariable(const CVariable&) = delete;
    CVariable& operator=(const CVariable&) = delete;

    // Copies the value of `source` into this variable's own storage. False only for lists of different shape.
    [[nodiscard]] virtual bool CopyValue(const CVariable& source, const LoopStack& loops) = 0;
    // This variable and `source` then see one value.
    virtual void ShareValue(const CVariable& source) = 0;
    [[nodiscard]] virtual bool AssignValue(CVariable& source, const LoopStack& loops);
    virtual void CreateValue() = 0;
    virtual void DestroyValue() = 0;
    // Lets the storage go, unless it is another's.
    void ReleaseValue();
    // The text that DUMP shows; empty for most classes.
    virtual std::string DumpValue(const LoopStack& loops) const;
    virtual void SetText(std::string_view text) = 0;
    // Valid until the variable changes. Not a view for variables that compose their text: those keep it.
    virtual std::string_view GetText() const = 0;
    virtual void ClearValue() = 0;

    // Remembers who holds the variable, and the owner's present line as the line of the declaration.
    void SetOwnerEntity(const VariableOwner* owner);
    // SourceName() of the owner + "@" + label.
    std::string GetFileLabelKey() const;
    // "[3,7] LABEL", or "[3] LABEL" where both rows are equal; for messages and the log.
    std::string GetRangeLabel() const;

    bool IsList() const { return typeId == kCategoryList; }

    std::string label;                           // full label, such as INPUT:PERSON:NAME
    const VariableOwner* ownerEntity = nullptr;  // not owned
    std::shared_ptr<HeldEntity> typeSchema;      // the type or instance that this holds; null if none
    HeldEntity* elementOf = nullptr;             // the instance whose element this is; not owned
    int typeId;
    int elementTypeId = 0;  // of a bracket list or instance: its element's type; 0 records, 27 a whole declared type
    std::string typeName;
    int entityLine = -1;  // line of the declaration
    bool ownsStorage = true;
    int elementKind = kElementNone;
    int firstElement = -1, lastElement = -1;  // rows in the element table
    int depth = 0;
    CVariableKVLCategoryList* ownerList = nullptr;  // not owned; the list of which this is a column
    int columnIndex = -1;                           // place among the columns of ownerList
    std::string userTypeName;
    int declarationLine = -1, declarationPosition = -1;
    std::string declarationText;
    std::string rangeText;
    bool isConstant = false;  // declared with "#": takes no assignment
    bool entered = false;     // EnterElements has put it into a variable table
    bool relabelled = false;  // RenameVariables has moved it in the present run of that operation
};

// The classes whose value is one text: strings, numbers, streams, literals and all categories but the list.
class CVariableText : public CVariable {
public:
    using CVariable::CVariable;
    bool CopyValue(const CVariable& source, const LoopStack& loops) override;
    void ShareValue(const CVariable& source) override;
    void CreateValue() override;
    void DestroyValue() override;
    void SetText(std::string_view text) override;
    void SetText(std::string&& text);
    // Cost: the appended text.
    void AppendText(std::string_view text);
    std::string_view GetText() const override;
    void ClearValue() override;
    // The value is a place in a text that is kept alive with it.
    void SetPlace(std::shared_ptr<const std::string> keep, std::string_view view);

protected:
    std::shared_ptr<TextValue>
        value_;  // null until CreateValue; shared with the variables that stand for the same value
};

// Makes the variable of the class for `typeId` (1 to 8, 13, 14 and 16 to 31) with its storage; null for any other id.
std::unique_ptr<CVariable> MakeVariable(int typeId);

}  // namespace kvl
